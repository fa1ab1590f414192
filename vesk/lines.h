// The store's line list: a file as a doubly linked list of line records
// that point into the file's bytes. Nothing of an unchanged line is copied:
// rendering an unchanged list gives the file's bytes back in order. A
// changed or new line holds a malloc'd text of its own.
#pragma once

#include "text.h"

#include <cstdint>

namespace vesk {

constexpr int32_t kNone = -1;

// kBody: the unparsed body of a block (the lines after a header, up to the
// next), all its lines as one record.
enum LineKind : uint8_t { kTrivia, kHeader, kKeyLine, kBody };
// kInBuffer: text and line end are consecutive bytes of the file.
// kBufferText: the text is in the file, the line end is written from eol.
// kOwnedText: the text is malloc'd, the line end is written from eol.
enum LineStore : uint8_t { kInBuffer, kBufferText, kOwnedText };

struct Line {
    const char* p;
    uint32_t len; // text without the line end
    uint8_t eol;  // 0 none, 1 LF, 2 CRLF
    uint8_t kind;
    uint8_t store;
    int32_t prev, next;
};

class LineList {
public:
    // The list starts with an empty record at index 0, the head, which the
    // lines before the first header follow.
    LineList();
    ~LineList();
    LineList(const LineList&) = delete;
    LineList& operator=(const LineList&) = delete;

    Line& operator[](int32_t i) { return m_lines[static_cast<size_t>(i)]; }
    const Line& operator[](int32_t i) const { return m_lines[static_cast<size_t>(i)]; }
    int32_t size() const { return static_cast<int32_t>(m_lines.size()); }
    int32_t last() const { return m_last; }
    // Whether new lines end in CRLF (the file's first line end).
    bool crlf = false;

    // Room for n more records, so that the calls below don't allocate.
    void reserveMore(size_t n);
    // A record, not yet linked, for a text in the file.
    int32_t add(const char* p, size_t len, uint8_t eol, uint8_t kind) noexcept;
    // A record, not yet linked, that takes over an owned text (freed with it)
    // and ends with the store's line end.
    int32_t addOwned(Text text, uint8_t kind) noexcept;
    // Drops the records from index `size` on (never linked).
    void truncate(int32_t size) noexcept;
    // Links record li after record `after`.
    void linkAfter(int32_t after, int32_t li) noexcept;
    // Takes the record out of the list; its text is freed.
    void unlink(int32_t li) noexcept;
    // Replaces the text of a record by an owned text.
    void setText(int32_t li, Text text) noexcept;
    // Gives a line without a line end (the last of a file without a final
    // line end) the store's line end, before another line follows it.
    void ensureEol(int32_t li) noexcept;
    // Back to the head record alone, empty, without allocating.
    void reset() noexcept;
    // The head record empty again (the lines before the first header gone).
    void clearHead() noexcept;

    // The bytes of the whole list, after a byte order mark if bom.
    String render(bool bom) const;

private:
    Vector<Line> m_lines;
    int32_t m_last = 0;
};

} // namespace vesk
