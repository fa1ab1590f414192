// Numbers: the limits of whole numbers, what a float reads from, and the
// shortest form that reads back the same.
#include "numbers.h"

#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <cstring>
#include <random>
#include <string>

using vesk::parseDouble;
using vesk::parseLong;

namespace {

bool Long(const char* s, long& v) {
    v = 12345;
    return parseLong(s, v);
}

} // namespace

TEST(Numbers, WholeNumbersWithinLong) {
    long v;
    EXPECT_TRUE(Long(" \t+42 ", v));
    EXPECT_EQ(v, 42);
    std::string max = std::to_string(LONG_MAX), min = std::to_string(LONG_MIN);
    EXPECT_TRUE(Long(max.c_str(), v));
    EXPECT_EQ(v, LONG_MAX);
    EXPECT_TRUE(Long(min.c_str(), v));
    EXPECT_EQ(v, LONG_MIN);
    max.back() = static_cast<char>(max.back() + 1); // one beyond each end
    min.back() = static_cast<char>(min.back() + 1);
    EXPECT_FALSE(Long(max.c_str(), v));
    EXPECT_FALSE(Long(min.c_str(), v));
    EXPECT_EQ(v, 12345); // untouched on failure
    for (const char* bad : {"", " ", "+", "-", "--1", "+-1", "1 2", "1.0", "0x10", "1e3", "١"})
        EXPECT_FALSE(Long(bad, v)) << bad;
    EXPECT_TRUE(Long("-0", v));
    EXPECT_EQ(v, 0);
}

TEST(Numbers, FloatsInTheCLocale) {
    double d = 0;
    EXPECT_TRUE(parseDouble(" -1.5e3 ", d));
    EXPECT_EQ(d, -1500.0);
    EXPECT_TRUE(parseDouble("1e308", d));
    EXPECT_FALSE(parseDouble("1e309", d));
    EXPECT_TRUE(parseDouble("+INFINITY", d));
    EXPECT_TRUE(std::isinf(d));
    EXPECT_TRUE(parseDouble("-nan", d));
    EXPECT_TRUE(std::isnan(d));
    for (const char* bad : {"", "+", "1,5", "0x10", "1.5.", "--1", "+-1", "e5", "1 5"})
        EXPECT_FALSE(parseDouble(bad, d)) << bad;
}

TEST(Numbers, ShortestFormsReadBack) {
    char buf[64];
    vesk::formatLong(LONG_MIN, buf);
    EXPECT_EQ(std::string(buf), std::to_string(LONG_MIN));
    vesk::formatDouble(1.5, buf);
    EXPECT_STREQ(buf, "1.5");
    vesk::formatDouble(1e300, buf);
    EXPECT_STREQ(buf, "1e+300");
    vesk::formatDouble(-HUGE_VAL, buf);
    EXPECT_STREQ(buf, "-inf");
    std::mt19937_64 rng(3);
    for (int i = 0; i < 2000; ++i) {
        uint64_t bits = rng();
        double x;
        std::memcpy(&x, &bits, sizeof x);
        if (std::isnan(x))
            continue;
        vesk::formatDouble(x, buf);
        double back = 0;
        ASSERT_TRUE(parseDouble(buf, back)) << buf;
        EXPECT_EQ(std::memcmp(&back, &x, sizeof x), 0) << buf;
    }
}
