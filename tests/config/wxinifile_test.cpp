// wxIniFile: the name frame, typed values, decoding, errors, structure
// operations and shared stores, on real files.
#include "assert_capture.h"
#include "tempdir.h"

#include <wxsupport/config/wxinifile.h>

#include <gtest/gtest.h>

#include <clocale>
#include <functional>
#include <memory>
#include <string>
#include <sys/stat.h>
#include <vector>

namespace {

wxString Repeat(const wxString& unit, size_t count) {
    wxString out;
    for (size_t i = 0; i < count; ++i)
        out += unit;
    return out;
}

const wxString kEAcute = wxString::FromUTF8("\xC3\xA9"); // two bytes of UTF-8

} // namespace

// ---------------------------------------------------------------------------
// The name frame: assertion texts, their order, and the 255-byte cut.

TEST(WxIniFileNames, SectionOf256CharactersAssertsAndIsCutTo255) {
    wxIniFile ini;
    AssertCapture capture;
    ini.WriteString(Repeat("s", 255), "k", "whole");
    EXPECT_EQ(capture.count(), 0u);
    ini.WriteString(Repeat("s", 256), "k", "v");
    ASSERT_EQ(capture.count(), 1u);
    const CapturedAssert& a = capture.asserts()[0];
    EXPECT_EQ(a.cond, "section.Len () < 256");
    EXPECT_EQ(a.func, "wxIniFile::WriteString");
    EXPECT_TRUE(a.file.Contains("wxinifile")) << a.file;
    EXPECT_EQ(ini.GetSectionCount(), 1);
    EXPECT_EQ(ini.GetNthSection(0), Repeat("s", 255));
    EXPECT_EQ(ini.ReadString(Repeat("s", 255), "k", "none"), "v");
}

TEST(WxIniFileNames, BothChecksRunSectionFirst) {
    wxIniFile ini;
    AssertCapture capture;
    EXPECT_FALSE(ini.HasKey(Repeat("s", 300), Repeat("k", 300)));
    EXPECT_EQ(capture.conditions(),
              (std::vector<wxString>{"section.Len () < 256", "key.Len () < 256"}));
}

TEST(WxIniFileNames, RenameChecksOldThenNew) {
    wxIniFile ini;
    ini.RegisterSection("a");
    AssertCapture capture;
    ini.RenameSection(Repeat("o", 256), Repeat("n", 256));
    EXPECT_EQ(capture.conditions(),
              (std::vector<wxString>{"old.Len () < 256", "newname.Len () < 256"}));
    capture.clear();
    ini.RenameSection("a", Repeat("n", 256));
    EXPECT_EQ(capture.conditions(), (std::vector<wxString>{"newname.Len () < 256"}));
    EXPECT_TRUE(ini.HasSection(Repeat("n", 255)));
}

TEST(WxIniFileNames, EveryNamedOperationReportsItsQualifiedName) {
    wxIniFile ini;
    wxIniFile other;
    const wxString longName = Repeat("x", 256);
    struct Case {
        const char* function;
        size_t checks; // section and key, or section alone
        std::function<void()> call;
    };
    const std::vector<Case> cases = {
        {"wxIniFile::HasSection", 1, [&] { ini.HasSection(longName); }},
        {"wxIniFile::HasKey", 2, [&] { ini.HasKey(longName, longName); }},
        {"wxIniFile::WriteLong", 2, [&] { ini.WriteLong(longName, longName, 1); }},
        {"wxIniFile::WriteFloat", 2, [&] { ini.WriteFloat(longName, longName, 1.0); }},
        {"wxIniFile::WriteString", 2, [&] { ini.WriteString(longName, longName, "v"); }},
        {"wxIniFile::WriteBool", 2, [&] { ini.WriteBool(longName, longName, true); }},
        {"wxIniFile::Write", 2, [&] { ini.Write(longName, longName, 1L); }},
        {"wxIniFile::Write", 2, [&] { ini.Write(longName, longName, wxString("v")); }},
        {"wxIniFile::ReadLong", 2, [&] { ini.ReadLong(longName, longName, 0); }},
        {"wxIniFile::ReadFloat", 2, [&] { ini.ReadFloat(longName, longName, 0.0); }},
        {"wxIniFile::ReadString", 2, [&] { ini.ReadString(longName, longName, ""); }},
        {"wxIniFile::ReadBool", 2, [&] { ini.ReadBool(longName, longName, false); }},
        {"wxIniFile::Read", 2, [&] { ini.Read(longName, longName, 0L); }},
        {"wxIniFile::Read", 2, [&] { ini.Read(longName, longName, wxString()); }},
        {"wxIniFile::GetKeyCount", 1, [&] { ini.GetKeyCount(longName); }},
        {"wxIniFile::GetNthKey", 1, [&] { ini.GetNthKey(longName, 0); }},
        {"wxIniFile::RemoveSection", 1, [&] { ini.RemoveSection(longName); }},
        {"wxIniFile::RemoveKey", 2, [&] { ini.RemoveKey(longName, longName); }},
        {"wxIniFile::CopySection", 1, [&] { ini.CopySection(longName, other); }},
        {"wxIniFile::RegisterSection", 1, [&] { ini.RegisterSection(longName); }},
    };
    for (const Case& c : cases) {
        AssertCapture capture;
        c.call();
        ASSERT_EQ(capture.count(), c.checks) << c.function;
        EXPECT_EQ(capture.asserts()[0].cond, "section.Len () < 256") << c.function;
        if (c.checks == 2) {
            EXPECT_EQ(capture.asserts()[1].cond, "key.Len () < 256") << c.function;
        }
        for (const CapturedAssert& a : capture.asserts()) {
            EXPECT_EQ(a.func, c.function);
        }
    }
    AssertCapture none;
    ini.GetSectionCount();
    ini.GetNthSection(0);
    EXPECT_EQ(none.count(), 0u);
}

TEST(WxIniFileNames, ByteLimitCutsInsideAMultiByteCharacterWithoutAssertion) {
    wxIniFile ini;
    const wxString key = Repeat(kEAcute, 200); // 200 characters, 400 bytes
    AssertCapture capture;
    ini.WriteString("s", key, "v");
    EXPECT_EQ(capture.count(), 0u);
    // The store holds 127 characters and half of the next: any name with
    // the same first 255 bytes finds it, a shorter one doesn't.
    EXPECT_TRUE(ini.HasKey("s", Repeat(kEAcute, 128)));
    EXPECT_FALSE(ini.HasKey("s", Repeat(kEAcute, 127)));
    // Not valid UTF-8 any more: the name reads back empty.
    EXPECT_EQ(ini.GetKeyCount("s"), 1);
    EXPECT_EQ(ini.GetNthKey("s", 0), wxString());
}

TEST(WxIniFileNames, EmptyNamesAreOrdinaryNames) {
    wxIniFile ini;
    ini.WriteLong("", "", 7);
    EXPECT_TRUE(ini.HasSection(""));
    EXPECT_EQ(ini.ReadLong("", "", 0), 7);
    EXPECT_EQ(ini.GetNthSection(0), wxString());
}

// ---------------------------------------------------------------------------
// Typed values.

TEST(WxIniFileValues, TypedRoundTripsThroughAFile) {
    TempDir dir;
    const std::string path = dir.file("values.ini");
    {
        wxIniFile ini;
        ini.WriteLong("Numbers", "long", -123456789L);
        ini.WriteFloat("Numbers", "float", 0.1);
        ini.WriteString("Text", "greeting", wxString::FromUTF8("Grüße, κόσμε"));
        ini.WriteBool("Flags", "on", true);
        ini.WriteBool("Flags", "off", false);
        ini.Write("Text", "overload", wxString("via Write"));
        ini.Write("Numbers", "overload", 42L);
        ASSERT_TRUE(ini.Save(path));
    }
    wxIniFile ini(path);
    EXPECT_EQ(ini.ReadLong("Numbers", "long", 0), -123456789L);
    EXPECT_EQ(ini.ReadFloat("Numbers", "float", 0.0), 0.1);
    EXPECT_EQ(ini.ReadString("Text", "greeting", ""), wxString::FromUTF8("Grüße, κόσμε"));
    EXPECT_TRUE(ini.ReadBool("Flags", "on", false));
    EXPECT_FALSE(ini.ReadBool("Flags", "off", true));
    EXPECT_EQ(ini.ReadLong("Flags", "on", 0), 1);
    EXPECT_EQ(ini.Read("Text", "overload", wxString()), "via Write");
    EXPECT_EQ(ini.Read("Numbers", "overload", 0L), 42);
}

TEST(WxIniFileValues, AbsentKeysGiveTheDefaults) {
    wxIniFile ini;
    EXPECT_EQ(ini.ReadLong("s", "k", 17), 17);
    EXPECT_EQ(ini.ReadFloat("s", "k", 2.5), 2.5);
    EXPECT_EQ(ini.ReadString("s", "k", wxString::FromUTF8("défaut")), wxString::FromUTF8("défaut"));
    EXPECT_TRUE(ini.ReadBool("s", "k", true));
    EXPECT_FALSE(ini.ReadBool("s", "k", false));
    EXPECT_FALSE(ini.HasSection("s"));
    EXPECT_FALSE(ini.HasKey("s", "k"));
    // Any non-zero whole number reads as true.
    ini.WriteLong("s", "two", 2);
    ini.WriteLong("s", "minus", -1);
    EXPECT_TRUE(ini.ReadBool("s", "two", false));
    EXPECT_TRUE(ini.ReadBool("s", "minus", false));
}

TEST(WxIniFileValues, LongValuesPassWhole) {
    wxIniFile ini;
    const wxString value = Repeat(wxString::FromUTF8("ab\xC3\xA9"), 33334); // 100,002 chars
    AssertCapture capture;
    ini.WriteString("s", "k", value);
    EXPECT_EQ(capture.count(), 0u);
    EXPECT_EQ(ini.ReadString("s", "k", ""), value);
}

TEST(WxIniFileValues, EmptyStoredValueIsEmptyWhateverTheDefault) {
    wxIniFile ini;
    ini.WriteString("s", "k", "");
    EXPECT_EQ(ini.ReadString("s", "k", "default"), wxString());
}

TEST(WxIniFileValues, InvalidUtf8ValuesReadAsLatin1) {
    TempDir dir;
    const std::string path = dir.file("bytes.ini");
    WriteFileBytes(path, "[s]\nlatin=\xE5l\nutf8=\xC3\xA5\n");
    wxIniFile ini(path);
    EXPECT_EQ(ini.ReadString("s", "latin", ""), wxString::FromUTF8("\xC3\xA5l"));
    EXPECT_EQ(ini.ReadString("s", "utf8", ""), wxString::FromUTF8("\xC3\xA5"));
}

TEST(WxIniFileValues, EncodingArgumentChangesNothing) {
    TempDir dir;
    wxIniFile latin(wxFONTENCODING_ISO8859_1);
    wxIniFile other(wxFONTENCODING_CP1252);
    const wxString value = wxString::FromUTF8("Ä€ü");
    latin.WriteString("s", "k", value);
    other.WriteString("s", "k", value);
    ASSERT_TRUE(latin.Save(dir.file("a.ini")));
    ASSERT_TRUE(other.Save(dir.file("b.ini")));
    EXPECT_EQ(ReadFileBytes(dir.file("a.ini")), ReadFileBytes(dir.file("b.ini")));
    wxIniFile reread(dir.file("a.ini"), wxFONTENCODING_KOI8);
    EXPECT_EQ(reread.ReadString("s", "k", ""), value);
}

// ---------------------------------------------------------------------------
// Open, Save and GetError.

TEST(WxIniFileErrors, FailedOpenKeepsContentsAndNamesThePath) {
    TempDir dir;
    wxIniFile ini;
    ini.WriteLong("s", "k", 1);
    EXPECT_EQ(ini.GetError(), wxString());
    const std::string missing = dir.file("missing.ini");
    EXPECT_FALSE(ini.Open(missing));
    EXPECT_TRUE(ini.GetError().StartsWith(wxString(missing) + ":")) << ini.GetError();
    EXPECT_EQ(ini.ReadLong("s", "k", 0), 1);
}

TEST(WxIniFileValues, CarriageReturnAtTheEndOfAFileStaysData) {
    // The last line has no line end and ends in CR; a line added after it
    // must not turn that CR into half of a CRLF.
    TempDir dir;
    WriteFileBytes(dir.file("cr.ini"), "[s]\nk=v\r");
    wxIniFile ini(dir.file("cr.ini"));
    ASSERT_EQ(ini.ReadString("s", "k", ""), "v\r");
    ini.WriteString("s", "added", "x");
    ASSERT_TRUE(ini.Save(dir.file("cr.ini")));
    wxIniFile reread(dir.file("cr.ini"));
    EXPECT_EQ(reread.ReadString("s", "k", ""), "v\r");
    EXPECT_EQ(reread.ReadString("s", "added", ""), "x");
}

TEST(WxIniFileErrors, OnlyRegularFilesOpen) {
    TempDir dir;
    const std::string fifo = dir.file("fifo");
    ASSERT_EQ(mkfifo(fifo.c_str(), 0600), 0);
    // Neither may block or read without end.
    for (const std::string& path : {fifo, std::string("/dev/zero"), dir.path()}) {
        wxIniFile ini;
        EXPECT_FALSE(ini.Open(path)) << path;
        EXPECT_TRUE(ini.GetError().StartsWith(wxString(path) + ": ")) << ini.GetError();
    }
    wxIniFile ini;
    ini.Open(fifo);
    EXPECT_TRUE(ini.GetError().EndsWith("Not a regular file")) << ini.GetError();
}

TEST(WxIniFileErrors, ErrorTextSurvivesLaterSuccess) {
    TempDir dir;
    WriteFileBytes(dir.file("good.ini"), "[a]\nb=c\n");
    WriteFileBytes(dir.file("bad.ini"), "[a]\n[unterminated\n");
    wxIniFile ini;
    EXPECT_FALSE(ini.Open(dir.file("bad.ini")));
    const wxString first = ini.GetError();
    EXPECT_TRUE(first.StartsWith(wxString(dir.file("bad.ini")) + ":2: ")) << first;
    EXPECT_TRUE(ini.Open(dir.file("good.ini")));
    EXPECT_EQ(ini.GetError(), first);
    EXPECT_TRUE(ini.Save(dir.file("out.ini")));
    EXPECT_EQ(ini.GetError(), first);
    EXPECT_EQ(ini.ReadString("a", "b", ""), "c");
}

TEST(WxIniFileErrors, ConstructorWithBadPathLeavesAUsableObject) {
    TempDir dir;
    wxIniFile ini(dir.file("nothing-here.ini"));
    EXPECT_FALSE(ini.GetError().empty());
    ini.WriteLong("s", "k", 3);
    EXPECT_TRUE(ini.Save(dir.file("now.ini")));
    EXPECT_EQ(wxIniFile(dir.file("now.ini")).ReadLong("s", "k", 0), 3);
}

TEST(WxIniFileErrors, OpenConvertsThePathToUtf8) {
    TempDir dir;
    const std::string path = dir.file("caf\xC3\xA9.ini");
    WriteFileBytes(path, "[s]\nk=1\n");
    wxIniFile ini;
    EXPECT_TRUE(ini.Open(wxString::FromUTF8(path.c_str())));
    EXPECT_EQ(ini.ReadLong("s", "k", 0), 1);
}

TEST(WxIniFileErrors, SavePathFollowsTheCLibraryLocale) {
    TempDir dir;
    const wxString path = wxString::FromUTF8(dir.file("na\xC3\xAFve.ini").c_str());
    wxIniFile ini;
    ini.WriteLong("s", "k", 5);
    const std::string saved = setlocale(LC_ALL, nullptr);
    if (setlocale(LC_ALL, "C.UTF-8")) {
        EXPECT_TRUE(ini.Save(path)) << ini.GetError();
        EXPECT_EQ(ReadFileBytes(dir.file("na\xC3\xAFve.ini")), "[s]\nk=5\n");
    }
    setlocale(LC_ALL, saved.c_str());
}

// ---------------------------------------------------------------------------
// Structure operations.

TEST(WxIniFileStructure, EnumeratesInFileOrder) {
    TempDir dir;
    WriteFileBytes(dir.file("e.ini"), "[one]\na=1\nb=2\n[two]\n[three]\nc=3\n");
    wxIniFile ini(dir.file("e.ini"));
    ASSERT_EQ(ini.GetSectionCount(), 3);
    EXPECT_EQ(ini.GetNthSection(0), "one");
    EXPECT_EQ(ini.GetNthSection(1), "two");
    EXPECT_EQ(ini.GetNthSection(2), "three");
    EXPECT_EQ(ini.GetNthSection(3), wxString());
    EXPECT_EQ(ini.GetNthSection(-1), wxString());
    EXPECT_EQ(ini.GetKeyCount("one"), 2);
    EXPECT_EQ(ini.GetNthKey("one", 1), "b");
    EXPECT_EQ(ini.GetNthKey("one", 2), wxString());
    EXPECT_EQ(ini.GetKeyCount("two"), 0);
    ini.RemoveSection("two");
    EXPECT_EQ(ini.GetSectionCount(), 2);
    EXPECT_FALSE(ini.HasSection("two"));
}

TEST(WxIniFileStructure, RemoveKeyTellsWhetherAKeyWentAway) {
    wxIniFile ini;
    ini.WriteLong("s", "k", 1);
    AssertCapture capture;
    EXPECT_TRUE(ini.RemoveKey("s", "k"));
    EXPECT_FALSE(ini.RemoveKey("s", "k"));
    EXPECT_FALSE(ini.RemoveKey("nowhere", "k"));
    EXPECT_EQ(ini.GetError(), wxString());
    EXPECT_EQ(capture.count(), 0u);
}

TEST(WxIniFileStructure, CopyRenameRegister) {
    wxIniFile source;
    wxIniFile target; // never opened
    source.WriteString("s", "a", "1");
    source.WriteString("s", "b", "2");
    target.WriteString("s", "a", "old");
    target.WriteString("s", "keep", "x");
    source.CopySection("s", target);
    EXPECT_EQ(target.ReadString("s", "a", ""), "1");
    EXPECT_EQ(target.ReadString("s", "b", ""), "2");
    EXPECT_EQ(target.ReadString("s", "keep", ""), "x");

    source.RegisterSection("empty");
    EXPECT_TRUE(source.HasSection("empty"));
    EXPECT_EQ(source.GetKeyCount("empty"), 0);
    source.RenameSection("s", "empty"); // onto an existing name: nothing
    EXPECT_TRUE(source.HasSection("s"));
    source.RenameSection("s", "renamed");
    EXPECT_FALSE(source.HasSection("s"));
    EXPECT_EQ(source.ReadString("renamed", "b", ""), "2");
}

TEST(WxIniFileStructure, CaseSensitivityFollowsTheSetting) {
    wxIniFile ini;
    ini.WriteLong("Section", "Key", 1);
    EXPECT_TRUE(ini.HasKey("SECTION", "key"));
    ini.setCaseSensitive(true);
    EXPECT_FALSE(ini.HasKey("SECTION", "key"));
    EXPECT_TRUE(ini.HasKey("Section", "Key"));
}

// ---------------------------------------------------------------------------
// Copies share one store, which is deleted once (the sanitizer build checks
// for leaks and double frees).

TEST(WxIniFileCopies, CopiesWorkOnOneStore) {
    auto original = std::make_unique<wxIniFile>();
    wxIniFile copy(*original);
    original->WriteLong("s", "k", 9);
    EXPECT_EQ(copy.ReadLong("s", "k", 0), 9);
    original.reset();
    copy.WriteLong("s", "k", 10);
    EXPECT_EQ(copy.ReadLong("s", "k", 0), 10);
}

TEST(WxIniFileCopies, AssignmentReleasesTheFormerStore) {
    wxIniFile a;
    wxIniFile b;
    a.WriteLong("s", "a", 1);
    b.WriteLong("s", "b", 2);
    b = a;
    EXPECT_TRUE(b.HasKey("s", "a"));
    EXPECT_FALSE(b.HasKey("s", "b"));
    const wxIniFile& alias = b;
    b = alias;
    b.WriteLong("s", "c", 3);
    EXPECT_TRUE(a.HasKey("s", "c"));
}

TEST(WxIniFileCopies, CopySectionIntoItsOwnStoreChangesNothing) {
    wxIniFile a;
    a.WriteString("s", "k", "v");
    wxIniFile b(a);
    a.CopySection("s", b);
    EXPECT_EQ(a.GetKeyCount("s"), 1);
    EXPECT_EQ(b.ReadString("s", "k", ""), "v");
}
