// The edits of a store's shape: renaming a section, a new case rule,
// emptying.
#include "store.h"

#include "syntax.h"

#include <algorithm>

namespace vesk {

void renameSectionRecord(Store& st, int32_t s, string_view newName, uint32_t h) {
    Contents& c = *st.c;
    Section& sec = c.sections[static_cast<size_t>(s)];
    Vector<int32_t> blocks = c.blocksOf(sec);
    // Every new text first, so that a failure changes nothing.
    Vector<Text> texts;
    Text name;
    try {
        texts.reserve(blocks.size());
        name = makeOwned(newName);
        String line = headerLine(newName);
        for (size_t i = 0; i < blocks.size(); ++i)
            texts.push_back(makeOwned(line));
    } catch (...) {
        for (Text& t : texts)
            release(t);
        release(name);
        throw;
    }
    // Nothing can fail from here on: the table keeps its count.
    c.sectionSlots.erase(c.sectionTable, static_cast<uint32_t>(s), sec.hash);
    release(sec.name);
    c.anyOwned = true;
    sec.name = name;
    sec.hash = h;
    c.sectionSlots.place(c.sectionTable, static_cast<uint32_t>(s), h);
    syncSectionSlot(c, s);
    c.lastSection = kNone;
    for (size_t i = 0; i < blocks.size(); ++i) {
        c.lines.setText(blocks[i], texts[i]);
        if (!c.lines[blocks[i]].eol)
            c.lines[blocks[i]].eol = c.lines.crlf ? 2 : 1;
    }
}

// Every record goes into the new tables, also one that the new rule takes
// for an earlier one (twins): removing the earlier one must find it then.
void rehashAll(Contents& c, const NameRule& rule) {
    Vector<uint32_t> sectionHashes(c.sections.size(), 0);
    Vector<uint32_t> keyHashes(c.keys.size(), 0);
    SectionSlotArray sectionSlots(2);
    SlotArray keySlots(3);
    SlotSlice sectionTable;
    Vector<SlotSlice> keyTables(c.sections.size());
    bool twins = c.twins;
    sectionSlots.reserveFor(sectionTable, c.order.size());
    size_t slots = 0;
    for (int32_t s : c.order) {
        const Section& sec = c.sections[static_cast<size_t>(s)];
        if (needsKeyTable(c.keyCount(sec)) || sec.keyTable.capacity)
            slots += keySlots.capacityFor(static_cast<size_t>(c.keyCount(sec)));
    }
    keySlots.reserveSlots(slots);
    for (int32_t s : c.order) {
        const Section& sec = c.sections[static_cast<size_t>(s)];
        uint32_t h = rule.hash(sec.name.view());
        sectionHashes[static_cast<size_t>(s)] = h;
        twins = twins || sectionSlots.find(sectionTable, h, [&](uint32_t i) {
            return rule.same(c.sections[i].name.view(), sec.name.view());
        }) != kNone;
        sectionSlots.reserve(sectionTable);
        sectionSlots.place(sectionTable, static_cast<uint32_t>(s), h);
        SlotSlice& table = keyTables[static_cast<size_t>(s)];
        const int32_t n = c.keyCount(sec);
        const bool useTable = needsKeyTable(n) || sec.keyTable.capacity;
        if (useTable)
            keySlots.reserveFor(table, static_cast<size_t>(n));
        for (int32_t i = 0; i < n; ++i) {
            int32_t k = c.keyAt(sec, i);
            const Key& key = c.keys[static_cast<size_t>(k)];
            uint32_t kh = rule.hash(key.name.view());
            keyHashes[static_cast<size_t>(k)] = kh;
            auto same = [&](uint32_t j) {
                return rule.same(c.keys[j].name.view(), key.name.view());
            };
            if (useTable) {
                twins = twins || keySlots.find(table, kh, same) != kNone;
                keySlots.reserve(table);
                keySlots.place(table, static_cast<uint32_t>(k), kh);
                continue;
            }
            for (int32_t j = 0; j < i && !twins; ++j) {
                int32_t other = c.keyAt(sec, j);
                twins = keyHashes[static_cast<size_t>(other)] == kh &&
                        same(static_cast<uint32_t>(other));
            }
        }
    }
    // Nothing can fail from here on.
    for (int32_t s : c.order) {
        Section& sec = c.sections[static_cast<size_t>(s)];
        sec.hash = sectionHashes[static_cast<size_t>(s)];
        sec.keyTable = keyTables[static_cast<size_t>(s)];
        for (int32_t i = 0; i < c.keyCount(sec); ++i) {
            int32_t k = c.keyAt(sec, i);
            c.keys[static_cast<size_t>(k)].hash = keyHashes[static_cast<size_t>(k)];
        }
    }
    std::swap(c.sectionSlots, sectionSlots);
    c.sectionTable = sectionTable;
    std::swap(c.keySlots, keySlots);
    c.twins = twins;
    c.lastSection = kNone;
    for (int32_t s : c.order)
        syncSectionSlot(c, s);
}

void emptyContents(Contents& c) noexcept {
    if (c.anyOwned) {
        for (Key& k : c.keys) {
            release(k.name);
            release(k.value);
        }
        for (Section& s : c.sections)
            release(s.name);
    }
    c.keys.clear();
    c.sections.clear();
    c.order.clear();
    c.sectionSlots.clear();
    c.sectionTable = SlotSlice();
    c.keySlots.clear();
    c.keyLists.clear();
    c.laterBlocks.clear();
    c.repeatLines.clear();
    c.lines.reset();
    Buffer().swap(c.file);
    c.fileLen = 0;
    c.bom = false;
    c.anyOwned = false;
    c.twins = false;
    c.lastSection = kNone;
}

} // namespace vesk
