// Decoding of well-formed UTF-8 into wxString without a converter object.
//
// Bytes that are well-formed UTF-8 have one decoding, which every correct
// converter gives (wxConvUTF8, a wxCSConv for "utf-8"): this one does it in
// one pass, without iconv, locks or a length pass. Callers give anything
// that is not well-formed to their converter, which decides as before.
#ifndef WXSUPPORT_SRC_COMMON_UTF8_H
#define WXSUPPORT_SRC_COMMON_UTF8_H

#include <wx/string.h>

#include <stdlib.h>
#include <string.h>

// Decodes the C string text into out when it is well-formed UTF-8 (RFC 3629:
// shortest forms, no surrogates, nothing above U+10FFFF) and gives true;
// gives false, out untouched, for anything else.
inline bool wxs_decode_utf8(const char* text, wxString& out) {
    const unsigned char* p = reinterpret_cast<const unsigned char*>(text);
    const size_t n = strlen(text);
    const size_t kStackUnits = 256;
    wchar_t stackUnits[kStackUnits];
    wchar_t* units = stackUnits;
    if (n > kStackUnits) {
        units = static_cast<wchar_t*>(malloc(n * sizeof(wchar_t)));
        if (!units)
            return false;
    }
    size_t count = 0;
    bool wellFormed = true;
    for (size_t i = 0; i < n;) {
        const unsigned c = p[i];
        if (c < 0x80) {
            units[count++] = static_cast<wchar_t>(c);
            ++i;
            continue;
        }
        // The lead byte tells the length and the range of the second byte.
        size_t length;
        unsigned low = 0x80, high = 0xBF;
        if (c >= 0xC2 && c <= 0xDF)
            length = 2;
        else if (c >= 0xE0 && c <= 0xEF) {
            length = 3;
            if (c == 0xE0)
                low = 0xA0;
            else if (c == 0xED)
                high = 0x9F;
        } else if (c >= 0xF0 && c <= 0xF4) {
            length = 4;
            if (c == 0xF0)
                low = 0x90;
            else if (c == 0xF4)
                high = 0x8F;
        } else {
            wellFormed = false;
            break;
        }
        if (n - i < length || p[i + 1] < low || p[i + 1] > high) {
            wellFormed = false;
            break;
        }
        wxUint32 value = c & (0x7F >> length);
        for (size_t k = 1; k < length; ++k) {
            const unsigned b = p[i + k];
            if ((b & 0xC0) != 0x80) {
                wellFormed = false;
                break;
            }
            value = (value << 6) | (b & 0x3F);
        }
        if (!wellFormed)
            break;
        if (sizeof(wchar_t) == 2 && value > 0xFFFF) { // UTF-16: a surrogate pair
            value -= 0x10000;
            units[count++] = static_cast<wchar_t>(0xD800 | (value >> 10));
            units[count++] = static_cast<wchar_t>(0xDC00 | (value & 0x3FF));
        } else
            units[count++] = static_cast<wchar_t>(value);
        i += length;
    }
    if (wellFormed)
        out.assign(units, count);
    if (units != stackUnits)
        free(units);
    return wellFormed;
}

#endif // WXSUPPORT_SRC_COMMON_UTF8_H
