// jmsDateTime: checks, parsing and printing, ordering, the reference table of
// tests/data/dates, and the seconds count under real time zones.
#include <wxsupport/text/jmsdatetime.h>

#include "tempdir.h"

#include <gtest/gtest.h>

#include <array>
#include <climits>
#include <cstdint>
#include <cstdlib>
#include <ctime>
#include <fstream>
#include <sstream>
#include <vector>

namespace {

using F = std::array<int, 5>; // year, month, day, hour, minute

jmsDateTime Make(const F& f) {
    jmsDateTime v;
    v.SetDate(f[0], f[1], f[2]);
    v.SetTime(f[3], f[4]);
    return v;
}

F Get(jmsDateTime& v) {
    return {v.GetYear(), v.GetMonth(), v.GetDay(), v.GetHour(), v.GetMinute()};
}

// Seconds from 1970 of a UTC reading, independent of the C library.
std::int64_t Utc(std::int64_t y, int mo, int d, int h, int mi) {
    y -= mo <= 2;
    const std::int64_t era = (y >= 0 ? y : y - 399) / 400, yoe = y - era * 400;
    const std::int64_t doy = (153 * (mo + (mo > 2 ? -3 : 9)) + 2) / 5 + d - 1;
    const std::int64_t days = era * 146097 + yoe * 365 + yoe / 4 - yoe / 100 + doy - 719468;
    return days * 86400 + h * 3600 + mi * 60;
}

const F kStart{2000, 6, 15, 10, 30};

TEST(JmsDateTime, SetDateAndSetTimeReplaceOnlyBadNumbers) {
    const struct {
        bool time;
        int a, b, c;
        bool ok;
        F stored;
    } cases[] = {
        {false, 2024, 13, 40, false, {2024, 1, 1, 10, 30}},
        {false, 2024, 2, 31, true, {2024, 2, 31, 10, 30}}, // month length not looked at
        {false, 2024, -1, 9, false, {2024, 1, 9, 10, 30}},
        {false, INT_MIN, INT_MIN, INT_MAX, false, {INT_MIN, 1, 1, 10, 30}},
        {true, 24, 1, 0, false, {2000, 6, 15, 24, 0}},
        {true, 12, 60, 0, false, {2000, 6, 15, 12, 0}},
        {true, 25, 30, 0, false, {2000, 6, 15, 0, 0}},
        {true, INT_MIN, 5, 0, false, {2000, 6, 15, 0, 5}},
    };
    for (const auto& c : cases) {
        jmsDateTime v = Make(kStart);
        EXPECT_EQ(c.ok, c.time ? v.SetTime(c.a, c.b) : v.SetDate(c.a, c.b, c.c)) << c.a;
        EXPECT_EQ(c.stored, Get(v)) << c.a << " " << c.b << " " << c.c;
    }
}

TEST(JmsDateTime, ParseFormsAndLeftovers) {
    const struct {
        bool time;
        const char* text;
        bool ok;
        F stored; // starting from kStart
    } cases[] = {{false, "2024-03-07", true, {2024, 3, 7, 10, 30}},
                 {false, "  24- 3-\t7 12:00 and more", true, {24, 3, 7, 10, 30}},
                 {false, "-5-+2-09", true, {-5, 2, 9, 10, 30}},
                 {false, "2024-13-40", false, {2024, 1, 1, 10, 30}},
                 {false, "2024-13", false, {2024, 13, 15, 10, 30}}, // read numbers stay unchecked
                 {false, "2024 -03-07", false, {2024, 6, 15, 10, 30}},
                 {false, "", false, kStart},
                 {false, "2147483647-12-31", true, {INT_MAX, 12, 31, 10, 30}},
                 {false, "-2147483648-01-01", true, {INT_MIN, 1, 1, 10, 30}},
                 {false, "000000000000000002024-0000003-07", true, {2024, 3, 7, 10, 30}},
                 {false, "2147483648-01-01", false, kStart}, // a number too big ends the scan
                 {false, "2024-99999999999999999999-01", false, {2024, 6, 15, 10, 30}},
                 {false, "2023--2147483649-01", false, {2023, 6, 15, 10, 30}},
                 {true, " 23:59:59", true, {2000, 6, 15, 23, 59}},
                 {true, "24:00", true, {2000, 6, 15, 24, 0}},
                 {true, "24:01", false, {2000, 6, 15, 24, 0}},
                 {true, "noon", false, kStart},
                 {true, "99", false, {2000, 6, 15, 99, 30}},
                 {true, "-3.30", false, {2000, 6, 15, -3, 30}},
                 {true, "12:4294967296", false, {2000, 6, 15, 12, 30}}};
    for (const auto& c : cases) {
        jmsDateTime v = Make(kStart);
        const wxString text = wxString::FromUTF8(c.text);
        EXPECT_EQ(c.ok, c.time ? v.ParseTime(text) : v.ParseDate(text)) << c.text;
        EXPECT_EQ(c.stored, Get(v)) << c.text;
    }
}

TEST(JmsDateTime, FormatReadsBackAndOrders) {
    jmsDateTime v = Make({5, 3, 7, 8, 5}), w = Make({INT_MIN, 12, 31, 24, 0});
    EXPECT_EQ(wxT("05-03-07 08:05"), v.FormatDate() + wxT(" ") + v.FormatTime());
    EXPECT_TRUE(v.ParseDate(w.FormatDate()));
    EXPECT_TRUE(v.ParseTime(w.FormatTime()));
    EXPECT_TRUE(v == w);
    jmsDateTime c = Make(kStart);
    c = std::move(w); // the source keeps its fields
    EXPECT_TRUE(c == v);
    EXPECT_TRUE(w == v);
    v.ParseDate(wxT("-3--4"));
    EXPECT_EQ(wxT("-3--4-31"), v.FormatDate()); // unchecked fields print as they are
    // Each field decides when the ones before it are equal, whatever follows.
    const F lo{INT_MIN, 1, 1, 0, 0}, hi{INT_MAX, 12, 31, 23, 59};
    jmsDateTime b = Make(kStart);
    for (int i = 0; i < 5; ++i) {
        F up = kStart, down = kStart;
        ++up[i], --down[i];
        for (int k = i + 1; k < 5; ++k)
            up[k] = lo[k], down[k] = hi[k];
        jmsDateTime u = Make(up), d = Make(down);
        EXPECT_TRUE(u > b) << i;
        EXPECT_FALSE(b > u) << i;
        EXPECT_TRUE(u != b) << i;
        EXPECT_FALSE(u == b) << i;
        EXPECT_TRUE(b > d) << i;
        EXPECT_FALSE(d > b) << i;
    }
    jmsDateTime l = Make(lo);
    EXPECT_TRUE(b > l);
    EXPECT_FALSE(l > b);
    EXPECT_FALSE(b > b);
}

// tests/data/dates/dates.csv: check results, MkTime's count and the fields
// LocalTime gives back.
TEST(JmsDateTime, ReferenceTable) {
    std::ifstream in(TestDataPath("dates/dates.csv"));
    std::string line;
    ASSERT_TRUE(std::getline(in, line));
    while (std::getline(in, line)) {
        std::istringstream ss(line);
        std::vector<long long> v;
        for (std::string cell; std::getline(ss, cell, ',');)
            v.push_back(std::stoll(cell));
        ASSERT_EQ(15u, v.size()) << line;
        jmsDateTime d = Make({1900, 1, 1, 0, 0});
        EXPECT_EQ(v[5] != 0, d.SetDate(int(v[0]), int(v[1]), int(v[2]))) << line;
        EXPECT_EQ(v[6] != 0, d.SetTime(int(v[3]), int(v[4]))) << line;
        EXPECT_EQ((F{int(v[0]), int(v[1]), int(v[2]), int(v[7]), int(v[8])}), Get(d)) << line;
        EXPECT_EQ(v[9], d.MkTime()) << line;
        d.LocalTime(v[9]);
        EXPECT_EQ((F{int(v[10]), int(v[11]), int(v[12]), int(v[13]), int(v[14])}), Get(d)) << line;
    }
}

TEST(JmsDateTime, CountsCarryReachFarYearsAndRefuseWhatDoesNotFit) {
    EXPECT_EQ(Utc(2023, 3, 3, 0, 0), Make({2023, 2, 31, 0, 0}).MkTime());
    EXPECT_EQ(Utc(2024, 1, 1, 0, 0), Make({2023, 12, 31, 24, 0}).MkTime());
    jmsDateTime m = Make({2023, 5, 10, 6, 0});
    m.ParseDate(wxT("2023-14")); // unchecked month carries into the year
    EXPECT_EQ(Utc(2024, 2, 10, 6, 0), m.MkTime());

    for (const F& f : {F{1969, 12, 31, 23, 59}, F{1, 1, 1, 0, 0}, F{-4713, 11, 24, 12, 0},
                       F{INT_MAX, 12, 31, 23, 59}, F{INT_MIN + 1900, 1, 1, 0, 0}}) {
        jmsDateTime v = Make(f), back = Make(kStart);
        EXPECT_EQ(Utc(f[0], f[1], f[2], f[3], f[4]), v.MkTime()) << f[0];
        back.LocalTime(v.MkTime());
        EXPECT_EQ(f, Get(back));
    }
    // -1 for fields without a count (never real: real counts are whole minutes).
    for (const char* text : {"-2147483648", "2147483647-2147483647", "2000--2147483648"}) {
        m.ParseDate(text);
        EXPECT_EQ(-1, m.MkTime()) << text;
    }
    for (std::int64_t t : {INT64_MAX, INT64_MIN, Utc(std::int64_t(INT_MAX) + 1, 1, 1, 0, 0),
                           Utc(std::int64_t(INT_MIN) - 1, 12, 31, 23, 0)}) {
        jmsDateTime v = Make(kStart);
        v.LocalTime(t);
        EXPECT_EQ(kStart, Get(v)) << t;
    }
}

// MkTime and LocalTime are inverses that count the reading as UTC in every
// zone and season, the summer time switches included.
TEST(JmsDateTime, ZoneNeutralSecondsInEveryZone) {
    for (const char* zone : {"UTC", "America/New_York", "Europe/Berlin", "Asia/Kolkata",
                             "Pacific/Chatham", "Australia/Lord_Howe"}) {
        SCOPED_TRACE(zone);
        ASSERT_TRUE(FileExists(std::string("/usr/share/zoneinfo/") + zone)) << "needs tzdata";
        setenv("TZ", zone, 1);
        tzset();
        // Every half hour of years with and without summer time rules.
        for (int year : {1969, 2024, 2038}) {
            for (std::int64_t t = Utc(year, 1, 1, 0, 0); t < Utc(year + 1, 1, 1, 0, 0); t += 1800) {
                const time_t tt = static_cast<time_t>(t);
                std::tm tm;
                gmtime_r(&tt, &tm);
                const F f{tm.tm_year + 1900, tm.tm_mon + 1, tm.tm_mday, tm.tm_hour, tm.tm_min};
                jmsDateTime v = Make(f), back = Make(kStart);
                ASSERT_EQ(t, v.MkTime()) << v.FormatDate() << " " << v.FormatTime();
                back.LocalTime(t);
                ASSERT_EQ(f, Get(back));
            }
        }
    }
    unsetenv("TZ");
    tzset();
}

} // namespace
