// Opening and saving real files on Windows: paths in UTF-8 and in the ANSI
// code page, the replacement of an existing file (its attributes kept), a new
// file, and a target that another handle holds without sharing.
#include "fileio.h"
#include "store_util.h"

#include <gtest/gtest.h>

#include <filesystem>

#include <windows.h>

namespace {

const std::string kOld = "[old]\nkey=value\n";

// The system's text for an error, as FormatMessageW gives it, in UTF-8.
std::string SystemText(DWORD err) {
    wchar_t* text = nullptr;
    DWORD n = FormatMessageW(FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM |
                                 FORMAT_MESSAGE_IGNORE_INSERTS,
                             nullptr, err, 0, reinterpret_cast<wchar_t*>(&text), 0, nullptr);
    std::wstring w(text ? text : L"", n);
    LocalFree(text);
    while (!w.empty() && (w.back() == L'\n' || w.back() == L'\r' || w.back() == L' '))
        w.pop_back();
    return std::filesystem::path(w).u8string();
}

std::wstring Wide(const std::string& utf8) {
    return std::filesystem::u8path(utf8).wstring();
}

// A store with one new key over kOld, and the text it saves.
struct Changed {
    Store h;
    std::string text = kOld + "new=1\n";
    explicit Changed(const TempDir& dir) {
        EXPECT_TRUE(LoadText(h, dir, kOld));
        inifile_write_long(h, "old", "new", 1);
    }
};

} // namespace

TEST(FilesWin, PathsInUtf8AndInTheAnsiCodePageNameTheSameFile) {
    TempDir dir;
    Changed c(dir);
    // UTF-8: letters of no single-byte code page.
    std::string utf8 = dir.file("\xE6\x97\xA5\xE6\x9C\xAC-\xC3\xA9.ini");
    ASSERT_EQ(0, SaveFile(c.h, utf8).rc);
    EXPECT_NE(INVALID_FILE_ATTRIBUTES, GetFileAttributesW(Wide(utf8).c_str()));
    Store back;
    ASSERT_EQ(0, OpenFile(back, utf8).rc);
    EXPECT_EQ("1", Get(back, "old", "new"));

    // The ANSI code page: "café-ü.ini" is not valid UTF-8 there.
    std::wstring wide = Wide(dir.file("caf\xC3\xA9-\xC3\xBC.ini"));
    BOOL lossy = FALSE;
    int n = WideCharToMultiByte(CP_ACP, WC_NO_BEST_FIT_CHARS, wide.c_str(), -1, nullptr, 0, nullptr,
                                &lossy);
    std::string ansi(static_cast<size_t>(n), '\0');
    WideCharToMultiByte(CP_ACP, WC_NO_BEST_FIT_CHARS, wide.c_str(), -1, &ansi[0], n, nullptr,
                        &lossy);
    ansi.resize(ansi.size() - 1);
    if (lossy || MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, ansi.data(), -1, nullptr, 0))
        GTEST_SKIP() << "the ANSI code page " << GetACP() << " has no single-byte e acute";
    ASSERT_EQ(0, SaveFile(c.h, ansi).rc);
    EXPECT_NE(INVALID_FILE_ATTRIBUTES, GetFileAttributesW(wide.c_str()));
    std::string asUtf8 = std::filesystem::path(wide).u8string();
    EXPECT_EQ(c.text, ReadFileBytes(asUtf8));
    ASSERT_EQ(0, OpenFile(back, ansi).rc);
    EXPECT_EQ("1", Get(back, "old", "new"));
    EXPECT_EQ(
        Strings({"caf\xC3\xA9-\xC3\xBC.ini", "load.ini", "\xE6\x97\xA5\xE6\x9C\xAC-\xC3\xA9.ini"}),
        ListDir(dir.path()));

    // A failure names the path as it was given.
    Result r = OpenFile(back, ansi + ".missing");
    EXPECT_EQ(ansi + ".missing", r.region);
    EXPECT_EQ(SystemText(ERROR_FILE_NOT_FOUND), r.message);
}

TEST(FilesWin, SaveReplacesAnExistingFileKeepingItsAttributesAndMakesANewOne) {
    TempDir dir;
    Changed c(dir);
    std::string path = dir.file("conf.ini"), fresh = dir.file("fresh.ini");
    WriteFileBytes(path, kOld);
    const DWORD attrs = FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_ARCHIVE;
    ASSERT_TRUE(SetFileAttributesW(Wide(path).c_str(), attrs));
    bool kept = GetFileAttributesW(Wide(path).c_str()) == attrs; // the file system keeps them
    ASSERT_EQ(0, SaveFile(c.h, path).rc);
    EXPECT_EQ(c.text, ReadFileBytes(path));
    if (kept) {
        EXPECT_EQ(attrs, GetFileAttributesW(Wide(path).c_str()));
    }
    ASSERT_EQ(0, SaveFile(c.h, fresh).rc);
    EXPECT_EQ(c.text, ReadFileBytes(fresh));
    // Neither the temporary file nor the old file's backup stays.
    EXPECT_EQ(Strings({"conf.ini", "fresh.ini", "load.ini"}), ListDir(dir.path()));
}

TEST(FilesWin, TargetHeldWithoutSharingIsRefusedAndLeftAsItWas) {
    TempDir dir;
    Changed c(dir);
    std::string path = dir.file("conf.ini");
    WriteFileBytes(path, kOld);
    HANDLE held = CreateFileW(Wide(path).c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING,
                              FILE_ATTRIBUTE_NORMAL, nullptr);
    ASSERT_NE(INVALID_HANDLE_VALUE, held);
    Result r = SaveFile(c.h, path);
    Result opened = OpenFile(c.h, path);
    CloseHandle(held);
    EXPECT_NE(0, r.rc);
    EXPECT_EQ(path, r.region);
    EXPECT_EQ(SystemText(ERROR_SHARING_VIOLATION), r.message);
    EXPECT_NE(0, opened.rc);
    EXPECT_EQ(SystemText(ERROR_SHARING_VIOLATION), opened.message);
    EXPECT_EQ(kOld, ReadFileBytes(path));
    EXPECT_EQ(Strings({"conf.ini", "load.ini"}), ListDir(dir.path()));
    EXPECT_EQ("1", Get(c.h, "old", "new")); // the failed open kept the contents
}

TEST(FilesWin, DirectoriesAndMissingFoldersFailWithTheSystemsReason) {
    TempDir dir;
    Changed c(dir);
    std::string sub = dir.file("sub"), missing = dir.file("no/conf.ini");
    ASSERT_TRUE(CreateDirectoryW(Wide(sub).c_str(), nullptr));
    Result r = OpenFile(c.h, sub);
    EXPECT_NE(0, r.rc);
    EXPECT_EQ(sub, r.region);
    EXPECT_FALSE(r.message.empty());
    r = SaveFile(c.h, sub);
    EXPECT_NE(0, r.rc);
    EXPECT_EQ(sub, r.region);
    EXPECT_FALSE(r.message.empty());
    r = SaveFile(c.h, missing);
    EXPECT_NE(0, r.rc);
    EXPECT_EQ(missing, r.region);
    EXPECT_EQ(SystemText(ERROR_PATH_NOT_FOUND), r.message);
    EXPECT_EQ(Strings({"load.ini", "sub"}), ListDir(dir.path()));
    EXPECT_EQ(Strings(), ListDir(sub));
    r = OpenFile(c.h, "NUL"); // a device, no regular file
    EXPECT_NE(0, r.rc);
    EXPECT_EQ("1", Get(c.h, "old", "new"));
}

TEST(FilesWin, OutOfMemoryIsTheSystemsText) {
    EXPECT_EQ(SystemText(ERROR_NOT_ENOUGH_MEMORY), vesk::outOfMemoryMessage());
}
