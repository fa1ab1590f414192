// Fuzz target: section and key names of every length and character pattern
// through wxIniFile's name frame.
//
// A name shorter than 256 characters passes without assertion; a longer one
// fires "section.Len () < 256" or "key.Len () < 256" (section first), and
// either way the store receives the name's UTF-8 form cut to at most 255
// bytes, even inside a multi-byte sequence. The cut names are read back from
// the saved file with the store's own C interface, byte for byte. Names
// without a UTF-8 form (lone surrogates) only have to pass without a crash.
#include "ini_common.h"

#include <wxsupport/config/wxinifile.h>

#include <fuzzer/FuzzedDataProvider.h>
#include <wx/init.h>
#include <wx/strconv.h>

using namespace fuzzini;

namespace {

std::vector<std::string> g_asserts;

void CountingAssertHandler(const wxString&, int, const wxString&, const wxString& cond,
                           const wxString&) {
    g_asserts.push_back(std::string(cond.utf8_str()));
}

wxString MakeName(FuzzedDataProvider& in) {
    // Lengths cluster around the limits of 255/256 characters and bytes.
    static const size_t lengths[] = {0, 1, 85, 127, 128, 254, 255, 256, 257, 300, 511};
    size_t len = in.ConsumeBool() ? lengths[in.ConsumeIntegralInRange<size_t>(0, 10)]
                                  : in.ConsumeIntegralInRange<size_t>(0, 600);
    // Characters of 1 to 4 bytes in UTF-8, a surrogate now and then.
    static const wxUint32 chars[] = {'a',  'Z',  ' ',   '[',    ']',    '=',     ';',
                                     0xE9, 0xC9, 0x3B1, 0x20AC, 0xFFFD, 0x1F600, 0x10FFFF};
    wxString s;
    const int pattern = in.ConsumeIntegralInRange<int>(0, 3);
    const wxUint32 fixed = chars[in.ConsumeIntegralInRange<size_t>(0, 13)];
    for (size_t i = 0; i < len; ++i) {
        wxUint32 c = fixed;
        if (pattern == 1)
            c = chars[in.ConsumeIntegralInRange<size_t>(0, 13)];
        else if (pattern == 2)
            c = in.ConsumeIntegralInRange<wxUint32>(1, 0x11FFFF); // beyond Unicode too
        else if (pattern == 3)
            c = i % 2 ? 'x' : fixed;
        s += wxUniChar(c);
    }
    return s;
}

// The bytes the store must get: the UTF-8 form cut to 255 bytes; false when
// the name has no UTF-8 form.
bool Expected(const wxString& name, std::string& out) {
    static const wxCSConv conv("utf-8");
    const wxCharBuffer b = name.mb_str(conv);
    if (!b.data() || (b.length() == 0 && !name.empty()))
        return false;
    out.assign(b.data(), b.length());
    if (out.size() > 255)
        out.resize(255);
    return true;
}

void ExpectAsserts(const std::vector<std::string>& want, const char* op) {
    if (g_asserts != want) {
        std::string what = std::string(op) + ": assertions ";
        for (const auto& a : g_asserts)
            what += "\"" + a + "\" ";
        what += "expected ";
        for (const auto& a : want)
            what += "\"" + a + "\" ";
        Fail(what);
    }
    g_asserts.clear();
}

std::vector<std::string> Want(const wxString& a, const char* condA, const wxString& b,
                              const char* condB) {
    std::vector<std::string> out;
    if (a.Len() >= 256)
        out.push_back(condA);
    if (b.Len() >= 256)
        out.push_back(condB);
    return out;
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    static wxInitializer init;
    wxSetAssertHandler(CountingAssertHandler);
    return init.IsOk() ? 0 : 1;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    FuzzedDataProvider in(data, size);
    const wxString section = MakeName(in);
    const wxString key = MakeName(in);
    g_asserts.clear();

    wxIniFile ini;
    ini.WriteString(section, key, "value");
    ExpectAsserts(Want(section, "section.Len () < 256", key, "key.Len () < 256"), "WriteString");
    const bool found = ini.HasKey(section, key);
    ExpectAsserts(Want(section, "section.Len () < 256", key, "key.Len () < 256"), "HasKey");
    const wxString read = ini.ReadString(section, key, "default");
    ExpectAsserts(Want(section, "section.Len () < 256", key, "key.Len () < 256"), "ReadString");
    const int keys = ini.GetKeyCount(section);
    ExpectAsserts(Want(section, "section.Len () < 256", wxString(), ""), "GetKeyCount");

    std::string wantSection, wantKey;
    if (Expected(section, wantSection) && Expected(key, wantKey)) {
        Check(found && read == "value" && keys == 1, "the name does not find its own value");
        const std::string path = ScratchFile("names.ini");
        Check(ini.Save(path), "save failed: " + std::string(ini.GetError().utf8_str()));
        inifile raw = OpenOrFail(path, 1);
        Check(inifile_get_section_count(raw) == 1, "saved file holds other than one section");
        const std::string gotSection = inifile_get_section_by_index(raw, 0);
        Check(gotSection == wantSection,
              "section reached the store as " + Show(gotSection) + ", want " + Show(wantSection));
        Check(inifile_get_key_count(raw, gotSection.c_str()) == 1, "not one key");
        const std::string gotKey = inifile_get_key_by_index(raw, gotSection.c_str(), 0);
        Check(gotKey == wantKey,
              "key reached the store as " + Show(gotKey) + ", want " + Show(wantKey));
        inifile_delete(raw);
    }

    ini.RenameSection(section, key);
    ExpectAsserts(Want(section, "old.Len () < 256", key, "newname.Len () < 256"), "RenameSection");
    ini.RemoveSection(key);
    ExpectAsserts(Want(key, "section.Len () < 256", wxString(), ""), "RemoveSection");
    Check(!ini.HasSection(key), "section still there after RemoveSection");
    ExpectAsserts(Want(key, "section.Len () < 256", wxString(), ""), "HasSection");
    ini.RemoveKey(section, key);
    ExpectAsserts(Want(section, "section.Len () < 256", key, "key.Len () < 256"), "RemoveKey");
    return 0;
}
