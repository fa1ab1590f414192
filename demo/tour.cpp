#include "tour.h"

#include "banner.h"
#include "datespage.h"
#include "dialogspage.h"
#include "inipage.h"
#include "mainframe.h"
#include "preferencesdialog.h"
#include "preferencespage.h"
#include "screenshot.h"
#include "xmlpage.h"

#include <wxsupport/controls/pdtextctrl.h>
#include <wxsupport/notify/notificationpanel.h>

#include <wx/app.h>
#include <wx/dialog.h>
#include <wx/dir.h>
#include <wx/filename.h>
#include <wx/notebook.h>
#include <wx/statusbr.h>
#include <wx/textctrl.h>
#include <wx/uiaction.h>
#include <wx/utils.h>

#include <chrono>
#include <cstdio>
#include <functional>

namespace {

using Clock = std::chrono::steady_clock;

class Tour {
public:
    Tour(MainFrame* frame, const wxString& outDir) : m_frame(frame), m_outDir(outDir) {}
    int Run();

private:
    void PreferencesDialogStep();
    void IniSteps();
    void XmlSteps();
    void DatesStep();
    void DialogSteps();

    // Runs `open`, which shows a modal dialog and returns when it is closed;
    // `inside` runs while the dialog is on show.
    void WithModal(const std::function<void()>& open, const std::function<void(wxDialog*)>& inside);
    void CloseBy(wxDialog* dialog, int buttonId);
    void ShowPage(size_t page);
    void Shot(const wxString& name, wxWindow* window);
    void Expect(bool condition, const char* what);

    MainFrame* m_frame;
    wxString m_outDir;
    int m_shots = 0;
    int m_failures = 0;
};

void DispatchPending() {
    wxTheApp->Yield(true);
    wxTheApp->ProcessPendingEvents();
    wxTheApp->ProcessIdle();
}

// Dispatches events until the condition holds or ms have passed.
bool WaitFor(const std::function<bool()>& condition, int ms) {
    const Clock::time_point deadline = Clock::now() + std::chrono::milliseconds(ms);
    for (;;) {
        DispatchPending();
        if (condition())
            return true;
        if (Clock::now() >= deadline)
            return false;
        wxMilliSleep(5);
    }
}

void Pump(int ms) {
    WaitFor([] { return false; }, ms);
}

// Raises the window until it holds the keyboard focus (Xvfb has no window
// manager to give it).
bool Activate(wxTopLevelWindow* window) {
    window->Show();
    return WaitFor(
        [window] {
            if (!window->IsActive())
                window->Raise();
            return window->IsActive();
        },
        5000);
}

bool Focus(wxWindow* window) {
    window->SetFocus();
    return WaitFor([window] { return wxWindow::FindFocus() == window; }, 3000);
}

// A real click into the middle of the window.
bool Click(wxWindow* window) {
    wxUIActionSimulator sim;
    const wxSize size = window->GetSize();
    if (!sim.MouseMove(window->ClientToScreen(wxPoint(size.x / 2, size.y / 2))))
        return false;
    DispatchPending();
    const bool clicked = sim.MouseClick(wxMOUSE_BTN_LEFT);
    DispatchPending();
    return clicked;
}

// Replaces the field's text by typing, key by key.
bool TypeInto(wxTextCtrl* field, const char* text) {
    if (!Focus(field))
        return false;
    field->SelectAll();
    wxUIActionSimulator sim;
    for (const char* p = text; *p; ++p) {
        const char one[2] = {*p, '\0'};
        if (!sim.Text(one))
            return false;
        DispatchPending();
    }
    return true;
}

wxDialog* FindModalDialog() {
    for (wxWindow* window : wxTopLevelWindows) {
        wxDialog* dialog = wxDynamicCast(window, wxDialog);
        if (dialog && dialog->IsModal() && dialog->IsShownOnScreen())
            return dialog;
    }
    return nullptr;
}

int Tour::Run() {
    Expect(Activate(m_frame), "the main window gets the focus");
    ShowPage(0);
    Shot("preferences", m_frame);
    PreferencesDialogStep();
    IniSteps();
    XmlSteps();
    DatesStep();
    ShowPage(4);
    Pump(600); // the spinner turns a few frames
    Shot("widgets", m_frame);
    DialogSteps();
    return m_failures;
}

void Tour::PreferencesDialogStep() {
    WithModal([this] { m_frame->GetPreferencesPage()->EditPreferences(); },
              [this](wxDialog* dialog) {
                  PreferencesDialog* prefs = static_cast<PreferencesDialog*>(dialog);
                  Activate(prefs);
                  Shot("preferences-dialog", prefs);
                  // Out of range and not a real date: both turn yellow.
                  Expect(TypeInto(prefs->GetRecentFilesField(), "25"), "typing a count");
                  Expect(TypeInto(prefs->GetDateField(), "2027-02-30"), "typing a date");
                  Expect(!prefs->GetRecentFilesField()->IsValid() &&
                             !prefs->GetDateField()->IsValid(),
                         "the typed fields are marked invalid");
                  Shot("preferences-invalid", prefs);
                  Click(prefs->FindWindow(wxID_OK));
                  // The banner fades in over seven steps of 100 ms.
                  Pump(1000);
                  Expect(prefs->GetNotification()->IsShown(), "OK shows the banner");
                  Shot("preferences-banner", prefs);
                  CloseBy(prefs, wxID_CANCEL);
              });
}

void Tour::IniSteps() {
    ShowPage(1);
    IniPage* ini = m_frame->GetIniPage();
    const wxString data = m_frame->GetDataDir();
    Expect(ini->OpenFile(wxFileName(data, "sample.ini").GetFullPath()), "opening sample.ini");
    ini->SelectKey("view", "zoom");
    // A new value, typed and set by a click.
    Expect(TypeInto(ini->GetValueField(), "1.5"), "typing a value");
    Expect(Click(ini->FindWindow(wxID_APPLY)), "clicking Set Value");
    Expect(
        WaitFor([this] { return m_frame->GetStatusBar()->GetStatusText().Contains("zoom"); }, 3000),
        "the value is set");
    Shot("ini-editor", m_frame);
    // An unterminated section header: the banner names file and line, and
    // what was loaded stays.
    Expect(!ini->OpenFile(wxFileName(data, "broken.ini").GetFullPath()), "broken.ini is refused");
    Expect(m_frame->GetBanner().GetText().Contains("broken.ini:6"), "the banner says PATH:LINE");
    Shot("ini-error", m_frame);
    Expect(!ini->SaveAs(wxFileName(data + "/no-such-folder", "out.ini").GetFullPath()),
           "saving into a missing folder fails");
    Expect(m_frame->GetBanner().IsShown(), "the failed save shows in the banner");
    m_frame->GetBanner().Hide();
}

void Tour::XmlSteps() {
    ShowPage(2);
    XmlPage* xml = m_frame->GetXmlPage();
    const wxString data = m_frame->GetDataDir();
    Expect(xml->OpenFile(wxFileName(data, "sample.xml").GetFullPath()), "opening sample.xml");
    Shot("xml-viewer", m_frame);
    Expect(!xml->OpenFile(wxFileName(data, "broken.xml").GetFullPath()), "broken.xml is refused");
    Expect(m_frame->GetBanner().IsShown(), "the malformed file shows in the banner");
    Shot("xml-error", m_frame);
    Expect(xml->ExportPreferences(), "exporting the preferences");
    Shot("xml-export", m_frame);
}

void Tour::DatesStep() {
    ShowPage(3);
    Expect(TypeInto(m_frame->GetDatesPage()->GetFirstDateField(), "2024-12-31"), "typing a date");
    Shot("dates", m_frame);
}

void Tour::DialogSteps() {
    ShowPage(5);
    Shot("dialogs", m_frame);
    DialogsPage* page = m_frame->GetDialogsPage();
    WithModal([page] { page->ShowAbout(); },
              [this](wxDialog* dialog) {
                  Pump(1200); // the uptime row counts once
                  Shot("about", dialog);
                  CloseBy(dialog, wxID_CLOSE);
              });
    WithModal([page] { page->ShowCrashReport(); },
              [this](wxDialog* dialog) {
                  Shot("crash-report", dialog);
                  CloseBy(dialog, wxID_CLOSE);
              });
}

void Tour::WithModal(const std::function<void()>& open,
                     const std::function<void(wxDialog*)>& inside) {
    bool seen = false;
    wxTheApp->CallAfter([&seen, &inside] {
        wxDialog* dialog = nullptr;
        WaitFor([&dialog] { return (dialog = FindModalDialog()) != nullptr; }, 5000);
        if (!dialog)
            return;
        seen = true;
        Pump(300);
        inside(dialog);
    });
    open();
    Expect(seen, "a modal dialog opens");
}

void Tour::CloseBy(wxDialog* dialog, int buttonId) {
    wxWindow* button = dialog->FindWindow(buttonId);
    Expect(button != nullptr, "the dialog has its Close or Cancel button");
    if (button && Click(button) && WaitFor([dialog] { return !dialog->IsShown(); }, 3000))
        return;
    Expect(false, "a click on the button closes the dialog");
    // The click didn't land: end the dialog as its button would.
    dialog->EndModal(buttonId);
}

void Tour::ShowPage(size_t page) {
    m_frame->GetBook()->SetSelection(page);
    Pump(300);
}

void Tour::Shot(const wxString& name, wxWindow* window) {
    window->Refresh();
    window->Update();
    Pump(300);
    const wxString path =
        wxFileName(m_outDir, wxString::Format("%02d-%s.png", ++m_shots, name)).GetFullPath();
    if (SaveWindowPicture(window, path))
        std::printf("tour: %s\n", static_cast<const char*>(path.utf8_str()));
    else
        Expect(false, "saving a picture");
    std::fflush(stdout);
}

void Tour::Expect(bool condition, const char* what) {
    if (condition)
        return;
    ++m_failures;
    std::fprintf(stderr, "tour: step failed: %s\n", what);
}

} // namespace

int RunTour(MainFrame* frame, const wxString& outDir) {
    if (!wxFileName::Mkdir(outDir, wxS_DIR_DEFAULT, wxPATH_MKDIR_FULL)) {
        std::fprintf(stderr, "tour: can't create %s\n",
                     static_cast<const char*>(outDir.utf8_str()));
        return 1;
    }
    // The pictures of an earlier tour go; a shorter tour leaves none behind.
    wxArrayString old;
    wxDir::GetAllFiles(outDir, &old, "*.png", wxDIR_FILES);
    for (const wxString& file : old) {
        const wxString name = wxFileName(file).GetFullName();
        if (name.length() > 3 && wxIsdigit(name[0]) && wxIsdigit(name[1]) && name[2] == '-')
            wxRemoveFile(file);
    }
    return Tour(frame, outDir).Run();
}
