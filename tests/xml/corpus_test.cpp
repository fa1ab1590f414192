// Every sample file in tests/data/xml walked with the reader and with the
// tree: both agree with each other and with the reference readings in
// tests/data/expected/xml; the malformed samples are refused by both.
#include <wxsupport/xml/xml-reader.h>

#include "tempdir.h"
#include "xml_test_util.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <cstring>
#include <filesystem>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace {

// Just enough JSON for the reference readings: objects, arrays, strings,
// numbers, true, false and null.
struct Json {
    enum Kind { Null, Bool, Number, String, Array, Object } kind = Null;
    bool boolean = false;
    std::string text; // string, or a number's text
    std::vector<Json> items;
    std::map<std::string, Json> fields;

    const Json& operator[](const std::string& key) const {
        static const Json none;
        const auto it = fields.find(key);
        return it == fields.end() ? none : it->second;
    }
    std::vector<std::string> Strings() const {
        std::vector<std::string> out;
        for (const Json& j : items)
            out.push_back(j.text);
        return out;
    }
};

class JsonParser {
public:
    explicit JsonParser(const std::string& in) : s(in) {}

    bool Parse(Json& out) {
        if (!Value(out))
            return false;
        Skip();
        return pos == s.size();
    }

private:
    void Skip() {
        while (pos < s.size() && std::isspace(static_cast<unsigned char>(s[pos])))
            ++pos;
    }
    bool Eat(char c) {
        Skip();
        if (pos < s.size() && s[pos] == c) {
            ++pos;
            return true;
        }
        return false;
    }
    bool Str(std::string& out) {
        if (!Eat('"'))
            return false;
        while (pos < s.size() && s[pos] != '"') {
            char c = s[pos++];
            if (c == '\\' && pos < s.size()) {
                c = s[pos++];
                if (c == 'u' && pos + 4 <= s.size()) {
                    const unsigned long cp = std::stoul(s.substr(pos, 4), nullptr, 16);
                    pos += 4;
                    Utf8(cp, out);
                    continue;
                }
                c = c == 'n' ? '\n' : c == 't' ? '\t' : c == 'r' ? '\r' : c;
            }
            out += c;
        }
        return Eat('"');
    }
    static void Utf8(unsigned long cp, std::string& out) {
        if (cp < 0x80) {
            out += static_cast<char>(cp);
        } else if (cp < 0x800) {
            out += static_cast<char>(0xc0 | (cp >> 6));
            out += static_cast<char>(0x80 | (cp & 0x3f));
        } else {
            out += static_cast<char>(0xe0 | (cp >> 12));
            out += static_cast<char>(0x80 | ((cp >> 6) & 0x3f));
            out += static_cast<char>(0x80 | (cp & 0x3f));
        }
    }
    bool Value(Json& v) {
        Skip();
        if (pos >= s.size())
            return false;
        const char c = s[pos];
        if (c == '{') {
            v.kind = Json::Object;
            ++pos;
            if (Eat('}'))
                return true;
            do {
                std::string key;
                if (!Str(key) || !Eat(':') || !Value(v.fields[key]))
                    return false;
            } while (Eat(','));
            return Eat('}');
        }
        if (c == '[') {
            v.kind = Json::Array;
            ++pos;
            if (Eat(']'))
                return true;
            do {
                v.items.emplace_back();
                if (!Value(v.items.back()))
                    return false;
            } while (Eat(','));
            return Eat(']');
        }
        if (c == '"') {
            v.kind = Json::String;
            return Str(v.text);
        }
        for (const char* word : {"true", "false", "null"}) {
            if (s.compare(pos, std::char_traits<char>::length(word), word) == 0) {
                pos += std::char_traits<char>::length(word);
                v.kind = word[0] == 'n' ? Json::Null : Json::Bool;
                v.boolean = word[0] == 't';
                return true;
            }
        }
        v.kind = Json::Number;
        while (pos < s.size() &&
               (std::isdigit(static_cast<unsigned char>(s[pos])) || std::strchr("+-.eE", s[pos])))
            v.text += s[pos++];
        return !v.text.empty();
    }

    const std::string& s;
    size_t pos = 0;
};

struct ReaderWalk {
    bool opened = false;
    bool eof = false;
    std::vector<std::string> names;
    int texts = 0;
};

ReaderWalk WalkWithReader(const std::string& path) {
    ReaderWalk w;
    wxXmlReader r;
    w.opened = r.Open(wxString::FromUTF8(path));
    while (r.iRead()) {
        EXPECT_FALSE(r.IsComment());
        if (r.IsElement())
            w.names.push_back(std::string(r.GetName().utf8_str()));
        else if (r.IsText())
            ++w.texts;
    }
    w.eof = r.IsEOF();
    r.Close();
    return w;
}

// Element names in document order through GetFirstElementChild and
// GetNextElementSibling, and the number of text nodes that hold more than
// white space, through the all-nodes walk.
void WalkTree(const wxXmlNode& element, std::vector<std::string>& names, int& texts) {
    names.push_back(std::string(element.GetNodeName().utf8_str()));
    for (wxXmlNode c = element.GetFirstElementChild(); !c.IsNull(); c = c.GetNextElementSibling())
        WalkTree(c, names, texts);
    if (!element.HasChildren())
        return;
    for (wxXmlNode n = element.GetFirstChild();; n = n.GetNextSibling()) {
        if (n.IsText() && !n.IsWhitespace())
            ++texts;
        if (!n.HasNextSibling())
            break;
    }
}

std::string LocalName(const std::string& name) {
    const size_t colon = name.find(':');
    return colon == std::string::npos ? name : name.substr(colon + 1);
}

class CorpusTest : public testing::TestWithParam<std::string> {
protected:
    void SetUp() override { QuietLibxml(); }
};

TEST_P(CorpusTest, ReaderAndTreeAgree) {
    const std::string name = GetParam();
    const std::string path = TestDataPath("xml/" + name);
    const std::string expectedPath = TestDataPath("expected/xml/" + name + ".json");
    Json expected;
    ASSERT_TRUE(JsonParser(ReadFileBytes(expectedPath)).Parse(expected)) << expectedPath;
    const bool malformed = expected["status"].text == "malformed";
    const Json& model = expected["libxml2_model"];

    const ReaderWalk reader = WalkWithReader(path);
    ASSERT_TRUE(reader.opened);
    EXPECT_EQ(reader.eof, !malformed);
    EXPECT_EQ(reader.names, model["reader"]["start_names"].Strings());
    EXPECT_EQ(reader.texts, std::stoi(model["reader"]["text_nodes"].text));

    wxXmlTree tree;
    const bool opened = tree.Open(wxString::FromUTF8(path));
    EXPECT_EQ(opened, !malformed);
    const std::string bytes = ReadFileBytes(path);
    wxXmlTree parsed;
    EXPECT_EQ(parsed.Parse(wxString::FromUTF8(bytes)), !malformed);
    if (malformed)
        return;
    EXPECT_EQ(reader.names, expected["start_names"].Strings()) << "the expat reading";

    std::vector<std::string> names;
    int texts = 0;
    WalkTree(tree.GetRoot(), names, texts);
    EXPECT_EQ(names, model["tree"]["start_names"].Strings());
    EXPECT_EQ(texts, std::stoi(model["tree"]["text_nodes"].text));

    // The reader gives qualified names, the tree local ones (but where a
    // prefix is undeclared): the same elements, in the same order.
    ASSERT_EQ(names.size(), reader.names.size());
    for (size_t i = 0; i < names.size(); ++i)
        EXPECT_EQ(LocalName(names[i]), LocalName(reader.names[i])) << i;

    std::vector<std::string> parsedNames;
    int parsedTexts = 0;
    WalkTree(parsed.GetRoot(), parsedNames, parsedTexts);
    EXPECT_EQ(parsedNames, names);

    // The root's attributes read the same through the tree and the reader.
    wxXmlReader r;
    ASSERT_TRUE(r.Open(wxString::FromUTF8(path)));
    while (r.iRead() && !r.IsElement()) {
    }
    for (const Json& attr : model["tree"]["root_attributes"].items) {
        const std::string& key = attr.items[0].text;
        const wxString value = wxString::FromUTF8(attr.items[1].text);
        // xmlHasProp and xmlGetProp look attributes up by local name; the
        // reader resolves a prefix.
        const wxString local = wxString::FromUTF8(LocalName(key));
        EXPECT_TRUE(tree.GetRoot().HasAttr(local)) << key;
        EXPECT_EQ(tree.GetRoot().GetAttr(local), value) << key;
        EXPECT_EQ(r.GetAttr(key.c_str()), value) << key;
    }
}

std::vector<std::string> SampleFiles() {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(TestDataPath("xml")))
        names.push_back(entry.path().filename().string());
    std::sort(names.begin(), names.end());
    return names;
}

std::string TestName(const testing::TestParamInfo<std::string>& info) {
    std::string out;
    for (char c : info.param)
        out += std::isalnum(static_cast<unsigned char>(c)) ? c : '_';
    return out;
}

INSTANTIATE_TEST_SUITE_P(Samples, CorpusTest, testing::ValuesIn(SampleFiles()), TestName);

TEST(CorpusSet, EverySampleHasAReading) {
    const std::vector<std::string> names = SampleFiles();
    EXPECT_EQ(names.size(), 28u);
    for (const std::string& name : names)
        EXPECT_TRUE(FileExists(TestDataPath("expected/xml/" + name + ".json"))) << name;
}

} // namespace
