// Bound on the expansion of entity references in attribute values.
//
// With the default parser options an attribute value keeps its entity
// references as nodes, and libxml2 expands them each time the value is asked
// for: a short attribute that refers many times to a large entity would
// build a huge string. Before asking, the XML classes work out from the
// attribute's nodes how long the expanded value would be, and treat an
// attribute past kMaxExpandedAttr as unreadable.
#ifndef WXSUPPORT_SRC_XML_ATTR_LIMIT_H
#define WXSUPPORT_SRC_XML_ATTR_LIMIT_H

#include <libxml/tree.h>

#include <cstddef>

namespace wxs_xml {

// Largest expanded attribute value handed out (bytes of UTF-8, plus one for
// each node met while expanding).
constexpr std::size_t kMaxExpandedAttr = 4u * 1024u * 1024u;

// True when some attribute of the element is more than one plain text node
// (entity references among its nodes). When it is false, as on nearly every
// element, no attribute can expand and no lookup is needed.
inline bool HasComplexAttr(const xmlNode* node) {
    for (const xmlAttr* a = node->properties; a; a = a->next) {
        const xmlNode* c = a->children;
        if (c && (c->next || c->type != XML_TEXT_NODE))
            return true;
    }
    return false;
}

// True when reading prop would expand entity references past
// kMaxExpandedAttr. Attributes without references, declared defaults and a
// null prop are never too long.
bool AttrTooLong(const xmlAttr* prop);

// The attribute that xmlTextReaderGetAttribute reads for name on the
// element node (a prefixed name through its namespace), or null when there
// is none or the name stands for a namespace declaration.
const xmlAttr* ReaderAttr(const xmlNode* node, const char* name);

} // namespace wxs_xml

#endif // WXSUPPORT_SRC_XML_ATTR_LIMIT_H
