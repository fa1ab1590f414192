// wxXmlReader: walking, skipping, the end flag, attributes and node kinds.
#include <wxsupport/xml/xml-reader.h>

#include "xml_test_util.h"

using ReaderTest = XmlTest;

// Names of the nodes the reader stops on, "/name" for an end tag.
static Names Walk(wxXmlReader& r, bool next = false) {
    Names out;
    while (next ? r.iNext() : r.iRead())
        out.push_back((r.IsEndElement() ? "/" : "") + Utf8(r.GetName()));
    return out;
}

TEST_F(ReaderTest, WalkSkipsCommentsAndWhiteSpace) {
    wxXmlReader r;
    ASSERT_TRUE(r.Open(
        Doc("<?xml version=\"1.0\"?>\n<!-- head -->\n<root>\n  <!-- inner -->\n  <a>\n"
            "    <b/>\n  </a>\n  <c>text</c>\n  <d><!-- only --></d>\n</root>\n<!-- tail -->\n")));
    EXPECT_EQ(Walk(r), (Names{"root", "a", "b", "/a", "c", "#text", "/c", "d", "/d", "/root"}));
    EXPECT_TRUE(r.IsEOF() && !r.iRead() && r.IsEOF());
}

TEST_F(ReaderTest, NextSkipsSubtree) {
    wxXmlReader r;
    ASSERT_TRUE(r.Open(Doc("<root>\n <skip><x/><y>t</y></skip>\n <!-- c -->\n <after/>\n</root>")));
    ASSERT_TRUE(r.iRead() && r.iRead() && r.CmpName("skip") && r.iNext());
    EXPECT_TRUE(r.CmpName("after") && r.IsEmptyElement());
    EXPECT_EQ(Walk(r, true), Names{"/root"});
    EXPECT_TRUE(r.IsEOF());
}

TEST_F(ReaderTest, EofFlagOutlivesCloseAndOpen) {
    wxXmlReader r, copy;
    ASSERT_TRUE(r.Open(Doc("<a/>")));
    EXPECT_EQ(Walk(r), Names{"a"});
    r.Close();
    ASSERT_TRUE(r.IsEOF() && r.Open(Doc("<b/>")) && r.IsEOF());
    EXPECT_EQ(Walk(r), Names{"b"});
    ASSERT_TRUE(r.Open(Doc("<c><d>")));
    EXPECT_EQ(Walk(r), (Names{"c", "d"}));
    copy = r; // the failure left the flag as the last end set it; assignment copies it
    EXPECT_TRUE(r.IsEOF() && copy.IsEOF());
    copy = wxXmlReader();
    EXPECT_FALSE(copy.IsEOF() || r.Open(Path("missing.xml")) || r.iRead() || !r.IsEOF());
}

TEST_F(ReaderTest, EveryOperationWithoutFileAndTypeWords) {
    wxXmlReader r;
    EXPECT_FALSE(r.iRead() || r.iNext() || r.IsEOF() || r.HasAttr("a") || r.CmpName("a"));
    EXPECT_FALSE(r.IsElement() || r.IsEndElement() || r.IsText() || r.IsComment());
    EXPECT_TRUE(r.GetName().empty() && r.GetText().empty() && r.GetAttr("a").empty());
    EXPECT_TRUE(r.GetAttrAsBool("a", true) && !r.GetAttrAsBool("a", false));
    int n = 7;
    wxColour c(1, 2, 3);
    EXPECT_FALSE(r.AttrAsInt("a", &n) || r.AttrAsColor("a", c) || n != 7 || c != wxColour(1, 2, 3));
    {
        AssertCapture capture; // wxFAIL's text, also before the first read of a file
        EXPECT_TRUE(r.GetType().empty() && r.Open(Doc("<root>t<![CDATA[c]]><?pi x?></root>")));
        EXPECT_TRUE(r.GetType().empty() && capture.count() == 2);
        EXPECT_EQ(capture.asserts()[0].cond + capture.asserts()[1].func,
                  "\"Assert failure\"node_type_as_string");
    }
    wxString types;
    while (r.iRead())
        types += r.GetType() + ",";
    EXPECT_EQ(types, "element,text,cdata,processing instruction,end element,");
    r.Close();
    r.Close();
}

TEST_F(ReaderTest, Attributes) {
    wxXmlReader r;
    ASSERT_TRUE(r.Open(Doc("<Root xmlns:p=\"urn:p\" p:a=\"pa\" a=\"plain\" empty=\"\" zero=\"0\""
                           " one=\"1\" word=\"false\" neg=\"-42\" big=\"9999999999\" tail=\"12px\""
                           " col=\"#ff0010\" bad=\"#zz\" txt=\"a &amp; &lt;b&gt;\""
                           " uni=\"Gr&#xFC;&#xDF;e\" Case=\"x\">caf&#xE9; &amp; more</Root>")));
    ASSERT_TRUE(r.iRead() && r.CmpName("Root"));
    EXPECT_FALSE(r.CmpName("root") || r.CmpName("Roo") || r.CmpName("Roots") || r.CmpName(nullptr));
    EXPECT_TRUE(r.HasAttr("empty") && r.HasAttr("p:a") && r.GetAttr("empty").empty());
    EXPECT_FALSE(r.HasAttr("missing") || r.HasAttr("case") || r.HasAttr("q:a"));
    EXPECT_EQ(r.GetAttr("txt") + "|" + r.GetAttr("a") + "|" + r.GetAttr("p:a") + "|" +
                  r.GetAttr("xmlns:p") + "|" + r.GetAttr("missing") + "|" + r.GetAttr("uni"),
              wxString::FromUTF8("a & <b>|plain|pa|urn:p||Gr\u00fc\u00dfe"));
    for (bool def : {true, false}) // "0" alone is false, a missing attribute def
        EXPECT_TRUE(!r.GetAttrAsBool("zero", def) && r.GetAttrAsBool("one", def) &&
                    r.GetAttrAsBool("word", def) && r.GetAttrAsBool("empty", def) &&
                    r.GetAttrAsBool("missing", def) == def);
    int n = 5;
    ASSERT_TRUE(r.AttrAsInt("neg", &n));
    for (const char* name : {"tail", "empty", "missing", "word", "big"})
        EXPECT_FALSE(r.AttrAsInt(name, &n)) << name;
    EXPECT_EQ(n, -42);
    wxColour c(1, 2, 3);
    EXPECT_FALSE(r.AttrAsColor("bad", c) || r.AttrAsColor("missing", c) || c != wxColour(1, 2, 3));
    EXPECT_TRUE(r.AttrAsColor("col", c) && c == wxColour(255, 0, 16));
    ASSERT_TRUE(r.iRead()); // GetText does not move the reader
    EXPECT_TRUE(r.GetText() == wxString::FromUTF8("caf\xc3\xa9 & more") && r.IsText());
}

TEST_F(ReaderTest, CopiesShareTheHandle) {
    wxXmlReader a;
    ASSERT_TRUE(a.Open(Doc("<root><x/><y/></root>")) && a.iRead());
    {
        wxXmlReader b(a), c;
        c = a;
        c = *&c;   // self-assignment (spelt so that clang doesn't warn)
        a.Close(); // b and c still hold the one libxml2 reader, moved by either
        EXPECT_TRUE(b.iRead() && c.CmpName("x") && c.iRead() && b.CmpName("y"));
    }
    EXPECT_FALSE(a.iRead());
    // Assignment and Open drop the share held before (or the sanitizer sees a leak).
    wxXmlReader d;
    ASSERT_TRUE(d.Open(Doc("<d/>")) && a.Open(Doc("<e/>")));
    d = a;
    ASSERT_TRUE(d.iRead() && a.CmpName("e"));
    ASSERT_TRUE(d.Open(Doc("<f/>")) && d.iRead());
    EXPECT_TRUE(d.CmpName("f") && a.CmpName("e"));
}
