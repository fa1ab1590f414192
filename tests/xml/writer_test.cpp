// wxXmlWriter: its bytes, its refusals, round trips through the reader and the tree.
#include <wxsupport/xml/xml-reader.h>

#include "xml_test_util.h"

class WriterTest : public XmlTest {
protected:
    std::string Bytes(const std::string& name) { return ReadFileBytes(dir.file(name)); }
};

TEST_F(WriterTest, LayoutIsFixed) {
    wxXmlWriter w;
    ASSERT_TRUE(w.Open(Path("out.xml")));
    EXPECT_TRUE(
        w.StartDocument() && w.StartElement("config") && w.WriteAttr("version", 3) &&
        w.WriteAttr(wxString("n"), 7) && w.StartElement("window") && w.WriteAttr("x", -12) &&
        w.WriteAttr("title", wxString::FromUTF8("\xc3\xbc \"&\" <\xe2\x82\xac>")) &&
        w.WriteAttr("back", wxColour(255, 0, 16)) && w.WriteAttr("fore", wxColour(0, 0, 0)) &&
        w.StartElement("pane") && w.WriteAttr(wxString("name"), wxString("left")) &&
        w.EndElement() && w.EndElement() && w.StartElement("note") &&
        w.WriteText(wxString::FromUTF8("a < b & c > d \xc3\xa9")) && w.EndDocument());
    w.Close();
    EXPECT_EQ(Bytes("out.xml"), "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                                "<config version=\"3\" n=\"7\">\n"
                                "  <window x=\"-12\" title=\"\xc3\xbc &quot;&amp;&quot; "
                                "&lt;\xe2\x82\xac&gt;\" back=\"#ff0010\" fore=\"#000000\">\n"
                                "    <pane name=\"left\"/>\n  </window>\n"
                                "  <note>a &lt; b &amp; c &gt; d \xc3\xa9</note>\n"
                                "</config>\n");
}

TEST_F(WriterTest, RefusalsLeaveTheWriterOpen) {
    wxXmlWriter w;
    ASSERT_TRUE(w.Open(Path("refused.xml")));
    EXPECT_FALSE(w.WriteAttr("a", 1) || w.EndElement()); // no element yet
    EXPECT_TRUE(w.StartElement("e"));
    EXPECT_FALSE(w.WriteAttr("c", wxColour()) || w.writeAttr("d", wxDateTime()));
    EXPECT_TRUE(w.WriteAttr("ok", 1) && w.WriteText("t"));
    EXPECT_FALSE(w.WriteAttr("late", wxString("x")));
    EXPECT_TRUE(w.EndElement());
    w.Close();
    EXPECT_EQ(Bytes("refused.xml"), "<e ok=\"1\">t</e>\n"); // no declaration asked for
    EXPECT_FALSE(w.Open(Path("no/such/dir/x.xml")) || w.StartDocument() || w.StartElement("a") ||
                 w.WriteAttr("a", 1) || w.WriteText("t") || w.EndElement() || w.EndDocument());
    EXPECT_EQ(w.GetError(), "Unhandled XML-error.");
    w.Close();
}

TEST_F(WriterTest, CopiesShareOneFile) {
    wxXmlWriter a;
    ASSERT_TRUE(a.Open(Path("shared.xml")) && a.StartElement("root"));
    {
        wxXmlWriter b(a), c;
        c = b;
        c = *&c;   // self-assignment (spelt so that clang doesn't warn)
        a.Close(); // b and c keep the file open
        EXPECT_TRUE(b.StartElement("b") && c.EndDocument() && !a.StartElement("closed"));
    }
    EXPECT_EQ(Bytes("shared.xml"), "<root>\n  <b/>\n</root>\n");
    ASSERT_TRUE(a.Open(Path("1.xml")) && a.StartElement("first") && a.EndElement());
    ASSERT_TRUE(a.Open(Path("2.xml"))); // finishes the file held before
    EXPECT_EQ(Bytes("1.xml"), "<first/>\n");
}

TEST_F(WriterTest, AttributesRoundTrip) {
    const wxString text = wxString::FromUTF8("a \"b\" & <c>\t\xe6\x97\xa5\xf0\x9f\x98\x80");
    const wxDateTime date(31, wxDateTime::Dec, 1899, 23, 59, 58, 999);
    const int max = 2147483647, min = -max - 1;
    wxXmlWriter w; // attributes wait in libxml2's buffer, and count as written
    ASSERT_TRUE(w.Open(Path("v.xml")) && w.StartElement("v") && w.WriteAttr("t", text));
    EXPECT_TRUE(w.WriteAttr("max", max) && w.WriteAttr("min", min) && w.writeAttr("d", date) &&
                w.WriteAttr("c", wxColour(1, 128, 254, 4)) && w.EndDocument());
    w.Close();
    wxXmlReader r;
    wxXmlTree t;
    ASSERT_TRUE(r.Open(Path("v.xml")) && r.iRead() && t.Open(Path("v.xml")));
    const wxXmlNode e = t.GetRoot();
    wxColour c;
    int i = 0, j = 0;
    EXPECT_TRUE(r.AttrAsColor("c", c) && r.AttrAsInt("max", &i) && r.AttrAsInt("min", &j));
    EXPECT_TRUE(c == wxColour(1, 128, 254) && e.getAttrAsColour("c") == c); // without alpha
    EXPECT_TRUE(i == max && e.GetAttrAsInt("max") == max && j == min &&
                e.GetAttrAsInt("min") == min);
    EXPECT_TRUE(r.GetAttr("t") == text && e.GetAttr("t") == text);
    EXPECT_EQ(e.GetAttr("d") + e.GetAttr("c"), "1899-12-31T23:59:58#0180fe");
    EXPECT_EQ(e.getAttrAsDateTime("d"), wxDateTime(31, wxDateTime::Dec, 1899, 23, 59, 58));
}
