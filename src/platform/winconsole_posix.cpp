// Console operations on POSIX systems with X11. The console is a
// pseudo-terminal shown in an xterm window that attaches to it with -S; its
// screen buffer is the window's scroll-back.
//
// - The window is started through a short-lived intermediate process that is
//   reaped at once, so it is no child of the host: no zombie remains and the
//   host's own wait calls never see it. It lives until the user closes it or
//   the host ends (xterm then sees the pseudo-terminal hang up and exits).
//   Once it is closed, writes to the console fail quietly (the terminal isn't
//   the host's controlling terminal, so no SIGHUP comes).
// - The window's title is the program's name.
// - Colours are written in-band as ANSI SGR sequences, through the stdio
//   stream so that they stay in order with the text around them.
//
// A process gets one console: that is platform state, kept here, not state of
// the library.
#include "platform/winconsole.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <string>

#include <fcntl.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

#if defined(__GLIBC__)
#include <stdio_ext.h>
#endif

namespace {

// Scroll-back the window starts with: the 500-line screen buffer that
// pd_console_create asks for at once (xterm can't change it later).
const int kScrollBackLines = 500;
// How long the terminal may take to show its window.
const int kStartTimeoutMs = 10000;

struct PosixConsole {
    bool allocated = false;
    int slave = -1; // the console's descriptor; never closed
    int lines = kScrollBackLines;
};

PosixConsole g_console;

std::string ProgramName() {
#if defined(__GLIBC__)
    return program_invocation_short_name;
#else
    const char* name = getprogname();
    return name ? name : "console";
#endif
}

long long MonotonicMs() {
    timespec ts;
    clock_gettime(CLOCK_MONOTONIC, &ts);
    return static_cast<long long>(ts.tv_sec) * 1000 + ts.tv_nsec / 1000000;
}

// Starts xterm on the pseudo-terminal whose master is `master` (close-on-exec,
// cleared in the terminal's process only). False when no process could be
// started; a terminal that fails later shows as a hang-up on the slave side.
bool StartTerminal(int master, const char* slave_name) {
    const std::string title = ProgramName();
    const std::string lines = std::to_string(kScrollBackLines);
    const std::string attach = std::string("-S") + slave_name + "/" + std::to_string(master);
    const char* argv[] = {"xterm", "-T",  title.c_str(), "-n",           title.c_str(),
                          "-sb",   "-sl", lines.c_str(), attach.c_str(), nullptr};

    const pid_t child = fork();
    if (child < 0)
        return false;
    if (child == 0) {
        // Only async-signal-safe calls from here on (the host may have
        // threads), and execvp, which searches PATH without allocating.
        setsid();
        const pid_t terminal = fork();
        if (terminal != 0)
            _exit(terminal < 0 ? 1 : 0);
        fcntl(master, F_SETFD, 0);
        execvp(argv[0], const_cast<char* const*>(argv));
        _exit(127);
    }
    int status = 0;
    while (waitpid(child, &status, 0) < 0) {
        if (errno != EINTR)
            return errno == ECHILD; // SIGCHLD ignored: reaped already
    }
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

// xterm -S writes its window id and a newline first; that line is read and
// dropped. False on hang-up (the terminal failed) or when it takes too long.
bool ReadWindowId(int slave) {
    const long long deadline = MonotonicMs() + kStartTimeoutMs;
    for (int length = 0; length < 64; ++length) {
        char c = 0;
        for (;;) {
            const long long remaining = deadline - MonotonicMs();
            if (remaining <= 0)
                return false;
            pollfd p = {slave, POLLIN, 0};
            const int r = poll(&p, 1, static_cast<int>(remaining));
            if (r < 0 && errno == EINTR)
                continue;
            if (r <= 0)
                return false;
            const ssize_t n = read(slave, &c, 1);
            if (n < 0 && (errno == EINTR || errno == EAGAIN))
                continue;
            if (n != 1)
                return false;
            break;
        }
        if (c == '\n')
            return true;
    }
    return false;
}

// Moves a descriptor above the three standard ones, which a GUI program may
// have closed: the console's own descriptors must not be what dup2 later
// replaces. Gives the new descriptor (close-on-exec), or -1.
int AboveStandard(int fd) {
    if (fd < 0 || fd > STDERR_FILENO)
        return fd;
    const int moved = fcntl(fd, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
    close(fd);
    return moved;
}

int Descriptor(ConsoleStd which) {
    return which == console_stdin    ? STDIN_FILENO
           : which == console_stdout ? STDOUT_FILENO
                                     : STDERR_FILENO;
}

FILE* Stream(ConsoleStd which) {
    return which == console_stdin ? stdin : which == console_stdout ? stdout : stderr;
}

// Windows attribute colour bits (1 blue, 2 green, 4 red) to an ANSI colour
// number (1 red, 2 green, 4 blue).
unsigned AnsiColour(unsigned bits) {
    return ((bits & 4u) ? 1u : 0u) | (bits & 2u) | ((bits & 1u) ? 4u : 0u);
}

} // namespace

bool console_alloc() {
    if (g_console.allocated || isatty(STDOUT_FILENO))
        return false;
    const int master = AboveStandard(posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC));
    if (master < 0)
        return false;
    char name[128];
    if (grantpt(master) != 0 || unlockpt(master) != 0 ||
        ptsname_r(master, name, sizeof name) != 0) {
        close(master);
        return false;
    }
    const int slave = AboveStandard(open(name, O_RDWR | O_NOCTTY | O_CLOEXEC));
    if (slave < 0) {
        close(master);
        return false;
    }
    // No echo while the terminal announces itself, or its window id would
    // show on the screen.
    termios saved;
    const bool have_termios = tcgetattr(slave, &saved) == 0;
    if (have_termios) {
        termios quiet = saved;
        quiet.c_lflag &= ~static_cast<tcflag_t>(ECHO | ECHONL);
        tcsetattr(slave, TCSANOW, &quiet);
    }
    const bool started = StartTerminal(master, name);
    close(master); // the terminal holds it now
    if (!started || !ReadWindowId(slave)) {
        close(slave);
        return false;
    }
    if (have_termios)
        tcsetattr(slave, TCSANOW, &saved);
    g_console.allocated = true;
    g_console.slave = slave;
    return true;
}

bool console_buffer_size(ConsoleStd /*which*/, int* columns, int* lines) {
    if (!g_console.allocated)
        return false;
    winsize ws;
    const bool known = ioctl(g_console.slave, TIOCGWINSZ, &ws) == 0 && ws.ws_col > 0;
    *columns = known ? ws.ws_col : 80;
    *lines = g_console.lines;
    return true;
}

bool console_set_buffer_size(ConsoleStd /*which*/, int columns, int lines) {
    if (!g_console.allocated || columns < 1 || lines < 1)
        return false;
    g_console.lines = lines;
    return true;
}

bool console_bind_stream(ConsoleStd which) {
    if (!g_console.allocated)
        return false;
    FILE* stream = Stream(which);
    if (which == console_stdin) {
#if defined(__GLIBC__)
        __fpurge(stream); // input read ahead from the old source is dropped
#endif
    } else {
        fflush(stream); // output from before goes where it was meant to go
    }
    if (dup2(g_console.slave, Descriptor(which)) < 0)
        return false;
    clearerr(stream);
    return setvbuf(stream, nullptr, _IONBF, 0) == 0;
}

void console_set_text_attribute(ConsoleStd which, unsigned short attribute) {
    if (which == console_stdin)
        return;
    FILE* stream = Stream(which);
    if (!isatty(Descriptor(which)))
        return;
    // 0x07, the console's default, is the terminal's own default colours.
    // Otherwise: reset, then foreground 30-37 (90-97 when intense) and
    // background 40-47 (100-107 when intense).
    char sequence[32];
    if (attribute == 0x07) {
        std::snprintf(sequence, sizeof sequence, "\033[0m");
    } else {
        const unsigned fg = attribute & 0x0Fu;
        const unsigned bg = (attribute >> 4) & 0x0Fu;
        std::snprintf(sequence, sizeof sequence, "\033[0;%u;%um",
                      ((fg & 8u) ? 90u : 30u) + AnsiColour(fg),
                      ((bg & 8u) ? 100u : 40u) + AnsiColour(bg));
    }
    std::fputs(sequence, stream);
    std::fflush(stream);
}
