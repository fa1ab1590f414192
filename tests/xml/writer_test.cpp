// wxXmlWriter: the bytes it writes, its failures, and round trips through
// the reader and the tree.
#include <wxsupport/xml/xml-reader.h>

#include "assert_capture.h"
#include "tempdir.h"
#include "xml_test_util.h"

#include <gtest/gtest.h>

#include <string>

namespace {

class WriterTest : public testing::Test {
protected:
    void SetUp() override { QuietLibxml(); }

    wxString Path(const std::string& name) { return wxString::FromUTF8(dir.file(name)); }
    std::string Bytes(const std::string& name) { return ReadFileBytes(dir.file(name)); }

    TempDir dir;
};

TEST_F(WriterTest, LayoutIsFixed) {
    wxXmlWriter w;
    ASSERT_TRUE(w.Open(Path("out.xml")));
    EXPECT_TRUE(w.StartDocument());
    EXPECT_TRUE(w.StartElement("config"));
    EXPECT_TRUE(w.WriteAttr("version", 3));
    EXPECT_TRUE(w.StartElement("window"));
    EXPECT_TRUE(w.WriteAttr("x", -120));
    EXPECT_TRUE(w.WriteAttr("title", wxString::FromUTF8("Gr\xc3\xbc\xc3\x9f"
                                                        "e \"&\" <\xe2\x82\xac>")));
    EXPECT_TRUE(w.WriteAttr("back", wxColour(255, 0, 16)));
    EXPECT_TRUE(w.WriteAttr("fore", wxColour(0, 0, 0)));
    EXPECT_TRUE(w.StartElement("pane"));
    EXPECT_TRUE(w.WriteAttr("name", wxString("left")));
    EXPECT_TRUE(w.EndElement());
    EXPECT_TRUE(w.EndElement());
    EXPECT_TRUE(w.StartElement("note"));
    EXPECT_TRUE(w.WriteText(wxString::FromUTF8("a < b & c > d \xc3\xa9")));
    EXPECT_TRUE(w.EndElement());
    EXPECT_TRUE(w.EndElement());
    EXPECT_TRUE(w.EndDocument());
    w.Close();
    EXPECT_EQ(Bytes("out.xml"), "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                                "<config version=\"3\">\n"
                                "  <window x=\"-120\" title=\"Gr\xc3\xbc\xc3\x9f"
                                "e &quot;&amp;&quot; &lt;\xe2\x82\xac&gt;\""
                                " back=\"#ff0010\" fore=\"#000000\">\n"
                                "    <pane name=\"left\"/>\n"
                                "  </window>\n"
                                "  <note>a &lt; b &amp; c &gt; d \xc3\xa9</note>\n"
                                "</config>\n");
}

TEST_F(WriterTest, NameFormsWriteTheSameFile) {
    for (int form = 0; form < 2; ++form) {
        wxXmlWriter w;
        ASSERT_TRUE(w.Open(Path("f" + std::to_string(form) + ".xml")));
        w.StartDocument();
        w.StartElement("e");
        if (form == 0) {
            EXPECT_TRUE(w.WriteAttr("s", wxString("v")));
            EXPECT_TRUE(w.WriteAttr("n", 7));
        } else {
            EXPECT_TRUE(w.WriteAttr(wxString("s"), wxString("v")));
            EXPECT_TRUE(w.WriteAttr(wxString("n"), 7));
        }
        w.EndDocument();
    } // the destructor closes
    EXPECT_EQ(Bytes("f0.xml"),
              "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<e s=\"v\" n=\"7\"/>\n");
    EXPECT_EQ(Bytes("f0.xml"), Bytes("f1.xml"));
}

TEST_F(WriterTest, WithoutDeclaration) {
    wxXmlWriter w;
    ASSERT_TRUE(w.Open(Path("plain.xml")));
    EXPECT_TRUE(w.StartElement("a"));
    EXPECT_TRUE(w.StartElement("b"));
    EXPECT_TRUE(w.EndElement());
    EXPECT_TRUE(w.EndElement());
    w.Close();
    EXPECT_EQ(Bytes("plain.xml"), "<a>\n  <b/>\n</a>\n");
}

TEST_F(WriterTest, WrongOrderFailsAndLeavesWriterOpen) {
    wxXmlWriter w;
    ASSERT_TRUE(w.Open(Path("order.xml")));
    EXPECT_FALSE(w.WriteAttr("a", 1)); // no element yet
    EXPECT_FALSE(w.EndElement());
    EXPECT_TRUE(w.StartElement("e"));
    EXPECT_TRUE(w.WriteText("t"));
    EXPECT_FALSE(w.WriteAttr("late", wxString("x")));
    EXPECT_TRUE(w.EndElement());
    w.Close();
    EXPECT_EQ(Bytes("order.xml"), "<e>t</e>\n");
}

TEST_F(WriterTest, AttributeInBufferCountsAsSuccess) {
    wxXmlWriter w;
    ASSERT_TRUE(w.Open(Path("buffered.xml")));
    ASSERT_TRUE(w.StartElement("e"));
    EXPECT_TRUE(w.WriteAttr("s", wxString("v")));
    EXPECT_TRUE(w.WriteAttr("n", 1));
    EXPECT_TRUE(w.WriteAttr("c", wxColour(1, 2, 3)));
    EXPECT_TRUE(w.writeAttr("d", wxDateTime(1, wxDateTime::Jan, 2020)));
    EXPECT_EQ(Bytes("buffered.xml"), ""); // nothing has reached the file yet
    w.Close();                            // flushes; the element stays unfinished
    EXPECT_EQ(Bytes("buffered.xml"), "<e s=\"v\" n=\"1\" c=\"#010203\" d=\"2020-01-01T00:00:00\"");
}

TEST_F(WriterTest, InvalidColourAndDateWriteNothing) {
    wxXmlWriter w;
    ASSERT_TRUE(w.Open(Path("invalid.xml")));
    ASSERT_TRUE(w.StartElement("e"));
    EXPECT_FALSE(w.WriteAttr("c", wxColour()));
    EXPECT_FALSE(w.writeAttr("d", wxDateTime()));
    EXPECT_TRUE(w.WriteAttr("ok", 1)); // the writer goes on
    EXPECT_TRUE(w.EndElement());
    w.Close();
    EXPECT_EQ(Bytes("invalid.xml"), "<e ok=\"1\"/>\n");
}

TEST_F(WriterTest, NoFile) {
    wxXmlWriter w;
    EXPECT_FALSE(w.Open(Path("no/such/dir/x.xml")));
    EXPECT_FALSE(w.StartDocument());
    EXPECT_FALSE(w.StartElement("a"));
    EXPECT_FALSE(w.WriteAttr("a", wxString("v")));
    EXPECT_FALSE(w.WriteAttr(wxString("a"), wxString("v")));
    EXPECT_FALSE(w.WriteAttr("a", 1));
    EXPECT_FALSE(w.WriteAttr(wxString("a"), 1));
    EXPECT_FALSE(w.WriteAttr("a", wxColour(1, 2, 3)));
    EXPECT_FALSE(w.writeAttr("a", wxDateTime::Now()));
    EXPECT_FALSE(w.WriteText("t"));
    EXPECT_FALSE(w.EndElement());
    EXPECT_FALSE(w.EndDocument());
    EXPECT_EQ(w.GetError(), "Unhandled XML-error.");
    w.Close();
    w.Close();
}

TEST_F(WriterTest, CopiesShareOneFile) {
    wxXmlWriter a;
    ASSERT_TRUE(a.Open(Path("shared.xml")));
    a.StartElement("root");
    {
        wxXmlWriter b(a);
        wxXmlWriter c;
        c = b;
        c = c;
        b.StartElement("from-b");
        b.EndElement();
        a.Close(); // b and c keep the file open
        c.StartElement("from-c");
        c.EndElement();
        c.EndElement();
        EXPECT_FALSE(a.StartElement("closed"));
    }
    EXPECT_EQ(Bytes("shared.xml"), "<root>\n  <from-b/>\n  <from-c/>\n</root>\n");

    // Open over a held writer finishes that file first.
    wxXmlWriter d;
    ASSERT_TRUE(d.Open(Path("first.xml")));
    d.StartElement("first");
    d.EndElement();
    ASSERT_TRUE(d.Open(Path("second.xml")));
    EXPECT_EQ(Bytes("first.xml"), "<first/>\n");
    d.StartElement("second");
    d.EndElement();
    d.Close();
    EXPECT_EQ(Bytes("second.xml"), "<second/>\n");
}

TEST_F(WriterTest, ColoursRoundTrip) {
    const wxColour colours[] = {wxColour(255, 0, 16), wxColour(0, 0, 0), wxColour(255, 255, 255),
                                wxColour(1, 128, 254), wxColour(10, 20, 30, 40)};
    wxXmlWriter w;
    ASSERT_TRUE(w.Open(Path("colours.xml")));
    w.StartElement("c");
    for (size_t i = 0; i < sizeof colours / sizeof colours[0]; ++i)
        EXPECT_TRUE(w.WriteAttr(("c" + std::to_string(i)).c_str(), colours[i]));
    w.EndElement();
    w.Close();

    wxXmlReader r;
    ASSERT_TRUE(r.Open(Path("colours.xml")));
    ASSERT_TRUE(r.iRead());
    wxXmlTree t;
    ASSERT_TRUE(t.Open(Path("colours.xml")));
    for (size_t i = 0; i < sizeof colours / sizeof colours[0]; ++i) {
        const std::string name = "c" + std::to_string(i);
        const wxColour rgb(colours[i].Red(), colours[i].Green(), colours[i].Blue());
        wxColour fromReader;
        EXPECT_TRUE(r.AttrAsColor(name.c_str(), fromReader));
        EXPECT_EQ(fromReader, rgb) << name;
        const wxColour fromTree = t.GetRoot().getAttrAsColour(name);
        EXPECT_TRUE(fromTree.IsOk());
        EXPECT_EQ(fromTree, rgb) << name;
    }
    EXPECT_EQ(r.GetAttr("c0"), "#ff0010");
    EXPECT_EQ(r.GetAttr("c1"), "#000000");
}

TEST_F(WriterTest, DatesAndIntegersRoundTrip) {
    const wxDateTime dates[] = {
        wxDateTime(29, wxDateTime::Feb, 2024, 23, 59, 58, 999),
        wxDateTime(1, wxDateTime::Jan, 1970, 0, 0, 0),
        wxDateTime(31, wxDateTime::Dec, 1899, 12, 30, 5),
        wxDateTime(15, wxDateTime::Jul, 2100, 7, 8, 9),
    };
    const int ints[] = {0, 1, -1, 2147483647, -2147483647 - 1};
    wxXmlWriter w;
    ASSERT_TRUE(w.Open(Path("values.xml")));
    w.StartDocument();
    w.StartElement("v");
    for (size_t i = 0; i < 4; ++i)
        EXPECT_TRUE(w.writeAttr(("d" + std::to_string(i)).c_str(), dates[i]));
    for (size_t i = 0; i < 5; ++i)
        EXPECT_TRUE(w.WriteAttr(wxString::Format("i%d", static_cast<int>(i)), ints[i]));
    w.EndDocument();
    w.Close();

    wxXmlTree t;
    ASSERT_TRUE(t.Open(Path("values.xml")));
    const wxXmlNode root = t.GetRoot();
    EXPECT_EQ(root.GetAttr("d0"), "2024-02-29T23:59:58");
    for (size_t i = 0; i < 4; ++i) {
        const wxDateTime back =
            root.getAttrAsDateTime(wxString::Format("d%d", static_cast<int>(i)));
        ASSERT_TRUE(back.IsValid());
        wxDateTime whole = dates[i];
        whole.SetMillisecond(0);
        EXPECT_EQ(back, whole) << i;
    }
    wxXmlReader r;
    ASSERT_TRUE(r.Open(Path("values.xml")));
    ASSERT_TRUE(r.iRead());
    for (size_t i = 0; i < 5; ++i) {
        const wxString name = wxString::Format("i%d", static_cast<int>(i));
        EXPECT_EQ(root.GetAttrAsInt(name), ints[i]);
        int n = 99;
        EXPECT_TRUE(r.AttrAsInt(name.utf8_str(), &n));
        EXPECT_EQ(n, ints[i]);
        EXPECT_EQ(r.GetAttrAsBool(name.utf8_str(), ints[i] == 0), ints[i] != 0);
    }
}

} // namespace
