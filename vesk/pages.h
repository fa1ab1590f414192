// Whole pages from the system for the store's large blocks (the platform
// layer: pages_posix.cpp; a Windows file implements the same two calls with
// VirtualAlloc and VirtualFree).
#pragma once

#include <cstddef>

namespace vesk {

// At least `bytes` bytes of zeroed, page-aligned memory, or null.
void* mapPages(std::size_t bytes) noexcept;
// Returns a block from mapPages with the size it was asked for.
void unmapPages(void* p, std::size_t bytes) noexcept;

} // namespace vesk
