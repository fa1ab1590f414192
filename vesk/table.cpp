#include "table.h"

#include <algorithm>

namespace vesk {

namespace {

void placeIn(Slot* s, uint32_t capacity, uint32_t index, uint32_t h) {
    uint32_t mask = capacity - 1;
    uint32_t i = h & mask;
    while (s[i].index1)
        i = (i + 1) & mask;
    s[i].index1 = index + 1;
    s[i].hash = h;
}

} // namespace

uint32_t SlotArray::capacityFor(size_t n) const {
    uint32_t cap = 16;
    while (static_cast<size_t>(cap) * m_maxLoad < (n + 1) * 4)
        cap *= 2;
    return cap;
}

void SlotArray::reserveSlots(size_t slots) {
    if (m_slots.size() + slots > m_slots.capacity())
        m_slots.reserve(std::max(m_slots.capacity() * 2, m_slots.size() + slots));
}

void SlotArray::resize(SlotSlice& t, uint32_t capacity) {
    // A slice at the end grows in place; any other moves to the end.
    bool atEnd = t.capacity && t.base + t.capacity == m_slots.size();
    size_t base = atEnd ? t.base : m_slots.size();
    // Room for the new slice and, past it, a copy of the old one.
    size_t copyAt = base + capacity;
    reserveSlots(copyAt + t.capacity - m_slots.size());
    // Nothing can fail from here on: the room is there.
    m_slots.resize(copyAt + t.capacity, Slot{0, 0});
    std::copy(m_slots.begin() + t.base, m_slots.begin() + t.base + t.capacity,
              m_slots.begin() + static_cast<std::ptrdiff_t>(copyAt));
    Slot* s = m_slots.data() + base;
    std::fill(s, s + capacity, Slot{0, 0});
    for (size_t i = copyAt; i < copyAt + t.capacity; ++i)
        if (m_slots[i].index1)
            placeIn(s, capacity, m_slots[i].index1 - 1, m_slots[i].hash);
    m_slots.resize(copyAt);
    if (!atEnd)
        m_waste += t.capacity;
    t.base = static_cast<uint32_t>(base);
    t.capacity = capacity;
}

void SlotArray::reserve(SlotSlice& t) {
    if ((t.used + 1) * 4 > static_cast<size_t>(t.capacity) * m_maxLoad)
        resize(t, t.capacity ? t.capacity * 2 : capacityFor(t.used + 1));
}

void SlotArray::reserveFor(SlotSlice& t, size_t n) {
    uint32_t cap = capacityFor(n);
    if (cap > t.capacity)
        resize(t, cap);
}

void SlotArray::place(SlotSlice& t, uint32_t index, uint32_t h) noexcept {
    placeIn(m_slots.data() + t.base, t.capacity, index, h);
    ++t.used;
}

bool SlotArray::erase(SlotSlice& t, uint32_t index, uint32_t h) noexcept {
    if (!t.capacity)
        return false;
    Slot* s = m_slots.data() + t.base;
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
    s[i] = Slot{0, 0};
    --t.used;
    return true;
}

void SlotArray::drop(SlotSlice& t) noexcept {
    m_waste += t.capacity;
    t = SlotSlice();
}

} // namespace vesk
