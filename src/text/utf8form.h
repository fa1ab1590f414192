// Whether a wxString has a UTF-8 form. wxString can hold code points beyond
// U+10FFFF (wxString::FromUTF8 accepts four-byte sequences up to F7 BF BF BF),
// and wxWidgets' converters refuse those with an assertion of their own. The
// library tests text first wherever it hands UTF-8 on, and takes its
// documented fallback for text without such a form.
#ifndef WXSUPPORT_SRC_TEXT_UTF8FORM_H
#define WXSUPPORT_SRC_TEXT_UTF8FORM_H

#include <wx/string.h>

inline bool wxs_has_utf8_form(const wxString& text) {
    for (wxString::const_iterator it = text.begin(); it != text.end(); ++it)
        if (static_cast<wxUint32>((*it).GetValue()) > 0x10FFFF)
            return false;
    return true;
}

#endif // WXSUPPORT_SRC_TEXT_UTF8FORM_H
