// The runtime library's clock and calendar functions behind four operations,
// private to the library. Counts are seconds since 1970-01-01 00:00 UTC; the
// broken-down form is the C library's struct tm (tm_year from 1900, tm_mon
// from 0). POSIX: systime_posix.cpp; Windows: systime_win.cpp.
#ifndef WXSUPPORT_PLATFORM_SYSTIME_H
#define WXSUPPORT_PLATFORM_SYSTIME_H

#include <cstdint>
#include <ctime>

// The current time.
std::int64_t systime_now();

// Breaks a count down in the local zone with summer time applied; false (and
// *out untouched) when the runtime can't.
bool systime_local(std::int64_t t, std::tm* out);

// Breaks a count down without any zone; false (and *out untouched) when the
// runtime can't. POSIX takes counts before 1970; the Windows runtime doesn't
// (nor years after 3000).
bool systime_utc(std::int64_t t, std::tm* out);

// The clock reading of the fields counted as UTC (tm_sec, tm_min, tm_hour,
// tm_mday, tm_mon, tm_year; tm_isdst is ignored), out-of-range fields carried
// into the next larger one. POSIX gives -1 for a time it can't represent; the
// Windows runtime gives its own failure value less the zone offset.
std::int64_t systime_fields_as_utc(const std::tm& fields);

#endif // WXSUPPORT_PLATFORM_SYSTIME_H
