// Sections and keys as a whole: indexes, counts, removal, renaming,
// registering, copying, and the case rule.
#include "store_util.h"

#include <gtest/gtest.h>

using Strings = std::vector<std::string>;

TEST(Structure, IndexesCountFromZeroInFileOrderAndGiveNullOutOfRange) {
    TempDir dir;
    Store h;
    ASSERT_TRUE(LoadText(h, dir, "[b]\nz=1\ny=2\n[a]\nx=3\n"));
    inifile_write_string(h, "c", "w", "4");
    inifile_write_string(h, "b", "new", "5");
    EXPECT_EQ(3, inifile_get_section_count(h));
    EXPECT_STREQ("b", inifile_get_section_by_index(h, 0));
    EXPECT_STREQ("c", inifile_get_section_by_index(h, 2));
    EXPECT_EQ(nullptr, inifile_get_section_by_index(h, 3));
    EXPECT_EQ(nullptr, inifile_get_section_by_index(h, -1));
    EXPECT_EQ(Strings({"z", "y", "new"}), Keys(h, "b"));
    EXPECT_EQ(nullptr, inifile_get_key_by_index(h, "b", 3));
    EXPECT_EQ(nullptr, inifile_get_key_by_index(h, "b", -1));
    EXPECT_EQ(nullptr, inifile_get_key_by_index(h, "absent", 0));
    EXPECT_EQ(0, inifile_get_key_count(h, "absent"));
}

TEST(Structure, RemoveKeyAndSection) {
    TempDir dir;
    Store h;
    ASSERT_TRUE(LoadText(h, dir, "[a]\nx=1\ny=2\nx=3\n[b]\nz=1\n"));
    EXPECT_EQ(1, inifile_remove_key(h, "a", "X"));
    EXPECT_EQ(0, inifile_has_key(h, "a", "x")); // the repeated line went too
    EXPECT_EQ(0, inifile_remove_key(h, "a", "x"));
    EXPECT_EQ(0, inifile_remove_key(h, "absent", "x"));
    EXPECT_EQ(Strings({"y"}), Keys(h, "a"));
    EXPECT_EQ("[a]\ny=2\n[b]\nz=1\n", SavedText(h, dir));
    EXPECT_EQ(1, inifile_remove_section(h, "A"));
    EXPECT_EQ(0, inifile_has_section(h, "a"));
    EXPECT_EQ(0, inifile_remove_section(h, "a"));
    EXPECT_EQ(Strings({"b"}), Sections(h));
    EXPECT_EQ("[b]\nz=1\n", SavedText(h, dir));
    // A removed section comes back new, at the end.
    inifile_write_string(h, "a", "x", "9");
    EXPECT_EQ("[b]\nz=1\n[a]\nx=9\n", SavedText(h, dir));
}

TEST(Structure, RemovingKeysInAnyOrderKeepsTheRestInOrder) {
    Store h;
    for (int i = 0; i < 10; ++i)
        inifile_write_long(h, "s", ("k" + std::to_string(i)).c_str(), i);
    for (int i : {0, 9, 5, 1})
        EXPECT_EQ(1, inifile_remove_key(h, "s", ("k" + std::to_string(i)).c_str()));
    EXPECT_EQ(Strings({"k2", "k3", "k4", "k6", "k7", "k8"}), Keys(h, "s"));
    inifile_write_long(h, "s", "k0", 0);
    EXPECT_EQ(Strings({"k2", "k3", "k4", "k6", "k7", "k8", "k0"}), Keys(h, "s"));
    for (int i = 0; i < 10; ++i)
        EXPECT_EQ(inifile_has_key(h, "s", ("k" + std::to_string(i)).c_str()) ? i : -1,
                  inifile_read_long(h, "s", ("k" + std::to_string(i)).c_str(), -1));
}

TEST(Structure, RegisterSection) {
    TempDir dir;
    Store h;
    EXPECT_EQ(1, inifile_register_section(h, "Empty"));
    EXPECT_EQ(0, inifile_register_section(h, "EMPTY"));
    EXPECT_EQ(1, inifile_has_section(h, "empty"));
    EXPECT_EQ(0, inifile_get_key_count(h, "Empty"));
    EXPECT_EQ("[Empty]\n", SavedText(h, dir));
    Store back;
    ASSERT_TRUE(LoadText(back, dir, "[Empty]\n"));
    EXPECT_EQ(Strings({"Empty"}), Sections(back));
}

TEST(Structure, RenameSection) {
    TempDir dir;
    Store h;
    ASSERT_TRUE(LoadText(h, dir, "[a]\nx=1\n[b]\ny=2\n[A] ; again\nz=3\n"));
    EXPECT_EQ(0, inifile_rename_section(h, "a", "B")); // onto an existing name
    EXPECT_EQ(0, inifile_rename_section(h, "absent", "c"));
    EXPECT_EQ(0, inifile_rename_section(h, "a", "a")); // its own name exists too
    EXPECT_EQ(1, inifile_rename_section(h, "a", "c]"));
    EXPECT_EQ(Strings({"c]", "b"}), Sections(h));
    EXPECT_EQ("1", Get(h, "C]", "x"));
    EXPECT_EQ("3", Get(h, "c]", "z"));
    EXPECT_EQ(0, inifile_has_section(h, "a"));
    EXPECT_EQ("[\"c]\"]\nx=1\n[b]\ny=2\n[\"c]\"]\nz=3\n", SavedText(h, dir));
}

TEST(Structure, CopySection) {
    TempDir dir;
    Store from, to;
    ASSERT_TRUE(LoadText(from, dir, "[s]\n; not copied\nk1 = v1\nk2=\"  v2\"\n[t]\nx=1\n"));
    inifile_write_string(to, "S", "k2", "old");
    inifile_write_string(to, "S", "mine", "kept");
    EXPECT_EQ(1, inifile_copy_section(from, "s", to));
    EXPECT_EQ(Strings({"S"}), Sections(to));
    EXPECT_EQ(Strings({"k2", "mine", "k1"}), Keys(to, "s"));
    EXPECT_EQ("v1", Get(to, "s", "k1"));
    EXPECT_EQ("  v2", Get(to, "s", "k2"));
    EXPECT_EQ(0, inifile_copy_section(from, "absent", to));
    EXPECT_EQ(0, inifile_has_section(to, "absent"));

    // Into a store where it is missing: created with the source's name.
    Store fresh;
    EXPECT_EQ(1, inifile_copy_section(from, "t", fresh));
    EXPECT_EQ("[t]\nx=1\n", SavedText(fresh, dir));

    // Into its own store: nothing changes.
    std::string before = SavedText(from, dir);
    EXPECT_EQ(1, inifile_copy_section(from, "s", from));
    EXPECT_EQ(before, SavedText(from, dir));
    EXPECT_EQ(0, inifile_copy_section(from, "s", nullptr));
}

TEST(Structure, CaseFoldingUsesUnicodeSimpleFolding) {
    Store h;
    inifile_write_string(h, "Größe", "ΣΊΣΥΦΟΣ", "1");
    EXPECT_EQ("1", Get(h, "GRÖßE", "σίσυφος"));         // final sigma folds to sigma
    EXPECT_EQ("<absent>", Get(h, "GRÖSSE", "ΣΊΣΥΦΟΣ")); // ß to ss is full folding only
    EXPECT_EQ("1", Get(h, "GRÖẞE", "ΣΊΣΥΦΟΣ"));         // U+1E9E folds to ß
    inifile_write_string(h, "K", "x", "kelvin");
    EXPECT_EQ("kelvin", Get(h, "\xE2\x84\xAA", "X"));   // KELVIN SIGN folds to k
    inifile_write_string(h, "\xC4\xB0", "x", "dotted"); // U+0130 has no simple folding
    EXPECT_EQ("<absent>", Get(h, "i", "x"));
    EXPECT_EQ("dotted", Get(h, "\xC4\xB0", "x"));
}

TEST(Structure, NamesThatAreNotUtf8CompareByteByByte) {
    Store h;
    inifile_write_string(h, "A\xC3", "K\xFF", "v"); // cut inside a sequence
    EXPECT_EQ("v", Get(h, "A\xC3", "K\xFF"));
    EXPECT_EQ("<absent>", Get(h, "a\xC3", "K\xFF"));
    EXPECT_EQ("<absent>", Get(h, "A\xC3", "k\xFF"));
    EXPECT_EQ(Strings({"A\xC3"}), Sections(h));
}

TEST(Structure, CaseSensitivityBelongsToTheHandle) {
    TempDir dir;
    Store h;
    inifile_set_case_sensitive(h, 1);
    ASSERT_TRUE(LoadText(h, dir, "[a]\nk=1\n[A]\nK=2\n"));
    EXPECT_EQ(Strings({"a", "A"}), Sections(h)); // kept apart while loading
    EXPECT_EQ("<absent>", Get(h, "a", "K"));
    inifile_clear(h);
    EXPECT_EQ(0, inifile_get_section_count(h));
    inifile_write_string(h, "x", "k", "1");
    inifile_write_string(h, "X", "k", "2");
    EXPECT_EQ(2, inifile_get_section_count(h)); // still exact after clear

    // Switching after a load: merged stays merged, lookups follow the rule.
    Store g;
    ASSERT_TRUE(LoadText(g, dir, "[a]\nk=1\n[A]\nK=2\nj=3\n"));
    EXPECT_EQ(Strings({"a"}), Sections(g));
    inifile_set_case_sensitive(g, 1);
    EXPECT_EQ(Strings({"a"}), Sections(g));
    EXPECT_EQ(Strings({"k", "j"}), Keys(g, "a"));
    EXPECT_EQ(0, inifile_has_section(g, "A"));
    EXPECT_EQ("1", Get(g, "a", "k"));
    EXPECT_EQ("<absent>", Get(g, "a", "K"));
    inifile_write_string(g, "A", "k", "new");
    EXPECT_EQ(Strings({"a", "A"}), Sections(g));
    inifile_set_case_sensitive(g, 0);
    EXPECT_EQ("1", Get(g, "A", "K")); // the first of the two now
    EXPECT_EQ(2, inifile_get_section_count(g));
}

TEST(Structure, ClearEmptiesAndTheHandleStaysUsable) {
    TempDir dir;
    Store h;
    ASSERT_TRUE(LoadText(h, dir, "\xEF\xBB\xBF[a]\r\nk=1\r\n"));
    inifile_clear(h);
    EXPECT_EQ(0, inifile_get_section_count(h));
    EXPECT_EQ("", SavedText(h, dir));
    inifile_write_string(h, "b", "k", "2");
    EXPECT_EQ("[b]\nk=2\n", SavedText(h, dir)); // a new file: LF, no byte order mark
}

TEST(Structure, NewLinesFollowTheFileLineEnd) {
    TempDir dir;
    Store h;
    ASSERT_TRUE(LoadText(h, dir, "[a]\r\nk=1\r\n"));
    inifile_write_string(h, "a", "j", "2");
    inifile_write_string(h, "b", "k", "3");
    EXPECT_EQ("[a]\r\nk=1\r\nj=2\r\n[b]\r\nk=3\r\n", SavedText(h, dir));
}

TEST(Structure, ManyKeysInOneSection) {
    Store h;
    for (int i = 0; i < 5000; ++i)
        inifile_write_long(h, "big", ("key" + std::to_string(i)).c_str(), i);
    EXPECT_EQ(5000, inifile_get_key_count(h, "big"));
    for (int i = 0; i < 5000; i += 7)
        EXPECT_EQ(i, inifile_read_long(h, "BIG", ("KEY" + std::to_string(i)).c_str(), -1));
    for (int i = 0; i < 5000; i += 2)
        inifile_remove_key(h, "big", ("key" + std::to_string(i)).c_str());
    EXPECT_EQ(2500, inifile_get_key_count(h, "big"));
    EXPECT_STREQ("key1", inifile_get_key_by_index(h, "big", 0));
    EXPECT_STREQ("key4999", inifile_get_key_by_index(h, "big", 2499));
}
