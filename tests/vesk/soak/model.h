// The soak test's model of a store: sections and keys in enumeration order,
// looked up as the store looks them up, and what a saved file reads as.
#pragma once

#include <string>
#include <vector>

namespace soak {

// The case folding the store applies, for the characters the names use.
inline std::string Fold(const std::string& s) {
    std::string out;
    for (size_t i = 0; i < s.size(); ++i) {
        unsigned char c = static_cast<unsigned char>(s[i]);
        if (c >= 'A' && c <= 'Z') {
            out += static_cast<char>(c + 32);
        } else if (c == 0xC3 && i + 1 < s.size() &&
                   (static_cast<unsigned char>(s[i + 1]) == 0x89 ||
                    static_cast<unsigned char>(s[i + 1]) == 0x84)) {
            out += static_cast<char>(c); // É, Ä -> é, ä
            out += static_cast<char>(static_cast<unsigned char>(s[i + 1]) + 0x20);
            ++i;
        } else {
            out += static_cast<char>(c);
        }
    }
    return out;
}

struct ModelKey {
    std::string name, folded, value;
};

struct ModelSection {
    std::string name, folded;
    std::vector<ModelKey> keys;
};

// What a store must hold: sections and keys in enumeration order. Lookups
// take the first record that matches under the current rule, as the store
// does after a change of the rule has left two records that it takes for one.
struct Model {
    bool caseSensitive = false;
    std::vector<ModelSection> sections;

    bool same(const std::string& name, const std::string& folded, const std::string& n,
              const std::string& f) const {
        return caseSensitive ? name == n : folded == f;
    }
    int findSection(const std::string& name) const {
        std::string f = Fold(name);
        for (size_t i = 0; i < sections.size(); ++i)
            if (same(sections[i].name, sections[i].folded, name, f))
                return static_cast<int>(i);
        return -1;
    }
    int findKey(const ModelSection& s, const std::string& key) const {
        std::string f = Fold(key);
        for (size_t i = 0; i < s.keys.size(); ++i)
            if (same(s.keys[i].name, s.keys[i].folded, key, f))
                return static_cast<int>(i);
        return -1;
    }
    const ModelKey* key(const std::string& sec, const std::string& key) const {
        int s = findSection(sec);
        if (s < 0)
            return nullptr;
        int k = findKey(sections[s], key);
        return k < 0 ? nullptr : &sections[s].keys[k];
    }
    ModelSection& addSection(const std::string& name) {
        sections.push_back(ModelSection{name, Fold(name), {}});
        return sections.back();
    }
    void write(const std::string& sec, const std::string& key, const std::string& value) {
        int s = findSection(sec);
        ModelSection& ms = s < 0 ? addSection(sec) : sections[s];
        int k = findKey(ms, key);
        if (k < 0)
            ms.keys.push_back(ModelKey{key, Fold(key), value});
        else
            ms.keys[k].value = value;
    }
    size_t keyCount() const {
        size_t n = 0;
        for (const ModelSection& s : sections)
            n += s.keys.size();
        return n;
    }
    // What a file saved from this model reads as under the current rule:
    // sections that the rule takes for one form one, the first key line wins.
    Model reopened() const {
        Model m;
        m.caseSensitive = caseSensitive;
        for (const ModelSection& s : sections) {
            int t = m.findSection(s.name);
            ModelSection& ms = t < 0 ? m.addSection(s.name) : m.sections[t];
            for (const ModelKey& k : s.keys)
                if (m.findKey(ms, k.name) < 0)
                    ms.keys.push_back(k);
        }
        return m;
    }
    bool sameShape(const Model& o) const {
        if (sections.size() != o.sections.size())
            return false;
        for (size_t i = 0; i < sections.size(); ++i)
            if (sections[i].name != o.sections[i].name ||
                sections[i].keys.size() != o.sections[i].keys.size())
                return false;
        return true;
    }
};

} // namespace soak
