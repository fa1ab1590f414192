// The case folding the store's names go through, from whichever utf8proc the
// build links (the system's library, or the one built from Debian's sources
// for Windows): every platform must fold every code point alike, so the
// folds of all of them are summed up and compared with one committed figure.
#include <utf8proc.h>

#include <gtest/gtest.h>

#include <cstdint>

namespace {

// One code point folded the way the store does: the case-folded form when it
// is a single code point, the lower-case mapping otherwise.
utf8proc_int32_t Fold(utf8proc_int32_t c) {
    utf8proc_int32_t out[8];
    utf8proc_int32_t boundclass = UTF8PROC_BOUNDCLASS_START;
    const utf8proc_ssize_t n = utf8proc_decompose_char(c, out, 8, UTF8PROC_CASEFOLD, &boundclass);
    return n == 1 ? out[0] : utf8proc_tolower(c);
}

TEST(Utf8proc, FoldsLikeDebianBookworm) {
    EXPECT_STREQ("2.8.0", utf8proc_version());
    EXPECT_EQ(0xE4, Fold(0xC4));       // Ä
    EXPECT_EQ(0x3C3, Fold(0x3A3));     // Σ
    EXPECT_EQ(0x3C3, Fold(0x3C2));     // final ς
    EXPECT_EQ(0x6B, Fold(0x212A));     // Kelvin sign
    EXPECT_EQ(0xDF, Fold(0x1E9E));     // ẞ folds to "ss": the lower-case ß instead
    EXPECT_EQ(0x69, Fold(0x49));       // I, without Turkish rules
    EXPECT_EQ(0x10428, Fold(0x10400)); // Deseret, beyond 16 bits

    // FNV-1a over the folds of every code point but the surrogates.
    std::uint64_t sum = 0xcbf29ce484222325u;
    int changed = 0;
    for (utf8proc_int32_t c = 0; c <= 0x10FFFF; ++c) {
        if (c >= 0xD800 && c <= 0xDFFF)
            continue;
        const utf8proc_int32_t f = Fold(c);
        changed += f != c;
        for (int shift = 0; shift < 32; shift += 8) {
            sum ^= static_cast<std::uint64_t>((f >> shift) & 0xFF);
            sum *= 0x100000001b3u;
        }
    }
    EXPECT_EQ(8765974795041128404u, sum);
    EXPECT_EQ(1455, changed); // code points whose fold differs
}

} // namespace
