// wxDialogWithNotification: the banner comes above the host's content, takes
// its room, fades once, and goes again on its own close button.
#include "gui_helpers.h"
#include "screenshot.h"

#include <gtest/gtest.h>
#include <wx/artprov.h>
#include <wx/button.h>
#include <wx/settings.h>
#include <wx/sizer.h>
#include <wx/stattext.h>
#include <wxsupport/notify/dialogwithnotification.h>
#include <wxsupport/notify/notificationpanel.h>

namespace {

const auto Sys = wxSystemSettings::GetColour;

} // namespace

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
    EXPECT_EQ(FindChild<wxStaticText>(banner)->GetLabel(), "Short");
    const wxSize shownSize = dlg->GetSize();

    ASSERT_TRUE(ClickInto(own)); // the host's button doesn't reach the banner's handler
    EXPECT_TRUE(WaitFor([&] { return ownClicks == 1; }));
    EXPECT_TRUE(banner->IsShown());
    ASSERT_TRUE(ClickInto(FindChild<wxButton>(banner)));
    EXPECT_TRUE(WaitFor([&] { return !banner->IsShown(); }));
    EXPECT_EQ(dlg->GetMinSize(), minHidden);
    EXPECT_EQ(dlg->GetSize(), shownSize); // no shrinking

    dlg->ShowNotification(); // fades again
    EXPECT_EQ(banner->GetBackgroundColour(), Sys(wxSYS_COLOUR_BTNFACE));
    DestroyAndWait(dlg);
}
