// Colours of the console: the attribute mapping against the full table, and
// the escape sequences that pd_console_set_color writes to terminals (and
// doesn't write to pipes).
#include <wxsupport/console/console.h>

#include "child_process.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <string>

#include <unistd.h>

namespace {

// Attribute bits of colour numbers 0-15 as foreground, as the table gives
// them: 0 black, 1 red (4), 2 green (2), 3 yellow (6), 4 blue (1), 5 magenta
// (5), 6 cyan (3), 7 white (7), 8 and 10-15 nothing, 9 default (7).
const unsigned kTableForeground[16] = {0, 4, 2, 6, 1, 5, 3, 7, 0, 7, 0, 0, 0, 0, 0, 0};
const unsigned kTableBackground[16] = {0, 0x40, 0x20, 0x60, 0x10, 0x50, 0x30, 0x70,
                                       0, 0,    0,    0,    0,    0,    0,    0};

TEST(ConsoleColorAttribute, WholeTable) {
    for (int fg = 0; fg < 16; ++fg) {
        for (int bg = 0; bg < 16; ++bg) {
            for (int bright = 0; bright < 4; ++bright) {
                const bool fg_bright = bright & 1;
                const bool bg_bright = bright & 2;
                unsigned expected = kTableForeground[fg] + kTableBackground[bg];
                if (fg_bright && fg != 9)
                    expected += 0x08;
                if (bg_bright && bg != 9)
                    expected += 0x80;
                const int f = fg | (fg_bright ? 0x10 : 0);
                const int b = bg | (bg_bright ? 0x10 : 0);
                EXPECT_EQ(expected, pd_console_color_attribute(f, b)) << f << "," << b;
                // Bits above the bright bit change nothing.
                EXPECT_EQ(expected, pd_console_color_attribute(f | 0x7FFFFF00, b | 0x20))
                    << f << "," << b;
            }
        }
    }
}

TEST(ConsoleColorAttribute, NamedCases) {
    EXPECT_EQ(12, pd_console_color_attribute(0x11, 0));   // bright red on black
    EXPECT_EQ(0x12, pd_console_color_attribute(2, 4));    // green on blue
    EXPECT_EQ(7, pd_console_color_attribute(9, 9));       // default
    EXPECT_EQ(7, pd_console_color_attribute(0x19, 0x19)); // 9 ignores bright
    EXPECT_EQ(0x88, pd_console_color_attribute(0x18, 0x18));
    EXPECT_EQ(0, pd_console_color_attribute(8, 8));
    EXPECT_EQ(0, pd_console_color_attribute(0, 0));
    EXPECT_EQ(pd_console_color_attribute(2, 0), pd_console_color_attribute(0x102, 0));
    EXPECT_EQ(0xFF, pd_console_color_attribute(0x17, 0x17)); // bright white on bright white
    EXPECT_EQ(0x8F, pd_console_color_attribute(0x17, 0x10)); // bright white on grey
    // Negative numbers are taken by their low bits: -1 is bright 15, no colour.
    EXPECT_EQ(0x88, pd_console_color_attribute(-1, -1));
    EXPECT_EQ(pd_console_color_attribute(0x11, 0x14),
              pd_console_color_attribute(-0x100 + 0x11, -0x100 + 0x14));
}

// The sequences that reach a terminal on stdout and one on stderr.
struct Written {
    std::string out, err;
};

std::string Escaped(const std::string& s) {
    std::string r;
    for (char c : s)
        r += c == '\033' ? std::string("\\e") : std::string(1, c);
    return r;
}

TEST(ConsoleSetColor, WritesSgrToTerminals) {
    struct Case {
        int fg, bg;
        const char* sequence;
    } cases[] = {
        {0x11, 4, "\033[0;91;44m"},     {2, 4, "\033[0;32;44m"}, {1, 0, "\033[0;31;40m"},
        {3, 6, "\033[0;33;46m"},        {5, 7, "\033[0;35;47m"}, {0x14, 0x13, "\033[0;94;103m"},
        {0x18, 0x18, "\033[0;90;100m"}, {0, 0, "\033[0;30;40m"}, {9, 9, "\033[0m"},
        {9, 1, "\033[0;37;41m"},        {7, 9, "\033[0m"},       {0x17, 0, "\033[0;97;40m"},
    };
    const std::string problems = RunInChild([&cases]() -> std::string {
        int out_master, out_slave, err_master, err_slave;
        if (!OpenPty(&out_master, &out_slave) || !OpenPty(&err_master, &err_slave))
            return "no pseudo-terminal";
        dup2(out_slave, STDOUT_FILENO);
        dup2(err_slave, STDERR_FILENO);
        std::string p;
        for (const Case& c : cases) {
            pd_console_set_color(c.fg, c.bg);
            const std::string out = DrainMaster(out_master, 50);
            const std::string err = DrainMaster(err_master, 50);
            const std::string which = std::to_string(c.fg) + "," + std::to_string(c.bg);
            if (out != c.sequence)
                p += which + ": stdout got '" + Escaped(out) + "'; ";
            if (err != c.sequence)
                p += which + ": stderr got '" + Escaped(err) + "'; ";
        }
        return p;
    });
    EXPECT_EQ("", problems);
}

TEST(ConsoleSetColor, StaysInOrderWithBufferedText) {
    const std::string problems = RunInChild([]() -> std::string {
        int master, slave;
        if (!OpenPty(&master, &slave))
            return "no pseudo-terminal";
        dup2(slave, STDOUT_FILENO);
        static char buffer[256];
        setvbuf(stdout, buffer, _IOFBF, sizeof buffer);
        std::printf("before");
        pd_console_set_color(1, 0);
        std::printf("after");
        std::fflush(stdout);
        const std::string out = DrainMaster(master, 50);
        return out == "before\033[0;31;40mafter" ? "" : "got '" + Escaped(out) + "'";
    });
    EXPECT_EQ("", problems);
}

TEST(ConsoleSetColor, WritesNothingToPipesOrFiles) {
    const std::string problems = RunInChild([]() -> std::string {
        int out_pipe[2], err_pipe[2];
        if (pipe(out_pipe) != 0 || pipe(err_pipe) != 0)
            return "no pipe";
        dup2(out_pipe[1], STDOUT_FILENO);
        dup2(err_pipe[1], STDERR_FILENO);
        close(out_pipe[1]);
        close(err_pipe[1]);
        pd_console_set_color(0x11, 4);
        pd_console_set_color(9, 9);
        std::fflush(stdout);
        std::fflush(stderr);
        close(STDOUT_FILENO);
        close(STDERR_FILENO);
        char c;
        std::string p;
        if (read(out_pipe[0], &c, 1) != 0)
            p += "stdout pipe got bytes; ";
        if (read(err_pipe[0], &c, 1) != 0)
            p += "stderr pipe got bytes; ";
        return p;
    });
    EXPECT_EQ("", problems);

    // A terminal on stderr only: stdout (a pipe) gets nothing, stderr gets
    // the sequence.
    const std::string mixed = RunInChild([]() -> std::string {
        int out_pipe[2], master, slave;
        if (pipe(out_pipe) != 0 || !OpenPty(&master, &slave))
            return "no pipe or pseudo-terminal";
        dup2(out_pipe[1], STDOUT_FILENO);
        close(out_pipe[1]);
        dup2(slave, STDERR_FILENO);
        pd_console_set_color(2, 0);
        std::fflush(stdout);
        close(STDOUT_FILENO);
        char c;
        std::string p;
        if (read(out_pipe[0], &c, 1) != 0)
            p += "stdout pipe got bytes; ";
        const std::string err = DrainMaster(master, 50);
        if (err != "\033[0;32;40m")
            p += "stderr got '" + Escaped(err) + "'";
        return p;
    });
    EXPECT_EQ("", mixed);
}

} // namespace
