// Line syntax: where quoting starts (each character that forces it, at the
// edges of a name or value), header names, key line parts, and a rewritten
// key line that keeps everything but its value.
#include "syntax.h"

#include <gtest/gtest.h>

#include <string>

namespace {

std::string S(const vesk::String& s) {
    return std::string(s.data(), s.size());
}

std::string Header(const std::string& line, bool* ok = nullptr) {
    std::string_view name;
    vesk::String decoded;
    bool quoted;
    bool found = vesk::headerName(line, name, decoded, quoted);
    if (ok)
        *ok = found;
    return std::string(name);
}

} // namespace

TEST(Syntax, KeyLinesQuoteOnlyWhatWouldNotReadBack) {
    EXPECT_EQ(S(vesk::keyLine("key", "value")), "key=value");
    EXPECT_EQ(S(vesk::keyLine("", "")), "=");
    EXPECT_EQ(S(vesk::keyLine("a b", "c ; d # e")), "a b=c ; d # e");
    for (const char* key : {";k", "#k", "[k", "\"k", " k", "k ", "k=v", "k\nl", "k\rl"})
        EXPECT_EQ(S(vesk::keyLine(key, "v")).front(), '"') << key;
    for (const char* key : {"k;", "k#", "k[", "k\"", "k]"})
        EXPECT_NE(S(vesk::keyLine(key, "v")).front(), '"') << key;
    EXPECT_EQ(S(vesk::keyLine("k", "\"a\"")), "k=\"\\\"a\\\"\"");
    EXPECT_EQ(S(vesk::keyLine("k", "\"a")), "k=\"a");
    EXPECT_EQ(S(vesk::keyLine("k", "a\"")), "k=a\"");
    EXPECT_EQ(S(vesk::keyLine("k", "\"")), "k=\"");
    EXPECT_EQ(S(vesk::keyLine("k", " a")), "k=\" a\"");
    EXPECT_EQ(S(vesk::keyLine("k", "a\t")), "k=\"a\\t\"");
    EXPECT_EQ(S(vesk::keyLine("k", "C:\\x\n")), "k=\"C:\\\\x\\n\"");
}

TEST(Syntax, HeaderNames) {
    EXPECT_EQ(S(vesk::headerLine("a]b")), "[\"a]b\"]");
    EXPECT_EQ(S(vesk::headerLine("a[b")), "[a[b]");
    EXPECT_EQ(S(vesk::headerLine("\"q")), "[\"\\\"q\"]");
    EXPECT_EQ(S(vesk::headerLine("")), "[]");
    EXPECT_EQ(Header("  [ name ] trailing"), "name");
    EXPECT_EQ(Header("[\"a]b\"]"), "a]b");
    EXPECT_EQ(Header("[\"a\\\"b\" ]"), "a\"b");
    EXPECT_EQ(Header("[\"open]"), "\"open"); // no closing quote: plain
    EXPECT_EQ(Header("[\"a\"b]"), "\"a\"b"); // text after the quote: plain
    bool ok = true;
    Header("[no close", &ok);
    EXPECT_FALSE(ok);
}

TEST(Syntax, KeyLineParts) {
    std::string line = "  key \t=  value  ";
    vesk::KeyLineParts p = vesk::splitKeyLine(line);
    EXPECT_EQ(line.substr(p.keyBeg, p.keyEnd - p.keyBeg), "key");
    EXPECT_EQ(line.substr(p.valBeg, p.valEnd - p.valBeg), "value");
    EXPECT_TRUE(p.hasEq);
    p = vesk::splitKeyLine("bare");
    EXPECT_FALSE(p.hasEq);
    line = "\"k=1\" = v";
    p = vesk::splitKeyLine(line);
    EXPECT_TRUE(p.quotedKey);
    EXPECT_EQ(line.substr(p.valBeg, p.valEnd - p.valBeg), "v");
    line = "\"k\"x=v"; // text after the quote: the key is plain, up to '='
    p = vesk::splitKeyLine(line);
    EXPECT_FALSE(p.quotedKey);
    EXPECT_EQ(line.substr(p.keyBeg, p.keyEnd - p.keyBeg), "\"k\"x");
    EXPECT_EQ(S(vesk::unescape("a\\\\b\\\"c\\n\\r\\t\\x\\")), "a\\b\"c\n\r\t\\x\\");
    EXPECT_EQ(vesk::closingQuote("\"a\\\"b\"c"), 5u);
    EXPECT_EQ(vesk::closingQuote("\"a\\\""), std::string_view::npos);
}

TEST(Syntax, RewrittenKeyLinesKeepTheirSpelling) {
    EXPECT_EQ(S(vesk::rewriteKeyLine("  Key =  old  ", "key", "new")), "  Key =  new  ");
    EXPECT_EQ(S(vesk::rewriteKeyLine("Key", "key", "v")), "Key=v");
    EXPECT_EQ(S(vesk::rewriteKeyLine("K=old ; comment", "K", "x")), "K=x");
    EXPECT_EQ(S(vesk::rewriteKeyLine("\"k=\" = old", "k=", "a b ")), "\"k=\" = \"a b \"");
    // A plain key that starts with '"' is quoted once its value could close it.
    EXPECT_EQ(S(vesk::rewriteKeyLine("\"k\"x=1", "\"k\"x", "2")), "\"\\\"k\\\"x\"=2");
}
