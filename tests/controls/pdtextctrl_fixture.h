// Shared set-up of the pdTextCtrl tests: a frame with a panel as the parent of
// the controls under test, which records the command events that reach it.
#pragma once

#include "gui_helpers.h"

#include <gtest/gtest.h>
#include <wx/frame.h>
#include <wx/panel.h>
#include <wxsupport/controls/pdtextctrl.h>

#include <string>
#include <utility>
#include <vector>

class PdTextCtrlTest : public testing::Test {
protected:
    void SetUp() override {
        m_frame = new wxFrame(nullptr, wxID_ANY, "pdTextCtrl", wxPoint(40, 40), wxSize(420, 220));
        m_panel = new wxPanel(m_frame, wxID_ANY);
        m_panel->Bind(wxEVT_TEXT, [this](wxCommandEvent& e) { m_textIds.push_back(e.GetId()); });
        auto record = [this](wxCommandEvent& e) {
            m_focusEvents.emplace_back(e.GetEventType(), e.GetId());
        };
        m_panel->Bind(wxEVT_COMMAND_SET_FOCUS, record);
        m_panel->Bind(wxEVT_COMMAND_KILL_FOCUS, record);
    }

    void TearDown() override { DestroyAndWait(m_frame); }

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

    wxFrame* m_frame = nullptr;
    wxPanel* m_panel = nullptr;
    std::vector<int> m_textIds;                             // ids of the text events
    std::vector<std::pair<wxEventType, int>> m_focusEvents; // type and id
};
