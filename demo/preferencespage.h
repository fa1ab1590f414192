// Page 1: the Preferences dialog, what it edits, and the settings file that
// keeps it.
#pragma once

#include <wx/panel.h>

class Banner;
class Settings;
class wxStaticText;
class wxTextCtrl;

class PreferencesPage : public wxPanel {
public:
    PreferencesPage(wxWindow* parent, Settings& settings, Banner& banner);

    // Runs the Preferences dialog; on OK stores the values and saves the
    // settings file (a failure goes to the banner).
    void EditPreferences();

private:
    void ShowValues();

    Settings& m_settings;
    Banner& m_banner;
    wxStaticText* m_values;
    wxTextCtrl* m_file; // the settings file as it stands
};
