// The INI parser. Opening scans a file for its section headers only (each
// block body becomes one kBody record); a section's bodies are parsed when
// its keys are first needed (loadKeys) and when its lines first change
// (expandLines). Only header lines and NUL bytes can make a file invalid,
// so the scan finds every error.
#pragma once

#include "store.h"

#include <string>

namespace vesk {

struct ParseError {
    size_t line = 0; // 1-based; 0 when no line applies
    std::string message;
};

// Scans the bytes in c.file into c's sections and line list, with the
// rule. False on a NUL byte or a '[' line without ']'; c is then to be
// dropped.
bool scanFile(Contents& c, const NameRule& rule, ParseError& err);

} // namespace vesk
