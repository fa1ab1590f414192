// wxDialogWithNotification: shows and hides the banner and keeps the dialog's
// minimum size in step with it.
#include <wxsupport/notify/dialogwithnotification.h>
#include <wxsupport/notify/notificationpanel.h>

#include <wx/sizer.h>

wxDialogWithNotification::wxDialogWithNotification(wxWindow* parent, int id, const wxString& title,
                                                   const wxPoint& pos, const wxSize& size,
                                                   long style, const wxString& name)
    : wxDialog(parent, id, title, pos, size, style, name), m_notification(nullptr),
      m_notificationShown(false), m_topSizer(nullptr) {
    m_topSizer = new wxBoxSizer(wxVERTICAL);
    m_notification = new NotificationPanel(this);
    m_topSizer->Add(m_notification, 0, wxEXPAND, 0);
    m_topSizer->Show(m_notification, false, false);
    SetSizerAndFit(m_topSizer, true);
    // Only the buttons inside the banner propagate through it.
    m_notification->Connect(wxID_ANY, wxEVT_BUTTON,
                            wxCommandEventHandler(wxDialogWithNotification::OnButton), nullptr,
                            this);
    m_notificationShown = false;
}

wxDialogWithNotification::~wxDialogWithNotification() {}

NotificationPanel* wxDialogWithNotification::GetNotification() {
    return m_notification;
}

wxSizer* wxDialogWithNotification::GetTopSizer() {
    return m_topSizer;
}

void wxDialogWithNotification::ShowNotification(const wxString& text, wxString artId) {
    m_notification->SetLabel(text);
    m_notification->SetIcon(artId);
    ShowNotification();
}

void wxDialogWithNotification::ShowNotification() {
    if (!m_notificationShown) {
        m_notificationShown = true;
        m_notification->FadeIn();
    }
    m_topSizer->Show(m_notification, true, false);
    m_topSizer->Layout();
    m_notification->Layout();

    const wxSize fitting = m_topSizer->ComputeFittingClientSize(this);
    wxSize size = GetSize();
    SetMinSize(m_topSizer->ComputeFittingWindowSize(this));
    // A side grows only where the banner's content needs more than the
    // dialog's outer size; -1 leaves that side as it is.
    if (!(fitting.GetWidth() > size.GetWidth()))
        size.SetWidth(-1);
    if (!(fitting.GetHeight() > size.GetHeight()))
        size.SetHeight(-1);
    if (size.GetWidth() != -1 || size.GetHeight() != -1)
        SetSize(size);

    m_notification->Layout();
    m_topSizer->Layout();
}

void wxDialogWithNotification::HideNotification() {
    if (!m_notificationShown)
        return;
    m_notificationShown = false;
    m_topSizer->Show(m_notification, false, false);
    m_topSizer->Layout();
    SetMinSize(m_topSizer->ComputeFittingWindowSize(this));
}

void wxDialogWithNotification::OnButton(wxCommandEvent&) {
    HideNotification();
}
