// CrashReportDialog: its rows, the list of a debug report's files, a modal
// run closed by a click, and the Debug button that aborts (pressed in a child
// process).
#include "child_process.h"
#include "dialog_helpers.h"
#include "screenshot.h"

#include <gtest/gtest.h>
#include <wx/button.h>
#include <wx/debugrpt.h>
#include <wx/filename.h>
#include <wx/statbmp.h>
#include <wxsupport/dialogs/crashreportdialog.h>

#include <csignal>

TEST(CrashReportDialog, ListsTheReportFilesAndClosesOrAborts) {
    CrashReportDialog* dlg = new CrashReportDialog("50% Tool", "bugs%s@example.org");
    EXPECT_EQ(dlg->GetTitle(), "Crash report");
    EXPECT_EQ(dlg->GetParent(), nullptr);
    std::vector<wxString> rows = ShownRows(dlg);
    ASSERT_EQ(rows.size(), 5u);
    rows[1].Replace("\n", " "); // wrapped at 400 pixels
    EXPECT_TRUE(rows[1].Contains("50% Tool has experienced")) << rows[1];
    EXPECT_TRUE(rows[1].Contains("send an email to <b>bugs%s@example.org<b> and attach"))
        << rows[1];
    rows[1] = "";
    EXPECT_EQ(rows,
              std::vector<wxString>({"50% Tool has crashed!", "", "",
                                     "After you've sent them to us you can safely remove them.",
                                     "Thank you for your participation!"}));
    EXPECT_EQ(FindChild<wxStaticBitmap>(dlg)->GetBitmap().GetSize(), wxSize(150, 150));
    EXPECT_LT(FindChild<wxButton>(dlg, "Debug")->GetPosition().x,
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

    wxButton* debug = FindChild<wxButton>(dlg, "Debug"); // aborts: pressed in a child
    const ChildResult pressed = RunInChild([debug](int) {
        // No X traffic in the child: straight to the handler.
        wxCommandEvent click(wxEVT_BUTTON, debug->GetId());
        click.SetEventObject(debug);
        debug->ProcessWindowEvent(click);
        return 0;
    });
    EXPECT_TRUE(pressed.killedBy(SIGABRT)) << pressed.describe();
    DestroyAndWait(dlg);
}
