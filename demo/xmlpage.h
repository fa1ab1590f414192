// Page 3: an XML viewer. The file's tree through wxXmlTree and wxXmlNode, the
// same file streamed through wxXmlReader with counts and the time it took,
// and an export of the preferences through wxXmlWriter, read back at once.
#pragma once

#include <wx/panel.h>
#include <wx/treebase.h>

#include <set>
#include <string>

class Banner;
class Settings;
class wxStaticText;
class wxTextCtrl;
class wxTreeCtrl;
class wxXmlNode;

class XmlPage : public wxPanel {
public:
    XmlPage(wxWindow* parent, Settings& settings, Banner& banner);

    // Shows a file; false (and the banner) when it is missing or malformed,
    // and the file on show before stays.
    bool OpenFile(const wxString& path);
    // Writes the preferences as XML beside the settings file and shows it.
    bool ExportPreferences();

private:
    void AddNode(const wxTreeItemId& parent, const wxXmlNode& node,
                 const std::set<std::string>& attributes);
    wxString StreamStatistics(const wxString& path, const std::set<std::string>& attributes);

    Settings& m_settings;
    Banner& m_banner;
    wxStaticText* m_fileLabel;
    wxTreeCtrl* m_tree;
    wxStaticText* m_statistics;
    wxTextCtrl* m_text;
};
