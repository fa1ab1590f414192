#include "child_process.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

std::string RunInChild(const std::function<std::string()>& body) {
    int pipe_fds[2];
    if (pipe(pipe_fds) != 0)
        return "pipe failed";
    fflush(stdout);
    fflush(stderr);
    const pid_t pid = fork();
    if (pid < 0)
        return "fork failed";
    if (pid == 0) {
        close(pipe_fds[0]);
        alarm(60);
        const std::string problems = body();
        size_t done = 0;
        while (done < problems.size()) {
            const ssize_t n = write(pipe_fds[1], problems.data() + done, problems.size() - done);
            if (n <= 0)
                break;
            done += static_cast<size_t>(n);
        }
        close(pipe_fds[1]);
        _exit(0);
    }
    close(pipe_fds[1]);
    std::string report;
    char buffer[4096];
    for (;;) {
        const ssize_t n = read(pipe_fds[0], buffer, sizeof buffer);
        if (n < 0 && errno == EINTR)
            continue;
        if (n <= 0)
            break;
        report.append(buffer, static_cast<size_t>(n));
    }
    close(pipe_fds[0]);
    int status = 0;
    while (waitpid(pid, &status, 0) < 0 && errno == EINTR) {
    }
    if (WIFSIGNALED(status))
        report += "child killed by signal " + std::to_string(WTERMSIG(status));
    else if (!WIFEXITED(status) || WEXITSTATUS(status) != 0)
        report += "child exited with " + std::to_string(WEXITSTATUS(status));
    return report;
}

std::string DescribeFd(int fd) {
    struct stat st;
    if (fstat(fd, &st) != 0)
        return "closed";
    if (isatty(fd)) {
        const char* name = ttyname(fd);
        return std::string("tty:") + (name ? name : "?");
    }
    return std::to_string(st.st_dev) + ":" + std::to_string(st.st_ino);
}

bool OpenPty(int* master, int* slave) {
    const int m = posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC);
    if (m < 0)
        return false;
    const char* name = (grantpt(m) == 0 && unlockpt(m) == 0) ? ptsname(m) : nullptr;
    const int s = name ? open(name, O_RDWR | O_NOCTTY | O_CLOEXEC) : -1;
    if (s < 0) {
        close(m);
        return false;
    }
    fcntl(m, F_SETFL, fcntl(m, F_GETFL) | O_NONBLOCK);
    *master = m;
    *slave = s;
    return true;
}

std::string DrainMaster(int master, int wait_ms) {
    std::string out;
    char buffer[1024];
    for (;;) {
        pollfd p = {master, POLLIN, 0};
        if (poll(&p, 1, wait_ms) <= 0)
            break;
        const ssize_t n = read(master, buffer, sizeof buffer);
        if (n <= 0)
            break;
        out.append(buffer, static_cast<size_t>(n));
    }
    return out;
}
