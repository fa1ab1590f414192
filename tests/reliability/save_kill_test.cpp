// Saves interrupted by SIGKILL at random moments, and opens that race an
// atomic save in another process. A reader must only ever see a complete
// version of the file: the old one or the new one, never a mix or a part.
#include "child_process.h"
#include "tempdir.h"

#include <wxsupport/config/wxinifile.h>

#include <gtest/gtest.h>

#include <chrono>
#include <iostream>
#include <random>
#include <thread>

#include <csignal>
#include <sys/wait.h>
#include <unistd.h>

namespace {

using Clock = std::chrono::steady_clock;

void Fill(wxIniFile& ini, int sections, int keys, const wxString& tag) {
    for (int s = 0; s < sections; ++s)
        for (int k = 0; k < keys; ++k)
            ini.WriteString(wxString::Format("section %d", s), wxString::Format("key %d", k),
                            wxString::Format("%s value %d/%d", tag, s, k));
}

void KillAndReap(pid_t pid) {
    kill(pid, SIGKILL);
    int status = 0;
    while (waitpid(pid, &status, 0) < 0 && errno == EINTR) {
    }
}

} // namespace

TEST(SaveKilled, FileIsEitherTheWholeOldOrTheWholeNewOne) {
    TempDir tmp;
    const std::string target = tmp.file("config.ini");

    wxIniFile oldIni, newIni;
    Fill(oldIni, 250, 20, "old");
    Fill(newIni, 250, 20, "the new and longer");
    ASSERT_TRUE(newIni.Save(target));
    const std::string newBytes = ReadFileBytes(target);
    const auto t0 = Clock::now();
    ASSERT_TRUE(oldIni.Save(target));
    const auto saveTime = Clock::now() - t0;
    const std::string oldBytes = ReadFileBytes(target);
    ASSERT_NE(oldBytes, newBytes);

    // Kill moments uniform over a spread that adapts so that about half of the
    // kills land before the save completes (the child also pays for fork).
    double spreadUs = static_cast<double>(
                          std::chrono::duration_cast<std::chrono::microseconds>(saveTime).count()) *
                          2 +
                      1000;
    std::mt19937 random(20240307);

    int kills = 0, sawOld = 0, sawNew = 0, leftovers = 0;
    std::vector<size_t> broken;
    const auto deadline = Clock::now() + std::chrono::seconds(20);
    while (kills < 300 && Clock::now() < deadline) {
        const pid_t pid = StartChild([&] { return newIni.Save(target) ? 0 : 1; });
        ASSERT_GT(pid, 0);
        std::uniform_int_distribution<long long> moment(0, static_cast<long long>(spreadUs));
        std::this_thread::sleep_for(std::chrono::microseconds(moment(random)));
        KillAndReap(pid);
        ++kills;

        const std::string now = ReadFileBytes(target);
        if (now == oldBytes) {
            ++sawOld;
            spreadUs *= 1.03;
        } else if (now == newBytes) {
            ++sawNew;
            spreadUs *= 0.97;
            WriteFileBytes(target, oldBytes);
        } else {
            broken.push_back(now.size());
            WriteFileBytes(target, oldBytes);
        }
        // A killed save may leave its temporary file; nothing else may appear.
        for (const std::string& name : ListDir(tmp.path()))
            if (name != "config.ini") {
                ++leftovers;
                unlink(tmp.file(name).c_str());
            }
    }
    std::cout << "[ info ] " << kills << " kills over saves of "
              << std::chrono::duration_cast<std::chrono::milliseconds>(saveTime).count() << " ms ("
              << newBytes.size() << " bytes): old file " << sawOld << ", new file " << sawNew
              << ", temporary files left " << leftovers << "\n";
    EXPECT_TRUE(broken.empty()) << broken.size() << " kills left a file that is neither version"
                                << " (first of " << (broken.empty() ? 0 : broken[0]) << " bytes)";
    EXPECT_GE(kills, 25) << "too few kills to tell anything";
    EXPECT_GT(sawOld, 0) << "no kill landed before the save completed";
    EXPECT_GT(sawNew, 0) << "no save completed before its kill";
}

TEST(SaveKilled, OpenDuringAnAtomicSaveReadsACompleteVersion) {
    TempDir tmp;
    const std::string target = tmp.file("config.ini");

    // Two versions that tell themselves apart and show when they are whole.
    const int keysA = 3000, keysB = 5000;
    wxIniFile a, b;
    a.WriteString("meta", "version", "A");
    b.WriteString("meta", "version", "B");
    for (int k = 0; k < keysA; ++k)
        a.WriteString("data", wxString::Format("key %d", k), "value of A");
    for (int k = 0; k < keysB; ++k)
        b.WriteString("data", wxString::Format("key %d", k), "value of version B");
    a.WriteString("end", "last", "A");
    b.WriteString("end", "last", "B");
    ASSERT_TRUE(a.Save(target));

    const pid_t writer = StartChild([&] {
        for (;;)
            if (!b.Save(target) || !a.Save(target))
                return 1;
    });
    ASSERT_GT(writer, 0);

    int opens = 0, failed = 0, incomplete = 0, seenA = 0, seenB = 0;
    std::string firstProblem;
    const auto deadline = Clock::now() + std::chrono::seconds(3);
    while (Clock::now() < deadline) {
        wxIniFile r;
        ++opens;
        if (!r.Open(target)) {
            if (!failed++)
                firstProblem = std::string(r.GetError().utf8_str());
            continue;
        }
        const wxString version = r.ReadString("meta", "version", "");
        const int keys = r.GetKeyCount("data");
        const wxString last = r.ReadString("end", "last", "");
        if (version == "A" && keys == keysA && last == "A" &&
            r.ReadString("data", wxString::Format("key %d", keysA - 1), "") == "value of A") {
            ++seenA;
        } else if (version == "B" && keys == keysB && last == "B" &&
                   r.ReadString("data", wxString::Format("key %d", keysB - 1), "") ==
                       "value of version B") {
            ++seenB;
        } else if (!incomplete++) {
            firstProblem = "version " + std::string(version.utf8_str()) + " with " +
                           std::to_string(keys) + " keys, end marker " +
                           std::string(last.utf8_str());
        }
    }
    int status = 0;
    const bool writerFailed = waitpid(writer, &status, WNOHANG) == writer;
    if (!writerFailed)
        KillAndReap(writer);

    std::cout << "[ info ] " << opens << " opens during saves: version A " << seenA
              << ", version B " << seenB << "\n";
    EXPECT_FALSE(writerFailed) << "the saving process stopped";
    EXPECT_EQ(failed, 0) << "an open failed: " << firstProblem;
    EXPECT_EQ(incomplete, 0) << "an open read a partial file: " << firstProblem;
    EXPECT_GT(seenA + seenB, 0);
}
