// Small pieces that several pages of the gallery share.
#pragma once

#include <wx/string.h>

class wxStaticText;
class wxTextCtrl;
class wxWindow;

// A label in the bold copy of its parent's font (wx_make_bold), sized for
// the bold text.
wxStaticText* NewHeading(wxWindow* parent, const wxString& text);
// A read-only, unwrapped text field in a fixed-width font, for file contents.
wxTextCtrl* NewFileView(wxWindow* parent);
// The whole file as UTF-8 text; empty when it can't be read.
wxString ReadTextFile(const wxString& path);
