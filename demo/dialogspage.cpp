#include "dialogspage.h"

#include "artwork.h"
#include "settings.h"

#include "ui.h"

#include <wxsupport/console/console.h>
#include <wxsupport/dialogs/aboutdlg.h>
#include <wxsupport/dialogs/crashreportdialog.h>

#include <wx/button.h>
#include <wx/debugrpt.h>
#include <wx/intl.h>
#include <wx/sizer.h>
#include <wx/stattext.h>
#include <wx/utils.h>

#include <cstdio>

namespace {

wxString CompilerName() {
#if defined(__clang__)
    return "Clang " __clang_version__;
#elif defined(__GNUC__)
    return "GCC " __VERSION__;
#else
    return wxString();
#endif
}

} // namespace

DialogsPage::DialogsPage(wxWindow* parent, Settings& settings)
    : wxPanel(parent), m_settings(settings), m_consoleOpen(false) {
    wxBoxSizer* sizer = new wxBoxSizer(wxVERTICAL);
    const auto section = [this, sizer](const wxString& heading, const wxString& text,
                                       const wxString& label, void (DialogsPage::*action)()) {
        wxButton* button = new wxButton(this, wxID_ANY, label);
        button->Bind(wxEVT_BUTTON, [this, action](wxCommandEvent&) { (this->*action)(); });
        AddIntroduction(sizer, this, heading, text);
        sizer->Add(button, 0, wxLEFT | wxTOP, 12);
        sizer->AddSpacer(12);
    };
    section(_("About box"),
            _("AboutDlg with the gallery's picture, header, copyright, build information and "
              "the uptime of the library, counted live."),
            _("About..."), &DialogsPage::ShowAbout);
    section(_("Crash report"),
            _("CrashReportDialog over a real wxDebugReport holding two files. Close ends the "
              "dialog; Debug ends the program at once (it calls abort), as it would after a "
              "real crash."),
            _("Crash Report..."), &DialogsPage::ShowCrashReport);
    section(_("Console"),
            _("pd_console_create opens a console window for the program's diagnostic output "
              "and binds the standard streams to it; then pd_console_set_color writes a line in "
              "each colour. It gives 0 when the program has a console already: a gallery "
              "started from a terminal writes there."),
            _("Open Console"), &DialogsPage::OpenConsole);
    m_consoleResult = new wxStaticText(this, wxID_ANY, wxEmptyString);
    sizer->Add(m_consoleResult, 0, wxLEFT | wxRIGHT, 12);
    SetSizer(sizer);
}

void DialogsPage::ShowAbout() {
    AboutDlg dialog(wxGetTopLevelParent(this));
    dialog.SetImage(GalleryEmblem(96));
    dialog.SetHeader(_("wxsupport gallery"), GALLERY_VERSION);
    dialog.SetCopyright(_("Copyright (C) 2026 the wxsupport developers"));
    const wxString user = m_settings.LoadPreferences().userName;
    if (!user.empty())
        dialog.SetExtraCopyright(wxString::Format(_("Licensed to %s"), user));
    dialog.SetBuildInfo(wxString::Format(_("wxsupport-gallery %s, built with %s\nagainst %s"),
                                         GALLERY_VERSION, CompilerName(),
                                         wxGetLibraryVersionInfo().GetVersionString()));
    dialog.Fit();
    dialog.CentreOnParent();
    dialog.ShowModal();
}

void DialogsPage::ShowCrashReport() {
    // A report as a host writes it after a crash: what the program knew, and
    // its settings. The report's folder goes away with the object.
    wxDebugReport report;
    report.AddText(
        "context.txt",
        wxString::Format("wxsupport-gallery %s\n%s\n", GALLERY_VERSION, wxGetOsDescription()),
        _("Program and system"));
    report.AddText("steps.txt", _("1. Opened the Dialogs page\n2. Pressed Crash Report...\n"),
                   _("What the user did"));
    CrashReportDialog dialog(_("wxsupport gallery"), "crash-reports@example.org");
    dialog.SetDebugReport(report);
    dialog.CentreOnScreen();
    dialog.ShowModal();
}

void DialogsPage::OpenConsole() {
    if (m_consoleOpen) {
        m_consoleResult->SetLabel(_("The console is open already; its lines are there."));
        return;
    }
    if (pd_console_create() == 0) {
        m_consoleResult->SetLabel(
            _("pd_console_create gave 0: this gallery has a console already (it was started "
              "from a terminal), so its output goes there."));
        return;
    }
    m_consoleOpen = true;
    const struct {
        int colour;
        const char* name;
    } colours[] = {{1, wxTRANSLATE("red")},     {2, wxTRANSLATE("green")},
                   {3, wxTRANSLATE("yellow")},  {4, wxTRANSLATE("blue")},
                   {5, wxTRANSLATE("magenta")}, {6, wxTRANSLATE("cyan")},
                   {7, wxTRANSLATE("white")},   {0x13, wxTRANSLATE("bright yellow")}};
    for (const auto& c : colours) {
        pd_console_set_color(c.colour, 0);
        const wxString line =
            wxString::Format(_("wxsupport gallery: a line in %s"), wxGetTranslation(c.name));
        std::printf("%s\n", static_cast<const char*>(line.utf8_str()));
    }
    pd_console_set_color(9, 9);
    m_consoleResult->SetLabel(_("pd_console_create gave 1: the console window is open."));
}
