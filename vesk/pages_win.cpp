// Pages from VirtualAlloc: committed, zeroed and aligned to the allocation
// granularity (64 KiB), released whole with VirtualFree.
#include "pages.h"

#include <windows.h>

namespace vesk {

void* mapPages(std::size_t bytes) noexcept {
    return ::VirtualAlloc(nullptr, bytes, MEM_RESERVE | MEM_COMMIT, PAGE_READWRITE);
}

void unmapPages(void* p, std::size_t) noexcept {
    if (p)
        ::VirtualFree(p, 0, MEM_RELEASE);
}

} // namespace vesk
