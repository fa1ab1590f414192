/// \file
/// pdTextCtrl: a text field for whole numbers, floating-point numbers, times or
/// dates that turns yellow on bad input.
#ifndef WXSUPPORT_CONTROLS_PDTEXTCTRL_H
#define WXSUPPORT_CONTROLS_PDTEXTCTRL_H

#include <wxsupport/defs.h>

#include <wx/colour.h>
#include <wx/datetime.h>
#include <wx/event.h>
#include <wx/string.h>
#include <wx/textctrl.h>

/// Kind of value a pdTextCtrl holds; fixed at construction.
enum pdTextCtrlType {
    pdTEXT_PLAIN = 0,  ///< no test at all (as is any value other than 1 to 4)
    pdTEXT_LONG = 1,   ///< whole number in base 10, within the range if one is set
    pdTEXT_DOUBLE = 2, ///< floating-point number (current locale), within the range if set
    pdTEXT_TIME = 3,   ///< hour:minute, 0:00 to 23:59, or 24:00
    pdTEXT_DATE = 4,   ///< year-month-day, a real date up to the year 1000000; month from 1
};

/// Typed text entry: a wxTextCtrl that knows whether its text is to be a whole
/// number, a floating-point number, a time of day or a date, tests each edit and
/// turns yellow while the text is bad. Hosts read IsValid before the typed
/// getters, and IsAltered to learn whether the user changed the last value set.
/// "####" (SetNoValue) marks a field with nothing to show. Focus changes are
/// passed on to the parents as wxEVT_COMMAND_SET_FOCUS / wxEVT_COMMAND_KILL_FOCUS
/// with the control's id.
class WXSUPPORT_API pdTextCtrl : public wxTextCtrl {
public:
    /// The initial value is not tested: the control starts valid, on the
    /// system's background.
    pdTextCtrl(wxWindow* parent, int id, const wxString& value = wxEmptyString,
               const wxPoint& pos = wxDefaultPosition, const wxSize& size = wxDefaultSize,
               pdTextCtrlType type = pdTEXT_PLAIN, long style = 0,
               const wxValidator& validator = wxDefaultValidator,
               const wxString& name = wxTextCtrlNameStr);
    virtual ~pdTextCtrl();

    /// Focus gained: sends wxEVT_COMMAND_SET_FOCUS with the control's id up to
    /// the parents; the focus event goes on.
    void OnSetFocus(wxFocusEvent& event);
    /// Focus lost: sends wxEVT_COMMAND_KILL_FOCUS with the control's id up to
    /// the parents; the focus event goes on.
    void OnKillFocus(wxFocusEvent& event);
    /// Tests the text by kind; white on a change to valid, yellow on a change to
    /// invalid. Always skipped on to the host's handlers.
    void OnText(wxCommandEvent& event);

    /// The flag left by the last test or setter; tests nothing itself.
    bool IsValid();
    /// Whether the text differs (case-sensitively, as text) from the last one set.
    bool IsAltered();
    /// The text as it stands, good or bad.
    wxString GetText();
    /// Remembers the text as the saved one and shows it; the flag follows the test.
    void SetText(wxString text);
    /// Shows "####" and leaves the control invalid.
    void SetNoValue();
    /// Inclusive bounds for pdTEXT_LONG and pdTEXT_DOUBLE, applied from the next
    /// edit on; cannot be removed again.
    void SetRange(double min, double max);

    /// pdTEXT_TIME: today at the typed hour and minute (24:00 is tomorrow at
    /// 0:00), or the present moment if the text is bad. Other kinds: the typed
    /// date at midnight, or wxDefaultDateTime if the text is bad.
    wxDateTime GetDateTime();
    /// Writes "%Y-%m-%d" for pdTEXT_DATE, "%H:%M" for every other kind (local time);
    /// valid afterwards. The value must be valid.
    void SetDateTime(wxDateTime value);
    /// Writes "%04d-%02d-%02d" (month from 1); valid if it is a real date.
    void SetDate(int year, int month, int day);
    /// Writes "%02d:%02d"; valid if 0:00 to 23:59 or 24:00.
    void SetTime(int hour, int minute);
    /// The text read as a number (current locale), whatever the kind; for bad
    /// text, what wxString::ToDouble left: the number it begins with, or 0.0.
    double GetDouble();
    /// Writes "%g" (six significant digits); valid afterwards.
    void SetDouble(double value);
    /// The text read in base 10, whatever the kind; for bad text, what
    /// wxString::ToLong left: the number it begins with, or 0.
    long GetLong();
    /// Writes "%ld"; valid afterwards.
    void SetLong(long value);

private:
    bool ParseDate(wxString text, wxDateTime& date);
    bool ParseTime(wxString text, wxDateTime& time);

    wxColour m_colourValid;
    wxColour m_colourInvalid;
    pdTextCtrlType m_type;
    bool m_valid;
    wxString m_savedText;
    bool m_hasRange;
    double m_min;
    double m_max;
};

#endif // WXSUPPORT_CONTROLS_PDTEXTCTRL_H
