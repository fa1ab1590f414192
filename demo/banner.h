// A NotificationPanel across the top of the main window, for what went wrong
// (or right) on any page. Hidden until there is something to say; its close
// button takes it away again.
#pragma once

#include <wx/string.h>

class NotificationPanel;
class wxWindow;

class Banner {
public:
    // Creates the hidden panel as a child of parent; put GetWindow() into
    // the parent's sizer.
    explicit Banner(wxWindow* parent);

    wxWindow* GetWindow() const;
    // Sets text and icon (a wxART_ id), shows the banner and fades it in.
    void Show(const wxString& text, const wxString& artId);
    void Hide();
    bool IsShown() const;
    // The text on show, empty when hidden.
    wxString GetText() const;

private:
    NotificationPanel* m_panel;
    wxString m_text;
};
