#include "gui_helpers.h"

#include <wx/app.h>
#include <wx/toplevel.h>
#include <wx/uiaction.h>
#include <wx/utils.h>
#include <wx/weakref.h>
#include <wx/window.h>

#include <chrono>

namespace {

using Clock = std::chrono::steady_clock;

// Time between two tries of a condition.
constexpr int kStepMs = 5;

bool Expired(Clock::time_point deadline) {
    return Clock::now() >= deadline;
}

int WaitScale() {
    wxString text;
    long factor = 0;
    if (wxGetEnv("WXSUPPORT_WAIT_SCALE", &text) && text.ToLong(&factor, 10) && factor >= 1 &&
        factor <= 1000)
        return static_cast<int>(factor);
    // valgrind preloads its own libraries into the program it runs.
    if (wxGetEnv("LD_PRELOAD", &text) && text.Contains("vgpreload"))
        return 10;
    return 1;
}

Clock::time_point DeadlineAfter(int ms) {
    return Clock::now() + std::chrono::milliseconds(ScaledMs(ms));
}

} // namespace

int ScaledMs(int ms) {
    static const int scale = WaitScale();
    return ms * scale;
}

void DispatchPending() {
    if (!wxTheApp)
        return;
    // Yield processes the native events and the queued wxWidgets events;
    // onlyIfNeeded keeps a nested call from asserting.
    wxTheApp->Yield(true);
    wxTheApp->ProcessPendingEvents();
    // Idle time: deferred focus and sizing in wxGTK, deletion of destroyed
    // top-level windows.
    wxTheApp->ProcessIdle();
}

bool WaitFor(const std::function<bool()>& condition, int ms) {
    const Clock::time_point deadline = DeadlineAfter(ms);
    for (;;) {
        DispatchPending();
        if (condition())
            return true;
        if (Expired(deadline))
            return condition();
        wxMilliSleep(kStepMs);
    }
}

void Pump(int ms) {
    const Clock::time_point deadline = DeadlineAfter(ms);
    do {
        DispatchPending();
        wxMilliSleep(kStepMs);
    } while (!Expired(deadline));
    DispatchPending();
}

bool ShowAndActivate(wxTopLevelWindow* window, int ms) {
    window->Show();
    if (!WaitFor([window] { return window->IsShownOnScreen(); }, ms))
        return false;
    // Without a window manager, Raise asks the X server for the input focus
    // itself; ask again now and then until the focus-in has arrived.
    const Clock::time_point deadline = DeadlineAfter(ms);
    Clock::time_point nextRaise = Clock::now();
    for (;;) {
        if (Clock::now() >= nextRaise) {
            window->Raise();
            nextRaise = Clock::now() + std::chrono::milliseconds(100);
        }
        DispatchPending();
        if (window->IsActive())
            return true;
        if (Expired(deadline))
            return false;
        wxMilliSleep(kStepMs);
    }
}

bool FocusAndWait(wxWindow* window, int ms) {
    window->SetFocus();
    return WaitFor([window] { return wxWindow::FindFocus() == window; }, ms);
}

bool ClickInto(wxWindow* window, const wxPoint& offset) {
    const wxSize size = window->GetSize();
    const wxPoint inside = offset == wxDefaultPosition ? wxPoint(size.x / 2, size.y / 2) : offset;
    const wxPoint target = window->ClientToScreen(inside);
    wxUIActionSimulator sim;
    if (!sim.MouseMove(target))
        return false;
    DispatchPending();
    const bool clicked = sim.MouseClick(wxMOUSE_BTN_LEFT);
    DispatchPending();
    return clicked;
}

bool TypeText(const char* text) {
    wxUIActionSimulator sim;
    // One character at a time, each with the modifiers it needs (Text adds
    // Shift where the keyboard map wants it, as for ":" or "#").
    for (const char* p = text; *p; ++p) {
        const char one[2] = {*p, '\0'};
        if (!sim.Text(one))
            return false;
        DispatchPending();
    }
    return true;
}

bool PressKey(int keycode, int modifiers) {
    wxUIActionSimulator sim;
    const bool pressed = sim.Char(keycode, modifiers);
    DispatchPending();
    return pressed;
}

void DestroyAndWait(wxTopLevelWindow* window) {
    wxWeakRef<wxTopLevelWindow> alive(window);
    window->Destroy();
    WaitFor([&alive] { return !alive; }, 5000);
}
