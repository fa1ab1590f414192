// Shared set-up of the pdTextCtrl tests: a frame with a panel as the parent of
// the controls under test, which records the command events that reach it.
#pragma once

#include "gui_helpers.h"

#include <gtest/gtest.h>
#include <wx/frame.h>
#include <wx/panel.h>
#include <wxsupport/controls/pdtextctrl.h>

#include <string>
#include <vector>

struct ReceivedEvent {
    wxEventType type;
    int id;
    wxObject* object;
};

class PdTextCtrlTest : public testing::Test {
protected:
    void SetUp() override {
        m_frame =
            new wxFrame(nullptr, wxID_ANY, "pdTextCtrl test", wxPoint(40, 40), wxSize(420, 220));
        m_panel = new wxPanel(m_frame, wxID_ANY);
        m_panel->Bind(wxEVT_TEXT, [this](wxCommandEvent& event) {
            m_textEvents.push_back({event.GetEventType(), event.GetId(), event.GetEventObject()});
        });
        m_panel->Bind(wxEVT_COMMAND_SET_FOCUS, &PdTextCtrlTest::Record, this);
        m_panel->Bind(wxEVT_COMMAND_KILL_FOCUS, &PdTextCtrlTest::Record, this);
    }

    void TearDown() override { DestroyAndWait(m_frame); }

    pdTextCtrl* Make(pdTextCtrlType type, const wxString& value = wxString(), int id = wxID_ANY,
                     const wxPoint& pos = wxDefaultPosition) {
        return new pdTextCtrl(m_panel, id, value, pos, wxSize(200, -1), type, 0, wxDefaultValidator,
                              "pdtext");
    }

    // "system" while the control has no background of its own, else "white",
    // "yellow" or the colour's text.
    static std::string Background(pdTextCtrl* ctrl) {
        if (!ctrl->UseBackgroundColour())
            return "system";
        const wxColour colour = ctrl->GetBackgroundColour();
        if (colour == wxColour(255, 255, 255))
            return "white";
        if (colour == wxColour(255, 255, 0))
            return "yellow";
        return colour.GetAsString(wxC2S_HTML_SYNTAX).ToStdString();
    }

    void Record(wxCommandEvent& event) {
        m_focusEvents.push_back({event.GetEventType(), event.GetId(), event.GetEventObject()});
    }

    wxFrame* m_frame = nullptr;
    wxPanel* m_panel = nullptr;
    std::vector<ReceivedEvent> m_textEvents;
    std::vector<ReceivedEvent> m_focusEvents;
};
