// Page 4: jmsDateTime at work. Two dates and times to type; what ParseDate
// and ParseTime made of them, their text forms, the zone-neutral seconds of
// MkTime and LocalTime back, the two compared; beside them the month-number
// helpers and pd_validate_wx_date, which is strict where jmsDateTime is
// lenient.
#pragma once

#include <wx/panel.h>

class wxStaticText;
class wxTextCtrl;

class DatesPage : public wxPanel {
public:
    explicit DatesPage(wxWindow* parent);

    // The first date field, for the tour.
    wxTextCtrl* GetFirstDateField() const { return m_date[0]; }

private:
    void Update();

    wxTextCtrl* m_date[2];
    wxTextCtrl* m_time[2];
    wxStaticText* m_parsed[2];
    wxStaticText* m_formatted[2];
    wxStaticText* m_seconds[2];
    wxStaticText* m_back[2];
    wxStaticText* m_strict[2];
    wxStaticText* m_comparison;
    wxStaticText* m_months;
};
