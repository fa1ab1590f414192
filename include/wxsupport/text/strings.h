/// \file
/// Small text and date helpers: the wide-to-narrow string bridge, path joining,
/// escaping, the copyright sign, and month numbers 1 to 12 against
/// wxDateTime::Month (which counts from 0).
#ifndef WXSUPPORT_TEXT_STRINGS_H
#define WXSUPPORT_TEXT_STRINGS_H

#include <wxsupport/defs.h>

#include <wx/datetime.h>
#include <wx/string.h>

/// Holds a UTF-8, zero-terminated copy of a wxString for narrow C interfaces,
/// whatever the locale. Each object owns its own copy; copies duplicate it.
class WXSUPPORT_API wxStoC {
public:
    /// Takes a UTF-8 copy of the text (see cstr for text without one).
    wxStoC(wxString text);
    /// A copy that holds its own duplicate of the other object's text.
    wxStoC(const wxStoC& other);
    ~wxStoC();

    /// Takes a fresh duplicate of the other object's text and releases the old one.
    wxStoC& operator=(const wxStoC& other);

    /// The UTF-8 text, valid while the object lives; null when the string has no
    /// UTF-8 form (a code point beyond U+10FFFF), without an assertion.
    const char* cstr();

private:
    char* m_text;
};

/// directory + "\" + name; no separator when the directory is empty or already
/// ends in a backslash (a trailing "/" is not taken for a separator).
WXSUPPORT_API wxString wx_concat_path(const wxString& directory, const wxString& name);

/// Doubles every escape character, then puts one in front of each occurrence of
/// every character of the list, taken in list order.
WXSUPPORT_API wxString wx_escape_string(const wxString& text, wchar_t escape,
                                        const wxString& characters);

/// Undoes wx_escape_string: pairs of escape characters become one, then an escape
/// character followed by a listed character becomes that character. Any other
/// escape character stays.
WXSUPPORT_API wxString wx_unescape_string(const wxString& text, wchar_t escape,
                                          const wxString& characters);

/// Every "(C)" (upper case only) replaced by the copyright sign U+00A9.
WXSUPPORT_API wxString wx_replace_copyright(const wxString& text);

/// Month of the date in local time, 1 (January) to 12 (December).
WXSUPPORT_API int wx_get_month_number(const wxDateTime& date);

/// Sets the month from a number 1 to 12 (the result of SetMonth isn't passed
/// on); any other number goes in as Inv_Month, which wxDateTime refuses with an
/// assertion.
WXSUPPORT_API void wx_set_month_number(wxDateTime& date, int month);

/// Whether year, month and day form a real Gregorian calendar date; false for
/// wxDateTime::Inv_Year, a month outside Jan..Dec, or a day outside the month.
WXSUPPORT_API bool pd_validate_wx_date(int year, wxDateTime::Month month, int day);

#endif // WXSUPPORT_TEXT_STRINGS_H
