// pdTextCtrl under real input: keys typed and clicks made through
// wxUIActionSimulator (XTest) into a frame on the X display, and the colour
// checked on the screen itself.
#include "pdtextctrl_fixture.h"
#include "screenshot.h"

namespace {

// Share of the control's middle band, away from border, caret and text, that
// the screen shows in the colour.
double OnScreen(pdTextCtrl* ctrl, const wxColour& colour) {
    double share = 0.0;
    WaitFor(
        [&] {
            const wxImage image = CaptureWindow(ctrl);
            const int w = image.GetWidth(), h = image.GetHeight();
            share = ShareOfColour(image, colour, wxRect(w / 3, h / 4, w * 2 / 3 - 4, h / 2));
            return share > 0.8;
        },
        1000);
    return share;
}

bool TypeAndWait(pdTextCtrl* ctrl, const char* text, const wxString& shown) {
    return TypeText(text) && WaitFor([&] { return ctrl->GetValue() == shown; });
}

TEST_F(PdTextCtrlTest, DigitTypedAndErasedLeavesAnEmptyLongFieldYellow) {
    pdTextCtrl* ctrl = Make(pdTEXT_LONG, "", wxID_ANY, wxPoint(10, 10));
    ASSERT_TRUE(ShowAndActivate(m_frame) && FocusAndWait(ctrl));
    ASSERT_TRUE(TypeAndWait(ctrl, "7", "7"));
    EXPECT_TRUE(ctrl->IsValid() && ctrl->IsAltered());
    ASSERT_TRUE(PressKey(WXK_BACK));
    ASSERT_TRUE(WaitFor([&] { return ctrl->GetValue().empty(); }));
    EXPECT_FALSE(ctrl->IsValid());
    EXPECT_EQ("yellow", Background(ctrl));
    EXPECT_GT(OnScreen(ctrl, wxColour(255, 255, 0)), 0.8);
    SaveScreenshot("pdtextctrl-long-erased", m_frame);
}

TEST_F(PdTextCtrlTest, GoodDateTypedOverNoValueMakesTheFieldValidAlteredAndWhite) {
    pdTextCtrl* ctrl = Make(pdTEXT_DATE, "", wxID_ANY, wxPoint(10, 10));
    ctrl->SetNoValue();
    ASSERT_TRUE(ShowAndActivate(m_frame) && FocusAndWait(ctrl));
    ctrl->SelectAll();
    ASSERT_TRUE(TypeAndWait(ctrl, "2024-05-06", "2024-05-06"));
    EXPECT_TRUE(ctrl->IsValid() && ctrl->IsAltered());
    EXPECT_EQ("white", Background(ctrl));
    EXPECT_EQ(wxDateTime(6, wxDateTime::May, 2024), ctrl->GetDateTime());
    EXPECT_GT(OnScreen(ctrl, *wxWHITE), 0.8);
    SaveScreenshot("pdtextctrl-date-typed", m_frame);
}

TEST_F(PdTextCtrlTest, FocusChangesReachTheParentAsCommandEvents) {
    pdTextCtrl* first = Make(pdTEXT_LONG, "x", 101, wxPoint(10, 10));
    pdTextCtrl* second = Make(pdTEXT_DATE, "2024-05-06", 102, wxPoint(10, 60));
    ASSERT_TRUE(ShowAndActivate(m_frame) && FocusAndWait(first));
    Pump(50);
    using Events = std::vector<std::pair<wxEventType, int>>;
    m_focusEvents.clear();
    ASSERT_TRUE(ClickInto(second));
    ASSERT_TRUE(WaitFor([&] { return wxWindow::FindFocus() == second; }));
    Pump(100);
    EXPECT_EQ((Events{{wxEVT_COMMAND_KILL_FOCUS, 101}, {wxEVT_COMMAND_SET_FOCUS, 102}}),
              m_focusEvents);
    m_focusEvents.clear();
    ASSERT_TRUE(PressKey(WXK_TAB));
    ASSERT_TRUE(WaitFor([&] { return wxWindow::FindFocus() == first; }));
    Pump(100);
    EXPECT_EQ((Events{{wxEVT_COMMAND_KILL_FOCUS, 102}, {wxEVT_COMMAND_SET_FOCUS, 101}}),
              m_focusEvents);
    // Focus changes test nothing.
    EXPECT_TRUE(first->IsValid() && first->GetValue() == "x" && m_textIds.empty());
}

} // namespace
