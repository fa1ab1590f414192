#include "text.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

namespace vesk {

void release(Text& t) noexcept {
    if (t.kind == kOwned)
        std::free(const_cast<char*>(t.p));
    t = Text();
}

Text makeOwned(string_view s) {
    return copyTo(allocateText(s.size() + 1), s, kOwned);
}

Arena::~Arena() {
    for (const Chunk& c : m_chunks)
        deallocate(c.p, c.size);
}

void Arena::newChunk(size_t atLeast) {
    constexpr size_t kMaxChunk = size_t(2) << 20;
    size_t next = std::min<size_t>(m_next * 2, kMaxChunk);
    size_t size = std::max(atLeast, next);
    m_chunks.reserve(m_chunks.size() + 1);
    char* p = static_cast<char*>(allocate(size));
    m_chunks.push_back(Chunk{p, size});
    m_next = next;
    m_cur = p;
    m_left = size;
}

} // namespace vesk
