// Five-integer date and time value. Clock and calendar come from the platform
// layer (platform/systime.h); checks, parsing and printing are done here.
#include <wxsupport/text/jmsdatetime.h>

#include "platform/systime.h"

#include <cctype>
#include <climits>
#include <cstdint>

namespace {

// Reads up to `count` decimal numbers separated by `separator` from `text`, as
// sscanf with "%d<sep>%d..." does: blanks before each number are skipped, a
// sign is allowed, the separator must follow the previous number at once, and
// each number is stored as soon as it is read. A number that doesn't fit an
// int counts as no number (sscanf's behaviour there is undefined): it isn't
// stored and the scan ends. Gives the count of numbers stored.
int ScanNumbers(const char* text, char separator, int* const* fields, int count) {
    const char* p = text;
    int stored = 0;
    while (stored < count) {
        if (stored > 0) {
            if (*p != separator)
                break;
            ++p;
        }
        while (*p != '\0' && std::isspace(static_cast<unsigned char>(*p)))
            ++p;
        bool negative = false;
        if (*p == '+' || *p == '-') {
            negative = *p == '-';
            ++p;
        }
        if (!std::isdigit(static_cast<unsigned char>(*p)))
            break;
        // Magnitude up to 2^31 (INT_MIN's); one more digit marks an overflow.
        const std::int64_t limit = negative ? -static_cast<std::int64_t>(INT_MIN) : INT_MAX;
        std::int64_t value = 0;
        bool fits = true;
        for (; std::isdigit(static_cast<unsigned char>(*p)); ++p) {
            if (fits) {
                value = value * 10 + (*p - '0');
                if (value > limit)
                    fits = false;
            }
        }
        if (!fits)
            break;
        *fields[stored] = static_cast<int>(negative ? -value : value);
        ++stored;
    }
    return stored;
}

bool FitsInt(std::int64_t v) {
    return v >= INT_MIN && v <= INT_MAX;
}

} // namespace

jmsDateTime::jmsDateTime() : year(1900), month(1), day(1), hour(0), minute(0) {
    Now();
}

jmsDateTime& jmsDateTime::operator=(const jmsDateTime& other) {
    year = other.year;
    month = other.month;
    day = other.day;
    hour = other.hour;
    minute = other.minute;
    return *this;
}

jmsDateTime& jmsDateTime::operator=(jmsDateTime&& other) {
    return *this = static_cast<const jmsDateTime&>(other);
}

namespace {

// Fields from a breakdown; false when the year doesn't fit an int.
bool FromBreakdown(const std::tm& tm, int* y, int* mo, int* d, int* h, int* mi) {
    const std::int64_t full_year = static_cast<std::int64_t>(tm.tm_year) + 1900;
    if (!FitsInt(full_year))
        return false;
    *y = static_cast<int>(full_year);
    *mo = tm.tm_mon + 1;
    *d = tm.tm_mday;
    *h = tm.tm_hour;
    *mi = tm.tm_min;
    return true;
}

} // namespace

void jmsDateTime::Now() {
    std::tm tm;
    if (systime_local(systime_now(), &tm))
        FromBreakdown(tm, &year, &month, &day, &hour, &minute);
}

void jmsDateTime::LocalTime(std::int64_t t) {
    std::tm tm;
    if (systime_utc(t, &tm))
        FromBreakdown(tm, &year, &month, &day, &hour, &minute);
}

std::int64_t jmsDateTime::MkTime() {
    const std::int64_t tm_year = static_cast<std::int64_t>(year) - 1900;
    const std::int64_t tm_mon = static_cast<std::int64_t>(month) - 1;
    if (!FitsInt(tm_year) || !FitsInt(tm_mon))
        return -1;
    std::tm tm = {};
    tm.tm_sec = 0;
    tm.tm_min = minute;
    tm.tm_hour = hour;
    tm.tm_mday = day;
    tm.tm_mon = static_cast<int>(tm_mon);
    tm.tm_year = static_cast<int>(tm_year);
    tm.tm_isdst = 0;
    return systime_fields_as_utc(tm);
}

bool jmsDateTime::ParseDate(wxString text) {
    const wxCharBuffer narrow = text.mb_str(wxConvLibc);
    int* const fields[] = {&year, &month, &day};
    if (!narrow.data() || ScanNumbers(narrow.data(), '-', fields, 3) < 3)
        return false;
    return SetDate(year, month, day);
}

bool jmsDateTime::ParseTime(wxString text) {
    const wxCharBuffer narrow = text.mb_str(wxConvLibc);
    int* const fields[] = {&hour, &minute};
    if (!narrow.data() || ScanNumbers(narrow.data(), ':', fields, 2) < 2)
        return false;
    return SetTime(hour, minute);
}

wxString jmsDateTime::FormatDate() {
    wxString s;
    s.Printf(wxT("%02d-%02d-%02d"), year, month, day);
    return s;
}

wxString jmsDateTime::FormatTime() {
    wxString s;
    s.Printf(wxT("%02d:%02d"), hour, minute);
    return s;
}

bool jmsDateTime::operator==(jmsDateTime other) {
    return year == other.year && month == other.month && day == other.day && hour == other.hour &&
           minute == other.minute;
}

bool jmsDateTime::operator!=(jmsDateTime other) {
    return !(*this == other);
}

bool jmsDateTime::operator>(jmsDateTime other) {
    if (year != other.year)
        return year > other.year;
    if (month != other.month)
        return month > other.month;
    if (day != other.day)
        return day > other.day;
    if (hour != other.hour)
        return hour > other.hour;
    return minute > other.minute;
}

bool jmsDateTime::SetDate(int y, int m, int d) {
    bool ok = true;
    year = y;
    if (m < 1 || m > 12) {
        m = 1;
        ok = false;
    }
    if (d < 1 || d > 31) {
        d = 1;
        ok = false;
    }
    month = m;
    day = d;
    return ok;
}

bool jmsDateTime::SetTime(int h, int m) {
    bool ok = true;
    const int hour_in = h;
    const int minute_in = m;
    if (h < 0 || h > 24) {
        h = 0;
        ok = false;
    }
    if (m < 0 || m > 59) {
        m = 0;
        ok = false;
    }
    if (hour_in >= 24 && minute_in > 0) {
        m = 0;
        ok = false;
    }
    hour = h;
    minute = m;
    return ok;
}

void jmsDateTime::SetYear(int y) {
    year = y;
}

int jmsDateTime::GetYear() {
    return year;
}

int jmsDateTime::GetMonth() {
    return month;
}

int jmsDateTime::GetDay() {
    return day;
}

int jmsDateTime::GetHour() {
    return hour;
}

int jmsDateTime::GetMinute() {
    return minute;
}
