#include "tempdir.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <system_error>

#ifdef _WIN32
#include <windows.h>
#else
#include <stdlib.h>
#include <sys/stat.h>
#endif

namespace fs = std::filesystem;

namespace {
// Paths are UTF-8 on every platform (Windows' narrow calls would take the
// ANSI code page).
fs::path Native(const std::string& path) {
    return fs::u8path(path);
}
} // namespace

#ifdef _WIN32

// A new directory below the user's temporary folder (GetTempPathW), its
// path in UTF-8 with forward slashes, which every Windows call accepts.
TempDir::TempDir() {
    wchar_t base[MAX_PATH + 1];
    DWORD n = GetTempPathW(MAX_PATH + 1, base);
    if (n == 0 || n > MAX_PATH)
        throw std::runtime_error("GetTempPathW failed");
    for (unsigned attempt = 0;; ++attempt) {
        std::wstring dir = std::wstring(base, n) + L"wxsupport-test-" +
                           std::to_wstring(GetCurrentProcessId()) + L"-" +
                           std::to_wstring(GetTickCount64() + attempt);
        if (CreateDirectoryW(dir.c_str(), nullptr)) {
            m_path = fs::path(dir).generic_u8string();
            break;
        }
        if (GetLastError() != ERROR_ALREADY_EXISTS || attempt == 100)
            throw std::runtime_error("CreateDirectoryW failed");
    }
    while (!m_path.empty() && m_path.back() == '/')
        m_path.pop_back();
}

TempDir::~TempDir() {
    std::error_code ec;
    // Clear read-only attributes that a test may have set, then remove.
    for (auto it = fs::recursive_directory_iterator(Native(m_path), ec);
         !ec && it != fs::recursive_directory_iterator(); it.increment(ec))
        SetFileAttributesW(it->path().c_str(), FILE_ATTRIBUTE_NORMAL);
    fs::remove_all(Native(m_path), ec);
}

#else

TempDir::TempDir() {
    const char* base = getenv("TMPDIR");
    std::string templ = std::string(base && *base ? base : "/tmp") + "/wxsupport-test-XXXXXX";
    if (!mkdtemp(templ.data()))
        throw std::runtime_error("mkdtemp failed");
    m_path = templ;
}

TempDir::~TempDir() {
    std::error_code ec;
    // Restore write permission that a test may have taken away, then remove.
    for (auto it = std::filesystem::recursive_directory_iterator(m_path, ec);
         !ec && it != std::filesystem::recursive_directory_iterator(); it.increment(ec))
        if (it->is_directory(ec))
            chmod(it->path().c_str(), 0700);
    chmod(m_path.c_str(), 0700);
    std::filesystem::remove_all(m_path, ec);
}

#endif

std::string ReadFileBytes(const std::string& path) {
    std::ifstream in(Native(path), std::ios::binary);
    std::ostringstream out;
    out << in.rdbuf();
    return out.str();
}

void WriteFileBytes(const std::string& path, const std::string& bytes) {
    std::ofstream out(Native(path), std::ios::binary | std::ios::trunc);
    out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    if (!out)
        ADD_FAILURE() << "cannot write " << path;
}

bool FileExists(const std::string& path) {
    std::error_code ec;
    return fs::exists(Native(path), ec);
}

std::vector<std::string> ListDir(const std::string& dir) {
    std::vector<std::string> names;
    std::error_code ec;
    for (auto it = fs::directory_iterator(Native(dir), ec); !ec && it != fs::directory_iterator();
         it.increment(ec))
        names.push_back(it->path().filename().u8string());
    std::sort(names.begin(), names.end());
    return names;
}

std::string TestDataPath(const std::string& relative) {
    return std::string(WXS_TEST_DATA_DIR) + "/" + relative;
}
