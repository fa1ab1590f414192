// The store's hash tables: open addressing with linear probing over slices
// of one slot array. The sections' table is one slice of an array of its
// own; each section's keys have a slice of a shared array, so that a
// section's keys sit together in memory while a file is parsed and looked
// up. A slot holds a record's index and the hash of its name; removal shifts
// the following slots back, so probes need no tombstones.
//
// Growing a slice never places anything: reserve() makes room for one more
// record (it may move the slice to the end of the array, which may throw
// and then changes nothing), place() then cannot fail. The room a moved
// slice leaves behind is waste, which compact() gives back.
#pragma once

#include "memory.h"

#include <cstdint>

namespace vesk {

struct Slot {
    uint32_t index1 = 0; // record index + 1; 0 is an empty slot
    uint32_t hash = 0;
};

// A slot of the sections' table. It also tells where the section's keys
// are while a scan of a range of key records finds them (keyCount >= 0;
// -1: ask the section record), so that a lookup goes from the slot straight
// to the keys. The section's record keeps it up to date (syncSectionSlot).
struct SectionSlot {
    uint32_t index1 = 0;
    uint32_t hash = 0;
    int32_t firstKey = 0;
    int32_t keyCount = -1;
};

// One table: a slice [base, base + capacity) of a SlotArray.
struct SlotSlice {
    uint32_t base = 0, capacity = 0, used = 0;
};

template <class S>
class SlotArrayOf {
public:
    // maxLoadQuarters: how full a slice may get, in quarters (2: half full).
    explicit SlotArrayOf(uint32_t maxLoadQuarters) : m_maxLoad(maxLoadQuarters) {}

    // Calls match(index) for each record in the slice whose hash is h, in
    // probe order, until it returns true; gives that index, or -1.
    template <class Match>
    int32_t find(const SlotSlice& t, uint32_t h, Match match) const {
        if (!t.capacity)
            return -1;
        const S* s = m_slots.data() + t.base;
        uint32_t mask = t.capacity - 1;
        for (uint32_t i = h & mask;; i = (i + 1) & mask) {
            if (!s[i].index1)
                return -1;
            if (s[i].hash == h && match(s[i].index1 - 1))
                return static_cast<int32_t>(s[i].index1 - 1);
        }
    }
    // The slot of the record in the slice whose hash is h that match(index)
    // accepts, or null.
    template <class Match>
    const S* findSlot(const SlotSlice& t, uint32_t h, Match match) const {
        if (!t.capacity)
            return nullptr;
        const S* s = m_slots.data() + t.base;
        uint32_t mask = t.capacity - 1;
        for (uint32_t i = h & mask;; i = (i + 1) & mask) {
            if (!s[i].index1)
                return nullptr;
            if (s[i].hash == h && match(s[i].index1 - 1))
                return &s[i];
        }
    }
    // Asks the processor to fetch the slot where a probe for h starts.
    void prefetch(const SlotSlice& t, uint32_t h) const {
#if defined(__GNUC__) || defined(__clang__)
        if (t.capacity)
            __builtin_prefetch(m_slots.data() + t.base + (h & (t.capacity - 1)), 1);
#else
        (void)t, (void)h;
#endif
    }
    // The slot of record `index` (whose hash is h), or null.
    S* slotOf(const SlotSlice& t, uint32_t index, uint32_t h) {
        return const_cast<S*>(findSlot(t, h, [&](uint32_t i) { return i == index; }));
    }
    // Room for one more record in the slice; throws std::bad_alloc and then
    // changes nothing.
    void reserve(SlotSlice& t);
    // Room for n records in an empty or smaller slice (before a parse).
    void reserveFor(SlotSlice& t, size_t n);
    // Places a record; reserve() must have made room for it.
    void place(SlotSlice& t, uint32_t index, uint32_t h) noexcept;
    // Removes a record; false if it isn't in the slice.
    bool erase(SlotSlice& t, uint32_t index, uint32_t h) noexcept;
    // Drops a slice's records; its room becomes waste.
    void drop(SlotSlice& t) noexcept;
    // A slice of at least `capacity` slots at the end; throws and then
    // changes nothing.
    void reserveSlots(size_t slots);
    // Whether the waste is worth a compact().
    bool wasteful() const {
        return m_waste > 1024 && m_waste > m_slots.size() / 2;
    }
    // Lays the given slices out afresh, without waste; each keeps its
    // records. Throws and then changes nothing.
    template <class EachSlice>
    void compact(EachSlice eachSlice);
    // The smallest capacity that holds n records.
    uint32_t capacityFor(size_t n) const;
    void clear() noexcept {
        m_slots.clear();
        m_waste = 0;
    }

private:
    void resize(SlotSlice& t, uint32_t capacity);

    Vector<S> m_slots;
    size_t m_waste = 0;
    uint32_t m_maxLoad;
};

using SlotArray = SlotArrayOf<Slot>;
using SectionSlotArray = SlotArrayOf<SectionSlot>;
extern template class SlotArrayOf<Slot>;
extern template class SlotArrayOf<SectionSlot>;

template <class S>
template <class EachSlice>
void SlotArrayOf<S>::compact(EachSlice eachSlice) {
    size_t total = 0;
    eachSlice([&](SlotSlice& t) { total += t.capacity; });
    Vector<S> fresh;
    fresh.reserve(total);
    eachSlice([&](SlotSlice& t) {
        fresh.insert(fresh.end(), m_slots.begin() + t.base, m_slots.begin() + t.base + t.capacity);
    });
    // Nothing can fail from here on.
    size_t base = 0;
    eachSlice([&](SlotSlice& t) {
        t.base = static_cast<uint32_t>(base);
        base += t.capacity;
    });
    m_slots.swap(fresh);
    m_waste = 0;
}

} // namespace vesk
