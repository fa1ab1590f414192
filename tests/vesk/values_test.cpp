// Values and numbers in any locale, the structure operations, null arguments
// and pd_strdup.
#include "store_util.h"

#include <gtest/gtest.h>

#include <cfloat>
#include <clocale>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <random>

TEST(Values, Numbers) {
    const long kMax = std::numeric_limits<long>::max(), kMin = std::numeric_limits<long>::min();
    const double inf = std::numeric_limits<double>::infinity();
    Store h;
    auto set = [&](const char* text) { return inifile_write_string(h, "n", "k", text); };
    auto readLong = [&](const char* text) { return set(text), inifile_read_long(h, "n", "k", -1); };
    auto readFloat = [&](const char* text) {
        return set(text), inifile_read_float(h, "n", "k", -8);
    };
    EXPECT_EQ(42, readLong("42"));
    EXPECT_EQ(-17, readLong(" \t-17  "));
    EXPECT_EQ(5, readLong("+5"));
    EXPECT_EQ(7, readLong("0007"));
    // The limits of long: 64 bits on POSIX systems, 32 on Windows.
    const unsigned long long kMaxMagnitude = static_cast<unsigned long long>(kMax);
    const std::string beyondMax = std::to_string(kMaxMagnitude + 1),
                      beyondMin = "-" + std::to_string(kMaxMagnitude + 2);
    EXPECT_EQ(kMax, readLong(std::to_string(kMax).c_str()));
    EXPECT_EQ(kMin, readLong(std::to_string(kMin).c_str()));
    for (const char* bad :
         {beyondMax.c_str(), beyondMin.c_str(), "9223372036854775808", "-9223372036854775809",
          "99999999999999999999", "0x10", "12abc", "1.5", "", "-", "1 2", "\"7\""})
        EXPECT_EQ(-1, readLong(bad)) << bad;
    EXPECT_EQ(-1, inifile_read_long(h, "n", "absent", -1));
    inifile_write_long(h, "n", "k", kMin);
    EXPECT_EQ(kMin, inifile_read_long(h, "n", "k", 0));

    EXPECT_EQ(1.25, readFloat(" 1.25 "));
    EXPECT_EQ(-300, readFloat("-3e2"));
    EXPECT_EQ(0.5, readFloat("+.5"));
    EXPECT_EQ(inf, readFloat("INF"));
    EXPECT_EQ(-inf, readFloat("-infinity"));
    for (const char* bad : {"1,5", "0x1p3", "1.5x", "", "1e999", "--1"})
        EXPECT_EQ(-8, readFloat(bad)) << bad;
}

TEST(Values, FloatsReadBackBitIdentical) {
    std::vector<double> values = {-0.0,      0.1,          1.0 / 3.0, 1e300,
                                  -2.5e-300, DBL_TRUE_MIN, DBL_MAX,   -HUGE_VAL};
    std::mt19937_64 rng(99);
    while (values.size() < 500) {
        uint64_t bits = rng();
        double d;
        std::memcpy(&d, &bits, sizeof d);
        if (!std::isnan(d))
            values.push_back(d);
    }
    TempDir dir;
    Store h, back;
    for (size_t i = 0; i < values.size(); ++i)
        inifile_write_float(h, "f", std::to_string(i).c_str(), values[i]);
    inifile_write_float(h, "f", "x", 1.5);
    inifile_write_float(h, "f", "nan", std::nan(""));
    EXPECT_EQ("1.5", Get(h, "f", "x"));
    ASSERT_TRUE(LoadText(back, dir, SavedText(h, dir)));
    for (size_t i = 0; i < values.size(); ++i) {
        double got = inifile_read_float(back, "f", std::to_string(i).c_str(), 42.0);
        EXPECT_EQ(0, std::memcmp(&got, &values[i], sizeof got)) << values[i];
    }
    EXPECT_TRUE(std::isnan(inifile_read_float(back, "f", "nan", 0.0)));
}

TEST(Values, FloatsIgnoreTheProcessLocale) {
    std::string old = std::setlocale(LC_ALL, nullptr);
    if (!std::setlocale(LC_ALL, "de_DE.UTF-8") && !std::setlocale(LC_ALL, "fr_FR.UTF-8") &&
        !std::setlocale(LC_ALL, "ru_RU.UTF-8"))
        GTEST_SKIP() << "no locale with a decimal comma is installed";
    std::string point = std::localeconv()->decimal_point;
    Store h;
    inifile_write_float(h, "f", "x", 1.5);
    inifile_write_string(h, "f", "comma", "2,5");
    std::string written = Get(h, "f", "x");
    double back = inifile_read_float(h, "f", "x", 0),
           comma = inifile_read_float(h, "f", "comma", -1);
    std::setlocale(LC_ALL, old.c_str());
    EXPECT_EQ(",", point);
    EXPECT_EQ("1.5", written);
    EXPECT_EQ(1.5, back);
    EXPECT_EQ(-1, comma);
}

TEST(Structure, IndexesRemoveRegisterRename) {
    TempDir dir;
    Store h;
    ASSERT_TRUE(LoadText(h, dir, "[b]\nz=1\nx=2\nz=3\n[a]\nx=3\n[B] ; again\ny=4\n"));
    inifile_write_string(h, "c", "w", "4");
    EXPECT_EQ(nullptr, inifile_get_section_by_index(h, 3));
    EXPECT_EQ(nullptr, inifile_get_section_by_index(h, -1));
    EXPECT_EQ(nullptr, inifile_get_key_by_index(h, "b", 3));
    EXPECT_EQ(nullptr, inifile_get_key_by_index(h, "absent", 0));
    EXPECT_EQ(1, inifile_remove_key(h, "B", "Z")); // the repeated line goes too
    EXPECT_EQ(0, inifile_remove_key(h, "b", "z"));
    EXPECT_EQ(0, inifile_remove_key(h, "absent", "x"));
    EXPECT_EQ(0, inifile_rename_section(h, "b", "A")); // onto an existing name
    EXPECT_EQ(0, inifile_rename_section(h, "b", "b"));
    EXPECT_EQ(0, inifile_rename_section(h, "absent", "d"));
    EXPECT_EQ(1, inifile_rename_section(h, "b", "d]"));
    EXPECT_EQ(1, inifile_remove_section(h, "A"));
    EXPECT_EQ(0, inifile_remove_section(h, "a"));
    EXPECT_EQ(1, inifile_register_section(h, "Empty"));
    EXPECT_EQ(0, inifile_register_section(h, "EMPTY"));
    EXPECT_EQ("[d]]x=2|y=4|[c]w=4|[Empty]", Dump(h));
    EXPECT_EQ("[\"d]\"]\nx=2\n[\"d]\"]\ny=4\n[c]\nw=4\n[Empty]\n", SavedText(h, dir));
}

TEST(Structure, CopySection) {
    TempDir dir;
    Store from, to, fresh;
    ASSERT_TRUE(LoadText(from, dir, "[s]\n; not copied\nk1 = v1\nk2=\"  v2\"\n[t]\nx=1\n"));
    inifile_write_string(to, "S", "k2", "old");
    inifile_write_string(to, "S", "mine", "kept");
    EXPECT_EQ(1, inifile_copy_section(from, "s", to));
    EXPECT_EQ("[S]k2=  v2|mine=kept|k1=v1|", Dump(to));
    EXPECT_EQ(0, inifile_copy_section(from, "absent", to));
    EXPECT_EQ(1, inifile_copy_section(from, "t", fresh));
    EXPECT_EQ("[t]\nx=1\n", SavedText(fresh, dir));
    std::string before = SavedText(from, dir);
    EXPECT_EQ(1, inifile_copy_section(from, "s", from)); // into its own store: no change
    EXPECT_EQ(before, SavedText(from, dir));
}

TEST(Values, NullArgumentsAreHarmlessAndPdStrdup) {
    Store h;
    inifile_write_string(h, "s", "k", "v");
    // The store's own text written back: copied before the old one goes.
    inifile_write_string(h, "s", "k", inifile_read_string(h, "s", "k", ""));
    EXPECT_EQ(0, inifile_write_string(h, nullptr, "k", "v"));
    EXPECT_EQ(0, inifile_write_string(h, "s", nullptr, "v"));
    EXPECT_EQ(0, inifile_write_string(h, "s", "k", nullptr));
    EXPECT_EQ(0, inifile_remove_key(h, "s", nullptr));
    EXPECT_EQ(5, inifile_read_long(h, nullptr, "k", 5));
    EXPECT_STREQ("", inifile_read_string(h, "s", "absent", nullptr));
    EXPECT_EQ(nullptr, inifile_get_key_by_index(h, nullptr, 0));
    EXPECT_EQ(0, inifile_register_section(h, nullptr));
    EXPECT_EQ(0, inifile_copy_section(h, "s", nullptr));
    EXPECT_EQ("[s]k=v|", Dump(h));

    inifile none = nullptr;
    inifile_delete(none);
    inifile_clear(none);
    inifile_set_case_sensitive(none, 1);
    EXPECT_EQ(1.5, inifile_read_float(none, "s", "k", 1.5));
    EXPECT_STREQ("d", inifile_read_string(none, "s", "k", "d"));
    EXPECT_EQ(0, inifile_write_long(none, "s", "k", 1));
    EXPECT_EQ(0, inifile_remove_section(none, "s"));
    EXPECT_NE(0, OpenFile(none, "x.ini").rc);
    EXPECT_NE(0, inifile_open(h, nullptr, nullptr)); // no record wanted

    EXPECT_EQ(nullptr, pd_strdup(nullptr));
    const char* text = "some text \xC3\xA5";
    char* copy = pd_strdup(text);
    EXPECT_NE(text, copy);
    EXPECT_STREQ(text, copy);
    std::free(copy);
}
