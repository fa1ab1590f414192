// Line syntax of INI files: blanks, quoting of names and values, and the
// parts of header and key lines. Quoted text stands in double quotes with the
// escapes \\ \" \n \r \t; any other backslash stands for itself. The store
// quotes only where the plain form wouldn't read back the same.
#pragma once

#include "memory.h"

#include <cstring>
#include <string_view>
#ifdef __SSE2__
#include <emmintrin.h>
#endif

namespace vesk {

using std::size_t;
using std::string_view;

inline bool isBlank(char c) {
    return c == ' ' || c == '\t';
}

// s without blanks at either end.
inline string_view trim(string_view s) {
    size_t b = 0, e = s.size();
    while (b < e && isBlank(s[b]))
        ++b;
    while (e > b && isBlank(s[e - 1]))
        --e;
    return s.substr(b, e - b);
}

// The next '\n' at or after p, or end. Inline: lines are short, and a call
// per line costs more than the search.
inline const char* findNewline(const char* p, const char* end) {
#ifdef __SSE2__
    const __m128i nl = _mm_set1_epi8('\n');
    while (end - p >= 16) {
        __m128i v = _mm_loadu_si128(reinterpret_cast<const __m128i*>(p));
        int m = _mm_movemask_epi8(_mm_cmpeq_epi8(v, nl));
        if (m)
            return p + __builtin_ctz(static_cast<unsigned>(m));
        p += 16;
    }
#endif
    while (p < end && *p != '\n')
        ++p;
    return p;
}

// Decodes the text between the quotes.
String unescape(string_view quotedBody);
// The position of the closing quote of a text that starts with '"', or npos.
size_t closingQuote(string_view s);

// Whether a line (its text without line end) is a comment or blank.
inline bool isTriviaLine(string_view line) {
    string_view t = trim(line);
    return t.empty() || t.front() == ';' || t.front() == '#';
}

// The section name of a header line (its first non-blank character is '[').
// False when the line has no closing ']'. Quoted names are decoded into
// `decoded` and `name` points there.
bool headerName(string_view line, string_view& name, String& decoded, bool& quoted);

// "[name]", quoted where needed.
String headerLine(string_view name);
// "key=value", each quoted where needed.
String keyLine(string_view key, string_view value);

// The parts of a key line (its first non-blank character is neither ';',
// '#' nor '['), as positions within the line.
struct KeyLineParts {
    size_t keyBeg, keyEnd; // raw key text, quotes included
    bool quotedKey;
    bool hasEq;
    size_t valBeg, valEnd; // raw value text
};
KeyLineParts splitKeyLine(string_view line);

// The key name and value of a key line; quoted ones are decoded into the
// strings given, and the views point there.
void keyLineText(string_view line, const KeyLineParts& parts, string_view& key, String& keyBuf,
                 bool& keyDecoded, string_view& value, String& valueBuf, bool& valueDecoded);

// A key line with a new value: the key keeps its spelling and the spacing
// around '=' stays, unless the key, read as plain text, needs quotes now.
String rewriteKeyLine(string_view line, string_view key, string_view value);

} // namespace vesk
