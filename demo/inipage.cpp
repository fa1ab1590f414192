#include "inipage.h"

#include "banner.h"
#include "settings.h"
#include "ui.h"

#include <wxsupport/controls/drawing.h>
#include <wxsupport/controls/pdsizegroup.h>

#include <wx/artprov.h>
#include <wx/button.h>
#include <wx/filedlg.h>
#include <wx/filename.h>
#include <wx/frame.h>
#include <wx/intl.h>
#include <wx/sizer.h>
#include <wx/stattext.h>
#include <wx/textctrl.h>
#include <wx/textdlg.h>
#include <wx/treectrl.h>

namespace {

const char* const kIniWildcard = wxTRANSLATE("INI files (*.ini)|*.ini|All files|*");

// What a tree item stands for: a section, or a key in it.
class Entry : public wxTreeItemData {
public:
    Entry(const wxString& sectionName, const wxString& keyName)
        : section(sectionName), key(keyName) {}
    wxString section;
    wxString key; // empty for the section's own item
};

} // namespace

IniPage::IniPage(wxWindow* parent, Settings& settings, Banner& banner)
    : wxPanel(parent), m_settings(settings), m_banner(banner), m_modified(false) {
    CreateWidgets();
    LayoutWidgets();
    ConnectWidgets();
}

void IniPage::CreateWidgets() {
    m_fileLabel = new wxStaticText(this, wxID_ANY, _("No file loaded"), wxDefaultPosition,
                                   wxDefaultSize, wxST_ELLIPSIZE_START);
    wx_make_bold(m_fileLabel);
    m_tree = new wxTreeCtrl(this, wxID_ANY, wxDefaultPosition, wxDefaultSize,
                            wxTR_HIDE_ROOT | wxTR_HAS_BUTTONS | wxTR_LINES_AT_ROOT | wxTR_SINGLE |
                                wxBORDER_THEME);
    m_section = new wxTextCtrl(this, wxID_ANY);
    m_key = new wxTextCtrl(this, wxID_ANY);
    m_value = new wxTextCtrl(this, wxID_ANY);
}

void IniPage::LayoutWidgets() {
    const auto button = [this](int id, const wxString& label) {
        return new wxButton(this, id, label);
    };
    wxBoxSizer* fileRow = new wxBoxSizer(wxHORIZONTAL);
    fileRow->Add(button(wxID_OPEN, _("Open...")), 0, wxRIGHT, 6);
    fileRow->Add(button(wxID_SAVE, _("Save")), 0, wxRIGHT, 6);
    fileRow->Add(button(wxID_SAVEAS, _("Save As...")), 0, wxRIGHT, 6);
    fileRow->Add(button(wxID_COPY, _("Copy Section To...")), 0, wxRIGHT, 12);
    fileRow->Add(m_fileLabel, 1, wxALIGN_CENTER_VERTICAL);

    wxStaticText* labels[] = {new wxStaticText(this, wxID_ANY, _("Section:")),
                              new wxStaticText(this, wxID_ANY, _("Key:")),
                              new wxStaticText(this, wxID_ANY, _("Value:"))};
    pdSizeGroup labelGroup(pdSizeGroup::SIZE_GROUP_HORIZONTAL);
    for (wxStaticText* label : labels)
        labelGroup.Add(label);
    labelGroup.Resize();
    wxTextCtrl* fields[] = {m_section, m_key, m_value};
    wxBoxSizer* edit = new wxBoxSizer(wxVERTICAL);
    for (int i = 0; i < 3; ++i) {
        wxBoxSizer* line = new wxBoxSizer(wxHORIZONTAL);
        line->Add(labels[i], 0, wxALIGN_CENTER_VERTICAL | wxRIGHT, 6);
        line->Add(fields[i], 1, wxALIGN_CENTER_VERTICAL);
        edit->Add(line, 0, wxEXPAND | wxBOTTOM, 6);
    }
    m_value->SetMinSize(wxSize(wx_size_to_fit_text(m_value, 24, 1).x, -1));

    wxButton* keyButtons[] = {button(wxID_APPLY, _("Set Value")),
                              button(wxID_DELETE, _("Remove Key"))};
    wxButton* sectionButtons[] = {button(wxID_ADD, _("Register Section")),
                                  button(wxID_EDIT, _("Rename Section...")),
                                  button(wxID_REMOVE, _("Remove Section"))};
    pdSizeGroup buttonGroup(pdSizeGroup::SIZE_GROUP_HORIZONTAL);
    for (wxButton* b : keyButtons)
        buttonGroup.Add(b);
    for (wxButton* b : sectionButtons)
        buttonGroup.Add(b);
    buttonGroup.Resize();

    wxStaticText* keyHeading = NewHeading(this, _("Key"));
    wxStaticText* sectionHeading = NewHeading(this, _("Section"));
    edit->Add(keyHeading, 0, wxTOP, 12);
    for (wxButton* b : keyButtons)
        edit->Add(b, 0, wxTOP, 6);
    edit->Add(sectionHeading, 0, wxTOP, 12);
    for (wxButton* b : sectionButtons)
        edit->Add(b, 0, wxTOP, 6);

    wxBoxSizer* body = new wxBoxSizer(wxHORIZONTAL);
    body->Add(m_tree, 1, wxEXPAND | wxRIGHT, 12);
    body->Add(edit, 0, wxEXPAND);

    wxBoxSizer* sizer = new wxBoxSizer(wxVERTICAL);
    sizer->Add(fileRow, 0, wxEXPAND | wxALL, 12);
    sizer->Add(body, 1, wxEXPAND | wxLEFT | wxRIGHT | wxBOTTOM, 12);
    SetSizer(sizer);
}

void IniPage::ConnectWidgets() {
    m_tree->Bind(wxEVT_TREE_SEL_CHANGED, &IniPage::OnSelect, this);
    const auto on = [this](int id, void (IniPage::*handler)()) {
        Bind(
            wxEVT_BUTTON, [this, handler](wxCommandEvent&) { (this->*handler)(); }, id);
    };
    on(wxID_OPEN, &IniPage::OnOpen);
    on(wxID_SAVEAS, &IniPage::OnSaveAs);
    on(wxID_COPY, &IniPage::OnCopySection);
    on(wxID_APPLY, &IniPage::OnSetValue);
    on(wxID_DELETE, &IniPage::OnRemoveKey);
    on(wxID_ADD, &IniPage::OnRegisterSection);
    on(wxID_EDIT, &IniPage::OnRenameSection);
    on(wxID_REMOVE, &IniPage::OnRemoveSection);
    Bind(
        wxEVT_BUTTON,
        [this](wxCommandEvent&) {
            if (m_path.empty())
                OnSaveAs();
            else
                SaveAs(m_path);
        },
        wxID_SAVE);
}

bool IniPage::OpenFile(const wxString& path) {
    if (!m_ini.Open(path)) {
        Fail(m_ini.GetError());
        return false;
    }
    m_path = path;
    m_modified = false;
    m_banner.Hide();
    FillTree();
    m_settings.SetString("last_ini", path);
    Changed(wxString::Format(_("Opened %s: %d sections"), path, m_ini.GetSectionCount()));
    return true;
}

bool IniPage::SaveAs(const wxString& path) {
    if (!m_ini.Save(path)) {
        Fail(m_ini.GetError());
        return false;
    }
    m_path = path;
    m_modified = false;
    Changed(wxString::Format(_("Saved %s"), path));
    return true;
}

void IniPage::Fail(const wxString& error) {
    m_banner.Show(error, wxART_ERROR);
}

void IniPage::Changed(const wxString& status) {
    m_fileLabel->SetLabel(m_path.empty() ? _("New file") : m_path);
    if (m_modified)
        m_fileLabel->SetLabel(m_fileLabel->GetLabel() + _(" (modified)"));
    if (wxFrame* frame = wxDynamicCast(wxGetTopLevelParent(this), wxFrame))
        frame->SetStatusText(status);
    Layout();
}

void IniPage::FillTree() {
    m_tree->Freeze();
    m_tree->DeleteAllItems();
    const wxTreeItemId root = m_tree->AddRoot(wxString());
    const int sections = m_ini.GetSectionCount();
    for (int i = 0; i < sections; ++i) {
        const wxString section = m_ini.GetNthSection(i);
        const wxTreeItemId item =
            m_tree->AppendItem(root, "[" + section + "]", -1, -1, new Entry(section, wxString()));
        m_tree->SetItemBold(item);
        const int keys = m_ini.GetKeyCount(section);
        for (int k = 0; k < keys; ++k) {
            const wxString key = m_ini.GetNthKey(section, k);
            m_tree->AppendItem(item, key + " = " + m_ini.ReadString(section, key, wxString()), -1,
                               -1, new Entry(section, key));
        }
    }
    m_tree->ExpandAll();
    m_tree->Thaw();
}

void IniPage::SelectKey(const wxString& section, const wxString& key) {
    wxTreeItemIdValue sectionCookie;
    const wxTreeItemId root = m_tree->GetRootItem();
    for (wxTreeItemId s = m_tree->GetFirstChild(root, sectionCookie); s.IsOk();
         s = m_tree->GetNextChild(root, sectionCookie)) {
        const Entry* se = static_cast<Entry*>(m_tree->GetItemData(s));
        if (se->section != section)
            continue;
        if (key.empty()) {
            m_tree->SelectItem(s);
            return;
        }
        wxTreeItemIdValue keyCookie;
        for (wxTreeItemId k = m_tree->GetFirstChild(s, keyCookie); k.IsOk();
             k = m_tree->GetNextChild(s, keyCookie)) {
            if (static_cast<Entry*>(m_tree->GetItemData(k))->key == key) {
                m_tree->SelectItem(k);
                m_tree->EnsureVisible(k);
                return;
            }
        }
    }
}

void IniPage::OnSelect(wxTreeEvent& event) {
    const Entry* entry = static_cast<Entry*>(m_tree->GetItemData(event.GetItem()));
    if (!entry)
        return;
    m_section->ChangeValue(entry->section);
    m_key->ChangeValue(entry->key);
    m_value->ChangeValue(
        entry->key.empty() ? wxString() : m_ini.ReadString(entry->section, entry->key, wxString()));
}

void IniPage::OnOpen() {
    const wxString path =
        wxFileSelector(_("Open an INI file"), wxFileName(m_path).GetPath(), wxString(), "ini",
                       wxGetTranslation(kIniWildcard), wxFD_OPEN | wxFD_FILE_MUST_EXIST, this);
    if (!path.empty())
        OpenFile(path);
}

void IniPage::OnSaveAs() {
    const wxString path = wxFileSelector(
        _("Save the INI file as"), wxFileName(m_path).GetPath(), wxFileName(m_path).GetFullName(),
        "ini", wxGetTranslation(kIniWildcard), wxFD_SAVE | wxFD_OVERWRITE_PROMPT, this);
    if (!path.empty())
        SaveAs(path);
}

void IniPage::OnCopySection() {
    const wxString section = m_section->GetValue();
    if (!m_ini.HasSection(section)) {
        Fail(wxString::Format(_("There is no section [%s] to copy."), section));
        return;
    }
    const wxString path =
        wxFileSelector(wxString::Format(_("Copy [%s] into which INI file?"), section),
                       wxFileName(m_path).GetPath(), wxString(), "ini",
                       wxGetTranslation(kIniWildcard), wxFD_SAVE, this);
    if (path.empty())
        return;
    // The target keeps what it has; the section's keys are added or replaced.
    wxIniFile target;
    if (wxFileName::FileExists(path) && !target.Open(path)) {
        Fail(target.GetError());
        return;
    }
    m_ini.CopySection(section, target);
    if (!target.Save(path)) {
        Fail(target.GetError());
        return;
    }
    Changed(wxString::Format(_("Copied [%s] into %s"), section, path));
}

void IniPage::OnSetValue() {
    const wxString section = m_section->GetValue();
    const wxString key = m_key->GetValue();
    if (key.empty()) {
        Fail(_("Type the name of a key to set its value."));
        return;
    }
    m_ini.WriteString(section, key, m_value->GetValue());
    m_modified = true;
    FillTree();
    SelectKey(section, key);
    Changed(wxString::Format(_("Set %s in [%s]"), key, section));
}

void IniPage::OnRemoveKey() {
    if (!m_ini.RemoveKey(m_section->GetValue(), m_key->GetValue()))
        return;
    m_modified = true;
    FillTree();
    Changed(wxString::Format(_("Removed %s from [%s]"), m_key->GetValue(), m_section->GetValue()));
}

void IniPage::OnRegisterSection() {
    const wxString section = m_section->GetValue();
    if (m_ini.HasSection(section)) {
        Changed(wxString::Format(_("[%s] exists already"), section));
        return;
    }
    m_ini.RegisterSection(section);
    m_modified = true;
    FillTree();
    SelectKey(section, wxString());
    Changed(wxString::Format(_("Registered the empty section [%s]"), section));
}

void IniPage::OnRenameSection() {
    const wxString section = m_section->GetValue();
    if (!m_ini.HasSection(section))
        return;
    const wxString name =
        wxGetTextFromUser(_("New name of the section:"), _("Rename Section"), section, this);
    if (name.empty() || name == section)
        return;
    if (m_ini.HasSection(name)) {
        Fail(wxString::Format(_("There is a section [%s] already."), name));
        return;
    }
    m_ini.RenameSection(section, name);
    m_modified = true;
    FillTree();
    SelectKey(name, wxString());
    Changed(wxString::Format(_("Renamed [%s] to [%s]"), section, name));
}

void IniPage::OnRemoveSection() {
    const wxString section = m_section->GetValue();
    if (!m_ini.HasSection(section))
        return;
    m_ini.RemoveSection(section);
    m_modified = true;
    FillTree();
    Changed(wxString::Format(_("Removed [%s]"), section));
}
