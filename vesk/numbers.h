// Numbers in INI values, read and written in the "C" locale whatever the
// process's locale.
#pragma once

#include <string_view>

namespace vesk {

// Blanks around, an optional sign, decimal digits, within the range of long.
bool parseLong(std::string_view text, long& out);
// Blanks around, an optional sign, a decimal number with optional exponent,
// or inf, infinity, nan (any case); within the range of double.
bool parseDouble(std::string_view text, double& out);
// The decimal form, terminated; buf holds at least 32 bytes.
void formatLong(long value, char* buf);
// The shortest form that reads back to the same double, terminated; buf
// holds at least 64 bytes.
void formatDouble(double value, char* buf);

} // namespace vesk
