// The one user of utf8proc.
#include "names.h"

#include <utf8proc.h>

#include <cstring>

namespace vesk {

namespace {

using namespace hashing;

bool isAscii(const char* p, size_t n) {
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

uint32_t hashing::bytes(const char* p, size_t n) {
    uint64_t h = start(n);
    for (; n >= 8; p += 8, n -= 8)
        h = step(h, load64(p));
    if (n)
        h = step(h, tailWord(p, n));
    return finish(h);
}

uint32_t NameRule::foldedHash(std::string_view s) const {
    fold(s, m_scratch);
    return bytes(m_scratch.data(), m_scratch.size());
}

bool NameRule::foldedSame(std::string_view a, std::string_view b) const {
    if (isAscii(a.data(), a.size()) && isAscii(b.data(), b.size()))
        return false; // ASCII names of different lengths
    String fa, fb;
    fold(a, fa);
    fold(b, fb);
    return fa == fb;
}

} // namespace vesk
