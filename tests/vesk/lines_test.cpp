// The line list: rendering in runs of unchanged bytes, line ends given to a
// last line that gets a follower (a CR at its end included), unlinking, and
// emptying without allocation.
#include "lines.h"
#include "memory.h"

#include <gtest/gtest.h>

#include <string>

using vesk::LineList;

namespace {

std::string Render(const LineList& l, bool bom = false) {
    vesk::String s = l.render(bom);
    return std::string(s.data(), s.size());
}

// The lines of text as records after the head, as the parser links them.
void Load(LineList& l, const std::string& text) {
    int32_t at = 0;
    size_t p = 0;
    while (p < text.size()) {
        size_t nl = text.find('\n', p);
        size_t end = nl == std::string::npos ? text.size() : nl;
        uint8_t eol = nl == std::string::npos ? 0 : 1;
        int32_t li = l.add(text.data() + p, end - p, eol, vesk::kTrivia);
        l.linkAfter(at, li);
        at = li;
        p = nl == std::string::npos ? text.size() : nl + 1;
    }
}

} // namespace

TEST(Lines, RenderGivesTheBytesBackAndChangesOnlyWhatChanged) {
    const std::string text = "a=1\nb=2\nc=3";
    LineList l;
    l.reserveMore(8);
    Load(l, text);
    EXPECT_EQ(Render(l), text);
    EXPECT_EQ(Render(l, true), "\xEF\xBB\xBF" + text);
    l.setText(2, vesk::makeOwned("b=two"));
    EXPECT_EQ(Render(l), "a=1\nb=two\nc=3");
    // A new last line: the old last line gets a line end first.
    int32_t li = l.addOwned(vesk::makeOwned("d=4"), vesk::kKeyLine);
    l.linkAfter(l.last(), li);
    EXPECT_EQ(Render(l), "a=1\nb=two\nc=3\nd=4\n");
    l.unlink(1);
    EXPECT_EQ(Render(l), "b=two\nc=3\nd=4\n");
    EXPECT_EQ(l.last(), li);
    l.unlink(li);
    EXPECT_EQ(l.last(), 3);
}

TEST(Lines, ALastLineEndingInCrGetsCrlf) {
    const std::string text = "a=1\nb=x\r";
    LineList l;
    l.reserveMore(8);
    Load(l, text);
    l.crlf = false;
    int32_t li = l.addOwned(vesk::makeOwned("c=3"), vesk::kKeyLine);
    l.linkAfter(l.last(), li);
    EXPECT_EQ(Render(l), "a=1\nb=x\r\r\nc=3\n");
    LineList crlf;
    crlf.crlf = true;
    crlf.reserveMore(4);
    const std::string x = "x"; // the records point into it
    Load(crlf, x);
    crlf.linkAfter(crlf.last(), crlf.addOwned(vesk::makeOwned("y"), vesk::kKeyLine));
    EXPECT_EQ(Render(crlf), "x\r\ny\r\n");
}

TEST(Lines, ResetEmptiesWithoutAllocating) {
    LineList l;
    l.reserveMore(4);
    const std::string text = "a\nb\n";
    Load(l, text);
    l.linkAfter(l.last(), l.addOwned(vesk::makeOwned("c"), vesk::kKeyLine));
    vesk::testing::failAllocation(1);
    l.reset();
    vesk::testing::failAllocation(0);
    EXPECT_EQ(Render(l), "");
    EXPECT_EQ(l.size(), 1);
    EXPECT_EQ(l.last(), 0);
    l.linkAfter(0, l.addOwned(vesk::makeOwned("n"), vesk::kHeader));
    EXPECT_EQ(Render(l), "n\n");
}
