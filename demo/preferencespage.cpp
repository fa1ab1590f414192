#include "preferencespage.h"

#include "banner.h"
#include "preferencesdialog.h"
#include "settings.h"
#include "ui.h"

#include <wxsupport/controls/drawing.h>

#include <wx/artprov.h>
#include <wx/button.h>
#include <wx/frame.h>
#include <wx/intl.h>
#include <wx/settings.h>
#include <wx/sizer.h>
#include <wx/stattext.h>
#include <wx/textctrl.h>

PreferencesPage::PreferencesPage(wxWindow* parent, Settings& settings, Banner& banner)
    : wxPanel(parent), m_settings(settings), m_banner(banner) {
    wxButton* edit = new wxButton(this, wxID_PREFERENCES, _("Edit Preferences..."));
    m_values = new wxStaticText(this, wxID_ANY, wxEmptyString);
    wxStaticText* stored = new wxStaticText(
        this, wxID_ANY,
        wxString::Format(_("Stored in the section [preferences] of %s"), m_settings.GetPath()));
    stored->SetForegroundColour(wxSystemSettings::GetColour(wxSYS_COLOUR_GRAYTEXT));
    m_file = NewFileView(this);

    wxBoxSizer* sizer = new wxBoxSizer(wxVERTICAL);
    AddIntroduction(
        sizer, this, _("Preferences"),
        _("A dialog derived from wxDialogWithNotification, with a pdTextCtrl for each kind of "
          "value: a whole number and a floating-point number with a range, a time, a date and "
          "plain text. A field turns yellow while its text is bad; OK then keeps the dialog "
          "open and a banner says how many fields need a valid value. Labels line up through "
          "a pdSizeGroup, headings are bold through wx_make_bold, and the fields are as wide "
          "as wx_size_to_fit_text says their values need."));
    sizer->Add(edit, 0, wxLEFT | wxTOP, 12);
    sizer->Add(m_values, 0, wxLEFT | wxRIGHT | wxTOP, 24);
    sizer->Add(stored, 0, wxLEFT | wxRIGHT | wxTOP, 12);
    sizer->AddSpacer(6);
    sizer->Add(m_file, 1, wxEXPAND | wxLEFT | wxRIGHT | wxBOTTOM, 12);
    SetSizer(sizer);
    ShowValues();

    edit->Bind(wxEVT_BUTTON, [this](wxCommandEvent&) { EditPreferences(); });
}

void PreferencesPage::ShowValues() {
    const Preferences p = m_settings.LoadPreferences();
    m_values->SetLabel(
        wxString::Format(_("Recent files to keep: %ld\nDaily backup at: %s\nZoom: %g\n"
                           "Licence expires: %s\nLicensed to: %s"),
                         p.recentFiles, p.backupTime, p.zoom, p.licenceExpires,
                         p.userName.empty() ? _("(nobody)") : p.userName));
    m_file->ChangeValue(ReadTextFile(m_settings.GetPath()));
    Layout();
}

void PreferencesPage::EditPreferences() {
    PreferencesDialog dialog(wxGetTopLevelParent(this), m_settings.LoadPreferences());
    if (dialog.ShowModal() != wxID_OK)
        return;
    m_settings.StorePreferences(dialog.GetPreferences());
    if (!m_settings.Save())
        m_banner.Show(m_settings.GetError(), wxART_ERROR);
    else if (wxFrame* frame = wxDynamicCast(wxGetTopLevelParent(this), wxFrame))
        frame->SetStatusText(wxString::Format(_("Preferences saved to %s"), m_settings.GetPath()));
    ShowValues();
}
