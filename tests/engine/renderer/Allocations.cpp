// Counts what the program and its libraries allocate with operator new, for PresentTest.cpp.
#include <atomic>
#include <cstdlib>
#include <new>

namespace tarvik::test {
std::atomic<int> allocations = 0;
} // namespace tarvik::test

void* operator new(std::size_t size) {
    ++tarvik::test::allocations;
    if (void* memory = std::malloc(size))
        return memory;
    throw std::bad_alloc();
}
void operator delete(void* memory) noexcept {
    std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}
