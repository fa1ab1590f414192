// Page 2: an INI editor over wxIniFile. Sections and keys in a tree, a value
// to edit, sections to add, rename, remove and copy to another file, Save and
// Save As. A failed open or save puts GetError into the banner, and what was
// loaded stays.
#pragma once

#include <wxsupport/config/wxinifile.h>

#include <wx/panel.h>
#include <wx/treebase.h>

class Banner;
class Settings;
class wxStaticText;
class wxTextCtrl;
class wxTreeCtrl;
class wxTreeEvent;

class IniPage : public wxPanel {
public:
    IniPage(wxWindow* parent, Settings& settings, Banner& banner);

    // Loads a file into the editor; false (and the banner) on failure.
    bool OpenFile(const wxString& path);
    // Writes the editor's contents to path; false (and the banner) on failure.
    bool SaveAs(const wxString& path);
    // Selects a key in the tree and shows it in the fields.
    void SelectKey(const wxString& section, const wxString& key);
    // The value field, for the tour.
    wxTextCtrl* GetValueField() const { return m_value; }

private:
    void CreateWidgets();
    void LayoutWidgets();
    void ConnectWidgets();
    void FillTree();
    void Changed(const wxString& status);
    void Fail(const wxString& error);
    void OnSelect(wxTreeEvent& event);
    void OnOpen();
    void OnSaveAs();
    void OnCopySection();
    void OnSetValue();
    void OnRemoveKey();
    void OnRegisterSection();
    void OnRenameSection();
    void OnRemoveSection();

    Settings& m_settings;
    Banner& m_banner;
    wxIniFile m_ini;
    wxString m_path;
    bool m_modified;
    wxStaticText* m_fileLabel;
    wxTreeCtrl* m_tree;
    wxTextCtrl* m_section;
    wxTextCtrl* m_key;
    wxTextCtrl* m_value;
};
