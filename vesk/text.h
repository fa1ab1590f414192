// Texts of the INI store: a name or value either points into the file's
// bytes (not terminated), into the arena (terminated, freed with the store)
// or into a malloc'd block of its own.
#pragma once

#include "memory.h"

#include <cstdint>
#include <cstring>
#include <string_view>

namespace vesk {

using std::size_t;
using std::string_view;

// The longest file, line or text the store keeps: lengths are 32 bits.
constexpr size_t kMaxText = 0xFFFFFFF0u;

enum TextKind : uint8_t { kView, kTerminated, kOwned };

struct Text {
    const char* p = "";
    uint32_t len = 0;
    uint8_t kind = kTerminated;

    string_view view() const { return string_view(p, len); }
};

// Frees an owned text and leaves t empty.
void release(Text& t) noexcept;
// A malloc'd, terminated copy; throws std::bad_alloc.
Text makeOwned(string_view s);
// A text that points at s (not terminated, not owned).
inline Text viewOf(string_view s) {
    Text t;
    t.p = s.data();
    t.len = static_cast<uint32_t>(s.size());
    t.kind = kView;
    return t;
}

// s copied to m (room for s and a terminator) with a terminator, as a text
// of the kind given.
inline Text copyTo(char* m, string_view s, TextKind kind) {
    if (!s.empty())
        std::memcpy(m, s.data(), s.size());
    m[s.size()] = '\0';
    Text t;
    t.p = m;
    t.len = static_cast<uint32_t>(s.size());
    t.kind = kind;
    return t;
}

// A block of bytes from allocate(): the file's contents.
class Buffer {
public:
    Buffer() = default;
    explicit Buffer(size_t n) : m_p(static_cast<char*>(allocate(n))), m_cap(n) {}
    ~Buffer() { deallocate(m_p, m_cap); }
    Buffer(const Buffer&) = delete;
    Buffer& operator=(const Buffer&) = delete;
    void swap(Buffer& o) noexcept {
        std::swap(m_p, o.m_p);
        std::swap(m_cap, o.m_cap);
    }
    char* get() const { return m_p; }
    size_t capacity() const { return m_cap; }

private:
    char* m_p = nullptr;
    size_t m_cap = 0;
};

// Append-only storage for text decoded while parsing and for terminated
// copies made on first read, freed as a whole with its store. Chunks grow
// from 4 KiB to 2 MiB, so that a small store stays small and a large one
// sits in few (huge) pages.
class Arena {
public:
    Arena() = default;
    ~Arena();
    Arena(const Arena&) = delete;
    Arena& operator=(const Arena&) = delete;

    // n bytes that live as long as the arena; throws std::bad_alloc.
    char* alloc(size_t n) {
        if (n > m_left)
            newChunk(n);
        char* r = m_cur;
        m_cur += n;
        m_left -= n;
        return r;
    }
    // A terminated copy of s in the arena (kind kTerminated).
    Text copy(string_view s) { return copyTo(alloc(s.size() + 1), s, kTerminated); }

private:
    struct Chunk {
        char* p;
        size_t size;
    };
    void newChunk(size_t atLeast);

    Vector<Chunk> m_chunks;
    char* m_cur = nullptr;
    size_t m_left = 0;
    size_t m_next = 2048;
};

} // namespace vesk
