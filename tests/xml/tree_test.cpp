// wxXmlTree and wxXmlNode: walks, attributes, sharing, assertions of wrong use,
// and the documented walk over hostile documents.
#include <wxsupport/xml/xml-reader.h>

#include "xml_test_util.h"

#include <algorithm>
#include <vector>

using TreeTest = XmlTest;

static std::string Kind(const wxXmlNode& n) {
    return Utf8(n.GetType()) + (n.IsWhitespace() ? "_" : "");
}

TEST_F(TreeTest, Walks) {
    wxXmlTree t;
    ASSERT_TRUE(t.Parse(
        "<?xml version=\"1.0\"?>\n<root a=\"1\">&#160;\n  <!-- note -->\n  <leaf/>\n"
        "  <text>hello</text>\n  <mixed>one<!-- c -->two</mixed>\n"
        "  <cdata><![CDATA[raw]]></cdata>\n  <nested><inner/></nested><![CDATA[]]>\n</root>\n"));
    const wxXmlNode root = t.GetRoot();
    EXPECT_TRUE(root.IsElement());
    EXPECT_FALSE(root.IsNull());
    EXPECT_EQ(root.GetChildElementCount(), 5);
    wxXmlNode n = root.GetFirstChild();
    std::string kinds = Kind(n);
    while (n.HasNextSibling())
        kinds += "," + Kind(n = n.GetNextSibling());
    EXPECT_EQ(kinds, "text,comment,text_,element,text_,element,text_,element,text_,element,text_,"
                     "element,cdata,text_");
    // Text content only where the one child is text; the walk ends on a null handle.
    Names names{Utf8(root.GetTextContent())};
    for (wxXmlNode e = root.GetFirstElementChild(); !e.IsNull(); e = e.GetNextElementSibling())
        names.push_back(Utf8(e.GetNodeName() + ":" + e.GetTextContent()) +
                        std::to_string(e.GetChildElementCount()) + (e.HasChildren() ? "+" : ""));
    EXPECT_EQ(names, (Names{"", "leaf:0", "text:hello0+", "mixed:0+", "cdata:0+", "nested:1+"}));
    const wxXmlNode text = root.GetFirstElementChild().GetNextElementSibling().GetFirstChild();
    EXPECT_EQ(text.GetText(), "hello");
    EXPECT_EQ(text.GetNodeName(), "text");
    EXPECT_EQ(text.GetType(), "text");
}

TEST_F(TreeTest, AttributesAndFallbacks) {
    wxXmlTree t;
    ASSERT_TRUE(t.Parse(wxString::FromUTF8(
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?><e empty=\"\" zero=\"0\" n=\"-17\" txt=\"abc\""
        " tail=\"3x\" big=\"99999999999\" dot=\"2.5\" comma=\"2,5\" col=\"#ff0010\" badcol=\"#12\""
        " date=\"2021-03-04T05:06:07\" day=\"2021-03-04\" sp=\"2021-03-04 05:06:07\""
        " uni=\"&#x20AC;\xe6\x97\xa5\xf0\x9f\x98\x80\" amp=\"a&amp;b\"/>")));
    const wxXmlNode e = t.GetRoot();
    EXPECT_TRUE(e.HasAttr("empty"));
    EXPECT_TRUE(e.HasAttr("txt"));
    EXPECT_FALSE(e.HasAttr("missing"));
    EXPECT_EQ(e.GetAttr("txt") + "|" + e.GetAttr("missing") + "|" + e.GetAttr("amp") +
                  e.GetAttr("uni"),
              wxString::FromUTF8("abc||a&b\xe2\x82\xac\xe6\x97\xa5\xf0\x9f\x98\x80"));
    EXPECT_EQ(e.GetAttrAsInt("n"), -17);
    EXPECT_EQ(e.GetAttrAsDouble("n"), -17.0);
    EXPECT_EQ(e.getAttrAsColour("col"), wxColour(255, 0, 16));
    EXPECT_EQ(e.getAttrAsDateTime("date"), wxDateTime(4, wxDateTime::Mar, 2021, 5, 6, 7));
    for (const char* name :
         {"missing", "empty", "txt", "zero", "tail", "big", "badcol", "day", "sp"}) {
        EXPECT_EQ(e.GetAttrAsInt(name), 0) << name;
        EXPECT_FALSE(e.getAttrAsColour(name).IsOk()) << name;
        EXPECT_FALSE(e.getAttrAsDateTime(name).IsValid()) << name;
    }
    EXPECT_EQ(e.GetAttrAsDouble("missing"), 0.0);
    EXPECT_EQ(e.GetAttrAsDouble("txt"), 0.0);
    EXPECT_EQ(e.GetAttrAsDouble("dot"), 2.5);
    EXPECT_EQ(e.GetAttrAsDouble("comma"), 0.0); // C locale
}

TEST_F(TreeTest, AssertionsOfWrongUse) {
    wxXmlTree t;
    EXPECT_EQ(Asserted([&] { EXPECT_TRUE(t.GetRoot().IsNull()); }), "doc != 0 && root != 0");
    ASSERT_TRUE(t.Parse("<r>text<leaf/></r>"));
    const wxXmlNode root = t.GetRoot(), text = root.GetFirstChild(), leaf = text.GetNextSibling();
    wxXmlNode a = root, b = root;
    wxString s = "x";
    EXPECT_EQ(Asserted([&] { a = leaf.GetFirstChild(); }), "node->children != 0");
    EXPECT_EQ(Asserted([&] { b = leaf.GetNextSibling(); }), "node->next != 0");
    EXPECT_EQ(Asserted([&] { s = root.GetText(); }), "node->type == XML_TEXT_NODE");
    EXPECT_EQ(Asserted([&] { s += text.GetTextContent(); }), "node->type == XML_ELEMENT_NODE");
    EXPECT_TRUE(a.IsNull());
    EXPECT_TRUE(b.IsNull());
    EXPECT_EQ(s, "");
    // Parse or Open over a held document asserts; the old one lives until Close.
    EXPECT_EQ(Asserted([&] { EXPECT_TRUE(t.Parse("<again/>")); }), "doc == 0 && root == 0");
    EXPECT_EQ(t.GetRoot().GetNodeName(), "again");
    EXPECT_EQ(leaf.GetNodeName(), "leaf");
    EXPECT_EQ(Asserted([&] { EXPECT_FALSE(t.Open(Path("no.xml"))); }), "doc == 0 && root == 0");
    EXPECT_EQ(leaf.GetNodeName(), "leaf");
    t.Close();
    t.Close(); // failures leave the tree closed, without assertions
    EXPECT_FALSE(t.Parse(""));
    EXPECT_FALSE(t.Open(Path("missing.xml")));
    EXPECT_FALSE(t.Parse("<a><b></a>"));
    EXPECT_TRUE(t.Open(Doc("<ok/>")));
}

TEST_F(TreeTest, EntityReferencesAreLeaves) {
    wxXmlTree t;
    ASSERT_TRUE(t.Parse("<!DOCTYPE r [<!ENTITY a \"x\"><!ENTITY b \"&a;\">]><r>&b;</r>"));
    const wxXmlNode ref = t.GetRoot().GetFirstChild();
    EXPECT_EQ(ref.GetType(), "entity ref");
    EXPECT_EQ(ref.GetNodeName(), "b");
    EXPECT_FALSE(ref.HasChildren());
    EXPECT_FALSE(ref.HasNextSibling());
    EXPECT_EQ(Asserted([&] { EXPECT_TRUE(ref.GetFirstChild().IsNull()); }), "node->children != 0");
    EXPECT_EQ(t.GetRoot().GetTextContent(), ""); // a reference is not text
}

TEST_F(TreeTest, NodeTypeTable) {
    wxString all;
    for (int i = 1; i <= 21; ++i)
        all += node_type_as_string(i) + ",";
    EXPECT_EQ(all, "element,attribute,text,cdata,entity ref,entity,processing instruction,comment,"
                   "document,document type,document frag,notation,html document,dtd,element decl,"
                   "attribute decl,entity decl,namespace decl,xinclude start,xinclude end,"
                   "docb document,");
    for (int bad : {0, 22, -1, 1000})
        EXPECT_EQ(Asserted([&] { EXPECT_EQ(node_type_as_string(bad), ""); }), "\"Assert failure\"");
}

TEST_F(TreeTest, CopiesShareTheDocument) {
    wxXmlTree a, c;
    ASSERT_TRUE(a.Parse("<shared><child/></shared>"));
    {
        wxXmlTree b(a);
        c = b;
        c = *&c; // self-assignment (spelt so that clang doesn't warn)
        a.Close();
        EXPECT_EQ(b.GetRoot().GetNodeName(), "shared");
    }
    const wxXmlNode kept = c.GetRoot().GetFirstElementChild();
    a = c;
    c = wxXmlTree(); // a still holds the document; then a copy of a closed tree opens one
    EXPECT_EQ(kept.GetNodeName(), "child");
    EXPECT_TRUE(c.Parse("<x/>"));
    EXPECT_EQ(c.GetRoot().GetNodeName(), "x");
}

// Hostile XML through the tree walk that wxXmlNode documents for all nodes:
// HasChildren/GetFirstChild, then HasNextSibling/GetNextSibling. The walk
// must end on every document libxml2 accepts. Entity references are the
// hard case: libxml2 hangs the entity's declaration below each reference,
// and declarations are siblings of each other in the DTD, so following those
// links naively cycles as soon as one entity refers to another.

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
