#include "support/failing_memory.h"

#include <cstdint>
#include <cstdlib>
#include <new>

static thread_local bool failed = false;
static thread_local std::size_t left = SIZE_MAX; // more than any program takes

FailingMemory::FailingMemory(std::size_t allowed) noexcept {
    left = allowed;
    failed = false;
}

FailingMemory::~FailingMemory() { left = SIZE_MAX; }

bool FailingMemory::hasFailed() const noexcept { return failed; }

void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    if (left == 0) {
        failed = true;
        return nullptr;
    }
    --left;
    return std::malloc(size == 0 ? 1 : size);
}
void* operator new(std::size_t size) {
    if (void* const memory = operator new(size, std::nothrow)) { return memory; }
    throw std::bad_alloc{};
}

void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }
void operator delete(void* memory, const std::nothrow_t&) noexcept { std::free(memory); }
