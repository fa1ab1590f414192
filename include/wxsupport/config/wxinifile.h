/// \file
/// wxIniFile: typed access to INI configuration files by section and key.
#ifndef WXSUPPORT_CONFIG_WXINIFILE_H
#define WXSUPPORT_CONFIG_WXINIFILE_H

#include <wxsupport/config/inifile.h>
#include <wxsupport/defs.h>

#include <wx/fontenc.h>
#include <wx/strconv.h>
#include <wx/string.h>

/// Typed access to an INI configuration file by section and key, over the
/// INI store of inifile.h.
///
/// Usage: create an object (optionally with a path, which is opened), read and
/// write values, then Save to a path of your choice; nothing is saved on
/// destruction and the object doesn't remember where it was opened from.
/// Open and Save return false on failure, and GetError then tells why; the
/// error text stays until the next failure, so test the boolean, not the text.
/// Section and key names must be shorter than 256 characters (an assertion
/// fires otherwise) and reach the store as at most 255 bytes of UTF-8.
///
/// Copies share one store: a copy and its source see each other's changes,
/// and the store is deleted when the last of them goes.
class WXSUPPORT_API wxIniFile {
public:
    /// A new, empty store. The encoding argument is not used: the file text
    /// is always UTF-8.
    wxIniFile(wxFontEncoding encoding = wxFONTENCODING_ISO8859_1);
    /// A new store opened from path; a failure shows only in GetError.
    wxIniFile(const wxString& path, wxFontEncoding encoding = wxFONTENCODING_ISO8859_1);
    /// A copy that shares the other object's store.
    wxIniFile(const wxIniFile& other);
    /// Shares the other object's store and drops this one's share of its own.
    wxIniFile& operator=(const wxIniFile& other);
    /// Deletes the store when no copy uses it any more. Doesn't save.
    ~wxIniFile();

    /// Whether case tells names apart (default: it doesn't).
    void setCaseSensitive(bool caseSensitive);
    /// Loads a file (its path converted to UTF-8); false and GetError on failure,
    /// the contents then stay as they were.
    bool Open(const wxString& path);
    /// Writes the store to a file (its path converted by the C library's
    /// locale); false and GetError on failure.
    bool Save(const wxString& path);
    /// Removes all sections and keys.
    void Clear();
    /// Text of the last failed Open or Save ("PATH:LINE: reason"); empty before any.
    wxString GetError();

    /// True when the section exists (an empty one included).
    bool HasSection(const wxString& section) const;
    /// True when the key exists in the section.
    bool HasKey(const wxString& section, const wxString& key) const;

    /// Stores a whole number as decimal text, creating section and key if needed.
    void WriteLong(const wxString& section, const wxString& key, long value);
    /// Stores a number in the shortest text that reads back to the same double.
    void WriteFloat(const wxString& section, const wxString& key, double value);
    /// Stores the text as UTF-8, creating section and key if needed.
    void WriteString(const wxString& section, const wxString& key, const wxString& value);
    /// Stored as the whole number 1 or 0.
    void WriteBool(const wxString& section, const wxString& key, bool value);
    /// Same as WriteLong.
    void Write(const wxString& section, const wxString& key, long value);
    /// Same as WriteString.
    void Write(const wxString& section, const wxString& key, const wxString& value);

    /// The stored whole number, or def when the key is absent or not a number.
    long ReadLong(const wxString& section, const wxString& key, long def) const;
    /// The stored number, or def when the key is absent or not a number.
    double ReadFloat(const wxString& section, const wxString& key, double def) const;
    /// The stored text (read as ISO-8859-1 when it isn't UTF-8), or def when
    /// the key is absent; an empty stored value gives an empty string.
    wxString ReadString(const wxString& section, const wxString& key, const wxString& def) const;
    /// True for any non-zero whole number; def when absent or not a number.
    bool ReadBool(const wxString& section, const wxString& key, bool def) const;
    /// Same as ReadLong.
    long Read(const wxString& section, const wxString& key, long def) const;
    /// Same as ReadString.
    wxString Read(const wxString& section, const wxString& key, const wxString& def) const;

    /// Number of sections.
    int GetSectionCount();
    /// Name of the section at index (0-based, file order); empty when out of
    /// range or not valid UTF-8.
    wxString GetNthSection(int index);
    /// Number of keys in the section; 0 when it is absent.
    int GetKeyCount(const wxString& section);
    /// Name of the key at index (0-based, file order) in the section; empty
    /// when out of range, the section is absent or the name isn't valid UTF-8.
    wxString GetNthKey(const wxString& section, int index);

    /// Removes the section with all its keys; nothing happens when it is absent.
    void RemoveSection(const wxString& section);
    /// True when the key was there and went away.
    bool RemoveKey(const wxString& section, const wxString& key);
    /// Copies the section with its keys from this store into other's,
    /// overwriting keys of the same name there.
    void CopySection(const wxString& section, wxIniFile& other);
    /// Does nothing when newname exists already or old doesn't.
    void RenameSection(const wxString& old, const wxString& newname);
    /// Adds an empty section unless it exists.
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
