// Console tests run in child processes, since the console functions rebind
// the process's standard streams; pseudo-terminals stand in for consoles.
#pragma once

#include <cstdio>
#include <cstdlib>
#include <functional>
#include <string>

#include <fcntl.h>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

// Runs body in a forked child (60 s time limit) and gives back what it
// returned, its list of problems, and how the child ended if not normally.
inline std::string RunInChild(const std::function<std::string()>& body) {
    int fds[2];
    if (pipe(fds) != 0)
        return "pipe failed";
    std::fflush(nullptr);
    const pid_t pid = fork();
    if (pid == 0) {
        close(fds[0]);
        alarm(60);
        const std::string problems = body();
        _exit(write(fds[1], problems.data(), problems.size()) < 0);
    }
    close(fds[1]);
    std::string report;
    char buffer[4096];
    for (ssize_t n; (n = read(fds[0], buffer, sizeof buffer)) > 0;)
        report.append(buffer, static_cast<size_t>(n));
    close(fds[0]);
    int status = 0;
    if (pid < 0 || waitpid(pid, &status, 0) != pid || !WIFEXITED(status) || WEXITSTATUS(status))
        report += "child ended with status " + std::to_string(status);
    return report;
}

// Opens a pseudo-terminal pair with a non-blocking master. False on failure.
inline bool OpenPty(int* master, int* slave) {
    *master = posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC);
    if (*master < 0 || grantpt(*master) != 0 || unlockpt(*master) != 0)
        return false;
    *slave = open(ptsname(*master), O_RDWR | O_NOCTTY | O_CLOEXEC);
    fcntl(*master, F_SETFL, fcntl(*master, F_GETFL) | O_NONBLOCK);
    return *slave >= 0;
}

// Everything read from a non-blocking master until wait_ms pass without data.
inline std::string DrainMaster(int master, int wait_ms) {
    std::string out;
    char buffer[1024];
    pollfd p = {master, POLLIN, 0};
    for (ssize_t n; poll(&p, 1, wait_ms) > 0 && (n = read(master, buffer, sizeof buffer)) > 0;)
        out.append(buffer, static_cast<size_t>(n));
    return out;
}
