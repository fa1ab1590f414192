// Shared pieces of the INI store fuzz targets: a scratch directory, whole-file
// reads and writes, and a full reading of a store to compare against.
#ifndef WXSUPPORT_FUZZ_INI_COMMON_H
#define WXSUPPORT_FUZZ_INI_COMMON_H

#include <wxsupport/config/inifile.h>

#include <cstdio>
#include <cstdlib>
#include <string>
#include <utility>
#include <vector>

#include <unistd.h>

namespace fuzzini {

[[noreturn]] inline void Fail(const std::string& what) {
    fprintf(stderr, "INI fuzz: %s\n", what.c_str());
    abort();
}

inline void Check(bool ok, const std::string& what) {
    if (!ok)
        Fail(what);
}

// A private directory below TMPDIR, made once per process.
inline const std::string& ScratchDir() {
    static const std::string dir = [] {
        const char* base = getenv("TMPDIR");
        std::string templ = std::string(base && *base ? base : "/tmp") + "/wxsupport-fuzz-XXXXXX";
        if (!mkdtemp(&templ[0]))
            Fail("cannot make a scratch directory");
        return templ;
    }();
    return dir;
}

inline std::string ScratchFile(const char* name) {
    return ScratchDir() + "/" + name;
}

inline void WriteBytes(const std::string& path, const void* data, size_t size) {
    FILE* f = fopen(path.c_str(), "wb");
    Check(f != nullptr, "cannot write " + path);
    if (size)
        Check(fwrite(data, 1, size, f) == size, "short write to " + path);
    Check(fclose(f) == 0, "cannot close " + path);
}

inline std::string ReadBytes(const std::string& path) {
    std::string out;
    FILE* f = fopen(path.c_str(), "rb");
    Check(f != nullptr, "cannot read " + path);
    char buf[65536];
    size_t n;
    while ((n = fread(buf, 1, sizeof buf, f)) > 0)
        out.append(buf, n);
    fclose(f);
    return out;
}

// Printable form of bytes for failure messages.
inline std::string Show(const std::string& s) {
    std::string out = "\"";
    for (unsigned char c : s) {
        if (c >= 0x20 && c < 0x7f && c != '"' && c != '\\') {
            out += static_cast<char>(c);
        } else {
            char buf[8];
            snprintf(buf, sizeof buf, "\\x%02x", c);
            out += buf;
        }
    }
    return out + "\"";
}

struct SectionReading {
    std::string name;
    std::vector<std::pair<std::string, std::string>> keys; // name, value as read
};
using Reading = std::vector<SectionReading>;

// Everything the store shows through enumeration and reads, in its order;
// checks on the way that the enumeration agrees with the lookups.
inline Reading ReadAll(inifile h) {
    Reading out;
    const int count = inifile_get_section_count(h);
    Check(count >= 0, "negative section count");
    Check(inifile_get_section_by_index(h, count) == nullptr, "section index past the end");
    Check(inifile_get_section_by_index(h, -1) == nullptr, "section index -1");
    for (int i = 0; i < count; ++i) {
        const char* name = inifile_get_section_by_index(h, i);
        Check(name != nullptr, "null section name inside the count");
        SectionReading sec;
        sec.name = name;
        Check(inifile_has_section(h, sec.name.c_str()) != 0,
              "listed section not found: " + Show(sec.name));
        const int keys = inifile_get_key_count(h, sec.name.c_str());
        Check(keys >= 0, "negative key count");
        Check(inifile_get_key_by_index(h, sec.name.c_str(), keys) == nullptr,
              "key index past the end");
        for (int k = 0; k < keys; ++k) {
            const char* key = inifile_get_key_by_index(h, sec.name.c_str(), k);
            Check(key != nullptr, "null key name inside the count");
            std::string keyName = key;
            Check(inifile_has_key(h, sec.name.c_str(), keyName.c_str()) != 0,
                  "listed key not found: " + Show(sec.name) + " " + Show(keyName));
            static const char def[] = "\x01"
                                      "default";
            const char* value = inifile_read_string(h, sec.name.c_str(), keyName.c_str(), def);
            Check(value != nullptr && value != def, "listed key reads as absent");
            std::string text = value;
            inifile_read_long(h, sec.name.c_str(), keyName.c_str(), 0);
            inifile_read_float(h, sec.name.c_str(), keyName.c_str(), 0.0);
            sec.keys.emplace_back(std::move(keyName), std::move(text));
        }
        out.push_back(std::move(sec));
    }
    return out;
}

inline std::string Describe(const Reading& r) {
    std::string out;
    for (const SectionReading& s : r) {
        out += "[" + Show(s.name) + "]\n";
        for (const auto& kv : s.keys)
            out += "  " + Show(kv.first) + " = " + Show(kv.second) + "\n";
    }
    return out;
}

inline bool operator==(const SectionReading& a, const SectionReading& b) {
    return a.name == b.name && a.keys == b.keys;
}

// Saves h to path; a save into the scratch directory must succeed.
inline void SaveOrFail(inifile h, const std::string& path) {
    pdError* err = nullptr;
    if (inifile_save(h, path.c_str(), &err) != 0) {
        std::string what = "save failed: ";
        what += err ? std::string(pderror_region(err)) + ": " + pderror_message(err) : "no record";
        pderror_free(err);
        Fail(what);
    }
    Check(err == nullptr, "save succeeded but left an error record");
}

// Opens path into a new store with the given case rule; the file must open.
inline inifile OpenOrFail(const std::string& path, int caseSensitive) {
    inifile h = inifile_new();
    inifile_set_case_sensitive(h, caseSensitive);
    pdError* err = nullptr;
    if (inifile_open(h, path.c_str(), &err) != 0) {
        std::string what = "re-open of a saved file failed: ";
        what += err ? std::string(pderror_region(err)) + ": " + pderror_message(err) : "no record";
        pderror_free(err);
        inifile_delete(h);
        Fail(what);
    }
    return h;
}

} // namespace fuzzini

#endif // WXSUPPORT_FUZZ_INI_COMMON_H
