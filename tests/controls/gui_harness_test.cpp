// The GUI test harness itself: bounded waits that still run timers and queued
// calls, screenshots that follow what is drawn, and assertions captured
// under the GUI main.
#include "assert_capture.h"
#include "gui_helpers.h"
#include "screenshot.h"
#include "tempdir.h"

#include <gtest/gtest.h>
#include <wx/frame.h>
#include <wx/image.h>
#include <wx/panel.h>
#include <wx/timer.h>
#include <wx/utils.h>

#include <chrono>

namespace {

class HarnessTest : public testing::Test {
protected:
    void SetUp() override {
        m_frame = new wxFrame(nullptr, wxID_ANY, "harness", wxPoint(60, 60), wxSize(240, 160));
        m_panel = new wxPanel(m_frame, wxID_ANY);
    }
    void TearDown() override { DestroyAndWait(m_frame); }

    wxFrame* m_frame = nullptr;
    wxPanel* m_panel = nullptr;
};

long long MillisecondsSince(std::chrono::steady_clock::time_point start) {
    return std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() -
                                                                 start)
        .count();
}

} // namespace

TEST_F(HarnessTest, WaitForGivesUpAfterItsTimeLimit) {
    const auto start = std::chrono::steady_clock::now();
    EXPECT_FALSE(WaitFor([] { return false; }, 200));
    const long long elapsed = MillisecondsSince(start);
    EXPECT_GE(elapsed, ScaledMs(200));
    EXPECT_LT(elapsed, ScaledMs(2000));

    const auto quick = std::chrono::steady_clock::now();
    EXPECT_TRUE(WaitFor([] { return true; }));
    EXPECT_LT(MillisecondsSince(quick), ScaledMs(1000));
}

TEST_F(HarnessTest, TimersAndQueuedCallsRunWhileWaiting) {
    int ticks = 0;
    wxTimer timer(m_panel);
    m_panel->Bind(wxEVT_TIMER, [&ticks](wxTimerEvent&) { ++ticks; });
    timer.Start(50);
    EXPECT_TRUE(WaitFor([&ticks] { return ticks >= 3; }, 3000));
    timer.Stop();

    bool called = false;
    m_panel->CallAfter([&called] { called = true; });
    EXPECT_FALSE(called);
    EXPECT_TRUE(WaitFor([&called] { return called; }));
}

TEST_F(HarnessTest, ScreenshotsFollowWhatIsDrawn) {
    m_panel->SetBackgroundColour(wxColour(200, 0, 0));
    ASSERT_TRUE(ShowAndActivate(m_frame));
    EXPECT_TRUE(WaitFor(
        [this] { return ShareOfColour(CaptureWindow(m_panel), wxColour(200, 0, 0)) > 0.95; }));

    m_panel->SetBackgroundColour(wxColour(0, 0, 200));
    m_panel->Refresh();
    EXPECT_TRUE(WaitFor(
        [this] { return ShareOfColour(CaptureWindow(m_panel), wxColour(0, 0, 200)) > 0.95; }));
    const wxImage image = CaptureWindow(m_panel);
    EXPECT_EQ(image.GetSize(), m_panel->GetSize());
}

TEST_F(HarnessTest, SaveScreenshotWritesAPngOnlyWhenAskedTo) {
    ASSERT_TRUE(ShowAndActivate(m_frame));
    wxString saved;
    const bool hadDirectory = wxGetEnv("WXSUPPORT_SCREENSHOTS", &saved);

    wxUnsetEnv("WXSUPPORT_SCREENSHOTS");
    EXPECT_FALSE(SaveScreenshot("nowhere", m_frame));

    TempDir dir;
    wxSetEnv("WXSUPPORT_SCREENSHOTS", wxString::FromUTF8(dir.path() + "/shots"));
    EXPECT_TRUE(SaveScreenshot("frame", m_frame));
    wxImage image;
    EXPECT_TRUE(image.LoadFile(wxString::FromUTF8(dir.file("shots/frame.png")), wxBITMAP_TYPE_PNG));
    EXPECT_EQ(image.GetSize(), m_frame->GetSize());

    if (hadDirectory)
        wxSetEnv("WXSUPPORT_SCREENSHOTS", saved);
    else
        wxUnsetEnv("WXSUPPORT_SCREENSHOTS");
}

TEST_F(HarnessTest, AssertionsAreCapturedNotShown) {
    AssertCapture capture;
    wxFAIL_MSG("harness check");
    ASSERT_EQ(capture.count(), 1u);
    EXPECT_EQ(capture.asserts()[0].msg, "harness check");
}
