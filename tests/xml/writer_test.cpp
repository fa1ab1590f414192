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
    EXPECT_TRUE(w.StartDocument());
    EXPECT_TRUE(w.StartElement("config"));
    EXPECT_TRUE(w.WriteAttr("version", 3));
    EXPECT_TRUE(w.WriteAttr(wxString("n"), 7));
    EXPECT_TRUE(w.StartElement("window"));
    EXPECT_TRUE(w.WriteAttr("x", -12));
    EXPECT_TRUE(w.WriteAttr("title", wxString::FromUTF8("\xc3\xbc \"&\" <\xe2\x82\xac>")));
    EXPECT_TRUE(w.WriteAttr("back", wxColour(255, 0, 16)));
    EXPECT_TRUE(w.WriteAttr("fore", wxColour(0, 0, 0)));
    EXPECT_TRUE(w.StartElement("pane"));
    EXPECT_TRUE(w.WriteAttr(wxString("name"), wxString("left")));
    EXPECT_TRUE(w.EndElement());
    EXPECT_TRUE(w.EndElement());
    EXPECT_TRUE(w.StartElement("note"));
    EXPECT_TRUE(w.WriteText(wxString::FromUTF8("a < b & c > d \xc3\xa9")));
    EXPECT_TRUE(w.EndDocument());
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
    EXPECT_FALSE(w.WriteAttr("a", 1)); // no element yet
    EXPECT_FALSE(w.EndElement());
    EXPECT_TRUE(w.StartElement("e"));
    EXPECT_FALSE(w.WriteAttr("c", wxColour()));
    EXPECT_FALSE(w.writeAttr("d", wxDateTime()));
    EXPECT_TRUE(w.WriteAttr("ok", 1));
    EXPECT_TRUE(w.WriteText("t"));
    EXPECT_FALSE(w.WriteAttr("late", wxString("x")));
    EXPECT_TRUE(w.EndElement());
    w.Close();
    EXPECT_EQ(Bytes("refused.xml"), "<e ok=\"1\">t</e>\n"); // no declaration asked for
    EXPECT_FALSE(w.Open(Path("no/such/dir/x.xml")));
    EXPECT_FALSE(w.StartDocument());
    EXPECT_FALSE(w.StartElement("a"));
    EXPECT_FALSE(w.WriteAttr("a", 1));
    EXPECT_FALSE(w.WriteText("t"));
    EXPECT_FALSE(w.EndElement());
    EXPECT_FALSE(w.EndDocument());
    EXPECT_EQ(w.GetError(), "Unhandled XML-error.");
    w.Close();
}

TEST_F(WriterTest, CopiesShareOneFile) {
    wxXmlWriter a;
    ASSERT_TRUE(a.Open(Path("shared.xml")));
    ASSERT_TRUE(a.StartElement("root"));
    {
        wxXmlWriter b(a), c;
        c = b;
        c = *&c;   // self-assignment (spelt so that clang doesn't warn)
        a.Close(); // b and c keep the file open
        EXPECT_TRUE(b.StartElement("b"));
        EXPECT_TRUE(c.EndDocument());
        EXPECT_FALSE(a.StartElement("closed"));
    }
    EXPECT_EQ(Bytes("shared.xml"), "<root>\n  <b/>\n</root>\n");
    ASSERT_TRUE(a.Open(Path("1.xml")));
    ASSERT_TRUE(a.StartElement("first"));
    ASSERT_TRUE(a.EndElement());
    ASSERT_TRUE(a.Open(Path("2.xml"))); // finishes the file held before
    EXPECT_EQ(Bytes("1.xml"), "<first/>\n");
}

TEST_F(WriterTest, AttributesRoundTrip) {
    const wxString text = wxString::FromUTF8("a \"b\" & <c>\t\xe6\x97\xa5\xf0\x9f\x98\x80");
    const wxDateTime date(31, wxDateTime::Dec, 1899, 23, 59, 58, 999);
    const int max = 2147483647, min = -max - 1;
    wxXmlWriter w; // attributes wait in libxml2's buffer, and count as written
    ASSERT_TRUE(w.Open(Path("v.xml")));
    ASSERT_TRUE(w.StartElement("v"));
    ASSERT_TRUE(w.WriteAttr("t", text));
    EXPECT_TRUE(w.WriteAttr("max", max));
    EXPECT_TRUE(w.WriteAttr("min", min));
    EXPECT_TRUE(w.writeAttr("d", date));
    EXPECT_TRUE(w.WriteAttr("c", wxColour(1, 128, 254, 4)));
    EXPECT_TRUE(w.EndDocument());
    w.Close();
    wxXmlReader r;
    wxXmlTree t;
    ASSERT_TRUE(r.Open(Path("v.xml")));
    ASSERT_TRUE(r.iRead());
    ASSERT_TRUE(t.Open(Path("v.xml")));
    const wxXmlNode e = t.GetRoot();
    wxColour c;
    int i = 0, j = 0;
    EXPECT_TRUE(r.AttrAsColor("c", c));
    EXPECT_TRUE(r.AttrAsInt("max", &i));
    EXPECT_TRUE(r.AttrAsInt("min", &j));
    EXPECT_EQ(c, wxColour(1, 128, 254)); // without alpha
    EXPECT_EQ(e.getAttrAsColour("c"), wxColour(1, 128, 254));
    EXPECT_EQ(i, max);
    EXPECT_EQ(e.GetAttrAsInt("max"), max);
    EXPECT_EQ(j, min);
    EXPECT_EQ(e.GetAttrAsInt("min"), min);
    EXPECT_EQ(r.GetAttr("t"), text);
    EXPECT_EQ(e.GetAttr("t"), text);
    EXPECT_EQ(e.GetAttr("d"), "1899-12-31T23:59:58");
    EXPECT_EQ(e.GetAttr("c"), "#0180fe");
    EXPECT_EQ(e.getAttrAsDateTime("d"), wxDateTime(31, wxDateTime::Dec, 1899, 23, 59, 58));
}
