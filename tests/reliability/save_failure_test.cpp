// Saves that cannot succeed: a file size limit, a directory without write
// permission, a missing parent directory, a target that is a directory. Each
// time Save gives false, GetError names the path and the system's reason, the
// old file stays byte for byte, and no temporary file is left behind.
#include "child_process.h"
#include "tempdir.h"

#include <wxsupport/config/wxinifile.h>

#include <gtest/gtest.h>

#include <cerrno>
#include <csignal>
#include <cstring>

#include <grp.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

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
    const ChildResult r = RunInChild([&](int report) {
        signal(SIGXFSZ, SIG_IGN);
        const rlimit limit{16384, 16384};
        if (setrlimit(RLIMIT_FSIZE, &limit) != 0)
            return 3;
        wxIniFile big;
        Fill(big, 100, 20, "new");
        const bool saved = big.Save(target);
        WriteAll(report, Utf8(big.GetError()));
        return saved ? 1 : 0;
    });
    ASSERT_TRUE(r.exited) << "child ended by signal " << r.status;
    ASSERT_EQ(r.status, 0) << "Save over the size limit gave true";
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
    const ChildResult r = RunInChild([&](int report) {
        if (root && (setgroups(0, nullptr) != 0 || setgid(65534) != 0 || setuid(65534) != 0))
            return 77;
        wxIniFile ini;
        Fill(ini, 2, 2, "new");
        const bool saved = ini.Save(target);
        WriteAll(report, Utf8(ini.GetError()));
        return saved ? 1 : 0;
    });
    if (r.exited && r.status == 77)
        GTEST_SKIP() << "cannot drop to an unprivileged user (uid 65534) for this test";
    ASSERT_TRUE(r.exited) << "child ended by signal " << r.status;
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
