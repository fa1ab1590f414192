#include "child_process.h"

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

std::string ChildResult::describe() const {
    if (exited)
        return "exit status " + std::to_string(status);
    if (status < 0)
        return "not started";
    return "signal " + std::to_string(status) + " (" + strsignal(status) + ")";
}

ChildProcess::ChildProcess(const ChildBody& body, int timeLimitSeconds) {
    int fds[2];
    if (pipe2(fds, O_CLOEXEC) != 0)
        return;
    std::fflush(nullptr); // or buffered output would be written twice
    m_pid = fork();
    if (m_pid == 0) {
        close(fds[0]);
        if (timeLimitSeconds > 0)
            alarm(static_cast<unsigned>(timeLimitSeconds));
        const int status = body(fds[1]);
        std::fflush(nullptr);
        _exit(status);
    }
    close(fds[1]);
    if (m_pid < 0)
        close(fds[0]);
    else
        m_reportFd = fds[0];
}

ChildProcess::~ChildProcess() {
    if (started() && !m_reaped)
        kill(m_pid, SIGKILL);
    if (started())
        Reap(true);
    if (m_reportFd >= 0)
        close(m_reportFd);
}

void ChildProcess::Reap(bool block) {
    if (m_reaped)
        return;
    int status = 0;
    pid_t got;
    while ((got = waitpid(m_pid, &status, block ? 0 : WNOHANG)) < 0 && errno == EINTR) {
    }
    if (got == m_pid || got < 0) { // < 0: nothing left to wait for
        m_reaped = true;
        m_waitStatus = status;
    }
}

bool ChildProcess::Finished() {
    if (!started())
        return true;
    Reap(false);
    return m_reaped;
}

ChildResult ChildProcess::Wait() {
    ChildResult result;
    if (!started())
        return result;
    char buffer[4096];
    for (ssize_t n; m_reportFd >= 0 && (n = read(m_reportFd, buffer, sizeof buffer)) != 0;) {
        if (n > 0)
            result.report.append(buffer, static_cast<size_t>(n));
        else if (errno != EINTR)
            break;
    }
    Reap(true);
    result.exited = WIFEXITED(m_waitStatus);
    result.status = result.exited               ? WEXITSTATUS(m_waitStatus)
                    : WIFSIGNALED(m_waitStatus) ? WTERMSIG(m_waitStatus)
                                                : -1;
    return result;
}

ChildResult ChildProcess::Kill(int signal) {
    if (started() && !m_reaped)
        kill(m_pid, signal);
    return Wait();
}

ChildResult RunInChild(const ChildBody& body, int timeLimitSeconds) {
    return ChildProcess(body, timeLimitSeconds).Wait();
}

std::string ProblemsInChild(const std::function<std::string()>& body, int timeLimitSeconds) {
    const ChildResult r = RunInChild(
        [&body](int reportFd) { return WriteAll(reportFd, body()) ? 0 : 1; }, timeLimitSeconds);
    return r.ok() ? r.report : r.report + "child ended with " + r.describe();
}

bool WriteAll(int fd, const std::string& text) {
    size_t done = 0;
    while (done < text.size()) {
        const ssize_t n = write(fd, text.data() + done, text.size() - done);
        if (n < 0 && errno == EINTR)
            continue;
        if (n <= 0)
            return false;
        done += static_cast<size_t>(n);
    }
    return true;
}
