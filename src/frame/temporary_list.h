// A temporary error list: messages are collected and judged in it before they reach the caller.
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

} // namespace applman
