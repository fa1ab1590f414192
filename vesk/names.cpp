// The one user of utf8proc.
#include "names.h"

#include <utf8proc.h>

#include <cstring>

namespace vesk {

namespace {

inline uint64_t load64(const char* p) {
    uint64_t w;
    std::memcpy(&w, p, 8);
    return w;
}

inline uint64_t mix(uint64_t h) {
    h ^= h >> 32;
    h *= 0xD6E8FEB86659FD93ULL;
    h ^= h >> 32;
    return h;
}

constexpr uint64_t kMul = 0x9E3779B97F4A7C15ULL;
constexpr uint64_t kHigh = 0x8080808080808080ULL;

inline uint64_t hashStart(size_t n) {
    return kMul ^ (n * 0xFF51AFD7ED558CCDULL);
}
inline uint64_t hashStep(uint64_t h, uint64_t w) {
    h = (h ^ w) * kMul;
    return h ^ (h >> 29);
}

uint32_t hashBytes(const char* p, size_t n) {
    uint64_t h = hashStart(n);
    for (; n >= 8; p += 8, n -= 8)
        h = hashStep(h, load64(p));
    if (n) {
        uint64_t w = 0;
        std::memcpy(&w, p, n);
        h = hashStep(h, w);
    }
    return static_cast<uint32_t>(mix(h) >> 32);
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

inline bool isAscii(const char* p, size_t n) {
    size_t i = 0;
    for (; i + 8 <= n; i += 8)
        if (load64(p + i) & kHigh)
            return false;
    for (; i < n; ++i)
        if (static_cast<unsigned char>(p[i]) & 0x80)
            return false;
    return true;
}

// Simple case folding of one code point: the full folding where that is a
// single code point (those are the common mappings), otherwise the lower
// case mapping, which is what the simple folding gives for the rest, but for
// U+0130, which has no simple folding.
int32_t simpleFold(int32_t c) {
    if (c < 0x80)
        return (c >= 'A' && c <= 'Z') ? c + 32 : c;
    if (c == 0x130)
        return c;
    utf8proc_int32_t out[8];
    int boundclass = 0;
    utf8proc_ssize_t n = utf8proc_decompose_char(c, out, 8, UTF8PROC_CASEFOLD, &boundclass);
    if (n == 1)
        return out[0];
    return utf8proc_tolower(c);
}

} // namespace

void NameRule::fold(std::string_view s, String& out) const {
    out.clear();
    const char* p = s.data();
    size_t n = s.size();
    if (m_caseSensitive) {
        out.assign(p, n);
        return;
    }
    if (isAscii(p, n)) {
        out.resize(n);
        char* d = &out[0];
        size_t i = 0;
        for (; i + 8 <= n; i += 8) {
            uint64_t w = asciiLower8(load64(p + i));
            std::memcpy(d + i, &w, 8);
        }
        for (; i < n; ++i)
            d[i] = asciiLower(p[i]);
        return;
    }
    const auto* u = reinterpret_cast<const utf8proc_uint8_t*>(p);
    utf8proc_ssize_t pos = 0, len = static_cast<utf8proc_ssize_t>(n);
    while (pos < len) {
        utf8proc_int32_t c;
        utf8proc_ssize_t k = utf8proc_iterate(u + pos, len - pos, &c);
        if (k <= 0) { // not valid UTF-8: byte by byte
            out.assign(p, n);
            return;
        }
        pos += k;
        utf8proc_uint8_t enc[4];
        utf8proc_ssize_t m = utf8proc_encode_char(simpleFold(c), enc);
        out.append(reinterpret_cast<const char*>(enc), static_cast<size_t>(m));
    }
}

// With a fast path for ASCII names that folds and hashes in one pass and
// gives what hashBytes gives for the folded bytes.
uint32_t NameRule::hash(std::string_view s) const {
    const char* p = s.data();
    size_t n = s.size();
    if (m_caseSensitive)
        return hashBytes(p, n);
    uint64_t h = hashStart(n);
    size_t i = 0;
    for (; i + 8 <= n; i += 8) {
        uint64_t w = load64(p + i);
        if (w & kHigh)
            goto slow;
        h = hashStep(h, asciiLower8(w));
    }
    if (i < n) {
        uint64_t w = 0;
        std::memcpy(&w, p + i, n - i);
        if (w & kHigh)
            goto slow;
        h = hashStep(h, asciiLower8(w));
    }
    return static_cast<uint32_t>(mix(h) >> 32);
slow:
    fold(s, m_scratch);
    return hashBytes(m_scratch.data(), m_scratch.size());
}

bool NameRule::same(std::string_view a, std::string_view b) const {
    if (m_caseSensitive)
        return a == b;
    if (isAscii(a.data(), a.size()) && isAscii(b.data(), b.size())) {
        if (a.size() != b.size())
            return false;
        for (size_t i = 0; i < a.size(); ++i)
            if (asciiLower(a[i]) != asciiLower(b[i]))
                return false;
        return true;
    }
    String fa, fb;
    fold(a, fa);
    fold(b, fb);
    return fa == fb;
}

} // namespace vesk
