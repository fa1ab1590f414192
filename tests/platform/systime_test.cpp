// The time layer on the platform it is built for (POSIX, or Windows under
// Wine): the breakdown without a zone and the fields counted as UTC are each
// other's inverse in zones east and west of UTC, in winter and in summer, and
// the zone really is the one the test set. Counts before 1970 go as the layer's
// header says for each platform.
#include "platform/systime.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>
#include <ctime>
#include <string>

namespace {

// Days since 1970-01-01 of a proleptic Gregorian date (Hinnant's algorithm),
// so that the expected counts don't come from the runtime under test.
std::int64_t DaysFromCivil(std::int64_t y, int m, int d) {
    y -= m <= 2;
    const std::int64_t era = (y >= 0 ? y : y - 399) / 400;
    const std::int64_t yoe = y - era * 400;
    const std::int64_t doy = (153 * (m + (m > 2 ? -3 : 9)) + 2) / 5 + d - 1;
    const std::int64_t doe = yoe * 365 + yoe / 4 - yoe / 100 + doy;
    return era * 146097 + doe - 719468;
}

std::int64_t Utc(std::int64_t y, int mo, int d, int h, int mi) {
    return DaysFromCivil(y, mo, d) * 86400 + h * 3600 + mi * 60;
}

std::tm Fields(int y, int mo, int d, int h, int mi) {
    std::tm tm = {};
    tm.tm_year = y - 1900;
    tm.tm_mon = mo - 1;
    tm.tm_mday = d;
    tm.tm_hour = h;
    tm.tm_min = mi;
    return tm;
}

std::string Text(const std::tm& tm) {
    char buffer[64];
    std::snprintf(buffer, sizeof buffer, "%d-%02d-%02d %02d:%02d:%02d", tm.tm_year + 1900,
                  tm.tm_mon + 1, tm.tm_mday, tm.tm_hour, tm.tm_min, tm.tm_sec);
    return buffer;
}

// Sets TZ the platform's way and has the runtime read it again.
void SetZone(const char* zone) {
#if defined(_WIN32)
    _putenv((std::string("TZ=") + (zone ? zone : "")).c_str());
    _tzset();
#else
    if (zone)
        setenv("TZ", zone, 1);
    else
        unsetenv("TZ");
    tzset();
#endif
}

// Restores the process's TZ after each test.
class Systime : public testing::Test {
protected:
    void SetUp() override {
        const char* zone = std::getenv("TZ");
        m_had_zone = zone != nullptr;
        m_zone = zone ? zone : "";
    }
    void TearDown() override { SetZone(m_had_zone ? m_zone.c_str() : nullptr); }

private:
    bool m_had_zone = false;
    std::string m_zone;
};

// Seconds by which the local clock is ahead of UTC at the instant t, as the
// layer's local breakdown gives it.
std::int64_t LocalAhead(std::int64_t t) {
    std::tm local;
    if (!systime_local(t, &local))
        return INT64_MIN;
    return systime_fields_as_utc(local) - t;
}

struct Zone {
    const char* tz;
    std::int64_t standard_ahead; // seconds ahead of UTC in standard time
    bool summer;                 // has a summer time name (the runtime's default rules)
};

// The runtime on Windows reads zone names of exactly three letters, so New
// Zealand is NZS there: NZST would be read as the name NZS and an offset of 0.
const Zone kZones[] = {
    {"UTC0", 0, false},
    {"CET-1CEST", 3600, true},
    {"PST8PDT", -8 * 3600, true},
#if defined(_WIN32)
    {"NZS-12NZD", 12 * 3600, true},
#else
    {"NZST-12NZDT", 12 * 3600, true},
#endif
};

TEST_F(Systime, InversesInZonesEastAndWestWinterAndSummer) {
    for (const Zone& zone : kZones) {
        SCOPED_TRACE(zone.tz);
        SetZone(zone.tz);
        // The zone took: without rules the runtimes apply summer time from
        // March to November, so January is standard time and July summer time.
        EXPECT_EQ(zone.standard_ahead, LocalAhead(Utc(2024, 1, 15, 12, 0)));
        EXPECT_EQ(zone.standard_ahead + (zone.summer ? 3600 : 0),
                  LocalAhead(Utc(2024, 7, 15, 12, 0)));

        // Every half hour of a leap year, the summer time switches included:
        // the count of the fields is their clock reading as UTC, and the
        // breakdown without a zone gives the fields back.
        for (std::int64_t t = Utc(2024, 1, 1, 0, 0); t < Utc(2025, 1, 1, 0, 0); t += 1800) {
            std::tm utc;
            ASSERT_TRUE(systime_utc(t, &utc)) << t;
            ASSERT_EQ(0, utc.tm_sec);
            ASSERT_EQ(t, systime_fields_as_utc(utc)) << Text(utc);
            const std::tm fields =
                Fields(utc.tm_year + 1900, utc.tm_mon + 1, utc.tm_mday, utc.tm_hour, utc.tm_min);
            ASSERT_EQ(t, systime_fields_as_utc(fields)) << Text(fields);
        }
        // Far years, within the Windows runtime's range (up to 3000).
        for (const std::tm& f : {Fields(2038, 1, 19, 3, 14), Fields(2100, 2, 28, 23, 59),
                                 Fields(2999, 12, 31, 23, 0)}) {
            const std::int64_t t = systime_fields_as_utc(f);
            EXPECT_EQ(Utc(f.tm_year + 1900, f.tm_mon + 1, f.tm_mday, f.tm_hour, f.tm_min), t);
            std::tm back;
            ASSERT_TRUE(systime_utc(t, &back));
            EXPECT_EQ(Text(f), Text(back));
        }
        // Out-of-range fields carry; the caller's fields stay as they were,
        // the summer time flag included.
        std::tm carried = Fields(2023, 2, 31, 24, 0);
        carried.tm_isdst = 1;
        EXPECT_EQ(Utc(2023, 3, 4, 0, 0), systime_fields_as_utc(carried));
        EXPECT_EQ("2023-02-31 24:00:00", Text(carried));
        EXPECT_EQ(1, carried.tm_isdst);
    }
}

TEST_F(Systime, CountsBeforeNineteenSeventy) {
    std::tm out = Fields(1900, 1, 1, 0, 0);
    const std::string untouched = Text(out);
#if defined(_WIN32)
    // The runtime breaks down counts from 0 on only, and _mktime64 fails
    // (-1) for fields before the epoch; the zone offset is still taken off.
    SetZone("UTC0");
    EXPECT_FALSE(systime_utc(-1, &out));
    EXPECT_FALSE(systime_local(-1, &out));
    EXPECT_EQ(untouched, Text(out));
    ASSERT_TRUE(systime_utc(0, &out));
    EXPECT_EQ("1970-01-01 00:00:00", Text(out));
    EXPECT_EQ(-1, systime_fields_as_utc(Fields(1969, 12, 31, 23, 0)));
    SetZone("PST8PDT");
    EXPECT_EQ(-1 - 8 * 3600, systime_fields_as_utc(Fields(1969, 12, 31, 23, 0)));
#else
    // POSIX counts back as far as the fields go.
    for (const Zone& zone : kZones) {
        SetZone(zone.tz);
        for (std::int64_t t : {std::int64_t(-1800), Utc(1969, 7, 20, 20, 17), Utc(1, 1, 1, 0, 0)}) {
            ASSERT_TRUE(systime_utc(t, &out)) << zone.tz << " " << t;
            EXPECT_EQ(t, systime_fields_as_utc(out)) << zone.tz << " " << Text(out);
        }
        EXPECT_EQ(zone.standard_ahead, LocalAhead(Utc(1969, 1, 15, 12, 0))) << zone.tz;
    }
    (void)untouched;
#endif
}

TEST_F(Systime, NowBreaksDownInTheLocalZone) {
    SetZone("PST8PDT");
    const std::int64_t now = systime_now();
    EXPECT_GT(now, Utc(2024, 1, 1, 0, 0));
    std::tm local, utc;
    ASSERT_TRUE(systime_local(now, &local));
    ASSERT_TRUE(systime_utc(now, &utc));
    const std::int64_t ahead = systime_fields_as_utc(local) - systime_fields_as_utc(utc);
    EXPECT_TRUE(ahead == -8 * 3600 || ahead == -7 * 3600) << ahead;
}

} // namespace
