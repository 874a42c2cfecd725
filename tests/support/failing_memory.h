// Lets allocations of the calling thread fail. A program that links this has its own operator new.
#pragma once

#include <cstddef>

/// While it lives, the first `allowed` allocations of this thread succeed and all later ones fail.
class FailingMemory {
public:
    explicit FailingMemory(std::size_t allowed) noexcept;
    ~FailingMemory();
    FailingMemory(const FailingMemory&) = delete;
    FailingMemory& operator=(const FailingMemory&) = delete;

    /// Whether an allocation has failed.
    bool hasFailed() const noexcept;
};
