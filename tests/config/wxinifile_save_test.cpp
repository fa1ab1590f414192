// Saves under faults. Saves that cannot succeed (a file size limit, a
// directory without write permission, a missing parent directory, a target
// that is a directory): Save gives false, GetError names the path and the
// system's reason, the old file stays byte for byte, and no temporary file is
// left behind. Saves interrupted by SIGKILL at random moments, and opens that
// race an atomic save in another process: a reader only ever sees a complete
// version of the file, the old one or the new one, never a mix or a part.
#include "child_process.h"
#include "tempdir.h"

#include <wxsupport/config/wxinifile.h>

#include <gtest/gtest.h>

#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstring>
#include <functional>
#include <iostream>
#include <random>
#include <thread>

#include <grp.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

using Clock = std::chrono::steady_clock;

// sections x keys entries whose values carry the tag.
void Fill(wxIniFile& ini, int sections, int keys, const wxString& tag) {
    for (int s = 0; s < sections; ++s)
        for (int k = 0; k < keys; ++k)
            ini.WriteString(wxString::Format("section %d", s), wxString::Format("key %d", k),
                            wxString::Format("%s value %d/%d", tag, s, k));
}

std::string Utf8(const wxString& s) {
    return std::string(s.utf8_str());
}

// The old file, saved by the store itself.
std::string SaveOld(const std::string& target) {
    wxIniFile old;
    Fill(old, 3, 4, "old");
    EXPECT_TRUE(old.Save(target)) << Utf8(old.GetError());
    return ReadFileBytes(target);
}

// Saves sections x keys new entries to target in a child process, once
// `dropRights` has taken some of the child's rights. The child's exit status is
// 0 when Save gave false (its report is then GetError's text), 1 when Save
// gave true, 77 when `dropRights` failed.
ChildResult SaveInChild(const std::string& target, int sections, int keys,
                        const std::function<bool()>& dropRights) {
    return RunInChild([&](int report) {
        if (!dropRights())
            return 77;
        wxIniFile ini;
        Fill(ini, sections, keys, "new");
        const bool saved = ini.Save(target);
        WriteAll(report, Utf8(ini.GetError()));
        return saved ? 1 : 0;
    });
}

void ExpectReason(const std::string& error, const std::string& target, int errnum) {
    EXPECT_NE(error.find(target), std::string::npos) << "error doesn't name the path: " << error;
    EXPECT_NE(error.find(strerror(errnum)), std::string::npos)
        << "error doesn't give the reason \"" << strerror(errnum) << "\": " << error;
}

} // namespace

TEST(SaveFailure, FileSizeLimitKeepsTheOldFile) {
    TempDir tmp;
    const std::string target = tmp.file("config.ini");
    const std::string before = SaveOld(target);
    ASSERT_LT(before.size(), 4096u);

    // The limit only binds the child; it fails while writing its temporary file.
    const ChildResult r = SaveInChild(target, 100, 20, [] {
        signal(SIGXFSZ, SIG_IGN);
        const rlimit limit{16384, 16384};
        return setrlimit(RLIMIT_FSIZE, &limit) == 0;
    });
    ASSERT_TRUE(r.exited) << "child ended by " << r.describe();
    ASSERT_EQ(r.status, 0) << "1: Save over the size limit gave true, 77: no limit set";
    ExpectReason(r.report, target, EFBIG);
    EXPECT_EQ(ReadFileBytes(target), before);
    EXPECT_EQ(ListDir(tmp.path()), std::vector<std::string>{"config.ini"});
}

TEST(SaveFailure, ReadOnlyDirectoryKeepsTheOldFile) {
    TempDir tmp;
    const std::string dir = tmp.file("ro");
    ASSERT_EQ(mkdir(dir.c_str(), 0755), 0);
    const std::string target = dir + "/config.ini";
    const std::string before = SaveOld(target);
    ASSERT_EQ(chmod(dir.c_str(), 0555), 0);
    // An unprivileged user must be able to reach the directory.
    ASSERT_EQ(chmod(tmp.path().c_str(), 0755), 0);

    // Root writes anywhere: the child gives up its privileges first.
    const bool root = geteuid() == 0;
    const ChildResult r = SaveInChild(target, 2, 2, [root] {
        return !root || (setgroups(0, nullptr) == 0 && setgid(65534) == 0 && setuid(65534) == 0);
    });
    if (r.exited && r.status == 77)
        GTEST_SKIP() << "cannot drop to an unprivileged user (uid 65534) for this test";
    ASSERT_TRUE(r.exited) << "child ended by " << r.describe();
    ASSERT_EQ(r.status, 0) << "Save into a read-only directory gave true";
    ExpectReason(r.report, target, EACCES);
    EXPECT_EQ(ReadFileBytes(target), before);
    EXPECT_EQ(ListDir(dir), std::vector<std::string>{"config.ini"});
}

TEST(SaveFailure, MissingParentDirectory) {
    TempDir tmp;
    const std::string target = tmp.file("missing/deeper/config.ini");
    wxIniFile ini;
    Fill(ini, 2, 2, "new");
    EXPECT_FALSE(ini.Save(target));
    ExpectReason(Utf8(ini.GetError()), target, ENOENT);
    EXPECT_TRUE(ListDir(tmp.path()).empty()) << "Save created something";

    // The store is unharmed: the same object saves to a good path.
    const std::string good = tmp.file("good.ini");
    ASSERT_TRUE(ini.Save(good)) << Utf8(ini.GetError());
    wxIniFile back(good);
    EXPECT_EQ(back.ReadString("section 1", "key 1", "absent"), "new value 1/1");
}

TEST(SaveFailure, TargetIsADirectory) {
    TempDir tmp;
    const std::string target = tmp.file("config.ini");
    ASSERT_EQ(mkdir(target.c_str(), 0755), 0);
    WriteFileBytes(target + "/inside.txt", "kept\n");

    wxIniFile ini;
    Fill(ini, 2, 2, "new");
    EXPECT_FALSE(ini.Save(target));
    ExpectReason(Utf8(ini.GetError()), target, EISDIR);
    struct stat st;
    ASSERT_EQ(stat(target.c_str(), &st), 0);
    EXPECT_TRUE(S_ISDIR(st.st_mode));
    EXPECT_EQ(ListDir(target), std::vector<std::string>{"inside.txt"});
    EXPECT_EQ(ReadFileBytes(target + "/inside.txt"), "kept\n");
    EXPECT_EQ(ListDir(tmp.path()), std::vector<std::string>{"config.ini"});
}

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
        ChildProcess saver([&](int) { return newIni.Save(target) ? 0 : 1; });
        ASSERT_TRUE(saver.started());
        std::uniform_int_distribution<long long> moment(0, static_cast<long long>(spreadUs));
        std::this_thread::sleep_for(std::chrono::microseconds(moment(random)));
        saver.Kill(SIGKILL);
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

    ChildProcess writer([&](int) {
        for (;;)
            if (!b.Save(target) || !a.Save(target))
                return 1;
    });
    ASSERT_TRUE(writer.started());

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
    const bool writerFailed = writer.Finished();
    writer.Kill(SIGKILL);

    std::cout << "[ info ] " << opens << " opens during saves: version A " << seenA
              << ", version B " << seenB << "\n";
    EXPECT_FALSE(writerFailed) << "the saving process stopped";
    EXPECT_EQ(failed, 0) << "an open failed: " << firstProblem;
    EXPECT_EQ(incomplete, 0) << "an open read a partial file: " << firstProblem;
    EXPECT_GT(seenA + seenB, 0);
}
