// Pages from mmap. A store of a large file touches tens of megabytes of
// fresh memory while it parses, and on virtual machines each first touch of
// a 4 KiB page is expensive: the blocks are offered for transparent huge
// pages.
#include "pages.h"

#include <sys/mman.h>

namespace vesk {

namespace {
std::size_t roundToPages(std::size_t bytes) {
    return (bytes + 4095) & ~std::size_t(4095);
}
} // namespace

void* mapPages(std::size_t bytes) noexcept {
    std::size_t len = roundToPages(bytes);
    void* p = ::mmap(nullptr, len, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (p == MAP_FAILED)
        return nullptr;
#ifdef MADV_HUGEPAGE
    ::madvise(p, len, MADV_HUGEPAGE);
#endif
    return p;
}

void unmapPages(void* p, std::size_t bytes) noexcept {
    ::munmap(p, roundToPages(bytes));
}

} // namespace vesk
