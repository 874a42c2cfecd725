// Lets allocations of the calling thread fail, and counts them. A program that links this has its own operator new.
#pragma once

#include <cstddef>

/// While it lives, the first `allowed` allocations of this thread succeed; the next one fails, or it and all later ones.
class FailingMemory {
public:
    enum class Fails { once, fromThenOn };
    explicit FailingMemory(std::size_t allowed, Fails fails = Fails::fromThenOn) noexcept;
    ~FailingMemory();
    FailingMemory(const FailingMemory&) = delete;
    FailingMemory& operator=(const FailingMemory&) = delete;

    /// Whether an allocation has failed.
    bool hasFailed() const noexcept;
};

/// What the calling thread has done so far.
struct MemoryUse {
    std::ptrdiff_t blocks = 0; // taken and not given back
    std::size_t bytes = 0;     // taken, whether given back or not
};
MemoryUse memoryUse() noexcept;
