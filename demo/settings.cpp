#include "settings.h"

#include <wx/filename.h>
#include <wx/intl.h>
#include <wx/stdpaths.h>

namespace {

const char* const kGallery = "gallery";
const char* const kWindow = "window";
const char* const kPreferences = "preferences";

} // namespace

wxString Settings::DefaultPath() {
    wxStandardPaths& paths = wxStandardPaths::Get();
    // XDG layout: $XDG_CONFIG_HOME, or ~/.config when it is unset.
    paths.SetFileLayout(wxStandardPaths::FileLayout_XDG);
    wxFileName file(paths.GetUserConfigDir(), "gallery.ini");
    file.AppendDir("wxsupport-gallery");
    return file.GetFullPath();
}

Settings::Settings(const wxString& path) : m_path(path) {
    if (wxFileName::FileExists(path) && !m_ini.Open(path))
        m_error = m_ini.GetError();
}

bool Settings::Save() {
    const wxFileName file(m_path);
    if (!file.DirExists() &&
        !wxFileName::Mkdir(file.GetPath(), wxS_DIR_DEFAULT, wxPATH_MKDIR_FULL)) {
        m_error = wxString::Format(_("%s: the folder can't be created"), file.GetPath());
        return false;
    }
    if (!m_ini.Save(m_path)) {
        m_error = m_ini.GetError();
        return false;
    }
    m_error.clear();
    return true;
}

Preferences Settings::LoadPreferences() const {
    Preferences p;
    p.recentFiles = m_ini.ReadLong(kPreferences, "recent_files", p.recentFiles);
    p.zoom = m_ini.ReadFloat(kPreferences, "zoom", p.zoom);
    p.backupTime = m_ini.ReadString(kPreferences, "backup_time", p.backupTime);
    p.licenceExpires = m_ini.ReadString(kPreferences, "licence_expires", p.licenceExpires);
    p.userName = m_ini.ReadString(kPreferences, "user_name", p.userName);
    return p;
}

void Settings::StorePreferences(const Preferences& p) {
    m_ini.WriteLong(kPreferences, "recent_files", p.recentFiles);
    m_ini.WriteFloat(kPreferences, "zoom", p.zoom);
    m_ini.WriteString(kPreferences, "backup_time", p.backupTime);
    m_ini.WriteString(kPreferences, "licence_expires", p.licenceExpires);
    m_ini.WriteString(kPreferences, "user_name", p.userName);
}

wxRect Settings::LoadWindowRect() const {
    const long width = m_ini.ReadLong(kWindow, "width", -1);
    const long height = m_ini.ReadLong(kWindow, "height", -1);
    if (width <= 0 || height <= 0)
        return wxRect(wxDefaultPosition, wxDefaultSize);
    return wxRect(int(m_ini.ReadLong(kWindow, "x", -1)), int(m_ini.ReadLong(kWindow, "y", -1)),
                  int(width), int(height));
}

void Settings::StoreWindowRect(const wxRect& rect) {
    m_ini.WriteLong(kWindow, "x", rect.x);
    m_ini.WriteLong(kWindow, "y", rect.y);
    m_ini.WriteLong(kWindow, "width", rect.width);
    m_ini.WriteLong(kWindow, "height", rect.height);
}

wxString Settings::GetString(const wxString& key, const wxString& def) const {
    return m_ini.ReadString(kGallery, key, def);
}

long Settings::GetLong(const wxString& key, long def) const {
    return m_ini.ReadLong(kGallery, key, def);
}

void Settings::SetString(const wxString& key, const wxString& value) {
    m_ini.WriteString(kGallery, key, value);
}

void Settings::SetLong(const wxString& key, long value) {
    m_ini.WriteLong(kGallery, key, value);
}
