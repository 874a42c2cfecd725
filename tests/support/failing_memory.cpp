#include "support/failing_memory.h"

#include <cstdlib>
#include <limits>
#include <new>

namespace {

constexpr std::size_t kUnlimited = std::numeric_limits<std::size_t>::max();

thread_local bool failed = false;
thread_local bool failsOnce = false;
thread_local std::size_t left = kUnlimited;
thread_local MemoryUse use;

bool mayAllocate() noexcept {
    if (left == kUnlimited) { return true; }
    if (left > 0) {
        --left;
        return true;
    }
    failed = true;
    if (failsOnce) { left = kUnlimited; }
    return false;
}

} // namespace

FailingMemory::FailingMemory(std::size_t allowed, Fails fails) noexcept {
    left = allowed;
    failed = false;
    failsOnce = fails == Fails::once;
}

FailingMemory::~FailingMemory() { left = kUnlimited; }

bool FailingMemory::hasFailed() const noexcept { return failed; }

MemoryUse memoryUse() noexcept { return use; }

void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    void* const memory = mayAllocate() ? std::malloc(size == 0 ? 1 : size) : nullptr;
    if (memory != nullptr) {
        ++use.blocks;
        use.bytes += size;
    }
    return memory;
}
void* operator new(std::size_t size) {
    if (void* const memory = operator new(size, std::nothrow)) { return memory; }
    throw std::bad_alloc{};
}

void operator delete(void* memory) noexcept {
    if (memory != nullptr) { --use.blocks; }
    std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept { operator delete(memory); }
void operator delete(void* memory, const std::nothrow_t&) noexcept { operator delete(memory); }
