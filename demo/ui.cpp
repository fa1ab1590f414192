#include "ui.h"

#include <wxsupport/controls/drawing.h>

#include <wx/ffile.h>
#include <wx/sizer.h>
#include <wx/stattext.h>
#include <wx/textctrl.h>

#include <algorithm>

wxStaticText* NewHeading(wxWindow* parent, const wxString& text) {
    wxStaticText* heading = new wxStaticText(parent, wxID_ANY, text);
    wx_make_bold(heading);
    // The minimum size was taken with the regular font, and GTK applies the
    // new one only when it next draws: measure the bold text itself.
    const wxSize best = heading->GetBestSize();
    const wxSize bold = heading->GetTextExtent(text);
    heading->SetMinSize(wxSize(std::max(best.x, bold.x), std::max(best.y, bold.y)));
    return heading;
}

void AddIntroduction(wxSizer* sizer, wxWindow* parent, const wxString& title,
                     const wxString& text) {
    wxStaticText* paragraph = new wxStaticText(parent, wxID_ANY, text);
    paragraph->Wrap(620);
    sizer->Add(NewHeading(parent, title), 0, wxLEFT | wxRIGHT | wxTOP, 12);
    sizer->AddSpacer(6);
    sizer->Add(paragraph, 0, wxLEFT | wxRIGHT, 12);
}

wxTextCtrl* NewFileView(wxWindow* parent) {
    wxTextCtrl* view =
        new wxTextCtrl(parent, wxID_ANY, wxEmptyString, wxDefaultPosition, wxDefaultSize,
                       wxTE_MULTILINE | wxTE_READONLY | wxTE_DONTWRAP);
    view->SetFont(wxFont(wxFontInfo(9).Family(wxFONTFAMILY_TELETYPE)));
    return view;
}

wxString ReadTextFile(const wxString& path) {
    wxString text;
    wxFFile file(path, "rb");
    if (file.IsOpened())
        file.ReadAll(&text, wxConvUTF8);
    return text;
}
