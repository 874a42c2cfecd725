// Temporary error lists: messages are collected and judged in them before they reach the caller, if ever.
#pragma once

#include "platform/error_lists.h"

namespace applman {

class TemporaryList {
public:
    TemporaryList() noexcept : pool_(KvCErrorManager::getInstance()->createErrorList(0, 1, 20, 5, 300)) {}
    ~TemporaryList() {
        if (pool_ != nullptr) { KvCErrorManager::getInstance()->deleteErrorList(pool_); }
    }
    TemporaryList(const TemporaryList&) = delete;
    TemporaryList& operator=(const TemporaryList&) = delete;

    /// False when there was no memory for it; then nothing else may be called.
    explicit operator bool() const noexcept { return pool_ != nullptr; }

    KvCErrorListPool& pool() const noexcept { return *pool_; }

private:
    KvCErrorListPool* pool_;
};

/// A temporary list whose messages reach the caller when its scope ends, however it ends.
class CollectedList : public TemporaryList {
public:
    explicit CollectedList(KvCErrorListPool& callers) noexcept : callers_(callers) {}
    ~CollectedList() {
        if (*this) { callers_ += pool(); }
    }
    CollectedList(const CollectedList&) = delete;
    CollectedList& operator=(const CollectedList&) = delete;

private:
    KvCErrorListPool& callers_;
};

} // namespace applman
