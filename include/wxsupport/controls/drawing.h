/// \file
/// Text helpers for a host's windows and paint code: a bold font, the size a
/// field needs for a number of characters and lines, and text of several lines
/// drawn on a device context. They keep no state.
#ifndef WXSUPPORT_CONTROLS_DRAWING_H
#define WXSUPPORT_CONTROLS_DRAWING_H

#include <wxsupport/defs.h>

#include <wx/gdicmn.h>
#include <wx/string.h>

class wxDC;
class wxWindow;

/// Gives the window a bold copy of its own font; size, face and style stay.
WXSUPPORT_API void wx_make_bold(wxWindow* window);

/// Size of the text alone (no borders or margins), in the window's font, of
/// `columns` capital X by `rows` lines; -1 (left open) on a side whose count
/// is negative, 0 for a count of 0. wxDefaultSize for a null window.
WXSUPPORT_API wxSize wx_size_to_fit_text(const wxWindow* window, int columns, int rows);

/// Draws the lines of `text` with their top left corner at x, y, one line
/// height apart; empty lines take no room. wxALIGN_CENTER_HORIZONTAL or
/// wxALIGN_CENTER_VERTICAL in `flags` centres the lines on each other within
/// the width of the widest, which starts at x; no other flag has an effect.
/// Uses the font and colours the context holds.
WXSUPPORT_API void wx_dc_draw_text(wxDC* dc, const wxString& text, int x, int y, long flags);

#endif // WXSUPPORT_CONTROLS_DRAWING_H
