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
    EXPECT_TRUE(r.IsEOF());
    EXPECT_FALSE(r.iRead());
    EXPECT_TRUE(r.IsEOF());
}

TEST_F(ReaderTest, NextSkipsSubtree) {
    wxXmlReader r;
    ASSERT_TRUE(r.Open(Doc("<root>\n <skip><x/><y>t</y></skip>\n <!-- c -->\n <after/>\n</root>")));
    ASSERT_TRUE(r.iRead());
    ASSERT_TRUE(r.iRead());
    ASSERT_TRUE(r.CmpName("skip"));
    ASSERT_TRUE(r.iNext());
    EXPECT_TRUE(r.CmpName("after"));
    EXPECT_TRUE(r.IsEmptyElement());
    EXPECT_EQ(Walk(r, true), Names{"/root"});
    EXPECT_TRUE(r.IsEOF());
}

TEST_F(ReaderTest, EofFlagOutlivesCloseAndOpen) {
    wxXmlReader r, copy;
    ASSERT_TRUE(r.Open(Doc("<a/>")));
    EXPECT_EQ(Walk(r), Names{"a"});
    r.Close();
    ASSERT_TRUE(r.IsEOF());
    ASSERT_TRUE(r.Open(Doc("<b/>")));
    ASSERT_TRUE(r.IsEOF());
    EXPECT_EQ(Walk(r), Names{"b"});
    ASSERT_TRUE(r.Open(Doc("<c><d>")));
    EXPECT_EQ(Walk(r), (Names{"c", "d"}));
    copy = r; // the failure left the flag as the last end set it; assignment copies it
    EXPECT_TRUE(r.IsEOF());
    EXPECT_TRUE(copy.IsEOF());
    copy = wxXmlReader();
    EXPECT_FALSE(copy.IsEOF());
    EXPECT_FALSE(r.Open(Path("missing.xml")));
    EXPECT_FALSE(r.iRead());
    EXPECT_TRUE(r.IsEOF());
}

TEST_F(ReaderTest, EveryOperationWithoutFileAndTypeWords) {
    wxXmlReader r;
    EXPECT_FALSE(r.iRead());
    EXPECT_FALSE(r.iNext());
    EXPECT_FALSE(r.IsEOF());
    EXPECT_FALSE(r.HasAttr("a"));
    EXPECT_FALSE(r.CmpName("a"));
    EXPECT_FALSE(r.IsElement());
    EXPECT_FALSE(r.IsEndElement());
    EXPECT_FALSE(r.IsText());
    EXPECT_FALSE(r.IsComment());
    EXPECT_EQ(r.GetName(), "");
    EXPECT_EQ(r.GetText(), "");
    EXPECT_EQ(r.GetAttr("a"), "");
    EXPECT_TRUE(r.GetAttrAsBool("a", true));
    EXPECT_FALSE(r.GetAttrAsBool("a", false));
    int n = 7;
    wxColour c(1, 2, 3);
    EXPECT_FALSE(r.AttrAsInt("a", &n));
    EXPECT_FALSE(r.AttrAsColor("a", c));
    EXPECT_EQ(n, 7);
    EXPECT_EQ(c, wxColour(1, 2, 3));
    {
        AssertCapture capture; // wxFAIL's text, also before the first read of a file
        EXPECT_EQ(r.GetType(), "");
        EXPECT_TRUE(r.Open(Doc("<root>t<![CDATA[c]]><?pi x?></root>")));
        EXPECT_EQ(r.GetType(), "");
        ASSERT_EQ(capture.count(), 2u);
        EXPECT_EQ(capture.asserts()[0].cond, "\"Assert failure\"");
        EXPECT_EQ(capture.asserts()[1].func, "node_type_as_string");
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
    ASSERT_TRUE(r.iRead());
    ASSERT_TRUE(r.CmpName("Root"));
    for (const char* other : {"root", "Roo", "Roots"})
        EXPECT_FALSE(r.CmpName(other)) << other;
    EXPECT_FALSE(r.CmpName(nullptr));
    EXPECT_TRUE(r.HasAttr("empty"));
    EXPECT_TRUE(r.HasAttr("p:a"));
    EXPECT_EQ(r.GetAttr("empty"), "");
    for (const char* absent : {"missing", "case", "q:a"})
        EXPECT_FALSE(r.HasAttr(absent)) << absent;
    EXPECT_EQ(r.GetAttr("txt") + "|" + r.GetAttr("a") + "|" + r.GetAttr("p:a") + "|" +
                  r.GetAttr("xmlns:p") + "|" + r.GetAttr("missing") + "|" + r.GetAttr("uni"),
              wxString::FromUTF8("a & <b>|plain|pa|urn:p||Gr\u00fc\u00dfe"));
    for (bool def : {true, false}) { // "0" alone is false, a missing attribute def
        EXPECT_FALSE(r.GetAttrAsBool("zero", def)) << def;
        for (const char* name : {"one", "word", "empty"})
            EXPECT_TRUE(r.GetAttrAsBool(name, def)) << name << ", " << def;
        EXPECT_EQ(r.GetAttrAsBool("missing", def), def);
    }
    int n = 5;
    ASSERT_TRUE(r.AttrAsInt("neg", &n));
    for (const char* name : {"tail", "empty", "missing", "word", "big"})
        EXPECT_FALSE(r.AttrAsInt(name, &n)) << name;
    EXPECT_EQ(n, -42);
    wxColour c(1, 2, 3);
    EXPECT_FALSE(r.AttrAsColor("bad", c));
    EXPECT_FALSE(r.AttrAsColor("missing", c));
    EXPECT_EQ(c, wxColour(1, 2, 3));
    EXPECT_TRUE(r.AttrAsColor("col", c));
    EXPECT_EQ(c, wxColour(255, 0, 16));
    ASSERT_TRUE(r.iRead()); // GetText does not move the reader
    EXPECT_EQ(r.GetText(), wxString::FromUTF8("caf\xc3\xa9 & more"));
    EXPECT_TRUE(r.IsText());
}

TEST_F(ReaderTest, CopiesShareTheHandle) {
    wxXmlReader a;
    ASSERT_TRUE(a.Open(Doc("<root><x/><y/></root>")));
    ASSERT_TRUE(a.iRead());
    {
        wxXmlReader b(a), c;
        c = a;
        c = *&c;   // self-assignment (spelt so that clang doesn't warn)
        a.Close(); // b and c still hold the one libxml2 reader, moved by either
        EXPECT_TRUE(b.iRead());
        EXPECT_TRUE(c.CmpName("x"));
        EXPECT_TRUE(c.iRead());
        EXPECT_TRUE(b.CmpName("y"));
    }
    EXPECT_FALSE(a.iRead());
    // Assignment and Open drop the share held before (or the sanitizer sees a leak).
    wxXmlReader d;
    ASSERT_TRUE(d.Open(Doc("<d/>")));
    ASSERT_TRUE(a.Open(Doc("<e/>")));
    d = a;
    ASSERT_TRUE(d.iRead());
    ASSERT_TRUE(a.CmpName("e"));
    ASSERT_TRUE(d.Open(Doc("<f/>")));
    ASSERT_TRUE(d.iRead());
    EXPECT_TRUE(d.CmpName("f"));
    EXPECT_TRUE(a.CmpName("e"));
}
