// NotificationPanel as a user meets it: the row of icon, text and close
// button that follows its content, and the fade tick by tick.
#include "gui_helpers.h"

#include <gtest/gtest.h>
#include <wx/artprov.h>
#include <wx/button.h>
#include <wx/frame.h>
#include <wx/settings.h>
#include <wx/statbmp.h>
#include <wx/stattext.h>
#include <wxsupport/notify/notificationpanel.h>

#include <vector>

namespace {

const auto Sys = wxSystemSettings::GetColour;

} // namespace

TEST(NotificationPanel, RowOfIconTextAndButtonFollowsItsContent) {
    wxFrame* frame = new wxFrame(nullptr, wxID_ANY, "banner", wxPoint(20, 20), wxSize(600, 200));
    NotificationPanel* panel = new NotificationPanel(frame);
    wxStaticBitmap* icon = FindChild<wxStaticBitmap>(panel);
    wxStaticText* label = FindChild<wxStaticText>(panel);
    wxButton* close = FindChild<wxButton>(panel);
    ASSERT_NE(icon, nullptr);
    ASSERT_NE(label, nullptr);
    ASSERT_NE(close, nullptr);
    EXPECT_EQ(close->GetId(), wxID_CLOSE);

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
    EXPECT_FALSE(icon->IsShown());
    EXPECT_FALSE(close->IsShown());
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
