// Test helpers for real files: a private temporary directory removed with
// everything in it at the end, and whole-file reads and writes.
#pragma once

#include <string>
#include <vector>

class TempDir {
public:
    TempDir();
    ~TempDir();
    TempDir(const TempDir&) = delete;
    TempDir& operator=(const TempDir&) = delete;

    const std::string& path() const { return m_path; }
    // path()/name
    std::string file(const std::string& name) const { return m_path + "/" + name; }

private:
    std::string m_path;
};

std::string ReadFileBytes(const std::string& path);
void WriteFileBytes(const std::string& path, const std::string& bytes);
bool FileExists(const std::string& path);
// Names in a directory, sorted, without "." and ".."; empty when it cannot be read.
std::vector<std::string> ListDir(const std::string& dir);
// Path of a file below tests/data.
std::string TestDataPath(const std::string& relative);
