// Allocation for the store, with the failure hook of its tests.
#include "memory.h"
#include "pages.h"

#include <atomic>
#include <cstdlib>

namespace vesk {

namespace {

// The hook's state: whether any thread set it (so that an allocation costs
// one relaxed load while none did), and per thread the allocations counted
// since it was set and the number of the first one that fails.
std::atomic<bool> g_armed{false};
thread_local long t_count = 0;
thread_local long t_failAt = 0;

constexpr std::size_t kMapThreshold = std::size_t(1) << 20;

inline void countAllocation() {
    if (!g_armed.load(std::memory_order_relaxed))
        return;
    ++t_count;
    if (t_failAt && t_count >= t_failAt)
        throw std::bad_alloc();
}

} // namespace

void* allocate(std::size_t bytes) {
    countAllocation();
    void* p = bytes < kMapThreshold ? std::malloc(bytes ? bytes : 1) : mapPages(bytes);
    if (!p)
        throw std::bad_alloc();
    return p;
}

void deallocate(void* p, std::size_t bytes) noexcept {
    if (!p)
        return;
    if (bytes < kMapThreshold)
        std::free(p);
    else
        unmapPages(p, bytes);
}

char* allocateText(std::size_t bytes) {
    countAllocation();
    char* p = static_cast<char*>(std::malloc(bytes ? bytes : 1));
    if (!p)
        throw std::bad_alloc();
    return p;
}

namespace testing {

void failAllocation(long n) noexcept {
    t_count = 0;
    t_failAt = n;
    if (n)
        g_armed.store(true, std::memory_order_relaxed);
}

} // namespace testing

} // namespace vesk
