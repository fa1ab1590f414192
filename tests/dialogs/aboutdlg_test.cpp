// AboutDlg: only the uptime row until the setters show theirs, the rows in
// order with the copyright marks replaced, the uptime ticking under the modal
// loop, and a modal run closed by a click.
#include "dialog_helpers.h"
#include "screenshot.h"

#include <gtest/gtest.h>
#include <wx/bitmap.h>
#include <wx/statbmp.h>
#include <wxsupport/dialogs/aboutdlg.h>

TEST(AboutDlg, OnlyUptimeUntilSettersShowTheirRows) {
    AboutDlg* dlg = new AboutDlg(nullptr);
    EXPECT_EQ(dlg->GetTitle(), "");
    std::vector<wxString> rows = ShownRows(dlg);
    ASSERT_EQ(rows.size(), 1u);
    EXPECT_TRUE(rows[0].StartsWith("Uptime: ")) << rows[0];
    EXPECT_TRUE(rows[0].EndsWith(" seconds")) << rows[0];
    EXPECT_FALSE(FindChild<wxStaticBitmap>(dlg)->IsShown());

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
    EXPECT_LT(FindChild<wxStaticBitmap>(dlg)->GetRect().GetRight(),
              FindChild<wxStaticText>(dlg, "Tool ")->GetPosition().x);

    const int result = RunAndClose(dlg, [dlg] {
        EXPECT_TRUE(ShowAndActivate(dlg));
        EXPECT_EQ(dlg->GetDefaultItem(), dlg->FindWindow(wxID_CLOSE));
        EXPECT_EQ(wxWindow::FindFocus(), dlg->FindWindow(wxID_CLOSE));
        // The uptime row ticks once a second under the modal loop.
        wxStaticText* uptime = FindChild<wxStaticText>(dlg, ShownRows(dlg)[3]);
        const wxString before = uptime->GetLabel();
        EXPECT_TRUE(WaitFor([&] { return uptime->GetLabel() != before; }, 2500));
        SaveScreenshot("aboutdlg", dlg);
    });
    EXPECT_EQ(result, wxID_CLOSE);
    DestroyAndWait(dlg);
}
