// pdTextCtrl driven by the program (the test of each kind as OnText runs it
// inside SetValue, the flag and background it leaves, what each typed setter
// and getter does) and under real input: keys typed and clicks made through
// wxUIActionSimulator (XTest) into a frame on the X display, with the colour
// checked on the screen itself. The parent records the command events that
// reach it.
#include "assert_capture.h"
#include "frame_test.h"
#include "screenshot.h"

#include <gtest/gtest.h>
#include <wx/intl.h>
#include <wxsupport/controls/pdtextctrl.h>

#include <climits>
#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace {

class PdTextCtrlTest : public FrameTest {
protected:
    void SetUp() override {
        FrameTest::SetUp();
        m_panel->Bind(wxEVT_TEXT, [this](wxCommandEvent& e) { m_textIds.push_back(e.GetId()); });
        auto record = [this](wxCommandEvent& e) {
            m_focusEvents.emplace_back(e.GetEventType(), e.GetId());
        };
        m_panel->Bind(wxEVT_COMMAND_SET_FOCUS, record);
        m_panel->Bind(wxEVT_COMMAND_KILL_FOCUS, record);
    }

    pdTextCtrl* Make(pdTextCtrlType type, const wxString& value = wxString(), int id = wxID_ANY,
                     const wxPoint& pos = wxDefaultPosition) {
        return new pdTextCtrl(m_panel, id, value, pos, wxSize(200, -1), type);
    }

    // "system" while the control has no background of its own, else "white",
    // "yellow" or the colour's text.
    static std::string Background(pdTextCtrl* ctrl) {
        const wxColour colour = ctrl->GetBackgroundColour();
        if (!ctrl->UseBackgroundColour())
            return "system";
        return colour == *wxWHITE ? "white"
               : colour == wxColour(255, 255, 0)
                   ? "yellow"
                   : colour.GetAsString(wxC2S_HTML_SYNTAX).ToStdString();
    }

    std::vector<int> m_textIds;                             // ids of the text events
    std::vector<std::pair<wxEventType, int>> m_focusEvents; // type and id
};

TEST_F(PdTextCtrlTest, StartsUntestedAndHandsItsArgumentsToTheBase) {
    for (pdTextCtrlType type :
         {pdTEXT_PLAIN, pdTEXT_LONG, pdTEXT_DOUBLE, pdTEXT_TIME, pdTEXT_DATE}) {
        pdTextCtrl* ctrl = Make(type, "bad");
        EXPECT_TRUE(ctrl->IsValid()) << type;
        EXPECT_FALSE(ctrl->IsAltered()) << type;
        EXPECT_EQ("system", Background(ctrl)) << type;
    }
    EXPECT_TRUE(m_textIds.empty());
    pdTextCtrl* ctrl = new pdTextCtrl(m_panel, 4711, "12", wxPoint(5, 7), wxSize(150, -1),
                                      pdTEXT_LONG, wxTE_READONLY, wxDefaultValidator, "amount");
    EXPECT_EQ(ctrl->GetId(), 4711);
    EXPECT_EQ(ctrl->GetName(), "amount");
    EXPECT_FALSE(ctrl->IsEditable());
    EXPECT_EQ(wxPoint(5, 7), ctrl->GetPosition());
}

// The background follows changes of the flag only; every text event goes on
// to the parent.
TEST_F(PdTextCtrlTest, BackgroundFollowsChangesOfTheFlag) {
    pdTextCtrl* ctrl = Make(pdTEXT_LONG, "1", 300);
    const struct {
        const char* text;
        bool valid;
        const char* background;
    } steps[] = {{"2", true, "system"},
                 {"x", false, "yellow"},
                 {"y", false, "yellow"},
                 {"3", true, "white"},
                 {"", false, "yellow"}};
    for (const auto& s : steps) {
        ctrl->SetValue(s.text);
        EXPECT_EQ(s.valid, ctrl->IsValid()) << s.text;
        EXPECT_EQ(s.background, Background(ctrl)) << s.text;
    }
    EXPECT_EQ(std::vector<int>(5, 300), m_textIds);
    // Without a text event only IsAltered follows.
    ctrl->ChangeValue("4");
    EXPECT_FALSE(ctrl->IsValid());
    EXPECT_TRUE(ctrl->IsAltered());
    EXPECT_EQ(m_textIds.size(), 5u);
}

// The handlers are public; called directly they show what they hand on.
TEST_F(PdTextCtrlTest, FocusHandlersPassTheEventOnAndSkipIt) {
    pdTextCtrl* ctrl = Make(pdTEXT_LONG, "", 300);
    wxFocusEvent gained(wxEVT_SET_FOCUS, 555), lost(wxEVT_KILL_FOCUS, 556);
    ctrl->OnSetFocus(gained);
    ctrl->OnKillFocus(lost);
    EXPECT_TRUE(gained.GetSkipped());
    EXPECT_TRUE(lost.GetSkipped());
    EXPECT_TRUE(ctrl->IsValid());
    EXPECT_EQ((std::vector<std::pair<wxEventType, int>>{{wxEVT_COMMAND_SET_FOCUS, 555},
                                                        {wxEVT_COMMAND_KILL_FOCUS, 556}}),
              m_focusEvents);
}

// Every form of every kind, ranges included; none raises an assertion.
TEST_F(PdTextCtrlTest, FormsOfEachKind) {
    wxLocale locale("C", "C", "C", false);
    const struct {
        pdTextCtrlType type;
        bool ranged;
        double min, max;
        std::vector<const char*> good, bad;
    } kinds[] = {
        {pdTEXT_PLAIN, false, 0, 0, {"", "12:99"}, {}},
        {static_cast<pdTextCtrlType>(7), false, 0, 0, {""}, {}},
        {pdTEXT_LONG,
         false,
         0,
         0,
         {"12", "-12", "+12", " 12", "007", "9223372036854775807"},
         {"12 ", "", "5.5", "0x10", "1e3", "12a", "9223372036854775808", "-9223372036854775809"}},
        {pdTEXT_LONG, true, 1, 10, {"1", "10", "+5"}, {"0", "11", "5.5", "-1"}},
        {pdTEXT_LONG, true, 10, 1, {}, {"1", "5", "10"}},
        {pdTEXT_DOUBLE,
         false,
         0,
         0,
         {"1.5", "-0.25", "1e3", "inf", "nan", " 2.5"},
         {"2.5 ", "1,5", "", "1.5.", "abc"}},
        {pdTEXT_DOUBLE, true, 0, 1, {"0", "0.5", "1"}, {"1.0001", "-0.0001", "nan", "inf", "-inf"}},
        {pdTEXT_TIME,
         false,
         0,
         0,
         {"12:30", "7:5", "0:0", "23:59", "24:00", "24:0", " 12: 30"},
         {"24:01", "25:00", "12:60", "-1:30", "12:-1", "12", "12:", ":30", "12:30:45", "12.30", "",
          "12 :30", "99999999999999999999:00"}},
        {pdTEXT_DATE,
         false,
         0,
         0,
         {"2024-05-06", "2024-5-6", "24-5-6", "2024-02-29", "2000-02-29", "0-1-1", " 2024-+5- 6",
          "1000000-12-31"},
         {"2024-5",
          "2024",
          "2024/05/06",
          "20240506",
          "-2024-05-06",
          "2024-05-06-",
          "2024-05-06 12:00",
          "2024-02-30",
          "",
          "2023-02-29",
          "1900-02-29",
          "2024 -5-6",
          "####",
          "2024-13-01",
          "2024-0-5",
          "2024-5-0",
          "2024-5-32",
          "2024-04-31",
          "2024-05-65543",
          "2024-05-4294967302",
          "2024-4294967301-06",
          "2147483648-1-1",
          "4294969320-1-1",
          "99999999999999999999-1-1",
          "1000001-1-1"}},
    };
    AssertCapture capture;
    for (const auto& k : kinds) {
        pdTextCtrl* ctrl = Make(k.type);
        if (k.ranged)
            ctrl->SetRange(k.min, k.max);
        for (const char* text : k.good) {
            ctrl->SetValue(text);
            EXPECT_TRUE(ctrl->IsValid()) << k.type << " \"" << text << "\"";
        }
        for (const char* text : k.bad) {
            ctrl->SetValue(text);
            EXPECT_FALSE(ctrl->IsValid()) << k.type << " \"" << text << "\"";
            if (k.type == pdTEXT_DATE) {
                EXPECT_FALSE(ctrl->GetDateTime().IsValid()) << text;
            }
        }
    }
    EXPECT_EQ(0u, capture.count());
}

TEST_F(PdTextCtrlTest, SetRangeWaitsForTheNextTextEventAndReplacesTheLast) {
    pdTextCtrl* ctrl = Make(pdTEXT_LONG, "50");
    ctrl->SetRange(1, 10);
    EXPECT_TRUE(ctrl->IsValid());
    ctrl->SetValue("50");
    EXPECT_FALSE(ctrl->IsValid());
    ctrl->SetRange(40, 60);
    ctrl->SetValue("50");
    EXPECT_TRUE(ctrl->IsValid());
}

TEST_F(PdTextCtrlTest, GetDateTimeReadsDatesAtMidnightAndTimesIntoToday) {
    for (pdTextCtrlType type : {pdTEXT_DATE, pdTEXT_PLAIN, pdTEXT_LONG, pdTEXT_DOUBLE}) {
        pdTextCtrl* ctrl = Make(type, "24-5-6");
        EXPECT_EQ(wxDateTime(6, wxDateTime::May, 24), ctrl->GetDateTime()) << type;
        ctrl->SetValue("12:30");
        EXPECT_FALSE(ctrl->GetDateTime().IsValid()) << type;
    }
    pdTextCtrl* ctrl = Make(pdTEXT_TIME);
    for (const char* text : {"7:5", "24:00", "", "12:60", "24:01"}) {
        ctrl->SetValue(text);
        const wxDateTime before = wxDateTime::Now(), time = ctrl->GetDateTime(),
                         after = wxDateTime::Now();
        if (ctrl->IsValid()) {
            const bool midnight = text[0] == '2'; // 24:00 is tomorrow's 0:00
            EXPECT_EQ(midnight ? 0 : 7, time.GetHour());
            EXPECT_EQ(midnight ? 0 : 5, time.GetMinute());
            const wxDateTime day = midnight ? after + wxDateSpan::Day() : after;
            EXPECT_TRUE(time.IsSameDate(day)) << text;
        } else {
            EXPECT_TRUE(time.IsBetween(before, after)) << "bad text gives now: " << text;
        }
    }
}

// What each setter leaves on a fresh control: text, flag, background (which
// OnText set on the way), and never an altered field.
TEST_F(PdTextCtrlTest, SettersWriteTextAndFlag) {
    wxLocale locale("C", "C", "C", false);
    using P = pdTextCtrl*;
    using Set = std::function<void(P)>;
    const wxDateTime moment(6, wxDateTime::May, 2024, 14, 5, 33);
    const struct {
        pdTextCtrlType type;
        Set set;
        const char* text;
        bool valid;
        const char* background;
    } cases[] = {
        {pdTEXT_LONG, [](P t) { t->SetText("abc"); }, "abc", false, "yellow"},
        {pdTEXT_LONG, [](P t) { t->SetText("42"); }, "42", true, "system"},
        {pdTEXT_DATE, [](P t) { t->SetNoValue(); }, "####", false, "yellow"},
        {pdTEXT_PLAIN, [](P t) { t->SetNoValue(); }, "####", false, "system"},
        {pdTEXT_LONG, [](P t) { t->SetLong(LONG_MIN); }, "-9223372036854775808", true, "system"},
        {pdTEXT_LONG, [](P t) { t->SetRange(10, 20), t->SetLong(5); }, "5", true, "yellow"},
        {pdTEXT_DOUBLE, [](P t) { t->SetDouble(1234567.0); }, "1.23457e+06", true, "system"},
        {pdTEXT_DOUBLE, [](P t) { t->SetDouble(1e-5); }, "1e-05", true, "system"},
        {pdTEXT_DOUBLE, [](P t) { t->SetRange(0, 1), t->SetDouble(2.5); }, "2.5", true, "yellow"},
        {pdTEXT_DATE, [](P t) { t->SetDate(24, 5, 6); }, "0024-05-06", true, "system"},
        {pdTEXT_DATE, [](P t) { t->SetDate(2024, 2, 30); }, "2024-02-30", false, "yellow"},
        {pdTEXT_DATE, [](P t) { t->SetDate(2024, -1, 5); }, "2024--1-05", false, "yellow"},
        {pdTEXT_LONG, [](P t) { t->SetDate(2024, 5, 6); }, "2024-05-06", true, "yellow"},
        {pdTEXT_TIME, [](P t) { t->SetTime(7, 5); }, "07:05", true, "system"},
        {pdTEXT_TIME, [](P t) { t->SetTime(24, 0); }, "24:00", true, "system"},
        {pdTEXT_TIME, [](P t) { t->SetTime(24, 30); }, "24:30", false, "yellow"},
        {pdTEXT_TIME, [](P t) { t->SetTime(100, 7); }, "100:07", false, "yellow"},
        {pdTEXT_DATE, [&](P t) { t->SetDateTime(moment); }, "2024-05-06", true, "system"},
        {pdTEXT_TIME, [&](P t) { t->SetDateTime(moment); }, "14:05", true, "system"},
        {pdTEXT_LONG, [&](P t) { t->SetDateTime(moment); }, "14:05", true, "yellow"},
    };
    AssertCapture capture;
    for (const auto& c : cases) {
        pdTextCtrl* ctrl = Make(c.type);
        c.set(ctrl);
        EXPECT_EQ(c.text, ctrl->GetText());
        EXPECT_EQ(c.valid, ctrl->IsValid()) << c.text;
        EXPECT_FALSE(ctrl->IsAltered()) << c.text;
        EXPECT_EQ(c.background, Background(ctrl)) << c.text;
    }
    EXPECT_EQ(0u, capture.count());
}

TEST_F(PdTextCtrlTest, NumberGettersIgnoreTheKindAndFallBack) {
    wxLocale locale("C", "C", "C", false);
    pdTextCtrl* ctrl = Make(pdTEXT_DATE, "7");
    ctrl->SetRange(100, 200);
    const struct {
        const char* text;
        long whole;
        double number;
    } cases[] = {{"7", 7, 7.0}, {"", 0, 0}, {"####", 0, 0}, {"abc", 0, 0}, {"12.5abc", 12, 12.5}};
    for (const auto& g : cases) {
        ctrl->SetValue(g.text);
        EXPECT_EQ(g.whole, ctrl->GetLong()) << g.text;
        EXPECT_EQ(g.number, ctrl->GetDouble()) << g.text;
    }
    ctrl->SetDouble(1.0 / 3.0);
    EXPECT_EQ(0.333333, ctrl->GetDouble());
    ctrl->SetLong(LONG_MAX);
    EXPECT_EQ(LONG_MAX, ctrl->GetLong());
}

// Real input.

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
    ASSERT_TRUE(ShowAndActivate(m_frame));
    ASSERT_TRUE(FocusAndWait(ctrl));
    ASSERT_TRUE(TypeAndWait(ctrl, "7", "7"));
    EXPECT_TRUE(ctrl->IsValid());
    EXPECT_TRUE(ctrl->IsAltered());
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
    ASSERT_TRUE(ShowAndActivate(m_frame));
    ASSERT_TRUE(FocusAndWait(ctrl));
    ctrl->SelectAll();
    ASSERT_TRUE(TypeAndWait(ctrl, "2024-05-06", "2024-05-06"));
    EXPECT_TRUE(ctrl->IsValid());
    EXPECT_TRUE(ctrl->IsAltered());
    EXPECT_EQ("white", Background(ctrl));
    EXPECT_EQ(wxDateTime(6, wxDateTime::May, 2024), ctrl->GetDateTime());
    EXPECT_GT(OnScreen(ctrl, *wxWHITE), 0.8);
    SaveScreenshot("pdtextctrl-date-typed", m_frame);
}

TEST_F(PdTextCtrlTest, FocusChangesReachTheParentAsCommandEvents) {
    pdTextCtrl* first = Make(pdTEXT_LONG, "x", 101, wxPoint(10, 10));
    pdTextCtrl* second = Make(pdTEXT_DATE, "2024-05-06", 102, wxPoint(10, 60));
    ASSERT_TRUE(ShowAndActivate(m_frame));
    ASSERT_TRUE(FocusAndWait(first));
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
    EXPECT_TRUE(first->IsValid());
    EXPECT_EQ(first->GetValue(), "x");
    EXPECT_TRUE(m_textIds.empty());
}

} // namespace
