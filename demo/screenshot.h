// Screenshots for the tour: what the X server shows where a window is.
#pragma once

#include <wx/string.h>

class wxWindow;

// Saves the window as it stands on the screen (children and open popups
// included) as a PNG file; false when the screen can't be read or the file
// can't be written.
bool SaveWindowPicture(wxWindow* window, const wxString& path);
