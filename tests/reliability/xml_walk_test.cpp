// Hostile XML through the tree walk that wxXmlNode documents for all nodes:
// HasChildren/GetFirstChild, then HasNextSibling/GetNextSibling. The walk
// must end on every document libxml2 accepts. Entity references are the
// hard case: libxml2 hangs the entity's declaration below each reference,
// and declarations are siblings of each other in the DTD, so following those
// links naively cycles as soon as one entity refers to another.
#include <wxsupport/xml/xml-reader.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

namespace {

struct Walk {
    int nodes = 0;
    int maxDepth = 0;
    bool runaway = false;
    std::vector<wxString> types;
};

void WalkAll(const wxXmlNode& n, int depth, Walk& w) {
    if (w.runaway)
        return;
    if (++w.nodes > 10000 || depth > 500) {
        w.runaway = true;
        return;
    }
    w.maxDepth = std::max(w.maxDepth, depth);
    w.types.push_back(n.GetType());
    if (!n.HasChildren())
        return;
    wxXmlNode c = n.GetFirstChild();
    for (;;) {
        WalkAll(c, depth + 1, w);
        if (w.runaway || !c.HasNextSibling())
            return;
        c = c.GetNextSibling();
    }
}

Walk WalkDocument(const wxString& xml) {
    Walk w;
    wxXmlTree tree;
    EXPECT_TRUE(tree.Parse(xml)) << xml;
    if (!tree.GetRoot().IsNull())
        WalkAll(tree.GetRoot(), 0, w);
    return w;
}

} // namespace

TEST(XmlWalk, AllNodesWalkEndsWithEntityReferences) {
    // One entity that uses another: the smallest document that cycles.
    const Walk w = WalkDocument("<!DOCTYPE r [<!ENTITY a \"x\"><!ENTITY b \"&a;\">]><r>&b;</r>");
    EXPECT_FALSE(w.runaway) << "the walk did not end (" << w.nodes << " nodes, depth " << w.maxDepth
                            << ")";
    EXPECT_NE(std::find(w.types.begin(), w.types.end(), wxString("entity ref")), w.types.end())
        << "the walk never met the entity reference";
}

TEST(XmlWalk, AllNodesWalkEndsWithEntitiesInAttributesAndText) {
    const Walk w =
        WalkDocument("<!DOCTYPE r [<!ENTITY a \"aa\"><!ENTITY b \"&a;&a;\"><!ENTITY c \"&b;&b;\">]>"
                     "<r x=\"&c;\"><s>&c;&b;</s><t>&a;</t></r>");
    EXPECT_FALSE(w.runaway) << "the walk did not end (" << w.nodes << " nodes, depth " << w.maxDepth
                            << ")";
}

TEST(XmlWalk, DeepNestingWithinLibxml2sLimitWalksWhole) {
    wxString xml;
    for (int i = 0; i < 200; ++i)
        xml += "<a>";
    xml += "x";
    for (int i = 0; i < 200; ++i)
        xml += "</a>";
    const Walk w = WalkDocument(xml);
    EXPECT_FALSE(w.runaway);
    EXPECT_EQ(w.nodes, 201);
    EXPECT_EQ(w.maxDepth, 200);
}
