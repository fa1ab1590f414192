/// \file
/// AboutDlg: a ready-made about box with a live uptime row.
#ifndef WXSUPPORT_DIALOGS_ABOUTDLG_H
#define WXSUPPORT_DIALOGS_ABOUTDLG_H

#include <wxsupport/defs.h>

#include <wx/datetime.h>
#include <wx/dialog.h>
#include <wx/event.h>
#include <wx/string.h>
#include <wx/timer.h>

class wxBitmap;
class wxBoxSizer;
class wxButton;
class wxPanel;
class wxStaticBitmap;
class wxStaticText;

/// A ready-made about box: a white panel with an optional picture beside rows
/// of text, a line and a Close button. Only the uptime row (time since the
/// library was loaded, refreshed every second) is shown from the start; each
/// setter shows its row. Use: construct, call the setters wanted (SetImage at
/// most once), Fit() the dialog, then ShowModal(), which gives wxID_CLOSE when
/// the button ends it.
class WXSUPPORT_API AboutDlg : public wxDialog {
public:
    /// Builds the dialog, without a title, and starts the uptime timer.
    explicit AboutDlg(wxWindow* parent);
    virtual ~AboutDlg();

    /// Puts the picture left of the text rows; call at most once.
    void SetImage(const wxBitmap& bitmap);
    /// Title and header row: first + " " + second (the blank even when second
    /// is empty).
    void SetHeader(const wxString& first, const wxString& second);
    /// Title and header row: the text.
    void SetHeader(const wxString& text);
    /// First copyright row; "(C)" in the text becomes the copyright sign.
    void SetCopyright(const wxString& text);
    /// Second copyright row; "(C)" in the text becomes the copyright sign.
    void SetExtraCopyright(const wxString& text);
    /// Shows the "Build info:" caption and the text below it.
    void SetBuildInfo(const wxString& text);

private:
    void CreateWidgets();
    void LayoutWidgets();
    void ConnectWidgets();
    void OnClose(wxCommandEvent& event);
    void OnUpdateTimer(wxTimerEvent& event);
    wxString FormatUptime(const wxTimeSpan& span);

    /// The moment the library was loaded.
    static wxDateTime start_time;

    wxBoxSizer* m_contentSizer;
    wxBoxSizer* m_textSizer;
    wxStaticText* m_headerText;
    wxStaticText* m_copyrightText;
    wxStaticText* m_extraCopyrightText;
    wxStaticText* m_buildInfoLabel;
    wxStaticText* m_buildInfoText;
    wxStaticText* m_uptimeText;
    wxStaticBitmap* m_image;
    wxPanel* m_panel;
    wxButton* m_closeButton;
    wxTimer m_updateTimer;
};

#endif // WXSUPPORT_DIALOGS_ABOUTDLG_H
