#include "preferencesdialog.h"

#include "ui.h"

#include <wxsupport/controls/drawing.h>
#include <wxsupport/controls/pdsizegroup.h>
#include <wxsupport/controls/pdtextctrl.h>

#include <wx/artprov.h>
#include <wx/button.h>
#include <wx/intl.h>
#include <wx/settings.h>
#include <wx/sizer.h>
#include <wx/stattext.h>

namespace {

enum {
    ID_RECENT_FILES = wxID_HIGHEST + 1,
    ID_ZOOM,
    ID_BACKUP,
    ID_LICENCE,
    ID_USER_NAME,
};

const long kMinRecent = 1;
const long kMaxRecent = 20;
const double kMinZoom = 0.25;
const double kMaxZoom = 4.0;

} // namespace

PreferencesDialog::PreferencesDialog(wxWindow* parent, const Preferences& preferences)
    : wxDialogWithNotification(parent, wxID_ANY, _("Preferences"), wxDefaultPosition, wxDefaultSize,
                               wxDEFAULT_DIALOG_STYLE | wxRESIZE_BORDER, "preferences"),
      m_preferences(preferences) {
    CreateWidgets();
    LayoutWidgets();
    Bind(wxEVT_COMMAND_SET_FOCUS, &PreferencesDialog::OnFieldFocus, this);
    Bind(wxEVT_COMMAND_KILL_FOCUS, &PreferencesDialog::OnFieldLeft, this);
    Bind(wxEVT_BUTTON, &PreferencesDialog::OnOk, this, wxID_OK);
}

void PreferencesDialog::CreateWidgets() {
    const auto label = [this](const wxString& text) {
        m_labels.push_back(new wxStaticText(this, wxID_ANY, text));
    };
    const auto heading = [this](const wxString& text) {
        wxStaticText* h = NewHeading(this, text);
        m_headings.push_back(h);
    };

    heading(_("Files"));
    label(_("Recent files to keep:"));
    m_recentFiles = new pdTextCtrl(this, ID_RECENT_FILES, wxEmptyString, wxDefaultPosition,
                                   wxDefaultSize, pdTEXT_LONG);
    m_recentFiles->SetRange(kMinRecent, kMaxRecent);
    m_recentFiles->SetLong(m_preferences.recentFiles);
    label(_("Daily backup at:"));
    m_backup = new pdTextCtrl(this, ID_BACKUP, wxEmptyString, wxDefaultPosition, wxDefaultSize,
                              pdTEXT_TIME);
    m_backup->SetText(m_preferences.backupTime);

    heading(_("View"));
    label(_("Zoom:"));
    m_zoom = new pdTextCtrl(this, ID_ZOOM, wxEmptyString, wxDefaultPosition, wxDefaultSize,
                            pdTEXT_DOUBLE);
    m_zoom->SetRange(kMinZoom, kMaxZoom);
    m_zoom->SetDouble(m_preferences.zoom);

    heading(_("Licence"));
    label(_("Licence expires:"));
    m_licence = new pdTextCtrl(this, ID_LICENCE, wxEmptyString, wxDefaultPosition, wxDefaultSize,
                               pdTEXT_DATE);
    m_licence->SetText(m_preferences.licenceExpires);
    label(_("Licensed to:"));
    m_userName = new pdTextCtrl(this, ID_USER_NAME, m_preferences.userName);
    m_userName->SetText(m_preferences.userName);

    // Room for what each field holds, and a little more.
    for (pdTextCtrl* field : {m_recentFiles, m_zoom, m_backup})
        field->SetMinSize(wxSize(wx_size_to_fit_text(field, 8, 1).x, -1));
    m_licence->SetMinSize(wxSize(wx_size_to_fit_text(m_licence, 12, 1).x, -1));
    m_userName->SetMinSize(wxSize(wx_size_to_fit_text(m_userName, 24, 1).x, -1));

    m_hint = new wxStaticText(this, wxID_ANY, wxEmptyString);
    m_hint->SetForegroundColour(wxSystemSettings::GetColour(wxSYS_COLOUR_GRAYTEXT));
}

void PreferencesDialog::LayoutWidgets() {
    // Labels share one width, so that the fields of all sections line up.
    pdSizeGroup labels(pdSizeGroup::SIZE_GROUP_HORIZONTAL);
    for (wxStaticText* l : m_labels)
        labels.Add(l);
    labels.Resize();

    wxSizer* top = GetTopSizer();
    const auto section = [top](wxStaticText* heading, int gap) {
        top->AddSpacer(gap);
        top->Add(heading, 0, wxLEFT | wxRIGHT, 12);
    };
    // Fields stand indented below their heading.
    const auto row = [top](wxStaticText* label, wxWindow* field) {
        wxBoxSizer* line = new wxBoxSizer(wxHORIZONTAL);
        line->Add(label, 0, wxALIGN_CENTER_VERTICAL | wxRIGHT, 12);
        line->Add(field, 0, wxALIGN_CENTER_VERTICAL);
        top->AddSpacer(6);
        top->Add(line, 0, wxLEFT | wxRIGHT, 24);
    };

    section(m_headings[0], 12);
    row(m_labels[0], m_recentFiles);
    row(m_labels[1], m_backup);
    section(m_headings[1], 24);
    row(m_labels[2], m_zoom);
    section(m_headings[2], 24);
    row(m_labels[3], m_licence);
    row(m_labels[4], m_userName);

    top->Add(m_hint, 0, wxEXPAND | wxLEFT | wxRIGHT | wxTOP, 12);
    top->AddStretchSpacer();
    top->Add(CreateSeparatedButtonSizer(wxOK | wxCANCEL), 0, wxEXPAND | wxALL, 12);
    // Room for the longest hint, so that the dialog doesn't grow while the
    // focus moves.
    m_hint->SetMinSize(wx_size_to_fit_text(m_hint, 36, 1));
    Fit();
    SetMinSize(GetSize());
    m_recentFiles->SetFocus();
}

wxString PreferencesDialog::HintFor(int id) const {
    switch (id) {
    case ID_RECENT_FILES:
        return wxString::Format(_("A whole number from %ld to %ld."), kMinRecent, kMaxRecent);
    case ID_ZOOM:
        return wxString::Format(_("A number from %g to %g; 1 is actual size."), kMinZoom, kMaxZoom);
    case ID_BACKUP:
        return _("A time of day as hour:minute, for example 02:30.");
    case ID_LICENCE:
        return _("A date as year-month-day, for example 2027-12-31.");
    case ID_USER_NAME:
        return _("Any text; it is shown in the About box.");
    }
    return wxString();
}

void PreferencesDialog::OnFieldFocus(wxCommandEvent& event) {
    m_hint->SetLabel(HintFor(event.GetId()));
}

void PreferencesDialog::OnFieldLeft(wxCommandEvent&) {
    m_hint->SetLabel(wxEmptyString);
}

void PreferencesDialog::OnOk(wxCommandEvent&) {
    int invalid = 0;
    for (pdTextCtrl* field : {m_recentFiles, m_zoom, m_backup, m_licence, m_userName}) {
        if (!field->IsValid())
            ++invalid;
    }
    if (invalid > 0) {
        ShowNotification(wxString::Format(wxPLURAL("%d field needs a valid value.",
                                                   "%d fields need a valid value.", invalid),
                                          invalid),
                         wxART_WARNING);
        return;
    }
    m_preferences.recentFiles = m_recentFiles->GetLong();
    m_preferences.zoom = m_zoom->GetDouble();
    m_preferences.backupTime = m_backup->GetText();
    m_preferences.licenceExpires = m_licence->GetText();
    m_preferences.userName = m_userName->GetText();
    EndModal(wxID_OK);
}
