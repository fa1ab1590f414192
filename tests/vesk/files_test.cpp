// Opening and saving real files: failures leave the store and the target as
// they were, with the path and the system's reason in the error record.
#include "child_process.h"
#include "store_util.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <csignal>
#include <cstring>
#include <functional>

#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

// Runs op in a child process (as user 65534 when we are root, or under a
// 4 KiB file size limit); 0 when it failed with path and strerror(err) as
// record.
int InChild(const std::function<Result()>& op, const std::string& path, int err, bool limit) {
    const ChildResult child = RunInChild([&](int) {
        struct rlimit lim = {4096, 4096};
        signal(SIGXFSZ, SIG_IGN);
        if (limit && setrlimit(RLIMIT_FSIZE, &lim) != 0)
            return 100;
        if (!limit && geteuid() == 0 && (setgid(65534) != 0 || setuid(65534) != 0))
            return 100;
        const Result r = op();
        if (r.rc == 0)
            return 1;
        if (r.region != path)
            return 2;
        return r.message != std::strerror(err) ? 3 : 0;
    });
    return child.exited ? child.status : 200;
}

const std::string kOld = "[old]\nkey=value\n";

} // namespace

TEST(Files, FailedOpenKeepsTheContents) {
    TempDir dir;
    chmod(dir.path().c_str(), 0755);
    std::string secret = dir.file("secret.ini"), bad = dir.file("bad.ini");
    WriteFileBytes(secret, kOld);
    chmod(secret.c_str(), 0);
    WriteFileBytes(bad, "[fine]\nx=1\n[broken\n");
    Store h;
    ASSERT_TRUE(LoadText(h, dir, "[keep]\nk=v\n"));
    const std::pair<std::string, int> cases[] = {
        {dir.file("missing.ini"), ENOENT}, {dir.path(), EISDIR}, {bad, 0}};
    for (const auto& c : cases) {
        Result r = OpenFile(h, c.first);
        EXPECT_NE(0, r.rc);
        EXPECT_EQ(c.second ? c.first : c.first + ":3", r.region);
        EXPECT_EQ(c.second ? std::strerror(c.second) : "section header without a closing ']'",
                  r.message);
        EXPECT_EQ("[keep]\nk=v\n", SavedText(h, dir)) << c.first;
    }
    EXPECT_EQ(0, InChild([&] { return OpenFile(h, secret); }, secret, EACCES, false));
    ASSERT_TRUE(LoadText(h, dir, "")); // success replaces
    EXPECT_EQ(0, inifile_get_section_count(h));
}

TEST(Files, FailedSaveLeavesTheOldFileAndSavingKeepsPermissionsAndLinks) {
    TempDir dir;
    chmod(dir.path().c_str(), 0755);
    std::string ro = dir.file("ro"), path = ro + "/conf.ini", missing = dir.file("no/conf.ini");
    ASSERT_EQ(0, mkdir(ro.c_str(), 0755));
    WriteFileBytes(path, kOld);
    chmod(path.c_str(), 0640);
    chmod(ro.c_str(), 0555);
    Store h;
    ASSERT_EQ(0, OpenFile(h, path).rc);
    const std::string big(100000, 'x');
    inifile_write_string(h, "old", "big", big.c_str());
    Result r = SaveFile(h, missing);
    EXPECT_NE(0, r.rc);
    EXPECT_EQ(missing, r.region);
    EXPECT_EQ(std::strerror(ENOENT), r.message);
    EXPECT_EQ(0, InChild([&] { return SaveFile(h, path); }, path, EACCES, false));
    chmod(ro.c_str(), 0755);
    EXPECT_EQ(0, InChild([&] { return SaveFile(h, path); }, path, EFBIG, true));
    EXPECT_EQ(kOld, ReadFileBytes(path));
    EXPECT_EQ(Strings({"conf.ini"}), DirEntries(ro));
    EXPECT_EQ(Strings({"ro"}), DirEntries(dir.path()));

    std::string link = dir.file("link.ini"); // a link stays, its target is replaced
    ASSERT_EQ(0, symlink("ro/conf.ini", link.c_str()));
    ASSERT_EQ(0, SaveFile(h, link).rc);
    EXPECT_EQ(kOld + "big=" + big + "\n", ReadFileBytes(path));
    struct stat sb;
    ASSERT_EQ(0, lstat(link.c_str(), &sb));
    EXPECT_TRUE(S_ISLNK(sb.st_mode));
    ASSERT_EQ(0, stat(path.c_str(), &sb));
    EXPECT_EQ(0640u, sb.st_mode & 07777);
    EXPECT_EQ(Strings({"conf.ini"}), DirEntries(ro));
}
