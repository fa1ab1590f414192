// pd_console_create in child processes under an X display: with a stand-in
// terminal program first on PATH that records what it gets, and once with the
// real xterm.
#include <wxsupport/console/console.h>

#include "child_process.h"
#include "tempdir.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include <dirent.h>
#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/stat.h>
#include <termios.h>
#include <unistd.h>

namespace {

class ConsoleWindow : public ::testing::Test {
protected:
    void SetUp() override {
        bin_ = dir_.file("bin");
        ASSERT_EQ(0, mkdir(bin_.c_str(), 0755));
        // The stand-in terminal (fake_xterm.cpp) under the name xterm.
        ASSERT_EQ(0, symlink(FAKE_XTERM, (bin_ + "/xterm").c_str()));
    }

    // In the child: the stand-in first on PATH, stdout on a plain file.
    std::string PrepareChild(const char* fail = nullptr) const {
        const std::string path = bin_ + ":" + (getenv("PATH") ? getenv("PATH") : "/usr/bin:/bin");
        setenv("PATH", path.c_str(), 1);
        setenv("STANDIN_DIR", dir_.path().c_str(), 1);
        setenv("STANDIN_PROMPT", "input please\r\n", 1); // the whole line, newline included
        setenv("STANDIN_INPUT", "typed text", 1);
        if (fail)
            setenv("STANDIN_FAIL", fail, 1);
        const int fd = open(dir_.file("stdout").c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
        if (fd < 0 || dup2(fd, STDOUT_FILENO) < 0)
            return "can't redirect stdout; ";
        close(fd);
        return "";
    }

    // Waits until the stand-in has ended (the console hung up) and gives
    // what it received.
    std::string StandInOutput() const {
        const std::string pid_text = ReadFileBytes(dir_.file("pid"));
        const pid_t pid = static_cast<pid_t>(std::atoi(pid_text.c_str()));
        for (int i = 0; i < 200 && pid > 0 && kill(pid, 0) == 0; ++i)
            std::this_thread::sleep_for(std::chrono::milliseconds(50));
        EXPECT_FALSE(pid > 0 && kill(pid, 0) == 0) << "stand-in terminal still running";
        return ReadFileBytes(dir_.file("output"));
    }

    std::vector<std::string> StandInArgs() const {
        std::vector<std::string> args;
        std::istringstream in(ReadFileBytes(dir_.file("args")));
        for (std::string line; std::getline(in, line);)
            args.push_back(line);
        return args;
    }

    TempDir dir_;
    std::string bin_;
};

// Processes whose parent is this one (zombies included).
int ChildrenOfThisProcess() {
    int count = 0;
    DIR* proc = opendir("/proc");
    if (!proc)
        return -1;
    while (dirent* e = readdir(proc)) {
        if (e->d_name[0] < '0' || e->d_name[0] > '9')
            continue;
        std::ifstream stat(std::string("/proc/") + e->d_name + "/stat");
        std::string line;
        std::getline(stat, line);
        const size_t close_paren = line.rfind(')');
        if (close_paren == std::string::npos)
            continue;
        std::istringstream rest(line.substr(close_paren + 2));
        char state;
        long ppid = 0;
        rest >> state >> ppid;
        if (ppid == getpid())
            ++count;
    }
    closedir(proc);
    return count;
}

TEST_F(ConsoleWindow, CreateBindsTheStandardStreams) {
    const std::string problems = RunInChild([this]() -> std::string {
        std::string p = PrepareChild();
        std::printf("before the console\n");
        if (pd_console_create() != 1)
            return p + "pd_console_create gave no console";
        for (int fd = 0; fd <= 2; ++fd)
            if (!isatty(fd))
                p += "descriptor " + std::to_string(fd) + " is no terminal; ";
        const std::string tty = DescribeFd(STDOUT_FILENO);
        if (DescribeFd(STDIN_FILENO) != tty || DescribeFd(STDERR_FILENO) != tty)
            p += "streams on different terminals; ";
        if (ChildrenOfThisProcess() != 0)
            p += "a child process remains; ";

        std::printf("printf line\n");
        std::cout << "cout line" << std::endl;
        std::fprintf(stderr, "stderr line\n");
        std::cerr << "cerr line\n";
        std::cout << "input please" << std::endl;
        std::string typed;
        std::getline(std::cin, typed);
        std::cout << "read <" << typed << ">\n";
        // Unbuffered: what printf writes is out before the direct write.
        std::printf("A");
        if (write(STDOUT_FILENO, "B", 1) != 1)
            p += "write failed; ";
        std::printf("C\n");
        std::cout << "D";
        if (write(STDOUT_FILENO, "E\n", 2) != 2)
            p += "write failed; ";

        // A second call changes nothing.
        if (pd_console_create() != 0)
            p += "second pd_console_create didn't give 0; ";
        if (DescribeFd(STDOUT_FILENO) != tty || DescribeFd(STDIN_FILENO) != tty)
            p += "second call rebound the streams; ";
        std::printf("after the second call\n");
        return p;
    });
    EXPECT_EQ("", problems);

    // The typed line is echoed, as a terminal does.
    EXPECT_EQ("printf line\r\ncout line\r\nstderr line\r\ncerr line\r\ninput please\r\n"
              "typed text\r\nread <typed text>\r\nABC\r\nDE\r\nafter the second call\r\n",
              StandInOutput());
    EXPECT_EQ("before the console\n", ReadFileBytes(dir_.file("stdout")));

    // One terminal, titled with the program's name, with 500 lines of
    // scroll-back, attached to a pseudo-terminal.
    const std::vector<std::string> args = StandInArgs();
    auto after = [&args](const std::string& option) -> std::string {
        for (size_t i = 0; i + 1 < args.size(); ++i)
            if (args[i] == option)
                return args[i + 1];
        return "";
    };
    EXPECT_EQ("500", after("-sl"));
    EXPECT_EQ(program_invocation_short_name, after("-T"));
    ASSERT_FALSE(args.empty());
    EXPECT_EQ(0u, args.back().rfind("-S/dev/pts/", 0)) << args.back();
}

TEST_F(ConsoleWindow, FailsWhenStdoutIsATerminal) {
    const std::string problems = RunInChild([this]() -> std::string {
        std::string p = PrepareChild();
        int master, slave;
        if (!OpenPty(&master, &slave))
            return "no pseudo-terminal";
        dup2(slave, STDOUT_FILENO);
        const std::string in = DescribeFd(STDIN_FILENO);
        const std::string out = DescribeFd(STDOUT_FILENO);
        const std::string err = DescribeFd(STDERR_FILENO);
        if (pd_console_create() != 0)
            p += "pd_console_create gave a console; ";
        if (DescribeFd(STDIN_FILENO) != in || DescribeFd(STDOUT_FILENO) != out ||
            DescribeFd(STDERR_FILENO) != err)
            p += "streams changed; ";
        std::printf("still here\n");
        std::fflush(stdout);
        if (DrainMaster(master, 200) != "still here\r\n")
            p += "stdout no longer on its terminal; ";
        return p;
    });
    EXPECT_EQ("", problems);
    EXPECT_FALSE(FileExists(dir_.file("args"))) << "a terminal was started";
}

TEST_F(ConsoleWindow, FailsWhenNoTerminalStarts) {
    const std::string problems = RunInChild([this]() -> std::string {
        std::string p = PrepareChild("1");
        const std::string out = DescribeFd(STDOUT_FILENO);
        const std::string in = DescribeFd(STDIN_FILENO);
        const auto start = std::chrono::steady_clock::now();
        if (pd_console_create() != 0)
            p += "gave a console though the terminal failed; ";
        if (std::chrono::steady_clock::now() - start > std::chrono::seconds(5))
            p += "took too long to notice; ";
        if (DescribeFd(STDOUT_FILENO) != out || DescribeFd(STDIN_FILENO) != in)
            p += "streams changed; ";
        if (ChildrenOfThisProcess() != 0)
            p += "a child process remains; ";

        // No terminal program at all.
        const std::string empty = std::string(getenv("STANDIN_DIR")) + "/nothing";
        mkdir(empty.c_str(), 0755);
        setenv("PATH", empty.c_str(), 1);
        if (pd_console_create() != 0)
            p += "gave a console without a terminal program; ";

        // A failure isn't remembered: with a working terminal it succeeds.
        unsetenv("STANDIN_FAIL");
        setenv("PATH", (std::string(getenv("STANDIN_DIR")) + "/bin").c_str(), 1);
        if (pd_console_create() != 1)
            p += "no console after earlier failures; ";
        std::printf("works now\n");
        return p;
    });
    EXPECT_EQ("", problems);
    EXPECT_EQ("works now\r\n", StandInOutput());
    EXPECT_EQ("", ReadFileBytes(dir_.file("stdout")));
}

// A GUI program may start with its standard descriptors closed; the console
// must then not take one of them for itself.
TEST_F(ConsoleWindow, WorksWithClosedStandardDescriptors) {
    const std::string problems = RunInChild([this]() -> std::string {
        std::string p = PrepareChild();
        close(STDIN_FILENO);
        close(STDOUT_FILENO);
        close(STDERR_FILENO);
        if (pd_console_create() != 1)
            return p + "no console";
        // Each is a terminal that programs started from here inherit.
        for (int fd = 0; fd <= 2; ++fd)
            if (!isatty(fd) || (fcntl(fd, F_GETFD) & FD_CLOEXEC))
                p += "descriptor " + std::to_string(fd) + " isn't an inherited terminal; ";
        std::printf("out\n");
        std::fprintf(stderr, "err\n");
        return p;
    });
    EXPECT_EQ("", problems);
    EXPECT_EQ("out\r\nerr\r\n", StandInOutput());
}

// Process ids of running xterm processes attached to the given pseudo-terminal.
std::vector<pid_t> XtermsOn(const std::string& pts) {
    std::vector<pid_t> found;
    DIR* proc = opendir("/proc");
    if (!proc)
        return found;
    while (dirent* e = readdir(proc)) {
        if (e->d_name[0] < '0' || e->d_name[0] > '9')
            continue;
        std::ifstream in(std::string("/proc/") + e->d_name + "/cmdline");
        std::string cmdline((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
        if (cmdline.rfind("xterm", 0) == 0 && cmdline.find("-S" + pts + "/") != std::string::npos)
            found.push_back(static_cast<pid_t>(std::atoi(e->d_name)));
    }
    closedir(proc);
    return found;
}

std::string Command(const std::string& command) {
    std::string out;
    if (FILE* p = popen(command.c_str(), "r")) {
        char buffer[4096];
        size_t n;
        while ((n = fread(buffer, 1, sizeof buffer, p)) > 0)
            out.append(buffer, n);
        pclose(p);
    }
    return out;
}

// The real xterm: a window appears with the program's name, the text goes
// through (xterm answers a cursor position query after it), and the window
// goes away when the program ends.
TEST(ConsoleRealXterm, WindowShowsTheOutput) {
    ASSERT_TRUE(getenv("DISPLAY")) << "needs an X display";
    int to_parent[2], to_child[2];
    ASSERT_EQ(0, pipe(to_parent));
    ASSERT_EQ(0, pipe(to_child));
    TempDir dir;
    const std::string out_file = dir.file("stdout");

    std::string pts;
    std::thread parent_side([&]() {
        // The child tells the terminal's name once its text is on screen.
        char buffer[256];
        const ssize_t n = read(to_parent[0], buffer, sizeof buffer);
        if (n > 0)
            pts.assign(buffer, static_cast<size_t>(n));
        if (!pts.empty() && pts != "-") {
            EXPECT_EQ(1u, XtermsOn(pts).size()) << "no xterm on " << pts;
            const std::string tree = Command("xwininfo -root -tree");
            EXPECT_NE(std::string::npos,
                      tree.find(std::string("\"") + program_invocation_short_name + "\""))
                << tree;
            if (const char* shot = getenv("WXS_CONSOLE_SCREENSHOT"))
                Command(std::string("import -window root ") + shot);
        }
        close(to_child[1]);
    });

    const std::string problems = RunInChild([&]() -> std::string {
        close(to_child[1]);
        const int fd = open(out_file.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
        dup2(fd, STDOUT_FILENO);
        close(fd);
        if (pd_console_create() != 1) {
            return write(to_parent[1], "-", 1) == 1 ? "no console with the real xterm"
                                                    : "no console, and the pipe failed";
        }
        std::string p;
        std::printf("plain text\n");
        const int colours[] = {1, 2, 3, 4, 5, 6, 7};
        for (int c : colours) {
            pd_console_set_color(c | 0x10, 0);
            std::printf("colour %d ", c);
            pd_console_set_color(7, c);
            std::printf(" on %d \n", c);
        }
        pd_console_set_color(9, 9);
        std::cout << "iostream text" << std::flush;

        // Ask xterm where the cursor is: it can only answer "row;14R" once it
        // has shown "iostream text".
        termios saved, raw;
        tcgetattr(STDIN_FILENO, &saved);
        raw = saved;
        raw.c_lflag &= ~static_cast<tcflag_t>(ICANON | ECHO);
        tcsetattr(STDIN_FILENO, TCSANOW, &raw);
        std::printf("\033[6n");
        std::string answer;
        while (answer.empty() || answer.back() != 'R') {
            pollfd pf = {STDIN_FILENO, POLLIN, 0};
            char c;
            if (poll(&pf, 1, 10000) <= 0 || read(STDIN_FILENO, &c, 1) != 1)
                break;
            answer += c;
        }
        tcsetattr(STDIN_FILENO, TCSANOW, &saved);
        if (answer.size() < 6 || answer.compare(0, 2, "\033[") != 0 ||
            answer.compare(answer.size() - 4, 4, ";14R") != 0)
            p += "cursor report '" + answer.substr(answer.empty() ? 0 : 1) + "'; ";

        const char* name = ttyname(STDOUT_FILENO);
        const std::string tty = name ? name : "?";
        if (write(to_parent[1], tty.data(), tty.size()) != static_cast<ssize_t>(tty.size()))
            p += "pipe to the parent failed; ";
        char c;
        if (read(to_child[0], &c, 1) != 0) // until the parent has looked
            p += "unexpected byte from the parent; ";
        return p;
    });
    close(to_parent[1]);
    parent_side.join();
    close(to_parent[0]);
    close(to_child[0]);
    EXPECT_EQ("", problems);
    ASSERT_FALSE(pts.empty());

    // The window ends with the program.
    bool gone = false;
    for (int i = 0; i < 100 && !gone; ++i) {
        gone = XtermsOn(pts).empty();
        if (!gone)
            std::this_thread::sleep_for(std::chrono::milliseconds(100));
    }
    EXPECT_TRUE(gone) << "xterm still running after the program ended";
    EXPECT_EQ("", ReadFileBytes(out_file));
}

} // namespace
