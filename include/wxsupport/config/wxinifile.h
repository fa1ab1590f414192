// wxIniFile: typed access to INI configuration files by section and key.
//
// Usage: create an object (optionally with a path, which is opened), read and
// write values, then Save to a path of your choice; nothing is saved on
// destruction and the object doesn't remember where it was opened from.
// Open and Save return false on failure, and GetError then tells why; the
// error text stays until the next failure, so test the boolean, not the text.
// Section and key names must be shorter than 256 characters (an assertion
// fires otherwise) and reach the store as at most 255 bytes of UTF-8.
//
// Copies share one store: a copy and its source see each other's changes,
// and the store is deleted when the last of them goes.
#ifndef WXSUPPORT_CONFIG_WXINIFILE_H
#define WXSUPPORT_CONFIG_WXINIFILE_H

#include <wxsupport/config/inifile.h>
#include <wxsupport/defs.h>

#include <wx/fontenc.h>
#include <wx/strconv.h>
#include <wx/string.h>

class WXSUPPORT_API wxIniFile {
public:
    // A new, empty store. The encoding argument is not used: the file text
    // is always UTF-8.
    wxIniFile(wxFontEncoding encoding = wxFONTENCODING_ISO8859_1);
    // A new store opened from path; a failure shows only in GetError.
    wxIniFile(const wxString& path, wxFontEncoding encoding = wxFONTENCODING_ISO8859_1);
    wxIniFile(const wxIniFile& other);
    wxIniFile& operator=(const wxIniFile& other);
    // Deletes the store when no copy uses it any more. Doesn't save.
    ~wxIniFile();

    // Whether case tells names apart (default: it doesn't).
    void setCaseSensitive(bool caseSensitive);
    // Loads a file (its path converted to UTF-8); false and GetError on failure,
    // the contents then stay as they were.
    bool Open(const wxString& path);
    // Writes the store to a file (its path converted by the C library's
    // locale); false and GetError on failure.
    bool Save(const wxString& path);
    // Removes all sections and keys.
    void Clear();
    // Text of the last failed Open or Save ("PATH:LINE: reason"); empty before any.
    wxString GetError();

    bool HasSection(const wxString& section) const;
    bool HasKey(const wxString& section, const wxString& key) const;

    void WriteLong(const wxString& section, const wxString& key, long value);
    void WriteFloat(const wxString& section, const wxString& key, double value);
    void WriteString(const wxString& section, const wxString& key, const wxString& value);
    // Stored as the whole number 1 or 0.
    void WriteBool(const wxString& section, const wxString& key, bool value);
    void Write(const wxString& section, const wxString& key, long value);
    void Write(const wxString& section, const wxString& key, const wxString& value);

    // The stored whole number, or def when the key is absent or not a number.
    long ReadLong(const wxString& section, const wxString& key, long def) const;
    // The stored number, or def when the key is absent or not a number.
    double ReadFloat(const wxString& section, const wxString& key, double def) const;
    // The stored text (read as ISO-8859-1 when it isn't UTF-8), or def when
    // the key is absent; an empty stored value gives an empty string.
    wxString ReadString(const wxString& section, const wxString& key, const wxString& def) const;
    // True for any non-zero whole number; def when absent or not a number.
    bool ReadBool(const wxString& section, const wxString& key, bool def) const;
    long Read(const wxString& section, const wxString& key, long def) const;
    wxString Read(const wxString& section, const wxString& key, const wxString& def) const;

    // Sections and keys in file order, counted from 0. A name out of range,
    // or one that isn't valid UTF-8, gives an empty string.
    int GetSectionCount();
    wxString GetNthSection(int index);
    int GetKeyCount(const wxString& section);
    wxString GetNthKey(const wxString& section, int index);

    void RemoveSection(const wxString& section);
    // True when the key was there and went away.
    bool RemoveKey(const wxString& section, const wxString& key);
    // Copies the section with its keys from this store into other's,
    // overwriting keys of the same name there.
    void CopySection(const wxString& section, wxIniFile& other);
    // Does nothing when newname exists already or old doesn't.
    void RenameSection(const wxString& old, const wxString& newname);
    // Adds an empty section unless it exists.
    void RegisterSection(const wxString& section);

private:
    void HandleError(pdError* error);

    struct Share;

    inifile m_store;
    wxString m_errorMessage;
    wxCSConv m_conv;
    wxCSConv m_fallbackConv;
    Share* m_share; // the objects sharing m_store
};

#endif // WXSUPPORT_CONFIG_WXINIFILE_H
