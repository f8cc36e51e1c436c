#include "testing/allocations/Allocations.h"

#include <cstdlib>
#include <new>

// In a file of its own, so that the compiler sees neither half of a pair inlined without the other.

namespace {

thread_local std::size_t count = 0;

} // namespace

std::size_t support::allocations() {
    return count;
}

void* operator new(std::size_t size) {
    ++count;
    if (void* memory = std::malloc(size)) return memory;
    throw std::bad_alloc();
}

// The sanitizer's own would not fit the deletes below.
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    ++count;
    return std::malloc(size);
}

void operator delete(void* memory) noexcept {
    std::free(memory);
}

void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}
