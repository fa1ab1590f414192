/// \file
/// A calendar date and time in five plain integers (year, month 1-12, day,
/// hour, minute; no seconds, no zone), with text forms, lenient range checks,
/// ordering and a zone-neutral count of seconds.
#ifndef WXSUPPORT_TEXT_JMSDATETIME_H
#define WXSUPPORT_TEXT_JMSDATETIME_H

#include <wxsupport/defs.h>

#include <wx/string.h>

#include <cstdint>

/// A date and time of five integers: year, month 1-12, day, hour, minute.
///
/// Checked operations keep month 1-12, day 1-31 (any month), hour 0-24 with
/// 24 allowed at minute 0 only, minute 0-59; the year is never checked. A false
/// result doesn't mean the value is unchanged: bad numbers are replaced by the
/// lowest valid one and the others stored.
class WXSUPPORT_API jmsDateTime {
public:
    /// The current local date and time (1900-01-01 00:00 if the clock can't be read).
    jmsDateTime();
    /// A copy of the five fields.
    jmsDateTime(const jmsDateTime& other) = default;
    /// Copies the five fields.
    jmsDateTime& operator=(const jmsDateTime& other);
    /// Copies; the source keeps its fields.
    jmsDateTime& operator=(jmsDateTime&& other);

    /// Sets all fields from the clock in local time, summer time applied.
    void Now();
    /// Sets all fields from a count of seconds read as UTC (no zone applied).
    /// Counts before 1970 work; a count whose year doesn't fit an int leaves
    /// the fields as they were.
    void LocalTime(std::int64_t t);
    /// The fields as a count of seconds counted as UTC, day and hour overflow
    /// carried (Feb 31 is Mar 2 or 3, 24:00 the next day's 00:00). Inverse of
    /// LocalTime in every zone. -1 when the fields name no representable time
    /// (never a real result: real results are whole minutes).
    std::int64_t MkTime();

    /// Reads "year-month-day" (scanf "%d-%d-%d"; leading blanks and signs
    /// allowed, text after the day ignored). With fewer than three numbers the
    /// ones read stay unchecked and the result is false; a number that doesn't
    /// fit an int ends the scan there. Otherwise the date check's result.
    bool ParseDate(wxString text);
    /// Reads "hour:minute" (scanf "%d:%d") as ParseDate does, with the time check.
    bool ParseTime(wxString text);
    /// "%02d-%02d-%02d" of year, month, day: 2024-03-07.
    wxString FormatDate();
    /// "%02d:%02d" of hour, minute: 08:05.
    wxString FormatTime();

    /// True when all five fields are equal.
    bool operator==(jmsDateTime other);
    /// True when any of the five fields differs.
    bool operator!=(jmsDateTime other);
    /// Orders by year, month, day, hour, minute (signed). There is no operator<.
    bool operator>(jmsDateTime other);

    /// Stores the year as given, a month outside 1-12 as 1 and a day outside
    /// 1-31 as 1; true when neither was replaced.
    bool SetDate(int year, int month, int day);
    /// Stores the time; an hour outside 0-24 becomes 0, a minute outside 0-59
    /// becomes 0, and so does the minute of an hour of 24 or more; true when
    /// nothing was replaced.
    bool SetTime(int hour, int minute);
    /// Stores the year without a check.
    void SetYear(int year);

    /// The year as stored, unchecked.
    int GetYear();
    /// 1 to 12, as SetDate takes it and FormatDate prints it.
    int GetMonth();
    /// 1 to 31 after a checked setter, whatever the month.
    int GetDay();
    /// 0 to 24 after a checked setter (24 only with minute 0).
    int GetHour();
    /// 0 to 59 after a checked setter.
    int GetMinute();

private:
    int year;
    int month;
    int day;
    int hour;
    int minute;
};

#endif // WXSUPPORT_TEXT_JMSDATETIME_H
