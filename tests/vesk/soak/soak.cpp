// Model-based soak test of the INI store: random operations through the C
// interface, each mirrored on a plain model of what the store must hold.
//
//   vesk_soak [--seed N] [--steps N] [--seconds S] [--quiet]
//
// With VESK_SOAK_TRACE set in the environment it prints each step's
// operation, to find the one that broke.
//
// Phases grow the store to thousands of sections and shrink it again, so
// that the tables grow, collect waste and are rebuilt. After each step the
// names it touched are checked, now and then the whole enumeration, and
// after each save the reopened file (and that saving it again gives the same
// bytes). A failure prints the seed and the step; the same seed and step
// count repeat the run exactly. Exit status 0 when every check held.
#include "model.h"

#include <wxsupport/config/inifile.h>

#include <chrono>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <random>
#include <sstream>
#include <string>
#include <unordered_map>
#include <vector>

namespace {

using namespace soak;
namespace fs = std::filesystem;
using Strings = std::vector<std::string>;

// ---------------------------------------------------------------------------
// The run.

struct Failure {
    std::string what;
};

[[noreturn]] void Fail(const std::string& what) {
    throw Failure{what};
}

std::string Show(const std::string& s) {
    std::string out = "\"";
    for (unsigned char c : s) {
        if (c == '\n')
            out += "\\n";
        else if (c == '\r')
            out += "\\r";
        else if (c == '\t')
            out += "\\t";
        else
            out += static_cast<char>(c);
    }
    if (out.size() > 80)
        out = out.substr(0, 77) + "...";
    return out + "\"";
}

std::string ReadBytes(const fs::path& p) {
    std::ifstream in(p, std::ios::binary);
    std::ostringstream ss;
    ss << in.rdbuf();
    return ss.str();
}

// Reads a value as the store reads a whole number: blanks around, a sign,
// digits, within the range of long.
bool ModelLong(const std::string& v, long& out) {
    size_t b = v.find_first_not_of(" \t"), e = v.find_last_not_of(" \t");
    if (b == std::string::npos)
        return false;
    std::string t = v.substr(b, e - b + 1);
    size_t i = (t[0] == '+' || t[0] == '-') ? 1 : 0;
    if (i == t.size() || t.find_first_not_of("0123456789", i) != std::string::npos)
        return false;
    errno = 0;
    long r = std::strtol(t.c_str(), nullptr, 10);
    if (errno == ERANGE)
        return false;
    out = r;
    return true;
}

class Soak {
public:
    Soak(uint64_t seed, const fs::path& dir) : m_rng(seed), m_dir(dir) {
        m_target = 2500 + rnd(1000); // the first phase grows to thousands of sections
        m_h = inifile_new();
        m_other = inifile_new();
        if (!m_h || !m_other)
            Fail("inifile_new gave NULL");
    }
    ~Soak() {
        inifile_delete(m_h);
        inifile_delete(m_other);
    }

    void step();
    void checkAll(inifile h, const Model& m, const char* which);

    uint64_t saves = 0, reopens = 0;
    size_t largestSections = 0, largestKeys = 0;

private:
    uint32_t rnd(uint32_t n) { return n ? static_cast<uint32_t>(m_rng() % n) : 0; }
    bool chance(uint32_t percent) { return rnd(100) < percent; }

    std::string randomText(size_t maxLen);
    std::string sectionName();
    std::string keyName(const ModelSection* s);
    std::string value();
    std::string existingSection();

    void checkSection(inifile h, const Model& m, const std::string& sec);
    void checkKey(inifile h, const Model& m, const std::string& sec, const std::string& key);
    void saveAndReopen();
    void choosePhase();

    std::mt19937_64 m_rng;
    fs::path m_dir;
    inifile m_h = nullptr, m_other = nullptr;
    Model m_model, m_otherModel;
    bool m_growing = true;
    size_t m_target = 0;
    uint64_t m_step = 0;
};

std::string Soak::randomText(size_t maxLen) {
    static const char* const pieces[] = {"a",  "B", "c", "D", "x",  "Y", "0",           "7",  " ",
                                         "\t", "=", "[", "]", "\"", ";", "#",           "\\", "\n",
                                         "\r", "é", "É", "ä", "Ä",  "ß", "\xE2\x82\xAC"};
    size_t n = rnd(static_cast<uint32_t>(maxLen) + 1);
    std::string out;
    for (size_t i = 0; i < n; ++i)
        out += pieces[rnd(sizeof pieces / sizeof *pieces)];
    return out;
}

std::string Soak::sectionName() {
    uint32_t r = rnd(100);
    if (r < 8)
        return randomText(6);
    if (r < 9)
        return std::string(rnd(255) + 1, "sS"[rnd(2)]);
    // Section0 .. sectionN in random case, a range that follows the phase.
    size_t range = std::max<size_t>(m_target * 2, 16);
    std::string n = "Sec" + std::to_string(rnd(static_cast<uint32_t>(range)));
    for (char& c : n)
        if (chance(10))
            c = static_cast<char>(c >= 'a' ? c - 32 : (c >= 'A' && c <= 'Z' ? c + 32 : c));
    return n;
}

std::string Soak::keyName(const ModelSection* s) {
    if (s && !s->keys.empty() && chance(50)) {
        std::string k = s->keys[rnd(static_cast<uint32_t>(s->keys.size()))].name;
        if (chance(10) && !k.empty())
            k[0] = static_cast<char>(k[0] >= 'a' && k[0] <= 'z' ? k[0] - 32 : k[0]);
        return k;
    }
    if (chance(10))
        return randomText(5);
    return "key" + std::to_string(rnd(chance(5) ? 200 : 24));
}

std::string Soak::value() {
    uint32_t r = rnd(100);
    if (r < 40)
        return std::to_string(static_cast<long>(m_rng()) >> rnd(60));
    if (r < 45)
        return "\"" + randomText(4) + "\"";
    if (r < 46)
        return std::string(rnd(3000), 'v');
    return randomText(12);
}

std::string Soak::existingSection() {
    if (m_model.sections.empty() || chance(15))
        return sectionName();
    return m_model.sections[rnd(static_cast<uint32_t>(m_model.sections.size()))].name;
}

void Soak::checkKey(inifile h, const Model& m, const std::string& sec, const std::string& key) {
    const ModelKey* k = m.key(sec, key);
    const char* got = inifile_read_string(h, sec.c_str(), key.c_str(), nullptr);
    if (!got)
        Fail("inifile_read_string gave NULL");
    std::string where = "[" + Show(sec) + "] " + Show(key);
    if (inifile_has_key(h, sec.c_str(), key.c_str()) != (k ? 1 : 0))
        Fail("inifile_has_key " + where + " should be " + (k ? "1" : "0"));
    if (k ? got != k->value : *got != '\0')
        Fail("inifile_read_string " + where + " gave " + Show(got) + ", expected " +
             Show(k ? k->value : ""));
    long expected = -7, v;
    if (k && ModelLong(k->value, v))
        expected = v;
    long r = inifile_read_long(h, sec.c_str(), key.c_str(), -7);
    if (r != expected)
        Fail("inifile_read_long " + where + " gave " + std::to_string(r) + ", expected " +
             std::to_string(expected));
}

void Soak::checkSection(inifile h, const Model& m, const std::string& sec) {
    int s = m.findSection(sec);
    if (inifile_has_section(h, sec.c_str()) != (s >= 0 ? 1 : 0)) {
        if (std::getenv("VESK_SOAK_TRACE"))
            for (const ModelSection& x : m.sections)
                if (x.folded == Fold(sec))
                    std::printf("  model has %s (%d)\n", x.name.c_str(),
                                int(&x - m.sections.data()));
        Fail("inifile_has_section " + Show(sec) + " should be " + (s >= 0 ? "1" : "0"));
    }
    int n = inifile_get_key_count(h, sec.c_str());
    size_t want = s >= 0 ? m.sections[s].keys.size() : 0;
    if (n < 0 || static_cast<size_t>(n) != want)
        Fail("inifile_get_key_count " + Show(sec) + " gave " + std::to_string(n) + ", expected " +
             std::to_string(want));
    if (s < 0) {
        if (inifile_get_key_by_index(h, sec.c_str(), 0))
            Fail("inifile_get_key_by_index on absent section " + Show(sec) + " gave a name");
        return;
    }
    const ModelSection& ms = m.sections[s];
    for (size_t i = 0; i < ms.keys.size(); ++i) {
        const char* name = inifile_get_key_by_index(h, sec.c_str(), static_cast<int>(i));
        if (!name || ms.keys[i].name != name)
            Fail("key " + std::to_string(i) + " of " + Show(sec) + " is " +
                 (name ? Show(name) : "NULL") + ", expected " + Show(ms.keys[i].name));
    }
    if (inifile_get_key_by_index(h, sec.c_str(), static_cast<int>(ms.keys.size())) ||
        inifile_get_key_by_index(h, sec.c_str(), -1))
        Fail("inifile_get_key_by_index out of range gave a name in " + Show(sec));
}

// The whole enumeration: every section by index, every key and value.
void Soak::checkAll(inifile h, const Model& m, const char* which) {
    int n = inifile_get_section_count(h);
    if (n < 0 || static_cast<size_t>(n) != m.sections.size())
        Fail(std::string(which) + ": section count " + std::to_string(n) + ", expected " +
             std::to_string(m.sections.size()));
    for (size_t i = 0; i < m.sections.size(); ++i) {
        const char* name = inifile_get_section_by_index(h, static_cast<int>(i));
        if (!name || m.sections[i].name != name)
            Fail(std::string(which) + ": section " + std::to_string(i) + " is " +
                 (name ? Show(name) : "NULL") + ", expected " + Show(m.sections[i].name));
    }
    if (inifile_get_section_by_index(h, n) || inifile_get_section_by_index(h, -1))
        Fail(std::string(which) + ": inifile_get_section_by_index out of range gave a name");
    // Each name as it is found (the first record under the rule) and each key.
    for (const ModelSection& s : m.sections) {
        if (m.findSection(s.name) != static_cast<int>(&s - m.sections.data()))
            continue; // a twin that the rule hides behind an earlier section
        checkSection(h, m, s.name);
        for (const ModelKey& k : s.keys)
            checkKey(h, m, s.name, k.name);
    }
}

void Soak::saveAndReopen() {
    fs::path file = m_dir / (chance(50) ? "store.ini" : "store two.ini");
    pdError* err = nullptr;
    if (inifile_save(m_h, file.string().c_str(), &err) != 0) {
        std::string msg = std::string(pderror_region(err)) + ": " + pderror_message(err);
        pderror_free(err);
        Fail("inifile_save failed: " + msg);
    }
    ++saves;
    std::string bytes = ReadBytes(file);
    inifile fresh = inifile_new();
    inifile_set_case_sensitive(fresh, m_model.caseSensitive ? 1 : 0);
    if (inifile_open(fresh, file.string().c_str(), &err) != 0) {
        std::string msg = std::string(pderror_region(err)) + ": " + pderror_message(err);
        pderror_free(err);
        inifile_delete(fresh);
        Fail("inifile_open of the saved file failed: " + msg);
    }
    Model expected = m_model.reopened();
    try {
        // Reading sections in an order of their own makes some of them parse
        // before others: touch a few first.
        for (int i = 0; i < 3 && !expected.sections.empty(); ++i)
            checkSection(
                fresh, expected,
                expected.sections[rnd(static_cast<uint32_t>(expected.sections.size()))].name);
        checkAll(fresh, expected, "reopened file");
        fs::path again = m_dir / "again.ini";
        if (inifile_save(fresh, again.string().c_str(), nullptr) != 0)
            Fail("saving the reopened store failed");
        if (ReadBytes(again) != bytes)
            Fail("an unchanged reopened store saved different bytes");
    } catch (...) {
        inifile_delete(fresh);
        throw;
    }
    // Go on with the reopened store, whose sections come from the file (raw,
    // parsed on demand), unless the file merged twins that the model can't
    // follow through later changes of the rule.
    if (expected.sameShape(m_model) && chance(70)) {
        inifile_delete(m_h);
        m_h = fresh;
        m_model = expected;
        ++reopens;
    } else {
        inifile_delete(fresh);
    }
}

void Soak::choosePhase() {
    size_t n = m_model.sections.size();
    if (m_growing && n >= m_target) {
        m_growing = false;
        m_target = rnd(40);
    } else if (!m_growing && n <= m_target) {
        m_growing = true;
        m_target = 50 + rnd(chance(30) ? 6000 : 800);
    }
}

void Soak::step() {
    ++m_step;
    choosePhase();
    uint32_t op = rnd(1000);
    Model& m = m_model;
    if (std::getenv("VESK_SOAK_TRACE"))
        std::printf("step %llu op %u sections %zu case %d\n",
                    static_cast<unsigned long long>(m_step), op, m.sections.size(),
                    m.caseSensitive);
    if (op < 300) { // write
        std::string sec = (m_growing && chance(60)) ? sectionName() : existingSection();
        int s = m.findSection(sec);
        std::string key = keyName(s >= 0 ? &m.sections[s] : nullptr);
        uint32_t kind = rnd(10);
        std::string v;
        int rc;
        if (kind == 0) {
            long lv = static_cast<long>(m_rng());
            rc = inifile_write_long(m_h, sec.c_str(), key.c_str(), lv);
            v = std::to_string(lv);
        } else if (kind == 1) {
            double d =
                std::ldexp(static_cast<double>(rnd(1u << 30)), static_cast<int>(rnd(80)) - 40);
            rc = inifile_write_float(m_h, sec.c_str(), key.c_str(), d);
            if (inifile_read_float(m_h, sec.c_str(), key.c_str(), -1) != d)
                Fail("inifile_read_float after inifile_write_float gave another number");
            v = inifile_read_string(m_h, sec.c_str(), key.c_str(), "");
        } else {
            v = value();
            rc = inifile_write_string(m_h, sec.c_str(), key.c_str(), v.c_str());
        }
        if (rc != 1)
            Fail("write [" + Show(sec) + "] " + Show(key) + " gave " + std::to_string(rc));
        m.write(sec, key, v);
        checkKey(m_h, m, sec, key);
        if (chance(10))
            checkSection(m_h, m, sec);
    } else if (op < 450) { // reads
        std::string sec = existingSection();
        int s = m.findSection(sec);
        checkKey(m_h, m, sec, keyName(s >= 0 ? &m.sections[s] : nullptr));
        if (chance(20))
            checkSection(m_h, m, sec);
    } else if (op < 450 + (m_growing ? 60 : 250)) { // remove a key
        std::string sec = existingSection();
        int s = m.findSection(sec);
        std::string key = keyName(s >= 0 ? &m.sections[s] : nullptr);
        int k = s >= 0 ? m.findKey(m.sections[s], key) : -1;
        int rc = inifile_remove_key(m_h, sec.c_str(), key.c_str());
        if (rc != (k >= 0 ? 1 : 0))
            Fail("inifile_remove_key [" + Show(sec) + "] " + Show(key) + " gave " +
                 std::to_string(rc));
        if (k >= 0)
            m.sections[s].keys.erase(m.sections[s].keys.begin() + k);
        checkKey(m_h, m, sec, key);
        checkSection(m_h, m, sec);
    } else if (op < 760) { // remove a section
        if (m_growing && chance(95))
            return;
        std::string sec = existingSection();
        int s = m.findSection(sec);
        int rc = inifile_remove_section(m_h, sec.c_str());
        if (rc != (s >= 0 ? 1 : 0))
            Fail("inifile_remove_section " + Show(sec) + " gave " + std::to_string(rc));
        if (s >= 0)
            m.sections.erase(m.sections.begin() + s);
        checkSection(m_h, m, sec);
    } else if (op < 820) { // rename
        std::string from = existingSection(), to = sectionName();
        if (chance(10))
            to = from; // into itself, perhaps in another case
        if (chance(10) && !to.empty())
            to[0] = static_cast<char>(to[0] >= 'a' && to[0] <= 'z' ? to[0] - 32 : to[0]);
        int s = m.findSection(from);
        bool ok = s >= 0 && m.findSection(to) < 0;
        int rc = inifile_rename_section(m_h, from.c_str(), to.c_str());
        if (rc != (ok ? 1 : 0))
            Fail("inifile_rename_section " + Show(from) + " to " + Show(to) + " gave " +
                 std::to_string(rc));
        if (ok) {
            m.sections[s].name = to;
            m.sections[s].folded = Fold(to);
        }
        checkSection(m_h, m, from);
        checkSection(m_h, m, to);
    } else if (op < 860) { // register
        std::string sec = sectionName();
        bool fresh = m.findSection(sec) < 0;
        int rc = inifile_register_section(m_h, sec.c_str());
        if (rc != (fresh ? 1 : 0))
            Fail("inifile_register_section " + Show(sec) + " gave " + std::to_string(rc));
        if (fresh)
            m.addSection(sec);
        checkSection(m_h, m, sec);
    } else if (op < 930) { // copy, into the other store or into this one
        std::string sec = existingSection();
        bool same = chance(20);
        inifile to = same ? m_h : m_other;
        int s = m.findSection(sec);
        int rc = inifile_copy_section(m_h, sec.c_str(), to);
        if (rc != (s >= 0 ? 1 : 0))
            Fail("inifile_copy_section " + Show(sec) + " gave " + std::to_string(rc));
        if (s >= 0 && !same) {
            Model& o = m_otherModel;
            ModelSection src = m.sections[s];
            if (o.findSection(src.name) < 0)
                o.addSection(src.name);
            for (const ModelKey& k : src.keys)
                o.write(src.name, k.name, k.value);
        }
        checkSection(m_h, m, sec);
        checkSection(to, same ? m : m_otherModel, sec);
        if (!same && m_otherModel.keyCount() > 3000) {
            inifile_clear(m_other);
            m_otherModel.sections.clear();
        }
    } else if (op < 935) { // the case rule, on either store
        bool other = chance(30);
        Model& mm = other ? m_otherModel : m;
        mm.caseSensitive = !mm.caseSensitive;
        inifile_set_case_sensitive(other ? m_other : m_h, mm.caseSensitive ? 1 : 0);
        checkAll(other ? m_other : m_h, mm,
                 other ? "after the case rule (other)" : "after the case rule");
    } else if (op < 937) { // clear
        if (m.sections.size() > 20 && chance(80))
            return;
        inifile_clear(m_h);
        m.sections.clear();
        checkAll(m_h, m, "after clear");
    } else if (op < 937 + (m.sections.size() > 1000 ? 1 : 4)) {
        saveAndReopen();
    } else if (op < 960) { // enumeration by index, in range and out
        int n = static_cast<int>(m.sections.size());
        int i = static_cast<int>(rnd(static_cast<uint32_t>(n) + 3)) - 1;
        const char* name = inifile_get_section_by_index(m_h, i);
        bool in = i >= 0 && i < n;
        if (in ? !name || m.sections[i].name != name : name != nullptr)
            Fail("inifile_get_section_by_index " + std::to_string(i) + " gave " +
                 (name ? Show(name) : "NULL"));
    }
    largestSections = std::max(largestSections, m.sections.size());
    if (m_step % 64 == 0) {
        size_t keys = m.keyCount();
        largestKeys = std::max(largestKeys, keys);
    }
    // The whole enumeration: often while small, now and then while large.
    size_t every = m.sections.size() < 100 ? 50 : m.sections.size() < 1000 ? 500 : 4000;
    if (m_step % every == 0) {
        checkAll(m_h, m, "enumeration");
        checkAll(m_other, m_otherModel, "enumeration of the other store");
    }
}

} // namespace

int main(int argc, char** argv) {
    uint64_t seed = 0;
    bool seeded = false, quiet = false;
    uint64_t steps = 0;
    double seconds = 0;
    for (int i = 1; i < argc; ++i) {
        std::string a = argv[i];
        if (a == "--seed" && i + 1 < argc) {
            seed = std::strtoull(argv[++i], nullptr, 10);
            seeded = true;
        } else if (a == "--steps" && i + 1 < argc) {
            steps = std::strtoull(argv[++i], nullptr, 10);
        } else if (a == "--seconds" && i + 1 < argc) {
            seconds = std::strtod(argv[++i], nullptr);
        } else if (a == "--quiet") {
            quiet = true;
        } else {
            std::fprintf(stderr, "usage: %s [--seed N] [--steps N] [--seconds S] [--quiet]\n",
                         argv[0]);
            return 2;
        }
    }
    if (!seeded)
        seed = std::random_device{}() ^
               static_cast<uint64_t>(std::chrono::steady_clock::now().time_since_epoch().count());
    if (!steps && seconds <= 0)
        steps = 100000;
    std::error_code ec;
    fs::path dir = fs::temp_directory_path(ec) / ("vesk-soak-" + std::to_string(seed) + "-" +
                                                  std::to_string(std::random_device{}()));
    fs::create_directories(dir, ec);
    if (ec) {
        std::fprintf(stderr, "cannot create %s: %s\n", dir.string().c_str(), ec.message().c_str());
        return 2;
    }
    std::printf("soak: seed %llu\n", static_cast<unsigned long long>(seed));
    std::fflush(stdout);
    auto start = std::chrono::steady_clock::now();
    uint64_t step = 0;
    int status = 0;
    {
        Soak soak(seed, dir);
        try {
            for (;;) {
                if (steps && step >= steps)
                    break;
                if (seconds > 0 && step % 256 == 0 &&
                    std::chrono::duration<double>(std::chrono::steady_clock::now() - start)
                            .count() >= seconds)
                    break;
                ++step;
                soak.step();
                if (!quiet && step % 1000000 == 0) {
                    std::printf("soak: %llu steps\n", static_cast<unsigned long long>(step));
                    std::fflush(stdout);
                }
            }
        } catch (const Failure& f) {
            std::printf("soak: FAILED at seed %llu step %llu: %s\n",
                        static_cast<unsigned long long>(seed),
                        static_cast<unsigned long long>(step), f.what.c_str());
            status = 1;
        }
        double took =
            std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
        std::printf("soak: seed %llu, %llu steps in %.1f s, %llu saves (%llu reopened), largest "
                    "store %zu sections, %zu keys\n",
                    static_cast<unsigned long long>(seed), static_cast<unsigned long long>(step),
                    took, static_cast<unsigned long long>(soak.saves),
                    static_cast<unsigned long long>(soak.reopens), soak.largestSections,
                    soak.largestKeys);
    }
    fs::remove_all(dir, ec);
    return status;
}
