// Clock and calendar on POSIX: time, localtime_r, gmtime_r and timegm, all of
// which handle counts before 1970 and years far from ours.
#include "platform/systime.h"

#include <cerrno>
#include <limits>

namespace {

// time_t is 64 bits on the systems we build for; elsewhere a count outside
// its range is refused rather than truncated.
bool ToTimeT(std::int64_t t, time_t* out) {
    if (t < static_cast<std::int64_t>(std::numeric_limits<time_t>::min()) ||
        t > static_cast<std::int64_t>(std::numeric_limits<time_t>::max()))
        return false;
    *out = static_cast<time_t>(t);
    return true;
}

} // namespace

std::int64_t systime_now() {
    return static_cast<std::int64_t>(time(nullptr));
}

bool systime_local(std::int64_t t, std::tm* out) {
    time_t tt;
    std::tm tm;
    // localtime_r, unlike localtime, needn't look at TZ again; a zone changed
    // since the last call is taken into account as localtime would.
    tzset();
    if (!ToTimeT(t, &tt) || !localtime_r(&tt, &tm))
        return false;
    *out = tm;
    return true;
}

bool systime_utc(std::int64_t t, std::tm* out) {
    time_t tt;
    std::tm tm;
    if (!ToTimeT(t, &tt) || !gmtime_r(&tt, &tm))
        return false;
    *out = tm;
    return true;
}

std::int64_t systime_fields_as_utc(const std::tm& fields) {
    std::tm tm = fields; // timegm normalises its argument; the caller's stays
    tm.tm_isdst = 0;
    // timegm's failure value -1 can't be told from 1969-12-31 23:59:59 by the
    // value alone; errno can.
    errno = 0;
    const time_t r = timegm(&tm);
    if (r == static_cast<time_t>(-1) && errno != 0)
        return -1;
    return static_cast<std::int64_t>(r);
}
