// pd_console_create in child processes under an X display: with a stand-in
// terminal program first on PATH that records what it gets, and once with the
// real xterm.
#include <wxsupport/console/console.h>

#include "child_process.h"
#include "pty.h"
#include "tempdir.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <string>
#include <thread>

#include <fcntl.h>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

bool SameFile(int fd, const struct stat& before) {
    struct stat now;
    return fstat(fd, &now) == 0 && now.st_dev == before.st_dev && now.st_ino == before.st_ino;
}

// Waits until a process is gone; false if it is still there after 10 s.
bool Ended(pid_t pid) {
    for (int i = 0; i < 200 && pid > 0 && kill(pid, 0) == 0; ++i)
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
    return pid > 0 && kill(pid, 0) != 0;
}

class ConsoleWindow : public ::testing::Test {
protected:
    // In the child: the stand-in (fake_xterm.cpp) first on PATH as xterm and
    // stdout on a plain file.
    void PrepareChild() const {
        const std::string bin = dir_.file("bin");
        mkdir(bin.c_str(), 0755);
        symlink(FAKE_XTERM, (bin + "/xterm").c_str());
        setenv("PATH", (bin + ":" + getenv("PATH")).c_str(), 1);
        setenv("STANDIN_DIR", dir_.path().c_str(), 1);
        std::freopen(dir_.file("stdout").c_str(), "w", stdout);
    }

    TempDir dir_;
};

TEST_F(ConsoleWindow, CreateBindsTheStandardStreamsOnce) {
    const std::string problems = ProblemsInChild([this]() -> std::string {
        PrepareChild();
        std::printf("before the console\n");
        if (pd_console_create() != 1)
            return "pd_console_create gave no console";
        std::string p;
        struct stat tty;
        fstat(STDOUT_FILENO, &tty);
        for (int fd = 0; fd <= 2; ++fd)
            if (!isatty(fd) || !SameFile(fd, tty))
                p += "descriptor " + std::to_string(fd) + " is not on the console; ";
        std::printf("printf ");
        std::cout << "cout ";
        std::fprintf(stderr, "stderr ");
        if (write(STDOUT_FILENO, "write\n", 6) != 6) // unbuffered: in order
            p += "write failed; ";
        if (pd_console_create() != 0 || !SameFile(STDOUT_FILENO, tty))
            p += "second call didn't give 0 and keep the streams; ";
        std::cout << "after the second call" << std::endl;
        return p;
    });
    EXPECT_EQ("", problems);
    const std::string args = ReadFileBytes(dir_.file("args")); // one a line, then "pid <n>"
    ASSERT_NE(std::string::npos, args.find("pid ")) << args;
    EXPECT_TRUE(Ended(std::atoi(args.c_str() + args.find("pid ") + 4)));
    EXPECT_EQ("printf cout stderr write\r\nafter the second call\r\n",
              ReadFileBytes(dir_.file("output")));
    EXPECT_EQ("before the console\n", ReadFileBytes(dir_.file("stdout")));
    // Titled with the program's name, 500 lines of scroll-back, on a pseudo-terminal.
    for (const std::string& arg : {std::string("-T\n") + program_invocation_short_name + "\n",
                                   std::string("-sl\n500\n"), std::string("\n-S/dev/pts/")})
        EXPECT_NE(std::string::npos, args.find(arg)) << arg;
}

TEST_F(ConsoleWindow, NoConsoleWhenStdoutIsATerminal) {
    const std::string problems = ProblemsInChild([this]() -> std::string {
        PrepareChild();
        int master, slave;
        struct stat in;
        if (fstat(STDIN_FILENO, &in) != 0 || !OpenPty(&master, &slave) || dup2(slave, 1) < 0)
            return "no pseudo-terminal";
        const int result = pd_console_create();
        std::printf("still here\n");
        std::fflush(stdout);
        const bool kept =
            SameFile(STDIN_FILENO, in) && DrainMaster(master, 200) == "still here\r\n";
        return result == 0 && kept ? "" : "gave a console or moved the streams";
    });
    EXPECT_EQ("", problems);
    EXPECT_FALSE(FileExists(dir_.file("args"))) << "a terminal was started";
}

// A GUI program may start with its standard descriptors closed; the console
// must not take one of them for itself.
TEST_F(ConsoleWindow, WorksWithClosedStandardDescriptors) {
    const std::string problems = ProblemsInChild([this]() -> std::string {
        PrepareChild();
        for (int fd = 0; fd <= 2; ++fd)
            close(fd);
        if (pd_console_create() != 1)
            return "no console";
        std::string p;
        for (int fd = 0; fd <= 2; ++fd)
            if (!isatty(fd) || (fcntl(fd, F_GETFD) & FD_CLOEXEC))
                p += "descriptor " + std::to_string(fd) + " isn't an inherited terminal; ";
        return p;
    });
    EXPECT_EQ("", problems);
}

// The real xterm: a console on a terminal of its own that takes the text, and
// an xterm that ends with the program.
TEST(ConsoleRealXterm, WindowComesAndGoes) {
    ASSERT_TRUE(getenv("DISPLAY")) << "needs an X display";
    const ChildResult r = RunInChild([](int report) {
        if (pd_console_create() != 1 || !isatty(STDOUT_FILENO))
            return 1;
        pd_console_set_color(0x11, 0);
        std::printf("red text\n");
        std::cout << "iostream text" << std::endl;
        // The xterm attached to this console (started apart from this process).
        const std::string command = std::string("pgrep -f '^xterm .*-S") + ttyname(1) + "/'";
        FILE* pgrep = popen(command.c_str(), "r");
        char pid[32] = {};
        const bool found = pgrep && std::fgets(pid, sizeof pid, pgrep) && pclose(pgrep) == 0;
        return found && WriteAll(report, pid) ? 0 : 2;
    });
    ASSERT_TRUE(r.ok()) << "1: no console with the real xterm, 2: no xterm child; child ended with "
                        << r.describe();
    EXPECT_TRUE(Ended(std::atoi(r.report.c_str())))
        << "xterm still running after the program ended";
}

} // namespace
