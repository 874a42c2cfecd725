#include "support/failing_memory.h"

#include <cstdlib>
#include <new>

namespace {

thread_local bool limited = false;
thread_local bool failed = false;
thread_local std::size_t left = 0;

} // namespace

FailingMemory::FailingMemory(std::size_t allowed) noexcept {
    left = allowed;
    failed = false;
    limited = true;
}

FailingMemory::~FailingMemory() { limited = false; }

bool FailingMemory::hasFailed() const noexcept { return failed; }

void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    if (limited && left == 0) {
        failed = true;
        return nullptr;
    }
    if (limited) { --left; }
    return std::malloc(size == 0 ? 1 : size);
}
void* operator new(std::size_t size) {
    if (void* const memory = operator new(size, std::nothrow)) { return memory; }
    throw std::bad_alloc{};
}

void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }
void operator delete(void* memory, const std::nothrow_t&) noexcept { std::free(memory); }
