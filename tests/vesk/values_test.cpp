// Values: strings and their lifetime, whole and floating-point numbers in any
// locale, null arguments, pd_strdup and the error record accessors.
#include "store_util.h"

#include <gtest/gtest.h>

#include <clocale>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <random>

TEST(Values, ReadStringGivesTheValueOrDefItself) {
    Store h;
    inifile_write_string(h, "s", "k", "value");
    const char* def = "default";
    EXPECT_STREQ("value", inifile_read_string(h, "s", "k", def));
    EXPECT_EQ(def, inifile_read_string(h, "s", "absent", def));
    EXPECT_EQ(def, inifile_read_string(h, "absent", "k", def));
    EXPECT_STREQ("", inifile_read_string(h, "s", "absent", nullptr));
    inifile_write_string(h, "s", "empty", "");
    EXPECT_STREQ("", inifile_read_string(h, "s", "empty", def)); // present but empty
}

TEST(Values, ReturnedPointersStayValidAcrossReadsAndOtherKeysWrites) {
    TempDir dir;
    Store h;
    ASSERT_TRUE(LoadText(h, dir, "[s]\na = first\nb = second\n"));
    const char* a = inifile_read_string(h, "s", "a", "");
    const char* b = inifile_read_string(h, "s", "b", "");
    const char* name = inifile_get_key_by_index(h, "s", 0);
    EXPECT_EQ(a, inifile_read_string(h, "s", "a", "")); // the same text each time
    EXPECT_STREQ("first", a);
    EXPECT_STREQ("second", b);
    EXPECT_STREQ("a", name);
    // Writing the value read back into the store: copied before anything goes.
    inifile_write_string(h, "s", "a", a);
    EXPECT_STREQ("first", inifile_read_string(h, "s", "a", ""));
    inifile_write_string(h, "s", "c", inifile_read_string(h, "s", "b", ""));
    EXPECT_STREQ("second", inifile_read_string(h, "s", "c", ""));
}

TEST(Values, LongsAcceptBlanksSignAndDigitsOnly) {
    TempDir dir;
    Store h;
    ASSERT_TRUE(LoadText(h, dir,
                         "[n]\n"
                         "a = 42\n"
                         "b =  -17  \n"
                         "c = +5\n"
                         "d = 0x10\n"
                         "e = 12abc\n"
                         "f = 1.5\n"
                         "g =\n"
                         "h = -\n"
                         "i = 9223372036854775807\n"
                         "j = -9223372036854775808\n"
                         "k = 9223372036854775808\n"
                         "l = -9223372036854775809\n"
                         "m = 99999999999999999999999\n"
                         "n = 1 2\n"
                         "o = \" 7 \"\n"
                         "p = 0007\n"));
    EXPECT_EQ(42, inifile_read_long(h, "n", "a", -1));
    EXPECT_EQ(-17, inifile_read_long(h, "n", "b", -1));
    EXPECT_EQ(5, inifile_read_long(h, "n", "c", -1));
    for (const char* bad : {"d", "e", "f", "g", "h", "k", "l", "m", "n", "absent"})
        EXPECT_EQ(-1, inifile_read_long(h, "n", bad, -1)) << bad;
    EXPECT_EQ(std::numeric_limits<long>::max(), inifile_read_long(h, "n", "i", -1));
    EXPECT_EQ(std::numeric_limits<long>::min(), inifile_read_long(h, "n", "j", -1));
    EXPECT_EQ(7, inifile_read_long(h, "n", "o", -1)); // blanks inside the quotes
    EXPECT_EQ(7, inifile_read_long(h, "n", "p", -1));

    inifile_write_long(h, "w", "min", std::numeric_limits<long>::min());
    inifile_write_long(h, "w", "neg", -3);
    EXPECT_STREQ("-3", inifile_read_string(h, "w", "neg", ""));
    EXPECT_EQ(std::numeric_limits<long>::min(), inifile_read_long(h, "w", "min", 0));
}

TEST(Values, FloatsReadBackBitIdentical) {
    TempDir dir;
    Store h;
    std::mt19937_64 rng(99);
    std::vector<double> values = {0.0,
                                  -0.0,
                                  1.5,
                                  0.1,
                                  1.0 / 3.0,
                                  1e300,
                                  -2.5e-300,
                                  std::numeric_limits<double>::denorm_min(),
                                  std::numeric_limits<double>::max(),
                                  std::numeric_limits<double>::infinity(),
                                  -std::numeric_limits<double>::infinity()};
    for (int i = 0; i < 500; ++i) {
        uint64_t bits = rng();
        double d;
        std::memcpy(&d, &bits, sizeof d);
        if (!std::isnan(d))
            values.push_back(d);
    }
    for (size_t i = 0; i < values.size(); ++i)
        inifile_write_float(h, "f", std::to_string(i).c_str(), values[i]);
    EXPECT_STREQ("1.5", inifile_read_string(h, "f", "2", ""));
    EXPECT_STREQ("inf", inifile_read_string(h, "f", "9", ""));
    Store back;
    ASSERT_TRUE(LoadText(back, dir, SavedText(h, dir)));
    for (size_t i = 0; i < values.size(); ++i) {
        double got = inifile_read_float(back, "f", std::to_string(i).c_str(), 42.0);
        EXPECT_EQ(0, std::memcmp(&got, &values[i], sizeof got)) << values[i];
    }
    inifile_write_float(h, "f", "nan", std::numeric_limits<double>::quiet_NaN());
    EXPECT_TRUE(std::isnan(inifile_read_float(h, "f", "nan", 0.0)));
}

TEST(Values, FloatsAcceptedAndRefused) {
    TempDir dir;
    Store h;
    ASSERT_TRUE(LoadText(h, dir,
                         "[f]\n"
                         "a =  1.25 \n"
                         "b = -3e2\n"
                         "c = +.5\n"
                         "d = INF\n"
                         "e = -infinity\n"
                         "f = 1,5\n"
                         "g = 0x1p3\n"
                         "h = 1.5x\n"
                         "i =\n"
                         "j = 1e999\n"
                         "k = --1\n"
                         "l = 7\n"));
    EXPECT_EQ(1.25, inifile_read_float(h, "f", "a", 0));
    EXPECT_EQ(-300.0, inifile_read_float(h, "f", "b", 0));
    EXPECT_EQ(0.5, inifile_read_float(h, "f", "c", 0));
    EXPECT_EQ(std::numeric_limits<double>::infinity(), inifile_read_float(h, "f", "d", 0));
    EXPECT_EQ(-std::numeric_limits<double>::infinity(), inifile_read_float(h, "f", "e", 0));
    for (const char* bad : {"f", "g", "h", "i", "j", "k", "absent"})
        EXPECT_EQ(-8.0, inifile_read_float(h, "f", bad, -8.0)) << bad;
    EXPECT_EQ(7.0, inifile_read_float(h, "f", "l", 0));
}

// A host running in a locale with a decimal comma still writes and reads 1.5.
TEST(Values, FloatsIgnoreTheProcessLocale) {
    const char* names[] = {"de_DE.UTF-8", "de_DE.utf8",  "de_DE",      "fr_FR.UTF-8",
                           "fr_FR.utf8",  "nl_NL.UTF-8", "ru_RU.UTF-8"};
    std::string old = std::setlocale(LC_ALL, nullptr);
    const char* found = nullptr;
    for (const char* n : names)
        if (std::setlocale(LC_ALL, n) && std::strcmp(std::localeconv()->decimal_point, ",") == 0) {
            found = n;
            break;
        }
    if (!found) {
        std::setlocale(LC_ALL, old.c_str());
        GTEST_SKIP() << "no locale with a decimal comma is installed";
    }
    Store h;
    inifile_write_float(h, "f", "x", 1.5);
    std::string written = inifile_read_string(h, "f", "x", "");
    double back = inifile_read_float(h, "f", "x", 0);
    inifile_write_string(h, "f", "comma", "2,5");
    double comma = inifile_read_float(h, "f", "comma", -1);
    std::setlocale(LC_ALL, old.c_str());
    EXPECT_EQ("1.5", written) << found;
    EXPECT_EQ(1.5, back);
    EXPECT_EQ(-1, comma);
}

TEST(Values, NullArgumentsAreHarmless) {
    Store h;
    inifile_write_string(h, "s", "k", "v");
    EXPECT_EQ(0, inifile_write_string(h, nullptr, "k", "v"));
    EXPECT_EQ(0, inifile_write_string(h, "s", nullptr, "v"));
    EXPECT_EQ(0, inifile_write_string(h, "s", "k", nullptr));
    EXPECT_EQ(1, inifile_write_string(h, "s", "k", "w"));
    EXPECT_EQ(0, inifile_has_section(h, nullptr));
    EXPECT_EQ(0, inifile_has_key(h, "s", nullptr));
    EXPECT_EQ(0, inifile_has_key(h, nullptr, "k"));
    EXPECT_EQ(0, inifile_remove_key(h, "s", nullptr));
    EXPECT_EQ(5, inifile_read_long(h, nullptr, "k", 5));
    EXPECT_EQ(2.5, inifile_read_float(h, "s", nullptr, 2.5));
    EXPECT_STREQ("d", inifile_read_string(h, nullptr, "k", "d"));
    EXPECT_EQ(0, inifile_get_key_count(h, nullptr));
    EXPECT_EQ(nullptr, inifile_get_key_by_index(h, nullptr, 0));
    EXPECT_EQ(0, inifile_remove_section(h, nullptr));
    EXPECT_EQ(0, inifile_rename_section(h, nullptr, "x"));
    EXPECT_EQ(0, inifile_rename_section(h, "s", nullptr));
    EXPECT_EQ(0, inifile_register_section(h, nullptr));
    EXPECT_EQ(0, inifile_copy_section(h, nullptr, h));
    EXPECT_STREQ("w", inifile_read_string(h, "s", "k", ""));

    inifile none = nullptr;
    inifile_delete(none);
    inifile_clear(none);
    inifile_set_case_sensitive(none, 1);
    EXPECT_EQ(0, inifile_has_section(none, "s"));
    EXPECT_EQ(0, inifile_has_key(none, "s", "k"));
    EXPECT_EQ(0, inifile_remove_key(none, "s", "k"));
    EXPECT_EQ(3, inifile_read_long(none, "s", "k", 3));
    EXPECT_EQ(1.5, inifile_read_float(none, "s", "k", 1.5));
    EXPECT_STREQ("d", inifile_read_string(none, "s", "k", "d"));
    EXPECT_STREQ("", inifile_read_string(none, "s", "k", nullptr));
    EXPECT_EQ(0, inifile_write_long(none, "s", "k", 1));
    EXPECT_EQ(0, inifile_write_float(none, "s", "k", 1));
    EXPECT_EQ(0, inifile_get_section_count(none));
    EXPECT_EQ(0, inifile_get_key_count(none, "s"));
    EXPECT_EQ(nullptr, inifile_get_section_by_index(none, 0));
    EXPECT_EQ(nullptr, inifile_get_key_by_index(none, "s", 0));
    EXPECT_EQ(0, inifile_remove_section(none, "s"));
    EXPECT_EQ(0, inifile_rename_section(none, "s", "t"));
    EXPECT_EQ(0, inifile_register_section(none, "s"));
    EXPECT_EQ(0, inifile_copy_section(none, "s", h));
    EXPECT_EQ(0, inifile_copy_section(h, "s", none));

    pdError* e = reinterpret_cast<pdError*>(1);
    EXPECT_NE(0, inifile_open(none, "x.ini", &e));
    ASSERT_NE(nullptr, e);
    pderror_free(e);
    e = reinterpret_cast<pdError*>(1);
    EXPECT_NE(0, inifile_save(h, nullptr, &e));
    ASSERT_NE(nullptr, e);
    EXPECT_STREQ("", pderror_region(e));
    pderror_free(e);
    EXPECT_NE(0, inifile_open(h, nullptr, nullptr)); // no record wanted
    pderror_free(nullptr);
    EXPECT_STREQ("", pderror_region(nullptr));
    EXPECT_STREQ("", pderror_message(nullptr));
}

TEST(Values, PdStrdup) {
    EXPECT_EQ(nullptr, pd_strdup(nullptr));
    const char* text = "some text \xC3\xA5";
    char* copy = pd_strdup(text);
    ASSERT_NE(nullptr, copy);
    EXPECT_NE(text, copy);
    EXPECT_STREQ(text, copy);
    std::free(copy);
    char* empty = pd_strdup("");
    ASSERT_NE(nullptr, empty);
    EXPECT_STREQ("", empty);
    std::free(empty);
}

TEST(Values, LongValuesAndNames) {
    TempDir dir;
    Store h;
    std::string big(100000, 'x');
    big[500] = '\n';
    std::string name(255, 'n');
    inifile_write_string(h, name.c_str(), name.c_str(), big.c_str());
    Store back;
    ASSERT_TRUE(LoadText(back, dir, SavedText(h, dir)));
    EXPECT_EQ(big, Get(back, name.c_str(), name.c_str()));
}
