// Text that has no UTF-8 form. wxString holds 32-bit characters and
// wxString::FromUTF8 accepts four-byte sequences beyond U+10FFFF (F4 90 and
// up), so a host can hand the library such a string from a file or the
// clipboard. Every operation that turns text into UTF-8 (the string bridge,
// the XML tree and writer, the INI file) tests it first and takes its
// documented fallback quietly: no assertion, no crash.
#include "tempdir.h"

#include <wxsupport/config/wxinifile.h>
#include <wxsupport/text/strings.h>
#include <wxsupport/xml/xml-reader.h>

#include <gtest/gtest.h>

namespace {

// "<r>" + U+112587 + "</r>", as wxString::FromUTF8 decodes the bytes.
wxString Beyond() {
    static const char bytes[] = "<r>\xf4\x92\x96\x87</r>";
    return wxString::FromUTF8(bytes);
}

} // namespace

TEST(TextWithoutUtf8Form, FromUtf8AcceptsIt) {
    // The premise: such strings do reach hosts.
    EXPECT_FALSE(Beyond().empty());
}

TEST(TextWithoutUtf8Form, StringBridgeGivesNullQuietly) {
    wxStoC c(Beyond());
    EXPECT_EQ(c.cstr(), nullptr);
}

TEST(TextWithoutUtf8Form, TreeParseFailsQuietly) {
    wxXmlTree tree;
    EXPECT_FALSE(tree.Parse(Beyond()));
}

TEST(TextWithoutUtf8Form, WriterTextFailsQuietly) {
    TempDir tmp;
    wxXmlWriter w;
    ASSERT_TRUE(w.Open(tmp.file("out.xml")));
    ASSERT_TRUE(w.StartDocument());
    ASSERT_TRUE(w.StartElement("r"));
    w.WriteText(Beyond());
    w.WriteAttr("a", Beyond());
    w.Close();
}

TEST(TextWithoutUtf8Form, IniFileTakesItQuietly) {
    TempDir tmp;
    wxIniFile ini;
    ini.WriteString(Beyond(), Beyond(), Beyond());
    ini.ReadString(Beyond(), "k", Beyond());
    EXPECT_TRUE(ini.Save(tmp.file("out.ini")));
}
