/// \file
/// wxDialogWithNotification: a dialog base class that carries a notification
/// banner.
#ifndef WXSUPPORT_NOTIFY_DIALOGWITHNOTIFICATION_H
#define WXSUPPORT_NOTIFY_DIALOGWITHNOTIFICATION_H

#include <wxsupport/defs.h>

#include <wx/dialog.h>
#include <wx/event.h>
#include <wx/string.h>

class NotificationPanel;
class wxSizer;

/// Base class for a host's dialogs: a wxDialog with a NotificationPanel at the
/// top of its sizer, hidden until the dialog has something to say. Add the
/// dialog's own content to GetTopSizer(); it comes below the banner.
class WXSUPPORT_API wxDialogWithNotification : public wxDialog {
public:
    /// A dialog with the wxDialog arguments; the banner is made but not shown.
    wxDialogWithNotification(wxWindow* parent, int id, const wxString& title, const wxPoint& pos,
                             const wxSize& size, long style, const wxString& name);
    virtual ~wxDialogWithNotification();

    /// The banner, for what the dialog doesn't offer (ShowCloseButton,
    /// HideIcon, SetIconSize).
    NotificationPanel* GetNotification();
    /// The dialog's vertical sizer; the banner is its first item.
    wxSizer* GetTopSizer();
    /// Sets the banner's text and icon, then shows it.
    void ShowNotification(const wxString& text, wxString artId);
    /// Shows the banner with what it holds: fades it in unless it is on show
    /// already, and grows the dialog where the banner needs the room.
    void ShowNotification();
    /// Hides the banner and takes its room out of the minimum size; the dialog
    /// keeps its size. Does nothing while no banner is shown.
    void HideNotification();

private:
    /// The banner's close button: hides the banner; the event goes no further.
    void OnButton(wxCommandEvent& event);

    NotificationPanel* m_notification;
    bool m_notificationShown;
    wxSizer* m_topSizer;
};

#endif // WXSUPPORT_NOTIFY_DIALOGWITHNOTIFICATION_H
