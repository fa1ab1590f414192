#include "xml/attr-limit.h"

#include <libxml/entities.h>

#include <cstring>
#include <string>

namespace wxs_xml {

namespace {

// Entities nest no deeper than this in a document libxml2 accepts; a deeper
// chain is treated as too long rather than walked.
constexpr int kMaxEntityDepth = 64;

// Walks a node list as xmlNodeListGetString expands it (text by its content,
// an entity reference by its entity's nodes), taking each node's cost from
// budget. False once the budget is spent.
bool Spend(const xmlDoc* doc, const xmlNode* list, std::size_t& budget, int depth) {
    if (depth > kMaxEntityDepth)
        return false;
    for (const xmlNode* n = list; n; n = n->next) {
        std::size_t cost = 1;
        const xmlNode* expand = nullptr;
        if (n->type == XML_ENTITY_REF_NODE) {
            const xmlEntity* ent = xmlGetDocEntity(doc, n->name);
            if (ent)
                expand = ent->children;
            else if (n->content)
                cost += std::strlen(reinterpret_cast<const char*>(n->content));
        } else if (n->content) {
            cost += std::strlen(reinterpret_cast<const char*>(n->content));
        }
        if (cost > budget)
            return false;
        budget -= cost;
        if (expand && !Spend(doc, expand, budget, depth + 1))
            return false;
    }
    return true;
}

} // namespace

bool AttrTooLong(const xmlAttr* prop) {
    if (!prop || prop->type != XML_ATTRIBUTE_NODE)
        return false;
    bool refs = false;
    for (const xmlNode* n = prop->children; n && !refs; n = n->next)
        refs = n->type == XML_ENTITY_REF_NODE;
    if (!refs)
        return false;
    std::size_t budget = kMaxExpandedAttr;
    return !Spend(prop->doc, prop->children, budget, 0);
}

const xmlAttr* ReaderAttr(const xmlNode* node, const char* name) {
    if (!node || !name || node->type != XML_ELEMENT_NODE)
        return nullptr;
    const char* colon = name[0] == ':' ? nullptr : std::strchr(name, ':');
    if (!colon) {
        if (std::strcmp(name, "xmlns") == 0)
            return nullptr;
        return xmlHasNsProp(node, reinterpret_cast<const xmlChar*>(name), nullptr);
    }
    const std::string prefix(name, colon);
    if (prefix == "xmlns")
        return nullptr;
    const xmlNs* ns = xmlSearchNs(node->doc, const_cast<xmlNode*>(node),
                                  reinterpret_cast<const xmlChar*>(prefix.c_str()));
    if (!ns)
        return nullptr;
    return xmlHasNsProp(node, reinterpret_cast<const xmlChar*>(colon + 1), ns->href);
}

} // namespace wxs_xml
