#include "child_process.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>

#include <dirent.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

ChildResult RunInChild(const std::function<int(int reportFd)>& body) {
    ChildResult result;
    int fds[2];
    if (pipe(fds) != 0)
        return result;
    const pid_t pid = fork();
    if (pid < 0) {
        close(fds[0]);
        close(fds[1]);
        return result;
    }
    if (pid == 0) {
        close(fds[0]);
        const int status = body(fds[1]);
        close(fds[1]);
        _exit(status);
    }
    close(fds[1]);
    char buf[4096];
    ssize_t n;
    while ((n = read(fds[0], buf, sizeof buf)) != 0) {
        if (n < 0) {
            if (errno == EINTR)
                continue;
            break;
        }
        result.report.append(buf, static_cast<size_t>(n));
    }
    close(fds[0]);
    int wstatus = 0;
    while (waitpid(pid, &wstatus, 0) < 0 && errno == EINTR) {
    }
    result.exited = WIFEXITED(wstatus);
    result.status = result.exited ? WEXITSTATUS(wstatus) : WTERMSIG(wstatus);
    return result;
}

pid_t StartChild(const std::function<int()>& body) {
    const pid_t pid = fork();
    if (pid == 0)
        _exit(body());
    return pid;
}

void WriteAll(int fd, const std::string& text) {
    size_t done = 0;
    while (done < text.size()) {
        const ssize_t n = write(fd, text.data() + done, text.size() - done);
        if (n < 0 && errno == EINTR)
            continue;
        if (n <= 0)
            return;
        done += static_cast<size_t>(n);
    }
}

std::vector<std::string> ListDir(const std::string& dir) {
    std::vector<std::string> names;
    if (DIR* d = opendir(dir.c_str())) {
        while (const dirent* e = readdir(d)) {
            const std::string name = e->d_name;
            if (name != "." && name != "..")
                names.push_back(name);
        }
        closedir(d);
    }
    std::sort(names.begin(), names.end());
    return names;
}
