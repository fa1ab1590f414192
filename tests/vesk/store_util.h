// INI store test helpers: an owning handle, open/save with the error record
// taken apart, and a one-line dump of a store.
#pragma once

#include <wxsupport/config/inifile.h>

#include "tempdir.h"

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include <dirent.h>

using Strings = std::vector<std::string>;

// Owns one store handle.
struct Store : std::unique_ptr<inifile_store, void (*)(inifile)> {
    Store() : unique_ptr(inifile_new(), inifile_delete) {}
    operator inifile() const { return get(); }
};

struct Result {
    int rc = 0;
    std::string region, message;
};

inline Result Call(int (*fn)(inifile, const char*, pdError**), inifile h, const std::string& path) {
    pdError* e = reinterpret_cast<pdError*>(1); // must be reset to null
    Result r;
    r.rc = fn(h, path.c_str(), &e);
    if (e) {
        r.region = pderror_region(e);
        r.message = pderror_message(e);
    }
    pderror_free(e);
    return r;
}
inline Result OpenFile(inifile h, const std::string& p) {
    return Call(inifile_open, h, p);
}
inline Result SaveFile(inifile h, const std::string& p) {
    return Call(inifile_save, h, p);
}

inline bool LoadText(inifile h, const TempDir& dir, const std::string& text) {
    WriteFileBytes(dir.file("load.ini"), text);
    return OpenFile(h, dir.file("load.ini")).rc == 0;
}
inline std::string SavedText(inifile h, const TempDir& dir) {
    return SaveFile(h, dir.file("saved.ini")).rc == 0 ? ReadFileBytes(dir.file("saved.ini"))
                                                      : "<save failed>";
}

inline std::string Get(inifile h, const char* sec, const char* key) {
    return inifile_read_string(h, sec, key, "<absent>");
}
inline Strings Sections(inifile h) {
    Strings out;
    for (int i = 0; i < inifile_get_section_count(h); ++i)
        out.push_back(inifile_get_section_by_index(h, i));
    return out;
}
inline Strings Keys(inifile h, const char* sec) {
    Strings out;
    for (int i = 0; i < inifile_get_key_count(h, sec); ++i)
        out.push_back(inifile_get_key_by_index(h, sec, i));
    return out;
}
// "[sec]key=value|key=value|[sec2]..." in index order.
inline std::string Dump(inifile h) {
    std::string out;
    for (const std::string& s : Sections(h)) {
        out += "[" + s + "]";
        for (const std::string& k : Keys(h, s.c_str()))
            out += k + "=" + Get(h, s.c_str(), k.c_str()) + "|";
    }
    return out;
}

// The names in a directory but "." and "..", sorted.
inline Strings DirEntries(const std::string& path) {
    Strings out;
    if (DIR* d = opendir(path.c_str())) {
        while (dirent* e = readdir(d))
            if (e->d_name[0] != '.')
                out.push_back(e->d_name);
        closedir(d);
    }
    std::sort(out.begin(), out.end());
    return out;
}
