// Names: the case rule's folding, its hash (the inline ASCII path agrees
// with the folded bytes at every length) and comparison.
#include "names.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

using vesk::NameRule;

namespace {

NameRule Rule(bool caseSensitive) {
    NameRule r;
    r.setCaseSensitive(caseSensitive);
    return r;
}

std::string Folded(const NameRule& r, std::string_view s) {
    vesk::String out;
    r.fold(s, out);
    return std::string(out.data(), out.size());
}

} // namespace

TEST(Names, FoldingIsSimpleCaseFoldingOfValidUtf8) {
    NameRule r = Rule(false);
    EXPECT_EQ(Folded(r, "Key_ABC-xyz"), "key_abc-xyz");
    EXPECT_EQ(Folded(r, "\xC3\x84RGER"), "\xC3\xA4rger");         // Ä -> ä
    EXPECT_EQ(Folded(r, "\xE1\xBA\x9E"), "\xC3\x9F");             // ẞ -> ß
    EXPECT_EQ(Folded(r, "\xC3\x9F"), "\xC3\x9F");                 // ß stays (no "ss")
    EXPECT_EQ(Folded(r, "\xC5\xBF"), "s");                        // ſ -> s
    EXPECT_EQ(Folded(r, "\xC4\xB0"), "\xC4\xB0");                 // İ has no simple folding
    EXPECT_EQ(Folded(r, "\xCE\xA3\xCF\x82"), "\xCF\x83\xCF\x83"); // Σς -> σσ
    EXPECT_EQ(Folded(r, "A\xC3"), "A\xC3");                       // not UTF-8: as it is
    EXPECT_EQ(Folded(Rule(true), "\xC3\x84"), "\xC3\x84");
}

TEST(Names, SameUnderEachRule) {
    NameRule ci = Rule(false), cs = Rule(true);
    EXPECT_TRUE(ci.same("Section", "sECTION"));
    EXPECT_FALSE(cs.same("Section", "sECTION"));
    EXPECT_TRUE(cs.same("Section", "Section"));
    EXPECT_FALSE(ci.same("Section", "Section "));
    EXPECT_TRUE(ci.same("\xC3\x84", "\xC3\xA4"));
    EXPECT_TRUE(ci.same("\xC5\xBF", "S")); // lengths differ, names don't
    EXPECT_FALSE(ci.same("ab", "abc"));
    EXPECT_FALSE(ci.same("\xC4\xB0", "i"));
    EXPECT_FALSE(ci.same("A\xC3", "a\xC3")); // not UTF-8: byte by byte
    EXPECT_TRUE(ci.same("", ""));
    EXPECT_FALSE(ci.same("@", "`")); // the bytes beside 'A' and 'Z'
    EXPECT_FALSE(ci.same("[", "{"));
}

// The inline hash of an ASCII name is the hash of its folded bytes, at every
// length around the 8-byte steps; names the rule takes for one hash alike.
TEST(Names, HashFollowsTheFoldedForm) {
    NameRule ci = Rule(false), cs = Rule(true);
    std::mt19937 rng(7);
    const std::string chars = "aZ09_-.[]@`{}~ ";
    for (size_t len = 0; len <= 33; ++len) {
        for (int round = 0; round < 20; ++round) {
            std::string s;
            for (size_t i = 0; i < len; ++i)
                s += chars[rng() % chars.size()];
            std::string f = Folded(ci, s);
            EXPECT_EQ(ci.hash(s), vesk::hashing::bytes(f.data(), f.size())) << s;
            EXPECT_EQ(cs.hash(s), vesk::hashing::bytes(s.data(), s.size())) << s;
        }
    }
    EXPECT_EQ(ci.hash("\xC5\xBF"), ci.hash("S"));
    EXPECT_EQ(ci.hash("Abcdefg\xC3\x84"), ci.hash("aBCDEFG\xC3\xA4"));
    EXPECT_NE(cs.hash("Key"), cs.hash("key"));
    EXPECT_NE(ci.hash("key"), ci.hash("key2"));
}
