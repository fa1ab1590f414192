// Pseudo-terminals stand in for consoles in the console tests (which run in
// child processes, since the console functions rebind the standard streams).
#pragma once

#include <cstdlib>
#include <string>

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

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
