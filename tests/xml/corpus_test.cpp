// Each sample file: reader and tree see the same elements; bad-* are refused.
#include <wxsupport/xml/xml-reader.h>

#include "xml_test_util.h"

#include <filesystem>

// The reader gives qualified names, the tree local ones.
static std::string Local(const wxString& name) {
    return Utf8(name.AfterFirst(':').empty() ? name : name.AfterFirst(':'));
}

static void TreeNames(const wxXmlNode& element, Names& names) {
    names.push_back(Local(element.GetNodeName()));
    for (wxXmlNode c = element.GetFirstElementChild(); !c.IsNull(); c = c.GetNextElementSibling())
        TreeNames(c, names);
}

TEST(CorpusTest, ReaderAndTreeAgree) {
    QuietLibxml();
    size_t files = 0;
    for (const auto& entry : std::filesystem::directory_iterator(TestDataPath("xml"))) {
        const std::string name = entry.path().filename().string(), path = entry.path().string();
        SCOPED_TRACE(name);
        ++files;
        const bool malformed = name.compare(0, 4, "bad-") == 0;
        Names reader, tree;
        wxXmlReader r;
        ASSERT_TRUE(r.Open(wxString::FromUTF8(path)));
        while (r.iRead())
            if (r.IsElement())
                reader.push_back(Local(r.GetName()));
        EXPECT_EQ(r.IsEOF(), !malformed);
        const std::string json = ReadFileBytes(TestDataPath("expected/xml/" + name + ".json"));
        EXPECT_EQ(reader.size(), std::stoul(json.substr(json.find("\"elements\": ") + 12)));
        wxXmlTree t, p;
        EXPECT_EQ(t.Open(wxString::FromUTF8(path)), !malformed);
        EXPECT_EQ(p.Parse(wxString::FromUTF8(ReadFileBytes(path))), !malformed);
        if (malformed)
            continue;
        TreeNames(t.GetRoot(), tree);
        EXPECT_EQ(tree, reader);
    }
    EXPECT_EQ(files, 28u);
}
