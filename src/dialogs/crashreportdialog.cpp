// CrashReportDialog: widgets, layout and the file list.
//
// The texts are plain labels: the "<b>" around the address and the "<tt>"
// around each path are shown as typed, since no label here is set as markup.
// The dialog is centred once, at its default size, before its widgets exist.
#include <wxsupport/dialogs/crashreportdialog.h>

#include <wx/bitmap.h>
#include <wx/button.h>
#include <wx/debugrpt.h>
#include <wx/filename.h>
#include <wx/font.h>
#include <wx/image.h>
#include <wx/intl.h>
#include <wx/panel.h>
#include <wx/sizer.h>
#include <wx/statbmp.h>
#include <wx/statline.h>
#include <wx/stattext.h>

#include <cstdlib>

#include "crash_report_beetle.xpm"

namespace {

// The picture, its transparent "None" pixels turned from a mask into alpha:
// wxGTK 3.2 never frees the pixbuf it makes for a masked bitmap in a
// wxStaticBitmap, and the alpha form looks the same.
wxBitmap BeetleBitmap() {
    wxImage image(crash_report_beetle_xpm);
    image.InitAlpha();
    return wxBitmap(image);
}

} // namespace

CrashReportDialog::CrashReportDialog(const wxString& appName, const wxString& emailAddress)
    : wxDialog(nullptr, wxID_ANY, wxGetTranslation("Crash report"), wxDefaultPosition,
               wxDefaultSize, wxDEFAULT_DIALOG_STYLE, wxDialogNameStr),
      m_panel(nullptr), m_titleText(nullptr), m_messageText(nullptr), m_filesText(nullptr),
      m_removeText(nullptr), m_thanksText(nullptr), m_image(nullptr), m_closeButton(nullptr),
      m_debugButton(nullptr), m_appName(), m_emailAddress(), m_panelSizer(nullptr) {
    Centre(wxBOTH);
    m_appName = appName;
    m_emailAddress = emailAddress;
    CreateWidgets();
    LayoutWidgets();
}

CrashReportDialog::~CrashReportDialog() {}

void CrashReportDialog::CreateWidgets() {
    const wxString message = wxString::Format(
        wxGetTranslation(
            "We are sorry to inform you that %s has experienced an unexpected problem that "
            "caused the application to crash.\n\nHowever, you now have an opportunity to help us "
            "solve the problem and prevent it from happening again. You can do this by sending "
            "us some data about the crash.\n\nPlease send an email to %s%s%s and attach the "
            "following file(s):\n"),
        m_appName, "<b>", m_emailAddress, "<b>");
    const wxString removeText =
        wxGetTranslation("After you've sent them to us you can safely remove them.");
    const wxString thanksText = wxGetTranslation("Thank you for your participation!");

    m_panel = new wxPanel(this, wxID_ANY, wxDefaultPosition, wxDefaultSize,
                          wxTAB_TRAVERSAL | wxNO_BORDER, wxPanelNameStr);
    m_panel->SetBackgroundColour(wxColour(255, 255, 255, 255));

    m_image = new wxStaticBitmap(m_panel, wxID_ANY, BeetleBitmap(), wxDefaultPosition,
                                 wxDefaultSize, 0, wxStaticBitmapNameStr);

    m_titleText = new wxStaticText(m_panel, wxID_ANY,
                                   wxString::Format(wxGetTranslation("%s has crashed!"), m_appName),
                                   wxDefaultPosition, wxDefaultSize, 0, wxStaticTextNameStr);
    wxFont titleFont = m_titleText->GetFont();
    titleFont.SetWeight(wxFONTWEIGHT_BOLD);
    titleFont.SetPointSize(static_cast<int>(titleFont.GetPointSize() * 1.2));
    m_titleText->SetFont(titleFont);

    m_messageText = new wxStaticText(m_panel, wxID_ANY, message, wxDefaultPosition, wxDefaultSize,
                                     0, wxStaticTextNameStr);
    m_messageText->Wrap(400);

    m_filesText = new wxStaticText(m_panel, wxID_ANY, wxEmptyString, wxDefaultPosition,
                                   wxDefaultSize, 0, wxStaticTextNameStr);

    m_removeText = new wxStaticText(m_panel, wxID_ANY, removeText, wxDefaultPosition, wxDefaultSize,
                                    0, wxStaticTextNameStr);
    m_removeText->Wrap(400);

    m_thanksText = new wxStaticText(m_panel, wxID_ANY, thanksText, wxDefaultPosition, wxDefaultSize,
                                    0, wxStaticTextNameStr);
    m_thanksText->Wrap(400);
    wxFont thanksFont = m_thanksText->GetFont();
    thanksFont.SetWeight(wxFONTWEIGHT_BOLD);
    m_thanksText->SetFont(thanksFont);

    m_closeButton = new wxButton(this, wxID_CLOSE, wxEmptyString, wxDefaultPosition, wxDefaultSize,
                                 0, wxDefaultValidator, wxButtonNameStr);
    // The one text of the library that isn't translated.
    m_debugButton = new wxButton(this, wxID_ANY, "Debug", wxDefaultPosition, wxDefaultSize, 0,
                                 wxDefaultValidator, wxButtonNameStr);

    m_closeButton->Bind(wxEVT_BUTTON, &CrashReportDialog::OnCloseButton, this, wxID_ANY, wxID_ANY);
    m_debugButton->Bind(wxEVT_BUTTON, &CrashReportDialog::OnDebugButton, this, wxID_ANY, wxID_ANY);
}

void CrashReportDialog::LayoutWidgets() {
    wxBoxSizer* textSizer = new wxBoxSizer(wxVERTICAL);
    textSizer->Add(m_titleText, 0, 0, 0);
    textSizer->Add(m_messageText, 0, wxEXPAND | wxTOP, 12);
    textSizer->Add(m_filesText, 0, wxEXPAND, 0);
    textSizer->Add(m_removeText, 0, wxEXPAND | wxBOTTOM, 12);
    textSizer->Add(m_thanksText, 0, wxEXPAND | wxBOTTOM, 12);

    m_panelSizer = new wxBoxSizer(wxHORIZONTAL);
    m_panelSizer->Add(m_image, 0, wxALL | wxALIGN_CENTER_VERTICAL, 24);
    m_panelSizer->Add(textSizer, 1, wxTOP | wxBOTTOM | wxRIGHT, 24);
    m_panel->SetSizer(m_panelSizer, true);
    m_panel->SetAutoLayout(true);
    m_panelSizer->SetSizeHints(m_panel);
    m_panelSizer->Fit(m_panel);

    wxBoxSizer* topSizer = new wxBoxSizer(wxVERTICAL);
    topSizer->Add(m_panel, 1, wxEXPAND, 0);
    topSizer->Add(new wxStaticLine(this, wxID_ANY, wxDefaultPosition, wxDefaultSize,
                                   wxLI_HORIZONTAL, wxStaticLineNameStr),
                  0, wxEXPAND, 0);

    wxBoxSizer* buttonSizer = new wxBoxSizer(wxHORIZONTAL);
    buttonSizer->Add(0, 0, 1, 0, 0);
    buttonSizer->Add(m_debugButton, 0, wxLEFT, 6);
    buttonSizer->Add(m_closeButton, 0, wxLEFT, 6);
    topSizer->Add(buttonSizer, 0, wxEXPAND | wxALL, 12);

    SetSizer(topSizer, true);
    SetAutoLayout(true);
    topSizer->SetSizeHints(this);
    topSizer->Fit(this);
}

void CrashReportDialog::SetDebugReport(wxDebugReport& report) {
    if (report.GetFilesCount() != 0) {
        wxString files;
        for (size_t i = 0; i < report.GetFilesCount(); ++i) {
            wxString name, description;
            if (!report.GetFile(i, &name, &description))
                continue;
            const wxFileName file(report.GetDirectory(), name, wxPATH_NATIVE);
            files << "<tt>" << file.GetFullPath(wxPATH_NATIVE) << "</tt>\n";
        }
        m_filesText->SetLabel(files);
    }
    m_panelSizer->Layout();
    m_panelSizer->SetSizeHints(m_panel);
    m_panelSizer->Fit(m_panel);
    GetSizer()->Layout();
    GetSizer()->SetSizeHints(this);
    GetSizer()->Fit(this);
}

void CrashReportDialog::OnCloseButton(wxCommandEvent&) {
    EndModal(wxID_CLOSE);
}

void CrashReportDialog::OnDebugButton(wxCommandEvent&) {
    std::abort();
}
