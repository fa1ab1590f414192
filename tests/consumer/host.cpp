// A small host: writes, saves, reopens and reads an INI file through the
// installed library. Argument: a writable directory.
#include <wxsupport/wxsupport.h>

#include <wx/init.h>

#include <cstdio>

int main(int argc, char** argv) {
    if (argc < 2)
        return 2;
    wxInitializer init;
    const wxString path = wxString(argv[1]) + "/host.ini";

    wxIniFile out;
    out.WriteString("Host", "name", wxString::FromUTF8("h\xC3\xB4te"));
    out.WriteLong("Host", "answer", 42);
    if (!out.Save(path)) {
        std::fprintf(stderr, "save failed: %s\n", (const char*)out.GetError().utf8_str());
        return 1;
    }
    wxIniFile in(path);
    if (in.ReadLong("Host", "answer", 0) != 42 ||
        in.ReadString("Host", "name", "") != wxString::FromUTF8("h\xC3\xB4te")) {
        std::fprintf(stderr, "read back wrong values\n");
        return 1;
    }
    inifile raw = inifile_new();
    pdError* error = nullptr;
    const int sections =
        (inifile_open(raw, path.utf8_str(), &error) == 0) ? inifile_get_section_count(raw) : -1;
    pderror_free(error);
    inifile_delete(raw);
    if (sections != 1) {
        std::fprintf(stderr, "C interface saw %d sections\n", sections);
        return 1;
    }
    std::printf("host ok\n");
    return 0;
}
