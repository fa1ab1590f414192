// pdTextCtrl under real input: keys typed and clicks made through
// wxUIActionSimulator (XTest) into a frame on the X display, and the colours
// checked on the screen itself.
#include "assert_capture.h"
#include "pdtextctrl_fixture.h"
#include "screenshot.h"

namespace {

// The middle band of a control's image, away from the border, the caret and
// the text at the left.
wxRect MiddleBand(const wxImage& image) {
    const int top = image.GetHeight() / 4;
    const int left = image.GetWidth() / 3;
    return wxRect(left, top, image.GetWidth() - 4 - left, image.GetHeight() - 2 * top);
}

class PdTextCtrlInputTest : public PdTextCtrlTest {
protected:
    // Waits until the control shows `colour` on the screen, for at most a
    // second; the share of the middle band that has it is returned.
    double WaitForScreenColour(pdTextCtrl* ctrl, const wxColour& colour) {
        double share = 0.0;
        WaitFor(
            [&] {
                const wxImage image = CaptureWindow(ctrl);
                share = ShareOfColour(image, colour, MiddleBand(image));
                return share > 0.8;
            },
            1000);
        return share;
    }

    // Selects the whole text and types `text` over it.
    void TypeOver(pdTextCtrl* ctrl, const char* text) {
        ctrl->SelectAll();
        ASSERT_TRUE(TypeText(text));
        ASSERT_TRUE(WaitFor([&] { return ctrl->GetValue() == text; }))
            << "the field shows \"" << ctrl->GetValue().utf8_str() << "\"";
    }
};

} // namespace

TEST_F(PdTextCtrlInputTest, DigitTypedAndErasedLeavesAnEmptyLongFieldYellow) {
    pdTextCtrl* ctrl = Make(pdTEXT_LONG, "", wxID_ANY, wxPoint(10, 10));
    ASSERT_TRUE(ShowAndActivate(m_frame));
    ASSERT_TRUE(FocusAndWait(ctrl));
    EXPECT_GT(WaitForScreenColour(ctrl, wxColour(255, 255, 255)), 0.8)
        << "the system's background of the test theme is white";

    ASSERT_TRUE(TypeText("7"));
    ASSERT_TRUE(WaitFor([&] { return ctrl->GetValue() == "7"; }));
    EXPECT_TRUE(ctrl->IsValid());
    EXPECT_TRUE(ctrl->IsAltered());
    EXPECT_EQ(Background(ctrl), "system");

    ASSERT_TRUE(PressKey(WXK_BACK));
    ASSERT_TRUE(WaitFor([&] { return ctrl->GetValue().empty(); }));
    EXPECT_FALSE(ctrl->IsValid());
    EXPECT_FALSE(ctrl->IsAltered());
    EXPECT_EQ(Background(ctrl), "yellow");
    EXPECT_GT(WaitForScreenColour(ctrl, wxColour(255, 255, 0)), 0.8);
    SaveScreenshot("pdtextctrl-long-erased", m_frame);

    ASSERT_TRUE(TypeText("12"));
    ASSERT_TRUE(WaitFor([&] { return ctrl->GetValue() == "12"; }));
    EXPECT_TRUE(ctrl->IsValid());
    EXPECT_EQ(Background(ctrl), "white");
    EXPECT_GT(WaitForScreenColour(ctrl, wxColour(255, 255, 255)), 0.8);
}

TEST_F(PdTextCtrlInputTest, GoodDateTypedOverNoValueMakesTheFieldValidAlteredAndWhite) {
    pdTextCtrl* ctrl = Make(pdTEXT_DATE, "", wxID_ANY, wxPoint(10, 10));
    ctrl->SetNoValue();
    ASSERT_TRUE(ShowAndActivate(m_frame));
    ASSERT_TRUE(FocusAndWait(ctrl));
    EXPECT_EQ(ctrl->GetValue(), "####");
    EXPECT_FALSE(ctrl->IsValid());
    EXPECT_GT(WaitForScreenColour(ctrl, wxColour(255, 255, 0)), 0.8);
    SaveScreenshot("pdtextctrl-date-novalue", m_frame);

    TypeOver(ctrl, "2024-05-06");
    EXPECT_TRUE(ctrl->IsValid());
    EXPECT_TRUE(ctrl->IsAltered());
    EXPECT_EQ(Background(ctrl), "white");
    EXPECT_EQ(ctrl->GetDateTime(), wxDateTime(6, wxDateTime::May, 2024));
    EXPECT_GT(WaitForScreenColour(ctrl, wxColour(255, 255, 255)), 0.8);
    SaveScreenshot("pdtextctrl-date-typed", m_frame);
}

// Every keystroke runs the date test on a half-typed text; none of them, and
// none of the impossible dates at the end, may raise an assertion.
TEST_F(PdTextCtrlInputTest, TypingImpossibleDatesShowsYellowWithoutAssertion) {
    AssertCapture capture;
    pdTextCtrl* ctrl = Make(pdTEXT_DATE, "2000-01-01", wxID_ANY, wxPoint(10, 10));
    ASSERT_TRUE(ShowAndActivate(m_frame));
    ASSERT_TRUE(FocusAndWait(ctrl));
    for (const char* text :
         {"2024-13-01", "2024-0-5", "2024-02-30", "2147483648-1-1", "2024-05-65543"}) {
        SCOPED_TRACE(text);
        TypeOver(ctrl, text);
        EXPECT_FALSE(ctrl->IsValid());
        EXPECT_EQ(Background(ctrl), "yellow");
        EXPECT_FALSE(ctrl->GetDateTime().IsValid());
    }
    TypeOver(ctrl, "2024-02-29");
    EXPECT_TRUE(ctrl->IsValid());
    EXPECT_EQ(capture.count(), 0u);
}

TEST_F(PdTextCtrlInputTest, TypedTimeIsTestedAsItGrows) {
    pdTextCtrl* ctrl = Make(pdTEXT_TIME, "", wxID_ANY, wxPoint(10, 10));
    ASSERT_TRUE(ShowAndActivate(m_frame));
    ASSERT_TRUE(FocusAndWait(ctrl));
    ASSERT_TRUE(TypeText("24"));
    ASSERT_TRUE(WaitFor([&] { return ctrl->GetValue() == "24"; }));
    EXPECT_FALSE(ctrl->IsValid()) << "no minute yet";
    ASSERT_TRUE(TypeText(":00"));
    ASSERT_TRUE(WaitFor([&] { return ctrl->GetValue() == "24:00"; }));
    EXPECT_TRUE(ctrl->IsValid());
    EXPECT_EQ(Background(ctrl), "white");
    ASSERT_TRUE(TypeText("1"));
    ASSERT_TRUE(WaitFor([&] { return ctrl->GetValue() == "24:001"; }));
    EXPECT_FALSE(ctrl->IsValid()) << "minute 1 with hour 24";
}

TEST_F(PdTextCtrlInputTest, FocusChangesReachTheParentAsCommandEvents) {
    pdTextCtrl* first = Make(pdTEXT_LONG, "x", 101, wxPoint(10, 10));
    pdTextCtrl* second = Make(pdTEXT_DATE, "2024-05-06", 102, wxPoint(10, 60));
    first->SetValue("bad");
    ASSERT_EQ(Background(first), "yellow");
    ASSERT_TRUE(ShowAndActivate(m_frame));
    ASSERT_TRUE(FocusAndWait(first));
    Pump(50);
    m_focusEvents.clear();

    ASSERT_TRUE(ClickInto(second));
    ASSERT_TRUE(WaitFor([&] { return wxWindow::FindFocus() == second; }));
    Pump(100);
    ASSERT_EQ(m_focusEvents.size(), 2u);
    EXPECT_EQ(m_focusEvents[0].type, wxEVT_COMMAND_KILL_FOCUS);
    EXPECT_EQ(m_focusEvents[0].id, 101);
    EXPECT_EQ(m_focusEvents[1].type, wxEVT_COMMAND_SET_FOCUS);
    EXPECT_EQ(m_focusEvents[1].id, 102);
    EXPECT_EQ(m_focusEvents[0].object, nullptr);
    EXPECT_EQ(m_focusEvents[1].object, nullptr);

    // Focus changes touch neither the flag nor the colours nor the text.
    EXPECT_FALSE(first->IsValid());
    EXPECT_EQ(Background(first), "yellow");
    EXPECT_EQ(first->GetValue(), "bad");
    EXPECT_TRUE(second->IsValid());
    EXPECT_EQ(Background(second), "system");
    EXPECT_TRUE(m_textEvents.size() == 1u) << "only the SetValue above";

    // Back again, by the keyboard this time.
    m_focusEvents.clear();
    ASSERT_TRUE(PressKey(WXK_TAB));
    ASSERT_TRUE(WaitFor([&] { return wxWindow::FindFocus() == first; }));
    Pump(100);
    ASSERT_EQ(m_focusEvents.size(), 2u);
    EXPECT_EQ(m_focusEvents[0].type, wxEVT_COMMAND_KILL_FOCUS);
    EXPECT_EQ(m_focusEvents[0].id, 102);
    EXPECT_EQ(m_focusEvents[1].type, wxEVT_COMMAND_SET_FOCUS);
    EXPECT_EQ(m_focusEvents[1].id, 101);
}
