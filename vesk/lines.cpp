#include "lines.h"

#include <algorithm>
#include <cstdlib>

namespace vesk {

namespace {
void freeText(Line& l) {
    if (l.store == kOwnedText)
        std::free(const_cast<char*>(l.p));
}
} // namespace

LineList::LineList() {
    Line head{};
    head.p = "";
    head.kind = kHeader;
    head.store = kInBuffer;
    head.prev = head.next = kNone;
    m_lines.push_back(head);
}

LineList::~LineList() {
    for (Line& l : m_lines)
        freeText(l);
}

void LineList::reserveMore(size_t n) {
    if (m_lines.size() + n > m_lines.capacity())
        m_lines.reserve(std::max(m_lines.capacity() * 2, m_lines.size() + n));
}

int32_t LineList::add(const char* p, size_t len, uint8_t eol, uint8_t kind) noexcept {
    Line l;
    l.p = p;
    l.len = static_cast<uint32_t>(len);
    l.eol = eol;
    l.kind = kind;
    l.store = kInBuffer;
    l.prev = l.next = kNone;
    m_lines.push_back(l);
    return size() - 1;
}

int32_t LineList::addOwned(Text text, uint8_t kind) noexcept {
    Line l;
    l.p = text.p;
    l.len = text.len;
    l.eol = crlf ? 2 : 1;
    l.kind = kind;
    l.store = kOwnedText;
    l.prev = l.next = kNone;
    m_lines.push_back(l);
    return size() - 1;
}

void LineList::truncate(int32_t size) noexcept {
    for (size_t i = static_cast<size_t>(size); i < m_lines.size(); ++i)
        freeText(m_lines[i]);
    m_lines.resize(static_cast<size_t>(size));
}

void LineList::ensureEol(int32_t li) noexcept {
    Line& l = (*this)[li];
    if (l.eol)
        return;
    if (li == 0 && l.len == 0)
        return; // the empty head of the list writes nothing
    if (l.kind == kBody && l.len && l.p[l.len - 1] == '\n')
        return; // a body's own last line end
    // A CR at the end of the line is part of its text: a bare LF after it
    // would make a CRLF of the two and swallow it, so it gets a CRLF.
    const bool endsInCr = l.len && l.p[l.len - 1] == '\r';
    l.eol = (crlf || endsInCr) ? 2 : 1;
    if (l.store == kInBuffer)
        l.store = kBufferText;
}

void LineList::linkAfter(int32_t after, int32_t li) noexcept {
    ensureEol(after);
    Line& l = (*this)[li];
    l.prev = after;
    l.next = (*this)[after].next;
    if (l.next != kNone)
        (*this)[l.next].prev = li;
    else
        m_last = li;
    (*this)[after].next = li;
}

void LineList::unlink(int32_t li) noexcept {
    Line& l = (*this)[li];
    if (l.prev != kNone)
        (*this)[l.prev].next = l.next;
    if (l.next != kNone)
        (*this)[l.next].prev = l.prev;
    else
        m_last = l.prev;
    freeText(l);
    l.p = "";
    l.len = 0;
    l.store = kBufferText;
    l.prev = l.next = kNone;
}

void LineList::setText(int32_t li, Text text) noexcept {
    Line& l = (*this)[li];
    freeText(l);
    l.p = text.p;
    l.len = text.len;
    l.store = kOwnedText;
}

void LineList::reset() noexcept {
    truncate(1);
    clearHead();
    m_lines[0].next = kNone;
    m_last = 0;
    crlf = false;
}

void LineList::clearHead() noexcept {
    Line& head = (*this)[0];
    freeText(head);
    head.p = "";
    head.len = 0;
    head.eol = 0;
    head.store = kInBuffer;
}

String LineList::render(bool bom) const {
    static const char* const eolText[] = {"", "\n", "\r\n"};
    size_t total = bom ? 3 : 0;
    for (int32_t li = 0; li != kNone; li = (*this)[li].next)
        total += (*this)[li].len + 2;
    String out;
    out.reserve(total);
    if (bom)
        out.append("\xEF\xBB\xBF", 3);
    // Consecutive lines that stand in the file as they were go out in one run.
    const char* runBeg = nullptr;
    const char* runEnd = nullptr;
    for (int32_t li = 0; li != kNone; li = (*this)[li].next) {
        const Line& l = (*this)[li];
        if (l.store == kInBuffer) {
            size_t n = l.len + (l.eol == 2 ? 2u : l.eol);
            if (runBeg && l.p == runEnd) {
                runEnd += n;
                continue;
            }
            if (runBeg)
                out.append(runBeg, static_cast<size_t>(runEnd - runBeg));
            runBeg = l.p;
            runEnd = l.p + n;
            continue;
        }
        if (runBeg) {
            out.append(runBeg, static_cast<size_t>(runEnd - runBeg));
            runBeg = runEnd = nullptr;
        }
        out.append(l.p, l.len);
        out.append(eolText[l.eol]);
    }
    if (runBeg)
        out.append(runBeg, static_cast<size_t>(runEnd - runBeg));
    return out;
}

} // namespace vesk
