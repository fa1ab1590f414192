// Test code in child processes: for what a test must not do to its own
// process (rebind the standard streams, lower a resource limit, give up root,
// abort, be killed in the middle of a save) or must measure apart from it.
//
// The body runs in a fork()ed child and leaves with _exit, so no atexit
// handler, static destructor or leak check of the test program runs there.
// GoogleTest assertions inside the body don't reach the parent: the body
// tells the parent what it found through its exit status and through the
// report descriptor it is given (see WriteAll).
#pragma once

#include <functional>
#include <string>

#include <sys/types.h>

// How a child ended and what it reported.
struct ChildResult {
    bool exited = false; // ended through exit, not a signal
    int status = -1;     // exit status when exited, else the signal number
    std::string report;  // everything the child wrote to its report descriptor

    // True when the child exited with status 0.
    bool ok() const { return exited && status == 0; }
    // True when a signal ended the child, e.g. killedBy(SIGABRT).
    bool killedBy(int signal) const { return !exited && status == signal; }
    // "exit status 3", "signal 6 (Aborted)" or "not started": for messages.
    std::string describe() const;
};

// The body of a child: reportFd is the writing end of the report pipe; the
// return value becomes the exit status.
using ChildBody = std::function<int(int reportFd)>;

// A child started at construction and never left behind: the destructor kills
// (SIGKILL) and reaps it if it is still there. A child that runs longer than
// timeLimitSeconds (0: no limit) is ended by SIGALRM, so a hung body fails
// its test instead of hanging it.
class ChildProcess {
public:
    explicit ChildProcess(const ChildBody& body, int timeLimitSeconds = 60);
    ~ChildProcess();
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;

    // False when fork() or pipe() failed; Wait and Kill then give a result
    // with exited false and status -1.
    bool started() const { return m_pid > 0; }
    pid_t pid() const { return m_pid; }

    // True once the child has ended (it is then reaped); does not wait.
    bool Finished();
    // Reads the report to its end, waits for the child and tells how it ended.
    // Descendants that keep the report descriptor open (it is close-on-exec,
    // so only forks without exec can) make this wait for them too.
    ChildResult Wait();
    // Sends the signal, then Wait().
    ChildResult Kill(int signal);

private:
    void Reap(bool block);

    pid_t m_pid = -1;
    int m_reportFd = -1; // reading end
    bool m_reaped = false;
    int m_waitStatus = 0;
};

// Runs body in a child and waits for it.
ChildResult RunInChild(const ChildBody& body, int timeLimitSeconds = 60);

// Runs body in a child that reports a list of problems: "" when body returned
// "" and the child ended normally, else what body returned followed by how
// the child ended when that was not exit status 0.
std::string ProblemsInChild(const std::function<std::string()>& body, int timeLimitSeconds = 60);

// Writes the whole text to a file descriptor (retrying short writes); false
// when the descriptor refused it.
bool WriteAll(int fd, const std::string& text);
