#include "numbers.h"

#include "syntax.h"

#include <charconv>
#include <limits>

namespace vesk {

bool parseLong(std::string_view s, long& out) {
    s = trim(s);
    size_t i = 0;
    bool neg = false;
    if (i < s.size() && (s[i] == '+' || s[i] == '-')) {
        neg = s[i] == '-';
        ++i;
    }
    if (i == s.size())
        return false;
    unsigned long limit = neg ? static_cast<unsigned long>(std::numeric_limits<long>::max()) + 1
                              : static_cast<unsigned long>(std::numeric_limits<long>::max());
    unsigned long v = 0;
    for (; i < s.size(); ++i) {
        char c = s[i];
        if (c < '0' || c > '9')
            return false;
        unsigned digit = static_cast<unsigned>(c - '0');
        if (v > (limit - digit) / 10)
            return false;
        v = v * 10 + digit;
    }
    out = neg ? static_cast<long>(0UL - v) : static_cast<long>(v);
    return true;
}

bool parseDouble(std::string_view s, double& out) {
    s = trim(s);
    if (s.empty())
        return false;
    bool neg = false;
    if (s.front() == '+' || s.front() == '-') {
        neg = s.front() == '-';
        s.remove_prefix(1);
        if (s.empty() || s.front() == '+' || s.front() == '-')
            return false;
    }
    double v = 0;
    auto r = std::from_chars(s.data(), s.data() + s.size(), v);
    if (r.ec != std::errc() || r.ptr != s.data() + s.size())
        return false;
    out = neg ? -v : v;
    return true;
}

void formatLong(long value, char* buf) {
    *std::to_chars(buf, buf + 31, value).ptr = '\0';
}

void formatDouble(double value, char* buf) {
    *std::to_chars(buf, buf + 63, value).ptr = '\0';
}

} // namespace vesk
