// The store's bookkeeping: table growth with waste (on a new key and on a
// parsed one), records that a change of the case rule makes twins, and
// every write under an allocation failure at each point leaving the store
// as it was.
#include "fileio.h"
#include "memory.h"
#include "store_util.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstring>
#include <functional>

namespace {

std::string Numbered(const char* prefix, int i) {
    return prefix + std::to_string(i);
}

// Waste in the key tables: 100 sections with a key each, removed again.
void MakeWaste(inifile h) {
    for (int s = 0; s < 100; ++s)
        ASSERT_EQ(inifile_write_string(h, Numbered("W", s).c_str(), "a", "b"), 1);
    for (int s = 0; s < 100; ++s)
        ASSERT_EQ(inifile_remove_section(h, Numbered("W", s).c_str()), 1);
}

} // namespace

// A section's keys are scanned up to 16 keys; the 17th makes its table of
// 32 slots, which the 25th grows. The 25th key, written while the waste asks
// for a compaction, must hold one slot, so that it is gone after removal (a
// key named "" would otherwise still be found through a stale slot).
TEST(Store, NewKeyThatGrowsItsTableIsPlacedOnce) {
    Store h;
    for (int i = 0; i < 24; ++i)
        inifile_write_string(h, "X", Numbered("k", i).c_str(), "v");
    MakeWaste(h);
    ASSERT_EQ(inifile_write_string(h, "X", "", "twenty-fifth"), 1);
    EXPECT_EQ(inifile_remove_key(h, "X", ""), 1);
    EXPECT_EQ(inifile_has_key(h, "X", ""), 0);
    EXPECT_EQ(inifile_get_key_count(h, "X"), 24);
    EXPECT_EQ(inifile_write_string(h, "X", "", "again"), 1);
    EXPECT_EQ(Get(h, "X", ""), "again");
}

// The same when the key comes from the file and its section is parsed after
// other sections were read and removed.
TEST(Store, ParsedKeyThatGrowsItsTableIsPlacedOnce) {
    TempDir dir;
    std::string text;
    for (int s = 0; s < 100; ++s)
        text += "[" + Numbered("S", s) + "]\na=b\n";
    text += "[X]\n";
    for (int i = 0; i < 24; ++i)
        text += Numbered("k", i) + "=v\n";
    text += "=twenty-fifth\n";
    Store h;
    ASSERT_TRUE(LoadText(h, dir, text));
    for (int s = 0; s < 100; ++s)
        ASSERT_EQ(inifile_has_key(h, Numbered("S", s).c_str(), "a"), 1);
    for (int s = 0; s < 100; ++s)
        ASSERT_EQ(inifile_remove_section(h, Numbered("S", s).c_str()), 1);
    EXPECT_EQ(inifile_get_key_count(h, "X"), 25);
    EXPECT_EQ(inifile_remove_key(h, "X", ""), 1);
    EXPECT_EQ(inifile_has_key(h, "X", ""), 0);
    std::string expected = "[X]\n";
    for (int i = 0; i < 24; ++i)
        expected += Numbered("k", i) + "=v\n";
    EXPECT_EQ(SavedText(h, dir), expected);
}

namespace {

// Every key k0..k(n-1) of the section reads as its number, and nothing else
// is there: each looked up both right after a lookup in another section
// (from the section's slot) and right after one in this section (the store
// remembers the last section).
void ExpectKeys(inifile h, const char* sec, int n, const char* what) {
    EXPECT_EQ(inifile_get_key_count(h, sec), n) << what;
    for (int i = 0; i <= n; ++i) {
        const std::string key = Numbered("k", i);
        for (bool sameSection : {false, true}) {
            if (!sameSection)
                inifile_has_section(h, "elsewhere");
            EXPECT_EQ(inifile_read_long(h, sec, key.c_str(), -1), i < n ? i : -1)
                << what << ", " << key << (sameSection ? " again" : "");
        }
    }
    inifile_has_section(h, "elsewhere");
    EXPECT_EQ(inifile_has_key(h, sec, "K0"), n > 0 ? 1 : 0) << what; // names ignore case
}

} // namespace

// Up to 16 keys a lookup scans the section's keys; from the 17th on it uses
// a table. Either way, through parsing, writing, removal from the middle
// (the keys are then a list), renaming, a change of the case rule and a
// repeated name in the file, every key is found and nothing else.
TEST(Store, KeysAreFoundOnBothSidesOfTheScanLimit) {
    TempDir dir;
    for (int n : {15, 16, 17, 18}) {
        const std::string what = std::to_string(n) + " keys";
        std::string text = "[Before]\nx=1\n[S]\n";
        for (int i = 0; i < n; ++i)
            text += Numbered("k", i) + "=" + std::to_string(i) + "\n";
        text += "k0=repeated\n" + Numbered("k", n - 1) + "=repeated too\n[After]\ny=2\n";
        Store parsed;
        ASSERT_TRUE(LoadText(parsed, dir, text));
        ExpectKeys(parsed, "S", n, (what + ", parsed").c_str());
        Store written;
        for (int i = 0; i < n; ++i)
            inifile_write_long(written, "S", Numbered("k", i).c_str(), i);
        ExpectKeys(written, "S", n, (what + ", written").c_str());
        for (inifile h : {parsed.get(), written.get()}) {
            ASSERT_EQ(inifile_write_long(h, "S", Numbered("k", n).c_str(), n), 1);
            ExpectKeys(h, "S", n + 1, (what + " and one more").c_str());
            ASSERT_EQ(inifile_remove_key(h, "S", "k5"), 1);
            EXPECT_EQ(inifile_has_key(h, "S", "k5"), 0) << what;
            ASSERT_EQ(inifile_write_long(h, "S", "k5", 5), 1);
            ExpectKeys(h, "S", n + 1, (what + ", k5 removed and written again").c_str());
            ASSERT_EQ(inifile_remove_key(h, "S", "k0"), 1);
            ASSERT_EQ(inifile_write_long(h, "S", "k0", 0), 1);
            ASSERT_EQ(inifile_rename_section(h, "S", "T"), 1);
            EXPECT_EQ(inifile_has_key(h, "S", "k1"), 0) << what;
            ExpectKeys(h, "T", n + 1, (what + ", renamed").c_str());
            inifile_set_case_sensitive(h, 1);
            EXPECT_EQ(inifile_has_key(h, "T", "K0"), 0) << what;
            inifile_set_case_sensitive(h, 0);
            ExpectKeys(h, "T", n + 1, (what + ", case rule back").c_str());
        }
    }
}

// Sections and keys that differ in case only, made while case counted, are
// found one after the other once it doesn't: the first, then, after its
// removal, the second.
TEST(Store, TwinsOfAChangedRuleAreFoundInTurn) {
    Store h;
    inifile_set_case_sensitive(h, 1);
    inifile_write_string(h, "A", "k", "1");
    inifile_write_string(h, "a", "k", "2");
    inifile_write_string(h, "a", "K", "3");
    inifile_set_case_sensitive(h, 0);
    EXPECT_EQ(Get(h, "a", "k"), "1");
    EXPECT_EQ(inifile_remove_section(h, "a"), 1);
    EXPECT_EQ(inifile_has_section(h, "A"), 1);
    EXPECT_EQ(Get(h, "A", "K"), "2");
    EXPECT_EQ(inifile_remove_key(h, "a", "k"), 1);
    EXPECT_EQ(Get(h, "A", "k"), "3");
    EXPECT_EQ(inifile_remove_key(h, "a", "k"), 1);
    EXPECT_EQ(inifile_has_key(h, "a", "k"), 0);
    EXPECT_EQ(Dump(h), "[a]");
}

// ---------------------------------------------------------------------------
// Allocation failures.

namespace {

const char* const kFile = "; settings\n"
                          "top=1\n"
                          "[Alpha]\n"
                          "a=1\n"
                          "b = \"two\"\n"
                          "a=shadowed\n"
                          "\n"
                          "[Beta]\n"
                          "x=1\n"
                          "y=2\n"
                          "z=3\n"
                          "[alpha]\n"
                          "c=3\n"
                          "[Gamma]\n"
                          "g=1\n";

// A store with parsed and unparsed sections and new keys, its key tables
// just compacted, so that the next growth of a table must allocate.
void Prepare(inifile h, const TempDir& dir) {
    ASSERT_TRUE(LoadText(h, dir, kFile));
    ASSERT_EQ(inifile_has_key(h, "Beta", "x"), 1); // parsed, lines not yet records
    for (int i = 0; i < 24; ++i)                   // the next key grows the table
        ASSERT_EQ(inifile_write_long(h, "Many", Numbered("k", i).c_str(), i), 1);
    MakeWaste(h);
    ASSERT_EQ(inifile_write_string(h, "Gamma", "h", "compacts"), 1);
}

struct State {
    std::string dump, bytes;
    bool operator==(const State& o) const { return dump == o.dump && bytes == o.bytes; }
};

State Capture(inifile h, const TempDir& dir) {
    return State{Dump(h), SavedText(h, dir)};
}

// Runs op with the n-th allocation failing, n = 1, 2, ... until op succeeds
// (a failure it can do without, such as a compaction of the tables, doesn't
// count). Each failed run must leave the store as it was before; the
// successful one as after.
void EachFailure(const char* what, const std::function<int(inifile, inifile)>& op) {
    TempDir dir;
    Store ref, refOther;
    Prepare(ref, dir);
    inifile_write_string(refOther, "ALPHA", "A", "old"); // one key the copy overwrites
    State before = Capture(ref, dir), beforeOther = Capture(refOther, dir);
    ASSERT_NE(op(ref, refOther), 0) << what;
    State after = Capture(ref, dir), afterOther = Capture(refOther, dir);
    for (long n = 1;; ++n) {
        Store h, other;
        Prepare(h, dir);
        inifile_write_string(other, "ALPHA", "A", "old");
        vesk::testing::failAllocation(n);
        int rc = op(h, other);
        vesk::testing::failAllocation(0);
        if (rc) {
            EXPECT_TRUE(Capture(h, dir) == after) << what << ", allocation " << n;
            EXPECT_TRUE(Capture(other, dir) == afterOther) << what << ", allocation " << n;
            return;
        }
        State got = Capture(h, dir);
        EXPECT_EQ(got.dump, before.dump) << what << ", allocation " << n;
        EXPECT_EQ(got.bytes, before.bytes) << what << ", allocation " << n;
        EXPECT_TRUE(Capture(other, dir) == beforeOther) << what << ", allocation " << n;
        ASSERT_LT(n, 10000) << what;
    }
}

} // namespace

TEST(StoreUnderFailure, EveryWriteLeavesTheStoreAsItWas) {
    EachFailure("a new key in a parsed section",
                [](inifile h, inifile) { return inifile_write_string(h, "Beta", "w", "new"); });
    EachFailure("a new key in an unparsed section with two blocks",
                [](inifile h, inifile) { return inifile_write_string(h, "ALPHA", "n", "v"); });
    EachFailure("a new key that grows its section's table",
                [](inifile h, inifile) { return inifile_write_string(h, "Many", "k24", "v"); });
    EachFailure("a new section", [](inifile h, inifile) {
        return inifile_write_string(h, "New \"one\"", "k=", " v ");
    });
    EachFailure("a changed value",
                [](inifile h, inifile) { return inifile_write_string(h, "alpha", "B", "2"); });
    EachFailure("a float",
                [](inifile h, inifile) { return inifile_write_float(h, "G", "f", 0.1); });
    EachFailure("a removed key with a repeated line",
                [](inifile h, inifile) { return inifile_remove_key(h, "Alpha", "a"); });
    EachFailure("a removed key from the middle of the order",
                [](inifile h, inifile) { return inifile_remove_key(h, "Beta", "y"); });
    EachFailure("a removed section",
                [](inifile h, inifile) { return inifile_remove_section(h, "alpha"); });
    EachFailure("a removed section before the first header",
                [](inifile h, inifile) { return inifile_remove_section(h, ""); });
    EachFailure("a renamed section",
                [](inifile h, inifile) { return inifile_rename_section(h, "Alpha", "Omega]"); });
    EachFailure("a registered section",
                [](inifile h, inifile) { return inifile_register_section(h, "Delta"); });
    EachFailure("a section copied into another store",
                [](inifile h, inifile other) { return inifile_copy_section(h, "alpha", other); });
    EachFailure("a section copied into the same store",
                [](inifile h, inifile) { return inifile_copy_section(h, "Beta", h); });
    EachFailure("a large section copied",
                [](inifile h, inifile other) { return inifile_copy_section(h, "Many", other); });
}

// The operations without a result: the store is either as before or as the
// operation leaves it, never in between.
TEST(StoreUnderFailure, CaseRuleClearAndOpenAreAllOrNothing) {
    TempDir dir;
    for (long n = 1; n < 200; ++n) {
        Store h;
        Prepare(h, dir);
        inifile_set_case_sensitive(h, 1);
        inifile_write_string(h, "ALPHA", "k", "v"); // a section of its own while case counts
        Strings sections = Sections(h);
        std::string bytes = SavedText(h, dir);
        vesk::testing::failAllocation(n);
        inifile_set_case_sensitive(h, 0);
        vesk::testing::failAllocation(0);
        EXPECT_EQ(Sections(h), sections) << "allocation " << n;
        EXPECT_EQ(SavedText(h, dir), bytes) << "allocation " << n;
        // Whichever rule holds, every lookup follows it.
        bool insensitive = inifile_has_key(h, "GAMMA", "G") == 1;
        EXPECT_EQ(inifile_has_section(h, "bETA"), insensitive ? 1 : 0) << "allocation " << n;
        EXPECT_EQ(Get(h, "many", "K3"), insensitive ? "3" : "<absent>") << "allocation " << n;
    }
    for (long n = 1; n < 50; ++n) {
        Store h;
        Prepare(h, dir);
        vesk::testing::failAllocation(n);
        inifile_clear(h);
        vesk::testing::failAllocation(0);
        EXPECT_EQ(Dump(h), "") << "allocation " << n;
        EXPECT_EQ(inifile_write_string(h, "s", "k", "v"), 1);
        EXPECT_EQ(SavedText(h, dir), "[s]\nk=v\n");
    }
    WriteFileBytes(dir.file("other.ini"), "[o]\np=q\n");
    for (long n = 1; n < 100; ++n) {
        Store h;
        Prepare(h, dir);
        State before = Capture(h, dir);
        vesk::testing::failAllocation(n);
        Result r = OpenFile(h, dir.file("other.ini"));
        vesk::testing::failAllocation(0);
        if (r.rc == 0) {
            EXPECT_EQ(Dump(h), "[o]p=q|");
            break;
        }
#ifdef _WIN32
        EXPECT_EQ(r.message, vesk::outOfMemoryMessage()); // FormatMessageW's (files_win_test)
#else
        EXPECT_EQ(r.message, std::strerror(ENOMEM));
#endif
        EXPECT_TRUE(Capture(h, dir) == before) << "allocation " << n;
    }
}
