#include "Allocations.hpp"

#include <atomic>
#include <cstdlib>
#include <new>

namespace {
std::atomic<bool> counting = false;
std::atomic<int> allocations = 0;
} // namespace

void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    if (counting)
        ++allocations;
    return std::malloc(size == 0 ? 1 : size);
}
void* operator new(std::size_t size) {
    if (void* memory = operator new(size, std::nothrow))
        return memory;
    throw std::bad_alloc();
}
void operator delete(void* memory) noexcept {
    std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}

namespace tarvik::testing {

void startCountingAllocations() {
    allocations = 0;
    counting = true;
}

int stopCountingAllocations() {
    counting = false;
    return allocations;
}

} // namespace tarvik::testing
