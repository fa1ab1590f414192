// wxXmlReader and the table of node kind words.
#include <wxsupport/xml/xml-reader.h>

#include "xml/attr-limit.h"

#include <wx/debug.h>

#include <climits>
#include <new>

namespace {

const char* const kNodeKindWords[] = {
    nullptr,
    "element",
    "attribute",
    "text",
    "cdata",
    "entity ref",
    "entity",
    "processing instruction",
    "comment",
    "document",
    "document type",
    "document frag",
    "notation",
    "html document",
    "dtd",
    "element decl",
    "attribute decl",
    "entity decl",
    "namespace decl",
    "xinclude start",
    "xinclude end",
    "docb document",
};

// Reader kinds that share a number with a tree kind of another meaning.
const char* ReaderOnlyWord(int type) {
    switch (type) {
    case XML_READER_TYPE_WHITESPACE:
        return "whitespace";
    case XML_READER_TYPE_SIGNIFICANT_WHITESPACE:
        return "significant whitespace";
    case XML_READER_TYPE_END_ELEMENT:
        return "end element";
    case XML_READER_TYPE_END_ENTITY:
        return "end entity";
    case XML_READER_TYPE_XML_DECLARATION:
        return "xml declaration";
    default:
        return nullptr;
    }
}

wxString FromLibxml(const xmlChar* text) {
    if (!text)
        return wxString();
    return wxString(reinterpret_cast<const char*>(text), wxConvUTF8);
}

// Converts and releases a string that libxml2 handed over.
wxString TakeLibxml(xmlChar* text) {
    wxString s = FromLibxml(text);
    if (text)
        xmlFree(text);
    return s;
}

// The attribute operations first make sure that the value can be expanded
// within the library's bound, then make their one call to libxml2.
bool TooLong(xmlTextReaderPtr reader, const char* name) {
    const xmlNode* node = reader ? xmlTextReaderCurrentNode(reader) : nullptr;
    return node && node->type == XML_ELEMENT_NODE && wxs_xml::HasComplexAttr(node) &&
           wxs_xml::AttrTooLong(wxs_xml::ReaderAttr(node, name));
}

// Drops this object's share of a reader; the last share frees it.
void DropShare(xmlTextReaderPtr& reader, unsigned long*& shares) {
    if (shares && --*shares == 0) {
        xmlFreeTextReader(reader);
        delete shares;
    }
    reader = nullptr;
    shares = nullptr;
}

const xmlChar* X(const char* s) {
    return reinterpret_cast<const xmlChar*>(s);
}

} // namespace

wxString node_type_as_string(int type) {
    if (type < 1 || type >= static_cast<int>(sizeof kNodeKindWords / sizeof kNodeKindWords[0])) {
        wxFAIL;
        return wxString();
    }
    return wxString::FromAscii(kNodeKindWords[type]);
}

wxXmlReader::wxXmlReader() : reader(nullptr), eof(false), shares(nullptr) {}

wxXmlReader::wxXmlReader(const wxXmlReader& other)
    : reader(other.reader), eof(other.eof), shares(other.shares) {
    if (shares)
        ++*shares;
}

wxXmlReader& wxXmlReader::operator=(const wxXmlReader& other) {
    if (&other == this)
        return *this;
    if (other.shares)
        ++*other.shares;
    DropShare(reader, shares);
    reader = other.reader;
    eof = other.eof;
    shares = other.shares;
    return *this;
}

wxXmlReader::~wxXmlReader() {
    DropShare(reader, shares);
}

bool wxXmlReader::Open(const wxString& path) {
    DropShare(reader, shares);
    reader = xmlNewTextReaderFilename(path.ToUTF8().data());
    if (!reader)
        return false;
    shares = new (std::nothrow) unsigned long(1);
    if (!shares) {
        xmlFreeTextReader(reader);
        reader = nullptr;
        return false;
    }
    return true;
}

void wxXmlReader::Close() {
    DropShare(reader, shares);
}

bool wxXmlReader::iRead() {
    for (;;) {
        const int r = xmlTextReaderRead(reader);
        if (r == 0) {
            eof = true;
            return false;
        }
        if (r != 1)
            return false;
        const int type = xmlTextReaderNodeType(reader);
        if (type != XML_READER_TYPE_COMMENT && type != XML_READER_TYPE_WHITESPACE &&
            type != XML_READER_TYPE_SIGNIFICANT_WHITESPACE)
            return true;
    }
}

bool wxXmlReader::iNext() {
    for (;;) {
        const int r = xmlTextReaderNext(reader);
        if (r == 0) {
            eof = true;
            return false;
        }
        if (r != 1)
            return false;
        const int type = xmlTextReaderNodeType(reader);
        if (type != XML_READER_TYPE_COMMENT && type != XML_READER_TYPE_WHITESPACE &&
            type != XML_READER_TYPE_SIGNIFICANT_WHITESPACE)
            return true;
    }
}

bool wxXmlReader::IsEOF() {
    return eof;
}

wxString wxXmlReader::GetType() {
    const int type = xmlTextReaderNodeType(reader);
    if (const char* word = ReaderOnlyWord(type))
        return wxString::FromAscii(word);
    return node_type_as_string(type);
}

bool wxXmlReader::IsElement() {
    return xmlTextReaderNodeType(reader) == XML_READER_TYPE_ELEMENT;
}

bool wxXmlReader::IsEndElement() {
    return xmlTextReaderNodeType(reader) == XML_READER_TYPE_END_ELEMENT;
}

bool wxXmlReader::IsText() {
    return xmlTextReaderNodeType(reader) == XML_READER_TYPE_TEXT;
}

bool wxXmlReader::IsComment() {
    return xmlTextReaderNodeType(reader) == XML_READER_TYPE_COMMENT;
}

bool wxXmlReader::IsEmptyElement() {
    return xmlTextReaderIsEmptyElement(reader) != 0;
}

bool wxXmlReader::CmpName(const char* name) {
    const xmlChar* current = xmlTextReaderConstName(reader);
    return current && name && xmlStrcmp(current, X(name)) == 0;
}

wxString wxXmlReader::GetName() {
    return FromLibxml(xmlTextReaderConstName(reader));
}

wxString wxXmlReader::GetAttr(const char* name) {
    if (!name || TooLong(reader, name))
        return wxString();
    return TakeLibxml(xmlTextReaderGetAttribute(reader, X(name)));
}

bool wxXmlReader::HasAttr(const char* name) {
    if (!name)
        return false;
    if (TooLong(reader, name))
        return true;
    xmlChar* value = xmlTextReaderGetAttribute(reader, X(name));
    if (!value)
        return false;
    xmlFree(value);
    return true;
}

bool wxXmlReader::GetAttrAsBool(const char* name, bool def) {
    if (!name || TooLong(reader, name))
        return def;
    xmlChar* value = xmlTextReaderGetAttribute(reader, X(name));
    if (!value)
        return def;
    const bool result = xmlStrcmp(value, X("0")) != 0;
    xmlFree(value);
    return result;
}

bool wxXmlReader::AttrAsInt(const char* name, int* value) {
    if (!name || TooLong(reader, name))
        return false;
    xmlChar* text = xmlTextReaderGetAttribute(reader, X(name));
    if (!text)
        return false;
    long number = 0;
    if (!TakeLibxml(text).ToLong(&number, 10) || number < INT_MIN || number > INT_MAX)
        return false;
    if (value)
        *value = static_cast<int>(number);
    return true;
}

bool wxXmlReader::AttrAsColor(const char* name, wxColour& value) {
    if (!name || TooLong(reader, name))
        return false;
    xmlChar* text = xmlTextReaderGetAttribute(reader, X(name));
    if (!text)
        return false;
    wxColour colour;
    if (!colour.Set(TakeLibxml(text)))
        return false;
    value = colour;
    return true;
}

wxString wxXmlReader::GetText() {
    return TakeLibxml(xmlTextReaderReadString(reader));
}
