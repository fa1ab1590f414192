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
// converter gives: EncodeUtf8 and wxsUtf8Units take those cases and give
// the very bytes and strings m_conv gives. Anything else goes to m_conv
// itself, which decides as before (no UTF-8 form: no bytes; invalid bytes:
// no string).

#if wxUSE_UNICODE_WCHAR && SIZEOF_WCHAR_T == 4
// Copies the N code units at p to out as bytes and gives true when all of
// them are ASCII other than NUL; gives false, out untouched, otherwise.
template <size_t N>
inline bool CopyAscii(const wchar_t* p, char* out) {
    // A unit in 1..0x7F is the one case where unit | (unit - 1) < 0x80: NUL
    // wraps to all ones, anything from 0x80 has a high bit of its own.
    wxUint32 bits = 0;
    for (size_t k = 0; k < N; ++k) {
        const wxUint32 c = static_cast<wxUint32>(p[k]);
        bits |= c | (c - 1);
    }
    if (bits >= 0x80)
        return false;
    for (size_t k = 0; k < N; ++k)
        out[k] = static_cast<char>(p[k]);
    return true;
}

// EncodeUtf8 from unit i on, the first i units being ASCII without NUL and
// already in out: unit by unit, for text with a NUL, non-ASCII units or more
// units than room.
size_t EncodeUtf8Rest(const wchar_t* p, size_t n, size_t i, char* out, size_t room) {
    size_t used = i;
    for (; i < n; ++i) {
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
}
#endif

// Writes the UTF-8 form of text, up to its first NUL (where the C string
// that m_conv gives ends), cut after `room` bytes, into out; gives the
// number of bytes, or kNoForm when some code unit has no UTF-8 form. The
// whole text is checked, past the NUL and the cut too: one such code unit
// makes m_conv refuse all of it.
inline size_t EncodeUtf8(const wxString& text, char* out, size_t room) {
#if wxUSE_UNICODE_WCHAR && SIZEOF_WCHAR_T == 4
    const wchar_t* p = text.wc_str();
    const size_t n = text.length();
    // Text that is ASCII without NUL and fits is a byte for each unit, taken
    // in blocks: eight units a step and a last block of eight that ends with
    // the text, or two blocks of four for 4 to 7 units (blocks that overlap
    // write the same bytes twice).
    if (n <= room) {
        size_t i = 0;
        if (n >= 8) {
            while (n - i >= 8 && CopyAscii<8>(p + i, out + i))
                i += 8;
            if (n - i < 8 && CopyAscii<8>(p + n - 8, out + n - 8))
                return n;
        } else if (n >= 4) {
            if (CopyAscii<4>(p, out) && CopyAscii<4>(p + n - 4, out + n - 4))
                return n;
        }
        return EncodeUtf8Rest(p, n, i, out, room);
    }
    return EncodeUtf8Rest(p, n, 0, out, room);
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

// The section and key of an operation as the store gets them.
class NamePair {
public:
    NamePair(const wxString& section, const wxString& key, const wxMBConv& conv)
        : m_section(section, conv), m_key(key, conv) {}

    const char* section() const { return m_section.c_str(); }
    const char* key() const { return m_key.c_str(); }

private:
    const NameBuffer m_section;
    const NameBuffer m_key;
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
    const NamePair names(section, key, m_conv);
    return inifile_has_key(m_store, names.section(), names.key()) != 0;
}

void wxIniFile::WriteLong(const wxString& section, const wxString& key, long value) {
    WXS_CHECK_NAME(section, "wxIniFile::WriteLong");
    WXS_CHECK_NAME(key, "wxIniFile::WriteLong");
    const NamePair names(section, key, m_conv);
    inifile_write_long(m_store, names.section(), names.key(), value);
}

void wxIniFile::WriteFloat(const wxString& section, const wxString& key, double value) {
    WXS_CHECK_NAME(section, "wxIniFile::WriteFloat");
    WXS_CHECK_NAME(key, "wxIniFile::WriteFloat");
    const NamePair names(section, key, m_conv);
    inifile_write_float(m_store, names.section(), names.key(), value);
}

void wxIniFile::WriteString(const wxString& section, const wxString& key, const wxString& value) {
    WXS_CHECK_NAME(section, "wxIniFile::WriteString");
    WXS_CHECK_NAME(key, "wxIniFile::WriteString");
    const NamePair names(section, key, m_conv);
    const ValueCopy v(value, m_conv);
    inifile_write_string(m_store, names.section(), names.key(), v.c_str());
}

void wxIniFile::WriteBool(const wxString& section, const wxString& key, bool value) {
    WXS_CHECK_NAME(section, "wxIniFile::WriteBool");
    WXS_CHECK_NAME(key, "wxIniFile::WriteBool");
    const NamePair names(section, key, m_conv);
    inifile_write_long(m_store, names.section(), names.key(), value ? 1 : 0);
}

void wxIniFile::Write(const wxString& section, const wxString& key, long value) {
    WXS_CHECK_NAME(section, "wxIniFile::Write");
    WXS_CHECK_NAME(key, "wxIniFile::Write");
    const NamePair names(section, key, m_conv);
    inifile_write_long(m_store, names.section(), names.key(), value);
}

void wxIniFile::Write(const wxString& section, const wxString& key, const wxString& value) {
    WXS_CHECK_NAME(section, "wxIniFile::Write");
    WXS_CHECK_NAME(key, "wxIniFile::Write");
    const NamePair names(section, key, m_conv);
    const ValueCopy v(value, m_conv);
    inifile_write_string(m_store, names.section(), names.key(), v.c_str());
}

long wxIniFile::ReadLong(const wxString& section, const wxString& key, long def) const {
    WXS_CHECK_NAME(section, "wxIniFile::ReadLong");
    WXS_CHECK_NAME(key, "wxIniFile::ReadLong");
    const NamePair names(section, key, m_conv);
    return inifile_read_long(m_store, names.section(), names.key(), def);
}

double wxIniFile::ReadFloat(const wxString& section, const wxString& key, double def) const {
    WXS_CHECK_NAME(section, "wxIniFile::ReadFloat");
    WXS_CHECK_NAME(key, "wxIniFile::ReadFloat");
    const NamePair names(section, key, m_conv);
    return inifile_read_float(m_store, names.section(), names.key(), def);
}

namespace {
// Decodes a stored value: UTF-8 first, ISO-8859-1 when that gives nothing.
// One named result on every path, so it is built in the caller's place.
wxString DecodeValue(const char* text, const wxMBConv& conv, const wxMBConv& fallback) {
    const wxsUtf8Units decoded(text ? text : "");
    wxString result(decoded.ok() ? decoded.units() : L"");
    if (!decoded.ok()) {
        result = wxString(text, conv);
        if (result.IsSameAs(wxString()))
            result = wxString(text, fallback);
    }
    return result;
}

// Decodes a name from the store: UTF-8 only, so a name that isn't valid
// UTF-8 gives an empty string, as does a null pointer.
wxString DecodeName(const char* text, const wxMBConv& conv) {
    const wxsUtf8Units decoded(text ? text : "");
    wxString result(decoded.ok() ? decoded.units() : L"");
    if (!decoded.ok())
        result = wxString(text, conv);
    return result;
}
} // namespace

wxString wxIniFile::ReadString(const wxString& section, const wxString& key,
                               const wxString& def) const {
    WXS_CHECK_NAME(section, "wxIniFile::ReadString");
    WXS_CHECK_NAME(key, "wxIniFile::ReadString");
    const NamePair names(section, key, m_conv);
    const ValueCopy d(def, m_conv);
    // The result may be the default's copy itself: decode before it goes.
    return DecodeValue(inifile_read_string(m_store, names.section(), names.key(), d.c_str()),
                       m_conv, m_fallbackConv);
}

bool wxIniFile::ReadBool(const wxString& section, const wxString& key, bool def) const {
    WXS_CHECK_NAME(section, "wxIniFile::ReadBool");
    WXS_CHECK_NAME(key, "wxIniFile::ReadBool");
    const NamePair names(section, key, m_conv);
    return inifile_read_long(m_store, names.section(), names.key(), def ? 1 : 0) != 0;
}

long wxIniFile::Read(const wxString& section, const wxString& key, long def) const {
    WXS_CHECK_NAME(section, "wxIniFile::Read");
    WXS_CHECK_NAME(key, "wxIniFile::Read");
    const NamePair names(section, key, m_conv);
    return inifile_read_long(m_store, names.section(), names.key(), def);
}

wxString wxIniFile::Read(const wxString& section, const wxString& key, const wxString& def) const {
    WXS_CHECK_NAME(section, "wxIniFile::Read");
    WXS_CHECK_NAME(key, "wxIniFile::Read");
    const NamePair names(section, key, m_conv);
    const ValueCopy d(def, m_conv);
    return DecodeValue(inifile_read_string(m_store, names.section(), names.key(), d.c_str()),
                       m_conv, m_fallbackConv);
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
    const NamePair names(section, key, m_conv);
    return inifile_remove_key(m_store, names.section(), names.key()) != 0;
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
