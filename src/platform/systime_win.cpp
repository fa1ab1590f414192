// Clock and calendar with the Windows runtime's 64-bit time functions. The
// runtime breaks down counts from 0 on only. The conversion from fields goes
// through _mktime64, which counts them as local standard time; taking the
// zone offset off again leaves their clock reading counted as UTC.
#include "platform/systime.h"

#include <time.h>

std::int64_t systime_now() {
    return static_cast<std::int64_t>(_time64(nullptr));
}

bool systime_local(std::int64_t t, std::tm* out) {
    const __time64_t tt = static_cast<__time64_t>(t);
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
    const std::int64_t west = static_cast<std::int64_t>(static_cast<std::int32_t>(*__timezone()));
    return static_cast<std::int64_t>(r) - west;
}
