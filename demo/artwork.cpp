#include "artwork.h"

#include <wx/brush.h>
#include <wx/graphics.h>
#include <wx/image.h>
#include <wx/pen.h>

#include <cmath>
#include <cstring>
#include <memory>

namespace {

const wxColour kBlue(0x34, 0x65, 0xa4);

// A fully transparent image to draw into.
wxImage Transparent(int width, int height) {
    wxImage image(width, height);
    image.InitAlpha();
    std::memset(image.GetAlpha(), 0, static_cast<size_t>(width) * height);
    return image;
}

} // namespace

wxBitmap SpinnerStrip(int size) {
    const int frames = static_cast<int>(kSpinnerFrames);
    wxImage image = Transparent(size * frames, size);
    {
        std::unique_ptr<wxGraphicsContext> gc(wxGraphicsContext::Create(image));
        const double pi = std::acos(-1.0);
        const double outer = size * 0.45;
        const double inner = size * 0.22;
        for (int frame = 0; frame < frames; ++frame) {
            const double cx = frame * size + size / 2.0;
            const double cy = size / 2.0;
            for (int spoke = 0; spoke < frames; ++spoke) {
                // The spoke at the frame's number is the brightest; the ones
                // behind it fade out.
                const int age = (frame - spoke + frames) % frames;
                const unsigned char alpha = static_cast<unsigned char>(255 - age * 18);
                const double angle = 2 * pi * spoke / frames - pi / 2;
                gc->SetPen(wxPen(wxColour(kBlue.Red(), kBlue.Green(), kBlue.Blue(), alpha),
                                 std::max(2, size / 12), wxPENSTYLE_SOLID));
                gc->StrokeLine(cx + inner * std::cos(angle), cy + inner * std::sin(angle),
                               cx + outer * std::cos(angle), cy + outer * std::sin(angle));
            }
        }
    }
    return wxBitmap(image);
}

wxBitmap GalleryEmblem(int size) {
    wxImage image = Transparent(size, size);
    {
        std::unique_ptr<wxGraphicsContext> gc(wxGraphicsContext::Create(image));
        const double s = size;
        gc->SetPen(*wxTRANSPARENT_PEN);
        gc->SetBrush(gc->CreateLinearGradientBrush(0, 0, 0, s, wxColour(0x72, 0x9f, 0xcf), kBlue));
        gc->DrawRoundedRectangle(1, 1, s - 2, s - 2, s / 6);
        // Three framed pictures on a wall: the gallery.
        const wxColour frames[] = {wxColour(0xfc, 0xe9, 0x4f), wxColour(0x8a, 0xe2, 0x34),
                                   wxColour(0xef, 0x29, 0x29)};
        const double w = s * 0.22;
        for (int i = 0; i < 3; ++i) {
            const double x = s * 0.12 + i * (w + s * 0.05);
            const double h = i == 1 ? s * 0.42 : s * 0.3;
            const double y = s * 0.5 - h / 2;
            gc->SetBrush(wxBrush(*wxWHITE));
            gc->DrawRectangle(x, y, w, h);
            gc->SetBrush(wxBrush(frames[i]));
            gc->DrawRectangle(x + s * 0.03, y + s * 0.03, w - s * 0.06, h - s * 0.06);
        }
        gc->SetBrush(wxBrush(wxColour(255, 255, 255, 160)));
        gc->DrawRectangle(s * 0.12, s * 0.78, s * 0.76, s * 0.04);
    }
    return wxBitmap(image);
}
