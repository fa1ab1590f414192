// Texts: arena copies stay where they are while the arena grows (a copy
// larger than a chunk included), owned copies are terminated, and a copy
// that can't be had throws without a trace.
#include "memory.h"
#include "text.h"

#include <gtest/gtest.h>

#include <new>
#include <string>
#include <vector>

TEST(Text, ArenaCopiesStayWhileTheArenaGrows) {
    vesk::Arena arena;
    std::vector<vesk::Text> texts;
    std::vector<std::string> want;
    for (int i = 0; i < 5000; ++i) {
        want.push_back(std::string(static_cast<size_t>(i % 97), static_cast<char>('a' + i % 26)) +
                       std::to_string(i));
        texts.push_back(arena.copy(want.back()));
    }
    want.push_back(std::string(3u << 20, 'L')); // larger than the largest chunk
    texts.push_back(arena.copy(want.back()));
    texts.push_back(arena.copy(""));
    want.push_back("");
    for (size_t i = 0; i < texts.size(); ++i) {
        ASSERT_EQ(texts[i].view(), want[i]) << i;
        EXPECT_EQ(texts[i].p[texts[i].len], '\0') << i;
        EXPECT_EQ(texts[i].kind, vesk::kTerminated);
    }
}

TEST(Text, OwnedCopies) {
    vesk::Text t = vesk::makeOwned(std::string_view("a\0b", 3));
    EXPECT_EQ(t.kind, vesk::kOwned);
    EXPECT_EQ(t.view(), std::string_view("a\0b", 3));
    EXPECT_EQ(t.p[3], '\0');
    vesk::release(t);
    EXPECT_EQ(t.view(), "");
    EXPECT_EQ(t.kind, vesk::kTerminated);
    vesk::release(t); // twice is harmless
    vesk::testing::failAllocation(1);
    EXPECT_THROW(vesk::makeOwned("x"), std::bad_alloc);
    vesk::Arena arena;
    EXPECT_THROW(arena.copy("y"), std::bad_alloc);
    vesk::testing::failAllocation(0);
    EXPECT_EQ(arena.copy("z").view(), "z"); // the failed chunk left nothing behind
}
