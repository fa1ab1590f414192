// Clock and calendar with the Windows runtime's 64-bit time functions, which
// link on both runtimes, the older MSVCRT and the current UCRT. The runtime
// breaks down counts from 0 on only. The conversion from fields goes through
// _mktime64, which counts them as local standard time; taking the zone offset
// off again leaves their clock reading counted as UTC.
//
// The zone comes from TZ in the runtime's form, tzn[+|-]hh[:mm[:ss]][dzn] with
// names of exactly three letters (a longer name is misread), or else from the
// system's settings; _tzset reads it again before each use, so a zone changed
// with _putenv counts from the next call.
#include "platform/systime.h"

#include <time.h>

namespace {

// Seconds the zone lies west of UTC. MSVC's runtime offers _get_timezone (its
// _timezone is deprecated); MinGW's MSVCRT import library lacks that function,
// and its _timezone is the runtime's variable there and (*__timezone()) on UCRT.
long ZoneWest() {
#if defined(_MSC_VER)
    long west = 0;
    _get_timezone(&west);
    return west;
#else
    return _timezone;
#endif
}

} // namespace

std::int64_t systime_now() {
    return static_cast<std::int64_t>(_time64(nullptr));
}

bool systime_local(std::int64_t t, std::tm* out) {
    const __time64_t tt = static_cast<__time64_t>(t);
    _tzset();
    const std::tm* tm = _localtime64(&tt);
    if (!tm)
        return false;
    *out = *tm;
    return true;
}

bool systime_utc(std::int64_t t, std::tm* out) {
    const __time64_t tt = static_cast<__time64_t>(t);
    const std::tm* tm = _gmtime64(&tt);
    if (!tm)
        return false;
    *out = *tm;
    return true;
}

std::int64_t systime_fields_as_utc(const std::tm& fields) {
    std::tm tm = fields; // _mktime64 normalises its argument; the copy is dropped
    tm.tm_isdst = 0;
    _tzset();
    const __time64_t r = _mktime64(&tm);
    const std::int64_t west = static_cast<std::int64_t>(static_cast<std::int32_t>(ZoneWest()));
    return static_cast<std::int64_t>(r) - west;
}
