// Names of sections and keys: hashing and comparison with or without regard
// to case. Without, names compare by Unicode simple case folding when they
// are valid UTF-8, byte by byte otherwise. Hashes are computed over the
// folded form, so a lookup folds the query once and compares stored names
// only on a full hash match.
#pragma once

#include "memory.h"

#include <cstdint>
#include <cstring>
#include <string_view>

namespace vesk {

namespace hashing {

inline uint64_t load64(const char* p) {
    uint64_t w;
    std::memcpy(&w, p, 8);
    return w;
}
constexpr uint64_t kMul = 0x9E3779B97F4A7C15ULL;
constexpr uint64_t kHigh = 0x8080808080808080ULL;
inline uint64_t start(size_t n) {
    return kMul ^ (n * 0xFF51AFD7ED558CCDULL);
}
inline uint64_t step(uint64_t h, uint64_t w) {
    h = (h ^ w) * kMul;
    return h ^ (h >> 29);
}
inline uint32_t finish(uint64_t h) {
    h ^= h >> 32;
    h *= 0xD6E8FEB86659FD93ULL;
    h ^= h >> 32;
    return static_cast<uint32_t>(h >> 32);
}
// ASCII upper case to lower case in eight bytes at once; the bytes are known
// to be below 0x80.
inline uint64_t asciiLower8(uint64_t w) {
    const uint64_t ones = 0x0101010101010101ULL;
    uint64_t geA = w + ones * (0x80 - 'A');
    uint64_t gtZ = w + ones * (0x80 - 'Z' - 1);
    uint64_t upper = geA & ~gtZ & (ones * 0x80);
    return w | (upper >> 2);
}
inline char asciiLower(char c) {
    return (c >= 'A' && c <= 'Z') ? static_cast<char>(c + 32) : c;
}
// The k bytes at p (1 <= k <= 7) as one word, zero-extended (on a
// little-endian machine what a memcpy into a zeroed word gives), without
// the call that a copy of variable length costs.
inline uint64_t tailWord(const char* p, size_t k) {
    if (k >= 4) {
        uint32_t lo, hi;
        std::memcpy(&lo, p, 4);
        std::memcpy(&hi, p + k - 4, 4);
        return lo | (static_cast<uint64_t>(hi) << (8 * (k - 4)));
    }
    const auto* u = reinterpret_cast<const unsigned char*>(p);
    uint64_t w = u[0];
    if (k >= 2)
        w |= static_cast<uint64_t>(u[k - 1]) << (8 * (k - 1));
    if (k == 3)
        w |= static_cast<uint64_t>(u[1]) << 8;
    return w;
}
uint32_t bytes(const char* p, size_t n);

} // namespace hashing

class NameRule {
public:
    bool caseSensitive() const { return m_caseSensitive; }
    void setCaseSensitive(bool on) { m_caseSensitive = on; }

    // The hash of the name's folded form (of the name itself when case
    // counts). Inline for the common case, an ASCII name, which it folds and
    // hashes in one pass, giving what hashing::bytes gives for the folded
    // bytes.
    uint32_t hash(std::string_view name) const {
        using namespace hashing;
        const char* p = name.data();
        size_t n = name.size();
        if (m_caseSensitive)
            return bytes(p, n);
        uint64_t h = start(n);
        size_t i = 0;
        for (; i + 8 <= n; i += 8) {
            uint64_t w = load64(p + i);
            if (w & kHigh)
                return foldedHash(name);
            h = step(h, asciiLower8(w));
        }
        if (i < n) {
            uint64_t w = tailWord(p + i, n - i);
            if (w & kHigh)
                return foldedHash(name);
            h = step(h, asciiLower8(w));
        }
        return finish(h);
    }
    // Whether the two names are one under the rule.
    bool same(std::string_view a, std::string_view b) const {
        if (m_caseSensitive)
            return a == b;
        if (a.size() != b.size())
            return foldedSame(a, b); // a folding may change the length
        for (size_t i = 0; i < a.size(); ++i) {
            char x = a[i], y = b[i];
            if ((x | y) & 0x80)
                return foldedSame(a, b);
            if (x != y && hashing::asciiLower(x) != hashing::asciiLower(y))
                return false;
        }
        return true;
    }
    // The folded form: the name itself when case counts or when it isn't
    // valid UTF-8, otherwise its simple case folding.
    void fold(std::string_view name, String& out) const;

private:
    uint32_t foldedHash(std::string_view name) const;
    bool foldedSame(std::string_view a, std::string_view b) const;

    bool m_caseSensitive = false;
    mutable String m_scratch; // the folded form of a name being hashed
};

} // namespace vesk
