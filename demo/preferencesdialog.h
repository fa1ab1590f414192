// The Preferences dialog: typed fields of each kind on a dialog that can show
// a banner. OK with a field that holds no valid value keeps the dialog open
// and says in the banner how many fields need one.
#pragma once

#include "settings.h"

#include <wxsupport/notify/dialogwithnotification.h>

#include <vector>

class pdTextCtrl;
class wxStaticText;

class PreferencesDialog : public wxDialogWithNotification {
public:
    PreferencesDialog(wxWindow* parent, const Preferences& preferences);

    // The values as the user left them; valid after ShowModal gave wxID_OK.
    const Preferences& GetPreferences() const { return m_preferences; }

    // The fields, for the tour.
    pdTextCtrl* GetRecentFilesField() const { return m_recentFiles; }
    pdTextCtrl* GetDateField() const { return m_licence; }

private:
    void CreateWidgets();
    void LayoutWidgets();
    void OnFieldFocus(wxCommandEvent& event);
    void OnFieldLeft(wxCommandEvent& event);
    void OnOk(wxCommandEvent& event);
    wxString HintFor(int id) const;

    Preferences m_preferences;
    pdTextCtrl* m_recentFiles;
    pdTextCtrl* m_zoom;
    pdTextCtrl* m_backup;
    pdTextCtrl* m_licence;
    pdTextCtrl* m_userName;
    std::vector<wxStaticText*> m_labels;
    std::vector<wxStaticText*> m_headings;
    wxStaticText* m_hint;
};
