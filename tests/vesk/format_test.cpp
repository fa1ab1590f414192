// How the store reads the file format: sections, keys, comments, quoting,
// line ends, byte order mark, duplicates.
#include "store_util.h"

#include <gtest/gtest.h>

using Strings = std::vector<std::string>;

TEST(Format, SectionsKeysBlanksAndComments) {
    TempDir dir;
    Store h;
    ASSERT_TRUE(LoadText(h, dir,
                         "; leading comment\n"
                         "# hash comment\n"
                         "[ General ]  trailing text is ignored\n"
                         "  Name =  Sample value  \n"
                         "Empty=\n"
                         "Bare\n"
                         "\tTabbed\t=\tx\t\n"
                         "Eq = a = b\n"
                         "  ; indented comment\n"
                         "Inline = v ; not a comment # nor this\n"
                         "\n"
                         "[Other]\n"
                         "k=v\n"));
    EXPECT_EQ(Strings({"General", "Other"}), Sections(h));
    EXPECT_EQ(Strings({"Name", "Empty", "Bare", "Tabbed", "Eq", "Inline"}), Keys(h, "General"));
    EXPECT_EQ("Sample value", Get(h, "General", "Name"));
    EXPECT_EQ("", Get(h, "General", "Empty"));
    EXPECT_EQ("", Get(h, "General", "Bare"));
    EXPECT_EQ("x", Get(h, "General", "Tabbed"));
    EXPECT_EQ("a = b", Get(h, "General", "Eq"));
    EXPECT_EQ("v ; not a comment # nor this", Get(h, "General", "Inline"));
    EXPECT_EQ("v", Get(h, "Other", "k"));
    EXPECT_EQ(0, inifile_has_key(h, "General", "; indented comment"));
}

TEST(Format, KeysBeforeTheFirstHeaderFormTheEmptySection) {
    TempDir dir;
    Store h;
    ASSERT_TRUE(LoadText(h, dir, "# top\na=1\nb\n[s]\nc=3\n[]\nd=4\n"));
    EXPECT_EQ(Strings({"", "s"}), Sections(h));
    // A later "[]" block is the same section.
    EXPECT_EQ(Strings({"a", "b", "d"}), Keys(h, ""));
    EXPECT_EQ("1", Get(h, "", "a"));
    EXPECT_EQ("4", Get(h, "", "d"));
}

TEST(Format, QuotedValuesDropTheirQuotesAndDecodeEscapes) {
    TempDir dir;
    Store h;
    ASSERT_TRUE(LoadText(h, dir,
                         "[q]\n"
                         "plain = \"  padded  \"\n"
                         "escapes = \"a\\\\b\\\"c\\nd\\re\\tf\"\n"
                         "unknown = \"C:\\temp\\x\"\n"
                         "doubled = \"C:\\\\temp\"\n"
                         "unquoted = C:\\temp\n"
                         "half = \"open only\n"
                         "inner = \"a\" and \"b\"\n"
                         "lone = \"\n"
                         "empty = \"\"\n"));
    EXPECT_EQ("  padded  ", Get(h, "q", "plain"));
    EXPECT_EQ("a\\b\"c\nd\re\tf", Get(h, "q", "escapes"));
    // \t is a tab even in a path; any other backslash stands for itself.
    EXPECT_EQ("C:\temp\\x", Get(h, "q", "unknown"));
    EXPECT_EQ("C:\\temp", Get(h, "q", "doubled"));
    EXPECT_EQ("C:\\temp", Get(h, "q", "unquoted"));
    EXPECT_EQ("\"open only", Get(h, "q", "half"));
    EXPECT_EQ("a\" and \"b", Get(h, "q", "inner"));
    EXPECT_EQ("\"", Get(h, "q", "lone"));
    EXPECT_EQ("", Get(h, "q", "empty"));
}

TEST(Format, QuotedKeysAndSectionNames) {
    TempDir dir;
    Store h;
    ASSERT_TRUE(LoadText(h, dir,
                         "[\"a]b\"]\n"
                         "\"k=ey\" = v\n"
                         "\";semi\"=1\n"
                         "\"bare quoted\"\n"
                         "\"not closed = 2\n"
                         "[ \"x\" ]\n"
                         "k=3\n"));
    EXPECT_EQ(Strings({"a]b", "\"x\""}), Sections(h));
    EXPECT_EQ(Strings({"k=ey", ";semi", "bare quoted", "\"not closed"}), Keys(h, "a]b"));
    EXPECT_EQ("v", Get(h, "a]b", "k=ey"));
    EXPECT_EQ("2", Get(h, "a]b", "\"not closed"));
}

TEST(Format, CrlfAndByteOrderMark) {
    TempDir dir;
    Store h;
    ASSERT_TRUE(LoadText(h, dir, "\xEF\xBB\xBF[s]\r\nk = v \r\nempty=\r\n\r\nlast=x"));
    EXPECT_EQ(Strings({"s"}), Sections(h));
    EXPECT_EQ("v", Get(h, "s", "k"));
    EXPECT_EQ("", Get(h, "s", "empty"));
    EXPECT_EQ("x", Get(h, "s", "last"));
}

TEST(Format, InvalidUtf8IsKeptAsItStands) {
    TempDir dir;
    Store h;
    ASSERT_TRUE(LoadText(h, dir, "[s\xE5]\nk\xFF=\xE5l\n"));
    EXPECT_EQ(Strings({"s\xE5"}), Sections(h));
    EXPECT_EQ("\xE5l", Get(h, "s\xE5", "k\xFF"));
}

TEST(Format, RepeatedSectionsMergeAndTheFirstOfRepeatedKeysCounts) {
    TempDir dir;
    Store h;
    ASSERT_TRUE(LoadText(h, dir, "[a]\nx=1\nx=2\n[b]\ny=1\n[A]\nx=3\nz=4\n"));
    EXPECT_EQ(Strings({"a", "b"}), Sections(h));
    EXPECT_EQ(Strings({"x", "z"}), Keys(h, "a"));
    EXPECT_EQ("1", Get(h, "a", "x"));
    EXPECT_EQ("4", Get(h, "A", "z"));
}

TEST(Format, ValueLooksLikeAHeaderButStaysAValue) {
    TempDir dir;
    Store h;
    inifile_write_string(h, "s", "k", "x\n[other]\ny=1");
    inifile_write_string(h, "s", "k2", "[another]");
    std::string text = SavedText(h, dir);
    Store back;
    ASSERT_TRUE(LoadText(back, dir, text));
    EXPECT_EQ(Strings({"s"}), Sections(back));
    EXPECT_EQ("x\n[other]\ny=1", Get(back, "s", "k"));
    EXPECT_EQ("[another]", Get(back, "s", "k2"));
}

TEST(Format, WriterQuotesOnlyWhereNeeded) {
    TempDir dir;
    Store h;
    inifile_write_string(h, "plain", "key", "C:\\temp ; x = y");
    inifile_write_string(h, "plain", "k", "\"starts only");
    inifile_write_string(h, "a]b", "k=ey", " padded ");
    inifile_write_string(h, "a]b", ";k", "\"q\"");
    inifile_write_string(h, "a]b", "[k", "line\nbreak\r\ttab\\");
    inifile_write_string(h, "a]b", "#k", "");
    inifile_write_string(h, "a]b", "", "empty key");
    inifile_write_string(h, " s", "\"k", "v");
    EXPECT_EQ("[plain]\n"
              "key=C:\\temp ; x = y\n"
              "k=\"starts only\n"
              "[\"a]b\"]\n"
              "\"k=ey\"=\" padded \"\n"
              "\";k\"=\"\\\"q\\\"\"\n"
              "\"[k\"=\"line\\nbreak\\r\\ttab\\\\\"\n"
              "\"#k\"=\n"
              "=empty key\n"
              "[\" s\"]\n"
              "\"\\\"k\"=v\n",
              SavedText(h, dir));
}

TEST(Format, UnterminatedHeaderAndNulByteAreErrorsWithTheirLine) {
    TempDir dir;
    std::string path = dir.file("bad.ini");
    Store h;
    WriteFileBytes(path, "[ok]\nk=v\n[broken\nx=1\n");
    OpenResult r = OpenFile(h, path);
    EXPECT_NE(0, r.rc);
    EXPECT_EQ(path + ":3", r.region);
    EXPECT_EQ("section header without a closing ']'", r.message);

    WriteFileBytes(path, std::string("[ok]\nk=v\nx=a\0b\n", 15));
    r = OpenFile(h, path);
    EXPECT_NE(0, r.rc);
    EXPECT_EQ(path + ":3", r.region);
    EXPECT_EQ("the file contains a NUL byte", r.message);
    EXPECT_EQ(0, inifile_get_section_count(h));
}

// A key read as plain text that starts with '"' is written quoted when its
// line is rewritten, so that a '"' in the new value can't close it.
TEST(Format, RewrittenLineKeepsAnOpenQuoteKeyApart) {
    TempDir dir;
    Store h;
    ASSERT_TRUE(LoadText(h, dir, "[s]\n\"abc\n\"def = 1\nplain  =  2\n"));
    EXPECT_EQ(Strings({"\"abc", "\"def", "plain"}), Keys(h, "s"));
    inifile_write_string(h, "s", "\"abc", "x\"");
    inifile_write_string(h, "s", "\"def", "y\"");
    inifile_write_string(h, "s", "plain", "3");
    EXPECT_EQ("[s]\n\"\\\"abc\"=x\"\n\"\\\"def\" = y\"\nplain  =  3\n", SavedText(h, dir));
    Store back;
    ASSERT_TRUE(LoadText(back, dir, SavedText(h, dir)));
    EXPECT_EQ(Strings({"\"abc", "\"def", "plain"}), Keys(back, "s"));
    EXPECT_EQ("x\"", Get(back, "s", "\"abc"));
    EXPECT_EQ("y\"", Get(back, "s", "\"def"));
}
