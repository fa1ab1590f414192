#include <wxsupport/controls/pdtextctrl.h>

#include <wxsupport/text/strings.h>

#include <wx/gdicmn.h>

namespace {

// Years that wxDateTime computes with in full. It numbers days from the first
// Julian day (late in 4714 BC, year -4713) and stores milliseconds in 64 bits,
// but its day arithmetic runs in `long`, which overflows beyond about 1.46
// million years where `long` has 32 bits. The bounds keep every platform safe;
// a year typed outside them makes the text invalid, never an assertion.
constexpr long kFirstYear = -4712;
constexpr long kLastYear = 1000000;

// hour:minute that the time kind accepts: 0:00 to 23:59, and 24:00.
bool IsLegalTime(long hour, long minute) {
    if (hour == 24)
        return minute == 0;
    return hour >= 0 && hour <= 23 && minute >= 0 && minute <= 59;
}

// Screens the typed numbers before they are narrowed and handed to
// wxDateTime::Set, which asserts on a day outside the month and silently
// takes month 13 (its Inv_Month) for the current month.
bool IsSettableDate(long year, long month, long day) {
    if (year < kFirstYear || year > kLastYear)
        return false;
    if (month < 1 || month > 12 || day < 1 || day > 31)
        return false;
    return pd_validate_wx_date(static_cast<int>(year), static_cast<wxDateTime::Month>(month - 1),
                               static_cast<int>(day));
}

} // namespace

pdTextCtrl::pdTextCtrl(wxWindow* parent, int id, const wxString& value, const wxPoint& pos,
                       const wxSize& size, pdTextCtrlType type, long style,
                       const wxValidator& validator, const wxString& name)
    : wxTextCtrl(parent, id, value, pos, size, style, validator, name),
      m_colourValid(*wxStockGDI::GetColour(wxStockGDI::COLOUR_WHITE)),
      m_colourInvalid(255, 255, 0, 255), m_type(type), m_valid(true), m_savedText(value),
      m_hasRange(false), m_min(0.0), m_max(0.0) {
    Bind(wxEVT_SET_FOCUS, &pdTextCtrl::OnSetFocus, this, wxID_ANY, wxID_ANY);
    Bind(wxEVT_KILL_FOCUS, &pdTextCtrl::OnKillFocus, this, wxID_ANY, wxID_ANY);
    Bind(wxEVT_TEXT, &pdTextCtrl::OnText, this, wxID_ANY, wxID_ANY);
}

pdTextCtrl::~pdTextCtrl() {}

void pdTextCtrl::OnSetFocus(wxFocusEvent& event) {
    wxCommandEvent notification(wxEVT_COMMAND_SET_FOCUS, event.GetId());
    ProcessEvent(notification);
    event.Skip();
}

void pdTextCtrl::OnKillFocus(wxFocusEvent& event) {
    wxCommandEvent notification(wxEVT_COMMAND_KILL_FOCUS, event.GetId());
    ProcessEvent(notification);
    event.Skip();
}

void pdTextCtrl::OnText(wxCommandEvent& event) {
    const wxString text = GetValue();
    bool passed = false;
    double number = 0.0;
    bool rangeApplies = false;
    switch (m_type) {
    case pdTEXT_LONG: {
        long whole = 0;
        passed = text.ToLong(&whole, 10);
        number = static_cast<double>(whole);
        rangeApplies = passed && m_hasRange;
        break;
    }
    case pdTEXT_DOUBLE:
        passed = text.ToDouble(&number);
        rangeApplies = passed && m_hasRange;
        break;
    case pdTEXT_TIME: {
        wxDateTime time;
        passed = ParseTime(text, time);
        break;
    }
    case pdTEXT_DATE: {
        wxDateTime date;
        passed = ParseDate(text, date);
        break;
    }
    default:
        event.Skip();
        return;
    }
    // Written so that a NaN fails.
    if (rangeApplies)
        passed = number >= m_min && number <= m_max;

    if (passed && !m_valid) {
        m_valid = true;
        SetBackgroundColour(m_colourValid);
        Refresh(true, NULL);
    } else if (!passed && m_valid) {
        m_valid = false;
        SetBackgroundColour(m_colourInvalid);
        Refresh(true, NULL);
    }
    event.Skip();
}

bool pdTextCtrl::IsValid() {
    return m_valid;
}

bool pdTextCtrl::IsAltered() {
    return !m_savedText.IsSameAs(GetValue(), true);
}

wxString pdTextCtrl::GetText() {
    return GetValue();
}

void pdTextCtrl::SetText(wxString text) {
    m_savedText = text;
    SetValue(text);
}

void pdTextCtrl::SetNoValue() {
    m_savedText = "####";
    SetValue(m_savedText);
    m_valid = false;
}

void pdTextCtrl::SetRange(double min, double max) {
    m_hasRange = true;
    m_min = min;
    m_max = max;
}

// Date text is year-month-day, cut at "-" only; each part is a whole number in
// base 10. The numbers are screened before wxDateTime sees them, so that text
// from the user never raises an assertion: an impossible date is invalid and
// leaves `date` invalid, as wxDateTime::Set itself would.
bool pdTextCtrl::ParseDate(wxString text, wxDateTime& date) {
    const wxString yearPart = text.BeforeFirst('-');
    const wxString rest = text.AfterFirst('-');
    const wxString monthPart = rest.BeforeFirst('-');
    const wxString dayPart = rest.AfterFirst('-');

    long year = 0;
    long month = 0;
    long day = 0;
    if (!yearPart.ToLong(&year, 10) || !monthPart.ToLong(&month, 10) || !dayPart.ToLong(&day, 10))
        return false;
    if (!IsSettableDate(year, month, day)) {
        date = wxDefaultDateTime;
        return false;
    }
    date.Set(static_cast<wxDateTime::wxDateTime_t>(day), static_cast<wxDateTime::Month>(month - 1),
             static_cast<int>(year), 0, 0, 0, 0);
    return !(date == wxDefaultDateTime);
}

// Time text is hour:minute. `time` starts as the present moment, failure or
// not, and keeps its date, seconds and milliseconds. wxDateTime has no hour
// 24: 24:00 is read as 0:00 of the following day.
bool pdTextCtrl::ParseTime(wxString text, wxDateTime& time) {
    const wxString hourPart = text.BeforeFirst(':');
    const wxString minutePart = text.AfterFirst(':');
    time = wxDateTime::Now();

    long hour = 0;
    long minute = 0;
    if (!hourPart.ToLong(&hour, 10) || !minutePart.ToLong(&minute, 10))
        return false;
    if (!IsLegalTime(hour, minute))
        return false;
    if (hour == 24) {
        time.SetHour(0);
        time.SetMinute(0);
        time.Add(wxDateSpan::Day());
        return true;
    }
    time.SetHour(static_cast<wxDateTime::wxDateTime_t>(hour));
    time.SetMinute(static_cast<wxDateTime::wxDateTime_t>(minute));
    return true;
}

wxDateTime pdTextCtrl::GetDateTime() {
    wxDateTime result = wxDefaultDateTime;
    if (m_type == pdTEXT_TIME)
        ParseTime(GetValue(), result);
    else
        ParseDate(GetValue(), result);
    return result;
}

void pdTextCtrl::SetDateTime(wxDateTime value) {
    const wxString format = m_type == pdTEXT_DATE ? "%Y-%m-%d" : "%H:%M";
    m_savedText = value.Format(format, wxDateTime::Local);
    SetValue(m_savedText);
    m_valid = true;
}

void pdTextCtrl::SetDate(int year, int month, int day) {
    m_savedText = wxString::Format("%04d-%02d-%02d", year, month, day);
    SetValue(m_savedText);
    wxDateTime date;
    m_valid = ParseDate(m_savedText, date);
}

void pdTextCtrl::SetTime(int hour, int minute) {
    m_savedText = wxString::Format("%02d:%02d", hour, minute);
    SetValue(m_savedText);
    m_valid = IsLegalTime(hour, minute);
}

double pdTextCtrl::GetDouble() {
    double number = 0.0;
    GetValue().ToDouble(&number);
    return number;
}

void pdTextCtrl::SetDouble(double value) {
    m_savedText.Printf("%g", value);
    SetValue(m_savedText);
    m_valid = true;
}

long pdTextCtrl::GetLong() {
    long number = 0;
    GetValue().ToLong(&number, 10);
    return number;
}

void pdTextCtrl::SetLong(long value) {
    m_savedText.Printf("%ld", value);
    SetValue(m_savedText);
    m_valid = true;
}
