// Saving keeps the file: real-world files come back byte-identical and read
// as a reference reader reads them, edits change only their lines (golden
// files), and random names, values and edits survive a save.
#include "store_util.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <random>

namespace {

std::string Golden(const std::string& name) {
    return ReadFileBytes(std::string(VESK_GOLDEN_DIR) + "/" + name);
}

// A sample's reference reading (its JSON's "leading_keys_reading", else
// "sections") as Dump gives it; for quoted values, which it keeps quoted, ours.
std::string ReferenceDump(const std::string& js, inifile h) {
    size_t i = js.find("\"leading_keys_reading\"");
    i = js.find('[', i != std::string::npos ? i : js.find("\"sections\""));
    std::string out, sec, key;
    int depth = 0, item = 0;
    do {
        char c = js[i++];
        if (c == '[' || c == '{') {
            ++depth;
            item = 0;
        } else if (c == ']' || c == '}') {
            --depth;
        } else if (c == '"' || c == 'n') { // a string or null
            std::string t;
            for (; c == '"' && js[i] != '"'; ++i) {
                char e = js[i] == '\\' ? js[++i] : 0;
                t += e == 'n' ? '\n' : e == 't' ? '\t' : e == 'r' ? '\r' : e ? e : js[i];
            }
            i += c == '"' ? 1 : 3;
            if (js[i] == ':') // a member name
                continue;
            if (depth == 2)
                out += "[" + (sec = t) + "]";
            else if (item++ == 0)
                key = t;
            else if (t.size() >= 2 && t.front() == '"' && t.back() == '"')
                out += key + "=" + Get(h, sec.c_str(), key.c_str()) + "|";
            else
                out += key + "=" + t + "|";
        }
    } while (depth > 0);
    return out;
}

} // namespace

TEST(RoundTrip, RealWorldFiles) {
    TempDir dir;
    Strings files = DirEntries(TestDataPath("ini"));
    ASSERT_GE(files.size(), 27u);
    // Files with repeated keys (the reference keeps the last) or continuation lines.
    const Strings noReference = {"edge-visible.ini",        "fail2ban-action-iptables.conf",
                                 "goini-multiline.ini",     "mc-skin-dark.ini",
                                 "pylint-testing_pylintrc", "smb.conf.default"};
    int compared = 0;
    for (const std::string& name : files) {
        SCOPED_TRACE(name);
        std::string path = TestDataPath("ini/" + name);
        Store h;
        inifile_set_case_sensitive(h, 1); // the reference keeps case
        Result r = OpenFile(h, path);
        ASSERT_EQ(0, r.rc) << r.region << ": " << r.message;
        std::string dump = Dump(h); // every section parsed: still no change
        EXPECT_EQ(ReadFileBytes(path), SavedText(h, dir));
        std::string json = ReadFileBytes(TestDataPath("expected/ini/" + name + ".json"));
        if (json.empty() ||
            std::find(noReference.begin(), noReference.end(), name) != noReference.end())
            continue;
        EXPECT_EQ(ReferenceDump(json, h), dump);
        ++compared;
    }
    EXPECT_GE(compared, 21);
}

TEST(RoundTrip, EditedFilesMatchGolden) {
    TempDir dir;
    std::string path = dir.file("settings.ini");
    for (const char* variant : {"", "-crlf"}) {
        SCOPED_TRACE(variant);
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
    WriteFileBytes(path, Golden("nofinal-input.ini"));
    Store h;
    ASSERT_EQ(0, OpenFile(h, path).rc);
    inifile_write_long(h, "a", "x", 2);
    EXPECT_EQ("[a]\nx=2", SavedText(h, dir)); // a rewritten last line stays without one
    inifile_write_long(h, "a", "y", 3);
    inifile_write_long(h, "b", "z", 4);
    ASSERT_EQ(0, SaveFile(h, path).rc);
    EXPECT_EQ(Golden("nofinal-expected.ini"), ReadFileBytes(path));
}

TEST(RoundTrip, SectionsWithoutLinesAndNewOnes) {
    TempDir dir;
    Store h;
    ASSERT_TRUE(LoadText(h, dir, "top=1\n; about a\n[a]\r\nk=v"));
    EXPECT_EQ(1, inifile_register_section(h, "b")); // before a's keys were looked at
    EXPECT_EQ("top=1\n; about a\n[a]\r\nk=v\n[b]\n", SavedText(h, dir));
    EXPECT_EQ(1, inifile_remove_section(h, ""));
    EXPECT_EQ(1, inifile_remove_key(h, "a", "k"));
    inifile_write_string(h, "", "top", "2");
    EXPECT_EQ("[a]\r\n[b]\n[]\ntop=2\n", SavedText(h, dir));
    EXPECT_EQ(1, inifile_rename_section(h, "", "c"));
    EXPECT_EQ("[a]\r\n[b]\n[c]\ntop=2\n", SavedText(h, dir));
}

namespace {

// Random bytes without NUL, mostly the characters that matter to the format.
std::string RandomText(std::mt19937& rng, size_t maxLen) {
    static const char special[] = "[]=\"\\;# \t\r\nabcAB\x80\xC3\xA9\xE5\xFF";
    std::string s(rng() % (maxLen + 1), 'a');
    for (char& c : s)
        c = rng() % 3 ? special[rng() % (sizeof special - 1)] : static_cast<char>(1 + rng() % 255);
    return s;
}

// A random file of headers, keys, comments and blanks, LF or CRLF, perhaps
// a byte order mark and no final line end.
std::string RandomFile(std::mt19937& rng) {
    static const char* shapes[] = {"[%]", "%=%",      "% = %",   "%",       "; %",    "# %",
                                   "",    "  [%]  x", "\"%\"=%", "[\"%\"]", "%=\"%\""};
    std::string eol = rng() % 4 == 0 ? "\r\n" : "\n", out = rng() % 8 ? "" : "\xEF\xBB\xBF";
    for (int i = 0, lines = static_cast<int>(rng() % 30); i < lines; ++i) {
        for (const char* c = shapes[rng() % 11]; *c; ++c) {
            std::string t = *c == '%' ? RandomText(rng, 8) : std::string(1, *c);
            if (*c == '%')
                std::replace_if(
                    t.begin(), t.end(), [](char ch) { return std::strchr("\r\n[]", ch); }, 'x');
            out += t;
        }
        if (i + 1 < lines || rng() % 2)
            out += eol;
    }
    return out;
}

// What a store should read, kept by the test: sections and keys in order.
using Pairs = std::vector<std::pair<std::string, std::string>>;
using Model = std::vector<std::pair<std::string, Pairs>>;

template <class V>
auto Find(V& v, const std::string& name) {
    return std::find_if(v.begin(), v.end(), [&](const auto& e) { return e.first == name; });
}

void Write(Model& m, const std::string& s, const std::string& k, const std::string& v) {
    auto sec = Find(m, s);
    if (sec == m.end())
        sec = m.insert(m.end(), {s, {}});
    auto kv = Find(sec->second, k);
    if (kv == sec->second.end())
        sec->second.emplace_back(k, v);
    else
        kv->second = v;
}

std::string Dump(const Model& m) {
    std::string out;
    for (const auto& sec : m) {
        out += "[" + sec.first + "]";
        for (const auto& kv : sec.second)
            out += kv.first + "=" + kv.second + "|";
    }
    return out;
}

} // namespace

// Random files and empty stores save unchanged byte for byte, and after any
// writes and removals, a save and a new open read as a model of the edits.
TEST(RoundTrip, PropertyEditsSurviveASave) {
    TempDir dir;
    std::mt19937 rng(777);
    for (int round = 0; round < 200; ++round) {
        std::string text = round % 2 ? RandomFile(rng) : "";
        Store h, back;
        inifile_set_case_sensitive(h, 1);
        inifile_set_case_sensitive(back, 1);
        if (!LoadText(h, dir, text) || !LoadText(back, dir, text)) // back: h stays unparsed
            continue;
        ASSERT_EQ(text, SavedText(h, dir)) << "round " << round;
        Model want;
        for (const std::string& s : Sections(back)) {
            want.push_back({s, {}});
            for (const std::string& k : Keys(back, s.c_str()))
                want.back().second.emplace_back(k, Get(back, s.c_str(), k.c_str()));
        }
        for (int i = 0; i < 20; ++i) {
            auto sec = want.begin() + static_cast<long>(rng() % (want.size() + 1));
            std::string s = sec != want.end() ? sec->first : RandomText(rng, 12);
            Pairs* kvs = sec != want.end() ? &sec->second : nullptr;
            std::string k = kvs && !kvs->empty() && rng() % 2 ? (*kvs)[rng() % kvs->size()].first
                                                              : RandomText(rng, 12);
            int what = static_cast<int>(rng() % 6);
            if (what == 0 && kvs && !s.empty()) { // "" is marked by its keys alone
                auto kv = Find(*kvs, k);
                EXPECT_EQ(kv != kvs->end(), inifile_remove_key(h, s.c_str(), k.c_str()));
                if (kv != kvs->end())
                    kvs->erase(kv);
            } else if (what == 1 && kvs) {
                EXPECT_EQ(1, inifile_remove_section(h, s.c_str()));
                want.erase(sec);
            } else {
                std::string v = what == 2 ? "x\n[other]" : RandomText(rng, 40);
                Write(want, s, k, v);
                inifile_write_string(h, s.c_str(), k.c_str(), v.c_str());
            }
        }
        std::string saved = SavedText(h, dir);
        ASSERT_TRUE(LoadText(back, dir, saved));
        ASSERT_EQ(Dump(want), Dump(back)) << "round " << round << "\nbefore:\n"
                                          << text << "\nafter:\n"
                                          << saved;
        EXPECT_EQ(saved, SavedText(back, dir));
    }
}
