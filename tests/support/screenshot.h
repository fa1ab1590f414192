// Screenshots of the GUI tests: what the X server shows, as wxImage for pixel
// checks, or saved as PNG into $WXSUPPORT_SCREENSHOTS for a person to look at.
#pragma once

#include <wx/colour.h>
#include <wx/gdicmn.h>
#include <wx/image.h>
#include <wx/string.h>

class wxWindow;

// The given rectangle of the screen, in screen coordinates.
wxImage CaptureScreenRect(const wxRect& rect);

// What the screen shows where the window is (frame and children included).
wxImage CaptureWindow(wxWindow* window);

// Saves the window (or, given null, the whole screen) as <name>.png in the
// directory named by WXSUPPORT_SCREENSHOTS. Returns false, and saves nothing,
// when the variable is unset or empty or the file can't be written.
bool SaveScreenshot(const wxString& name, wxWindow* window = nullptr);

// Share, 0 to 1, of the pixels in `area` of the image (the whole image if
// empty) whose channels each lie within `tolerance` of the colour's.
double ShareOfColour(const wxImage& image, const wxColour& colour, const wxRect& area = wxRect(),
                     int tolerance = 8);
