#include "screenshot.h"

#include <cstdlib>

#include <wx/filename.h>
#include <wx/utils.h>
#include <wx/window.h>

// Xlib last: its macros (None, Bool, Status) would clash with names above.
#include <X11/Xlib.h>
#include <X11/Xutil.h>

// The pixels are read from the X server with XGetImage on a connection of our
// own. wxScreenDC is no use here: under GTK 3 a Blit from it keeps giving the
// first picture taken in the process, whatever has been drawn since.

namespace {

// Position of the lowest set bit and number of set bits of a channel mask.
void MaskShape(unsigned long mask, int& shift, int& bits) {
    shift = 0;
    bits = 0;
    if (!mask)
        return;
    while (!(mask & 1UL)) {
        mask >>= 1;
        ++shift;
    }
    while (mask & 1UL) {
        mask >>= 1;
        ++bits;
    }
}

unsigned char Channel(unsigned long pixel, unsigned long mask, int shift, int bits) {
    if (!bits)
        return 0;
    const unsigned long value = (pixel & mask) >> shift;
    const unsigned long top = (1UL << bits) - 1;
    return static_cast<unsigned char>(value * 255 / top);
}

} // namespace

wxImage CaptureScreenRect(const wxRect& requested) {
    Display* display = XOpenDisplay(nullptr);
    if (!display)
        return wxImage();
    const int screen = DefaultScreen(display);
    const wxRect rect = requested.Intersect(
        wxRect(0, 0, DisplayWidth(display, screen), DisplayHeight(display, screen)));
    wxImage image;
    XImage* pixels = rect.IsEmpty()
                         ? nullptr
                         : XGetImage(display, RootWindow(display, screen), rect.x, rect.y,
                                     static_cast<unsigned>(rect.width),
                                     static_cast<unsigned>(rect.height), AllPlanes, ZPixmap);
    if (pixels) {
        int rShift, rBits, gShift, gBits, bShift, bBits;
        MaskShape(pixels->red_mask, rShift, rBits);
        MaskShape(pixels->green_mask, gShift, gBits);
        MaskShape(pixels->blue_mask, bShift, bBits);
        image.Create(rect.width, rect.height, false);
        unsigned char* out = image.GetData();
        for (int y = 0; y < rect.height; ++y) {
            for (int x = 0; x < rect.width; ++x) {
                const unsigned long p = XGetPixel(pixels, x, y);
                *out++ = Channel(p, pixels->red_mask, rShift, rBits);
                *out++ = Channel(p, pixels->green_mask, gShift, gBits);
                *out++ = Channel(p, pixels->blue_mask, bShift, bBits);
            }
        }
        XDestroyImage(pixels);
    }
    XCloseDisplay(display);
    return image;
}

double ShareOfColour(const wxImage& image, const wxColour& colour, const wxRect& area,
                     int tolerance) {
    if (!image.IsOk())
        return 0.0;
    const wxRect whole(0, 0, image.GetWidth(), image.GetHeight());
    const wxRect rect = area.IsEmpty() ? whole : area.Intersect(whole);
    if (rect.IsEmpty())
        return 0.0;
    long matching = 0;
    for (int y = rect.GetTop(); y <= rect.GetBottom(); ++y) {
        for (int x = rect.GetLeft(); x <= rect.GetRight(); ++x) {
            if (std::abs(image.GetRed(x, y) - colour.Red()) <= tolerance &&
                std::abs(image.GetGreen(x, y) - colour.Green()) <= tolerance &&
                std::abs(image.GetBlue(x, y) - colour.Blue()) <= tolerance)
                ++matching;
        }
    }
    return double(matching) / (double(rect.width) * rect.height);
}

wxImage CaptureWindow(wxWindow* window) {
    return CaptureScreenRect(window->GetScreenRect());
}

bool SaveScreenshot(const wxString& name, wxWindow* window) {
    wxString directory;
    if (!wxGetEnv("WXSUPPORT_SCREENSHOTS", &directory) || directory.empty())
        return false;
    if (!wxFileName::Mkdir(directory, wxS_DIR_DEFAULT, wxPATH_MKDIR_FULL))
        return false;
    const wxRect rect =
        window ? window->GetScreenRect() : wxRect(wxPoint(0, 0), wxGetDisplaySize());
    const wxImage image = CaptureScreenRect(rect);
    if (!image.IsOk())
        return false;
    return image.SaveFile(wxFileName(directory, name, "png").GetFullPath(), wxBITMAP_TYPE_PNG);
}
