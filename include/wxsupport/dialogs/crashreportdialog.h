/// \file
/// CrashReportDialog: lists the files of a wxDebugReport after a crash.
#ifndef WXSUPPORT_DIALOGS_CRASHREPORTDIALOG_H
#define WXSUPPORT_DIALOGS_CRASHREPORTDIALOG_H

#include <wxsupport/defs.h>

#include <wx/dialog.h>
#include <wx/event.h>
#include <wx/string.h>

class wxBoxSizer;
class wxButton;
class wxDebugReport;
class wxPanel;
class wxStaticBitmap;
class wxStaticText;

/// The modal dialog a host shows after a crash for which a wxDebugReport was
/// written: what happened, the address to mail the report to, the report's
/// files with full paths, and two buttons. Close ends ShowModal with
/// wxID_CLOSE; Debug calls abort() and never returns. The dialog sends
/// nothing and touches no file. Use: construct, SetDebugReport, ShowModal.
class WXSUPPORT_API CrashReportDialog : public wxDialog {
public:
    /// A top-level dialog (no parent) naming the application and the address.
    CrashReportDialog(const wxString& appName, const wxString& emailAddress);
    virtual ~CrashReportDialog();

    /// Lists the report's files (entries GetFile refuses are left out) and
    /// fits the dialog anew; a report without files leaves the list as it was.
    void SetDebugReport(wxDebugReport& report);

private:
    void CreateWidgets();
    void LayoutWidgets();
    void OnCloseButton(wxCommandEvent& event);
    void OnDebugButton(wxCommandEvent& event);

    wxPanel* m_panel;
    wxStaticText* m_titleText;
    wxStaticText* m_messageText;
    wxStaticText* m_filesText;
    wxStaticText* m_removeText;
    wxStaticText* m_thanksText;
    wxStaticBitmap* m_image;
    wxButton* m_closeButton;
    wxButton* m_debugButton;
    wxString m_appName;
    wxString m_emailAddress;
    wxBoxSizer* m_panelSizer;
};

#endif // WXSUPPORT_DIALOGS_CRASHREPORTDIALOG_H
