#include "datespage.h"

#include "ui.h"

#include <wxsupport/controls/drawing.h>
#include <wxsupport/text/jmsdatetime.h>
#include <wxsupport/text/strings.h>

#include <wx/intl.h>
#include <wx/sizer.h>
#include <wx/stattext.h>
#include <wx/textctrl.h>

namespace {

wxString YesNo(bool value) {
    return value ? _("yes") : _("no");
}

} // namespace

DatesPage::DatesPage(wxWindow* parent) : wxPanel(parent) {

    const wxString defaults[2][2] = {{"2024-02-29", "08:05"}, {"2025-02-30", "24:00"}};
    wxFlexGridSizer* grid = new wxFlexGridSizer(3, wxSize(24, 6));
    grid->Add(new wxStaticText(this, wxID_ANY, wxEmptyString));
    for (int i = 0; i < 2; ++i) {
        wxStaticText* heading = NewHeading(this, i == 0 ? _("First value") : _("Second value"));
        grid->Add(heading);
    }
    const auto row = [this, grid](const wxString& label, wxWindow* first, wxWindow* second) {
        grid->Add(new wxStaticText(this, wxID_ANY, label), 0, wxALIGN_CENTER_VERTICAL);
        grid->Add(first, 0, wxALIGN_CENTER_VERTICAL);
        grid->Add(second, 0, wxALIGN_CENTER_VERTICAL);
    };
    const auto result = [this]() { return new wxStaticText(this, wxID_ANY, wxEmptyString); };
    for (int i = 0; i < 2; ++i) {
        m_date[i] = new wxTextCtrl(this, wxID_ANY, defaults[i][0]);
        m_time[i] = new wxTextCtrl(this, wxID_ANY, defaults[i][1]);
        m_date[i]->SetMinSize(wxSize(wx_size_to_fit_text(m_date[i], 12, 1).x, -1));
        m_time[i]->SetMinSize(wxSize(wx_size_to_fit_text(m_time[i], 12, 1).x, -1));
        m_parsed[i] = result();
        m_formatted[i] = result();
        m_seconds[i] = result();
        m_back[i] = result();
        m_strict[i] = result();
    }
    row(_("Date (year-month-day):"), m_date[0], m_date[1]);
    row(_("Time (hour:minute):"), m_time[0], m_time[1]);
    row(_("ParseDate / ParseTime:"), m_parsed[0], m_parsed[1]);
    row(_("FormatDate FormatTime:"), m_formatted[0], m_formatted[1]);
    row(_("MkTime:"), m_seconds[0], m_seconds[1]);
    row(_("LocalTime(MkTime()):"), m_back[0], m_back[1]);
    row(_("pd_validate_wx_date:"), m_strict[0], m_strict[1]);

    m_comparison = new wxStaticText(this, wxID_ANY, wxEmptyString);
    m_months = new wxStaticText(this, wxID_ANY, wxEmptyString);
    wxStaticText* compared = NewHeading(this, _("Compared"));
    wxStaticText* months = NewHeading(this, _("Month numbers"));

    wxBoxSizer* sizer = new wxBoxSizer(wxVERTICAL);
    AddIntroduction(
        sizer, this, _("Dates and times"),
        _("jmsDateTime holds a date and time in five plain numbers. Its checks are lenient: any "
          "day from 1 to 31 passes in any month, and 24:00 is a time. pd_validate_wx_date "
          "checks the calendar. MkTime counts seconds without a time zone, and LocalTime turns "
          "them back."));
    sizer->Add(grid, 0, wxLEFT | wxRIGHT | wxTOP, 12);
    sizer->AddSpacer(24);
    sizer->Add(compared, 0, wxLEFT | wxRIGHT, 12);
    sizer->AddSpacer(6);
    sizer->Add(m_comparison, 0, wxLEFT | wxRIGHT, 12);
    sizer->AddSpacer(24);
    sizer->Add(months, 0, wxLEFT | wxRIGHT, 12);
    sizer->AddSpacer(6);
    sizer->Add(m_months, 0, wxLEFT | wxRIGHT, 12);
    SetSizer(sizer);

    for (int i = 0; i < 2; ++i) {
        m_date[i]->Bind(wxEVT_TEXT, [this](wxCommandEvent&) { Update(); });
        m_time[i]->Bind(wxEVT_TEXT, [this](wxCommandEvent&) { Update(); });
    }
    Update();
}

void DatesPage::Update() {
    jmsDateTime values[2];
    for (int i = 0; i < 2; ++i) {
        jmsDateTime& v = values[i];
        const bool dateOk = v.ParseDate(m_date[i]->GetValue());
        const bool timeOk = v.ParseTime(m_time[i]->GetValue());
        m_parsed[i]->SetLabel(wxString::Format("%s / %s", YesNo(dateOk), YesNo(timeOk)));
        m_formatted[i]->SetLabel(v.FormatDate() + " " + v.FormatTime());
        const std::int64_t seconds = v.MkTime();
        m_seconds[i]->SetLabel(wxString::Format("%lld", static_cast<long long>(seconds)));
        jmsDateTime back;
        back.LocalTime(seconds);
        m_back[i]->SetLabel(back.FormatDate() + " " + back.FormatTime());
        const int month = v.GetMonth();
        const bool real =
            pd_validate_wx_date(v.GetYear(), static_cast<wxDateTime::Month>(month - 1), v.GetDay());
        m_strict[i]->SetLabel(real ? _("a real date") : _("no such date"));
    }
    m_comparison->SetLabel(
        wxString::Format(_("first == second: %s    first != second: %s    "
                           "first > second: %s    second > first: %s"),
                         YesNo(values[0] == values[1]), YesNo(values[0] != values[1]),
                         YesNo(values[0] > values[1]), YesNo(values[1] > values[0])));

    // wx_set_month_number on the 1st of this year's January, so that every
    // month has the day; it takes 1 to 12 only (a date with fewer than three
    // numbers leaves the month unchecked).
    const int month = values[0].GetMonth();
    wxString set = _("(takes 1 to 12 only)");
    if (month >= 1 && month <= 12) {
        wxDateTime first(1, wxDateTime::Jan, wxDateTime::GetCurrentYear());
        wx_set_month_number(first, month);
        set = first.FormatISODate();
    }
    m_months->SetLabel(wxString::Format(
        _("wx_get_month_number(today) = %d    wx_set_month_number(1 January, %d) gives %s"),
        wx_get_month_number(wxDateTime::Today()), month, set));
    Layout();
}
