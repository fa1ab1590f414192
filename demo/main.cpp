// wxsupport-gallery: every class of wxsupport at work in one application.
//
//   wxsupport-gallery [--lang LANG] [FILE...]    the window; files are opened
//                                                 on the INI or XML page
//   wxsupport-gallery --tour [--out DIR] [--lang LANG]
//                                                 the tour: a picture of each
//                                                 page and dialog in DIR
//   wxsupport-gallery --version                  prints the version; needs
//                                                 no display
#include "mainframe.h"
#include "settings.h"
#include "tour.h"

#include <wx/app.h>
#include <wx/cmdline.h>
#include <wx/filename.h>
#include <wx/image.h>
#include <wx/intl.h>
#include <wx/log.h>
#include <wx/stdpaths.h>
#include <wx/translation.h>

#include <cstdio>
#include <cstring>
#include <memory>

namespace {

int g_assertions = 0;

// Every wxWidgets assertion is printed and counted; the tour fails on any.
void PrintAssertion(const wxString& file, int line, const wxString& func, const wxString& cond,
                    const wxString& msg) {
    ++g_assertions;
    std::fprintf(stderr, "wxsupport-gallery: assertion \"%s\" failed in %s at %s:%d%s%s\n",
                 static_cast<const char*>(cond.utf8_str()),
                 static_cast<const char*>(func.utf8_str()),
                 static_cast<const char*>(file.utf8_str()), line, msg.empty() ? "" : ": ",
                 static_cast<const char*>(msg.utf8_str()));
}

wxLanguage LanguageFor(const wxString& code) {
    if (code.empty())
        return wxLANGUAGE_DEFAULT;
    const wxLanguageInfo* info = wxLocale::FindLanguageInfo(code);
    return info ? static_cast<wxLanguage>(info->Language) : wxLANGUAGE_DEFAULT;
}

} // namespace

class GalleryApp : public wxApp {
public:
    bool OnInit() override;
    int OnRun() override;
    int OnExit() override;
    void OnInitCmdLine(wxCmdLineParser& parser) override;
    bool OnCmdLineParsed(wxCmdLineParser& parser) override;

private:
    void SetUpLanguage(const wxString& code);

    bool m_tour = false;
    wxString m_outDir = "out/gallery";
    wxString m_language;
    wxArrayString m_files;
    wxString m_tourSettingsDir;
    int m_tourFailures = 0;
    int m_missingCatalogues = 0;
    std::unique_ptr<wxLocale> m_locale;
    std::unique_ptr<Settings> m_settings;
};

wxIMPLEMENT_APP_NO_MAIN(GalleryApp);

int main(int argc, char** argv) {
    // Answered before wxWidgets starts the toolkit, so that it works without
    // a display: enough to see that an installed gallery finds its libraries.
    for (int i = 1; i < argc && std::strcmp(argv[i], "--") != 0; ++i) {
        if (std::strcmp(argv[i], "--version") == 0) {
            std::printf("wxsupport-gallery %s\n", GALLERY_VERSION);
            return 0;
        }
    }
    return wxEntry(argc, argv);
}

void GalleryApp::OnInitCmdLine(wxCmdLineParser& parser) {
    wxApp::OnInitCmdLine(parser);
    parser.AddSwitch(wxString(), "tour",
                     _("show every page and dialog, save a picture of each, "
                       "and quit"));
    parser.AddOption(wxString(), "out", _("folder for the tour's pictures (default out/gallery)"));
    parser.AddOption(wxString(), "lang", _("language of the texts, for example de or en"));
    parser.AddSwitch(wxString(), "version", _("print the version and quit"));
    parser.AddParam(_("INI or XML file to open"), wxCMD_LINE_VAL_STRING,
                    wxCMD_LINE_PARAM_OPTIONAL | wxCMD_LINE_PARAM_MULTIPLE);
}

bool GalleryApp::OnCmdLineParsed(wxCmdLineParser& parser) {
    m_tour = parser.Found("tour");
    parser.Found("out", &m_outDir);
    parser.Found("lang", &m_language);
    for (size_t i = 0; i < parser.GetParamCount(); ++i)
        m_files.push_back(parser.GetParam(i));
    return wxApp::OnCmdLineParsed(parser);
}

bool GalleryApp::OnInit() {
    wxSetAssertHandler(PrintAssertion);
    if (!wxApp::OnInit())
        return false;
    SetAppName("wxsupport-gallery");
    SetAppDisplayName("wxsupport gallery");
    wxInitAllImageHandlers();

    wxString settingsPath = Settings::DefaultPath();
    if (m_tour) {
        // The tour's settings start empty in a folder of their own, so that
        // its pictures are the same on every machine and nothing is written
        // into the user's home.
        m_tourSettingsDir = wxFileName::CreateTempFileName("wxsupport-gallery-");
        wxRemoveFile(m_tourSettingsDir);
        wxFileName::Mkdir(m_tourSettingsDir, wxS_DIR_DEFAULT);
        settingsPath = wxFileName(m_tourSettingsDir, "gallery.ini").GetFullPath();
    }
    m_settings = std::make_unique<Settings>(settingsPath);
    if (m_language.empty())
        m_language = m_settings->GetString("language");
    SetUpLanguage(m_language);

    const wxFileName exe(wxStandardPaths::Get().GetExecutablePath());
    wxFileName data(exe.GetPath(), wxString());
    data.RemoveLastDir();
    data.AppendDir("share");
    data.AppendDir("wxsupport-gallery");

    MainFrame* frame = new MainFrame(*m_settings, data.GetPath());
    if (m_tour) {
        if (!m_language.empty() && !m_language.StartsWith("en"))
            m_outDir = wxFileName(m_outDir, m_language).GetFullPath();
        frame->SetSize(16, 16, 980, 720);
        frame->Show();
        CallAfter([this, frame] {
            m_tourFailures = RunTour(frame, m_outDir);
            wxFileName out(m_outDir, wxString());
            out.MakeAbsolute();
            std::printf("tour: the pictures are in %s\n",
                        static_cast<const char*>(out.GetPath().utf8_str()));
            frame->Close(true);
        });
        return true;
    }
    frame->Show();
    for (const wxString& file : m_files)
        frame->OpenFile(file);
    return true;
}

void GalleryApp::SetUpLanguage(const wxString& code) {
    // Catalogues: <exe dir>/../share/locale/LANG/LC_MESSAGES/NAME.mo, in the
    // build tree as in an installed one; the system's folders come after.
    wxFileName locale(wxStandardPaths::Get().GetExecutablePath());
    locale.RemoveLastDir();
    locale.AppendDir("share");
    locale.AppendDir("locale");
    wxFileTranslationsLoader::AddCatalogLookupPathPrefix(locale.GetPath());

    const wxLanguage language = LanguageFor(code);
    {
        // A language without a system locale still gets its catalogues.
        wxLogNull quiet;
        m_locale = std::make_unique<wxLocale>();
        m_locale->Init(language);
    }
    wxTranslations* translations = wxTranslations::Get();
    if (!translations) {
        translations = new wxTranslations;
        wxTranslations::Set(translations);
        translations->SetLanguage(language);
    }
    // English is the texts' own language; any other chosen one must find
    // both catalogues, or the gallery would quietly show English.
    const bool english = code.empty() || code.StartsWith("en");
    for (const char* domain : {"wxsupport", "wxsupport-gallery"}) {
        if (!translations->AddCatalog(domain) && !english) {
            ++m_missingCatalogues;
            std::fprintf(stderr, "wxsupport-gallery: no catalogue %s.mo for %s under %s\n", domain,
                         static_cast<const char*>(code.utf8_str()),
                         static_cast<const char*>(locale.GetPath().utf8_str()));
        }
    }
}

int GalleryApp::OnRun() {
    const int code = wxApp::OnRun();
    if (m_tour && (m_tourFailures > 0 || g_assertions > 0 || m_missingCatalogues > 0)) {
        std::fprintf(stderr, "tour: %d failed steps, %d assertions, %d missing catalogues\n",
                     m_tourFailures, g_assertions, m_missingCatalogues);
        return 1;
    }
    return code;
}

int GalleryApp::OnExit() {
    m_settings.reset();
    if (!m_tourSettingsDir.empty())
        wxFileName::Rmdir(m_tourSettingsDir, wxPATH_RMDIR_RECURSIVE);
    return wxApp::OnExit();
}
