#include "mainframe.h"

#include "artwork.h"
#include "banner.h"
#include "datespage.h"
#include "dialogspage.h"
#include "inipage.h"
#include "preferencespage.h"
#include "settings.h"
#include "widgetspage.h"
#include "xmlpage.h"

#include <wx/artprov.h>
#include <wx/filedlg.h>
#include <wx/filename.h>
#include <wx/icon.h>
#include <wx/intl.h>
#include <wx/menu.h>
#include <wx/notebook.h>
#include <wx/panel.h>
#include <wx/sizer.h>

namespace {

enum {
    ID_OPEN_INI = wxID_HIGHEST + 100,
    ID_OPEN_XML,
    ID_LANGUAGE_ENGLISH,
    ID_LANGUAGE_GERMAN,
};

} // namespace

MainFrame::MainFrame(Settings& settings, const wxString& dataDir)
    : wxFrame(nullptr, wxID_ANY, _("wxsupport gallery"), wxDefaultPosition, wxSize(980, 720)),
      m_settings(settings), m_dataDir(dataDir), m_closeAfterFailedSave(false) {
    wxIcon icon;
    icon.CopyFromBitmap(GalleryEmblem(48));
    SetIcon(icon);
    CreateMenu();
    CreateStatusBar();

    wxPanel* panel = new wxPanel(this);
    m_banner = std::make_unique<Banner>(panel);
    // First run: the folder and the file come into being at once.
    if (!wxFileName::FileExists(m_settings.GetPath())) {
        m_settings.SetLong("page", 0);
        SaveSettings();
    }
    m_book = new wxNotebook(panel, wxID_ANY);
    m_preferencesPage = new PreferencesPage(m_book, settings, *m_banner);
    m_iniPage = new IniPage(m_book, settings, *m_banner);
    m_xmlPage = new XmlPage(m_book, settings, *m_banner);
    m_datesPage = new DatesPage(m_book);
    m_widgetsPage = new WidgetsPage(m_book);
    m_dialogsPage = new DialogsPage(m_book, settings);
    m_book->AddPage(m_preferencesPage, _("Preferences"));
    m_book->AddPage(m_iniPage, _("INI Editor"));
    m_book->AddPage(m_xmlPage, _("XML Viewer"));
    m_book->AddPage(m_datesPage, _("Dates"));
    m_book->AddPage(m_widgetsPage, _("Widgets"));
    m_book->AddPage(m_dialogsPage, _("Dialogs and Console"));

    wxBoxSizer* sizer = new wxBoxSizer(wxVERTICAL);
    sizer->Add(m_banner->GetWindow(), 0, wxEXPAND);
    sizer->Add(m_book, 1, wxEXPAND | wxALL, 6);
    panel->SetSizer(sizer);

    RestoreState();
    Bind(wxEVT_CLOSE_WINDOW, &MainFrame::OnClose, this);
    m_book->Bind(wxEVT_NOTEBOOK_PAGE_CHANGED, [this](wxBookCtrlEvent& event) {
        m_settings.SetLong("page", event.GetSelection());
        event.Skip();
    });
}

MainFrame::~MainFrame() = default;

void MainFrame::CreateMenu() {
    wxMenu* file = new wxMenu;
    file->Append(ID_OPEN_INI, _("Open &INI File...\tCtrl+O"));
    file->Append(ID_OPEN_XML, _("Open &XML File...\tCtrl+Shift+O"));
    file->AppendSeparator();
    file->Append(wxID_PREFERENCES, _("&Preferences...\tCtrl+,"));
    file->AppendSeparator();
    file->Append(wxID_EXIT, _("&Quit\tCtrl+Q"));

    wxMenu* language = new wxMenu;
    language->AppendRadioItem(ID_LANGUAGE_ENGLISH, "English");
    language->AppendRadioItem(ID_LANGUAGE_GERMAN, "Deutsch");
    // The language in use, whether chosen here before or by --lang.
    const wxLocale* locale = wxGetLocale();
    const bool german = locale && locale->GetCanonicalName().StartsWith("de");
    language->Check(german ? ID_LANGUAGE_GERMAN : ID_LANGUAGE_ENGLISH, true);
    wxMenu* view = new wxMenu;
    view->AppendSubMenu(language, _("&Language"));

    wxMenu* help = new wxMenu;
    help->Append(wxID_ABOUT, _("&About..."));

    wxMenuBar* bar = new wxMenuBar;
    bar->Append(file, _("&File"));
    bar->Append(view, _("&View"));
    bar->Append(help, _("&Help"));
    SetMenuBar(bar);

    const auto open = [this](const wxString& title, const wxString& extension,
                             const wxString& wildcard) {
        const wxString path = wxFileSelector(title, m_dataDir, wxString(), extension, wildcard,
                                             wxFD_OPEN | wxFD_FILE_MUST_EXIST, this);
        if (!path.empty())
            OpenFile(path);
    };
    Bind(
        wxEVT_MENU,
        [open](wxCommandEvent&) {
            open(_("Open an INI file"), "ini", _("INI files (*.ini)|*.ini|All files|*"));
        },
        ID_OPEN_INI);
    Bind(
        wxEVT_MENU,
        [open](wxCommandEvent&) {
            open(_("Open an XML file"), "xml", _("XML files (*.xml)|*.xml|All files|*"));
        },
        ID_OPEN_XML);
    Bind(
        wxEVT_MENU,
        [this](wxCommandEvent&) {
            m_book->SetSelection(0);
            m_preferencesPage->EditPreferences();
        },
        wxID_PREFERENCES);
    Bind(
        wxEVT_MENU, [this](wxCommandEvent&) { Close(); }, wxID_EXIT);
    Bind(
        wxEVT_MENU, [this](wxCommandEvent&) { m_dialogsPage->ShowAbout(); }, wxID_ABOUT);
    Bind(
        wxEVT_MENU, [this](wxCommandEvent&) { OnLanguage("en"); }, ID_LANGUAGE_ENGLISH);
    Bind(
        wxEVT_MENU, [this](wxCommandEvent&) { OnLanguage("de"); }, ID_LANGUAGE_GERMAN);
}

void MainFrame::RestoreState() {
    if (!m_settings.GetError().empty())
        m_banner->Show(m_settings.GetError(), wxART_ERROR);
    const wxRect rect = m_settings.LoadWindowRect();
    if (rect.GetSize() != wxDefaultSize) {
        SetSize(rect.GetSize());
        if (rect.GetPosition() != wxDefaultPosition)
            Move(rect.GetPosition());
    } else {
        Centre();
    }
    const long page = m_settings.GetLong("page", 0);
    if (page >= 0 && page < static_cast<long>(m_book->GetPageCount()))
        m_book->SetSelection(static_cast<size_t>(page));

    // The INI editor starts on the file opened last, else on the gallery's own.
    const wxString ini = m_settings.GetString("last_ini", m_settings.GetPath());
    if (wxFileName::FileExists(ini))
        m_iniPage->OpenFile(ini);
    const wxString xml =
        m_settings.GetString("last_xml", wxFileName(m_dataDir, "sample.xml").GetFullPath());
    if (wxFileName::FileExists(xml))
        m_xmlPage->OpenFile(xml);
    SetStatusText(wxString::Format(_("Settings: %s"), m_settings.GetPath()));
}

void MainFrame::OpenFile(const wxString& name) {
    // Kept in the settings, so absolute.
    wxFileName file(name);
    file.MakeAbsolute();
    const wxString path = file.GetFullPath();
    if (path.Lower().EndsWith(".xml")) {
        m_book->SetSelection(2);
        m_xmlPage->OpenFile(path);
    } else {
        m_book->SetSelection(1);
        m_iniPage->OpenFile(path);
    }
    SaveSettings();
}

bool MainFrame::SaveSettings() {
    if (m_settings.Save())
        return true;
    m_banner->Show(m_settings.GetError(), wxART_ERROR);
    return false;
}

void MainFrame::OnLanguage(const wxString& code) {
    m_settings.SetString("language", code);
    if (SaveSettings())
        SetStatusText(_("The language changes at the next start of the gallery."));
}

void MainFrame::OnClose(wxCloseEvent& event) {
    if (!IsIconized() && !IsMaximized())
        m_settings.StoreWindowRect(GetRect());
    // A failed save is shown, never passed over: the window stays open once,
    // and a second close goes without saving.
    if (!SaveSettings() && event.CanVeto() && !m_closeAfterFailedSave) {
        m_banner->Show(m_settings.GetError() + _(" (close again to quit without saving)"),
                       wxART_ERROR);
        m_closeAfterFailedSave = true;
        event.Veto();
        return;
    }
    event.Skip();
}
