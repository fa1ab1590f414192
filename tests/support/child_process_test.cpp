// The child-process helper that the fault-injection, console and hostile-input
// tests stand on: what a child reports and how it ended, time limits, and no
// child left behind.
#include "child_process.h"

#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <string>

#include <unistd.h>

namespace {

bool Alive(pid_t pid) {
    return kill(pid, 0) == 0;
}

TEST(ChildProcess, ReportAndExitStatusReachTheParent) {
    const std::string big(200000, 'x'); // more than a pipe holds at once
    const ChildResult r = RunInChild([&big](int report) {
        WriteAll(report, "first ");
        WriteAll(report, big);
        return 7;
    });
    EXPECT_TRUE(r.exited);
    EXPECT_EQ(r.status, 7);
    EXPECT_FALSE(r.ok());
    EXPECT_EQ(r.report, "first " + big);
    EXPECT_EQ(r.describe(), "exit status 7");
}

TEST(ChildProcess, SignalsAndTimeLimitEndChildren) {
    const ChildResult aborted = RunInChild([](int) {
        std::abort();
        return 0;
    });
    EXPECT_TRUE(aborted.killedBy(SIGABRT)) << aborted.describe();
    EXPECT_FALSE(aborted.exited);

    const auto start = std::chrono::steady_clock::now();
    const ChildResult hung = RunInChild(
        [](int) {
            for (;;)
                pause();
            return 0;
        },
        1);
    EXPECT_TRUE(hung.killedBy(SIGALRM)) << hung.describe();
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(20));
}

TEST(ChildProcess, KillFinishedAndTheDestructorLeaveNoChild) {
    pid_t pid = 0;
    {
        ChildProcess sleeper([](int) {
            for (;;)
                pause();
            return 0;
        });
        ASSERT_TRUE(sleeper.started());
        pid = sleeper.pid();
        EXPECT_FALSE(sleeper.Finished());
        EXPECT_TRUE(Alive(pid));
    } // killed and reaped here
    EXPECT_FALSE(Alive(pid));

    ChildProcess quick([](int report) { return WriteAll(report, "done") ? 3 : 1; });
    const ChildResult r = quick.Wait();
    EXPECT_TRUE(quick.Finished());
    EXPECT_EQ(r.report, "done");
    EXPECT_EQ(r.status, 3);

    ChildProcess victim([](int) {
        for (;;)
            pause();
        return 0;
    });
    const ChildResult killed = victim.Kill(SIGKILL);
    EXPECT_TRUE(killed.killedBy(SIGKILL)) << killed.describe();
    EXPECT_TRUE(victim.Finished());
}

TEST(ChildProcess, ProblemsInChildTellsHowTheChildEnded) {
    EXPECT_EQ(ProblemsInChild([] { return std::string(); }), "");
    EXPECT_EQ(ProblemsInChild([] { return std::string("two problems; "); }), "two problems; ");
    const std::string crashed = ProblemsInChild([]() -> std::string {
        raise(SIGTERM);
        return "";
    });
    EXPECT_NE(crashed.find("child ended with signal " + std::to_string(SIGTERM)), std::string::npos)
        << crashed;
}

} // namespace
