/// \file
/// NotificationPanel: a banner that fades in at the top of a dialog.
#ifndef WXSUPPORT_NOTIFY_NOTIFICATIONPANEL_H
#define WXSUPPORT_NOTIFY_NOTIFICATIONPANEL_H

#include <wxsupport/defs.h>

#include <wx/colour.h>
#include <wx/event.h>
#include <wx/string.h>
#include <wx/timer.h>
#include <wx/window.h>

class wxBoxSizer;
class wxButton;
class wxStaticBitmap;
class wxStaticText;

/// A banner for the top of a dialog: an icon, one line of text and a close
/// button, in the tooltip colours of the user's scheme, that can fade in from
/// the dialog's face colour. The close button's wxEVT_BUTTON goes up to the
/// parent; the panel never hides itself.
class WXSUPPORT_API NotificationPanel : public wxWindow {
public:
    /// Starts with icon (still without a bitmap) and close button shown, on the
    /// wxSYS_COLOUR_INFOBK background.
    explicit NotificationPanel(wxWindow* parent);
    virtual ~NotificationPanel();

    /// Sets the text (never wrapped) and makes the panel's minimum size fit it.
    virtual void SetLabel(const wxString& text) override;
    /// Shows the art provider's bitmap for artId in the current art client; an
    /// unknown id leaves an empty icon in the layout.
    void SetIcon(wxString artId);
    /// Art client (and so icon size) for the next SetIcon; nothing is redrawn.
    void SetIconSize(const wxString& artClient);
    /// Takes the icon out of the layout until the next SetIcon.
    void HideIcon();
    /// Shows or hides the close button and fits the panel's minimum size anew.
    void ShowCloseButton(bool show);
    /// Fades the background from wxSYS_COLOUR_BTNFACE to wxSYS_COLOUR_INFOBK in
    /// 100 ms steps (seven of them); called during a fade, starts it over.
    void FadeIn();

private:
    void OnTimer(wxTimerEvent& event);
    /// Not bound: the background is erased in the ordinary way.
    void OnErase(wxEraseEvent& event);

    wxTimer m_fadeTimer;
    double m_fadePosition;
    wxColour m_fadeFrom;
    wxColour m_fadeTo;
    double m_fadeRate;
    double m_fadeTime;
    wxStaticBitmap* m_icon;
    wxStaticText* m_label;
    wxButton* m_closeButton;
    wxBoxSizer* m_sizer;
    wxString m_artClient;
};

#endif // WXSUPPORT_NOTIFY_NOTIFICATIONPANEL_H
