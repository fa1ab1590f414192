// Opening and saving real files: failures leave the store and the target as
// they were, with the path and the system's reason in the error record.
#include "store_util.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <functional>

#include <dirent.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

std::vector<std::string> DirEntries(const std::string& path) {
    std::vector<std::string> out;
    if (DIR* d = opendir(path.c_str())) {
        while (dirent* e = readdir(d))
            if (std::strcmp(e->d_name, ".") != 0 && std::strcmp(e->d_name, "..") != 0)
                out.push_back(e->d_name);
        closedir(d);
    }
    std::sort(out.begin(), out.end());
    return out;
}

// Runs check in a forked child (optionally as the unprivileged user 65534)
// and gives its exit code: 0 when every condition held, else the number of
// the first that failed.
int InChild(const std::function<int()>& check, bool dropPrivileges) {
    fflush(nullptr);
    pid_t pid = fork();
    if (pid == 0) {
        if (dropPrivileges && (setgid(65534) != 0 || setuid(65534) != 0))
            _exit(100);
        _exit(check());
    }
    int status = 0;
    waitpid(pid, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : 200;
}

const std::string kOld = "[old]\nkey=value\n";

} // namespace

TEST(Files, OpenMissingFileOrDirectoryFailsAndKeepsTheContents) {
    TempDir dir;
    Store h;
    ASSERT_TRUE(LoadText(h, dir, "[keep]\nk=v\n"));
    std::string missing = dir.file("missing.ini");
    OpenResult r = OpenFile(h, missing);
    EXPECT_NE(0, r.rc);
    EXPECT_EQ(missing, r.region);
    EXPECT_EQ(std::strerror(ENOENT), r.message);
    EXPECT_EQ("v", Get(h, "keep", "k"));

    r = OpenFile(h, dir.path());
    EXPECT_NE(0, r.rc);
    EXPECT_EQ(dir.path(), r.region);
    EXPECT_EQ(std::strerror(EISDIR), r.message);

    std::string bad = dir.file("bad.ini");
    WriteFileBytes(bad, "[fine]\nx=1\n[broken\n");
    r = OpenFile(h, bad);
    EXPECT_NE(0, r.rc);
    EXPECT_EQ(bad + ":3", r.region);
    EXPECT_EQ((std::vector<std::string>{"keep"}), Sections(h));
    EXPECT_EQ("v", Get(h, "keep", "k"));
    EXPECT_EQ("[keep]\nk=v\n", SavedText(h, dir)); // the old file's lines, too
}

TEST(Files, OpenReplacesTheContentsOnSuccess) {
    TempDir dir;
    Store h;
    inifile_write_string(h, "before", "k", "v");
    ASSERT_TRUE(LoadText(h, dir, "[after]\nk=w\n"));
    EXPECT_EQ((std::vector<std::string>{"after"}), Sections(h));
    ASSERT_TRUE(LoadText(h, dir, ""));
    EXPECT_EQ(0, inifile_get_section_count(h));
}

TEST(Files, OpenUnreadableFile) {
    TempDir dir;
    chmod(dir.path().c_str(), 0755);
    std::string path = dir.file("secret.ini");
    WriteFileBytes(path, kOld);
    chmod(path.c_str(), 0);
    auto check = [&] {
        Store h;
        OpenResult r = OpenFile(h, path);
        if (r.rc == 0)
            return 1;
        if (r.region != path)
            return 2;
        return r.message == std::strerror(EACCES) ? 0 : 3;
    };
    if (geteuid() == 0)
        EXPECT_EQ(0, InChild(check, true));
    else
        EXPECT_EQ(0, check());
}

TEST(Files, SaveReplacesAtomicallyAndKeepsPermissions) {
    TempDir dir;
    std::string path = dir.file("conf.ini");
    WriteFileBytes(path, kOld);
    chmod(path.c_str(), 0640);
    Store h;
    ASSERT_EQ(0, OpenFile(h, path).rc);
    inifile_write_string(h, "old", "key", "new");
    ASSERT_EQ(0, SaveFile(h, path).rc);
    EXPECT_EQ("[old]\nkey=new\n", ReadFileBytes(path));
    struct stat sb;
    ASSERT_EQ(0, stat(path.c_str(), &sb));
    EXPECT_EQ(0640u, sb.st_mode & 07777);
    EXPECT_EQ((std::vector<std::string>{"conf.ini"}), DirEntries(dir.path()));
}

TEST(Files, SaveThroughASymlinkReplacesItsTarget) {
    TempDir dir;
    std::string real = dir.file("real.ini");
    std::string link = dir.file("link.ini");
    WriteFileBytes(real, kOld);
    ASSERT_EQ(0, symlink("real.ini", link.c_str()));
    Store h;
    ASSERT_EQ(0, OpenFile(h, link).rc);
    inifile_write_string(h, "old", "key", "via link");
    ASSERT_EQ(0, SaveFile(h, link).rc);
    struct stat sb;
    ASSERT_EQ(0, lstat(link.c_str(), &sb));
    EXPECT_TRUE(S_ISLNK(sb.st_mode));
    EXPECT_EQ("[old]\nkey=via link\n", ReadFileBytes(real));

    // A dangling link: the file it names is created.
    std::string dangling = dir.file("dangling.ini");
    ASSERT_EQ(0, symlink("made.ini", dangling.c_str()));
    ASSERT_EQ(0, SaveFile(h, dangling).rc);
    EXPECT_EQ("[old]\nkey=via link\n", ReadFileBytes(dir.file("made.ini")));
    ASSERT_EQ(0, lstat(dangling.c_str(), &sb));
    EXPECT_TRUE(S_ISLNK(sb.st_mode));
}

TEST(Files, SaveIntoAMissingDirectoryFails) {
    TempDir dir;
    std::string path = dir.file("no/such/dir/conf.ini");
    Store h;
    inifile_write_string(h, "s", "k", "v");
    OpenResult r = SaveFile(h, path);
    EXPECT_NE(0, r.rc);
    EXPECT_EQ(path, r.region);
    EXPECT_EQ(std::strerror(ENOENT), r.message);
    EXPECT_TRUE(DirEntries(dir.path()).empty());
}

TEST(Files, SaveIntoAReadOnlyDirectoryLeavesTheOldFile) {
    TempDir dir;
    std::string sub = dir.file("ro");
    ASSERT_EQ(0, mkdir(sub.c_str(), 0755));
    chmod(dir.path().c_str(), 0755);
    std::string path = sub + "/conf.ini";
    WriteFileBytes(path, kOld);
    chmod(path.c_str(), 0666);
    chmod(sub.c_str(), 0555);
    auto check = [&] {
        Store h;
        if (OpenFile(h, path).rc != 0)
            return 1;
        inifile_write_string(h, "old", "key", "changed");
        OpenResult r = SaveFile(h, path);
        if (r.rc == 0)
            return 2;
        if (r.region != path)
            return 3;
        if (r.message != std::strerror(EACCES))
            return 4;
        return 0;
    };
    if (geteuid() == 0)
        EXPECT_EQ(0, InChild(check, true));
    else
        EXPECT_EQ(0, check());
    EXPECT_EQ(kOld, ReadFileBytes(path));
    EXPECT_EQ((std::vector<std::string>{"conf.ini"}), DirEntries(sub));
}

TEST(Files, SaveBeyondTheFileSizeLimitLeavesTheOldFile) {
    TempDir dir;
    std::string path = dir.file("conf.ini");
    WriteFileBytes(path, kOld);
    auto check = [&] {
        signal(SIGXFSZ, SIG_IGN);
        struct rlimit lim = {4096, 4096};
        if (setrlimit(RLIMIT_FSIZE, &lim) != 0)
            return 10;
        Store h;
        if (OpenFile(h, path).rc != 0)
            return 1;
        inifile_write_string(h, "old", "big", std::string(100000, 'x').c_str());
        OpenResult r = SaveFile(h, path);
        if (r.rc == 0)
            return 2;
        if (r.region != path)
            return 3;
        if (r.message != std::strerror(EFBIG))
            return 4;
        return 0;
    };
    EXPECT_EQ(0, InChild(check, false));
    EXPECT_EQ(kOld, ReadFileBytes(path));
    EXPECT_EQ((std::vector<std::string>{"conf.ini"}), DirEntries(dir.path()));
}

TEST(Files, SaveOntoADirectoryFails) {
    TempDir dir;
    std::string sub = dir.file("sub");
    ASSERT_EQ(0, mkdir(sub.c_str(), 0755));
    Store h;
    inifile_write_string(h, "s", "k", "v");
    OpenResult r = SaveFile(h, sub);
    EXPECT_NE(0, r.rc);
    EXPECT_EQ(sub, r.region);
    EXPECT_FALSE(r.message.empty());
    EXPECT_EQ((std::vector<std::string>{"sub"}), DirEntries(dir.path()));
}

TEST(Files, SaveWithARelativePath) {
    TempDir dir;
    char cwd[4096];
    ASSERT_NE(nullptr, getcwd(cwd, sizeof cwd));
    ASSERT_EQ(0, chdir(dir.path().c_str()));
    Store h;
    inifile_write_string(h, "s", "k", "v");
    OpenResult r = SaveFile(h, "relative.ini");
    EXPECT_EQ(0, chdir(cwd));
    EXPECT_EQ(0, r.rc) << r.message;
    EXPECT_EQ("[s]\nk=v\n", ReadFileBytes(dir.file("relative.ini")));
}
