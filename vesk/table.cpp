#include "table.h"

#include <algorithm>

namespace vesk {

namespace {

// Places a record into a fresh slot (its other fields as a new slot has
// them).
template <class S>
void placeIn(S* s, uint32_t capacity, uint32_t index, uint32_t h) {
    uint32_t mask = capacity - 1;
    uint32_t i = h & mask;
    while (s[i].index1)
        i = (i + 1) & mask;
    s[i] = S();
    s[i].index1 = index + 1;
    s[i].hash = h;
}

// Moves a record's slot into the fresh slice as it is.
template <class S>
void moveIn(S* s, uint32_t capacity, const S& from) {
    uint32_t mask = capacity - 1;
    uint32_t i = from.hash & mask;
    while (s[i].index1)
        i = (i + 1) & mask;
    s[i] = from;
}

} // namespace

template <class S>
uint32_t SlotArrayOf<S>::capacityFor(size_t n) const {
    uint32_t cap = 16;
    while (static_cast<size_t>(cap) * m_maxLoad < (n + 1) * 4)
        cap *= 2;
    return cap;
}

template <class S>
void SlotArrayOf<S>::reserveSlots(size_t slots) {
    if (m_slots.size() + slots > m_slots.capacity())
        m_slots.reserve(std::max(m_slots.capacity() * 2, m_slots.size() + slots));
}

template <class S>
void SlotArrayOf<S>::resize(SlotSlice& t, uint32_t capacity) {
    // A slice at the end grows in place; any other moves to the end.
    bool atEnd = t.capacity && t.base + t.capacity == m_slots.size();
    size_t base = atEnd ? t.base : m_slots.size();
    // Room for the new slice and, past it, a copy of the old one.
    size_t copyAt = base + capacity;
    reserveSlots(copyAt + t.capacity - m_slots.size());
    // Nothing can fail from here on: the room is there.
    m_slots.resize(copyAt + t.capacity, S());
    std::copy(m_slots.begin() + t.base, m_slots.begin() + t.base + t.capacity,
              m_slots.begin() + static_cast<std::ptrdiff_t>(copyAt));
    S* s = m_slots.data() + base;
    std::fill(s, s + capacity, S());
    for (size_t i = copyAt; i < copyAt + t.capacity; ++i)
        if (m_slots[i].index1)
            moveIn(s, capacity, m_slots[i]);
    m_slots.resize(copyAt);
    if (!atEnd)
        m_waste += t.capacity;
    t.base = static_cast<uint32_t>(base);
    t.capacity = capacity;
}

template <class S>
void SlotArrayOf<S>::reserve(SlotSlice& t) {
    if ((t.used + 1) * 4 > static_cast<size_t>(t.capacity) * m_maxLoad)
        resize(t, t.capacity ? t.capacity * 2 : capacityFor(t.used + 1));
}

template <class S>
void SlotArrayOf<S>::reserveFor(SlotSlice& t, size_t n) {
    uint32_t cap = capacityFor(n);
    if (cap > t.capacity)
        resize(t, cap);
}

template <class S>
void SlotArrayOf<S>::place(SlotSlice& t, uint32_t index, uint32_t h) noexcept {
    placeIn(m_slots.data() + t.base, t.capacity, index, h);
    ++t.used;
}

template <class S>
bool SlotArrayOf<S>::erase(SlotSlice& t, uint32_t index, uint32_t h) noexcept {
    if (!t.capacity)
        return false;
    S* s = m_slots.data() + t.base;
    uint32_t mask = t.capacity - 1;
    uint32_t i = h & mask;
    for (;; i = (i + 1) & mask) {
        if (!s[i].index1)
            return false;
        if (s[i].index1 == index + 1)
            break;
    }
    for (uint32_t j = i;;) {
        j = (j + 1) & mask;
        if (!s[j].index1)
            break;
        uint32_t home = s[j].hash & mask;
        // Move slot j into the hole at i if its home isn't within (i, j].
        bool between = i <= j ? (i < home && home <= j) : (i < home || home <= j);
        if (!between) {
            s[i] = s[j];
            i = j;
        }
    }
    s[i] = S();
    --t.used;
    return true;
}

template <class S>
void SlotArrayOf<S>::drop(SlotSlice& t) noexcept {
    m_waste += t.capacity;
    t = SlotSlice();
}

template class SlotArrayOf<Slot>;
template class SlotArrayOf<SectionSlot>;

} // namespace vesk
