// Names of sections and keys: hashing and comparison with or without regard
// to case. Without, names compare by Unicode simple case folding when they
// are valid UTF-8, byte by byte otherwise. Hashes are computed over the
// folded form, so a lookup folds the query once and compares stored names
// only on a full hash match.
#pragma once

#include "memory.h"

#include <cstdint>
#include <string_view>

namespace vesk {

class NameRule {
public:
    bool caseSensitive() const { return m_caseSensitive; }
    void setCaseSensitive(bool on) { m_caseSensitive = on; }

    // The hash of the name's folded form (of the name itself when case counts).
    uint32_t hash(std::string_view name) const;
    // Whether the two names are one under the rule.
    bool same(std::string_view a, std::string_view b) const;
    // The folded form: the name itself when case counts or when it isn't
    // valid UTF-8, otherwise its simple case folding.
    void fold(std::string_view name, String& out) const;

private:
    bool m_caseSensitive = false;
    mutable String m_scratch; // the folded form of a name being hashed
};

} // namespace vesk
