/// \file
/// Film-strip animation: a child window that cuts one wide bitmap of equal
/// frames, side by side, into its frames once at load time and shows them one
/// after another on a timer (every 50 ms unless setInterval says otherwise),
/// centred in the window. It has no text, no input and no events of its own.
#ifndef WXSUPPORT_CONTROLS_ANIMATION_H
#define WXSUPPORT_CONTROLS_ANIMATION_H

#include <wxsupport/defs.h>

#include <wx/bitmap.h>
#include <wx/string.h>
#include <wx/timer.h>
#include <wx/window.h>

#include <cstdint>
#include <vector>

/// The library's one namespace.
namespace Widgets {

/// Film-strip animation: a child window that cuts one wide bitmap of equal
/// frames, side by side, into its frames once at load time and shows them one
/// after another on a timer, centred in the window.
///
/// Strip names: on Windows a strip name is the name of a bitmap resource of the
/// running application. Elsewhere it is an image file in any format that the
/// host's wxImage handlers read (call wxInitAllImageHandlers for more than
/// BMP): an absolute path is used as it stands; a relative one is looked up
/// first in the directory of the running executable, where an application
/// keeps its strips, then against the working directory.
class WXSUPPORT_API Animation : public wxWindow {
public:
    /// Loads the strip when the name isn't empty and the count isn't 0 (the
    /// result is dropped); otherwise the control stays empty until load.
    Animation(wxWindow* parent, int id, const wxString& stripName, unsigned int frameCount);
    virtual ~Animation();

    /// Loads the strip by name and cuts it as the bitmap form does. On failure
    /// the frames held so far stay and the control stops (as stop does); false.
    bool load(const wxString& stripName, unsigned int frameCount);
    /// Cuts the strip into `frameCount` frames (0: square frames, as high as the
    /// strip) and shows the first; the strip isn't kept. Playing goes on with
    /// the new frames; only the minimum size changes (to one frame's), nothing
    /// is repainted. False, with no frames left and the control stopped, for an
    /// invalid strip or a width that doesn't divide by the count (a strip
    /// narrower than high, or of no height, with a count of 0 among them).
    bool load(const wxBitmap& strip, unsigned int frameCount);

    /// Runs the timer from the frame on show; the first step comes one interval
    /// later. Nothing if already playing.
    void play();
    /// Stops the timer and keeps the frame on show. Nothing if not playing.
    void pause();
    /// Stops the timer and goes back to the first frame, without repainting.
    /// Nothing if not playing: after pause the paused frame stays.
    void stop();
    /// Milliseconds between frames; takes effect at once while playing, else at
    /// the next play.
    void setInterval(int milliseconds);

private:
    void onTimerEvent(wxTimerEvent& event);
    void onPaintEvent(wxPaintEvent& event);

    std::uint32_t frameIndex;
    bool playing;
    int interval;
    wxTimer timer;
    std::vector<wxBitmap> frames;
};

} // namespace Widgets

#endif // WXSUPPORT_CONTROLS_ANIMATION_H
