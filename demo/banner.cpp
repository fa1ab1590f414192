#include "banner.h"

#include <wxsupport/notify/notificationpanel.h>

#include <wx/window.h>

Banner::Banner(wxWindow* parent) : m_panel(new NotificationPanel(parent)) {
    m_panel->Hide();
    // The close button's event comes up to the panel first.
    m_panel->Bind(wxEVT_BUTTON, [this](wxCommandEvent&) { Hide(); });
}

wxWindow* Banner::GetWindow() const {
    return m_panel;
}

void Banner::Show(const wxString& text, const wxString& artId) {
    m_text = text;
    m_panel->SetLabel(text);
    m_panel->SetIcon(artId);
    m_panel->Show();
    m_panel->GetParent()->Layout();
    // A new message fades in again, so that it is noticed.
    m_panel->FadeIn();
}

void Banner::Hide() {
    m_text.clear();
    m_panel->Hide();
    m_panel->GetParent()->Layout();
}

bool Banner::IsShown() const {
    return m_panel->IsShown();
}

wxString Banner::GetText() const {
    return m_text;
}
