// Records, lookups and the edits of single keys and sections.
#include "store.h"

#include "parser.h"
#include "syntax.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>

namespace vesk {

Contents::~Contents() {
    if (!anyOwned)
        return;
    for (Key& k : keys) {
        release(k.name);
        release(k.value);
    }
    for (Section& s : sections)
        release(s.name);
}

Vector<int32_t> Contents::blocksOf(const Section& sec) const {
    Vector<int32_t> b(1, sec.header);
    if (sec.laterBlocks != kNone) {
        const Vector<int32_t>& later = laterBlocks[static_cast<size_t>(sec.laterBlocks)];
        b.insert(b.end(), later.begin(), later.end());
    }
    return b;
}

namespace {

// Room for n more elements, growing geometrically (a plain reserve of
// size + n would copy the whole vector on every call).
template <class V>
void reserveMore(V& v, size_t n) {
    if (v.size() + n > v.capacity())
        v.reserve(std::max(v.capacity() * 2, v.size() + n));
}

// Whether key k can extend the section's range of consecutive keys.
bool extendsRange(const Section& sec, int32_t k) {
    return sec.keyList == kNone && (sec.rangeCount == 0 || sec.firstKey + sec.rangeCount == k);
}

// Room for n more keys in the section's order: a list when the next key
// records won't continue its range.
// Gives the section a key list with room for n more keys.
void makeKeyList(Contents& c, Section& sec, size_t n) {
    if (sec.keyList != kNone) {
        reserveMore(c.keyLists[static_cast<size_t>(sec.keyList)], n);
        return;
    }
    Vector<int32_t> list;
    list.reserve(static_cast<size_t>(sec.rangeCount) + n);
    for (int32_t i = 0; i < sec.rangeCount; ++i)
        list.push_back(sec.firstKey + i);
    reserveMore(c.keyLists, 1);
    c.keyLists.push_back(std::move(list));
    sec.keyList = static_cast<int32_t>(c.keyLists.size() - 1);
}

void reserveKeyOrder(Contents& c, Section& sec, size_t n) {
    if (n > 0 && !extendsRange(sec, static_cast<int32_t>(c.keys.size())))
        makeKeyList(c, sec, n);
}

void appendKeyToOrder(Contents& c, Section& sec, int32_t k) noexcept {
    if (sec.keyList != kNone) {
        c.keyLists[static_cast<size_t>(sec.keyList)].push_back(k); // room reserved
        return;
    }
    if (sec.rangeCount++ == 0)
        sec.firstKey = k;
}

// Whether removing k from the order needs a list (k is inside the range).
bool removalNeedsList(const Section& sec, int32_t k) {
    return sec.keyList == kNone && k != sec.firstKey && k != sec.firstKey + sec.rangeCount - 1;
}

void removeKeyFromOrder(Contents& c, Section& sec, int32_t k) noexcept {
    if (sec.keyList == kNone) {
        if (k == sec.firstKey)
            ++sec.firstKey;
        --sec.rangeCount;
        return;
    }
    Vector<int32_t>& list = c.keyLists[static_cast<size_t>(sec.keyList)];
    auto it = std::find(list.begin(), list.end(), k);
    if (it != list.end())
        list.erase(it);
}

// Gives back the room that moved key tables left behind, when it is worth it.
void compactKeyTables(Contents& c) noexcept {
    if (!c.keySlots.wasteful())
        return;
    try {
        c.keySlots.compact([&c](auto each) {
            for (int32_t s : c.order)
                each(c.sections[static_cast<size_t>(s)].keyTable);
        });
    } catch (...) {
        // Still correct as it is, only larger.
    }
}

// One key edit of writeKeys, prepared.
struct Planned {
    std::string_view name;
    uint32_t hash;
    int32_t key; // an existing key, or kNone for a new one
    Text nameText, valueText, lineText;
};

void releasePlan(Planned* plan, size_t n) noexcept {
    for (size_t i = 0; i < n; ++i) {
        release(plan[i].nameText);
        release(plan[i].valueText);
        release(plan[i].lineText);
    }
}

} // namespace

void syncSectionSlot(Contents& c, int32_t s) noexcept {
    const Section& sec = c.sections[static_cast<size_t>(s)];
    SectionSlot* slot = c.sectionSlots.slotOf(c.sectionTable, static_cast<uint32_t>(s), sec.hash);
    if (!slot)
        return;
    const bool scan = sec.keysKnown && sec.keyList == kNone && !sec.keyTable.capacity;
    slot->firstKey = scan ? sec.firstKey : 0;
    slot->keyCount = scan ? sec.rangeCount : kNone;
}

void ensureKeyTable(Contents& c, Section& sec, size_t room) {
    if (sec.keyTable.capacity) {
        c.keySlots.reserveFor(sec.keyTable, room);
        return;
    }
    if (!needsKeyTable(static_cast<int32_t>(std::min<size_t>(room, INT32_MAX))))
        return;
    SlotSlice table;
    c.keySlots.reserveFor(table, room);
    // Nothing can fail from here on.
    for (int32_t i = 0; i < c.keyCount(sec); ++i) {
        const int32_t k = c.keyAt(sec, i);
        c.keySlots.place(table, static_cast<uint32_t>(k), c.keys[static_cast<size_t>(k)].hash);
    }
    sec.keyTable = table;
}

void reserveSection(Contents& c) {
    reserveMore(c.sections, 1);
    reserveMore(c.order, 1);
    c.sectionSlots.reserve(c.sectionTable);
}

int32_t addSectionRecord(Contents& c, Text name, uint32_t h, int32_t header,
                         bool keysKnown) noexcept {
    Section sec{};
    sec.name = name;
    sec.hash = h;
    sec.keyList = kNone;
    sec.laterBlocks = kNone;
    sec.header = header;
    sec.tail = header;
    sec.keysKnown = keysKnown;
    sec.hasLineRecords = keysKnown;
    c.sections.push_back(sec);
    int32_t idx = static_cast<int32_t>(c.sections.size() - 1);
    c.order.push_back(idx);
    c.sectionSlots.place(c.sectionTable, static_cast<uint32_t>(idx), h);
    syncSectionSlot(c, idx);
    return idx;
}

int32_t writeKeys(Store& st, string_view secName, const string_view* names,
                  const string_view* values, size_t n) {
    Contents& c = *st.c;
    if (secName.size() > kMaxText / 2)
        throw std::bad_alloc(); // lengths are kept in 32 bits
    for (size_t i = 0; i < n; ++i)
        if (names[i].size() > kMaxText / 2 || values[i].size() > kMaxText / 2)
            throw std::bad_alloc();
    uint32_t sh = st.rule.hash(secName);
    int32_t s = findSection(c, st.rule, secName, sh);
    if (s != kNone)
        expandLines(st, s);
    Planned small[2];
    Vector<Planned> large;
    Planned* plan = small;
    if (n > 2) {
        large.resize(n);
        plan = large.data();
    }
    size_t planned = 0, newKeys = 0;
    Text headerText, nameText;
    SlotSlice newTable;
    try {
        for (size_t i = 0; i < n; ++i) {
            uint32_t h = st.rule.hash(names[i]);
            int32_t k = s != kNone
                            ? findKey(c, st.rule, c.sections[static_cast<size_t>(s)], names[i], h)
                            : kNone;
            Planned* p = nullptr;
            for (size_t j = 0; j < planned && !p; ++j)
                if (plan[j].hash == h &&
                    (k != kNone ? plan[j].key == k
                                : plan[j].key == kNone && st.rule.same(plan[j].name, names[i])))
                    p = &plan[j];
            if (!p) {
                p = &plan[planned++];
                *p = Planned{names[i], h, k, Text(), Text(), Text()};
                if (k == kNone) {
                    p->nameText = makeOwned(names[i]);
                    ++newKeys;
                }
            }
            release(p->valueText);
            release(p->lineText);
            p->valueText = makeOwned(values[i]);
            if (k != kNone) {
                const Key& key = c.keys[static_cast<size_t>(k)];
                const Line& l = c.lines[key.line];
                p->lineText =
                    makeOwned(rewriteKeyLine(string_view(l.p, l.len), key.name.view(), values[i]));
            } else {
                p->lineText = makeOwned(keyLine(p->name, values[i]));
            }
        }
        c.lines.reserveMore(newKeys + 1);
        reserveMore(c.keys, newKeys);
        if (s == kNone) {
            headerText = makeOwned(headerLine(secName));
            nameText = makeOwned(secName);
            reserveSection(c);
            if (needsKeyTable(static_cast<int32_t>(newKeys)))
                c.keySlots.reserveFor(newTable, newKeys);
        } else {
            Section& sec = c.sections[static_cast<size_t>(s)];
            ensureKeyTable(c, sec, static_cast<size_t>(c.keyCount(sec)) + newKeys);
            reserveKeyOrder(c, sec, newKeys);
        }
    } catch (...) {
        releasePlan(plan, planned);
        release(headerText);
        release(nameText);
        c.keySlots.drop(newTable);
        throw;
    }
    // Nothing can fail from here on.
    c.anyOwned = true;
    if (s == kNone) {
        int32_t li = c.lines.addOwned(headerText, kHeader);
        c.lines.linkAfter(c.lines.last(), li);
        s = addSectionRecord(c, nameText, sh, li, true);
        c.sections[static_cast<size_t>(s)].keyTable = newTable;
    }
    Section& sec = c.sections[static_cast<size_t>(s)];
    for (size_t i = 0; i < planned; ++i) {
        Planned& p = plan[i];
        if (p.key != kNone) {
            Key& key = c.keys[static_cast<size_t>(p.key)];
            c.lines.setText(key.line, p.lineText);
            release(key.value);
            key.value = p.valueText;
            continue;
        }
        int32_t li = c.lines.addOwned(p.lineText, kKeyLine);
        c.lines.linkAfter(sec.tail, li);
        sec.tail = li;
        int32_t k = static_cast<int32_t>(c.keys.size());
        c.keys.push_back(Key{p.nameText, p.valueText, p.hash, s, li, false, false});
        appendKeyToOrder(c, sec, k);
        if (sec.keyTable.capacity)
            c.keySlots.place(sec.keyTable, static_cast<uint32_t>(k), p.hash);
    }
    syncSectionSlot(c, s);
    compactKeyTables(c);
    return s;
}

void removeKeyRecord(Store& st, int32_t k) {
    Contents& c = *st.c;
    int32_t s = c.keys[static_cast<size_t>(k)].section;
    expandLines(st, s);
    Section& sec = c.sections[static_cast<size_t>(s)];
    if (removalNeedsList(sec, k))
        makeKeyList(c, sec, 0);
    // Nothing can fail from here on.
    Key& key = c.keys[static_cast<size_t>(k)];
    auto dropLine = [&](int32_t li) {
        if (sec.tail == li)
            sec.tail = c.lines[li].prev;
        c.lines.unlink(li);
    };
    if (key.repeated) {
        for (auto& r : c.repeatLines) {
            if (r.first == k) {
                dropLine(r.second);
                r.first = kNone;
            }
        }
    }
    dropLine(key.line);
    c.keySlots.erase(sec.keyTable, static_cast<uint32_t>(k), key.hash);
    removeKeyFromOrder(c, sec, k);
    release(key.name);
    release(key.value);
    key.dead = true;
    syncSectionSlot(c, s);
}

void removeSectionRecord(Contents& c, int32_t s) {
    Section& sec = c.sections[static_cast<size_t>(s)];
    Vector<int32_t> blocks = c.blocksOf(sec);
    // Nothing can fail from here on.
    for (int32_t b : blocks) {
        // The lines of the block after its header, up to the next header.
        int32_t li = c.lines[b].next;
        while (li != kNone && c.lines[li].kind != kHeader) {
            int32_t next = c.lines[li].next;
            c.lines.unlink(li);
            li = next;
        }
        if (b == 0)
            c.lines.clearHead(); // the head of the list stays, empty
        else
            c.lines.unlink(b);
    }
    for (int32_t i = 0; i < c.keyCount(sec); ++i) {
        Key& key = c.keys[static_cast<size_t>(c.keyAt(sec, i))];
        release(key.name);
        release(key.value);
        key.dead = true;
    }
    c.sectionSlots.erase(c.sectionTable, static_cast<uint32_t>(s), sec.hash);
    c.keySlots.drop(sec.keyTable);
    if (sec.keyList != kNone) {
        Vector<int32_t>().swap(c.keyLists[static_cast<size_t>(sec.keyList)]);
        sec.keyList = kNone;
    }
    sec.rangeCount = 0;
    sec.dead = true;
    release(sec.name);
    c.order.erase(std::find(c.order.begin(), c.order.end(), s));
    c.lastSection = kNone;
}

} // namespace vesk
