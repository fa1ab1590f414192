// The INI store: sections and keys as records over the line list of the
// file they came from, and every operation of the C interface on them.
//
// Opening only finds the section headers: the body of each block (the lines
// between two headers) stays one kBody line record. When a section's keys
// are first needed, its bodies are parsed into key records (loadKeys); line
// records replace the bodies only before the section's lines first change
// (expandLines), so a section that is only read costs no line records.
//
// Every write prepares what can fail first (memory for records, tables and
// texts) and then changes the store with steps that cannot fail, so that a
// write that fails leaves the store as it was.
#pragma once

#include "lines.h"
#include "names.h"
#include "table.h"
#include "text.h"

#include <cstdint>
#include <memory>
#include <string>
#include <utility>

namespace vesk {

struct Key {
    Text name, value;
    uint32_t hash;
    int32_t section;
    int32_t line;  // its first line; kNone while the section's lines are a body
    bool repeated; // more lines with this name stand in its section
    bool dead;
};

// A plain record, so that a hundred thousand of them cost no allocations:
// the rare parts live in side tables of the store.
struct Section {
    Text name;
    uint32_t hash;
    // Keys in order: the range [firstKey, firstKey + rangeCount) of the key
    // records while the section's keys are consecutive there (the usual
    // case after parsing), otherwise the list keyLists[keyList].
    int32_t firstKey;
    int32_t rangeCount;
    int32_t keyList;     // index into keyLists, or kNone
    int32_t laterBlocks; // index into laterBlocks (header lines of later blocks), or kNone
    int32_t header;      // header line of the first block
    int32_t tail;        // line after which a new key goes
    SlotSlice keyTable;  // none (capacity 0) until it has more than kScanMax keys
    bool dead;
    bool keysKnown;      // its keys are records (parsed from the bodies, or new)
    bool hasLineRecords; // its lines are records (the bodies are gone)
};

// Everything a store holds but its case rule; opening a file builds a new one.
struct Contents {
    Contents() = default;
    ~Contents();
    Contents(const Contents&) = delete;
    Contents& operator=(const Contents&) = delete;

    Buffer file;
    size_t fileLen = 0;
    bool bom = false;
    Arena arena;
    LineList lines;
    Vector<Key> keys;
    Vector<Section> sections;
    Vector<int32_t> order; // live sections in file order
    SectionSlotArray sectionSlots{2};
    SlotSlice sectionTable;
    SlotArray keySlots{3};
    Vector<Vector<int32_t>> keyLists;
    Vector<Vector<int32_t>> laterBlocks;
    Vector<std::pair<int32_t, int32_t>> repeatLines; // (key, line) of repeated keys
    bool anyOwned = false;                           // whether records hold malloc'd texts
    // Whether two live records may have names that the rule takes for one
    // (after a change of the rule): lookups then find the first in order.
    bool twins = false;
    // The section that the last lookup by name found (kNone: none). Kept
    // only while there are no twins; every change that can make it wrong
    // (a section removed or renamed, a new rule, new contents) resets it.
    mutable int32_t lastSection = kNone;

    int32_t keyCount(const Section& sec) const {
        return sec.keyList == kNone ? sec.rangeCount
                                    : static_cast<int32_t>(keyLists[sec.keyList].size());
    }
    int32_t keyAt(const Section& sec, int32_t i) const {
        return sec.keyList == kNone ? sec.firstKey + i
                                    : keyLists[sec.keyList][static_cast<size_t>(i)];
    }
    // Header lines of every block of the section.
    Vector<int32_t> blocksOf(const Section& sec) const;
    // Calls fn(header line) for every block of the section, in order.
    template <class Fn>
    void forEachBlock(const Section& sec, Fn fn) const {
        fn(sec.header);
        if (sec.laterBlocks != kNone)
            for (int32_t b : laterBlocks[static_cast<size_t>(sec.laterBlocks)])
                fn(b);
    }
    // A terminated form of a text (a view is copied into the arena).
    const char* terminated(Text& t) {
        if (t.kind == kView)
            t = arena.copy(t.view());
        return t.p;
    }
};

} // namespace vesk

// One store handle of the C interface. Each operation checks nothing (the C
// functions do) and catches every failure: reads give their fallback, writes
// give 0 and leave the store as it was.
struct inifile_store {
    struct Error {
        std::string region, message;
    };

    bool open(const char* path, Error& error) noexcept;
    bool save(const char* path, Error& error) noexcept;
    void clear() noexcept;
    void setCaseSensitive(bool on) noexcept;

    bool hasSection(const char* sec) noexcept;
    bool hasKey(const char* sec, const char* key) noexcept;
    // The value, or null when the key is absent.
    const char* readValue(const char* sec, const char* key) noexcept;
    long readLong(const char* sec, const char* key, long def) noexcept;
    double readFloat(const char* sec, const char* key, double def) noexcept;
    int write(const char* sec, const char* key, std::string_view value) noexcept;
    int removeKey(const char* sec, const char* key) noexcept;

    int sectionCount() const noexcept;
    int keyCount(const char* sec) noexcept;
    const char* sectionAt(int index) noexcept;
    const char* keyAt(const char* sec, int index) noexcept;
    int removeSection(const char* sec) noexcept;
    int renameSection(const char* oldName, const char* newName) noexcept;
    int registerSection(const char* sec) noexcept;
    int copySection(const char* sec, inifile_store& other) noexcept;

    // Internals, shared by the store's units.
    vesk::NameRule rule;
    std::unique_ptr<vesk::Contents> c{new vesk::Contents};

    int32_t lookupSection(std::string_view name) const;
    // The key, its section's keys loaded; kNone when absent.
    int32_t lookupKey(const char* sec, const char* key);
};

namespace vesk {
using Store = inifile_store;

// The record in the slice with a hash h that same(index) accepts; kNone when
// absent. With twins, the first in order (the lowest index).
template <class Slots, class Same>
int32_t findRecord(const Contents& c, const Slots& slots, const SlotSlice& t, uint32_t h,
                   Same same) {
    if (!c.twins)
        return slots.find(t, h, same);
    int32_t first = kNone;
    slots.find(t, h, [&](uint32_t i) {
        if (same(i) && (first == kNone || static_cast<int32_t>(i) < first))
            first = static_cast<int32_t>(i);
        return false;
    });
    return first;
}

inline int32_t findSection(const Contents& c, const NameRule& rule, string_view name, uint32_t h) {
    return findRecord(c, c.sectionSlots, c.sectionTable, h,
                      [&](uint32_t i) { return rule.same(c.sections[i].name.view(), name); });
}

// Sections with at most this many keys have no key table: a lookup scans
// their keys, which sit together in the key records after parsing.
constexpr int32_t kScanMax = 16;

// Whether the section's keys need a table (more than a scan should look at).
inline bool needsKeyTable(int32_t keyCount) {
    return keyCount > kScanMax;
}

inline int32_t findKey(const Contents& c, const NameRule& rule, const Section& sec,
                       string_view name, uint32_t h) {
    if (sec.keyTable.capacity)
        return findRecord(c, c.keySlots, sec.keyTable, h,
                          [&](uint32_t i) { return rule.same(c.keys[i].name.view(), name); });
    int32_t found = kNone;
    const int32_t n = c.keyCount(sec);
    for (int32_t i = 0; i < n; ++i) {
        const int32_t k = c.keyAt(sec, i);
        const Key& key = c.keys[static_cast<size_t>(k)];
        if (key.hash != h || !rule.same(key.name.view(), name))
            continue;
        if (!c.twins)
            return k;
        if (found == kNone || k < found) // twins: the first in order
            found = k;
    }
    return found;
}

// The key of the given name among the records [first, first + count), all
// of one section, when there are no twins.
inline int32_t scanKeys(const Contents& c, const NameRule& rule, int32_t first, int32_t count,
                        string_view name, uint32_t h) {
    for (int32_t k = first, end = first + count; k < end; ++k) {
        const Key& key = c.keys[static_cast<size_t>(k)];
        if (key.hash == h && rule.same(key.name.view(), name))
            return k;
    }
    return kNone;
}

// Brings the section's slot up to date with where its keys are: after its
// keys were parsed, added or removed, its table made or its slot placed.
void syncSectionSlot(Contents& c, int32_t s) noexcept;

// Gives the section a key table with room for `room` keys and places its
// keys there, if it needs one for that many and has none. Throws and then
// changes nothing.
void ensureKeyTable(Contents& c, Section& sec, size_t room);

// Room for one more section record (records, order, table).
void reserveSection(Contents& c);
// Adds a section record after reserveSection; its header line is given.
int32_t addSectionRecord(Contents& c, Text name, uint32_t h, int32_t header,
                         bool keysKnown) noexcept;

// Sets the values of the named keys in the section (the section and the
// keys are made where absent), all or nothing: throws std::bad_alloc and
// then changes nothing. Of two names that the rule takes for one, the later
// value stays. Gives the section.
int32_t writeKeys(Store& st, string_view secName, const string_view* names,
                  const string_view* values, size_t n);
// Removes the key with all its lines; throws and then changes nothing.
void removeKeyRecord(Store& st, int32_t k);
// Removes the section with all its lines; throws and then changes nothing.
void removeSectionRecord(Contents& c, int32_t s);
// Gives the section a new name (which no other section has); throws and
// then changes nothing.
void renameSectionRecord(Store& st, int32_t s, string_view newName, uint32_t h);
// Hashes and tables after a change of the case rule; throws and then
// changes nothing.
void rehashAll(Contents& c, const NameRule& rule);
// Empties the contents in place, without allocating.
void emptyContents(Contents& c) noexcept;

// Parses the section's bodies into key records (its keys aren't known yet).
void parseKeys(Store& st, int32_t s);
// The section's keys as records, parsed if not done yet.
inline void loadKeys(Store& st, int32_t s) {
    if (!st.c->sections[static_cast<size_t>(s)].keysKnown)
        parseKeys(st, s);
}
// Replaces the section's bodies by line records, if not done yet.
void expandLines(Store& st, int32_t s);
} // namespace vesk
