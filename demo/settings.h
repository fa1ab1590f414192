// The gallery's own settings: one INI file, read at start and written
// whenever something worth keeping changes. Its usual home is where a desktop
// user expects it: the XDG configuration folder ($XDG_CONFIG_HOME, else
// ~/.config) + wxsupport-gallery/gallery.ini.
#pragma once

#include <wxsupport/config/wxinifile.h>

#include <wx/gdicmn.h>
#include <wx/string.h>

// What the Preferences dialog edits.
struct Preferences {
    long recentFiles = 8;
    double zoom = 1.0;
    wxString backupTime = "02:30";
    wxString licenceExpires = "2027-12-31";
    wxString userName;
};

class Settings {
public:
    // The user's settings file in the XDG configuration folder.
    static wxString DefaultPath();

    // Reads the file when it exists; a missing one is a first run. A file that
    // can't be read leaves the settings empty and its reason in GetError.
    explicit Settings(const wxString& path);

    const wxString& GetPath() const { return m_path; }
    wxIniFile& GetIni() { return m_ini; }

    // Creates the folder when needed and writes the file; false on failure,
    // with the reason in GetError.
    bool Save();
    // Why the last read or save failed; empty when neither did.
    const wxString& GetError() const { return m_error; }

    Preferences LoadPreferences() const;
    void StorePreferences(const Preferences& preferences);

    // Window geometry; wxDefaultPosition / wxDefaultSize when none is stored.
    wxRect LoadWindowRect() const;
    void StoreWindowRect(const wxRect& rect);

    wxString GetString(const wxString& key, const wxString& def = wxString()) const;
    long GetLong(const wxString& key, long def) const;
    void SetString(const wxString& key, const wxString& value);
    void SetLong(const wxString& key, long value);

private:
    wxString m_path;
    wxIniFile m_ini;
    wxString m_error;
};
