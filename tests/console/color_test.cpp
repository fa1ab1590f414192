// Console colours on POSIX: the escape sequences pd_console_set_color writes
// to terminals and not to pipes (the mapping itself: tests/platform).
#include <wxsupport/console/console.h>

#include "child_process.h"
#include "pty.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <string>

#include <unistd.h>

namespace {

TEST(ConsoleSetColor, WritesSgrToTerminalsOnly) {
    const std::string problems = ProblemsInChild([]() -> std::string {
        const struct {
            int fg, bg;
            const char* sgr;
        } cases[] = {{0x11, 4, "\033[0;91;44m"},     {2, 4, "\033[0;32;44m"},
                     {0x14, 0x13, "\033[0;94;103m"}, {0x18, 0x18, "\033[0;90;100m"},
                     {0, 0, "\033[0;30;40m"},        {9, 9, "\033[0m"},
                     {9, 1, "\033[0;37;41m"},        {7, 9, "\033[0m"}};
        int out_master, out_slave, err_master, err_slave, fds[2];
        if (!OpenPty(&out_master, &out_slave) || !OpenPty(&err_master, &err_slave) ||
            pipe(fds) != 0)
            return "no pseudo-terminal or pipe";
        dup2(out_slave, STDOUT_FILENO);
        dup2(err_slave, STDERR_FILENO);
        std::string p;
        for (const auto& c : cases) {
            pd_console_set_color(c.fg, c.bg);
            const std::string out = DrainMaster(out_master, 50), err = DrainMaster(err_master, 50);
            if (out != c.sgr || err != c.sgr)
                p += std::to_string(c.fg) + "," + std::to_string(c.bg) + ": '" + out + "' '" + err +
                     "'; ";
        }
        // Text buffered before the call comes out before the sequence.
        static char buffer[256];
        setvbuf(stdout, buffer, _IOFBF, sizeof buffer);
        std::printf("before");
        pd_console_set_color(1, 0);
        std::printf("after");
        std::fflush(stdout);
        if (DrainMaster(out_master, 50) != "before\033[0;31;40mafter")
            p += "out of order with buffered text; ";
        // A pipe on stdout gets nothing; the terminal on stderr still does.
        dup2(fds[1], STDOUT_FILENO);
        close(fds[1]);
        DrainMaster(err_master, 50);
        pd_console_set_color(2, 0);
        std::fflush(stdout);
        close(STDOUT_FILENO);
        char c;
        if (read(fds[0], &c, 1) != 0 || DrainMaster(err_master, 50) != "\033[0;32;40m")
            p += "pipe got bytes or the terminal none; ";
        return p;
    });
    EXPECT_EQ("", problems);
}

} // namespace
