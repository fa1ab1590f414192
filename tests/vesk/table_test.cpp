// The slot table: probing through collisions and around the end of a slice,
// removal that keeps every other record reachable, growth at three quarters,
// slices that move and leave waste, compaction, and growth that fails.
#include "memory.h"
#include "table.h"

#include <gtest/gtest.h>

#include <new>
#include <vector>

using vesk::SlotArray;
using vesk::SlotSlice;

namespace {

// Records 0..n-1 with the hashes given; a record matches when the index is
// the one looked for.
struct Records {
    std::vector<uint32_t> hashes;
    int32_t find(const SlotArray& a, const SlotSlice& t, uint32_t index) const {
        return a.find(t, hashes[index], [&](uint32_t i) { return i == index; });
    }
    void add(SlotArray& a, SlotSlice& t, uint32_t h) {
        hashes.push_back(h);
        a.reserve(t);
        a.place(t, static_cast<uint32_t>(hashes.size() - 1), h);
    }
};

} // namespace

TEST(Table, RemovalKeepsTheRestReachableAcrossTheEnd) {
    SlotArray a(3);
    SlotSlice t;
    Records r;
    // Homes 14 and 15 of a 16-slot slice: the chains wrap around to 0, 1...
    for (uint32_t h : {14u, 15u, 14u, 30u, 15u, 0u, 1u, 46u})
        r.add(a, t, h);
    ASSERT_EQ(t.capacity, 16u);
    for (uint32_t gone : {0u, 3u, 5u, 1u}) {
        ASSERT_TRUE(a.erase(t, gone, r.hashes[gone]));
        EXPECT_FALSE(a.erase(t, gone, r.hashes[gone]));
        EXPECT_EQ(r.find(a, t, gone), -1);
        for (uint32_t i : {2u, 4u, 6u, 7u}) {
            EXPECT_EQ(r.find(a, t, i), static_cast<int32_t>(i)) << "after " << gone;
        }
    }
    EXPECT_EQ(t.used, 4u);
}

TEST(Table, GrowsAtThreeQuartersAndKeepsItsRecords) {
    SlotArray a(3);
    SlotSlice t;
    Records r;
    for (uint32_t i = 0; i < 12; ++i)
        r.add(a, t, i * 7);
    EXPECT_EQ(t.capacity, 16u); // twelve fit in sixteen
    r.add(a, t, 99);
    EXPECT_EQ(t.capacity, 32u);
    EXPECT_EQ(t.used, 13u);
    for (uint32_t i = 0; i < 13; ++i)
        EXPECT_EQ(r.find(a, t, i), static_cast<int32_t>(i));
    EXPECT_EQ(a.capacityFor(11), 16u);
    EXPECT_EQ(a.capacityFor(12), 32u);
    SlotArray half(2);
    EXPECT_EQ(half.capacityFor(7), 16u);
    EXPECT_EQ(half.capacityFor(8), 32u);
}

TEST(Table, MovedSlicesLeaveWasteThatCompactionGivesBack) {
    SlotArray a(3);
    std::vector<SlotSlice> tables(200);
    std::vector<Records> records(200);
    for (size_t s = 0; s < tables.size(); ++s)
        records[s].add(a, tables[s], static_cast<uint32_t>(s));
    // Each slice but the last grows and moves to the end.
    for (size_t s = 0; s < tables.size(); ++s)
        for (uint32_t i = 0; i < 12; ++i)
            records[s].add(a, tables[s], i * 31 + static_cast<uint32_t>(s));
    EXPECT_FALSE(a.wasteful()); // a third is waste
    for (size_t s = 0; s < tables.size(); s += 2)
        a.drop(tables[s]);
    EXPECT_EQ(tables[0].capacity, 0u);
    EXPECT_EQ(records[0].find(a, tables[0], 0), -1);
    EXPECT_TRUE(a.wasteful()); // now two thirds
    a.compact([&](auto each) {
        for (size_t s = 1; s < tables.size(); s += 2)
            each(tables[s]);
    });
    EXPECT_FALSE(a.wasteful());
    for (size_t s = 1; s < tables.size(); s += 2) {
        EXPECT_EQ(tables[s].base, (s / 2) * 32);
        EXPECT_EQ(tables[s].used, 13u);
        for (uint32_t i = 0; i < 13; ++i)
            EXPECT_EQ(records[s].find(a, tables[s], i), static_cast<int32_t>(i));
    }
}

TEST(Table, GrowthThatFailsChangesNothing) {
    SlotArray a(3);
    SlotSlice t, other;
    Records r, o;
    o.add(a, other, 5); // so that t's growth must move it
    for (uint32_t i = 0; i < 12; ++i)
        r.add(a, t, i);
    SlotSlice before = t;
    vesk::testing::failAllocation(1);
    EXPECT_THROW(a.reserve(t), std::bad_alloc);
    vesk::testing::failAllocation(0);
    EXPECT_EQ(t.base, before.base);
    EXPECT_EQ(t.capacity, before.capacity);
    EXPECT_EQ(t.used, before.used);
    for (uint32_t i = 0; i < 12; ++i)
        EXPECT_EQ(r.find(a, t, i), static_cast<int32_t>(i));
    EXPECT_EQ(o.find(a, other, 0), 0);
}
