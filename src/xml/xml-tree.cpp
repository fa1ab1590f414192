// wxXmlTree and wxXmlNode: a read-only document tree over libxml2.
#include <wxsupport/xml/xml-reader.h>

#include "xml/attr-limit.h"

#include <libxml/parser.h>
#include <wx/debug.h>

#include <climits>
#include <new>

// One parsed document and the number of trees that hold it. A document that
// Open or Parse replaced without a Close is kept alive by its successor
// (node handles may still point into it) and freed together with it.
struct wxXmlTree::Share {
    xmlDocPtr doc;
    unsigned long owners;
    Share* replaced;
};

namespace {

wxString FromLibxml(const xmlChar* text) {
    if (!text)
        return wxString();
    return wxString(reinterpret_cast<const char*>(text), wxConvUTF8);
}

// Stores a freshly parsed document (or the failure to get one) in a tree's
// fields. A document the tree held stays alive, referred to by the new
// share, until the tree closes.
template <class Share>
bool Take(xmlDocPtr parsed, xmlDocPtr& doc, xmlNodePtr& root, Share*& share) {
    doc = nullptr;
    root = nullptr;
    if (!parsed)
        return false;
    Share* s = new (std::nothrow) Share{parsed, 1, share};
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

wxXmlTree::wxXmlTree() : doc(nullptr), root(nullptr), share(nullptr) {}

wxXmlTree::wxXmlTree(const wxXmlTree& other)
    : doc(other.doc), root(other.root), share(other.share) {
    if (share)
        ++share->owners;
}

wxXmlTree& wxXmlTree::operator=(const wxXmlTree& other) {
    if (&other == this)
        return *this;
    if (other.share)
        ++other.share->owners;
    Close();
    doc = other.doc;
    root = other.root;
    share = other.share;
    return *this;
}

wxXmlTree::~wxXmlTree() {
    Close();
}

// Frees a share's document once its last owner lets go, then lets go of the
// document it replaced; a loop, since such chains can be long.
void wxXmlTree::Close() {
    Share* s = share;
    while (s && --s->owners == 0) {
        Share* next = s->replaced;
        xmlFreeDoc(s->doc);
        delete s;
        s = next;
    }
    doc = nullptr;
    root = nullptr;
    share = nullptr;
}

bool wxXmlTree::Open(const wxString& path) {
    wxASSERT(doc == 0 && root == 0);
    return Take(xmlReadFile(path.ToUTF8().data(), nullptr, 0), doc, root, share);
}

bool wxXmlTree::Parse(const wxString& xml) {
    wxASSERT(doc == 0 && root == 0);
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
    if (!node)
        return false;
    return xmlHasProp(node, reinterpret_cast<const xmlChar*>(name.mb_str(wxConvUTF8).data())) !=
           nullptr;
}

wxString wxXmlNode::GetAttr(const wxString& name) const {
    if (!node)
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
