// Small pieces that several pages of the gallery share.
#pragma once

#include <wx/string.h>

class wxSizer;
class wxStaticText;
class wxTextCtrl;
class wxWindow;

// A label in the bold copy of its parent's font (wx_make_bold), sized for
// the bold text.
wxStaticText* NewHeading(wxWindow* parent, const wxString& text);
// Adds a heading and a wrapped paragraph below it to a vertical sizer, with
// the page's margins.
void AddIntroduction(wxSizer* sizer, wxWindow* parent, const wxString& title, const wxString& text);
// A read-only, unwrapped text field in a fixed-width font, for file contents.
wxTextCtrl* NewFileView(wxWindow* parent);
// The whole file as UTF-8 text; empty when it can't be read.
wxString ReadTextFile(const wxString& path);
