// String bridge and the stateless text and month helpers.
#include <wxsupport/config/inifile.h>
#include <wxsupport/text/strings.h>

#include "text/utf8form.h"

#include <cstdlib>

namespace {

// A UTF-8 duplicate from the store's allocator, or null when the text has no
// UTF-8 form: a code point beyond U+10FFFF makes the converter give an empty
// buffer (after an assertion of its own) for a text that isn't empty.
char* DuplicateUtf8(const wxString& text) {
    if (!wxs_has_utf8_form(text))
        return nullptr;
    const wxScopedCharBuffer utf8 = text.utf8_str();
    if (!utf8.data() || (utf8.length() == 0 && !text.empty()))
        return nullptr;
    return pd_strdup(utf8.data());
}

} // namespace

wxStoC::wxStoC(wxString text) : m_text(DuplicateUtf8(text)) {}

wxStoC::wxStoC(const wxStoC& other) : m_text(pd_strdup(other.m_text)) {}

wxStoC::~wxStoC() {
    if (m_text)
        free(m_text);
}

wxStoC& wxStoC::operator=(const wxStoC& other) {
    if (this != &other) {
        char* copy = pd_strdup(other.m_text);
        if (m_text)
            free(m_text);
        m_text = copy;
    }
    return *this;
}

const char* wxStoC::cstr() {
    return m_text;
}

wxString wx_concat_path(const wxString& directory, const wxString& name) {
    if (directory.empty() || directory.Last() == wxT('\\'))
        return directory + name;
    return directory + wxT('\\') + name;
}

wxString wx_escape_string(const wxString& text, wchar_t escape, const wxString& characters) {
    const wxString esc(escape);
    wxString result(text);
    result.Replace(esc, esc + esc, true);
    for (wxString::const_iterator it = characters.begin(); it != characters.end(); ++it) {
        const wxString c(*it);
        result.Replace(c, esc + c, true);
    }
    return result;
}

wxString wx_unescape_string(const wxString& text, wchar_t escape, const wxString& characters) {
    const wxString esc(escape);
    wxString result(text);
    result.Replace(esc + esc, esc, true);
    for (wxString::const_iterator it = characters.begin(); it != characters.end(); ++it) {
        const wxString c(*it);
        result.Replace(esc + c, c, true);
    }
    return result;
}

wxString wx_replace_copyright(const wxString& text) {
    wxString result(text);
    result.Replace(wxT("(C)"), wxString::FromUTF8("\xC2\xA9"), true);
    return result;
}

int wx_get_month_number(const wxDateTime& date) {
    return static_cast<int>(date.GetMonth(wxDateTime::Local)) + 1;
}

void wx_set_month_number(wxDateTime& date, int month) {
    // Only Jan..Dec are values of the enumeration; anything else goes in as
    // Inv_Month, which wxDateTime rejects with its own assertion.
    const wxDateTime::Month m = (month >= 1 && month <= 12)
                                    ? static_cast<wxDateTime::Month>(month - 1)
                                    : wxDateTime::Inv_Month;
    date.SetMonth(m);
}

bool pd_validate_wx_date(int year, wxDateTime::Month month, int day) {
    if (year == wxDateTime::Inv_Year)
        return false;
    const int m = static_cast<int>(month);
    if (m < wxDateTime::Jan || m > wxDateTime::Dec)
        return false;
    if (day < 1)
        return false;
    return day <= static_cast<int>(wxDateTime::GetNumberOfDays(month, year, wxDateTime::Gregorian));
}
