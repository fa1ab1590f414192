// The XML classes over libxml2: wxXmlReader (one forward pass), wxXmlWriter
// (an indented UTF-8 file), wxXmlTree and wxXmlNode (a read-only document
// tree), and the table of node kind words that the reader and the tree share.
#include <wxsupport/xml/xml-reader.h>

#include "common/shared-handle.h"
#include "common/utf8.h"
#include "text/utf8form.h"
#include "xml/attr-limit.h"

#include <libxml/parser.h>
#include <wx/debug.h>
#include <wx/translation.h>

#include <climits>

// The shares of the libxml2 handles among copies. A document that Open or
// Parse replaced without a Close is kept by its successor's share (node
// handles may still point into it) and freed together with it.
struct wxXmlReader::Share
    : wxs::SharedHandle<wxXmlReader::Share, xmlTextReaderPtr, xmlFreeTextReader> {};
struct wxXmlWriter::Share
    : wxs::SharedHandle<wxXmlWriter::Share, xmlTextWriterPtr, xmlFreeTextWriter> {};
struct wxXmlTree::Share : wxs::SharedHandle<wxXmlTree::Share, xmlDocPtr, xmlFreeDoc> {};

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

// Text from libxml2 is well-formed UTF-8 as a rule, which wxs_decode_utf8
// turns into the string wxConvUTF8 gives, several times faster; anything
// else goes to wxConvUTF8 itself.
wxString FromLibxml(const xmlChar* text) {
    wxString s;
    if (text && !wxs_decode_utf8(reinterpret_cast<const char*>(text), s))
        s = wxString(reinterpret_cast<const char*>(text), wxConvUTF8);
    return s;
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

const xmlChar* X(const char* s) {
    return reinterpret_cast<const xmlChar*>(s);
}

// --- tree helpers
// Stores a freshly parsed document (or the failure to get one) in a tree's
// fields. A document the tree held stays alive, referred to by the new
// share, until the tree closes.
template <class Share>
bool Take(xmlDocPtr parsed, xmlDocPtr& doc, xmlNodePtr& root, Share*& share) {
    doc = nullptr;
    root = nullptr;
    if (!parsed)
        return false;
    Share* s = Share::Start(parsed, share);
    if (!s) {
        xmlFreeDoc(parsed);
        return false;
    }
    share = s;
    doc = parsed;
    root = xmlDocGetRootElement(parsed);
    return true;
}

} // namespace

// ---------------------------------------------------------------------------
// wxXmlReader

wxString node_type_as_string(int type) {
    if (type < 1 || type >= static_cast<int>(sizeof kNodeKindWords / sizeof kNodeKindWords[0])) {
        wxFAIL;
        return wxString();
    }
    return wxString::FromAscii(kNodeKindWords[type]);
}

wxXmlReader::wxXmlReader() : reader(nullptr), eof(false), share(nullptr) {}

wxXmlReader::wxXmlReader(const wxXmlReader& other)
    : reader(other.reader), eof(other.eof), share(Share::Copy(other.share)) {}

wxXmlReader& wxXmlReader::operator=(const wxXmlReader& other) {
    Share::Assign(share, other.share);
    reader = other.reader;
    eof = other.eof;
    return *this;
}

wxXmlReader::~wxXmlReader() {
    Close();
}

bool wxXmlReader::Open(const wxString& path) {
    Close();
    if (!wxs_has_utf8_form(path))
        return false;
    reader = xmlNewTextReaderFilename(path.ToUTF8().data());
    if (!reader)
        return false;
    share = Share::Start(reader);
    if (!share) {
        xmlFreeTextReader(reader);
        reader = nullptr;
        return false;
    }
    return true;
}

void wxXmlReader::Close() {
    Share::Drop(share);
    reader = nullptr;
}

namespace {
// One step of iRead or iNext: moves with `step` past comments and white
// space; sets eof at the orderly end, leaves it alone on a failure.
template <int (*step)(xmlTextReaderPtr)>
bool Advance(xmlTextReaderPtr reader, bool& eof) {
    for (;;) {
        const int r = step(reader);
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
} // namespace

bool wxXmlReader::iRead() {
    return Advance<xmlTextReaderRead>(reader, eof);
}

bool wxXmlReader::iNext() {
    return Advance<xmlTextReaderNext>(reader, eof);
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

// ---------------------------------------------------------------------------
// wxXmlWriter

wxXmlWriter::wxXmlWriter() : writer(nullptr), share(nullptr) {}

wxXmlWriter::wxXmlWriter(const wxXmlWriter& other)
    : writer(other.writer), share(Share::Copy(other.share)) {}

wxXmlWriter& wxXmlWriter::operator=(const wxXmlWriter& other) {
    if (&other == this)
        return *this; // closing would flush; nothing to do here
    Share* taken = Share::Copy(other.share);
    Close();
    writer = other.writer;
    share = taken;
    return *this;
}

wxXmlWriter::~wxXmlWriter() {
    Close();
}

bool wxXmlWriter::Open(const wxString& path) {
    Close();
    if (!wxs_has_utf8_form(path))
        return false;
    writer = xmlNewTextWriterFilename(path.ToUTF8().data(), 0);
    if (!writer)
        return false;
    share = Share::Start(writer);
    if (!share) {
        xmlFreeTextWriter(writer);
        writer = nullptr;
        return false;
    }
    xmlTextWriterSetIndent(writer, 1);
    xmlTextWriterSetIndentString(writer, X("  "));
    return true;
}

bool wxXmlWriter::StartDocument() {
    return xmlTextWriterStartDocument(writer, nullptr, "UTF-8", nullptr) >= 0;
}

bool wxXmlWriter::StartElement(const char* name) {
    return xmlTextWriterStartElement(writer, X(name)) >= 0;
}

bool wxXmlWriter::WriteAttr(const char* name, const wxString& value) {
    if (!wxs_has_utf8_form(value))
        return false;
    return xmlTextWriterWriteAttribute(writer, X(name), X(value.mb_str(wxConvUTF8).data())) >= 0;
}

bool wxXmlWriter::WriteAttr(const wxString& name, const wxString& value) {
    if (!wxs_has_utf8_form(name))
        return false;
    return WriteAttr(name.mb_str(wxConvUTF8).data(), value);
}

bool wxXmlWriter::WriteAttr(const char* name, int value) {
    return xmlTextWriterWriteFormatAttribute(writer, X(name), "%d", value) >= 0;
}

bool wxXmlWriter::WriteAttr(const wxString& name, int value) {
    if (!wxs_has_utf8_form(name))
        return false;
    return WriteAttr(name.mb_str(wxConvUTF8).data(), value);
}

// An invalid colour or date has no text form: it writes nothing and gives
// false, rather than wxWidgets' assertions and a made-up value.
bool wxXmlWriter::WriteAttr(const char* name, const wxColour& value) {
    if (!value.IsOk())
        return false;
    return xmlTextWriterWriteFormatAttribute(
               writer, X(name), "#%02x%02x%02x", static_cast<unsigned>(value.Red()),
               static_cast<unsigned>(value.Green()), static_cast<unsigned>(value.Blue())) >= 0;
}

bool wxXmlWriter::writeAttr(const char* name, const wxDateTime& value) {
    if (!value.IsValid())
        return false;
    return xmlTextWriterWriteAttribute(
               writer, X(name), X(value.FormatISOCombined('T').mb_str(wxConvUTF8).data())) >= 0;
}

bool wxXmlWriter::WriteText(const wxString& text) {
    if (!wxs_has_utf8_form(text))
        return false;
    return xmlTextWriterWriteString(writer, X(text.mb_str(wxConvUTF8).data())) >= 0;
}

bool wxXmlWriter::EndElement() {
    return xmlTextWriterEndElement(writer) >= 0;
}

bool wxXmlWriter::EndDocument() {
    return xmlTextWriterEndDocument(writer) >= 0;
}

// Flushes what the writer holds, then drops this object's share of it.
void wxXmlWriter::Close() {
    if (writer)
        xmlTextWriterFlush(writer);
    Share::Drop(share);
    writer = nullptr;
}

wxString wxXmlWriter::GetError() {
    return _("Unhandled XML-error.");
}

// ---------------------------------------------------------------------------
// wxXmlTree and wxXmlNode

wxXmlTree::wxXmlTree() : doc(nullptr), root(nullptr), share(nullptr) {}

wxXmlTree::wxXmlTree(const wxXmlTree& other)
    : doc(other.doc), root(other.root), share(Share::Copy(other.share)) {}

wxXmlTree& wxXmlTree::operator=(const wxXmlTree& other) {
    Share::Assign(share, other.share);
    doc = other.doc;
    root = other.root;
    return *this;
}

wxXmlTree::~wxXmlTree() {
    Close();
}

// The last tree to close frees the document, and with it the documents it
// replaced.
void wxXmlTree::Close() {
    Share::Drop(share);
    doc = nullptr;
    root = nullptr;
}

bool wxXmlTree::Open(const wxString& path) {
    wxASSERT(doc == 0 && root == 0);
    if (!wxs_has_utf8_form(path))
        return Take(nullptr, doc, root, share);
    return Take(xmlReadFile(path.ToUTF8().data(), nullptr, 0), doc, root, share);
}

bool wxXmlTree::Parse(const wxString& xml) {
    wxASSERT(doc == 0 && root == 0);
    if (!wxs_has_utf8_form(xml))
        return Take(nullptr, doc, root, share);
    const wxScopedCharBuffer utf8 = xml.utf8_str();
    if (utf8.length() > static_cast<size_t>(INT_MAX))
        return Take(nullptr, doc, root, share);
    return Take(xmlReadMemory(utf8.data(), static_cast<int>(utf8.length()), nullptr, nullptr, 0),
                doc, root, share);
}

wxXmlNode wxXmlTree::GetRoot() {
    wxASSERT(doc != 0 && root != 0);
    return wxXmlNode(root);
}

// wxXmlNode. Every operation is safe on a null handle and gives its fallback
// there; IsNull is the one meant for it.

bool wxXmlNode::IsNull() const {
    return node == nullptr;
}

wxString wxXmlNode::GetNodeName() const {
    return node ? FromLibxml(node->name) : wxString();
}

wxString wxXmlNode::GetType() const {
    return node_type_as_string(node ? static_cast<int>(node->type) : 0);
}

bool wxXmlNode::IsElement() const {
    return node && node->type == XML_ELEMENT_NODE;
}

bool wxXmlNode::IsText() const {
    return node && node->type == XML_TEXT_NODE;
}

bool wxXmlNode::IsComment() const {
    return node && node->type == XML_COMMENT_NODE;
}

bool wxXmlNode::IsWhitespace() const {
    if (!IsText())
        return false;
    for (const xmlChar* p = node->content; p && *p; ++p) {
        if (*p != ' ' && *p != '\t' && *p != '\r' && *p != '\n')
            return false;
    }
    return true;
}

// An entity reference is a leaf here. libxml2 hangs the entity's declaration
// below it, and the declarations are siblings in the DTD: a walk over all
// nodes that went down there would wander through the DTD and, once one
// entity refers to another, never end.
bool wxXmlNode::HasChildren() const {
    return node && node->type != XML_ENTITY_REF_NODE && node->children != nullptr;
}

unsigned int wxXmlNode::GetChildElementCount() const {
    return node ? static_cast<unsigned int>(xmlChildElementCount(node)) : 0;
}

wxXmlNode wxXmlNode::GetFirstChild() const {
    if (!node)
        return wxXmlNode(nullptr);
    if (node->type == XML_ENTITY_REF_NODE) {
        // Childless, as HasChildren says: the same report as for a leaf.
#if wxDEBUG_LEVEL
        if (wxTheAssertHandler)
            wxOnAssert(__FILE__, __LINE__, __WXFUNCTION__, "node->children != 0");
#endif
        return wxXmlNode(nullptr);
    }
    wxASSERT(node->children != 0);
    return wxXmlNode(node->children);
}

wxXmlNode wxXmlNode::GetFirstElementChild() const {
    return wxXmlNode(node ? xmlFirstElementChild(node) : nullptr);
}

bool wxXmlNode::HasNextSibling() const {
    return node && node->next != nullptr;
}

wxXmlNode wxXmlNode::GetNextSibling() const {
    if (!node)
        return wxXmlNode(nullptr);
    wxASSERT(node->next != 0);
    return wxXmlNode(node->next);
}

wxXmlNode wxXmlNode::GetNextElementSibling() const {
    return wxXmlNode(node ? xmlNextElementSibling(node) : nullptr);
}

bool wxXmlNode::HasAttr(const wxString& name) const {
    if (!node || !wxs_has_utf8_form(name))
        return false;
    return xmlHasProp(node, reinterpret_cast<const xmlChar*>(name.mb_str(wxConvUTF8).data())) !=
           nullptr;
}

wxString wxXmlNode::GetAttr(const wxString& name) const {
    if (!node || !wxs_has_utf8_form(name))
        return wxString();
    const wxCharBuffer utf8 = name.mb_str(wxConvUTF8);
    const xmlChar* key = reinterpret_cast<const xmlChar*>(utf8.data());
    if (node->type == XML_ELEMENT_NODE && wxs_xml::HasComplexAttr(node) &&
        wxs_xml::AttrTooLong(xmlHasProp(node, key)))
        return wxString();
    xmlChar* value = xmlGetProp(node, key);
    if (!value)
        return wxString();
    wxString s = FromLibxml(value);
    xmlFree(value);
    return s;
}

int wxXmlNode::GetAttrAsInt(const wxString& name) const {
    long number = 0;
    if (!GetAttr(name).ToLong(&number, 10) || number < INT_MIN || number > INT_MAX)
        return 0;
    return static_cast<int>(number);
}

double wxXmlNode::GetAttrAsDouble(const wxString& name) const {
    double number = 0.0;
    if (!GetAttr(name).ToDouble(&number))
        return 0.0;
    return number;
}

wxColour wxXmlNode::getAttrAsColour(const wxString& name) const {
    const wxString text = GetAttr(name);
    if (text.empty())
        return wxColour();
    wxColour colour;
    if (colour.Set(text))
        return colour;
    return wxColour();
}

wxDateTime wxXmlNode::getAttrAsDateTime(const wxString& name) const {
    const wxString text = GetAttr(name);
    if (text.empty())
        return wxDefaultDateTime;
    wxDateTime date;
    if (date.ParseISOCombined(text, 'T'))
        return date;
    return wxDefaultDateTime;
}

wxString wxXmlNode::GetText() const {
    if (!node)
        return wxString();
    wxASSERT(node->type == XML_TEXT_NODE);
    return FromLibxml(node->content);
}

wxString wxXmlNode::GetTextContent() const {
    if (!node)
        return wxString();
    wxASSERT(node->type == XML_ELEMENT_NODE);
    const xmlNode* first = node->children;
    if (first && !first->next && first->type == XML_TEXT_NODE)
        return FromLibxml(first->content);
    return wxString();
}
