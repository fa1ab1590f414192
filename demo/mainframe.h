// The gallery's main window: a menu, a banner, a book of six pages (one per
// family of classes) and a status bar. Remembers its size, position, page and
// files in the settings file.
#pragma once

#include <wx/frame.h>

#include <memory>

class Banner;
class DatesPage;
class DialogsPage;
class IniPage;
class PreferencesPage;
class Settings;
class WidgetsPage;
class XmlPage;
class wxBookCtrlEvent;
class wxNotebook;

class MainFrame : public wxFrame {
public:
    // dataDir: the gallery's sample files.
    MainFrame(Settings& settings, const wxString& dataDir);
    ~MainFrame() override;

    // Opens a file on the INI or XML page, by its extension.
    void OpenFile(const wxString& path);
    // Saves the settings; a failure shows in the banner. True on success.
    bool SaveSettings();

    // Parts for the tour.
    wxNotebook* GetBook() const { return m_book; }
    Banner& GetBanner() const { return *m_banner; }
    PreferencesPage* GetPreferencesPage() const { return m_preferencesPage; }
    IniPage* GetIniPage() const { return m_iniPage; }
    XmlPage* GetXmlPage() const { return m_xmlPage; }
    DatesPage* GetDatesPage() const { return m_datesPage; }
    DialogsPage* GetDialogsPage() const { return m_dialogsPage; }
    const wxString& GetDataDir() const { return m_dataDir; }

private:
    void CreateMenu();
    void RestoreState();
    void OnClose(wxCloseEvent& event);
    void OnLanguage(const wxString& code);

    Settings& m_settings;
    wxString m_dataDir;
    std::unique_ptr<Banner> m_banner;
    wxNotebook* m_book;
    PreferencesPage* m_preferencesPage;
    IniPage* m_iniPage;
    XmlPage* m_xmlPage;
    DatesPage* m_datesPage;
    WidgetsPage* m_widgetsPage;
    DialogsPage* m_dialogsPage;
    bool m_closeAfterFailedSave;
};
