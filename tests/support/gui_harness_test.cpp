// The GUI test harness itself: bounded waits that still run timers and queued
// calls, screenshots that follow what is drawn, and assertions captured
// under the GUI main.
#include "assert_capture.h"
#include "gui_helpers.h"
#include "screenshot.h"

#include <gtest/gtest.h>
#include <wx/frame.h>
#include <wx/panel.h>
#include <wx/timer.h>

#include <chrono>

namespace {

TEST(Harness, WaitsAreBoundedAndRunTimersAndQueuedCalls) {
    const auto start = std::chrono::steady_clock::now();
    EXPECT_FALSE(WaitFor([] { return false; }, 200));
    const auto elapsed = std::chrono::steady_clock::now() - start;
    EXPECT_GE(elapsed, std::chrono::milliseconds(ScaledMs(200)));
    EXPECT_LT(elapsed, std::chrono::milliseconds(ScaledMs(2000)));

    wxFrame* frame = new wxFrame(nullptr, wxID_ANY, "harness", wxPoint(60, 60), wxSize(240, 160));
    wxPanel* panel = new wxPanel(frame, wxID_ANY);
    int ticks = 0;
    bool called = false;
    wxTimer timer(panel);
    panel->Bind(wxEVT_TIMER, [&ticks](wxTimerEvent&) { ++ticks; });
    timer.Start(50);
    panel->CallAfter([&called] { called = true; });
    EXPECT_TRUE(WaitFor([&] { return ticks >= 3 && called; }, 3000));
    timer.Stop();

    for (const wxColour& colour : {wxColour(200, 0, 0), wxColour(0, 0, 200)}) {
        panel->SetBackgroundColour(colour);
        panel->Refresh();
        ASSERT_TRUE(ShowAndActivate(frame));
        EXPECT_TRUE(WaitFor([&] { return ShareOfColour(CaptureWindow(panel), colour) > 0.95; }));
    }
    EXPECT_EQ(panel->GetSize(), CaptureWindow(panel).GetSize());
    DestroyAndWait(frame);
}

TEST(Harness, AssertionsAreCapturedNotShown) {
    AssertCapture capture;
    wxFAIL_MSG("harness check");
    ASSERT_EQ(1u, capture.count());
    EXPECT_EQ("harness check", capture.asserts()[0].msg);
}

} // namespace
