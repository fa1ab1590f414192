// Page 6: the ready-made dialogs and the console. About (AboutDlg), Crash
// report (CrashReportDialog over a real wxDebugReport) and the console window
// of pd_console_create with a line in each colour.
#pragma once

#include <wx/panel.h>

class Settings;
class wxStaticText;

class DialogsPage : public wxPanel {
public:
    DialogsPage(wxWindow* parent, Settings& settings);

    // Each runs its dialog modally until the user closes it.
    void ShowAbout();
    void ShowCrashReport();
    // Opens the console (once) and writes a line in each colour to it.
    void OpenConsole();

private:
    Settings& m_settings;
    wxStaticText* m_consoleResult;
    bool m_consoleOpen;
};
