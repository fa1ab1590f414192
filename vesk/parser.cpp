#include "parser.h"

#include "syntax.h"

#include <algorithm>
#include <cstring>
#ifdef __SSE2__
#include <emmintrin.h>
#endif

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

size_t countNewlines(const char* p, const char* end);

size_t lineCount(const char* p, size_t len) {
    return countNewlines(p, p + len) + 1;
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

namespace {

// The number of bytes `a` and of bytes `b` in [p, end), sixteen at a time
// where SSE2 is there.
struct ByteCounts {
    size_t a = 0, b = 0;
};
ByteCounts countBytes(const char* p, const char* end, char a, char b) {
    ByteCounts n;
#ifdef __SSE2__
    const __m128i va = _mm_set1_epi8(a), vb = _mm_set1_epi8(b), zero = _mm_setzero_si128();
    while (end - p >= 16) {
        // Up to 255 blocks add their matches bytewise before they are summed.
        size_t blocks = std::min<size_t>(static_cast<size_t>(end - p) / 16, 255);
        __m128i accA = zero, accB = zero;
        for (size_t i = 0; i < blocks; ++i, p += 16) {
            __m128i v = _mm_loadu_si128(reinterpret_cast<const __m128i*>(p));
            accA = _mm_sub_epi8(accA, _mm_cmpeq_epi8(v, va));
            accB = _mm_sub_epi8(accB, _mm_cmpeq_epi8(v, vb));
        }
        __m128i sumA = _mm_sad_epu8(accA, zero), sumB = _mm_sad_epu8(accB, zero);
        n.a += static_cast<size_t>(_mm_cvtsi128_si32(sumA)) +
               static_cast<size_t>(_mm_cvtsi128_si32(_mm_srli_si128(sumA, 8)));
        n.b += static_cast<size_t>(_mm_cvtsi128_si32(sumB)) +
               static_cast<size_t>(_mm_cvtsi128_si32(_mm_srli_si128(sumB, 8)));
    }
#endif
    for (; p < end; ++p) {
        n.a += *p == a;
        n.b += *p == b;
    }
    return n;
}

size_t countNewlines(const char* p, const char* end) {
    return countBytes(p, end, '\n', '\n').a;
}

// Whether the preamble [p, end) (the lines before the first header) holds a
// key line: one whose first non-blank byte starts neither a comment nor a
// line end.
bool preambleHasKeys(const char* p, const char* end) {
    while (p < end) {
        const char* q = p;
        while (q < end && isBlank(*q))
            ++q;
        const char* nl = findNewline(q, end);
        const char* next = nl < end ? nl + 1 : end;
        if (q < next && *q != ';' && *q != '#' && *q != '\n' &&
            !(*q == '\r' && q + 1 < next && q[1] == '\n'))
            return true;
        p = next;
    }
    return false;
}

// The next header line at or after p, which starts a line: the start of the
// line whose first non-blank byte is '[', or end. Headers are few and far
// apart, so this looks for '[' bytes (memchr is the fastest search there is)
// and checks that only blanks stand between each and its line's start.
const char* findHeader(const char* base, const char* p, const char* end) {
    while (p < end) {
        const void* hit = std::memchr(p, '[', static_cast<size_t>(end - p));
        if (!hit)
            return end;
        const char* q = static_cast<const char*>(hit);
        const char* r = q;
        while (r > base && isBlank(r[-1]))
            --r;
        if (r == base || r[-1] == '\n')
            return r;
        p = q + 1;
    }
    return end;
}

} // namespace

bool scanFile(Contents& c, const NameRule& rule, ParseError& err) {
    const char* const base = c.file.get();
    const char* const end = base + c.fileLen;
    const char* p = base;
    if (c.fileLen >= 3 && std::memcmp(p, "\xEF\xBB\xBF", 3) == 0) {
        c.bom = true;
        p += 3;
    }
    if (const void* nul = std::memchr(base, 0, c.fileLen)) {
        const char* q = static_cast<const char*>(nul);
        err.line = 1 + countNewlines(base, q);
        err.message = "the file contains a NUL byte";
        return false;
    }
    const char* const data = p;
    if (const void* nl = std::memchr(data, '\n', static_cast<size_t>(end - data))) {
        const char* q = static_cast<const char*>(nl);
        c.lines.crlf = q > data && q[-1] == '\r';
    }
    // Room for a key record per line, so that parsing the sections later
    // doesn't move them, and for a section per '[' (the block is mapped,
    // and pages never touched cost nothing).
    const ByteCounts counts = countBytes(data, end, '\n', '[');
    c.keys.reserve(counts.a + 1);
    c.sections.reserve(counts.b + 1);
    c.order.reserve(counts.b + 1);
    c.sectionSlots.reserveFor(c.sectionTable, counts.b + 1);
    c.lines.reserveMore(2 * counts.b + 2);
    c.lines[0].p = data;
    int32_t at = 0; // the record after which the next goes
    auto push = [&](const char* q, size_t len, uint8_t eol, uint8_t kind) {
        c.lines.reserveMore(1); // no allocation: there is room
        int32_t li = c.lines.add(q, len, eol, kind);
        c.lines.linkAfter(at, li);
        at = li;
        return li;
    };
    // The lines between two headers (or before the first) as one body record.
    auto body = [&](const char* from, const char* to) {
        if (from < to)
            push(from, static_cast<size_t>(to - from), 0, kBody);
    };
    const char* h = findHeader(data, data, end);
    body(data, h);
    if (preambleHasKeys(data, h)) { // keys before the first header: section ""
        reserveSection(c);
        addSectionRecord(c, Text(), rule.hash(string_view(data, 0)), 0, false);
    }
    // A header's section is looked up in the table a few headers after it
    // was read, its slot fetched in the meantime: the table is far larger
    // than the caches, and each lookup would otherwise wait for memory.
    // Headers are taken in file order, each after all before it.
    struct Pending {
        Text name;
        uint32_t hash;
        int32_t line;
    };
    constexpr size_t kAhead = 8;
    Pending pending[kAhead];
    size_t first = 0, count = 0;
    auto settle = [&] {
        const Pending& ph = pending[first];
        first = (first + 1) % kAhead;
        --count;
        int32_t s = findSection(c, rule, ph.name.view(), ph.hash);
        reserveSection(c);
        if (s == kNone) {
            addSectionRecord(c, ph.name, ph.hash, ph.line, false);
            return;
        }
        // A later block of a section.
        Section& sec = c.sections[static_cast<size_t>(s)];
        if (sec.laterBlocks == kNone) {
            c.laterBlocks.emplace_back();
            sec.laterBlocks = static_cast<int32_t>(c.laterBlocks.size() - 1);
        }
        c.laterBlocks[static_cast<size_t>(sec.laterBlocks)].push_back(ph.line);
        sec.tail = ph.line;
    };
    while (h < end) {
        const char* nl = findNewline(h, end);
        uint8_t eol;
        size_t len = textLength(h, nl, end, eol);
        string_view name;
        String decoded;
        bool quoted;
        if (!headerName(string_view(h, len), name, decoded, quoted)) {
            err.line = 1 + countNewlines(base, h);
            err.message = "section header without a closing ']'";
            return false;
        }
        if (count == kAhead)
            settle();
        Pending& ph = pending[(first + count++) % kAhead];
        ph.name = quoted ? c.arena.copy(name) : viewOf(name);
        ph.hash = rule.hash(name);
        ph.line = push(h, len, eol, kHeader);
        c.sectionSlots.prefetch(c.sectionTable, ph.hash);
        const char* next = nl < end ? nl + 1 : end;
        h = findHeader(data, next, end);
        body(next, h);
    }
    while (count)
        settle();
    return true;
}

namespace {

// The name and value of a key line in the common form, unquoted name and
// value: views of the line. False for a line that needs readKeyLine.
inline bool plainKeyLine(const char* q, const char* e, Text& name, Text& value) {
    if (*q == '"')
        return false;
    const char* eq = q;
    while (eq < e && *eq != '=')
        ++eq;
    const char* ke = eq;
    while (ke > q && isBlank(ke[-1]))
        --ke;
    name = viewOf(string_view(q, static_cast<size_t>(ke - q)));
    if (eq == e) {
        value = Text();
        return true;
    }
    const char* vb = eq + 1;
    const char* ve = e;
    while (vb < ve && isBlank(*vb))
        ++vb;
    while (ve > vb && isBlank(ve[-1]))
        --ve;
    if (ve - vb >= 2 && *vb == '"' && ve[-1] == '"')
        return false; // a quoted value
    value = vb < ve ? viewOf(string_view(vb, static_cast<size_t>(ve - vb))) : Text();
    return true;
}

} // namespace

void parseKeys(Store& st, int32_t s) {
    Contents& c = *st.c;
    // The keys go to the end of the records, in order: the section's range.
    const size_t before = c.keys.size();
    Section& sec = c.sections[static_cast<size_t>(s)];
    // The slot is brought up to date at the end; fetched while the lines
    // are read, it costs no wait then.
    c.sectionSlots.prefetch(c.sectionTable, sec.hash);
    uint64_t seen = 0;
    auto parseBody = [&](const char* p, const char* end) {
        while (p < end) {
            const char* nl = findNewline(p, end);
            uint8_t eol;
            const char* e = p + textLength(p, nl, end, eol);
            const char* q = p;
            p = nl < end ? nl + 1 : end;
            while (q < e && isBlank(*q))
                ++q;
            if (q == e || *q == ';' || *q == '#')
                continue; // blank or a comment
            Text name, value;
            if (!plainKeyLine(q, e, name, value)) {
                KeyText t = readKeyLine(c, string_view(q, static_cast<size_t>(e - q)), true);
                name = t.name;
                value = t.value;
            }
            uint32_t h = st.rule.hash(name.view());
            // One bit per hash seen in this section: a name whose bit is
            // clear is new without a look at the keys before it.
            const uint64_t bit = uint64_t(1) << (h & 63);
            const int32_t k = (seen & bit) || sec.keyTable.capacity
                                  ? findKey(c, st.rule, sec, name.view(), h)
                                  : kNone;
            seen |= bit;
            if (k != kNone) {
                c.keys[static_cast<size_t>(k)].repeated = true;
                continue;
            }
            if (sec.keyTable.capacity)
                c.keySlots.reserve(sec.keyTable);
            // Names are handed out terminated (by index, in every listing of
            // a section's keys): the copy is cheapest now, with the line at
            // hand and the arena filled in order.
            if (name.kind == kView)
                name = c.arena.copy(name.view());
            // Built in place: a record made on the stack and copied would
            // wait for its own stores.
            Key& key = c.keys.emplace_back();
            key.name = name;
            key.value = value;
            key.hash = h;
            key.section = s;
            key.line = kNone;
            const int32_t added = static_cast<int32_t>(c.keys.size() - 1);
            if (sec.rangeCount++ == 0)
                sec.firstKey = added;
            if (sec.keyTable.capacity)
                c.keySlots.place(sec.keyTable, static_cast<uint32_t>(added), h);
            else if (needsKeyTable(sec.rangeCount))
                ensureKeyTable(c, sec, static_cast<size_t>(sec.rangeCount));
        }
    };
    try {
        c.forEachBlock(sec, [&](int32_t b) {
            if (int32_t r = bodyOf(c, b); r != kNone)
                parseBody(c.lines[r].p, c.lines[r].p + c.lines[r].len);
        });
    } catch (...) {
        c.keys.resize(before);
        sec.rangeCount = 0;
        c.keySlots.drop(sec.keyTable);
        throw;
    }
    sec.keysKnown = true;
    syncSectionSlot(c, s);
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
