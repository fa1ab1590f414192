// Memory of the INI store: every block the store allocates comes from
// allocate(), so that a test can make any one of them fail (see
// vesk::testing). Large blocks are mapped from the system in whole pages.
#pragma once

#include <cstddef>
#include <limits>
#include <new>
#include <string>
#include <vector>

namespace vesk {

// A block of at least `bytes` bytes; throws std::bad_alloc. Blocks of 1 MiB
// and more are mapped pages (offered for transparent huge pages), smaller
// ones come from malloc. Release with deallocate(p, the same bytes).
void* allocate(std::size_t bytes);
void deallocate(void* p, std::size_t bytes) noexcept;

// A malloc'd block released with std::free (owned texts); throws
// std::bad_alloc. Counts for the failure hook like allocate().
char* allocateText(std::size_t bytes);

// The standard allocator interface over allocate().
template <class T>
struct Allocator {
    using value_type = T;
    Allocator() = default;
    template <class U>
    Allocator(const Allocator<U>&) {}
    T* allocate(std::size_t n) {
        if (n > std::numeric_limits<std::size_t>::max() / sizeof(T))
            throw std::bad_alloc();
        return static_cast<T*>(vesk::allocate(n * sizeof(T)));
    }
    void deallocate(T* p, std::size_t n) noexcept { vesk::deallocate(p, n * sizeof(T)); }
    template <class U>
    bool operator==(const Allocator<U>&) const {
        return true;
    }
    template <class U>
    bool operator!=(const Allocator<U>&) const {
        return false;
    }
};

template <class T>
using Vector = std::vector<T, Allocator<T>>;
using String = std::basic_string<char, std::char_traits<char>, Allocator<char>>;

namespace testing {
// Makes the n-th allocation from now fail with std::bad_alloc (1: the next
// one) and every one after it until the next call; 0 lets all succeed. The
// setting belongs to the calling thread. Not exported by libvesk.
void failAllocation(long n) noexcept;
} // namespace testing

} // namespace vesk
