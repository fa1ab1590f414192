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

// The code units of a C string that is well-formed UTF-8 (RFC 3629: shortest
// forms, no surrogates, nothing above U+10FFFF), zero-terminated, in a stack
// buffer for short texts; nothing when the bytes are anything else. A C
// string holds no NUL, so neither do the units: wxString(units()) is the
// whole text, and the cheapest way to a wxString that wxWidgets 3.2 offers
// (its other constructors go through assign).
class wxsUtf8Units {
public:
    explicit wxsUtf8Units(const char* text) : m_units(m_stack), m_count(0), m_ok(false) {
        const unsigned char* p = reinterpret_cast<const unsigned char*>(text);
        const size_t n = strlen(text);
        if (n >= kStackUnits) {
            m_units = static_cast<wchar_t*>(malloc((n + 1) * sizeof(wchar_t)));
            if (!m_units)
                return;
        }
        // ASCII, eight bytes a step, each byte a unit as it stands; Decode
        // goes on where a byte with its high bit set stops this.
        size_t i = 0;
        for (; n - i >= 8; i += 8) {
            wxUint64 word;
            memcpy(&word, p + i, 8);
            if (word & wxULL(0x8080808080808080))
                break;
            for (size_t k = 0; k < 8; ++k)
                m_units[i + k] = static_cast<wchar_t>(p[i + k]);
        }
        m_ok = Decode(p, n, i);
    }
    ~wxsUtf8Units() {
        if (m_units != m_stack)
            free(m_units);
    }
    wxsUtf8Units(const wxsUtf8Units&) = delete;
    wxsUtf8Units& operator=(const wxsUtf8Units&) = delete;

    // Whether the text was well-formed; units() and length() mean nothing
    // otherwise.
    bool ok() const { return m_ok; }
    const wchar_t* units() const { return m_units; }
    size_t length() const { return m_count; }

private:
    static const size_t kStackUnits = 256;

    // Decodes bytes i.. of the n at p, the first i being ASCII and already
    // units; terminates the units and gives true when all is well-formed.
    bool Decode(const unsigned char* p, size_t n, size_t i) {
        size_t count = i;
        while (i < n) {
            const unsigned c = p[i];
            if (c < 0x80) {
                m_units[count++] = static_cast<wchar_t>(c);
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
            } else
                return false;
            if (n - i < length || p[i + 1] < low || p[i + 1] > high)
                return false;
            wxUint32 value = c & (0x7F >> length);
            for (size_t k = 1; k < length; ++k) {
                const unsigned b = p[i + k];
                if ((b & 0xC0) != 0x80)
                    return false;
                value = (value << 6) | (b & 0x3F);
            }
            if (sizeof(wchar_t) == 2 && value > 0xFFFF) { // UTF-16: a surrogate pair
                value -= 0x10000;
                m_units[count++] = static_cast<wchar_t>(0xD800 | (value >> 10));
                m_units[count++] = static_cast<wchar_t>(0xDC00 | (value & 0x3FF));
            } else
                m_units[count++] = static_cast<wchar_t>(value);
            i += length;
        }
        m_units[count] = L'\0';
        m_count = count;
        return true;
    }

    wchar_t m_stack[kStackUnits];
    wchar_t* m_units;
    size_t m_count;
    bool m_ok;
};

// Decodes the C string text into out when it is well-formed UTF-8 and gives
// true; gives false, out untouched, for anything else.
inline bool wxs_decode_utf8(const char* text, wxString& out) {
    const wxsUtf8Units decoded(text);
    if (decoded.ok())
        out.assign(decoded.units(), decoded.length());
    return decoded.ok();
}

#endif // WXSUPPORT_SRC_COMMON_UTF8_H
