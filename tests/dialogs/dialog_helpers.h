// Shared steps of the dialog tests: the rows a dialog shows, and a modal run
// ended by a real click on its Close button.
#pragma once

#include "gui_helpers.h"

#include <wx/dialog.h>
#include <wx/panel.h>
#include <wx/stattext.h>

#include <functional>
#include <map>
#include <vector>

// Labels of the shown texts on the dialog's panel, top to bottom.
inline std::vector<wxString> ShownRows(wxWindow* dlg) {
    std::multimap<int, wxString> rows; // by top edge; an empty row may share it
    for (wxWindow* c : FindChild<wxPanel>(dlg)->GetChildren())
        if (auto* t = dynamic_cast<wxStaticText*>(c); t && t->IsShown())
            rows.emplace(t->GetPosition().y, t->GetLabel());
    std::vector<wxString> labels;
    for (const auto& row : rows)
        labels.push_back(row.second);
    return labels;
}

// Runs the dialog modally: `check` looks at it, then a real click on Close.
// Moved fully onto the screen, or the click could land on another button.
inline int RunAndClose(wxDialog* dlg, const std::function<void()>& check) {
    dlg->CallAfter([dlg, check] {
        WaitFor([dlg] { return dlg->IsShownOnScreen(); });
        check();
        ClickInto(dlg->FindWindow(wxID_CLOSE));
    });
    dlg->Move(10, 10);
    return dlg->ShowModal();
}
