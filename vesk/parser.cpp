#include "parser.h"

#include "syntax.h"

#include <algorithm>
#include <cstring>

namespace vesk {

namespace {

// The length of the line at p whose '\n' is at nl (end when it has none),
// without its line end, which goes to eol (0 none, 1 LF, 2 CRLF).
size_t textLength(const char* p, const char* nl, const char* end, uint8_t& eol) {
    eol = nl < end ? 1 : 0;
    if (eol && nl > p && nl[-1] == '\r') {
        eol = 2;
        --nl;
    }
    return static_cast<size_t>(nl - p);
}

// Calls fn(p, len, eol) for each line in [p, end): its text without the line
// end, and the line end (0 none, 1 LF, 2 CRLF).
template <class Fn>
void forEachLine(const char* p, const char* end, Fn fn) {
    while (p < end) {
        const char* nl = findNewline(p, end);
        uint8_t eol;
        size_t len = textLength(p, nl, end, eol);
        fn(p, len, eol);
        p = nl < end ? nl + 1 : end;
    }
}

size_t lineCount(const char* p, size_t len) {
    return static_cast<size_t>(std::count(p, p + len, '\n')) + 1;
}

// The body record of a block (the record after its header), or kNone.
int32_t bodyOf(const Contents& c, int32_t header) {
    int32_t r = c.lines[header].next;
    return r != kNone && c.lines[r].kind == kBody ? r : kNone;
}

// Name and value of a key line as texts: views of the file where they stand
// as they read, arena copies where they were quoted.
struct KeyText {
    Text name, value;
};

KeyText readKeyLine(Contents& c, string_view line, bool withValue) {
    KeyLineParts parts = splitKeyLine(line);
    string_view key, value;
    String keyBuf, valueBuf;
    bool keyDecoded, valueDecoded;
    keyLineText(line, parts, key, keyBuf, keyDecoded, value, valueBuf, valueDecoded);
    KeyText t;
    t.name = keyDecoded ? c.arena.copy(key) : viewOf(key);
    if (withValue && valueDecoded)
        t.value = c.arena.copy(value);
    else if (withValue && !value.empty())
        t.value = viewOf(value);
    return t;
}

} // namespace

bool scanFile(Contents& c, const NameRule& rule, ParseError& err) {
    const char* base = c.file.get();
    const char* end = base + c.fileLen;
    const char* p = base;
    if (c.fileLen >= 3 && std::memcmp(p, "\xEF\xBB\xBF", 3) == 0) {
        c.bom = true;
        p += 3;
    }
    if (const void* nul = std::memchr(base, 0, c.fileLen)) {
        const char* q = static_cast<const char*>(nul);
        err.line = 1 + static_cast<size_t>(std::count(base, q, '\n'));
        err.message = "the file contains a NUL byte";
        return false;
    }
    // Room for every record the file can give, so that nothing moves while
    // its sections are parsed; the big blocks are mapped, and pages never
    // touched cost nothing.
    size_t newlines = static_cast<size_t>(std::count(p, end, '\n'));
    size_t brackets = static_cast<size_t>(std::count(p, end, '['));
    c.lines.reserveMore(newlines + brackets + 4);
    c.keys.reserve(newlines + 1);
    c.sections.reserve(brackets + 2);
    c.order.reserve(brackets + 2);
    c.keySlots.reserveSlots((brackets + 2) * 16 + newlines * 2);
    c.sectionSlots.reserveFor(c.sectionTable, brackets + 2);
    c.lines[0].p = p;
    int32_t at = 0; // the record after which the next goes
    auto push = [&](const char* q, size_t len, uint8_t eol, uint8_t kind) {
        int32_t li = c.lines.add(q, len, eol, kind);
        c.lines.linkAfter(at, li);
        at = li;
        return li;
    };
    bool eolKnown = false;
    bool preamble = true, preambleKeys = false;
    const char* bodyBeg = nullptr;
    const char* bodyEnd = nullptr;
    auto endBody = [&] {
        if (bodyBeg)
            push(bodyBeg, static_cast<size_t>(bodyEnd - bodyBeg), 0, kBody);
        bodyBeg = nullptr;
        if (preamble && preambleKeys) { // keys before the first header: section ""
            string_view empty(p, 0);
            reserveSection(c);
            addSectionRecord(c, Text(), rule.hash(empty), 0, false);
        }
        preamble = false;
    };
    while (p < end) {
        const char* q = p;
        while (q < end && isBlank(*q))
            ++q;
        const char* nl = findNewline(q, end);
        const char* next = nl < end ? nl + 1 : end;
        if (q < next && *q == '[') {
            uint8_t eol;
            size_t len = textLength(p, nl, end, eol);
            endBody();
            string_view name;
            String decoded;
            bool quoted;
            if (!headerName(string_view(p, len), name, decoded, quoted)) {
                err.line = 1 + static_cast<size_t>(std::count(base, p, '\n'));
                err.message = "section header without a closing ']'";
                return false;
            }
            Text text = quoted ? c.arena.copy(name) : viewOf(name);
            uint32_t h = rule.hash(name);
            int32_t s = findSection(c, rule, name, h);
            int32_t li = push(p, len, eol, kHeader);
            if (s == kNone) {
                reserveSection(c);
                addSectionRecord(c, text, h, li, false);
            } else { // a later block of a section
                Section& sec = c.sections[static_cast<size_t>(s)];
                if (sec.laterBlocks == kNone) {
                    c.laterBlocks.emplace_back();
                    sec.laterBlocks = static_cast<int32_t>(c.laterBlocks.size() - 1);
                }
                c.laterBlocks[static_cast<size_t>(sec.laterBlocks)].push_back(li);
                sec.tail = li;
            }
        } else {
            if (preamble && q < next && *q != ';' && *q != '#' && *q != '\n' &&
                !(*q == '\r' && q + 1 < next && q[1] == '\n'))
                preambleKeys = true;
            if (!bodyBeg)
                bodyBeg = p;
            bodyEnd = next;
        }
        if (!eolKnown && nl < end) {
            c.lines.crlf = nl > p && nl[-1] == '\r';
            eolKnown = true;
        }
        p = next;
    }
    endBody();
    return true;
}

void parseKeys(Store& st, int32_t s) {
    Contents& c = *st.c;
    // The keys go to the end of the records, in order: the section's range.
    const size_t before = c.keys.size();
    Section& sec = c.sections[static_cast<size_t>(s)];
    auto parseLine = [&](const char* p, size_t len, uint8_t) {
        string_view line(p, len);
        if (isTriviaLine(line))
            return;
        KeyText t = readKeyLine(c, line, true);
        uint32_t h = st.rule.hash(t.name.view());
        int32_t k = findKey(c, st.rule, sec, t.name.view(), h);
        if (k != kNone) {
            c.keys[static_cast<size_t>(k)].repeated = true;
            return;
        }
        c.keySlots.reserve(sec.keyTable);
        c.keys.push_back(Key{t.name, t.value, h, s, kNone, false, false});
        if (sec.rangeCount++ == 0)
            sec.firstKey = static_cast<int32_t>(c.keys.size() - 1);
        c.keySlots.place(sec.keyTable, static_cast<uint32_t>(c.keys.size() - 1), h);
    };
    try {
        c.forEachBlock(sec, [&](int32_t b) {
            if (int32_t r = bodyOf(c, b); r != kNone)
                forEachLine(c.lines[r].p, c.lines[r].p + c.lines[r].len, parseLine);
        });
    } catch (...) {
        c.keys.resize(before);
        sec.rangeCount = 0;
        c.keySlots.drop(sec.keyTable);
        throw;
    }
    sec.keysKnown = true;
}

void expandLines(Store& st, int32_t s) {
    loadKeys(st, s);
    Contents& c = *st.c;
    if (c.sections[static_cast<size_t>(s)].hasLineRecords)
        return;
    Vector<int32_t> blocks = c.blocksOf(c.sections[static_cast<size_t>(s)]);
    size_t most = 0;
    for (int32_t b : blocks)
        if (int32_t r = bodyOf(c, b); r != kNone)
            most += lineCount(c.lines[r].p, c.lines[r].len);
    c.lines.reserveMore(most);
    // The new records are made unlinked first, each key line with the key
    // its name gives; then the bodies are swapped for them.
    struct NewLine {
        int32_t line, key, block;
    };
    Vector<NewLine> made;
    made.reserve(most);
    size_t repeats = 0;
    const int32_t mark = c.lines.size();
    Section& sec = c.sections[static_cast<size_t>(s)];
    try {
        for (int32_t b : blocks) {
            int32_t r = bodyOf(c, b);
            if (r == kNone)
                continue;
            forEachLine(
                c.lines[r].p, c.lines[r].p + c.lines[r].len,
                [&](const char* p, size_t len, uint8_t eol) {
                    string_view line(p, len);
                    if (isTriviaLine(line)) {
                        // Comments and blank lines in a row stay one record.
                        if (!made.empty() && made.back().block == b &&
                            c.lines[made.back().line].kind == kTrivia) {
                            Line& last = c.lines[made.back().line];
                            if (last.eol && last.p + last.len + (last.eol == 2 ? 2 : 1) == p) {
                                last.len = static_cast<uint32_t>(p + len - last.p);
                                last.eol = eol;
                                return;
                            }
                        }
                        made.push_back(NewLine{c.lines.add(p, len, eol, kTrivia), kNone, b});
                        return;
                    }
                    KeyText t = readKeyLine(c, line, false);
                    int32_t k =
                        findKey(c, st.rule, sec, t.name.view(), st.rule.hash(t.name.view()));
                    if (k != kNone && c.keys[static_cast<size_t>(k)].line != kNone)
                        ++repeats;
                    made.push_back(NewLine{c.lines.add(p, len, eol, kKeyLine), k, b});
                    if (k != kNone && c.keys[static_cast<size_t>(k)].line == kNone)
                        c.keys[static_cast<size_t>(k)].line = made.back().line; // undone below
                });
        }
        if (c.repeatLines.size() + repeats > c.repeatLines.capacity())
            c.repeatLines.reserve(
                std::max(c.repeatLines.capacity() * 2, c.repeatLines.size() + repeats));
    } catch (...) {
        for (const NewLine& n : made)
            if (n.key != kNone && c.keys[static_cast<size_t>(n.key)].line == n.line)
                c.keys[static_cast<size_t>(n.key)].line = kNone;
        c.lines.truncate(mark);
        throw;
    }
    // Nothing can fail from here on.
    size_t next = 0;
    for (int32_t b : blocks) {
        int32_t r = bodyOf(c, b);
        if (r == kNone)
            continue;
        // A line end the store gave the body, when a line was added after it.
        bool addedEol = c.lines[r].store == kBufferText && c.lines[r].eol;
        c.lines.unlink(r);
        int32_t at = b;
        for (; next < made.size() && made[next].block == b; ++next) {
            const NewLine& n = made[next];
            c.lines.linkAfter(at, n.line);
            at = n.line;
            if (n.key == kNone && c.lines[n.line].kind == kTrivia)
                continue;
            sec.tail = n.line;
            if (n.key != kNone && c.keys[static_cast<size_t>(n.key)].line != n.line)
                c.repeatLines.emplace_back(n.key, n.line);
        }
        if (addedEol)
            c.lines.ensureEol(at);
    }
    sec.hasLineRecords = true;
}

} // namespace vesk
