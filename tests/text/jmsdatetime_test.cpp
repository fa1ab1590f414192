// jmsDateTime: checks, parsing and printing, ordering, the reference table of
// tests/data/dates, and the seconds count under real time zones.
#include <wxsupport/text/jmsdatetime.h>

#include "tempdir.h"

#include <gtest/gtest.h>

#include <climits>
#include <cstdint>
#include <cstdlib>
#include <ctime>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

namespace {

struct Fields {
    int year, month, day, hour, minute;
};

Fields Get(jmsDateTime& d) {
    return {d.GetYear(), d.GetMonth(), d.GetDay(), d.GetHour(), d.GetMinute()};
}

jmsDateTime Make(int y, int mo, int d, int h, int mi) {
    jmsDateTime v;
    v.SetDate(y, mo, d);
    v.SetTime(h, mi);
    return v;
}

::testing::AssertionResult FieldsAre(jmsDateTime& d, int y, int mo, int day, int h, int mi) {
    const Fields f = Get(d);
    if (f.year == y && f.month == mo && f.day == day && f.hour == h && f.minute == mi)
        return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure()
           << "fields " << f.year << "-" << f.month << "-" << f.day << " " << f.hour << ":"
           << f.minute << ", expected " << y << "-" << mo << "-" << day << " " << h << ":" << mi;
}

// Days from 1970-01-01 to a proleptic Gregorian date (H. Hinnant's algorithm),
// an oracle independent of the C library.
std::int64_t DaysFromCivil(std::int64_t y, std::int64_t m, std::int64_t d) {
    y -= m <= 2;
    const std::int64_t era = (y >= 0 ? y : y - 399) / 400;
    const std::int64_t yoe = y - era * 400;
    const std::int64_t doy = (153 * (m + (m > 2 ? -3 : 9)) + 2) / 5 + d - 1;
    const std::int64_t doe = yoe * 365 + yoe / 4 - yoe / 100 + doy;
    return era * 146097 + doe - 719468;
}

std::int64_t UtcSeconds(std::int64_t y, int mo, int d, int h, int mi) {
    return DaysFromCivil(y, mo, d) * 86400 + h * 3600 + mi * 60;
}

TEST(JmsDateTime, CopyAndMoveCopyAllFields) {
    jmsDateTime a = Make(2024, 3, 7, 8, 5);
    jmsDateTime b = Make(1999, 12, 31, 23, 59);
    b = a;
    EXPECT_TRUE(FieldsAre(b, 2024, 3, 7, 8, 5));
    jmsDateTime c = Make(2000, 1, 1, 0, 0);
    c = std::move(a);
    EXPECT_TRUE(FieldsAre(c, 2024, 3, 7, 8, 5));
    EXPECT_TRUE(FieldsAre(a, 2024, 3, 7, 8, 5)); // the source is left as it was
    jmsDateTime d(c);
    EXPECT_TRUE(d == c);
}

TEST(JmsDateTime, DateCheck) {
    jmsDateTime d = Make(2000, 6, 15, 10, 30);
    EXPECT_FALSE(d.SetDate(2024, 13, 40));
    EXPECT_TRUE(FieldsAre(d, 2024, 1, 1, 10, 30));
    EXPECT_TRUE(d.SetDate(2024, 2, 31)); // month length is never looked at
    EXPECT_TRUE(FieldsAre(d, 2024, 2, 31, 10, 30));
    EXPECT_FALSE(d.SetDate(-7, 0, 0)); // the year is stored anyway
    EXPECT_TRUE(FieldsAre(d, -7, 1, 1, 10, 30));
    EXPECT_FALSE(d.SetDate(2024, 5, 32)); // a bad day keeps a good month
    EXPECT_TRUE(FieldsAre(d, 2024, 5, 1, 10, 30));
    EXPECT_FALSE(d.SetDate(2024, -1, 9)); // a bad month keeps a good day
    EXPECT_TRUE(FieldsAre(d, 2024, 1, 9, 10, 30));
    EXPECT_FALSE(d.SetDate(INT_MIN, INT_MIN, INT_MAX));
    EXPECT_TRUE(FieldsAre(d, INT_MIN, 1, 1, 10, 30));
    EXPECT_TRUE(d.SetDate(INT_MAX, 12, 31));
    EXPECT_TRUE(d.SetDate(2024, 1, 1));
    d.SetYear(-44);
    EXPECT_TRUE(FieldsAre(d, -44, 1, 1, 10, 30));
}

TEST(JmsDateTime, TimeCheck) {
    struct Case {
        int h, m;
        bool ok;
        int sh, sm;
    } cases[] = {
        {0, 0, true, 0, 0},        {23, 59, true, 23, 59},      {24, 0, true, 24, 0},
        {24, 1, false, 24, 0},     {24, 30, false, 24, 0},      {12, 60, false, 12, 0},
        {25, 30, false, 0, 0},     {-1, 30, false, 0, 30},      {25, 0, false, 0, 0},
        {-1, -1, false, 0, 0},     {8, -5, false, 8, 0},        {INT_MAX, INT_MAX, false, 0, 0},
        {INT_MIN, 5, false, 0, 5}, {24, INT_MIN, false, 24, 0},
    };
    for (const Case& c : cases) {
        jmsDateTime d = Make(2024, 3, 7, 11, 11);
        EXPECT_EQ(c.ok, d.SetTime(c.h, c.m)) << c.h << ":" << c.m;
        EXPECT_TRUE(FieldsAre(d, 2024, 3, 7, c.sh, c.sm)) << c.h << ":" << c.m;
    }
}

TEST(JmsDateTime, ParseDate) {
    jmsDateTime d = Make(2000, 6, 15, 10, 30);
    EXPECT_TRUE(d.ParseDate(wxT("2024-03-07")));
    EXPECT_TRUE(FieldsAre(d, 2024, 3, 7, 10, 30));
    EXPECT_TRUE(d.ParseDate(wxT("2024-3-7 12:00 and more")));
    EXPECT_TRUE(FieldsAre(d, 2024, 3, 7, 10, 30));
    EXPECT_TRUE(d.ParseDate(wxT("  24- 03-\t7")));
    EXPECT_TRUE(FieldsAre(d, 24, 3, 7, 10, 30));
    EXPECT_TRUE(d.ParseDate(wxT("-5-+2-09")));
    EXPECT_TRUE(FieldsAre(d, -5, 2, 9, 10, 30));

    // Fewer than three numbers: stored unchecked, the rest kept.
    d = Make(2000, 6, 15, 10, 30);
    EXPECT_FALSE(d.ParseDate(wxT("2024-13")));
    EXPECT_TRUE(FieldsAre(d, 2024, 13, 15, 10, 30));
    d = Make(2000, 6, 15, 10, 30);
    EXPECT_FALSE(d.ParseDate(wxT("1999")));
    EXPECT_TRUE(FieldsAre(d, 1999, 6, 15, 10, 30));
    d = Make(2000, 6, 15, 10, 30);
    EXPECT_FALSE(d.ParseDate(wxT("2024 -03-07"))); // blank before a separator
    EXPECT_TRUE(FieldsAre(d, 2024, 6, 15, 10, 30));
    d = Make(2000, 6, 15, 10, 30);
    EXPECT_FALSE(d.ParseDate(wxT("2024/03/07")));
    EXPECT_TRUE(FieldsAre(d, 2024, 6, 15, 10, 30));

    // No leading number: nothing changes.
    for (const wxString& text : {wxString(), wxString(wxT("   ")), wxString(wxT("x2024-01-01")),
                                 wxString(wxT("-")), wxString(wxT("+-1-1-1"))}) {
        d = Make(2000, 6, 15, 10, 30);
        EXPECT_FALSE(d.ParseDate(text)) << text;
        EXPECT_TRUE(FieldsAre(d, 2000, 6, 15, 10, 30)) << text;
    }

    // All three read, then checked.
    d = Make(2000, 6, 15, 10, 30);
    EXPECT_FALSE(d.ParseDate(wxT("2024-13-40")));
    EXPECT_TRUE(FieldsAre(d, 2024, 1, 1, 10, 30));
}

TEST(JmsDateTime, ParseNumbersAtTheEdgesOfInt) {
    jmsDateTime d = Make(2000, 6, 15, 10, 30);
    EXPECT_TRUE(d.ParseDate(wxT("2147483647-12-31")));
    EXPECT_TRUE(FieldsAre(d, INT_MAX, 12, 31, 10, 30));
    EXPECT_TRUE(d.ParseDate(wxT("-2147483648-01-01")));
    EXPECT_TRUE(FieldsAre(d, INT_MIN, 1, 1, 10, 30));
    EXPECT_TRUE(d.ParseDate(wxT("000000000000000002024-0000003-07")));
    EXPECT_TRUE(FieldsAre(d, 2024, 3, 7, 10, 30));

    // A number that doesn't fit ends the scan: it and the rest stay as they were.
    d = Make(2000, 6, 15, 10, 30);
    EXPECT_FALSE(d.ParseDate(wxT("2147483648-01-01")));
    EXPECT_TRUE(FieldsAre(d, 2000, 6, 15, 10, 30));
    EXPECT_FALSE(d.ParseDate(wxT("2024-99999999999999999999-01")));
    EXPECT_TRUE(FieldsAre(d, 2024, 6, 15, 10, 30));
    EXPECT_FALSE(d.ParseDate(wxT("2023--2147483649-01")));
    EXPECT_TRUE(FieldsAre(d, 2023, 6, 15, 10, 30));
    EXPECT_FALSE(d.ParseTime(wxT("12:4294967296")));
    EXPECT_TRUE(FieldsAre(d, 2023, 6, 15, 12, 30));
}

// For numbers that fit an int, parsing reads exactly what sscanf reads:
// random short texts, compared with the C library's own scanner.
TEST(JmsDateTime, ParseReadsAsScanfDoes) {
    const char alphabet[] = "0123456789-- ::+\tx";
    unsigned seed = 12345;
    auto next = [&seed]() {
        seed = seed * 1103515245u + 12345u;
        return (seed >> 16) & 0x7FFF;
    };
    for (int i = 0; i < 20000; ++i) {
        std::string text;
        int digits = 0;
        const unsigned length = next() % 14;
        for (unsigned k = 0; k < length; ++k) {
            char c = alphabet[next() % (sizeof alphabet - 1)];
            digits = (c >= '0' && c <= '9') ? digits + 1 : 0;
            if (digits > 9) // keep sscanf within int
                c = '-', digits = 0;
            text += c;
        }
        int y = 1000, mo = 6, d = 15;
        const int n = std::sscanf(text.c_str(), "%d-%d-%d", &y, &mo, &d);
        jmsDateTime v = Make(1000, 6, 15, 10, 30);
        const bool ok = v.ParseDate(wxString(text.c_str(), wxConvLibc));
        if (n == 3) {
            jmsDateTime expected = Make(1000, 6, 15, 10, 30);
            EXPECT_EQ(expected.SetDate(y, mo, d), ok) << text;
            EXPECT_TRUE(v == expected) << "'" << text << "' gave " << v.FormatDate();
        } else {
            // What was read is stored unchecked (sscanf left the rest alone).
            EXPECT_FALSE(ok) << text;
            EXPECT_EQ(y, v.GetYear()) << text;
            EXPECT_EQ(mo, v.GetMonth()) << text;
            EXPECT_EQ(15, v.GetDay()) << text;
        }

        int h = 10, mi = 30;
        const int tn = std::sscanf(text.c_str(), "%d:%d", &h, &mi);
        jmsDateTime t = Make(2000, 1, 1, 10, 30);
        const bool tok = t.ParseTime(wxString(text.c_str(), wxConvLibc));
        if (tn == 2) {
            jmsDateTime et = Make(2000, 1, 1, 10, 30);
            EXPECT_EQ(et.SetTime(h, mi), tok) << text;
            EXPECT_TRUE(t == et) << text;
        } else {
            EXPECT_FALSE(tok) << text;
            EXPECT_EQ(h, t.GetHour()) << text;
            EXPECT_EQ(30, t.GetMinute()) << text;
        }
    }
}

TEST(JmsDateTime, ParseTime) {
    jmsDateTime d = Make(2024, 3, 7, 11, 11);
    EXPECT_TRUE(d.ParseTime(wxT("8:5")));
    EXPECT_TRUE(FieldsAre(d, 2024, 3, 7, 8, 5));
    EXPECT_TRUE(d.ParseTime(wxT("24:00")));
    EXPECT_TRUE(FieldsAre(d, 2024, 3, 7, 24, 0));
    EXPECT_FALSE(d.ParseTime(wxT("24:01")));
    EXPECT_TRUE(FieldsAre(d, 2024, 3, 7, 24, 0));
    EXPECT_FALSE(d.ParseTime(wxT("12:60")));
    EXPECT_TRUE(FieldsAre(d, 2024, 3, 7, 12, 0));
    EXPECT_TRUE(d.ParseTime(wxT(" 23:59:59")));
    EXPECT_TRUE(FieldsAre(d, 2024, 3, 7, 23, 59));

    d = Make(2024, 3, 7, 11, 11);
    EXPECT_FALSE(d.ParseTime(wxT("")));
    EXPECT_FALSE(d.ParseTime(wxT("noon")));
    EXPECT_FALSE(d.ParseTime(wxT(":30")));
    EXPECT_TRUE(FieldsAre(d, 2024, 3, 7, 11, 11));
    EXPECT_FALSE(d.ParseTime(wxT("99"))); // one number: stored unchecked
    EXPECT_TRUE(FieldsAre(d, 2024, 3, 7, 99, 11));
    EXPECT_FALSE(d.ParseTime(wxT("-3.30"))); // wrong separator
    EXPECT_TRUE(FieldsAre(d, 2024, 3, 7, -3, 11));
}

TEST(JmsDateTime, FormatAndReadBack) {
    jmsDateTime d = Make(2024, 3, 7, 8, 5);
    EXPECT_EQ(wxT("2024-03-07"), d.FormatDate());
    EXPECT_EQ(wxT("08:05"), d.FormatTime());
    d.SetYear(5);
    EXPECT_EQ(wxT("05-03-07"), d.FormatDate());
    d.SetYear(12345);
    EXPECT_EQ(wxT("12345-03-07"), d.FormatDate());
    d.SetTime(24, 0);
    EXPECT_EQ(wxT("24:00"), d.FormatTime());

    // Every value a checked operation leaves reads back from its text forms.
    const int years[] = {INT_MIN, -2024, -5, 0, 5, 99, 2024, INT_MAX};
    for (int y : years) {
        for (int mo = 1; mo <= 12; mo += 11) {
            for (int day : {1, 9, 10, 31}) {
                for (int h : {0, 9, 10, 24}) {
                    jmsDateTime a = Make(y, mo, day, h, h == 24 ? 0 : 7 * h % 60);
                    jmsDateTime b = Make(1, 2, 3, 4, 5);
                    EXPECT_TRUE(b.ParseDate(a.FormatDate())) << a.FormatDate();
                    EXPECT_TRUE(b.ParseTime(a.FormatTime())) << a.FormatTime();
                    EXPECT_TRUE(a == b) << a.FormatDate() << " " << a.FormatTime();
                }
            }
        }
    }
    // Unchecked fields print as they are.
    jmsDateTime u = Make(2024, 1, 1, 0, 0);
    u.ParseDate(wxT("-3--4"));
    u.ParseTime(wxT("-7"));
    EXPECT_EQ(wxT("-3--4-01"), u.FormatDate());
    EXPECT_EQ(wxT("-7:00"), u.FormatTime());
}

TEST(JmsDateTime, Ordering) {
    jmsDateTime a = Make(2024, 3, 7, 8, 5);
    jmsDateTime b = Make(2024, 3, 7, 8, 6);
    EXPECT_TRUE(a != b);
    EXPECT_FALSE(a == b);
    EXPECT_TRUE(b > a);
    EXPECT_FALSE(a > b);
    EXPECT_FALSE(a > a);
    EXPECT_TRUE(a == a);
    EXPECT_FALSE(a != a);

    // Each field decides when the earlier ones are equal, and a greater
    // earlier field wins over every later one.
    jmsDateTime base = Make(2024, 6, 15, 12, 30);
    jmsDateTime later[] = {Make(2025, 1, 1, 0, 0), Make(2024, 7, 1, 0, 0), Make(2024, 6, 16, 0, 0),
                           Make(2024, 6, 15, 13, 0), Make(2024, 6, 15, 12, 31)};
    jmsDateTime earlier[] = {Make(2023, 12, 31, 24, 0), Make(2024, 5, 31, 23, 59),
                             Make(2024, 6, 14, 24, 0), Make(2024, 6, 15, 11, 59),
                             Make(2024, 6, 15, 12, 29)};
    for (int i = 0; i < 5; ++i) {
        EXPECT_TRUE(later[i] > base) << i;
        EXPECT_FALSE(base > later[i]) << i;
        EXPECT_TRUE(base > earlier[i]) << i;
        EXPECT_FALSE(earlier[i] > base) << i;
        EXPECT_TRUE(earlier[i] != base) << i;
        EXPECT_FALSE(earlier[i] == base) << i;
    }

    // Signed comparison: negative years come first.
    jmsDateTime neg = Make(2024, 1, 1, 0, 0);
    neg.SetYear(-1);
    EXPECT_TRUE(a > neg);
    neg.SetYear(INT_MIN);
    jmsDateTime top = Make(2024, 1, 1, 0, 0);
    top.SetYear(INT_MAX);
    EXPECT_TRUE(top > neg);
    EXPECT_FALSE(neg > top);
}

// tests/data/dates/dates.csv: SetDate and SetTime results, MkTime's count and
// the fields LocalTime gives back, checked in UTC and in a zone far from it.
TEST(JmsDateTime, ReferenceTable) {
    std::ifstream in(TestDataPath("dates/dates.csv"));
    ASSERT_TRUE(in.good());
    std::string line;
    std::getline(in, line);
    ASSERT_EQ(0u, line.rfind("year,month,day,hour,minute,date_ok,time_ok", 0));
    int rows = 0;
    while (std::getline(in, line)) {
        if (line.empty())
            continue;
        std::istringstream ss(line);
        std::vector<long long> v;
        std::string cell;
        while (std::getline(ss, cell, ','))
            v.push_back(std::stoll(cell));
        ASSERT_EQ(15u, v.size()) << line;
        jmsDateTime d = Make(1900, 1, 1, 0, 0);
        EXPECT_EQ(v[5] != 0, d.SetDate(int(v[0]), int(v[1]), int(v[2]))) << line;
        EXPECT_EQ(v[6] != 0, d.SetTime(int(v[3]), int(v[4]))) << line;
        EXPECT_TRUE(FieldsAre(d, int(v[0]), int(v[1]), int(v[2]), int(v[7]), int(v[8]))) << line;
        EXPECT_EQ(v[9], d.MkTime()) << line;
        EXPECT_EQ(UtcSeconds(v[0], int(v[1]), int(v[2]), int(v[7]), int(v[8])), v[9]) << line;
        jmsDateTime back = Make(1900, 1, 1, 0, 0);
        back.LocalTime(v[9]);
        EXPECT_TRUE(FieldsAre(back, int(v[10]), int(v[11]), int(v[12]), int(v[13]), int(v[14])))
            << line;
        ++rows;
    }
    EXPECT_EQ(1000, rows);
}

TEST(JmsDateTime, SecondsOverflowOfDayAndHourCarries) {
    jmsDateTime a = Make(2023, 2, 31, 0, 0);
    jmsDateTime b = Make(2023, 3, 3, 0, 0);
    EXPECT_EQ(b.MkTime(), a.MkTime());
    jmsDateTime c = Make(2023, 12, 31, 24, 0);
    jmsDateTime e = Make(2024, 1, 1, 0, 0);
    EXPECT_EQ(e.MkTime(), c.MkTime());
    c.LocalTime(c.MkTime());
    EXPECT_TRUE(FieldsAre(c, 2024, 1, 1, 0, 0));
    // MkTime leaves the fields alone.
    EXPECT_TRUE(FieldsAre(a, 2023, 2, 31, 0, 0));
    // An unchecked month from a partial parse carries into the year.
    jmsDateTime m = Make(2023, 5, 10, 6, 0);
    m.ParseDate(wxT("2023-14"));
    EXPECT_EQ(UtcSeconds(2024, 2, 10, 6, 0), m.MkTime());
    m.ParseDate(wxT("2023-0"));
    EXPECT_EQ(UtcSeconds(2022, 12, 10, 6, 0), m.MkTime());
}

TEST(JmsDateTime, SecondsBefore1970AndFarYears) {
    struct Case {
        int y, mo, d, h, mi;
    } cases[] = {{1969, 12, 31, 23, 59}, {1900, 1, 1, 0, 0},        {1, 1, 1, 0, 0},
                 {0, 2, 29, 12, 0},      {-4713, 11, 24, 12, 0},    {9999, 12, 31, 23, 59},
                 {1000000, 6, 1, 0, 0},  {INT_MAX, 12, 31, 23, 59}, {INT_MIN + 1900, 1, 1, 0, 0}};
    for (const Case& c : cases) {
        jmsDateTime d = Make(c.y, c.mo, c.d, c.h, c.mi);
        const std::int64_t t = d.MkTime();
        EXPECT_EQ(UtcSeconds(c.y, c.mo, c.d, c.h, c.mi), t) << c.y;
        jmsDateTime back = Make(2000, 1, 1, 0, 0);
        back.LocalTime(t);
        EXPECT_TRUE(FieldsAre(back, c.y, c.mo, c.d, c.h, c.mi));
    }
}

TEST(JmsDateTime, UnrepresentableCountsAndFields) {
    // Fields whose struct tm form doesn't fit give -1 (never a real count:
    // real counts are whole minutes).
    jmsDateTime d = Make(2000, 1, 1, 0, 0);
    d.SetYear(INT_MIN);
    EXPECT_EQ(-1, d.MkTime());
    d.SetYear(INT_MIN + 1899);
    EXPECT_EQ(-1, d.MkTime());
    d = Make(2000, 1, 1, 0, 0);
    d.ParseDate(wxT("2000--2147483648"));
    ASSERT_EQ(INT_MIN, d.GetMonth());
    EXPECT_EQ(-1, d.MkTime());
    d.SetYear(INT_MAX);
    d.ParseDate(wxT("2147483647-2147483647"));
    EXPECT_EQ(-1, d.MkTime()); // the year carried from the month doesn't fit

    // Counts whose year doesn't fit an int leave the fields as they were.
    const std::int64_t beyond = UtcSeconds(std::int64_t(INT_MAX) + 1, 1, 1, 0, 0);
    const std::int64_t before = UtcSeconds(std::int64_t(INT_MIN) - 1, 12, 31, 23, 0);
    for (std::int64_t t : {INT64_MAX, INT64_MIN, beyond, before}) {
        jmsDateTime v = Make(2024, 3, 7, 8, 5);
        v.LocalTime(t);
        EXPECT_TRUE(FieldsAre(v, 2024, 3, 7, 8, 5)) << t;
    }
}

// Sets TZ for the lifetime of the object and restores the old value.
class ScopedZone {
public:
    explicit ScopedZone(const char* zone) {
        const char* old = getenv("TZ");
        m_had = old != nullptr;
        if (old)
            m_old = old;
        setenv("TZ", zone, 1);
        tzset();
    }
    ~ScopedZone() {
        if (m_had)
            setenv("TZ", m_old.c_str(), 1);
        else
            unsetenv("TZ");
        tzset();
    }
    ScopedZone(const ScopedZone&) = delete;
    ScopedZone& operator=(const ScopedZone&) = delete;

private:
    bool m_had = false;
    std::string m_old;
};

long OffsetAt(std::int64_t t) {
    const time_t tt = static_cast<time_t>(t);
    std::tm tm;
    localtime_r(&tt, &tm);
    return tm.tm_gmtoff;
}

struct Zone {
    const char* name;
    long january_offset; // seconds east of UTC in mid-January 2024
    long july_offset;    // and in mid-July 2024
};

const Zone kZones[] = {
    {"UTC", 0, 0},
    {"America/New_York", -5 * 3600, -4 * 3600},
    {"Europe/Berlin", 3600, 7200},
    {"Asia/Kolkata", 19800, 19800},
    {"Pacific/Chatham", 13 * 3600 + 2700, 12 * 3600 + 2700},
    {"Australia/Lord_Howe", 11 * 3600, 10 * 3600 + 1800},
};

// Local clock readings near each change of offset in a year: the readings
// skipped or repeated by summer time and the hours around them.
std::vector<Fields> ReadingsAroundSwitches(int year) {
    std::vector<Fields> out;
    const std::int64_t start = UtcSeconds(year, 1, 1, 0, 0) - 86400;
    const std::int64_t end = UtcSeconds(year + 1, 1, 1, 0, 0) + 86400;
    long prev = OffsetAt(start);
    for (std::int64_t t = start; t < end; t += 1800) {
        const long off = OffsetAt(t);
        if (off == prev)
            continue;
        prev = off;
        for (std::int64_t s = t - 2 * 3600; s <= t + 2 * 3600; s += 900) {
            // Both the old and the new offset's reading of the instant.
            for (long o : {OffsetAt(t - 1), off}) {
                const time_t local = static_cast<time_t>(s + o);
                std::tm tm;
                gmtime_r(&local, &tm);
                out.push_back(
                    {tm.tm_year + 1900, tm.tm_mon + 1, tm.tm_mday, tm.tm_hour, tm.tm_min});
            }
        }
        for (int dd = -1; dd <= 1; dd += 2) {
            const time_t local = static_cast<time_t>(t + off + dd * 86400);
            std::tm tm;
            gmtime_r(&local, &tm);
            out.push_back({tm.tm_year + 1900, tm.tm_mon + 1, tm.tm_mday, 2, 30});
        }
    }
    return out;
}

// MkTime and LocalTime are each other's inverse and give the UTC clock
// reading whatever zone and season the process is in; Now follows the zone.
TEST(JmsDateTime, ZoneNeutralSecondsInEveryZone) {
    for (const Zone& z : kZones) {
        SCOPED_TRACE(z.name);
        // A missing zone file would silently fall back to UTC: refuse that.
        ASSERT_TRUE(FileExists(std::string("/usr/share/zoneinfo/") + z.name))
            << "tzdata is required for this test";
        ScopedZone zone(z.name);
        ASSERT_EQ(z.january_offset, OffsetAt(UtcSeconds(2024, 1, 15, 12, 0)));
        ASSERT_EQ(z.july_offset, OffsetAt(UtcSeconds(2024, 7, 15, 12, 0)));

        std::vector<Fields> readings;
        for (int year : {1975, 2000, 2024, 2037, 2060})
            for (const Fields& f : ReadingsAroundSwitches(year))
                readings.push_back(f);
        size_t switches = readings.size();
        for (int year : {1970, 1999, 2024, 2038})
            for (int mo = 1; mo <= 12; ++mo)
                for (int day : {1, 15, 28})
                    for (int h : {0, 1, 2, 3, 12, 23})
                        readings.push_back({year, mo, day, h, h == 23 ? 59 : 30});
        if (z.january_offset != z.july_offset) {
            EXPECT_GT(switches, 0u) << "no change of offset found";
        }

        for (const Fields& f : readings) {
            jmsDateTime d = Make(f.year, f.month, f.day, f.hour, f.minute);
            const std::int64_t t = d.MkTime();
            ASSERT_EQ(UtcSeconds(f.year, f.month, f.day, f.hour, f.minute), t)
                << f.year << "-" << f.month << "-" << f.day << " " << f.hour << ":" << f.minute;
            jmsDateTime back = Make(1900, 1, 1, 0, 0);
            back.LocalTime(t);
            ASSERT_TRUE(FieldsAre(back, f.year, f.month, f.day, f.hour, f.minute));
        }

        // A new value, and Now, hold the local time in this zone.
        for (int attempt = 0; attempt < 3; ++attempt) {
            const time_t before = time(nullptr);
            jmsDateTime now;
            const time_t after = time(nullptr);
            if (before / 60 != after / 60)
                continue;
            std::tm tm;
            localtime_r(&before, &tm);
            EXPECT_TRUE(FieldsAre(now, tm.tm_year + 1900, tm.tm_mon + 1, tm.tm_mday, tm.tm_hour,
                                  tm.tm_min));
            EXPECT_NE(1900, now.GetYear());
            now.Now();
            EXPECT_TRUE(FieldsAre(now, tm.tm_year + 1900, tm.tm_mon + 1, tm.tm_mday, tm.tm_hour,
                                  tm.tm_min));
            break;
        }
    }
}

} // namespace
