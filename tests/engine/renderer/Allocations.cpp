// Counts what the program and its libraries allocate with operator new, for PresentTest.cpp. In both forms:
// what is allocated by one allocator may not be freed by another.
#include <atomic>
#include <cstdlib>
#include <new>

namespace tarvik::test {
std::atomic<int> allocations = 0;
} // namespace tarvik::test

void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    ++tarvik::test::allocations;
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
