// The XML classes decode libxml2's UTF-8 without a converter object: over
// random text (characters of every UTF-8 length, the edges of each, beyond
// the BMP) the names, attribute values and texts they give are those of
// wxConvUTF8 itself, through the reader and through the tree.
#include <wxsupport/xml/xml-reader.h>

#include "xml_test_util.h"

#include <random>

using ConversionTest = XmlTest;

namespace {

// Random well-formed UTF-8 that XML allows in values and text as it stands
// (no markup characters, no other white space than a blank, no
// noncharacters); with `name`, letters only.
std::string RandomUtf8(std::mt19937& rng, size_t maxPieces, bool name = false) {
    static const char* const pieces[] = {"a",
                                         "Z",
                                         "9",
                                         "\xC2\xA0",
                                         "\xC3\xA9",
                                         "\xDF\xBF",
                                         "\xE0\xA0\x80",
                                         "\xED\x9F\xBF",
                                         "\xEE\x80\x80",
                                         "\xEF\xBF\xBD",
                                         "\xE2\x82\xAC",
                                         "\xF0\x90\x80\x80",
                                         "\xF0\x9F\x98\x80",
                                         "\xF4\x8F\xBF\xBD",
                                         "\xE4\xB8\xAD"};
    // Names take letters only: "a", "Z", "\xC3\xA9", "\xE4\xB8\xAD".
    static const size_t letters[] = {0, 1, 4, 14};
    std::string out = "x"; // names begin with a letter
    const size_t count = rng() % (maxPieces + 1);
    for (size_t i = 0; i < count; ++i)
        out += pieces[name ? letters[rng() % 4] : rng() % (sizeof pieces / sizeof pieces[0])];
    return out;
}

wxString Converted(const std::string& bytes) {
    return wxString(bytes.c_str(), wxConvUTF8);
}

} // namespace

TEST_F(ConversionTest, NamesValuesAndTextAreWxConvUtf8s) {
    std::mt19937 rng(11);
    struct Item {
        std::string name, value, text;
    };
    std::vector<Item> items;
    std::string doc = "<root>";
    for (int i = 0; i < 500; ++i) {
        Item it{RandomUtf8(rng, 8, true), RandomUtf8(rng, i % 10 == 0 ? 300 : 30),
                RandomUtf8(rng, 30)};
        doc += "<" + it.name + " v=\"" + it.value + "\">" + it.text + "</" + it.name + ">";
        items.push_back(it);
    }
    doc += "</root>";
    const wxString path = Doc(doc);

    wxXmlReader r;
    ASSERT_TRUE(r.Open(path) && r.iRead());
    for (const Item& it : items) {
        ASSERT_TRUE(r.iRead() && r.IsElement());
        EXPECT_EQ(r.GetName(), Converted(it.name));
        EXPECT_EQ(r.GetAttr("v"), Converted(it.value));
        ASSERT_TRUE(r.iRead() && r.IsText());
        EXPECT_EQ(r.GetText(), Converted(it.text));
        ASSERT_TRUE(r.iRead() && r.IsEndElement());
    }
    r.Close();

    wxXmlTree tree;
    ASSERT_TRUE(tree.Open(path));
    wxXmlNode node = tree.GetRoot().GetFirstElementChild();
    for (const Item& it : items) {
        ASSERT_FALSE(node.IsNull());
        EXPECT_EQ(node.GetNodeName(), Converted(it.name));
        EXPECT_EQ(node.GetAttr("v"), Converted(it.value));
        EXPECT_EQ(node.GetTextContent(), Converted(it.text));
        node = node.GetNextElementSibling();
    }
    EXPECT_TRUE(node.IsNull());
}
