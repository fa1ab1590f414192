// How the store reads and writes the file format, and how it compares names.
#include "store_util.h"

#include <gtest/gtest.h>

TEST(Format, ReadingTable) {
    struct Case {
        const char* what;
        std::string text, dump;
    } cases[] = {
        {"comments, bare keys, blanks",
         "; c\n# h\n[ General ]  trailing\n  Name =  Sample value  \nEmpty=\nBare\n"
         "\tTab\t=\tx\t\nEq = a = b\n  ; indented\nInline = v ; no # comment\n\n[O]\nk=v\n",
         "[General]Name=Sample value|Empty=|Bare=|Tab=x|Eq=a = b|Inline=v ; no # comment|[O]k=v|"},
        {"leading keys in \"\"", "# top\na=1\nb\n[s]\nc=3\n[]\nd=4\n", "[]a=1|b=|d=4|[s]c=3|"},
        {"quoted values",
         "[q]\np = \"  padded  \"\ne = \"a\\\\b\\\"c\\nd\\re\\tf\"\nu = \"C:\\temp\\x\"\n"
         "raw = C:\\temp\nhalf = \"open\nin = \"a\" and \"b\"\nlone = \"\nnone = \"\"\n",
         "[q]p=  padded  |e=a\\b\"c\nd\re\tf|u=C:\temp\\x|raw=C:\\temp|half=\"open|"
         "in=a\" and \"b|lone=\"|none=|"},
        {"quoted keys and sections",
         "[\"a]b\"]\n\"k=ey\" = v\n\";semi\"=1\n\"bare q\"\n\"open = 2\n[ \"x\" ]\nk=3\n",
         "[a]b]k=ey=v|;semi=1|bare q=|\"open=2|[\"x\"]k=3|"},
        {"CRLF and BOM", "\xEF\xBB\xBF[s]\r\nk = v \r\nempty=\r\n\r\nlast=x",
         "[s]k=v|empty=|last=x|"},
        {"invalid UTF-8", "[s\xE5]\nk\xFF=\xE5l\n", "[s\xE5]k\xFF=\xE5l|"},
        {"duplicates", "[a]\nx=1\nx=2\n[b]\ny=1\n[A]\nx=3\nz=4\n", "[a]x=1|z=4|[b]y=1|"},
    };
    TempDir dir;
    for (const Case& c : cases) {
        Store h;
        ASSERT_TRUE(LoadText(h, dir, c.text)) << c.what;
        EXPECT_EQ(c.dump, Dump(h)) << c.what;
        EXPECT_EQ(c.text, SavedText(h, dir)) << c.what;
    }
    // Writing a repeated key changes its first line only.
    Store h;
    ASSERT_TRUE(LoadText(h, dir, cases[6].text));
    inifile_write_string(h, "A", "X", "9");
    EXPECT_EQ("[a]\nx=9\nx=2\n[b]\ny=1\n[A]\nx=3\nz=4\n", SavedText(h, dir));
}

// Headers are found by their '[' with only blanks before it on the line, and
// a header's section is settled a few headers later: blocks of one section
// near each other and far apart (more headers between than are pending)
// still make one section, in the order of the first block.
TEST(Format, HeadersAndTheBlocksOfOneSection) {
    std::string text = "k=[not a header]\n [A]\nx=1\n\t[B]\nb=[1]\nx[2]=y\n[a]\ny=2\n";
    std::string dump = "[]k=[not a header]|[A]x=1|y=2|z=3|[B]b=[1]|x[2]=y|";
    for (int i = 0; i < 12; ++i) {
        text += "[S" + std::to_string(i) + "]\nk=" + std::to_string(i) + "\n";
        dump += "[S" + std::to_string(i) + "]k=" + std::to_string(i) + "|";
    }
    text += "  [A]  \nz=3\n[S0]\n";
    TempDir dir;
    Store h;
    ASSERT_TRUE(LoadText(h, dir, text));
    EXPECT_EQ(dump, Dump(h));
    EXPECT_EQ(text, SavedText(h, dir));
    EXPECT_EQ(inifile_get_section_count(h), 15);
}

TEST(Format, RefusedFilesNameTheirLine) {
    TempDir dir;
    std::string path = dir.file("bad.ini");
    const std::pair<std::string, const char*> cases[] = {
        {"[ok]\nk=v\n[broken\nx=1\n", "section header without a closing ']'"},
        {std::string("[ok]\nk=v\nx=a\0b\n", 15), "the file contains a NUL byte"},
    };
    for (const auto& c : cases) {
        Store h;
        WriteFileBytes(path, c.first);
        Result r = OpenFile(h, path);
        EXPECT_NE(0, r.rc);
        EXPECT_EQ(path + ":3", r.region);
        EXPECT_EQ(c.second, r.message);
        EXPECT_EQ(0, inifile_get_section_count(h));
    }
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
    inifile_write_string(h, " s", "\"k", "v");
    EXPECT_EQ("[plain]\nkey=C:\\temp ; x = y\nk=\"starts only\n[\"a]b\"]\n\"k=ey\"=\" padded \"\n"
              "\";k\"=\"\\\"q\\\"\"\n\"[k\"=\"line\\nbreak\\r\\ttab\\\\\"\n\"#k\"=\n"
              "[\" s\"]\n\"\\\"k\"=v\n",
              SavedText(h, dir));
}

TEST(Names, CaseFoldingAndBytes) {
    Store h;
    inifile_write_string(h, "Größe", "ΣΊΣΥΦΟΣ", "1");
    EXPECT_EQ("1", Get(h, "GRÖßE", "σίσυφος"));         // final sigma folds to sigma
    EXPECT_EQ("<absent>", Get(h, "GRÖSSE", "ΣΊΣΥΦΟΣ")); // ß to ss is full folding only
    EXPECT_EQ("1", Get(h, "GRÖẞE", "ΣΊΣΥΦΟΣ"));         // U+1E9E folds to ß
    inifile_write_string(h, "K", "x", "kelvin");
    EXPECT_EQ("kelvin", Get(h, "\xE2\x84\xAA", "X"));   // KELVIN SIGN folds to k
    inifile_write_string(h, "\xC4\xB0", "x", "dotted"); // U+0130 has no simple folding
    EXPECT_EQ("<absent>", Get(h, "i", "x"));
    inifile_write_string(h, "A\xC3", "K\xFF", "v"); // not UTF-8: byte by byte
    EXPECT_EQ("v", Get(h, "A\xC3", "K\xFF"));
    EXPECT_EQ("<absent>", Get(h, "a\xC3", "K\xFF"));
    EXPECT_EQ("<absent>", Get(h, "A\xC3", "k\xFF"));
}

TEST(Names, CaseSensitivityBelongsToTheHandle) {
    TempDir dir;
    Store h;
    inifile_set_case_sensitive(h, 1);
    ASSERT_TRUE(LoadText(h, dir, "[a]\nk=1\n[A]\nK=2\n"));
    EXPECT_EQ("[a]k=1|[A]K=2|", Dump(h));
    inifile_clear(h);
    inifile_write_string(h, "X", "k", "2");
    EXPECT_EQ("<absent>", Get(h, "x", "k"));

    // Switching after a load: merged stays merged, lookups follow the rule.
    Store g;
    ASSERT_TRUE(LoadText(g, dir, "[a]\nk=1\n[A]\nK=2\nj=3\n"));
    inifile_set_case_sensitive(g, 1);
    EXPECT_EQ("<absent>", Get(g, "a", "K"));
    inifile_write_string(g, "A", "k", "new");
    EXPECT_EQ("[a]k=1|j=3|[A]k=new|", Dump(g));
    inifile_set_case_sensitive(g, 0);
    EXPECT_EQ("1", Get(g, "A", "K")); // the first of the two now
}
