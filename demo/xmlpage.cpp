#include "xmlpage.h"

#include "banner.h"
#include "settings.h"
#include "ui.h"

#include <wxsupport/controls/drawing.h>
#include <wxsupport/xml/xml-reader.h>

#include <wx/artprov.h>
#include <wx/button.h>
#include <wx/filedlg.h>
#include <wx/filename.h>
#include <wx/frame.h>
#include <wx/intl.h>
#include <wx/regex.h>
#include <wx/sizer.h>
#include <wx/stattext.h>
#include <wx/stopwatch.h>
#include <wx/textctrl.h>
#include <wx/treectrl.h>

namespace {

// The colour the export writes beside the preferences.
const wxColour kHighlight(0x34, 0x65, 0xa4);

// wxXmlNode and wxXmlReader answer for attributes by name. The names asked
// for are those that stand before a '=' in the file's text; a word that only
// looks like one is simply not found on any element.
std::set<std::string> AttributeNames(const wxString& text) {
    std::set<std::string> names;
    wxRegEx attribute("([A-Za-z_:][-A-Za-z0-9_.:]*)[ \t\r\n]*=[ \t\r\n]*[\"']");
    wxString rest = text;
    size_t start = 0;
    size_t length = 0;
    while (attribute.Matches(rest) && attribute.GetMatch(&start, &length, 1)) {
        names.insert(std::string(rest.Mid(start, length).utf8_str()));
        rest = rest.Mid(start + length);
    }
    return names;
}

} // namespace

XmlPage::XmlPage(wxWindow* parent, Settings& settings, Banner& banner)
    : wxPanel(parent), m_settings(settings), m_banner(banner) {
    wxButton* open = new wxButton(this, wxID_OPEN, _("Open..."));
    wxButton* exportButton = new wxButton(this, wxID_ANY, _("Export Preferences"));
    m_fileLabel = new wxStaticText(this, wxID_ANY, _("No file loaded"), wxDefaultPosition,
                                   wxDefaultSize, wxST_ELLIPSIZE_START);
    wx_make_bold(m_fileLabel);
    m_tree = new wxTreeCtrl(this, wxID_ANY, wxDefaultPosition, wxDefaultSize,
                            wxTR_HAS_BUTTONS | wxTR_LINES_AT_ROOT | wxTR_SINGLE | wxBORDER_THEME);
    m_statistics = new wxStaticText(this, wxID_ANY, wxEmptyString);
    m_text = NewFileView(this);
    wxStaticText* streamed = NewHeading(this, _("Streamed with wxXmlReader"));
    wxStaticText* source = NewHeading(this, _("The file"));

    wxBoxSizer* top = new wxBoxSizer(wxHORIZONTAL);
    top->Add(open, 0, wxRIGHT, 6);
    top->Add(exportButton, 0, wxRIGHT, 12);
    top->Add(m_fileLabel, 1, wxALIGN_CENTER_VERTICAL);
    wxBoxSizer* right = new wxBoxSizer(wxVERTICAL);
    right->Add(streamed);
    right->Add(m_statistics, 0, wxEXPAND | wxTOP, 6);
    right->Add(source, 0, wxTOP, 12);
    right->Add(m_text, 1, wxEXPAND | wxTOP, 6);
    wxBoxSizer* body = new wxBoxSizer(wxHORIZONTAL);
    body->Add(m_tree, 1, wxEXPAND | wxRIGHT, 12);
    body->Add(right, 1, wxEXPAND);
    wxBoxSizer* sizer = new wxBoxSizer(wxVERTICAL);
    sizer->Add(top, 0, wxEXPAND | wxALL, 12);
    sizer->Add(body, 1, wxEXPAND | wxLEFT | wxRIGHT | wxBOTTOM, 12);
    SetSizer(sizer);

    open->Bind(wxEVT_BUTTON, [this](wxCommandEvent&) {
        const wxString path = wxFileSelector(_("Open an XML file"), wxString(), wxString(), "xml",
                                             _("XML files (*.xml)|*.xml|All files|*"),
                                             wxFD_OPEN | wxFD_FILE_MUST_EXIST, this);
        if (!path.empty())
            OpenFile(path);
    });
    exportButton->Bind(wxEVT_BUTTON, [this](wxCommandEvent&) { ExportPreferences(); });
}

bool XmlPage::OpenFile(const wxString& path) {
    wxXmlTree tree;
    if (!tree.Open(path)) {
        m_banner.Show(
            wxString::Format(_("%s: missing or not well-formed XML; nothing was loaded"), path),
            wxART_ERROR);
        return false;
    }
    m_banner.Hide();
    const wxString text = ReadTextFile(path);
    const std::set<std::string> attributes = AttributeNames(text);

    m_tree->Freeze();
    m_tree->DeleteAllItems();
    const wxXmlNode root = tree.GetRoot();
    AddNode(wxTreeItemId(), root, attributes);
    m_tree->ExpandAll();
    m_tree->ScrollTo(m_tree->GetRootItem());
    m_tree->Thaw();
    tree.Close();

    m_fileLabel->SetLabel(path);
    m_statistics->SetLabel(StreamStatistics(path, attributes));
    m_text->ChangeValue(text);
    m_settings.SetString("last_xml", path);
    if (wxFrame* frame = wxDynamicCast(wxGetTopLevelParent(this), wxFrame))
        frame->SetStatusText(wxString::Format(_("Opened %s"), path));
    Layout();
    return true;
}

void XmlPage::AddNode(const wxTreeItemId& parent, const wxXmlNode& node,
                      const std::set<std::string>& attributes) {
    const wxString label = "<" + node.GetNodeName() + ">";
    const wxTreeItemId item =
        parent.IsOk() ? m_tree->AppendItem(parent, label) : m_tree->AddRoot(label);
    m_tree->SetItemBold(item);
    for (const std::string& name : attributes) {
        const wxString wxName = wxString::FromUTF8(name.c_str());
        if (node.HasAttr(wxName))
            m_tree->AppendItem(item, wxName + " = \"" + node.GetAttr(wxName) + "\"");
    }
    if (!node.HasChildren())
        return;
    for (wxXmlNode child = node.GetFirstChild();; child = child.GetNextSibling()) {
        if (child.IsElement())
            AddNode(item, child, attributes);
        else if (child.IsText() && !child.IsWhitespace())
            m_tree->AppendItem(item, "\"" + child.GetText().Strip(wxString::both) + "\"");
        else if (child.IsComment())
            m_tree->AppendItem(item, _("(comment)"));
        if (!child.HasNextSibling())
            break;
    }
}

wxString XmlPage::StreamStatistics(const wxString& path, const std::set<std::string>& attributes) {
    long elements = 0;
    long attributeCount = 0;
    long texts = 0;
    long empty = 0;
    wxStopWatch watch;
    wxXmlReader reader;
    if (reader.Open(path)) {
        while (reader.iRead()) {
            if (reader.IsElement()) {
                ++elements;
                if (reader.IsEmptyElement())
                    ++empty;
                for (const std::string& name : attributes)
                    attributeCount += reader.HasAttr(name.c_str()) ? 1 : 0;
            } else if (reader.IsText()) {
                ++texts;
            }
        }
    }
    const bool complete = reader.IsEOF();
    reader.Close();
    const double ms = watch.TimeInMicro().ToDouble() / 1000.0;
    return wxString::Format(_("%ld elements (%ld self-closing), %ld attributes, %ld text nodes\n"
                              "read in %.2f ms; %s"),
                            elements, empty, attributeCount, texts, ms,
                            complete ? _("the document ends cleanly.")
                                     : _("the reader stopped early: the file is malformed."));
}

bool XmlPage::ExportPreferences() {
    const Preferences p = m_settings.LoadPreferences();
    const wxString path =
        wxFileName(wxFileName(m_settings.GetPath()).GetPath(), "preferences.xml").GetFullPath();
    wxDateTime expires;
    expires.ParseISODate(p.licenceExpires);

    wxXmlWriter writer;
    bool ok = writer.Open(path) && writer.StartDocument() && writer.StartElement("preferences") &&
              writer.StartElement("files") &&
              writer.WriteAttr("recent", static_cast<int>(p.recentFiles)) &&
              writer.WriteAttr("backup", p.backupTime) && writer.EndElement() &&
              writer.StartElement("view") &&
              writer.WriteAttr("zoom", wxString::FromCDouble(p.zoom)) &&
              writer.WriteAttr("highlight", kHighlight) && writer.EndElement() &&
              writer.StartElement("licence") &&
              (!expires.IsValid() || writer.writeAttr("expires", expires)) &&
              (p.userName.empty() || writer.WriteText(p.userName)) && writer.EndElement() &&
              writer.EndDocument();
    writer.Close();
    if (!ok) {
        m_banner.Show(wxString::Format(_("%s: %s"), path, writer.GetError()), wxART_ERROR);
        return false;
    }
    if (!OpenFile(path))
        return false;

    // The typed attributes read back through the tree.
    wxXmlTree tree;
    tree.Open(path);
    const wxXmlNode root = tree.GetRoot();
    const wxXmlNode files = root.GetFirstElementChild();
    const wxXmlNode view = files.GetNextElementSibling();
    const wxXmlNode licence = view.GetNextElementSibling();
    const wxDateTime readExpires = licence.getAttrAsDateTime("expires");
    m_statistics->SetLabel(
        m_statistics->GetLabel() + "\n" +
        wxString::Format(_("Read back: recent %d, highlight %s, expires %s"),
                         files.GetAttrAsInt("recent"),
                         view.getAttrAsColour("highlight").GetAsString(wxC2S_HTML_SYNTAX),
                         readExpires.IsValid() ? readExpires.FormatISODate() : _("(invalid)")));
    Layout();
    return true;
}
