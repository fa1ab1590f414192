// Helpers for the INI store tests: an owning handle, and loading a store
// from text through a real file.
#pragma once

#include <wxsupport/config/inifile.h>

#include "tempdir.h"

#include <string>
#include <utility>
#include <vector>

// Owns one store handle.
class Store {
public:
    Store() : m_h(inifile_new()) {}
    ~Store() { inifile_delete(m_h); }
    Store(const Store&) = delete;
    Store& operator=(const Store&) = delete;
    operator inifile() const { return m_h; }

private:
    inifile m_h;
};

struct OpenResult {
    int rc = 0;
    std::string region;
    std::string message;
};

// inifile_open/inifile_save with the error record taken apart and freed.
OpenResult OpenFile(inifile h, const std::string& path);
OpenResult SaveFile(inifile h, const std::string& path);

// Writes text to a file in dir and opens it into h; true on success.
bool LoadText(inifile h, const TempDir& dir, const std::string& text);
// Saves h to a file in dir and gives the file's bytes.
std::string SavedText(inifile h, const TempDir& dir);

// read_string with "<absent>" as the default, as a std::string.
std::string Get(inifile h, const char* sec, const char* key);

// Section names in index order, and the keys of one section.
std::vector<std::string> Sections(inifile h);
std::vector<std::string> Keys(inifile h, const char* sec);
