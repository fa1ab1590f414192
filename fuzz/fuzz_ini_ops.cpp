// Fuzz target: sequences of INI store operations against a model.
//
// The bytes decode into operations (write, read, remove, rename, copy,
// register, clear, save and re-open, a failed open) on two stores, with names
// from a pool of awkward ones or made of raw bytes: cut UTF-8 sequences,
// invalid UTF-8, line breaks, brackets, quotes, '=' and comment characters.
// A plain model says what each store must hold, and every operation's result
// and every reading is compared with it.
//
// Two name rules are modelled: exact comparison (inifile_set_case_sensitive
// with 1), and the default rule restricted to names that are ASCII (compared
// with ASCII case folding) or not valid UTF-8 (compared byte by byte).
#include "ini_common.h"

#include <fuzzer/FuzzedDataProvider.h>

#include <cerrno>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>

using namespace fuzzini;

namespace {

enum class Kind { Text, Long, Float };

struct Value {
    Kind kind = Kind::Text;
    std::string text;  // Text and Long
    double number = 0; // Float
};

struct ModelSection {
    std::string name;
    std::vector<std::pair<std::string, Value>> keys;
};

struct Model {
    bool caseSensitive = true;
    std::vector<ModelSection> sections;

    bool Same(const std::string& a, const std::string& b) const {
        if (caseSensitive)
            return a == b;
        if (a.size() != b.size())
            return false;
        for (size_t i = 0; i < a.size(); ++i) {
            unsigned char x = static_cast<unsigned char>(a[i]);
            unsigned char y = static_cast<unsigned char>(b[i]);
            if (x >= 'A' && x <= 'Z')
                x = static_cast<unsigned char>(x - 'A' + 'a');
            if (y >= 'A' && y <= 'Z')
                y = static_cast<unsigned char>(y - 'A' + 'a');
            if (x != y)
                return false;
        }
        return true;
    }

    ModelSection* Find(const std::string& name) {
        for (ModelSection& s : sections)
            if (Same(s.name, name))
                return &s;
        return nullptr;
    }

    Value* FindKey(const std::string& sec, const std::string& key) {
        ModelSection* s = Find(sec);
        if (!s)
            return nullptr;
        for (auto& kv : s->keys)
            if (Same(kv.first, key))
                return &kv.second;
        return nullptr;
    }

    ModelSection& Section(const std::string& name) {
        if (ModelSection* s = Find(name))
            return *s;
        sections.push_back({name, {}});
        return sections.back();
    }

    void Write(const std::string& sec, const std::string& key, const Value& v) {
        ModelSection& s = Section(sec);
        for (auto& kv : s.keys)
            if (Same(kv.first, key)) {
                kv.second = v;
                return;
            }
        s.keys.emplace_back(key, v);
    }
};

// Names. In the folding mode every byte above 0x7f becomes 0xff, so that a
// name is either ASCII or certainly not UTF-8.
const char* const kPool[] = {"",     "a",     "A",        "Section",      "SECTION",  "key",
                             "KEY",  "k=ey",  "=",        "[s]",          "a]b",      "[",
                             ";c",   "#c",    " blank ",  "\t",           "l\nb",     "cr\r",
                             "\"q",  "\"q\"", "\\",       "x\\\"y",       "\xc3\xa9", "\xc3\x89",
                             "\xc3", "\xa9",  "\xff\xfe", "\xef\xbb\xbf", "\xe2\x82", "k",
                             "K",    "[a]b]", "= v",      "DEFAULT"};

std::string MakeName(FuzzedDataProvider& in, bool folding) {
    std::string name;
    const unsigned char how = in.ConsumeIntegral<unsigned char>();
    if (how < 200) {
        name = kPool[how % (sizeof kPool / sizeof kPool[0])];
    } else if (how < 250) {
        name = in.ConsumeRandomLengthString(40);
    } else {
        // Long names up to the 255 bytes that a name may have.
        const size_t len = in.ConsumeIntegralInRange<size_t>(200, 255);
        const std::string unit = in.ConsumeRandomLengthString(4);
        while (name.size() < len)
            name += unit.empty() ? std::string("n") : unit;
        name.resize(len);
    }
    name = name.substr(0, strnlen(name.c_str(), name.size())); // no NUL inside
    if (folding)
        for (char& c : name)
            if (static_cast<unsigned char>(c) >= 0x80)
                c = static_cast<char>(0xff);
    return name;
}

std::string MakeValue(FuzzedDataProvider& in) {
    static const char* const values[] = {"",
                                         "v",
                                         " lead",
                                         "trail ",
                                         "x\n[other]\ny=1",
                                         "\"quoted\"",
                                         "a;b#c",
                                         "\\n",
                                         "\r\n",
                                         "12",
                                         " -7 ",
                                         "+5",
                                         "99999999999999999999999",
                                         "1.5",
                                         "\xc3",
                                         "\xe5l",
                                         "line1\nline2",
                                         "\"",
                                         "k=v"};
    const unsigned char how = in.ConsumeIntegral<unsigned char>();
    std::string v;
    if (how < 128)
        v = values[how % (sizeof values / sizeof values[0])];
    else
        v = in.ConsumeRandomLengthString(300);
    return v.substr(0, strnlen(v.c_str(), v.size()));
}

// What read_long must give for a text value: a whole number when the text is
// an optional sign and digits that fit; the default when the text holds
// anything but blanks, signs and digits; no claim otherwise.
enum class LongText { Number, NotNumber, Unclear };

LongText ClassifyLong(const std::string& t, long& out) {
    size_t i = 0;
    if (i < t.size() && (t[i] == '+' || t[i] == '-'))
        ++i;
    bool digits = i < t.size();
    for (size_t j = i; j < t.size(); ++j)
        digits = digits && t[j] >= '0' && t[j] <= '9';
    if (digits) {
        errno = 0;
        char* end = nullptr;
        out = strtol(t.c_str(), &end, 10);
        if (errno == 0 && *end == '\0')
            return LongText::Number;
        return LongText::NotNumber; // overflow
    }
    for (char c : t)
        if (!(c == ' ' || c == '\t' || c == '+' || c == '-' || (c >= '0' && c <= '9')))
            return LongText::NotNumber;
    return LongText::Unclear;
}

std::string LongText(long v) {
    return std::to_string(v);
}

struct Runner {
    Model model[2];
    inifile store[2] = {nullptr, nullptr};
    int caseSensitive = 1;
    bool folding = false;

    void Compare(int i, const char* after) {
        const Reading got = ReadAll(store[i]);
        const Model& m = model[i];
        bool same = got.size() == m.sections.size();
        for (size_t s = 0; same && s < got.size(); ++s) {
            const ModelSection& ms = m.sections[s];
            same = got[s].name == ms.name && got[s].keys.size() == ms.keys.size();
            for (size_t k = 0; same && k < ms.keys.size(); ++k) {
                const Value& v = ms.keys[k].second;
                same = got[s].keys[k].first == ms.keys[k].first &&
                       (v.kind == Kind::Float || got[s].keys[k].second == v.text);
            }
        }
        if (!same) {
            std::string want;
            for (const ModelSection& s : m.sections) {
                want += "[" + Show(s.name) + "]\n";
                for (const auto& kv : s.keys)
                    want += "  " + Show(kv.first) + " = " +
                            (kv.second.kind == Kind::Float ? std::string("<float>")
                                                           : Show(kv.second.text)) +
                            "\n";
            }
            Fail(std::string("store ") + std::to_string(i) + " differs from the model after " +
                 after + ":\n" + Describe(got) + "--- model ---\n" + want);
        }
    }

    void ReadKey(int i, const std::string& sec, const std::string& key) {
        const Value* v = model[i].FindKey(sec, key);
        static const char def[] = "\x02"
                                  "absent";
        const char* got = inifile_read_string(store[i], sec.c_str(), key.c_str(), def);
        const bool has = inifile_has_key(store[i], sec.c_str(), key.c_str()) != 0;
        Check(has == (v != nullptr),
              "has_key " + Show(sec) + " " + Show(key) + " gives " + std::to_string(has));
        const long longDef = 0x5eed;
        const long gotLong = inifile_read_long(store[i], sec.c_str(), key.c_str(), longDef);
        const double floatDef = -0.125;
        const double gotFloat = inifile_read_float(store[i], sec.c_str(), key.c_str(), floatDef);
        if (!v) {
            Check(got == def, "read_string of an absent key doesn't give def itself: " + Show(sec) +
                                  " " + Show(key));
            Check(gotLong == longDef, "read_long of an absent key");
            Check(gotFloat == floatDef, "read_float of an absent key");
            return;
        }
        if (v->kind == Kind::Float) {
            Check(memcmp(&gotFloat, &v->number, sizeof gotFloat) == 0,
                  "read_float doesn't give back the written double " + std::to_string(v->number));
            return;
        }
        Check(got != nullptr && v->text == got, "read_string " + Show(sec) + " " + Show(key) +
                                                    " gives " + Show(got ? got : "(null)") +
                                                    ", want " + Show(v->text));
        long want = 0;
        switch (ClassifyLong(v->text, want)) {
        case LongText::Number:
            Check(gotLong == want, "read_long of " + Show(v->text));
            break;
        case LongText::NotNumber:
            Check(gotLong == longDef, "read_long of a non-number " + Show(v->text));
            break;
        case LongText::Unclear:
            break;
        }
    }

    void SaveAndReopen(int i) {
        const std::string path = ScratchFile(i ? "ops1.ini" : "ops0.ini");
        const std::string again = ScratchFile("ops-again.ini");
        SaveOrFail(store[i], path);
        inifile reopened = OpenOrFail(path, caseSensitive);
        inifile_delete(store[i]);
        store[i] = reopened;
        // The reopened store's names must be exactly the model's, and float
        // values come back bit for bit.
        Compare(i, "save and re-open");
        for (const ModelSection& s : model[i].sections)
            for (const auto& kv : s.keys)
                ReadKey(i, s.name, kv.first);
        SaveOrFail(store[i], again);
        Check(ReadBytes(path) == ReadBytes(again), "an unchanged re-save differs");
    }

    void Step(FuzzedDataProvider& in) {
        const int op = in.ConsumeIntegralInRange<int>(0, 15);
        const int i = in.ConsumeBool() ? 1 : 0;
        inifile h = store[i];
        Model& m = model[i];
        switch (op) {
        case 0:
        case 1: { // write text
            const std::string sec = MakeName(in, folding), key = MakeName(in, folding);
            Value v;
            v.text = MakeValue(in);
            inifile_write_string(h, sec.c_str(), key.c_str(), v.text.c_str());
            m.Write(sec, key, v);
            break;
        }
        case 2: { // write long
            const std::string sec = MakeName(in, folding), key = MakeName(in, folding);
            Value v;
            v.kind = Kind::Long;
            const long n = in.ConsumeIntegral<long>();
            v.text = LongText(n);
            inifile_write_long(h, sec.c_str(), key.c_str(), n);
            m.Write(sec, key, v);
            break;
        }
        case 3: { // write float
            const std::string sec = MakeName(in, folding), key = MakeName(in, folding);
            Value v;
            v.kind = Kind::Float;
            v.number = in.ConsumeFloatingPoint<double>();
            if (!std::isfinite(v.number))
                v.number = 1e308;
            inifile_write_float(h, sec.c_str(), key.c_str(), v.number);
            m.Write(sec, key, v);
            break;
        }
        case 4:
        case 5: { // read a key, often one that exists
            std::string sec = MakeName(in, folding), key = MakeName(in, folding);
            if (!m.sections.empty() && in.ConsumeBool()) {
                const ModelSection& s =
                    m.sections[in.ConsumeIntegralInRange<size_t>(0, m.sections.size() - 1)];
                sec = s.name;
                if (!s.keys.empty())
                    key = s.keys[in.ConsumeIntegralInRange<size_t>(0, s.keys.size() - 1)].first;
            }
            Check((inifile_has_section(h, sec.c_str()) != 0) == (m.Find(sec) != nullptr),
                  "has_section " + Show(sec));
            ReadKey(i, sec, key);
            break;
        }
        case 6: { // remove key
            const std::string sec = MakeName(in, folding), key = MakeName(in, folding);
            ModelSection* s = m.Find(sec);
            bool present = false;
            if (s)
                for (size_t k = 0; k < s->keys.size(); ++k)
                    if (m.Same(s->keys[k].first, key)) {
                        s->keys.erase(s->keys.begin() + static_cast<long>(k));
                        present = true;
                        break;
                    }
            const int rc = inifile_remove_key(h, sec.c_str(), key.c_str());
            Check((rc != 0) == present,
                  "remove_key " + Show(sec) + " " + Show(key) + " gives " + std::to_string(rc));
            break;
        }
        case 7: { // remove section
            const std::string sec = MakeName(in, folding);
            for (size_t s = 0; s < m.sections.size(); ++s)
                if (m.Same(m.sections[s].name, sec)) {
                    m.sections.erase(m.sections.begin() + static_cast<long>(s));
                    break;
                }
            inifile_remove_section(h, sec.c_str());
            break;
        }
        case 8: { // rename section: nothing when the new name exists or the old doesn't
            const std::string from = MakeName(in, folding), to = MakeName(in, folding);
            ModelSection* s = m.Find(from);
            if (s && !m.Find(to))
                s->name = to;
            inifile_rename_section(h, from.c_str(), to.c_str());
            break;
        }
        case 9: { // register section
            const std::string sec = MakeName(in, folding);
            m.Section(sec);
            inifile_register_section(h, sec.c_str());
            break;
        }
        case 10: { // copy a section into the other store, or into its own
            const std::string sec = MakeName(in, folding);
            const bool self = in.ConsumeIntegralInRange<int>(0, 3) == 0;
            const int j = self ? i : 1 - i;
            if (!self)
                if (const ModelSection* s = m.Find(sec)) {
                    const ModelSection copy = *s;
                    model[j].Section(copy.name);
                    for (const auto& kv : copy.keys)
                        model[j].Write(copy.name, kv.first, kv.second);
                }
            inifile_copy_section(h, sec.c_str(), store[j]);
            Compare(j, "copy_section");
            break;
        }
        case 11:
            Compare(i, "a step");
            break;
        case 12:
            SaveAndReopen(i);
            break;
        case 13: { // a failed open leaves the store as it was
            const std::string bad = ScratchFile("bad.ini");
            const char text[] = "[good]\nk=v\n[unterminated\n";
            WriteBytes(bad, text, sizeof text - 1);
            pdError* err = nullptr;
            Check(inifile_open(h, bad.c_str(), &err) != 0, "open of a broken file succeeded");
            Check(err != nullptr, "failed open without a record");
            pderror_free(err);
            Compare(i, "a failed open");
            break;
        }
        case 14:
            if (in.ConsumeIntegralInRange<int>(0, 7) == 0) {
                inifile_clear(h);
                m.sections.clear();
            }
            break;
        case 15: { // enumeration by index on a section that may be absent
            const std::string sec = MakeName(in, folding);
            const int n = inifile_get_key_count(h, sec.c_str());
            const ModelSection* s = m.Find(sec);
            Check(n == (s ? static_cast<int>(s->keys.size()) : 0), "key count of " + Show(sec));
            Check(inifile_get_key_by_index(h, sec.c_str(), n) == nullptr, "key index past end");
            break;
        }
        }
    }
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    FuzzedDataProvider in(data, size);
    Runner r;
    r.folding = in.ConsumeBool();
    r.caseSensitive = r.folding ? 0 : 1;
    for (int i = 0; i < 2; ++i) {
        r.store[i] = inifile_new();
        inifile_set_case_sensitive(r.store[i], r.caseSensitive);
        r.model[i].caseSensitive = !r.folding;
    }
    for (int steps = 0; steps < 64 && in.remaining_bytes() > 0; ++steps)
        r.Step(in);
    r.Compare(0, "the last step");
    r.Compare(1, "the last step");
    r.SaveAndReopen(0);
    inifile_delete(r.store[0]);
    inifile_delete(r.store[1]);
    return 0;
}
