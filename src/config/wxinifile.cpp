#include <wxsupport/config/wxinifile.h>

#include "common/shared-handle.h"
#include "common/utf8.h"

#include <wx/debug.h>
#include <wx/intl.h>

#include <stdlib.h>
#include <string.h>

namespace {

const size_t kNameBufferSize = 256;
const size_t kNoForm = static_cast<size_t>(-1);

// UTF-8 without the converter. m_conv, a wxCSConv for "utf-8", goes through
// iconv (two passes and a lock) on every call. Text that is plain Unicode
// (every code unit a scalar value: no surrogate, nothing above U+10FFFF) and
// bytes that are well-formed UTF-8 have one conversion, which every correct
// converter gives: EncodeUtf8 and wxs_decode_utf8 take those cases and give
// the very bytes and strings m_conv gives. Anything else goes to m_conv
// itself, which decides as before (no UTF-8 form: no bytes; invalid bytes:
// no string).

// Writes the UTF-8 form of text, up to its first NUL (where the C string
// that m_conv gives ends), cut after `room` bytes, into out; gives the
// number of bytes, or kNoForm when some code unit has no UTF-8 form. The
// whole text is checked, past the NUL and the cut too: one such code unit
// makes m_conv refuse all of it.
size_t EncodeUtf8(const wxString& text, char* out, size_t room) {
#if wxUSE_UNICODE_WCHAR && SIZEOF_WCHAR_T == 4
    const wchar_t* p = text.wc_str();
    const size_t n = text.length();
    size_t used = 0;
    for (size_t i = 0; i < n; ++i) {
        const wxUint32 c = static_cast<wxUint32>(p[i]);
        if (c < 0x80) {
            if (c == 0)
                room = used; // the C string ends here
            else if (used < room)
                out[used++] = static_cast<char>(c);
            continue;
        }
        if ((c >= 0xD800 && c < 0xE000) || c > 0x10FFFF)
            return kNoForm;
        unsigned char bytes[4];
        size_t count;
        if (c < 0x800) {
            bytes[0] = static_cast<unsigned char>(0xC0 | (c >> 6));
            count = 2;
        } else if (c < 0x10000) {
            bytes[0] = static_cast<unsigned char>(0xE0 | (c >> 12));
            bytes[1] = static_cast<unsigned char>(0x80 | ((c >> 6) & 0x3F));
            count = 3;
        } else {
            bytes[0] = static_cast<unsigned char>(0xF0 | (c >> 18));
            bytes[1] = static_cast<unsigned char>(0x80 | ((c >> 12) & 0x3F));
            bytes[2] = static_cast<unsigned char>(0x80 | ((c >> 6) & 0x3F));
            count = 4;
        }
        bytes[count - 1] = static_cast<unsigned char>(0x80 | (c & 0x3F));
        for (size_t k = 0; k < count && used < room; ++k)
            out[used++] = static_cast<char>(bytes[k]);
    }
    return used;
#else
    // Code units that are not code points (UTF-16 or UTF-8 storage): the
    // converter does it all.
    (void)text, (void)out, (void)room;
    return kNoForm;
#endif
}

// A name as the store gets it: UTF-8, cut at 255 bytes (possibly inside a
// multi-byte sequence), terminated. Lives for one store call.
class NameBuffer {
public:
    NameBuffer(const wxString& name, const wxMBConv& conv) {
        size_t length = EncodeUtf8(name, m_text, kNameBufferSize - 1);
        if (length == kNoForm) {
            const wxCharBuffer narrow = name.mb_str(conv);
            const char* bytes = narrow.data();
            length = bytes ? strlen(bytes) : 0;
            if (length > kNameBufferSize - 1)
                length = kNameBufferSize - 1;
            if (length)
                memcpy(m_text, bytes, length);
        }
        m_text[length] = '\0';
    }
    NameBuffer(const NameBuffer&) = delete;
    NameBuffer& operator=(const NameBuffer&) = delete;

    const char* c_str() const { return m_text; }

private:
    char m_text[kNameBufferSize];
};

// A UTF-8 copy of a value or default from pd_strdup, released with free. A
// text without a UTF-8 form is handed over as an empty text.
class ValueCopy {
public:
    ValueCopy(const wxString& value, const wxMBConv& conv) : m_text(nullptr) {
        // Four bytes at most for each code unit, and the terminator.
        const size_t room = value.length() * 4;
        char stackBytes[4 * kNameBufferSize];
        char* bytes = room < sizeof stackBytes ? stackBytes : static_cast<char*>(malloc(room + 1));
        const size_t length = bytes ? EncodeUtf8(value, bytes, room) : kNoForm;
        if (length != kNoForm) {
            bytes[length] = '\0';
            m_text = pd_strdup(bytes);
        } else {
            const wxCharBuffer narrow = value.mb_str(conv);
            m_text = pd_strdup(narrow.data() ? narrow.data() : "");
        }
        if (bytes != stackBytes)
            free(bytes);
    }
    ~ValueCopy() { free(m_text); }
    ValueCopy(const ValueCopy&) = delete;
    ValueCopy& operator=(const ValueCopy&) = delete;

    const char* c_str() const { return m_text ? m_text : ""; }

private:
    char* m_text;
};

} // namespace

// The assertion of the name frame reports the condition as written here, this
// file and the qualified name of the operation.
// Where assertions compile to nothing (wxDEBUG_LEVEL 0), so does this one.
// clang-format off
#if wxDEBUG_LEVEL
#define WXS_CHECK_NAME(name, function) \
    wxASSERT_MSG_AT(name.Len () < 256, (const char*)NULL, "wxinifile.cpp", __LINE__, function)
#else
#define WXS_CHECK_NAME(name, function) ((void)0)
#endif
// clang-format on

// Copies share the store; the last one to go deletes it.
struct wxIniFile::Share : wxs::SharedHandle<wxIniFile::Share, inifile, inifile_delete> {};

wxIniFile::wxIniFile(wxFontEncoding)
    : m_store(inifile_new()), m_conv("utf-8"), m_fallbackConv("iso-8859-1"),
      m_share(Share::Start(m_store)) {}

wxIniFile::wxIniFile(const wxString& path, wxFontEncoding)
    : m_store(inifile_new()), m_conv("utf-8"), m_fallbackConv("iso-8859-1"),
      m_share(Share::Start(m_store)) {
    Open(path);
}

wxIniFile::wxIniFile(const wxIniFile& other)
    : m_store(other.m_store), m_errorMessage(other.m_errorMessage), m_conv(other.m_conv),
      m_fallbackConv(other.m_fallbackConv), m_share(Share::Copy(other.m_share)) {}

wxIniFile& wxIniFile::operator=(const wxIniFile& other) {
    Share::Assign(m_share, other.m_share);
    m_store = other.m_store;
    m_errorMessage = other.m_errorMessage;
    m_conv = other.m_conv;
    m_fallbackConv = other.m_fallbackConv;
    return *this;
}

wxIniFile::~wxIniFile() {
    Share::Drop(m_share);
}

void wxIniFile::setCaseSensitive(bool caseSensitive) {
    inifile_set_case_sensitive(m_store, caseSensitive ? 1 : 0);
}

bool wxIniFile::Open(const wxString& path) {
    pdError* error = nullptr;
    const ValueCopy narrowPath(path, m_conv);
    const int result = inifile_open(m_store, narrowPath.c_str(), &error);
    if (result != 0) {
        HandleError(error);
        pderror_free(error);
    }
    return result == 0;
}

bool wxIniFile::Save(const wxString& path) {
    pdError* error = nullptr;
    // The C library's locale decides the bytes of the path here.
    const char* narrowPath = path;
    const int result = inifile_save(m_store, narrowPath ? narrowPath : "", &error);
    if (result != 0) {
        HandleError(error);
        pderror_free(error);
    }
    return result == 0;
}

void wxIniFile::Clear() {
    inifile_clear(m_store);
}

wxString wxIniFile::GetError() {
    return m_errorMessage;
}

void wxIniFile::HandleError(pdError* error) {
    if (!error) {
        m_errorMessage = wxGetTranslation("No error");
        return;
    }
    const char* regionText = pderror_region(error);
    const char* messageText = pderror_message(error);
    const wxString region(regionText ? regionText : "", *wxConvCurrent);
    const wxString message(messageText ? messageText : "", *wxConvCurrent);
    if (!region.empty())
        m_errorMessage = wxString::Format("%s: %s", region, message);
    else
        m_errorMessage = wxString::Format("%s", message);
}

bool wxIniFile::HasSection(const wxString& section) const {
    WXS_CHECK_NAME(section, "wxIniFile::HasSection");
    const NameBuffer sec(section, m_conv);
    return inifile_has_section(m_store, sec.c_str()) != 0;
}

bool wxIniFile::HasKey(const wxString& section, const wxString& key) const {
    WXS_CHECK_NAME(section, "wxIniFile::HasKey");
    WXS_CHECK_NAME(key, "wxIniFile::HasKey");
    const NameBuffer sec(section, m_conv);
    const NameBuffer k(key, m_conv);
    return inifile_has_key(m_store, sec.c_str(), k.c_str()) != 0;
}

void wxIniFile::WriteLong(const wxString& section, const wxString& key, long value) {
    WXS_CHECK_NAME(section, "wxIniFile::WriteLong");
    WXS_CHECK_NAME(key, "wxIniFile::WriteLong");
    const NameBuffer sec(section, m_conv);
    const NameBuffer k(key, m_conv);
    inifile_write_long(m_store, sec.c_str(), k.c_str(), value);
}

void wxIniFile::WriteFloat(const wxString& section, const wxString& key, double value) {
    WXS_CHECK_NAME(section, "wxIniFile::WriteFloat");
    WXS_CHECK_NAME(key, "wxIniFile::WriteFloat");
    const NameBuffer sec(section, m_conv);
    const NameBuffer k(key, m_conv);
    inifile_write_float(m_store, sec.c_str(), k.c_str(), value);
}

void wxIniFile::WriteString(const wxString& section, const wxString& key, const wxString& value) {
    WXS_CHECK_NAME(section, "wxIniFile::WriteString");
    WXS_CHECK_NAME(key, "wxIniFile::WriteString");
    const NameBuffer sec(section, m_conv);
    const NameBuffer k(key, m_conv);
    const ValueCopy v(value, m_conv);
    inifile_write_string(m_store, sec.c_str(), k.c_str(), v.c_str());
}

void wxIniFile::WriteBool(const wxString& section, const wxString& key, bool value) {
    WXS_CHECK_NAME(section, "wxIniFile::WriteBool");
    WXS_CHECK_NAME(key, "wxIniFile::WriteBool");
    const NameBuffer sec(section, m_conv);
    const NameBuffer k(key, m_conv);
    inifile_write_long(m_store, sec.c_str(), k.c_str(), value ? 1 : 0);
}

void wxIniFile::Write(const wxString& section, const wxString& key, long value) {
    WXS_CHECK_NAME(section, "wxIniFile::Write");
    WXS_CHECK_NAME(key, "wxIniFile::Write");
    const NameBuffer sec(section, m_conv);
    const NameBuffer k(key, m_conv);
    inifile_write_long(m_store, sec.c_str(), k.c_str(), value);
}

void wxIniFile::Write(const wxString& section, const wxString& key, const wxString& value) {
    WXS_CHECK_NAME(section, "wxIniFile::Write");
    WXS_CHECK_NAME(key, "wxIniFile::Write");
    const NameBuffer sec(section, m_conv);
    const NameBuffer k(key, m_conv);
    const ValueCopy v(value, m_conv);
    inifile_write_string(m_store, sec.c_str(), k.c_str(), v.c_str());
}

long wxIniFile::ReadLong(const wxString& section, const wxString& key, long def) const {
    WXS_CHECK_NAME(section, "wxIniFile::ReadLong");
    WXS_CHECK_NAME(key, "wxIniFile::ReadLong");
    const NameBuffer sec(section, m_conv);
    const NameBuffer k(key, m_conv);
    return inifile_read_long(m_store, sec.c_str(), k.c_str(), def);
}

double wxIniFile::ReadFloat(const wxString& section, const wxString& key, double def) const {
    WXS_CHECK_NAME(section, "wxIniFile::ReadFloat");
    WXS_CHECK_NAME(key, "wxIniFile::ReadFloat");
    const NameBuffer sec(section, m_conv);
    const NameBuffer k(key, m_conv);
    return inifile_read_float(m_store, sec.c_str(), k.c_str(), def);
}

namespace {
// Decodes a stored value: UTF-8 first, ISO-8859-1 when that gives nothing.
wxString DecodeValue(const char* text, const wxMBConv& conv, const wxMBConv& fallback) {
    if (!text || !*text)
        return wxString();
    wxString result;
    if (wxs_decode_utf8(text, result))
        return result;
    result = wxString(text, conv);
    if (result.IsSameAs(wxString()))
        result = wxString(text, fallback);
    return result;
}

// Decodes a name from the store: UTF-8 only, so a name that isn't valid
// UTF-8 gives an empty string, as does a null pointer.
wxString DecodeName(const char* text, const wxMBConv& conv) {
    wxString result;
    if (text && !wxs_decode_utf8(text, result))
        result = wxString(text, conv);
    return result;
}
} // namespace

wxString wxIniFile::ReadString(const wxString& section, const wxString& key,
                               const wxString& def) const {
    WXS_CHECK_NAME(section, "wxIniFile::ReadString");
    WXS_CHECK_NAME(key, "wxIniFile::ReadString");
    const NameBuffer sec(section, m_conv);
    const NameBuffer k(key, m_conv);
    const ValueCopy d(def, m_conv);
    // The result may be the default's copy itself: decode before it goes.
    return DecodeValue(inifile_read_string(m_store, sec.c_str(), k.c_str(), d.c_str()), m_conv,
                       m_fallbackConv);
}

bool wxIniFile::ReadBool(const wxString& section, const wxString& key, bool def) const {
    WXS_CHECK_NAME(section, "wxIniFile::ReadBool");
    WXS_CHECK_NAME(key, "wxIniFile::ReadBool");
    const NameBuffer sec(section, m_conv);
    const NameBuffer k(key, m_conv);
    return inifile_read_long(m_store, sec.c_str(), k.c_str(), def ? 1 : 0) != 0;
}

long wxIniFile::Read(const wxString& section, const wxString& key, long def) const {
    WXS_CHECK_NAME(section, "wxIniFile::Read");
    WXS_CHECK_NAME(key, "wxIniFile::Read");
    const NameBuffer sec(section, m_conv);
    const NameBuffer k(key, m_conv);
    return inifile_read_long(m_store, sec.c_str(), k.c_str(), def);
}

wxString wxIniFile::Read(const wxString& section, const wxString& key, const wxString& def) const {
    WXS_CHECK_NAME(section, "wxIniFile::Read");
    WXS_CHECK_NAME(key, "wxIniFile::Read");
    const NameBuffer sec(section, m_conv);
    const NameBuffer k(key, m_conv);
    const ValueCopy d(def, m_conv);
    return DecodeValue(inifile_read_string(m_store, sec.c_str(), k.c_str(), d.c_str()), m_conv,
                       m_fallbackConv);
}

int wxIniFile::GetSectionCount() {
    return inifile_get_section_count(m_store);
}

wxString wxIniFile::GetNthSection(int index) {
    return DecodeName(inifile_get_section_by_index(m_store, index), m_conv);
}

int wxIniFile::GetKeyCount(const wxString& section) {
    WXS_CHECK_NAME(section, "wxIniFile::GetKeyCount");
    const NameBuffer sec(section, m_conv);
    return inifile_get_key_count(m_store, sec.c_str());
}

wxString wxIniFile::GetNthKey(const wxString& section, int index) {
    WXS_CHECK_NAME(section, "wxIniFile::GetNthKey");
    const NameBuffer sec(section, m_conv);
    return DecodeName(inifile_get_key_by_index(m_store, sec.c_str(), index), m_conv);
}

void wxIniFile::RemoveSection(const wxString& section) {
    WXS_CHECK_NAME(section, "wxIniFile::RemoveSection");
    const NameBuffer sec(section, m_conv);
    inifile_remove_section(m_store, sec.c_str());
}

bool wxIniFile::RemoveKey(const wxString& section, const wxString& key) {
    WXS_CHECK_NAME(section, "wxIniFile::RemoveKey");
    WXS_CHECK_NAME(key, "wxIniFile::RemoveKey");
    const NameBuffer sec(section, m_conv);
    const NameBuffer k(key, m_conv);
    return inifile_remove_key(m_store, sec.c_str(), k.c_str()) != 0;
}

void wxIniFile::CopySection(const wxString& section, wxIniFile& other) {
    WXS_CHECK_NAME(section, "wxIniFile::CopySection");
    const NameBuffer sec(section, m_conv);
    inifile_copy_section(m_store, sec.c_str(), other.m_store);
}

void wxIniFile::RenameSection(const wxString& old, const wxString& newname) {
    WXS_CHECK_NAME(old, "wxIniFile::RenameSection");
    WXS_CHECK_NAME(newname, "wxIniFile::RenameSection");
    const NameBuffer from(old, m_conv);
    const NameBuffer to(newname, m_conv);
    inifile_rename_section(m_store, from.c_str(), to.c_str());
}

void wxIniFile::RegisterSection(const wxString& section) {
    WXS_CHECK_NAME(section, "wxIniFile::RegisterSection");
    const NameBuffer sec(section, m_conv);
    inifile_register_section(m_store, sec.c_str());
}
