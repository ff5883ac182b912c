#include "largest_allocation.h"

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <new>

namespace {

std::atomic<bool> g_isWatching = false;
std::atomic<std::size_t> g_largest = 0;

}  // namespace

namespace archives {

LargestAllocation::LargestAllocation() {
    g_largest = 0;
    g_isWatching = true;
}

LargestAllocation::~LargestAllocation() {
    g_isWatching = false;
}

std::size_t LargestAllocation::bytes() const {
    return g_largest;
}

}  // namespace archives

// In a source of its own: where GCC sees both an operator and its use, it takes them for a mismatched pair.
// The sanitizers have operators of their own, which must not meet these; there nothing is watched.
#ifndef QSF2SQL_SANITIZED

void* operator new(std::size_t size) {
    if (g_isWatching)
        g_largest = std::max(g_largest.load(), size);
    if (void* const memory = std::malloc(std::max<std::size_t>(size, 1)))
        return memory;
    throw std::bad_alloc();
}

void operator delete(void* memory) noexcept {
    std::free(memory);
}

void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}

#endif
