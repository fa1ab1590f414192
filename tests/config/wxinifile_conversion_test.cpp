// wxIniFile's conversions against wxCSConv("utf-8") itself, over random names
// and values: the bytes that reach the store (with the 255-byte cut of names)
// and the strings that come back (with the ISO-8859-1 second attempt for
// values), for plain text, characters beyond the BMP, invalid UTF-8, and
// wxStrings that have no UTF-8 form (lone surrogates, values above U+10FFFF).
// The reference is computed here as the converter gives it; wxIniFile is
// seen only through its public operations and the files it saves.
#include "assert_capture.h"
#include "tempdir.h"

#include <wxsupport/config/inifile.h>
#include <wxsupport/config/wxinifile.h>

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

namespace {

const wxCSConv& Utf8() {
    static const wxCSConv conv("utf-8");
    return conv;
}

// What the store must get for a name: m_conv's bytes up to their end (or
// nothing when there are none), cut after 255 bytes.
std::string RefName(const wxString& name) {
    const wxCharBuffer narrow = name.mb_str(Utf8());
    std::string bytes = narrow.data() ? narrow.data() : "";
    if (bytes.size() > 255)
        bytes.resize(255);
    return bytes;
}

// What the store must get for a value: m_conv's bytes, whole.
std::string RefValue(const wxString& value) {
    const wxCharBuffer narrow = value.mb_str(Utf8());
    return narrow.data() ? narrow.data() : "";
}

// What ReadString must give for stored bytes: UTF-8, else ISO-8859-1.
wxString RefDecodeValue(const std::string& bytes) {
    if (bytes.empty())
        return wxString();
    wxString s(bytes.c_str(), Utf8());
    if (s.IsSameAs(wxString()))
        s = wxString(bytes.c_str(), wxCSConv("iso-8859-1"));
    return s;
}

// Random text of the kinds a host may hand over. Most strings are plain
// Unicode; `broken` ones get a few code units without a UTF-8 form.
wxString RandomText(std::mt19937& rng, size_t maxLength, bool broken) {
    const size_t length = rng() % (maxLength + 1);
    std::wstring units;
    for (size_t i = 0; i < length; ++i) {
        wxUint32 c;
        switch (rng() % 8) {
        case 0:
            c = 1 + rng() % 0x7F; // ASCII, controls included
            break;
        case 1:
            c = 0x80 + rng() % 0x780; // two bytes
            break;
        case 2:
            c = 0x800 + rng() % 0xD000; // three bytes, below the surrogates
            if (c >= 0xD800)
                c += 0x800;
            break;
        case 3:
            c = 0x10000 + rng() % 0x100000; // beyond the BMP
            break;
        case 4: { // the edges of each length
            static const wxUint32 edges[] = {0x7F,   0x80,   0x7FF,  0x800,   0xD7FF,
                                             0xE000, 0xFFFD, 0xFFFF, 0x10000, 0x10FFFF,
                                             0xFEFF, 0xA0,   0x20AC, 0x1F600, 0xFFFE};
            c = edges[rng() % (sizeof edges / sizeof edges[0])];
            break;
        }
        default:
            c = 'a' + rng() % 26;
        }
        units += static_cast<wchar_t>(c);
    }
    if (broken) {
        static const wxUint32 bad[] = {0xD800, 0xDBFF, 0xDC00, 0xDFFF, 0x110000, 0x7FFFFFFF};
        const size_t count = 1 + rng() % 2;
        for (size_t k = 0; k < count; ++k) {
            const size_t at = units.empty() ? 0 : rng() % (units.size() + 1);
            units.insert(units.begin() + static_cast<long>(at),
                         static_cast<wchar_t>(bad[rng() % (sizeof bad / sizeof bad[0])]));
        }
    }
    if (rng() % 16 == 0 && !units.empty()) // an embedded NUL ends the C string
        units[rng() % units.size()] = L'\0';
    return wxString(units.data(), units.size());
}

// Random bytes without NUL: well-formed UTF-8 mixed with what is not.
std::string RandomBytes(std::mt19937& rng, size_t maxLength) {
    static const char* const pieces[] = {
        "a", "Z", " ", "\xC3\xA9", "\xDF\xBF", "\xE0\xA0\x80", "\xED\x9F\xBF", "\xEE\x80\x80",
        "\xEF\xBF\xBF", "\xF0\x90\x80\x80", "\xF4\x8F\xBF\xBF", "\xE2\x82\xAC", "\xEF\xBB\xBF",
        // not well-formed: overlong forms, surrogates, beyond U+10FFFF,
        // lone and missing continuation bytes, bytes that never occur
        "\xC0\x80", "\xC1\xBF", "\xE0\x9F\xBF", "\xED\xA0\x80", "\xED\xBF\xBF", "\xF0\x8F\xBF\xBF",
        "\xF4\x90\x80\x80", "\xF5\x80\x80\x80", "\x80", "\xBF", "\xC3", "\xE2\x82", "\xF0\x90\x80",
        "\xFE", "\xFF", "\xE5"};
    const size_t count = sizeof pieces / sizeof pieces[0];
    const size_t wellFormed = 13;
    const bool clean = rng() % 2 == 0;
    std::string out;
    const size_t length = rng() % (maxLength + 1);
    while (out.size() < length)
        out += pieces[rng() % (clean ? wellFormed : count)];
    return out;
}

size_t NameAssertions(const AssertCapture& capture) {
    size_t n = 0;
    for (const wxString& c : capture.conditions())
        n += c == "section.Len () < 256" || c == "key.Len () < 256";
    return n;
}

} // namespace

// Names and values written through wxIniFile and the reference bytes written
// through the C interface give the same file, byte for byte.
TEST(WxIniFileConversion, BytesToTheStoreAreTheConvertersOwn) {
    std::mt19937 rng(20261123);
    TempDir dir;
    wxIniFile ini;
    inifile reference = inifile_new();
    size_t expectedAssertions = 0;
    AssertCapture capture;
    for (int i = 0; i < 3000; ++i) {
        const bool broken = rng() % 4 == 0;
        const wxString section = RandomText(rng, i % 5 == 0 ? 300 : 40, broken && rng() % 2);
        const wxString key = RandomText(rng, i % 7 == 0 ? 300 : 40, broken && rng() % 2);
        const wxString value = RandomText(rng, 200, broken && rng() % 2);
        expectedAssertions += (section.Len() >= 256) + (key.Len() >= 256);
        ini.WriteString(section, key, value);
        inifile_write_string(reference, RefName(section).c_str(), RefName(key).c_str(),
                             RefValue(value).c_str());
    }
    EXPECT_GT(expectedAssertions, 0u);
#if wxDEBUG_LEVEL
    EXPECT_EQ(NameAssertions(capture), expectedAssertions);
#else
    EXPECT_EQ(NameAssertions(capture), 0u); // assertions compile to nothing
#endif
    ASSERT_TRUE(ini.Save(dir.file("ours.ini").c_str())) << ini.GetError();
    pdError* error = nullptr;
    ASSERT_EQ(inifile_save(reference, dir.file("reference.ini").c_str(), &error), 0);
    inifile_delete(reference);
    const std::string ours = ReadFileBytes(dir.file("ours.ini"));
    EXPECT_GT(ours.size(), 100000u);
    EXPECT_TRUE(ours == ReadFileBytes(dir.file("reference.ini")));
}

namespace {

// Writes section "s<i>" with the value bytes values[i].first and a key
// named by the bytes values[i].second through the C interface, then reads
// each back through wxIniFile, as the converter decodes them: values as
// UTF-8 or else ISO-8859-1, names as UTF-8 or else nothing. Gives how many
// values were not UTF-8.
size_t ExpectDecodedAsTheConverter(const std::vector<std::pair<std::string, std::string>>& values,
                                   const TempDir& dir) {
    const std::string path = dir.file("bytes.ini");
    inifile stored = inifile_new();
    for (size_t i = 0; i < values.size(); ++i) {
        const std::string section = "s" + std::to_string(i);
        inifile_write_string(stored, section.c_str(), "value", values[i].first.c_str());
        inifile_write_string(stored, section.c_str(), values[i].second.c_str(), "1");
    }
    pdError* error = nullptr;
    EXPECT_EQ(inifile_save(stored, path.c_str(), &error), 0);
    // The store as wxIniFile sees it, read through the C interface.
    inifile_clear(stored);
    EXPECT_EQ(inifile_open(stored, path.c_str(), &error), 0);
    wxIniFile ini(path);
    EXPECT_EQ(ini.GetSectionCount(), inifile_get_section_count(stored));
    size_t invalid = 0;
    for (size_t i = 0; i < values.size(); ++i) {
        const std::string section = "s" + std::to_string(i);
        const std::string value = inifile_read_string(stored, section.c_str(), "value", "");
        invalid += wxString(value.c_str(), Utf8()).empty() && !value.empty();
        EXPECT_EQ(ini.ReadString(section, "value", "unused"), RefDecodeValue(value)) << i;
        for (int k = 0; k < inifile_get_key_count(stored, section.c_str()); ++k) {
            const char* name = inifile_get_key_by_index(stored, section.c_str(), k);
            EXPECT_EQ(ini.GetNthKey(section, k), wxString(name, Utf8())) << i;
        }
    }
    inifile_delete(stored);
    return invalid;
}

} // namespace

// Stored bytes, read back through wxIniFile: values as UTF-8 or else
// ISO-8859-1, names as UTF-8 or else nothing, exactly as the converter.
TEST(WxIniFileConversion, StringsFromTheStoreAreTheConvertersOwn) {
    std::mt19937 rng(7);
    TempDir dir;
    std::vector<std::pair<std::string, std::string>> values;
    for (int i = 0; i < 2000; ++i) {
        std::string value = RandomBytes(rng, i % 10 == 0 ? 400 : 60);
        values.emplace_back(std::move(value), RandomBytes(rng, 60));
    }
    EXPECT_GT(ExpectDecodedAsTheConverter(values, dir), 100u);
}

// A default goes to the store as the converter's bytes and comes back
// decoded: text without a UTF-8 form reads as the empty string.
TEST(WxIniFileConversion, DefaultsRoundTripAsTheConverterDoes) {
    std::mt19937 rng(99);
    wxIniFile ini;
    AssertCapture capture;
    for (int i = 0; i < 3000; ++i) {
        const wxString def = RandomText(rng, 300, rng() % 3 == 0);
        EXPECT_EQ(ini.ReadString("absent", "key", def), RefDecodeValue(RefValue(def))) << i;
    }
    const wxString loneSurrogate(1, static_cast<wchar_t>(0xDC00));
    EXPECT_EQ(ini.ReadString("absent", "key", "ok" + loneSurrogate), wxString());
    EXPECT_EQ(ini.ReadString("absent", "key", wxString::FromUTF8("\xF0\x9F\x98\x80")),
              wxString::FromUTF8("\xF0\x9F\x98\x80"));
}

namespace {

// Text of `length` code units of `fill`, with `unit` at `at` (none when at
// is past the end).
wxString Planted(size_t length, wxUint32 fill, size_t at, wxUint32 unit) {
    std::wstring units(length, static_cast<wchar_t>(fill));
    if (at < length)
        units[at] = static_cast<wchar_t>(unit);
    return wxString(units.data(), units.size());
}

// Lengths around each block size of the conversions (blocks of four and
// eight code units or bytes, a 255-byte name, 256-unit buffers) and
// positions that put one unit at every place of the first blocks, at the
// block edges further on and at the end.
const size_t kLengths[] = {0,  1,  2,  3,  4,  5,  6,  7,  8,  9,  10, 11,  12,  13,  14,  15,
                           16, 17, 23, 24, 25, 31, 32, 33, 63, 64, 65, 254, 255, 256, 257, 300};

std::vector<size_t> Positions(size_t length) {
    std::vector<size_t> at;
    for (size_t i = 0; i < length; ++i)
        if (i < 18 || i % 8 == 0 || i % 8 == 7 || length - i <= 9)
            at.push_back(i);
    at.push_back(length); // nothing planted
    return at;
}

// Units that stop an ASCII run: the edges of each UTF-8 length, NUL, and
// units without a UTF-8 form; 0x01 and 0x7F are the ASCII edges that don't.
const wxUint32 kPlants[] = {0x01,    0x7F,    0x80, 0xE9,   0x7FF,  0x800,   0xFFFF,
                            0x10000, 0x1F600, 0x0,  0xD800, 0xDFFF, 0x110000};

// Saves wxIniFile's store and the reference store written through the C
// interface, and expects the same file, byte for byte; deletes the reference.
void ExpectSameFile(wxIniFile& ini, inifile reference, const TempDir& dir) {
    ASSERT_TRUE(ini.Save(dir.file("ours.ini").c_str())) << ini.GetError();
    pdError* error = nullptr;
    const int saved = inifile_save(reference, dir.file("reference.ini").c_str(), &error);
    inifile_delete(reference);
    ASSERT_EQ(saved, 0);
    EXPECT_TRUE(ReadFileBytes(dir.file("ours.ini")) == ReadFileBytes(dir.file("reference.ini")));
}

} // namespace

// Every ASCII block path, and each unit that ends one at each place of a
// block, gives the converter's bytes for names (with the 255-byte cut),
// values and defaults.
TEST(WxIniFileConversion, BlocksOfAsciiEndWhereTheConverterSays) {
    TempDir dir;
    wxIniFile ini;
    inifile reference = inifile_new();
    AssertCapture capture; // names of 256 units and more assert
    size_t cases = 0;
    for (const size_t length : kLengths) {
        for (const size_t at : Positions(length)) {
            for (const wxUint32 unit : kPlants) {
                const wxString text = Planted(length, 'a' + length % 26, at, unit);
                const std::string tag = std::to_string(cases++);
                // The text as section, key and value, each in a case of its own.
                ini.WriteString(text, "k" + tag, "v");
                ini.WriteString("case " + tag, text, text);
                inifile_write_string(reference, RefName(text).c_str(), ("k" + tag).c_str(), "v");
                inifile_write_string(reference, ("case " + tag).c_str(), RefName(text).c_str(),
                                     RefValue(text).c_str());
                ASSERT_EQ(ini.ReadString("absent", "key", text), RefDecodeValue(RefValue(text)))
                    << "length " << length << " at " << at << " unit " << unit;
                if (unit == 0x7F && at < length) { // still ASCII: HasKey finds it
                    ASSERT_TRUE(ini.HasKey("case " + tag, text)) << length << " " << at;
                    ASSERT_EQ(ini.ReadString("case " + tag, text, ""), text);
                }
            }
        }
    }
    ExpectSameFile(ini, reference, dir);
}

// Values and defaults whose UTF-8 form has just under, exactly and just over
// 1024 bytes (up to which a copy is encoded on the stack before pd_strdup
// copies it): four-byte characters, with ASCII and with a unit that has no
// UTF-8 form.
TEST(WxIniFileConversion, CopiesAroundTheStackSizeAreTheConvertersOwn) {
    TempDir dir;
    wxIniFile ini;
    inifile reference = inifile_new();
    int cases = 0;
    for (size_t length = 250; length <= 260; ++length) {
        for (const wxUint32 fill : {0x1F600u, 0x20ACu, 0x41u}) {
            for (const wxUint32 tail : {0x1F600u, 0x41u, 0xDC00u, 0x0u}) {
                // The last unit differs: a four-byte character, ASCII,
                // a lone surrogate (no UTF-8 form), a NUL that ends the text.
                const wxString text = Planted(length, fill, length - 1, tail);
                const std::string key = "k" + std::to_string(cases++);
                EXPECT_EQ(ini.ReadString("absent", "key", text), RefDecodeValue(RefValue(text)))
                    << length << " " << fill << " " << tail;
                ini.WriteString("values", key, text);
                inifile_write_string(reference, "values", key.c_str(), RefValue(text).c_str());
                EXPECT_EQ(ini.ReadString("values", key, "unused"), RefDecodeValue(RefValue(text)));
            }
        }
    }
    ExpectSameFile(ini, reference, dir);
}

// Stored bytes that are ASCII up to a piece planted at each place of the
// eight-byte blocks, at lengths around the blocks and the 256-unit buffer,
// read back as the converter decodes them: values and key names.
TEST(WxIniFileConversion, StoredBytesDecodeAsTheConverterAtEveryBlockPlace) {
    static const char* const pieces[] = {"\x7F", "\xC3\xA9", "\xE2\x82\xAC", "\xF0\x9F\x98\x80",
                                         // not well-formed
                                         "\x80", "\xC3", "\xC0\xAF", "\xED\xA0\x80",
                                         "\xF4\x90\x80\x80", "\xFF"};
    TempDir dir;
    std::vector<std::pair<std::string, std::string>> values;
    for (const size_t length : kLengths) {
        for (const size_t at : Positions(length)) {
            for (const char* piece : pieces) {
                std::string bytes(length, static_cast<char>('a' + length % 26));
                if (at < length)
                    bytes.replace(at, 1, piece);
                // Names up to the length the store takes for one.
                values.emplace_back(bytes, bytes.size() < 200 ? bytes : "key");
                if (at == length)
                    break; // nothing planted: one case is enough
            }
        }
    }
    EXPECT_GT(ExpectDecodedAsTheConverter(values, dir), 1000u);
}
