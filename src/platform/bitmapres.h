// Bitmap resources of the running application, private to the library: the
// strips of Widgets::Animation. Windows (bitmapres_win.cpp): a resource name,
// loaded with wxBITMAP_TYPE_BMP_RESOURCE. POSIX (bitmapres_posix.cpp): an
// image file of any format the host's wxImage handlers read; an absolute path
// as it stands, a relative one first in the executable's directory, then
// against the working directory. Nothing is logged on failure.
#ifndef WXSUPPORT_PLATFORM_BITMAPRES_H
#define WXSUPPORT_PLATFORM_BITMAPRES_H

#include <wx/bitmap.h>
#include <wx/string.h>

// Loads the named bitmap into *bitmap; false, with *bitmap invalid, when there
// is no such bitmap or it can't be read.
bool bitmapres_load(wxBitmap* bitmap, const wxString& name);

#endif // WXSUPPORT_PLATFORM_BITMAPRES_H
