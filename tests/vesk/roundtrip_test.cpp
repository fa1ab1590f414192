// Saving keeps the file: real-world files come back byte-identical, edits
// change only their lines (golden files), and any name or value survives a
// save (property test).
#include "store_util.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <cstdint>
#include <cstring>
#include <map>
#include <random>
#include <string>
#include <vector>

#include <dirent.h>

namespace {

std::vector<std::string> SampleFiles() {
    std::vector<std::string> names;
    std::string dir = TestDataPath("ini");
    if (DIR* d = opendir(dir.c_str())) {
        while (dirent* e = readdir(d))
            if (e->d_name[0] != '.')
                names.push_back(e->d_name);
        closedir(d);
    }
    std::sort(names.begin(), names.end());
    return names;
}

std::string Golden(const std::string& name) {
    return ReadFileBytes(std::string(VESK_GOLDEN_DIR) + "/" + name);
}

// A very small JSON reader, enough for the reference readings in
// tests/data/expected/ini.
struct Json {
    enum Kind { Null, Bool, Number, String, Array, Object } kind = Null;
    std::string str;
    std::vector<Json> items;
    std::vector<std::pair<std::string, Json>> members;

    const Json* get(const std::string& key) const {
        for (const auto& m : members)
            if (m.first == key)
                return &m.second;
        return nullptr;
    }
};

class JsonReader {
public:
    explicit JsonReader(const std::string& text) : m_s(text) {}
    bool read(Json& out) {
        value(out);
        return m_ok;
    }

private:
    void ws() {
        while (m_i < m_s.size() && std::isspace(static_cast<unsigned char>(m_s[m_i])))
            ++m_i;
    }
    void appendUtf8(std::string& out, uint32_t c) {
        if (c < 0x80) {
            out += static_cast<char>(c);
        } else if (c < 0x800) {
            out += static_cast<char>(0xC0 | (c >> 6));
            out += static_cast<char>(0x80 | (c & 0x3F));
        } else if (c < 0x10000) {
            out += static_cast<char>(0xE0 | (c >> 12));
            out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
            out += static_cast<char>(0x80 | (c & 0x3F));
        } else {
            out += static_cast<char>(0xF0 | (c >> 18));
            out += static_cast<char>(0x80 | ((c >> 12) & 0x3F));
            out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
            out += static_cast<char>(0x80 | (c & 0x3F));
        }
    }
    uint32_t hex4() {
        uint32_t v = std::stoul(m_s.substr(m_i, 4), nullptr, 16);
        m_i += 4;
        return v;
    }
    std::string string() {
        std::string out;
        ++m_i; // opening quote
        while (m_i < m_s.size() && m_s[m_i] != '"') {
            char c = m_s[m_i++];
            if (c != '\\') {
                out += c;
                continue;
            }
            char e = m_s[m_i++];
            switch (e) {
            case 'n':
                out += '\n';
                break;
            case 't':
                out += '\t';
                break;
            case 'r':
                out += '\r';
                break;
            case 'b':
                out += '\b';
                break;
            case 'f':
                out += '\f';
                break;
            case 'u': {
                uint32_t c1 = hex4();
                if (c1 >= 0xD800 && c1 < 0xDC00 && m_s.compare(m_i, 2, "\\u") == 0) {
                    m_i += 2;
                    uint32_t c2 = hex4();
                    c1 = 0x10000 + ((c1 - 0xD800) << 10) + (c2 - 0xDC00);
                }
                appendUtf8(out, c1);
                break;
            }
            default:
                out += e;
            }
        }
        ++m_i; // closing quote
        return out;
    }
    void value(Json& out) {
        ws();
        if (m_i >= m_s.size()) {
            m_ok = false;
            return;
        }
        char c = m_s[m_i];
        if (c == '{') {
            out.kind = Json::Object;
            ++m_i;
            ws();
            while (m_ok && m_i < m_s.size() && m_s[m_i] != '}') {
                ws();
                std::string key = string();
                ws();
                ++m_i; // colon
                Json v;
                value(v);
                out.members.emplace_back(key, v);
                ws();
                if (m_s[m_i] == ',')
                    ++m_i;
                ws();
            }
            ++m_i;
        } else if (c == '[') {
            out.kind = Json::Array;
            ++m_i;
            ws();
            while (m_ok && m_i < m_s.size() && m_s[m_i] != ']') {
                Json v;
                value(v);
                out.items.push_back(v);
                ws();
                if (m_s[m_i] == ',')
                    ++m_i;
                ws();
            }
            ++m_i;
        } else if (c == '"') {
            out.kind = Json::String;
            out.str = string();
        } else if (m_s.compare(m_i, 4, "null") == 0) {
            out.kind = Json::Null;
            m_i += 4;
        } else if (m_s.compare(m_i, 4, "true") == 0 || m_s.compare(m_i, 5, "false") == 0) {
            out.kind = Json::Bool;
            m_i += m_s[m_i] == 't' ? 4 : 5;
        } else {
            out.kind = Json::Number;
            while (m_i < m_s.size() && std::strchr("+-0123456789.eE", m_s[m_i]))
                out.str += m_s[m_i++];
            if (out.str.empty())
                m_ok = false;
        }
    }

    const std::string& m_s;
    size_t m_i = 0;
    bool m_ok = true;
};

} // namespace

TEST(RoundTrip, RealWorldFilesComeBackByteIdentical) {
    TempDir dir;
    std::vector<std::string> files = SampleFiles();
    ASSERT_GE(files.size(), 27u);
    for (const std::string& name : files) {
        SCOPED_TRACE(name);
        Store h;
        OpenResult r = OpenFile(h, TestDataPath("ini/" + name));
        ASSERT_EQ(0, r.rc) << r.region << ": " << r.message;
        EXPECT_GE(inifile_get_section_count(h), 1);
        // Walking every name and value materialises them; still no change.
        for (const std::string& s : Sections(h))
            for (const std::string& k : Keys(h, s.c_str()))
                ASSERT_EQ(1, inifile_has_key(h, s.c_str(), k.c_str()));
        EXPECT_EQ(ReadFileBytes(TestDataPath("ini/" + name)), SavedText(h, dir));
    }
}

// Files whose reference reading follows our rules: no continuation lines and
// no repeated keys (the reference keeps the last value, we the first).
TEST(RoundTrip, EnumerationMatchesTheReferenceReading) {
    const char* files[] = {
        "adwaita-index.theme",
        "at-spi-dbus-bus.desktop",
        "cfgparser.1",
        "debian-xterm.desktop",
        "debian-xterm.desktop.crlf",
        "fail2ban.conf",
        "geany-filetypes.python",
        "goini-minimal.ini",
        "idle-config-highlight.def",
        "idle-python3.11.desktop",
        "idmapd.conf",
        "logind.conf",
        "logind.conf.bom",
        "my.cnf.fallback",
        "org.a11y.Bus.service",
        "php-sockets.ini",
        "php.ini-development",
        "supervisord.conf",
        "systemd-tmpfiles-clean.timer",
        "user@.service",
        "xrdp-km-00000407.ini",
    };
    for (const char* name : files) {
        SCOPED_TRACE(name);
        Json ref;
        ASSERT_TRUE(
            JsonReader(ReadFileBytes(TestDataPath(std::string("expected/ini/") + name + ".json")))
                .read(ref));
        const Json* sections = ref.get("sections");
        if (const Json* leading = ref.get("leading_keys_reading"))
            sections = leading; // the same reading with the leading keys in ""
        ASSERT_NE(nullptr, sections);
        Store h;
        inifile_set_case_sensitive(h, 1); // the reference keeps case
        ASSERT_EQ(0, OpenFile(h, TestDataPath(std::string("ini/") + name)).rc);
        ASSERT_EQ(static_cast<int>(sections->items.size()), inifile_get_section_count(h));
        int si = 0;
        for (const Json& sec : sections->items) {
            const std::string& sname = sec.get("name")->str;
            EXPECT_EQ(sname, inifile_get_section_by_index(h, si++));
            const Json* keys = sec.get("keys");
            ASSERT_EQ(static_cast<int>(keys->items.size()),
                      inifile_get_key_count(h, sname.c_str()));
            int ki = 0;
            for (const Json& kv : keys->items) {
                const std::string& key = kv.items[0].str;
                EXPECT_EQ(key, inifile_get_key_by_index(h, sname.c_str(), ki++));
                std::string want = kv.items[1].kind == Json::Null ? "" : kv.items[1].str;
                if (want.size() >= 2 && want.front() == '"' && want.back() == '"')
                    continue; // we drop the quotes; checked in the format tests
                EXPECT_EQ(want, Get(h, sname.c_str(), key.c_str())) << sname << "/" << key;
            }
        }
    }
}

TEST(RoundTrip, EditedFileMatchesGolden) {
    for (const char* variant : {"", "-crlf"}) {
        SCOPED_TRACE(variant);
        TempDir dir;
        std::string path = dir.file("settings.ini");
        WriteFileBytes(path, Golden(std::string("edit-input") + variant + ".ini"));
        Store h;
        ASSERT_EQ(0, OpenFile(h, path).rc);
        inifile_write_long(h, "Window", "Width", 1024);
        EXPECT_EQ(1, inifile_remove_key(h, "Recent", "File1"));
        EXPECT_EQ(1, inifile_rename_section(h, "Recent", "History"));
        EXPECT_EQ(1, inifile_remove_section(h, "Obsolete"));
        inifile_write_string(h, "WINDOW", "maximized", "1");
        inifile_write_long(h, "Window", "Left", 10);
        inifile_write_string(h, "New", "Path", " /with blanks ");
        inifile_write_long(h, "New", "Count", 3);
        EXPECT_EQ(1, inifile_register_section(h, "Empty"));
        ASSERT_EQ(0, SaveFile(h, path).rc);
        EXPECT_EQ(Golden(std::string("edit-expected") + variant + ".ini"), ReadFileBytes(path));
    }
}

TEST(RoundTrip, FileWithoutFinalLineEnd) {
    TempDir dir;
    std::string path = dir.file("n.ini");
    WriteFileBytes(path, Golden("nofinal-input.ini"));
    Store h;
    ASSERT_EQ(0, OpenFile(h, path).rc);
    EXPECT_EQ(Golden("nofinal-input.ini"), SavedText(h, dir)); // unchanged: no line end added
    inifile_write_long(h, "a", "x", 2);
    EXPECT_EQ("[a]\nx=2", SavedText(h, dir)); // a rewritten last line stays without one
    inifile_write_long(h, "a", "y", 3);
    inifile_write_long(h, "b", "z", 4);
    ASSERT_EQ(0, SaveFile(h, path).rc);
    EXPECT_EQ(Golden("nofinal-expected.ini"), ReadFileBytes(path));
}

// A section appended before the last one's keys were ever looked at.
TEST(RoundTrip, NewSectionAfterALastLineWithoutLineEnd) {
    TempDir dir;
    Store h;
    ASSERT_TRUE(LoadText(h, dir, "[a]\nx=1"));
    EXPECT_EQ(1, inifile_register_section(h, "b"));
    EXPECT_EQ("[a]\nx=1\n[b]\n", SavedText(h, dir));
    EXPECT_EQ("1", Get(h, "a", "x"));
    inifile_write_string(h, "a", "y", "2");
    EXPECT_EQ("[a]\nx=1\ny=2\n[b]\n", SavedText(h, dir));

    Store g;
    ASSERT_TRUE(LoadText(g, dir, "[a]\r\nx=1\r\n[c]\r\nz=1"));
    inifile_write_string(g, "d", "k", "v");
    inifile_write_string(g, "c", "w", "2");
    EXPECT_EQ("[a]\r\nx=1\r\n[c]\r\nz=1\r\nw=2\r\n[d]\r\nk=v\r\n", SavedText(g, dir));
}

TEST(RoundTrip, RemovingEverythingAndWritingAgain) {
    TempDir dir;
    Store h;
    ASSERT_TRUE(LoadText(h, dir, "top=1\n; about a\n[a]\nk=v\n"));
    EXPECT_EQ(1, inifile_remove_section(h, ""));
    EXPECT_EQ("[a]\nk=v\n", SavedText(h, dir));
    EXPECT_EQ(1, inifile_remove_key(h, "a", "k"));
    EXPECT_EQ("[a]\n", SavedText(h, dir));
    inifile_write_string(h, "a", "k", "w");
    inifile_write_string(h, "", "top", "2");
    EXPECT_EQ("[a]\nk=w\n[]\ntop=2\n", SavedText(h, dir));
    EXPECT_EQ(1, inifile_rename_section(h, "", "b"));
    EXPECT_EQ("[a]\nk=w\n[b]\ntop=2\n", SavedText(h, dir));
}

TEST(RoundTrip, RenamingTheLeadingKeysGivesThemAHeader) {
    TempDir dir;
    Store h;
    ASSERT_TRUE(LoadText(h, dir, "a=1\n[s]\nb=2\n"));
    EXPECT_EQ(1, inifile_rename_section(h, "", "top"));
    EXPECT_EQ("[top]\na=1\n[s]\nb=2\n", SavedText(h, dir));
    Store back;
    ASSERT_TRUE(LoadText(back, dir, SavedText(h, dir)));
    EXPECT_EQ("1", Get(back, "top", "a"));
}

namespace {

// Random bytes without NUL, drawn mostly from the characters that matter to
// the format.
std::string RandomText(std::mt19937& rng, size_t maxLen) {
    static const char special[] = "[]=\"\\;# \t\r\nabcAB\x80\xC3\xA9\xE5\xFF";
    size_t len = rng() % (maxLen + 1);
    std::string s;
    for (size_t i = 0; i < len; ++i) {
        if (rng() % 3 == 0)
            s += static_cast<char>(1 + rng() % 255);
        else
            s += special[rng() % (sizeof special - 1)];
    }
    return s;
}

struct Expected {
    std::vector<std::string> sections;
    std::map<std::string, std::vector<std::pair<std::string, std::string>>> keys;

    void write(const std::string& s, const std::string& k, const std::string& v) {
        auto it = keys.find(s);
        if (it == keys.end()) {
            sections.push_back(s);
            it = keys.emplace(s, std::vector<std::pair<std::string, std::string>>()).first;
        }
        for (auto& kv : it->second)
            if (kv.first == k) {
                kv.second = v;
                return;
            }
        it->second.emplace_back(k, v);
    }
};

void CheckStore(inifile h, const Expected& want) {
    ASSERT_EQ(want.sections, Sections(h));
    for (const std::string& s : want.sections) {
        const auto& kvs = want.keys.at(s);
        ASSERT_EQ(static_cast<int>(kvs.size()), inifile_get_key_count(h, s.c_str()));
        for (size_t i = 0; i < kvs.size(); ++i) {
            ASSERT_EQ(kvs[i].first, inifile_get_key_by_index(h, s.c_str(), static_cast<int>(i)));
            ASSERT_EQ(kvs[i].second, Get(h, s.c_str(), kvs[i].first.c_str()));
        }
    }
}

} // namespace

// Any section, key and value without NUL reads back as written after a save.
TEST(RoundTrip, PropertyAnyNameAndValueSurvivesASave) {
    TempDir dir;
    std::mt19937 rng(20261123);
    int cases = 0;
    for (int round = 0; round < 100; ++round) {
        Store h;
        inifile_set_case_sensitive(h, 1);
        Expected want;
        std::vector<std::string> secs;
        for (int i = 0; i < 4; ++i)
            secs.push_back(RandomText(rng, 12));
        for (int i = 0; i < 40; ++i, ++cases) {
            std::string s = secs[rng() % secs.size()];
            std::string k = RandomText(rng, 12);
            std::string v = RandomText(rng, 40);
            inifile_write_string(h, s.c_str(), k.c_str(), v.c_str());
            want.write(s, k, v);
        }
        CheckStore(h, want);
        std::string path = dir.file("p.ini");
        ASSERT_EQ(0, SaveFile(h, path).rc);
        Store back;
        inifile_set_case_sensitive(back, 1);
        OpenResult r = OpenFile(back, path);
        ASSERT_EQ(0, r.rc) << r.message;
        SCOPED_TRACE(::testing::Message() << "round " << round << ", file:\n"
                                          << ReadFileBytes(path));
        CheckStore(back, want);
        // And once more, unchanged: the same bytes.
        EXPECT_EQ(ReadFileBytes(path), SavedText(back, dir));
    }
    EXPECT_GE(cases, 4000);
}

// The same under the default case rule, names kept apart by a prefix.
TEST(RoundTrip, PropertyWithoutRegardToCase) {
    TempDir dir;
    std::mt19937 rng(7);
    for (int round = 0; round < 50; ++round) {
        Store h;
        Expected want;
        for (int i = 0; i < 20; ++i) {
            std::string s = "s" + std::to_string(i % 3) + RandomText(rng, 8);
            if (want.keys.size() >= 3 && !want.keys.count(s))
                s = want.sections[rng() % want.sections.size()];
            std::string k = "k" + std::to_string(i) + "_" + RandomText(rng, 8);
            std::string v = RandomText(rng, 30);
            inifile_write_string(h, s.c_str(), k.c_str(), v.c_str());
            want.write(s, k, v);
        }
        std::string path = dir.file("p.ini");
        ASSERT_EQ(0, SaveFile(h, path).rc);
        Store back;
        ASSERT_EQ(0, OpenFile(back, path).rc);
        CheckStore(back, want);
    }
}

namespace {

// A random file: lines of headers, keys, comments and blanks, with random
// bytes in them, LF or CRLF, perhaps a byte order mark and no final line end.
std::string RandomFile(std::mt19937& rng) {
    static const char* shapes[] = {"[%]", "%=%",      "% = %",   "%",       "; %",    "# %",
                                   "",    "  [%]  x", "\"%\"=%", "[\"%\"]", "%=\"%\""};
    std::string eol = rng() % 4 == 0 ? "\r\n" : "\n";
    std::string out = rng() % 8 == 0 ? "\xEF\xBB\xBF" : "";
    int lines = static_cast<int>(rng() % 30);
    for (int i = 0; i < lines; ++i) {
        std::string shape = shapes[rng() % (sizeof shapes / sizeof *shapes)];
        for (char c : shape) {
            if (c != '%') {
                out += c;
                continue;
            }
            std::string t = RandomText(rng, 8);
            for (char& ch : t)
                if (ch == '\n' || ch == '\r' || ch == '[' || ch == ']' || ch == 0)
                    ch = 'x';
            out += t;
        }
        if (i + 1 < lines || rng() % 2)
            out += eol;
    }
    return out;
}

Expected Snapshot(inifile h) {
    Expected e;
    for (const std::string& s : Sections(h)) {
        e.sections.push_back(s);
        auto& kvs = e.keys[s];
        for (const std::string& k : Keys(h, s.c_str()))
            kvs.emplace_back(k, Get(h, s.c_str(), k.c_str()));
    }
    return e;
}

} // namespace

// Any file the store opens comes back byte for byte when saved unchanged,
// whether or not its sections were looked at.
TEST(RoundTrip, PropertyRandomFilesSaveUnchanged) {
    TempDir dir;
    std::mt19937 rng(4242);
    int opened = 0;
    for (int round = 0; round < 300; ++round) {
        std::string text = RandomFile(rng);
        std::string path = dir.file("r.ini");
        WriteFileBytes(path, text);
        Store h;
        inifile_set_case_sensitive(h, rng() % 2);
        if (OpenFile(h, path).rc != 0)
            continue;
        ++opened;
        ASSERT_EQ(text, SavedText(h, dir)) << "round " << round;
        Snapshot(h); // parses every section
        ASSERT_EQ(text, SavedText(h, dir)) << "round " << round;
    }
    EXPECT_GT(opened, 200);
}

// Edits on an opened file: after a save and a new open the store reads
// exactly what a simple model of the edits says.
TEST(RoundTrip, PropertyEditsOnOpenedFiles) {
    TempDir dir;
    std::mt19937 rng(777);
    int edited = 0;
    for (int round = 0; round < 150; ++round) {
        std::string text = RandomFile(rng);
        std::string path = dir.file("e.ini");
        WriteFileBytes(path, text);
        Store h;
        inifile_set_case_sensitive(h, 1);
        if (OpenFile(h, path).rc != 0)
            continue;
        // Touch only some sections before editing, so that edits meet
        // parsed and unparsed sections alike.
        Expected want;
        {
            Store probe;
            inifile_set_case_sensitive(probe, 1);
            ASSERT_EQ(0, OpenFile(probe, path).rc);
            want = Snapshot(probe);
        }
        for (int i = 0; i < 10; ++i) {
            int what = static_cast<int>(rng() % 4);
            std::string s = !want.sections.empty() && rng() % 3 != 0
                                ? want.sections[rng() % want.sections.size()]
                                : RandomText(rng, 6);
            auto& kvs = want.keys[s];
            std::string k =
                !kvs.empty() && rng() % 2 ? kvs[rng() % kvs.size()].first : RandomText(rng, 6);
            // (Not in "": while its keys stand before the first header it has
            // no header line, and without them it is gone from the file.)
            if (what == 0 && !kvs.empty() && !s.empty()) {
                bool had = false;
                for (size_t j = 0; j < kvs.size(); ++j)
                    if (kvs[j].first == k) {
                        kvs.erase(kvs.begin() + static_cast<long>(j));
                        had = true;
                        break;
                    }
                EXPECT_EQ(had ? 1 : 0, inifile_remove_key(h, s.c_str(), k.c_str()));
            } else {
                std::string v = RandomText(rng, 12);
                if (kvs.empty() &&
                    std::find(want.sections.begin(), want.sections.end(), s) == want.sections.end())
                    want.sections.push_back(s);
                want.write(s, k, v);
                inifile_write_string(h, s.c_str(), k.c_str(), v.c_str());
            }
            if (kvs.empty() &&
                std::find(want.sections.begin(), want.sections.end(), s) == want.sections.end())
                want.keys.erase(s);
        }
        ++edited;
        ASSERT_EQ(0, SaveFile(h, path).rc);
        Store back;
        inifile_set_case_sensitive(back, 1);
        ASSERT_EQ(0, OpenFile(back, path).rc);
        SCOPED_TRACE(::testing::Message() << "round " << round << "\nbefore:\n"
                                          << text << "\nafter:\n"
                                          << ReadFileBytes(path));
        CheckStore(back, want);
    }
    EXPECT_GT(edited, 100);
}

namespace {

// What a store holds, with the section "" left out when it has no keys (its
// keys are all that mark it in a file) and put first otherwise (its place
// is that of its first line, which edits may move).
Expected Normalized(inifile h) {
    Expected e = Snapshot(h);
    auto it = std::find(e.sections.begin(), e.sections.end(), std::string());
    if (it != e.sections.end()) {
        e.sections.erase(it);
        if (e.keys[""].empty())
            e.keys.erase("");
        else
            e.sections.insert(e.sections.begin(), "");
    }
    return e;
}

} // namespace

// Random structure operations on opened files: whatever the store holds
// before a save, it holds again after the saved file is opened.
TEST(RoundTrip, PropertyStructureOperationsSurviveASave) {
    TempDir dir;
    std::mt19937 rng(31337);
    for (int round = 0; round < 150; ++round) {
        std::string text = RandomFile(rng);
        std::string path = dir.file("s.ini");
        WriteFileBytes(path, text);
        Store h;
        int sensitive = static_cast<int>(rng() % 2);
        inifile_set_case_sensitive(h, sensitive);
        if (OpenFile(h, path).rc != 0)
            continue;
        std::vector<std::string> names = Sections(h);
        for (int i = 0; i < 3; ++i)
            names.push_back(RandomText(rng, 5));
        Store other;
        for (int i = 0; i < 12; ++i) {
            const std::string& s = names[rng() % names.size()];
            const std::string& t = names[rng() % names.size()];
            std::string k = RandomText(rng, 4);
            switch (rng() % 7) {
            case 0:
                inifile_remove_section(h, s.c_str());
                break;
            case 1:
                inifile_rename_section(h, s.c_str(), t.c_str());
                break;
            case 2:
                inifile_register_section(h, s.c_str());
                break;
            case 3:
                inifile_copy_section(h, s.c_str(), rng() % 2 ? h : other);
                break;
            case 4:
                inifile_copy_section(other, s.c_str(), h);
                break;
            case 5:
                inifile_remove_key(h, s.c_str(), k.c_str());
                break;
            default:
                inifile_write_string(h, s.c_str(), k.c_str(), RandomText(rng, 6).c_str());
            }
        }
        Expected before = Normalized(h);
        ASSERT_EQ(0, SaveFile(h, path).rc);
        Store back;
        inifile_set_case_sensitive(back, sensitive);
        ASSERT_EQ(0, OpenFile(back, path).rc);
        SCOPED_TRACE(::testing::Message() << "round " << round << "\nbefore:\n"
                                          << text << "\nafter:\n"
                                          << ReadFileBytes(path));
        Expected after = Normalized(back);
        ASSERT_EQ(before.sections, after.sections);
        ASSERT_EQ(before.keys, after.keys);
    }
}
