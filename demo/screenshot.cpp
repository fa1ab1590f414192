#include "screenshot.h"

#include <wx/image.h>
#include <wx/window.h>

// Xlib last: its macros (None, Bool, Status) would clash with names above.
#include <X11/Xlib.h>
#include <X11/Xutil.h>

// The pixels come from the X server's root window through a connection of
// our own: under GTK 3, wxScreenDC and wxWindowDC can't be read back.

namespace {

unsigned char Channel(unsigned long pixel, unsigned long mask) {
    if (!mask)
        return 0;
    int shift = 0;
    while (!((mask >> shift) & 1UL))
        ++shift;
    const unsigned long top = mask >> shift;
    return static_cast<unsigned char>(((pixel & mask) >> shift) * 255 / top);
}

} // namespace

bool SaveWindowPicture(wxWindow* window, const wxString& path) {
    Display* display = XOpenDisplay(nullptr);
    if (!display)
        return false;
    const int screen = DefaultScreen(display);
    const wxRect rect = window->GetScreenRect().Intersect(
        wxRect(0, 0, DisplayWidth(display, screen), DisplayHeight(display, screen)));
    XImage* pixels = rect.IsEmpty()
                         ? nullptr
                         : XGetImage(display, RootWindow(display, screen), rect.x, rect.y,
                                     static_cast<unsigned>(rect.width),
                                     static_cast<unsigned>(rect.height), AllPlanes, ZPixmap);
    wxImage image;
    if (pixels) {
        image.Create(rect.width, rect.height, false);
        unsigned char* out = image.GetData();
        for (int y = 0; y < rect.height; ++y) {
            for (int x = 0; x < rect.width; ++x) {
                const unsigned long p = XGetPixel(pixels, x, y);
                *out++ = Channel(p, pixels->red_mask);
                *out++ = Channel(p, pixels->green_mask);
                *out++ = Channel(p, pixels->blue_mask);
            }
        }
        XDestroyImage(pixels);
    }
    XCloseDisplay(display);
    return image.IsOk() && image.SaveFile(path, wxBITMAP_TYPE_PNG);
}
