// Child processes for the fault-injection tests: run a function in a fork()ed
// child and collect what it reports, and list a directory.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include <sys/types.h>

struct ChildResult {
    bool exited = false; // ended through exit, not a signal
    int status = -1;     // exit status when exited, else the signal number
    std::string report;  // what the child wrote to its report pipe
};

// Runs body in a child process; body writes to the file descriptor it gets
// and returns the exit status. The child leaves with _exit, so no atexit
// handler (nor leak check) of the test program runs in it.
ChildResult RunInChild(const std::function<int(int reportFd)>& body);

// Starts body in a child and returns its pid at once; body's result is the
// exit status.
pid_t StartChild(const std::function<int()>& body);

// Writes text to a file descriptor, whole.
void WriteAll(int fd, const std::string& text);

// Names in a directory, sorted, without "." and "..".
std::vector<std::string> ListDir(const std::string& dir);
