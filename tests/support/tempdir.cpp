#include "tempdir.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <stdlib.h>
#include <sys/stat.h>

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

std::string ReadFileBytes(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream out;
    out << in.rdbuf();
    return out.str();
}

void WriteFileBytes(const std::string& path, const std::string& bytes) {
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    if (!out)
        ADD_FAILURE() << "cannot write " << path;
}

bool FileExists(const std::string& path) {
    struct stat st;
    return stat(path.c_str(), &st) == 0;
}

std::vector<std::string> ListDir(const std::string& dir) {
    std::vector<std::string> names;
    std::error_code ec;
    for (auto it = std::filesystem::directory_iterator(dir, ec);
         !ec && it != std::filesystem::directory_iterator(); it.increment(ec))
        names.push_back(it->path().filename().string());
    std::sort(names.begin(), names.end());
    return names;
}

std::string TestDataPath(const std::string& relative) {
    return std::string(WXS_TEST_DATA_DIR) + "/" + relative;
}
