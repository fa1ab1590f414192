#include "store_util.h"

OpenResult OpenFile(inifile h, const std::string& path) {
    pdError* e = reinterpret_cast<pdError*>(1); // must be reset to null
    OpenResult r;
    r.rc = inifile_open(h, path.c_str(), &e);
    if (e) {
        r.region = pderror_region(e);
        r.message = pderror_message(e);
    }
    pderror_free(e);
    return r;
}

OpenResult SaveFile(inifile h, const std::string& path) {
    pdError* e = reinterpret_cast<pdError*>(1);
    OpenResult r;
    r.rc = inifile_save(h, path.c_str(), &e);
    if (e) {
        r.region = pderror_region(e);
        r.message = pderror_message(e);
    }
    pderror_free(e);
    return r;
}

bool LoadText(inifile h, const TempDir& dir, const std::string& text) {
    std::string path = dir.file("load.ini");
    WriteFileBytes(path, text);
    return OpenFile(h, path).rc == 0;
}

std::string SavedText(inifile h, const TempDir& dir) {
    std::string path = dir.file("saved.ini");
    if (SaveFile(h, path).rc != 0)
        return "<save failed>";
    return ReadFileBytes(path);
}

std::string Get(inifile h, const char* sec, const char* key) {
    return inifile_read_string(h, sec, key, "<absent>");
}

std::vector<std::string> Sections(inifile h) {
    std::vector<std::string> out;
    for (int i = 0; i < inifile_get_section_count(h); ++i)
        out.push_back(inifile_get_section_by_index(h, i));
    return out;
}

std::vector<std::string> Keys(inifile h, const char* sec) {
    std::vector<std::string> out;
    for (int i = 0; i < inifile_get_key_count(h, sec); ++i)
        out.push_back(inifile_get_key_by_index(h, sec, i));
    return out;
}
