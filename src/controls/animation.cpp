#include <wxsupport/controls/animation.h>

#include "platform/bitmapres.h"

#include <wx/dcclient.h>

namespace Widgets {

Animation::Animation(wxWindow* parent, int id, const wxString& stripName, unsigned int frameCount)
    : wxWindow(parent, id, wxDefaultPosition, wxDefaultSize, 0, wxPanelNameStr), frameIndex(0),
      playing(false), interval(50) {
    // A count of 0 means no load here, unlike in load, where it means square
    // frames.
    if (!stripName.empty() && frameCount != 0)
        load(stripName, frameCount);
    // A default-constructed wxTimer sends its events to itself.
    timer.Bind(wxEVT_TIMER, &Animation::onTimerEvent, this, wxID_ANY);
    Bind(wxEVT_PAINT, &Animation::onPaintEvent, this, wxID_ANY);
}

// The frames go first, then the timer (which stops), then the window.
Animation::~Animation() {}

bool Animation::load(const wxString& stripName, unsigned int frameCount) {
    wxBitmap strip;
    if (bitmapres_load(&strip, stripName))
        return load(strip, frameCount);
    stop();
    return false;
}

bool Animation::load(const wxBitmap& strip, unsigned int frameCount) {
    frames.clear();
    if (!strip.IsOk()) {
        stop();
        return false;
    }

    const int width = strip.GetWidth();
    const int height = strip.GetHeight();
    if (frameCount == 0 && height > 0)
        frameCount = static_cast<unsigned int>(width / height);
    // A count still 0 (a strip narrower than high, or of no height) can't
    // divide anything: the same failure as a width that doesn't divide.
    if (frameCount == 0 || static_cast<unsigned int>(width) % frameCount != 0) {
        stop();
        return false;
    }
    const int frameWidth = static_cast<int>(static_cast<unsigned int>(width) / frameCount);

    frames.reserve(frameCount);
    for (unsigned int i = 0; i < frameCount; ++i)
        frames.push_back(
            strip.GetSubBitmap(wxRect(static_cast<int>(i) * frameWidth, 0, frameWidth, height)));
    SetMinSize(frames.front().GetSize());
    frameIndex = 0;
    return true;
}

void Animation::play() {
    if (playing)
        return;
    playing = true;
    timer.Start(interval, false);
}

void Animation::pause() {
    if (!playing)
        return;
    playing = false;
    timer.Stop();
}

void Animation::stop() {
    if (!playing)
        return;
    timer.Stop();
    frameIndex = 0;
    playing = false;
}

void Animation::setInterval(int milliseconds) {
    interval = milliseconds;
    if (playing)
        timer.Start(interval, false);
}

void Animation::onTimerEvent(wxTimerEvent&) {
    if (!playing)
        return;
    ++frameIndex;
    if (frameIndex >= frames.size())
        frameIndex = 0;
    Refresh(true, NULL);
}

void Animation::onPaintEvent(wxPaintEvent&) {
    // The plain paint context: the erase that Refresh asks for is all the
    // clearing there is.
    wxPaintDC dc(this);
    if (frames.empty() || frameIndex >= frames.size())
        return;
    const wxBitmap& frame = frames[frameIndex];
    const wxSize client = GetClientSize();
    const wxSize size = frame.GetSize();
    // Centred in a larger window (the odd pixel to the right or bottom); held
    // at the top left corner, and clipped, in a smaller one.
    const int left = client.x > size.x ? (client.x - size.x) / 2 : 0;
    const int top = client.y > size.y ? (client.y - size.y) / 2 : 0;
    dc.DrawBitmap(frame, left, top, false);
}

} // namespace Widgets
