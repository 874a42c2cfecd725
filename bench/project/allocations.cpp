#include "project/allocations.h"

#include <atomic>
#include <cstdlib>
#include <new>

namespace {

std::atomic<std::uint64_t> count{0};

void* allocate(std::size_t size) noexcept {
    count.fetch_add(1, std::memory_order_relaxed);
    return std::malloc(size == 0 ? 1 : size);
}

} // namespace

std::uint64_t project::allocations() { return count; }

void* operator new(std::size_t size) {
    void* const memory = allocate(size);
    if (memory == nullptr) { throw std::bad_alloc{}; }
    return memory;
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept { return allocate(size); }
void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }
