// wxXmlTree and wxXmlNode: loading, walking, attributes and the assertions of
// wrong use.
#include <wxsupport/xml/xml-reader.h>

#include "assert_capture.h"
#include "tempdir.h"
#include "xml_test_util.h"

#include <gtest/gtest.h>

#include <clocale>
#include <string>
#include <type_traits>
#include <vector>

namespace {

// Handles are plain values that only the tree and other handles make, and
// their copy members are trivial: nothing of them is ever emitted as a symbol.
static_assert(std::is_trivially_copyable<wxXmlNode>::value, "wxXmlNode copies trivially");
static_assert(std::is_trivially_destructible<wxXmlNode>::value, "wxXmlNode dies trivially");
static_assert(!std::is_default_constructible<wxXmlNode>::value, "no default constructor");
static_assert(!std::is_constructible<wxXmlNode, _xmlNode*>::value, "no handle from a pointer");
static_assert(std::has_virtual_destructor<wxXmlTree>::value, "wxXmlTree's destructor is virtual");

class TreeTest : public testing::Test {
protected:
    void SetUp() override { QuietLibxml(); }

    // The single condition asserted while fn ran, or "" when none was.
    template <class Fn>
    static std::string OnlyAssert(Fn fn) {
        AssertCapture capture;
        fn();
        if (capture.count() != 1)
            return capture.count() == 0 ? "" : "several";
        return std::string(capture.asserts()[0].cond.utf8_str());
    }

    TempDir dir;
};

const char* const kSample = "<?xml version=\"1.0\"?>\n"
                            "<root a=\"1\">\n"
                            "  <!-- note -->\n"
                            "  <leaf/>\n"
                            "  <text>hello</text>\n"
                            "  <mixed>one<!-- c -->two</mixed>\n"
                            "  <cdata><![CDATA[raw]]></cdata>\n"
                            "  <nested><inner/></nested>\n"
                            "</root>\n";

TEST_F(TreeTest, ParseAndWalkAllNodes) {
    wxXmlTree t;
    ASSERT_TRUE(t.Parse(kSample));
    const wxXmlNode root = t.GetRoot();
    EXPECT_FALSE(root.IsNull());
    EXPECT_TRUE(root.IsElement());
    EXPECT_EQ(root.GetNodeName(), "root");
    EXPECT_EQ(root.GetType(), "element");
    EXPECT_EQ(root.GetChildElementCount(), 5u);

    std::vector<std::string> kinds;
    ASSERT_TRUE(root.HasChildren());
    for (wxXmlNode n = root.GetFirstChild();; n = n.GetNextSibling()) {
        kinds.push_back(std::string(n.GetType().utf8_str()) + (n.IsWhitespace() ? " ws" : ""));
        if (!n.HasNextSibling())
            break;
    }
    EXPECT_EQ(kinds,
              (std::vector<std::string>{"text ws", "comment", "text ws", "element", "text ws",
                                        "element", "text ws", "element", "text ws", "element",
                                        "text ws", "element", "text ws"}));
}

TEST_F(TreeTest, ElementWalk) {
    wxXmlTree t;
    ASSERT_TRUE(t.Parse(kSample));
    std::vector<std::string> names;
    for (wxXmlNode n = t.GetRoot().GetFirstElementChild(); !n.IsNull();
         n = n.GetNextElementSibling())
        names.push_back(std::string(n.GetNodeName().utf8_str()));
    EXPECT_EQ(names, (std::vector<std::string>{"leaf", "text", "mixed", "cdata", "nested"}));
    AssertCapture none; // no assertion on the element walk's end
    const wxXmlNode leaf = t.GetRoot().GetFirstElementChild();
    EXPECT_TRUE(leaf.GetFirstElementChild().IsNull());
    EXPECT_EQ(leaf.GetChildElementCount(), 0u);
    EXPECT_FALSE(leaf.HasChildren());
    EXPECT_EQ(none.count(), 0u);
}

TEST_F(TreeTest, TextContentRule) {
    wxXmlTree t;
    ASSERT_TRUE(t.Parse(kSample));
    std::vector<wxXmlNode> e;
    for (wxXmlNode n = t.GetRoot().GetFirstElementChild(); !n.IsNull();
         n = n.GetNextElementSibling())
        e.push_back(n);
    EXPECT_EQ(e[1].GetTextContent(), "hello");
    EXPECT_EQ(e[0].GetTextContent(), "");        // no children
    EXPECT_EQ(e[2].GetTextContent(), "");        // text beside a comment
    EXPECT_EQ(e[3].GetTextContent(), "");        // a single CDATA child
    EXPECT_EQ(e[4].GetTextContent(), "");        // a single element child
    EXPECT_EQ(t.GetRoot().GetTextContent(), ""); // indented: many children
    const wxXmlNode text = e[1].GetFirstChild();
    EXPECT_TRUE(text.IsText());
    EXPECT_EQ(text.GetText(), "hello");
    EXPECT_EQ(text.GetNodeName(), "text");
    EXPECT_FALSE(e[3].GetFirstChild().IsText()); // CDATA is not text here
    EXPECT_EQ(e[3].GetFirstChild().GetType(), "cdata");
}

TEST_F(TreeTest, Whitespace) {
    wxXmlTree t;
    ASSERT_TRUE(t.Parse("<r><a></a><b> \t\r\n </b><c> x </c><d>&#160;</d></r>"));
    const wxXmlNode a = t.GetRoot().GetFirstElementChild();
    const wxXmlNode b = a.GetNextElementSibling();
    const wxXmlNode c = b.GetNextElementSibling();
    const wxXmlNode d = c.GetNextElementSibling();
    EXPECT_FALSE(a.IsWhitespace()); // an element
    EXPECT_TRUE(b.GetFirstChild().IsWhitespace());
    EXPECT_FALSE(c.GetFirstChild().IsWhitespace());
    EXPECT_FALSE(d.GetFirstChild().IsWhitespace()); // no-break space is no blank
    // A text node with nothing in it.
    wxXmlTree u;
    ASSERT_TRUE(u.Parse("<r><![CDATA[]]></r>"));
    EXPECT_FALSE(u.GetRoot().GetFirstChild().IsWhitespace()); // CDATA, not text
}

TEST_F(TreeTest, Attributes) {
    wxXmlTree t;
    ASSERT_TRUE(
        t.Parse("<e empty=\"\" zero=\"0\" n=\"-17\" txt=\"abc\" tail=\"3x\" big=\"99999999999\""
                " d=\"2.5\" col=\"#ff0010\" named=\"red\" badcol=\"#12\""
                " date=\"2021-03-04T05:06:07\" day=\"2021-03-04\" sp=\"2021-03-04 05:06:07\""
                " uni=\"&#x20AC;\" amp=\"a&amp;b\"/>"));
    const wxXmlNode e = t.GetRoot();
    EXPECT_TRUE(e.HasAttr("empty"));
    EXPECT_FALSE(e.HasAttr("missing"));
    EXPECT_TRUE(e.HasAttr("txt"));
    EXPECT_EQ(e.GetAttr("txt"), "abc");
    EXPECT_EQ(e.GetAttr("missing"), "");
    EXPECT_EQ(e.GetAttr("uni"), wxString::FromUTF8("\xe2\x82\xac"));
    EXPECT_EQ(e.GetAttr(wxString::FromUTF8("amp")), "a&b");

    EXPECT_EQ(e.GetAttrAsInt("n"), -17);
    for (const char* name : {"missing", "empty", "txt", "zero", "tail", "big"})
        EXPECT_EQ(e.GetAttrAsInt(name), 0) << name;
    EXPECT_EQ(e.GetAttrAsDouble("missing"), 0.0);
    EXPECT_EQ(e.GetAttrAsDouble("txt"), 0.0);
    EXPECT_EQ(e.GetAttrAsDouble("n"), -17.0);

    const wxColour col = e.getAttrAsColour("col");
    EXPECT_TRUE(col.IsOk());
    EXPECT_EQ(col, wxColour(255, 0, 16));
    EXPECT_FALSE(e.getAttrAsColour("badcol").IsOk());
    EXPECT_FALSE(e.getAttrAsColour("txt").IsOk());
    EXPECT_FALSE(e.getAttrAsColour("missing").IsOk());
    EXPECT_FALSE(e.getAttrAsColour("empty").IsOk());

    const wxDateTime date = e.getAttrAsDateTime("date");
    ASSERT_TRUE(date.IsValid());
    EXPECT_EQ(date, wxDateTime(4, wxDateTime::Mar, 2021, 5, 6, 7));
    for (const char* name : {"day", "sp", "txt", "missing", "empty"})
        EXPECT_FALSE(e.getAttrAsDateTime(name).IsValid()) << name;
}

TEST_F(TreeTest, DoubleFollowsTheLocale) {
    wxXmlTree t;
    ASSERT_TRUE(t.Parse("<e dot=\"2.5\" comma=\"2,5\"/>"));
    const wxXmlNode e = t.GetRoot();
    EXPECT_EQ(e.GetAttrAsDouble("dot"), 2.5);
    EXPECT_EQ(e.GetAttrAsDouble("comma"), 0.0);
    // Where a German locale is installed, the comma is the decimal point.
    const std::string saved = setlocale(LC_NUMERIC, nullptr);
    if (setlocale(LC_NUMERIC, "de_DE.UTF-8")) {
        EXPECT_EQ(e.GetAttrAsDouble("comma"), 2.5);
        EXPECT_EQ(e.GetAttrAsDouble("dot"), 0.0);
        setlocale(LC_NUMERIC, saved.c_str());
    }
}

TEST_F(TreeTest, AssertionsOfWrongUse) {
    wxXmlTree t;
    {
        AssertCapture capture;
        EXPECT_TRUE(t.GetRoot().IsNull());
        EXPECT_EQ(capture.conditions(), std::vector<wxString>{"doc != 0 && root != 0"});
    }
    ASSERT_TRUE(t.Parse("<r>text<leaf/></r>"));
    const wxXmlNode root = t.GetRoot();
    const wxXmlNode text = root.GetFirstChild();
    const wxXmlNode leaf = text.GetNextSibling();
    wxXmlNode got = root;
    EXPECT_EQ(OnlyAssert([&] { got = leaf.GetFirstChild(); }), "node->children != 0");
    EXPECT_TRUE(got.IsNull());
    got = root;
    EXPECT_EQ(OnlyAssert([&] { got = leaf.GetNextSibling(); }), "node->next != 0");
    EXPECT_TRUE(got.IsNull());
    wxString s = "x";
    EXPECT_EQ(OnlyAssert([&] { s = root.GetText(); }), "node->type == XML_TEXT_NODE");
    EXPECT_EQ(s, "");
    s = "x";
    EXPECT_EQ(OnlyAssert([&] { s = text.GetTextContent(); }), "node->type == XML_ELEMENT_NODE");
    EXPECT_EQ(s, "");
    EXPECT_EQ(OnlyAssert([&] { EXPECT_TRUE(t.Parse("<again/>")); }), "doc == 0 && root == 0");
    EXPECT_EQ(t.GetRoot().GetNodeName(), "again");
    // The replaced document lives on until Close: old handles stay readable.
    EXPECT_EQ(leaf.GetNodeName(), "leaf");
    EXPECT_EQ(OnlyAssert([&] { EXPECT_FALSE(t.Open(wxString::FromUTF8(dir.file("no.xml")))); }),
              "doc == 0 && root == 0");
    EXPECT_EQ(leaf.GetNodeName(), "leaf");
    EXPECT_EQ(OnlyAssert([&] { t.Close(); }), "");
    EXPECT_EQ(OnlyAssert([&] { EXPECT_TRUE(t.Parse("<fresh/>")); }), "");
}

TEST_F(TreeTest, EntityReferencesAreLeaves) {
    // libxml2 hangs the entity's declaration below a reference; the walk
    // over all nodes must not go there.
    wxXmlTree t;
    ASSERT_TRUE(t.Parse("<!DOCTYPE r [<!ENTITY a \"x\"><!ENTITY b \"&a;\">]><r>&b;</r>"));
    const wxXmlNode ref = t.GetRoot().GetFirstChild();
    EXPECT_EQ(ref.GetType(), "entity ref");
    EXPECT_EQ(ref.GetNodeName(), "b");
    EXPECT_FALSE(ref.HasChildren());
    EXPECT_FALSE(ref.HasNextSibling());
    EXPECT_EQ(OnlyAssert([&] { EXPECT_TRUE(ref.GetFirstChild().IsNull()); }),
              "node->children != 0");
    EXPECT_EQ(t.GetRoot().GetTextContent(), ""); // a reference is not text
}

TEST_F(TreeTest, NodeTypeTable) {
    const char* const words[] = {"element",
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
                                 "docb document"};
    for (int i = 1; i <= 21; ++i)
        EXPECT_EQ(node_type_as_string(i), words[i - 1]) << i;
    for (int bad : {0, 22, -1, 1000}) {
        AssertCapture capture;
        EXPECT_EQ(node_type_as_string(bad), "");
        ASSERT_EQ(capture.count(), 1u);
        EXPECT_EQ(capture.asserts()[0].cond, "\"Assert failure\""); // wxFAIL's text
        EXPECT_EQ(capture.asserts()[0].func, "node_type_as_string");
    }
}

TEST_F(TreeTest, FailuresLeaveATreeReadyToOpen) {
    AssertCapture none;
    wxXmlTree t;
    EXPECT_FALSE(t.Parse(""));
    EXPECT_FALSE(t.Open(wxString::FromUTF8(dir.file("missing.xml"))));
    EXPECT_FALSE(t.Open(wxString::FromUTF8(dir.path()))); // a directory
    EXPECT_FALSE(t.Parse("<a><b></a>"));
    t.Close();
    t.Close();
    const std::string path = WriteDoc(dir, "ok.xml", "<ok/>");
    EXPECT_TRUE(t.Open(wxString::FromUTF8(path)));
    EXPECT_EQ(t.GetRoot().GetNodeName(), "ok");
    t.Close();
    EXPECT_TRUE(t.Open(wxString::FromUTF8(path)));
    EXPECT_EQ(none.count(), 0u);
}

TEST_F(TreeTest, ParseReadsDeclaredEncodingAndUnicode) {
    wxXmlTree t;
    const wxString text = wxString::FromUTF8("<?xml version=\"1.0\" encoding=\"UTF-8\"?>"
                                             "<r v=\"\xe6\x97\xa5\xe6\x9c\xac\xf0\x9f\x98\x80\"/>");
    ASSERT_TRUE(t.Parse(text));
    EXPECT_EQ(t.GetRoot().GetAttr("v"),
              wxString::FromUTF8("\xe6\x97\xa5\xe6\x9c\xac\xf0\x9f\x98\x80"));
}

TEST_F(TreeTest, CopiesShareTheDocument) {
    std::vector<wxXmlNode> kept;
    {
        wxXmlTree a;
        ASSERT_TRUE(a.Parse("<shared><child/></shared>"));
        wxXmlTree b(a);
        wxXmlTree c;
        c = b;
        c = c;
        a.Close();
        EXPECT_EQ(b.GetRoot().GetNodeName(), "shared");
        kept.push_back(c.GetRoot().GetFirstElementChild());
        b = wxXmlTree();
        EXPECT_EQ(kept[0].GetNodeName(), "child"); // c still holds the document
        a = c;
        c.Close();
        EXPECT_EQ(kept[0].GetNodeName(), "child"); // and now a does
    }
    wxXmlTree closed;
    wxXmlTree copyOfClosed(closed);
    EXPECT_TRUE(copyOfClosed.Parse("<x/>"));
    closed = copyOfClosed;
    EXPECT_EQ(closed.GetRoot().GetNodeName(), "x");
}

} // namespace
