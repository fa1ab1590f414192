// wxXmlReader: walking, skipping, the end flag, attributes and node kinds.
#include <wxsupport/xml/xml-reader.h>

#include "assert_capture.h"
#include "tempdir.h"
#include "xml_test_util.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

class ReaderTest : public testing::Test {
protected:
    void SetUp() override { QuietLibxml(); }

    wxString Doc(const std::string& bytes) {
        return wxString::FromUTF8(WriteDoc(dir, "doc" + std::to_string(++count) + ".xml", bytes));
    }

    // Kind and name of every node iRead stops on.
    static std::vector<std::string> Walk(wxXmlReader& r) {
        std::vector<std::string> out;
        while (r.iRead())
            out.push_back(std::string(r.IsEndElement() ? "/" : "") + r.GetName().utf8_str().data());
        return out;
    }

    TempDir dir;
    int count = 0;
};

TEST_F(ReaderTest, SkipsCommentsAndIndentation) {
    wxXmlReader r;
    ASSERT_TRUE(r.Open(Doc("<?xml version=\"1.0\"?>\n<!-- head -->\n<root>\n  <!-- inner -->\n"
                           "  <a>\n    <b/>\n  </a>\n  <c>text</c>\n</root>\n<!-- tail -->\n")));
    EXPECT_EQ(Walk(r),
              (std::vector<std::string>{"root", "a", "b", "/a", "c", "#text", "/c", "/root"}));
    EXPECT_TRUE(r.IsEOF());
    EXPECT_FALSE(r.iRead());
    EXPECT_TRUE(r.IsEOF());
    r.Close();
}

TEST_F(ReaderTest, OnlyCommentInsideRoot) {
    wxXmlReader r;
    ASSERT_TRUE(r.Open(Doc("<root><!-- nothing else --></root>")));
    ASSERT_TRUE(r.iRead());
    EXPECT_TRUE(r.IsElement());
    EXPECT_FALSE(r.IsComment());
    ASSERT_TRUE(r.iRead());
    EXPECT_TRUE(r.IsEndElement());
    EXPECT_TRUE(r.CmpName("root"));
    EXPECT_FALSE(r.iRead());
    EXPECT_TRUE(r.IsEOF());
}

TEST_F(ReaderTest, NextSkipsSubtree) {
    wxXmlReader r;
    ASSERT_TRUE(
        r.Open(Doc("<root>\n  <skip><x/><y>t</y></skip>\n  <!-- c -->\n  <after/>\n</root>")));
    ASSERT_TRUE(r.iRead());
    ASSERT_TRUE(r.iRead());
    ASSERT_TRUE(r.CmpName("skip"));
    ASSERT_TRUE(r.iNext());
    EXPECT_TRUE(r.CmpName("after"));
    EXPECT_TRUE(r.IsEmptyElement());
    ASSERT_TRUE(r.iNext());
    EXPECT_TRUE(r.IsEndElement());
    EXPECT_FALSE(r.iNext());
    EXPECT_TRUE(r.IsEOF());
}

TEST_F(ReaderTest, MalformedEndsWithoutEof) {
    for (const char* bytes : {"<root><a></b></root>", "<root><a>", "<root attr=\"x>", "",
                              "<a/><b/>", "<root>\xff\xfe</root>"}) {
        SCOPED_TRACE(bytes);
        wxXmlReader r;
        ASSERT_TRUE(r.Open(Doc(bytes)));
        while (r.iRead()) {
        }
        EXPECT_FALSE(r.IsEOF());
    }
}

TEST_F(ReaderTest, EofFlagSurvivesCloseAndOpen) {
    wxXmlReader r;
    ASSERT_TRUE(r.Open(Doc("<a/>")));
    Walk(r);
    ASSERT_TRUE(r.IsEOF());
    r.Close();
    EXPECT_TRUE(r.IsEOF());
    ASSERT_TRUE(r.Open(Doc("<b/>")));
    EXPECT_TRUE(r.IsEOF());
    ASSERT_TRUE(r.iRead());
    EXPECT_TRUE(r.CmpName("b"));
    // A failure leaves the flag as the last end left it.
    ASSERT_TRUE(r.Open(Doc("<c><d>")));
    EXPECT_TRUE(r.IsEOF());
    Walk(r);
    EXPECT_TRUE(r.IsEOF());
}

TEST_F(ReaderTest, MissingFileAndDirectory) {
    wxXmlReader r;
    EXPECT_FALSE(r.Open(wxString::FromUTF8(dir.file("missing.xml"))));
    EXPECT_FALSE(r.iRead());
    EXPECT_FALSE(r.IsEOF());
    // libxml2 hands back a reader for a directory; reading it fails.
    EXPECT_TRUE(r.Open(wxString::FromUTF8(dir.path())));
    EXPECT_FALSE(r.iRead());
    EXPECT_FALSE(r.IsEOF());
}

TEST_F(ReaderTest, EveryOperationWithoutFile) {
    wxXmlReader r;
    EXPECT_FALSE(r.iRead());
    EXPECT_FALSE(r.iNext());
    EXPECT_FALSE(r.IsEOF());
    EXPECT_TRUE(r.GetName().empty());
    EXPECT_TRUE(r.GetText().empty());
    EXPECT_TRUE(r.GetAttr("a").empty());
    EXPECT_FALSE(r.HasAttr("a"));
    EXPECT_TRUE(r.GetAttrAsBool("a", true));
    EXPECT_FALSE(r.GetAttrAsBool("a", false));
    int n = 7;
    EXPECT_FALSE(r.AttrAsInt("a", &n));
    EXPECT_EQ(n, 7);
    wxColour c(1, 2, 3);
    EXPECT_FALSE(r.AttrAsColor("a", c));
    EXPECT_EQ(c, wxColour(1, 2, 3));
    EXPECT_FALSE(r.CmpName("a"));
    EXPECT_FALSE(r.IsElement());
    EXPECT_FALSE(r.IsEndElement());
    EXPECT_FALSE(r.IsText());
    EXPECT_FALSE(r.IsComment());
    {
        AssertCapture capture;
        EXPECT_TRUE(r.GetType().empty());
        ASSERT_EQ(capture.count(), 1u);
        EXPECT_EQ(capture.asserts()[0].cond, "\"Assert failure\""); // wxFAIL's text
        EXPECT_EQ(capture.asserts()[0].func, "node_type_as_string");
    }
    r.Close();
    r.Close();
}

TEST_F(ReaderTest, TypeWords) {
    wxXmlReader r;
    ASSERT_TRUE(r.Open(Doc("<root>t<![CDATA[c]]><?pi x?></root>")));
    {
        AssertCapture capture; // before the first read the kind is 0
        EXPECT_TRUE(r.GetType().empty());
        EXPECT_EQ(capture.count(), 1u);
    }
    std::vector<std::string> types;
    while (r.iRead())
        types.push_back(std::string(r.GetType().utf8_str()));
    EXPECT_EQ(types, (std::vector<std::string>{"element", "text", "cdata", "processing instruction",
                                               "end element"}));
}

TEST_F(ReaderTest, Attributes) {
    wxXmlReader r;
    ASSERT_TRUE(r.Open(
        Doc("<e empty=\"\" zero=\"0\" one=\"1\" word=\"false\" neg=\"-42\" big=\"9999999999\""
            " tail=\"12px\" sp=\" 5\" col=\"#ff0010\" bad=\"#zz\" txt=\"a &amp; &lt;b&gt;\""
            " uni=\"Gr&#xFC;&#xDF;e\" Case=\"x\"/>")));
    ASSERT_TRUE(r.iRead());
    EXPECT_TRUE(r.GetAttr("empty").empty());
    EXPECT_TRUE(r.GetAttr("missing").empty());
    EXPECT_TRUE(r.HasAttr("empty"));
    EXPECT_FALSE(r.HasAttr("missing"));
    EXPECT_FALSE(r.HasAttr("case"));
    EXPECT_EQ(r.GetAttr("txt"), "a & <b>");
    EXPECT_EQ(r.GetAttr("uni"), wxString::FromUTF8("Gr\xc3\xbc\xc3\x9f"
                                                   "e"));

    for (bool def : {true, false}) {
        EXPECT_FALSE(r.GetAttrAsBool("zero", def));
        EXPECT_TRUE(r.GetAttrAsBool("one", def));
        EXPECT_TRUE(r.GetAttrAsBool("word", def));
        EXPECT_TRUE(r.GetAttrAsBool("empty", def));
        EXPECT_EQ(r.GetAttrAsBool("missing", def), def);
    }

    int n = 5;
    EXPECT_TRUE(r.AttrAsInt("neg", &n));
    EXPECT_EQ(n, -42);
    EXPECT_TRUE(r.AttrAsInt("zero", &n));
    EXPECT_EQ(n, 0);
    n = 5;
    for (const char* name : {"tail", "empty", "missing", "word", "big"}) {
        EXPECT_FALSE(r.AttrAsInt(name, &n)) << name;
        EXPECT_EQ(n, 5) << name;
    }

    wxColour c(1, 2, 3);
    EXPECT_FALSE(r.AttrAsColor("bad", c));
    EXPECT_FALSE(r.AttrAsColor("missing", c));
    EXPECT_EQ(c, wxColour(1, 2, 3));
    EXPECT_TRUE(r.AttrAsColor("col", c));
    EXPECT_EQ(c, wxColour(255, 0, 16));
}

TEST_F(ReaderTest, NamespacedAttributes) {
    wxXmlReader r;
    ASSERT_TRUE(r.Open(Doc("<e xmlns:p=\"urn:p\" xmlns=\"urn:d\" p:a=\"pa\" a=\"plain\"/>")));
    ASSERT_TRUE(r.iRead());
    EXPECT_EQ(r.GetAttr("a"), "plain");
    EXPECT_EQ(r.GetAttr("p:a"), "pa");
    EXPECT_EQ(r.GetAttr("xmlns:p"), "urn:p");
    EXPECT_EQ(r.GetAttr("xmlns"), "urn:d");
    EXPECT_FALSE(r.HasAttr("q:a"));
}

TEST_F(ReaderTest, Text) {
    wxXmlReader r;
    ASSERT_TRUE(r.Open(Doc("<root><t>caf&#xE9; &amp; more</t></root>")));
    ASSERT_TRUE(r.iRead());
    ASSERT_TRUE(r.iRead());
    ASSERT_TRUE(r.iRead());
    ASSERT_TRUE(r.IsText());
    EXPECT_EQ(r.GetText(), wxString::FromUTF8("caf\xc3\xa9 & more"));
    EXPECT_TRUE(r.IsText()); // GetText does not move the reader
}

TEST_F(ReaderTest, CmpNameIsExactAndCaseSensitive) {
    wxXmlReader r;
    ASSERT_TRUE(r.Open(Doc("<Root/>")));
    ASSERT_TRUE(r.iRead());
    EXPECT_TRUE(r.CmpName("Root"));
    EXPECT_FALSE(r.CmpName("root"));
    EXPECT_FALSE(r.CmpName("Roo"));
    EXPECT_FALSE(r.CmpName("Roots"));
    EXPECT_FALSE(r.CmpName(nullptr));
}

TEST_F(ReaderTest, CopiesShareTheHandle) {
    wxXmlReader a;
    ASSERT_TRUE(a.Open(Doc("<root><x/><y/></root>")));
    ASSERT_TRUE(a.iRead());
    {
        wxXmlReader b(a);
        wxXmlReader c;
        c = a;
        c = c;                  // self-assignment keeps the share
        ASSERT_TRUE(b.iRead()); // one libxml2 reader: b moves it for all
        EXPECT_TRUE(a.CmpName("x"));
        EXPECT_TRUE(c.CmpName("x"));
        a.Close(); // b and c still hold it
        ASSERT_TRUE(c.iRead());
        EXPECT_TRUE(b.CmpName("y"));
    }
    EXPECT_FALSE(a.iRead());

    // Assignment over a reader that holds another file drops that share.
    wxXmlReader d, e;
    ASSERT_TRUE(d.Open(Doc("<d/>")));
    ASSERT_TRUE(e.Open(Doc("<e/>")));
    d = e;
    ASSERT_TRUE(d.iRead());
    EXPECT_TRUE(e.CmpName("e"));
    // Open over a held reader releases it (no leak under AddressSanitizer).
    ASSERT_TRUE(d.Open(Doc("<f/>")));
    ASSERT_TRUE(d.iRead());
    EXPECT_TRUE(d.CmpName("f"));
    EXPECT_TRUE(e.CmpName("e"));
}

TEST_F(ReaderTest, AssignmentCopiesEofFlag) {
    wxXmlReader a, b;
    ASSERT_TRUE(a.Open(Doc("<a/>")));
    Walk(a);
    b = a;
    EXPECT_TRUE(b.IsEOF());
    b = wxXmlReader();
    EXPECT_FALSE(b.IsEOF());
}

} // namespace
