// The console's colour mapping against the whole table, on every platform.
#include <wxsupport/console/console.h>

#include <gtest/gtest.h>

namespace {

TEST(ConsoleColorAttribute, WholeTableAndEdges) {
    // Bits of 0 black, 1 red, 2 green, 3 yellow, 4 blue, 5 magenta, 6 cyan,
    // 7 white, 9 default (7 as foreground, none as background), others none.
    const unsigned bits[16] = {0, 4, 2, 6, 1, 5, 3, 7, 0, 7, 0, 0, 0, 0, 0, 0};
    for (int f = 0; f < 32; ++f) {
        for (int b = 0; b < 32; ++b) {
            const unsigned fg = bits[f & 15] + ((f & 0x10) && (f & 15) != 9 ? 0x08 : 0);
            const unsigned bg = (b & 15) == 9 ? 0 : bits[b & 15] * 16 + (b & 0x10 ? 0x80 : 0);
            EXPECT_EQ(fg + bg, pd_console_color_attribute(f, b)) << f << "," << b;
            // Bits above the bright bit, negative numbers included, change nothing.
            EXPECT_EQ(fg + bg, pd_console_color_attribute(f | ~0xFF, b | 0x20)) << f << "," << b;
        }
    }
}

} // namespace
