// NotificationPanel: the banner and its fade.
//
// The fade walks m_fadePosition from 0 towards 1 by repeated addition of
// 1 / (m_fadeTime * m_fadeRate). In double arithmetic the sixth sum of 1/6
// lands just below 1.0, so the standing values give seven ticks (700 ms), the
// last of which sets m_fadeTo exactly and stops the timer. Each channel of the
// mixes is cut towards zero, never rounded.
#include <wxsupport/notify/notificationpanel.h>

#include <wx/artprov.h>
#include <wx/bitmap.h>
#include <wx/button.h>
#include <wx/settings.h>
#include <wx/sizer.h>
#include <wx/statbmp.h>
#include <wx/stattext.h>

namespace {

// One channel of the mix at `position`: from + (to - from) * position, cut
// towards zero.
unsigned char MixChannel(unsigned char from, unsigned char to, double position) {
    const int difference = int(to) - int(from);
    return static_cast<unsigned char>(static_cast<int>(difference * position + from));
}

} // namespace

NotificationPanel::NotificationPanel(wxWindow* parent)
    : wxWindow(parent, wxID_ANY, wxDefaultPosition, wxDefaultSize, 0, wxPanelNameStr),
      m_fadeTimer(), m_fadePosition(0.0), m_fadeFrom(), m_fadeTo(), m_fadeRate(0.0),
      m_fadeTime(0.0), m_icon(nullptr), m_label(nullptr), m_closeButton(nullptr), m_sizer(nullptr),
      m_artClient() {
    m_icon = new wxStaticBitmap(this, wxID_ANY, wxNullBitmap, wxDefaultPosition, wxDefaultSize, 0,
                                wxStaticBitmapNameStr);
    m_label = new wxStaticText(this, wxID_ANY, wxEmptyString, wxDefaultPosition, wxDefaultSize, 0,
                               wxStaticTextNameStr);
    m_closeButton = new wxButton(this, wxID_CLOSE, wxEmptyString, wxDefaultPosition, wxDefaultSize,
                                 0, wxDefaultValidator, wxButtonNameStr);

    m_sizer = new wxBoxSizer(wxHORIZONTAL);
    m_sizer->Add(m_icon, 0, wxALIGN_CENTER_VERTICAL | wxLEFT | wxTOP | wxBOTTOM, 12);
    m_sizer->Add(m_label, 1, wxALIGN_CENTER_VERTICAL | wxALL, 12);
    m_sizer->Add(m_closeButton, 0, wxALIGN_CENTER_VERTICAL | wxRIGHT | wxTOP | wxBOTTOM, 12);

    SetBackgroundColour(wxSystemSettings::GetColour(wxSYS_COLOUR_INFOBK));
    m_label->SetForegroundColour(wxSystemSettings::GetColour(wxSYS_COLOUR_INFOTEXT));

    // A timer without an owner sends its events to itself.
    m_fadeTimer.Connect(wxID_ANY, wxEVT_TIMER, wxTimerEventHandler(NotificationPanel::OnTimer),
                        nullptr, this);

    m_fadeRate = 10.0;
    m_fadeTime = 0.6;
    m_artClient = "wxART_MESSAGE_BOX_C";

    SetSizerAndFit(m_sizer, true);
}

NotificationPanel::~NotificationPanel() {}

void NotificationPanel::SetLabel(const wxString& text) {
    m_label->SetLabel(text);
    m_sizer->Layout();
    SetMinSize(m_sizer->ComputeFittingClientSize(this));
}

void NotificationPanel::SetIcon(wxString artId) {
    m_icon->SetBitmap(wxArtProvider::GetBitmap(artId, m_artClient, wxDefaultSize));
    m_sizer->Show(m_icon, true, false);
    m_sizer->Layout();
    m_sizer->SetSizeHints(this);
}

void NotificationPanel::SetIconSize(const wxString& artClient) {
    if (m_artClient != artClient)
        m_artClient = artClient;
}

void NotificationPanel::HideIcon() {
    m_sizer->Show(m_icon, false, false);
    m_sizer->Layout();
    m_sizer->SetSizeHints(this);
}

void NotificationPanel::ShowCloseButton(bool show) {
    m_sizer->Show(m_closeButton, show, false);
    m_sizer->Layout();
    m_sizer->SetSizeHints(this);
}

void NotificationPanel::FadeIn() {
    m_fadeFrom = wxSystemSettings::GetColour(wxSYS_COLOUR_BTNFACE);
    SetBackgroundColour(m_fadeFrom);
    m_fadePosition = 0.0;
    m_fadeTo = wxSystemSettings::GetColour(wxSYS_COLOUR_INFOBK);
    m_fadeTimer.Start(static_cast<int>(1000.0 / m_fadeRate), false);
}

void NotificationPanel::OnTimer(wxTimerEvent&) {
    m_fadePosition += 1.0 / (m_fadeTime * m_fadeRate);
    if (m_fadePosition >= 1.0) {
        SetBackgroundColour(m_fadeTo);
        Refresh(true, nullptr);
        m_fadeTimer.Stop();
        return;
    }
    const wxColour mix(MixChannel(m_fadeFrom.Red(), m_fadeTo.Red(), m_fadePosition),
                       MixChannel(m_fadeFrom.Green(), m_fadeTo.Green(), m_fadePosition),
                       MixChannel(m_fadeFrom.Blue(), m_fadeTo.Blue(), m_fadePosition), 255);
    SetBackgroundColour(mix);
    Refresh(true, nullptr);
}

void NotificationPanel::OnErase(wxEraseEvent&) {}
