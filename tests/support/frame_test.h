// Fixture of the tests of windows: a frame with a panel that is the parent of
// the windows under test, destroyed (and waited for) after each test.
#pragma once

#include "gui_helpers.h"

#include <gtest/gtest.h>
#include <wx/frame.h>
#include <wx/panel.h>

class FrameTest : public testing::Test {
protected:
    void SetUp() override {
        m_frame = new wxFrame(nullptr, wxID_ANY, "test", wxPoint(40, 40), wxSize(420, 220));
        m_panel = new wxPanel(m_frame, wxID_ANY);
    }
    void TearDown() override { DestroyAndWait(m_frame); }

    wxFrame* m_frame = nullptr;
    wxPanel* m_panel = nullptr;
};
