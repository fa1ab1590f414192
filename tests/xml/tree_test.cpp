// wxXmlTree and wxXmlNode: walks, attributes, sharing, assertions of wrong use.
#include <wxsupport/xml/xml-reader.h>

#include "xml_test_util.h"

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
    EXPECT_TRUE(root.IsElement() && !root.IsNull() && root.GetChildElementCount() == 5);
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
    EXPECT_EQ(text.GetText() + text.GetNodeName() + text.GetType(), "hellotexttext");
}

TEST_F(TreeTest, AttributesAndFallbacks) {
    wxXmlTree t;
    ASSERT_TRUE(t.Parse(wxString::FromUTF8(
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?><e empty=\"\" zero=\"0\" n=\"-17\" txt=\"abc\""
        " tail=\"3x\" big=\"99999999999\" dot=\"2.5\" comma=\"2,5\" col=\"#ff0010\" badcol=\"#12\""
        " date=\"2021-03-04T05:06:07\" day=\"2021-03-04\" sp=\"2021-03-04 05:06:07\""
        " uni=\"&#x20AC;\xe6\x97\xa5\xf0\x9f\x98\x80\" amp=\"a&amp;b\"/>")));
    const wxXmlNode e = t.GetRoot();
    EXPECT_TRUE(e.HasAttr("empty") && e.HasAttr("txt") && !e.HasAttr("missing"));
    EXPECT_EQ(e.GetAttr("txt") + "|" + e.GetAttr("missing") + "|" + e.GetAttr("amp") +
                  e.GetAttr("uni"),
              wxString::FromUTF8("abc||a&b\xe2\x82\xac\xe6\x97\xa5\xf0\x9f\x98\x80"));
    EXPECT_TRUE(e.GetAttrAsInt("n") == -17 && e.GetAttrAsDouble("n") == -17.0);
    EXPECT_EQ(e.getAttrAsColour("col"), wxColour(255, 0, 16));
    EXPECT_EQ(e.getAttrAsDateTime("date"), wxDateTime(4, wxDateTime::Mar, 2021, 5, 6, 7));
    for (const char* name :
         {"missing", "empty", "txt", "zero", "tail", "big", "badcol", "day", "sp"})
        EXPECT_FALSE(e.GetAttrAsInt(name) != 0 || e.getAttrAsColour(name).IsOk() ||
                     e.getAttrAsDateTime(name).IsValid())
            << name;
    EXPECT_TRUE(e.GetAttrAsDouble("missing") == 0.0 && e.GetAttrAsDouble("txt") == 0.0 &&
                e.GetAttrAsDouble("dot") == 2.5 && e.GetAttrAsDouble("comma") == 0.0); // C locale
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
    EXPECT_TRUE(a.IsNull() && b.IsNull() && s.empty());
    // Parse or Open over a held document asserts; the old one lives until Close.
    EXPECT_EQ(Asserted([&] { EXPECT_TRUE(t.Parse("<again/>")); }), "doc == 0 && root == 0");
    EXPECT_EQ(t.GetRoot().GetNodeName() + leaf.GetNodeName(), "againleaf");
    EXPECT_EQ(Asserted([&] { EXPECT_FALSE(t.Open(Path("no.xml"))); }), "doc == 0 && root == 0");
    EXPECT_EQ(leaf.GetNodeName(), "leaf");
    t.Close();
    t.Close(); // failures leave the tree closed, without assertions
    EXPECT_FALSE(t.Parse("") || t.Open(Path("missing.xml")) || t.Parse("<a><b></a>"));
    EXPECT_TRUE(t.Open(Doc("<ok/>")));
}

TEST_F(TreeTest, EntityReferencesAreLeaves) {
    wxXmlTree t;
    ASSERT_TRUE(t.Parse("<!DOCTYPE r [<!ENTITY a \"x\"><!ENTITY b \"&a;\">]><r>&b;</r>"));
    const wxXmlNode ref = t.GetRoot().GetFirstChild();
    EXPECT_EQ(ref.GetType() + ref.GetNodeName(), "entity refb");
    EXPECT_FALSE(ref.HasChildren() || ref.HasNextSibling());
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
    EXPECT_TRUE(kept.GetNodeName() == "child" && c.Parse("<x/>") &&
                c.GetRoot().GetNodeName() == "x");
}
