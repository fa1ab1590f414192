// Helpers of the GUI tests: bounded event pumping, bringing a window on screen
// with the keyboard focus, and real input through wxUIActionSimulator (XTest
// on X11). Nothing here waits without a time limit.
#pragma once

#include <wx/gdicmn.h>
#include <wx/string.h>
#include <wx/window.h>

#include <functional>

class wxTopLevelWindow;

// Dispatches pending GTK/X events, queued wxWidgets events and idle handling
// once.
void DispatchPending();

// A time limit stretched for slow runs: by WXSUPPORT_WAIT_SCALE if set (a
// whole factor), else by 10 under valgrind. Every helper below applies it.
int ScaledMs(int ms);

// Dispatches events, a few milliseconds apart, until `condition` holds or `ms`
// milliseconds have passed. Returns the condition's last answer.
bool WaitFor(const std::function<bool()>& condition, int ms = 5000);

// Dispatches events for `ms` milliseconds.
void Pump(int ms);

// Shows and raises the window and waits until it is mapped and holds the
// keyboard focus of the display (Xvfb runs without a window manager, so the
// focus is asked for directly). Returns false if that did not happen in time.
bool ShowAndActivate(wxTopLevelWindow* window, int ms = 5000);

// Gives `window` the keyboard focus and waits until wxWidgets reports it.
bool FocusAndWait(wxWindow* window, int ms = 5000);

// Moves the real pointer to `offset` inside the window (its centre if
// wxDefaultPosition) and clicks the left button there.
bool ClickInto(wxWindow* window, const wxPoint& offset = wxDefaultPosition);

// Types ASCII text, key by key, into whatever has the focus, then dispatches
// the resulting events.
bool TypeText(const char* text);

// Presses one key (a WXK_ code or an ASCII character) with optional wxMOD_
// modifiers.
bool PressKey(int keycode, int modifiers = 0);

// Destroys a top-level window and dispatches events until it is deleted.
void DestroyAndWait(wxTopLevelWindow* window);

// First window of type T below `parent` (depth first), with `label` if one is
// given; nullptr when there is none.
template <class T>
T* FindChild(wxWindow* parent, const wxString& label = wxString()) {
    for (wxWindow* w : parent->GetChildren()) {
        if (T* t = dynamic_cast<T*>(w); t && (label.empty() || t->GetLabel() == label))
            return t;
        if (T* t = FindChild<T>(w, label))
            return t;
    }
    return nullptr;
}
