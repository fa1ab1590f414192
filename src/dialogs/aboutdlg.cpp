// AboutDlg: widgets, layout and the uptime row.
//
// The dialog lays itself out once, in the constructor, with only the uptime
// row visible; rows that the setters show take room at the caller's next
// Fit(). The uptime counts from AboutDlg::start_time, which is set when the
// library is loaded (library.cpp), so every dialog shows the same figure.
#include <wxsupport/dialogs/aboutdlg.h>
#include <wxsupport/text/strings.h>

#include <wx/bitmap.h>
#include <wx/button.h>
#include <wx/font.h>
#include <wx/intl.h>
#include <wx/panel.h>
#include <wx/sizer.h>
#include <wx/statbmp.h>
#include <wx/statline.h>
#include <wx/stattext.h>

AboutDlg::AboutDlg(wxWindow* parent)
    : wxDialog(parent, wxID_ANY, wxEmptyString, wxDefaultPosition, wxSize(400, 300),
               wxDEFAULT_DIALOG_STYLE, wxDialogNameStr),
      m_contentSizer(nullptr), m_textSizer(nullptr), m_headerText(nullptr),
      m_copyrightText(nullptr), m_extraCopyrightText(nullptr), m_buildInfoLabel(nullptr),
      m_buildInfoText(nullptr), m_uptimeText(nullptr), m_image(nullptr), m_panel(nullptr),
      m_closeButton(nullptr), m_updateTimer() {
    CreateWidgets();
    LayoutWidgets();
    ConnectWidgets();
    Centre(wxBOTH);
    m_closeButton->SetFocus();
    SetDefaultItem(m_closeButton);
    m_updateTimer.SetOwner(this, wxID_ANY);
    Bind(wxEVT_TIMER, &AboutDlg::OnUpdateTimer, this, wxID_ANY, wxID_ANY);
    m_updateTimer.Start(1000, false);
}

AboutDlg::~AboutDlg() {}

void AboutDlg::CreateWidgets() {
    m_panel = new wxPanel(this, wxID_ANY, wxDefaultPosition, wxDefaultSize,
                          wxTAB_TRAVERSAL | wxNO_BORDER, wxPanelNameStr);
    m_panel->SetBackgroundColour(*wxWHITE);

    m_headerText = new wxStaticText(m_panel, wxID_ANY, wxEmptyString, wxDefaultPosition,
                                    wxDefaultSize, 0, wxStaticTextNameStr);
    m_headerText->Show(false);
    wxFont headerFont = m_headerText->GetFont();
    headerFont.SetWeight(wxFONTWEIGHT_BOLD);
    const int points = headerFont.GetPointSize();
    headerFont.SetPointSize(points + (points >> 1));
    m_headerText->SetFont(headerFont);

    m_copyrightText = new wxStaticText(m_panel, wxID_ANY, wxEmptyString, wxDefaultPosition,
                                       wxDefaultSize, 0, wxStaticTextNameStr);
    m_copyrightText->Show(false);

    m_extraCopyrightText = new wxStaticText(m_panel, wxID_ANY, wxEmptyString, wxDefaultPosition,
                                            wxDefaultSize, 0, wxStaticTextNameStr);
    m_extraCopyrightText->Show(false);

    m_buildInfoLabel = new wxStaticText(m_panel, wxID_ANY, wxGetTranslation("Build info:"),
                                        wxDefaultPosition, wxDefaultSize, 0, wxStaticTextNameStr);
    m_buildInfoLabel->Show(false);
    wxFont captionFont = m_buildInfoLabel->GetFont();
    captionFont.SetWeight(wxFONTWEIGHT_BOLD);
    m_buildInfoLabel->SetFont(captionFont);

    m_buildInfoText = new wxStaticText(m_panel, wxID_ANY, wxEmptyString, wxDefaultPosition,
                                       wxDefaultSize, 0, wxStaticTextNameStr);
    m_buildInfoText->Show(false);

    m_uptimeText = new wxStaticText(m_panel, wxID_ANY,
                                    wxGetTranslation("Uptime:") + " " +
                                        FormatUptime(wxDateTime::Now() - start_time),
                                    wxDefaultPosition, wxDefaultSize, 0, wxStaticTextNameStr);

    m_image = new wxStaticBitmap(m_panel, wxID_ANY, wxNullBitmap, wxDefaultPosition, wxDefaultSize,
                                 0, wxStaticBitmapNameStr);
    m_image->Show(false);

    m_closeButton = new wxButton(this, wxID_CLOSE, wxEmptyString, wxDefaultPosition, wxDefaultSize,
                                 0, wxDefaultValidator, wxButtonNameStr);
}

void AboutDlg::LayoutWidgets() {
    wxBoxSizer* topSizer = new wxBoxSizer(wxVERTICAL);
    m_contentSizer = new wxBoxSizer(wxHORIZONTAL);
    m_textSizer = new wxBoxSizer(wxVERTICAL);

    m_textSizer->Add(m_headerText, 0, wxBOTTOM, 12);
    m_textSizer->Add(m_copyrightText, 0, wxBOTTOM, 6);
    m_textSizer->Add(m_extraCopyrightText, 0, wxBOTTOM, 6);
    m_textSizer->Add(m_uptimeText, 0, wxBOTTOM, 12);
    m_textSizer->Add(m_buildInfoLabel, 0, wxBOTTOM, 6);
    m_textSizer->Add(m_buildInfoText, 0, wxBOTTOM | wxLEFT, 12);

    m_contentSizer->Add(m_textSizer, 0, wxALL, 12);
    m_panel->SetSizer(m_contentSizer, true);
    m_contentSizer->Layout();
    m_panel->SetAutoLayout(true);

    topSizer->Add(m_panel, 0, 0, 0);

    wxBoxSizer* buttonSizer = new wxBoxSizer(wxHORIZONTAL);
    buttonSizer->Add(0, 0, 1, 0, 0);
    buttonSizer->Add(m_closeButton, 0, 0, 0);

    wxStaticLine* line = new wxStaticLine(this, wxID_ANY, wxDefaultPosition, wxDefaultSize,
                                          wxLI_HORIZONTAL, wxStaticLineNameStr);
    topSizer->Add(line, 0, wxEXPAND, 0);
    topSizer->Add(buttonSizer, 0, wxEXPAND | wxALL, 12);

    SetSizer(topSizer, true);
    topSizer->Layout();
    topSizer->SetSizeHints(this);
    SetAutoLayout(true);
}

void AboutDlg::ConnectWidgets() {
    m_closeButton->Connect(wxID_ANY, wxEVT_BUTTON, wxCommandEventHandler(AboutDlg::OnClose),
                           nullptr, this);
}

void AboutDlg::SetImage(const wxBitmap& bitmap) {
    m_image->SetBitmap(bitmap);
    m_contentSizer->Insert(0, m_image, 0, wxLEFT | wxTOP | wxBOTTOM, 12);
    m_image->Show(true);
}

void AboutDlg::SetHeader(const wxString& first, const wxString& second) {
    SetHeader(first + " " + second);
}

void AboutDlg::SetHeader(const wxString& text) {
    SetTitle(text);
    m_headerText->SetLabel(text);
    m_headerText->Show(true);
}

void AboutDlg::SetCopyright(const wxString& text) {
    m_copyrightText->SetLabel(wx_replace_copyright(text));
    m_copyrightText->Show(true);
}

void AboutDlg::SetExtraCopyright(const wxString& text) {
    m_extraCopyrightText->SetLabel(wx_replace_copyright(text));
    m_extraCopyrightText->Show(true);
}

void AboutDlg::SetBuildInfo(const wxString& text) {
    m_buildInfoText->SetLabel(text);
    m_buildInfoLabel->Show(true);
    m_buildInfoText->Show(true);
}

void AboutDlg::OnClose(wxCommandEvent&) {
    EndModal(wxID_CLOSE);
}

void AboutDlg::OnUpdateTimer(wxTimerEvent&) {
    m_uptimeText->SetLabel(wxGetTranslation("Uptime:") + " " +
                           FormatUptime(wxDateTime::Now() - start_time));
}

wxString AboutDlg::FormatUptime(const wxTimeSpan& span) {
    const char* format = wxTRANSLATE("%S seconds");
    if (span.GetWeeks() > 0)
        format = wxTRANSLATE("%E weeks, %D days, %H hours");
    else if (span.GetDays() > 0)
        format = wxTRANSLATE("%D days, %H hours, %M minutes");
    else if (span.GetHours() > 0)
        format = wxTRANSLATE("%H hours, %M minutes");
    else if (span.GetMinutes() > 0)
        format = wxTRANSLATE("%M minutes");
    return span.Format(wxGetTranslation(format));
}
