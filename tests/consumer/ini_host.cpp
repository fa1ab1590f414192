// A host that uses only wxIniFile: it calls nothing of the INI store's C
// interface, so its linker may drop libvesk, and libwxsupport must find the
// store through its own run path. Argument: a writable directory.
#include <wxsupport/config/wxinifile.h>

#include <wx/init.h>

#include <cstdio>

int main(int argc, char** argv) {
    if (argc < 2)
        return 2;
    wxInitializer init;
    const wxString path = wxString(argv[1]) + "/ini-host.ini";

    wxIniFile out;
    out.WriteLong("Window", "width", 640);
    out.WriteString("Window", "title", "ini host");
    if (!out.Save(path)) {
        std::fprintf(stderr, "save failed: %s\n", (const char*)out.GetError().utf8_str());
        return 1;
    }
    wxIniFile in(path);
    std::printf("%s %ld %d\n", (const char*)in.ReadString("Window", "title", "").utf8_str(),
                in.ReadLong("Window", "width", 0), in.GetSectionCount());
    return 0;
}
