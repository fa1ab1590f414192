// The library's windows as a user meets them: rows in order, what they read,
// the fade tick by tick, the room the banner takes, modal runs closed by click.
#include "gui_helpers.h"
#include "screenshot.h"

#include <gtest/gtest.h>
#include <wx/artprov.h>
#include <wx/bitmap.h>
#include <wx/button.h>
#include <wx/debugrpt.h>
#include <wx/filename.h>
#include <wx/frame.h>
#include <wx/panel.h>
#include <wx/settings.h>
#include <wx/sizer.h>
#include <wx/statbmp.h>
#include <wx/stattext.h>
#include <wxsupport/dialogs/aboutdlg.h>
#include <wxsupport/dialogs/crashreportdialog.h>
#include <wxsupport/notify/dialogwithnotification.h>
#include <wxsupport/notify/notificationpanel.h>

#include <csignal>
#include <functional>
#include <map>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace {

// First window of type T below `parent` (depth first), with `label` if given.
template <class T>
T* Find(wxWindow* parent, const wxString& label = wxString()) {
    for (wxWindow* w : parent->GetChildren()) {
        if (T* t = dynamic_cast<T*>(w); t && (label.empty() || t->GetLabel() == label))
            return t;
        if (T* t = Find<T>(w, label))
            return t;
    }
    return nullptr;
}

const auto Sys = wxSystemSettings::GetColour;

// Labels of the shown texts on the dialog's panel, top to bottom.
std::vector<wxString> ShownRows(wxWindow* dlg) {
    std::multimap<int, wxString> rows; // by top edge; an empty row may share it
    for (wxWindow* c : Find<wxPanel>(dlg)->GetChildren())
        if (auto* t = dynamic_cast<wxStaticText*>(c); t && t->IsShown())
            rows.emplace(t->GetPosition().y, t->GetLabel());
    std::vector<wxString> labels;
    for (const auto& row : rows)
        labels.push_back(row.second);
    return labels;
}

// Runs the dialog modally: `check` looks at it, then a real click on Close.
// Moved fully onto the screen, or the click could land on another button.
int RunAndClose(wxDialog* dlg, const std::function<void()>& check) {
    dlg->CallAfter([dlg, check] {
        WaitFor([dlg] { return dlg->IsShownOnScreen(); });
        check();
        ClickInto(dlg->FindWindow(wxID_CLOSE));
    });
    dlg->Move(10, 10);
    return dlg->ShowModal();
}

} // namespace

TEST(NotificationPanel, RowOfIconTextAndButtonFollowsItsContent) {
    wxFrame* frame = new wxFrame(nullptr, wxID_ANY, "banner", wxPoint(20, 20), wxSize(600, 200));
    NotificationPanel* panel = new NotificationPanel(frame);
    wxStaticBitmap* icon = Find<wxStaticBitmap>(panel);
    wxStaticText* label = Find<wxStaticText>(panel);
    wxButton* close = Find<wxButton>(panel);
    ASSERT_TRUE(icon && label && close && close->GetId() == wxID_CLOSE);

    panel->SetLabel("Short");
    panel->SetIcon(wxART_WARNING);
    const wxSize small = panel->GetMinSize();
    panel->SetSize(small);
    // 12 pixels before, between and after the items.
    EXPECT_EQ(icon->GetPosition().x, 12);
    EXPECT_EQ(label->GetPosition().x, icon->GetRect().GetRight() + 13);
    EXPECT_EQ(small.x, close->GetRect().GetRight() + 13);

    // Icon and button leave the row with their borders, and come back.
    panel->HideIcon();
    panel->ShowCloseButton(false);
    panel->SetSize(small);
    EXPECT_FALSE(icon->IsShown() || close->IsShown());
    EXPECT_EQ(label->GetRect(),
              wxRect(12, label->GetPosition().y, small.x - 24, label->GetSize().y));
    panel->SetIcon("no-such-art-id"); // no bitmap, but the icon's place is back
    EXPECT_TRUE(icon->IsShown());
    DestroyAndWait(frame);
}

TEST(NotificationPanel, FadeGoesFromFaceToInfoColourInSevenCutSteps) {
    wxFrame* frame = new wxFrame(nullptr, wxID_ANY, "fade", wxPoint(20, 20), wxSize(400, 120));
    NotificationPanel* panel = new NotificationPanel(frame);
    ASSERT_TRUE(ShowAndActivate(frame));
    const wxColour from = Sys(wxSYS_COLOUR_BTNFACE), to = Sys(wxSYS_COLOUR_INFOBK);
    ASSERT_NE(from, to) << "the theme gives nothing to fade";
    // Each channel is cut, not rounded, and the sixth sum of 1/6 stays below 1.
    std::vector<wxColour> expected{from};
    double position = 0.0;
    auto mix = [&](int a, int b) { return (unsigned char)int((b - a) * position + a); };
    for (int tick = 1; tick <= 7; ++tick) {
        position += 1.0 / 6.0;
        wxColour c(mix(from.Red(), to.Red()), mix(from.Green(), to.Green()),
                   mix(from.Blue(), to.Blue()));
        if ((c = position >= 1.0 ? to : c) != expected.back())
            expected.push_back(c);
    }
    const wxLongLong start = wxGetLocalTimeMillis();
    panel->FadeIn();
    std::vector<wxColour> seen{panel->GetBackgroundColour()};
    WaitFor([&] {
        if (panel->GetBackgroundColour() != seen.back())
            seen.push_back(panel->GetBackgroundColour());
        return seen.size() > 1 && seen.back() == to;
    });
    EXPECT_EQ(seen, expected);
    EXPECT_GE((wxGetLocalTimeMillis() - start).ToLong(), 650); // seven ticks of 100 ms
    DestroyAndWait(frame);
}

TEST(DialogWithNotification, BannerComesAboveTheContentAndGoesOnItsCloseButton) {
    auto* dlg = new wxDialogWithNotification(nullptr, wxID_ANY, "Host", wxPoint(30, 30),
                                             wxDefaultSize, wxDEFAULT_DIALOG_STYLE, "host");
    wxButton* own = new wxButton(dlg, wxID_OK, "Own"); // the host's own content
    int ownClicks = 0;
    own->Bind(wxEVT_BUTTON, [&](wxCommandEvent&) { ++ownClicks; });
    dlg->GetTopSizer()->Add(own, 0, wxALL, 12);
    dlg->GetTopSizer()->SetSizeHints(dlg);
    NotificationPanel* banner = dlg->GetNotification();
    EXPECT_FALSE(banner->IsShown());
    ASSERT_TRUE(ShowAndActivate(dlg));
    const wxSize minHidden = dlg->GetMinSize(), sizeHidden = dlg->GetSize();
    dlg->HideNotification(); // nothing on show: nothing happens
    EXPECT_EQ(dlg->GetMinSize(), minHidden);

    dlg->ShowNotification("Something went wrong, and this line needs some room", wxART_ERROR);
    EXPECT_EQ(banner->GetBackgroundColour(), Sys(wxSYS_COLOUR_BTNFACE));
    EXPECT_EQ(banner->GetRect(), wxRect(0, 0, dlg->GetClientSize().x, banner->GetSize().y));
    EXPECT_EQ(dlg->GetMinSize().y, minHidden.y + banner->GetSize().y);
    EXPECT_GT(dlg->GetSize().x, sizeHidden.x); // grown for the text
    WaitFor([&] { return banner->GetBackgroundColour() == Sys(wxSYS_COLOUR_INFOBK); });
    SaveScreenshot("dialogwithnotification", dlg);

    dlg->ShowNotification("Short", wxART_INFORMATION); // new text, no new fade
    EXPECT_EQ(banner->GetBackgroundColour(), Sys(wxSYS_COLOUR_INFOBK));
    EXPECT_EQ(Find<wxStaticText>(banner)->GetLabel(), "Short");
    const wxSize shownSize = dlg->GetSize();

    ASSERT_TRUE(ClickInto(own)); // the host's button doesn't reach the banner's handler
    EXPECT_TRUE(WaitFor([&] { return ownClicks == 1; }));
    EXPECT_TRUE(banner->IsShown());
    ASSERT_TRUE(ClickInto(Find<wxButton>(banner)));
    EXPECT_TRUE(WaitFor([&] { return !banner->IsShown(); }));
    EXPECT_EQ(dlg->GetMinSize(), minHidden);
    EXPECT_EQ(dlg->GetSize(), shownSize); // no shrinking

    dlg->ShowNotification(); // fades again
    EXPECT_EQ(banner->GetBackgroundColour(), Sys(wxSYS_COLOUR_BTNFACE));
    DestroyAndWait(dlg);
}

TEST(AboutDlg, OnlyUptimeUntilSettersShowTheirRows) {
    AboutDlg* dlg = new AboutDlg(nullptr);
    EXPECT_EQ(dlg->GetTitle(), "");
    std::vector<wxString> rows = ShownRows(dlg);
    ASSERT_EQ(rows.size(), 1u);
    EXPECT_TRUE(rows[0].StartsWith("Uptime: ") && rows[0].EndsWith(" seconds")) << rows[0];
    EXPECT_FALSE(Find<wxStaticBitmap>(dlg)->IsShown());

    dlg->SetBuildInfo("gcc (C) build");
    dlg->SetExtraCopyright("(C) 2020 Others");
    dlg->SetCopyright("Copyright (C) 2024 Maker");
    dlg->SetHeader("Tool", "");
    dlg->SetImage(wxBitmap(48, 48));
    dlg->Fit();
    EXPECT_EQ(dlg->GetTitle(), "Tool ");
    rows = ShownRows(dlg);
    ASSERT_EQ(rows.size(), 6u);
    rows[3] = rows[3].BeforeFirst(' ');
    const wxString c = wxString::FromUTF8("\xC2\xA9"); // "(C)" replaced in copyrights only
    EXPECT_EQ(rows,
              std::vector<wxString>({"Tool ", "Copyright " + c + " 2024 Maker", c + " 2020 Others",
                                     "Uptime:", "Build info:", "gcc (C) build"}));
    EXPECT_LT(Find<wxStaticBitmap>(dlg)->GetRect().GetRight(),
              Find<wxStaticText>(dlg, "Tool ")->GetPosition().x);

    const int result = RunAndClose(dlg, [dlg] {
        EXPECT_TRUE(ShowAndActivate(dlg));
        EXPECT_EQ(dlg->GetDefaultItem(), dlg->FindWindow(wxID_CLOSE));
        EXPECT_EQ(wxWindow::FindFocus(), dlg->FindWindow(wxID_CLOSE));
        // The uptime row ticks once a second under the modal loop.
        wxStaticText* uptime = Find<wxStaticText>(dlg, ShownRows(dlg)[3]);
        const wxString before = uptime->GetLabel();
        EXPECT_TRUE(WaitFor([&] { return uptime->GetLabel() != before; }, 2500));
        SaveScreenshot("aboutdlg", dlg);
    });
    EXPECT_EQ(result, wxID_CLOSE);
    DestroyAndWait(dlg);
}

TEST(CrashReportDialog, ListsTheReportFilesAndClosesOrAborts) {
    CrashReportDialog* dlg = new CrashReportDialog("50% Tool", "bugs%s@example.org");
    EXPECT_TRUE(dlg->GetTitle() == "Crash report" && !dlg->GetParent());
    std::vector<wxString> rows = ShownRows(dlg);
    ASSERT_EQ(rows.size(), 5u);
    rows[1].Replace("\n", " "); // wrapped at 400 pixels
    EXPECT_TRUE(rows[1].Contains("50% Tool has experienced") &&
                rows[1].Contains("send an email to <b>bugs%s@example.org<b> and attach"));
    rows[1] = "";
    EXPECT_EQ(rows,
              std::vector<wxString>({"50% Tool has crashed!", "", "",
                                     "After you've sent them to us you can safely remove them.",
                                     "Thank you for your participation!"}));
    EXPECT_EQ(Find<wxStaticBitmap>(dlg)->GetBitmap().GetSize(), wxSize(150, 150));
    EXPECT_LT(Find<wxButton>(dlg, "Debug")->GetPosition().x,
              dlg->FindWindow(wxID_CLOSE)->GetPosition().x);

    wxDebugReport report;
    const wxString longName = wxString('n', 40) + ".txt";
    report.AddText("first.txt", "one", "first file");
    report.AddText(longName, "two", "second file");
    const int narrow = dlg->GetSize().x;
    dlg->SetDebugReport(report);
    const wxString dir = report.GetDirectory();
    EXPECT_EQ(ShownRows(dlg)[2], "<tt>" + wxFileName(dir, "first.txt").GetFullPath() +
                                     "</tt>\n<tt>" + wxFileName(dir, longName).GetFullPath() +
                                     "</tt>\n");
    EXPECT_GT(dlg->GetSize().x, narrow + 100); // the list isn't wrapped
    report.RemoveFile("first.txt");
    report.RemoveFile(longName);
    dlg->SetDebugReport(report); // no files: the old list stays
    EXPECT_TRUE(ShownRows(dlg)[2].StartsWith("<tt>"));

    EXPECT_EQ(RunAndClose(dlg, [dlg] { SaveScreenshot("crashreportdialog", dlg); }), wxID_CLOSE);

    wxButton* debug = Find<wxButton>(dlg, "Debug"); // aborts: pressed in a child
    fflush(nullptr);
    const pid_t child = fork();
    if (child == 0) { // no X traffic in the child: straight to the handler
        wxCommandEvent click(wxEVT_BUTTON, debug->GetId());
        click.SetEventObject(debug);
        debug->ProcessWindowEvent(click);
        _exit(0);
    }
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGABRT) << status;
    DestroyAndWait(dlg);
}
