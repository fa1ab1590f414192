// libvesk: the INI store.
//
// A store keeps the file it was opened from as one byte buffer and describes
// it as a doubly linked list of line records that point into that buffer.
// Nothing of an unchanged line is copied: saving an unchanged store writes
// the buffer's bytes back in order. A change rewrites or inserts single line
// records, whose text then lives in a malloc'd block of its own.
//
// Opening only finds the section headers: the body of each block (the lines
// between two headers) stays one raw record. When a section's keys are first
// needed, its bodies are parsed into key records (materialize); line records
// replace the raw bodies only before the section's lines first change
// (explode), so a section that is only read costs no line records. Only
// header lines and NUL bytes can make a file invalid, so opening still finds
// every error.
//
// Sections and keys are records in two vectors. Sections are found through
// an open-addressing hash table; each section owns a slice of one shared slot
// array as the hash table of its keys, so that a section's keys sit together
// in memory while a file is parsed and looked up. Hashes are computed over
// the folded form of a name (see NameRule), so that a lookup folds the query
// once and compares stored names only on a full hash match.
#include <wxsupport/config/inifile.h>

#include <utf8proc.h>

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <climits>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <memory>
#include <new>
#include <string>
#include <string_view>
#include <vector>

#include <fcntl.h>
#ifdef __SSE2__
#include <emmintrin.h>
#endif
#include <libgen.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <time.h>
#include <unistd.h>

struct pdError {
    std::string region;
    std::string message;
};

namespace {

using std::size_t;
using std::string_view;

constexpr int32_t kNone = -1;
// The longest file, line or text the store keeps: lengths are 32 bits.
constexpr size_t kMaxText = 0xFFFFFFF0u;

// ---------------------------------------------------------------------------
// Text: a name or value. It either points into the file buffer (not
// terminated), into the arena (terminated, owned by the arena) or into a
// malloc'd block of its own.
enum TextKind : uint8_t { kView, kTerminated, kOwned };

struct Text {
    const char* p = "";
    uint32_t len = 0;
    uint8_t kind = kTerminated;

    string_view view() const { return string_view(p, len); }
};

void release(Text& t) {
    if (t.kind == kOwned)
        std::free(const_cast<char*>(t.p));
    t = Text();
}

// A malloc'd, terminated copy; throws std::bad_alloc on failure.
Text makeOwned(string_view s) {
    char* m = static_cast<char*>(std::malloc(s.size() + 1));
    if (!m)
        throw std::bad_alloc();
    if (!s.empty())
        std::memcpy(m, s.data(), s.size());
    m[s.size()] = '\0';
    Text t;
    t.p = m;
    t.len = static_cast<uint32_t>(s.size());
    t.kind = kOwned;
    return t;
}

// Allocator for the store's big arrays. A store of a large file touches tens
// of megabytes of fresh memory while it parses, and on virtual machines each
// first touch of a 4 KiB page is expensive; blocks of 1 MiB and more are
// therefore mapped directly and offered to the kernel for transparent huge
// pages. Smaller blocks come from malloc.
constexpr size_t kMapThreshold = size_t(1) << 20;

void* bigAlloc(size_t bytes) {
    if (bytes < kMapThreshold) {
        void* p = std::malloc(bytes);
        if (!p)
            throw std::bad_alloc();
        return p;
    }
    size_t len = (bytes + 4095) & ~size_t(4095);
    void* p = ::mmap(nullptr, len, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (p == MAP_FAILED)
        throw std::bad_alloc();
#ifdef MADV_HUGEPAGE
    ::madvise(p, len, MADV_HUGEPAGE);
#endif
    return p;
}

void bigFree(void* p, size_t bytes) {
    if (!p)
        return;
    if (bytes < kMapThreshold)
        std::free(p);
    else
        ::munmap(p, (bytes + 4095) & ~size_t(4095));
}

template <class T>
struct BigAllocator {
    using value_type = T;
    BigAllocator() = default;
    template <class U>
    BigAllocator(const BigAllocator<U>&) {}
    T* allocate(size_t n) {
        if (n > std::numeric_limits<size_t>::max() / sizeof(T))
            throw std::bad_alloc();
        return static_cast<T*>(bigAlloc(n * sizeof(T)));
    }
    void deallocate(T* p, size_t n) { bigFree(p, n * sizeof(T)); }
    template <class U>
    bool operator==(const BigAllocator<U>&) const {
        return true;
    }
    template <class U>
    bool operator!=(const BigAllocator<U>&) const {
        return false;
    }
};

template <class T>
using BigVector = std::vector<T, BigAllocator<T>>;

// The file's bytes, in memory from bigAlloc.
struct Buffer {
    char* p = nullptr;
    size_t cap = 0;
    Buffer() = default;
    explicit Buffer(size_t n) : p(static_cast<char*>(bigAlloc(n))), cap(n) {}
    ~Buffer() { bigFree(p, cap); }
    Buffer(const Buffer&) = delete;
    Buffer& operator=(const Buffer&) = delete;
    void swap(Buffer& o) {
        std::swap(p, o.p);
        std::swap(cap, o.cap);
    }
    char* get() const { return p; }
};

// Append-only storage for text decoded while parsing and for terminated
// copies made on first read. Freed as a whole with its store. Chunks grow
// from 4 KiB to 2 MiB, so that a small store stays small and a large one
// sits in few (huge) pages.
class Arena {
public:
    Arena() = default;
    ~Arena() {
        for (const Chunk& c : m_chunks)
            bigFree(c.p, c.size);
    }
    Arena(const Arena&) = delete;
    Arena& operator=(const Arena&) = delete;

    char* alloc(size_t n) {
        if (n > m_left) {
            m_next = std::min<size_t>(m_next * 2, kMaxChunk);
            size_t size = std::max(n, m_next);
            m_chunks.reserve(m_chunks.size() + 1);
            char* p = static_cast<char*>(bigAlloc(size));
            m_chunks.push_back(Chunk{p, size});
            m_cur = p;
            m_left = size;
        }
        char* r = m_cur;
        m_cur += n;
        m_left -= n;
        return r;
    }
    Text copy(string_view s) {
        char* m = alloc(s.size() + 1);
        if (!s.empty())
            std::memcpy(m, s.data(), s.size());
        m[s.size()] = '\0';
        Text t;
        t.p = m;
        t.len = static_cast<uint32_t>(s.size());
        t.kind = kTerminated;
        return t;
    }

private:
    struct Chunk {
        char* p;
        size_t size;
    };
    static constexpr size_t kMaxChunk = size_t(2) << 20;
    std::vector<Chunk> m_chunks;
    char* m_cur = nullptr;
    size_t m_left = 0;
    size_t m_next = 2048;
};

// ---------------------------------------------------------------------------
// Names: hashing and comparison under the case rule.

inline bool isBlank(char c) {
    return c == ' ' || c == '\t';
}

// The next '\n' at or after p, or end. Inline: lines are short, and a call
// per line costs more than the search.
inline const char* findNewline(const char* p, const char* end) {
#ifdef __SSE2__
    const __m128i nl = _mm_set1_epi8('\n');
    while (end - p >= 16) {
        __m128i v = _mm_loadu_si128(reinterpret_cast<const __m128i*>(p));
        int m = _mm_movemask_epi8(_mm_cmpeq_epi8(v, nl));
        if (m)
            return p + __builtin_ctz(static_cast<unsigned>(m));
        p += 16;
    }
#endif
    while (p < end && *p != '\n')
        ++p;
    return p;
}

inline uint64_t load64(const char* p) {
    uint64_t w;
    std::memcpy(&w, p, 8);
    return w;
}

inline uint64_t mix(uint64_t h) {
    h ^= h >> 32;
    h *= 0xD6E8FEB86659FD93ULL;
    h ^= h >> 32;
    return h;
}

uint32_t hashBytes(const char* p, size_t n) {
    uint64_t h = 0x9E3779B97F4A7C15ULL ^ (n * 0xFF51AFD7ED558CCDULL);
    while (n >= 8) {
        h = (h ^ load64(p)) * 0x9E3779B97F4A7C15ULL;
        h ^= h >> 29;
        p += 8;
        n -= 8;
    }
    if (n) {
        uint64_t w = 0;
        std::memcpy(&w, p, n);
        h = (h ^ w) * 0x9E3779B97F4A7C15ULL;
        h ^= h >> 29;
    }
    return static_cast<uint32_t>(mix(h) >> 32);
}

// ASCII upper case to lower case in eight bytes at once; the bytes are known
// to be below 0x80.
inline uint64_t asciiLower8(uint64_t w) {
    const uint64_t ones = 0x0101010101010101ULL;
    uint64_t geA = w + ones * (0x80 - 'A');
    uint64_t gtZ = w + ones * (0x80 - 'Z' - 1);
    uint64_t upper = geA & ~gtZ & (ones * 0x80);
    return w | (upper >> 2);
}

inline bool isAscii(const char* p, size_t n) {
    size_t i = 0;
    for (; i + 8 <= n; i += 8)
        if (load64(p + i) & 0x8080808080808080ULL)
            return false;
    for (; i < n; ++i)
        if (static_cast<unsigned char>(p[i]) & 0x80)
            return false;
    return true;
}

// Simple case folding of one code point: the full folding where that is a
// single code point (those are the common mappings), otherwise the lower
// case mapping, which is what the simple folding gives for the rest, but for
// U+0130, which has no simple folding.
int32_t simpleFold(int32_t c) {
    if (c < 0x80)
        return (c >= 'A' && c <= 'Z') ? c + 32 : c;
    if (c == 0x130)
        return c;
    utf8proc_int32_t out[8];
    int boundclass = 0;
    utf8proc_ssize_t n = utf8proc_decompose_char(c, out, 8, UTF8PROC_CASEFOLD, &boundclass);
    if (n == 1)
        return out[0];
    return utf8proc_tolower(c);
}

// The folded form of a name: the name itself when case counts or when it
// isn't valid UTF-8, otherwise its simple case folding.
void foldName(string_view s, bool caseSensitive, std::string& out) {
    out.clear();
    if (caseSensitive) {
        out.assign(s.data(), s.size());
        return;
    }
    const char* p = s.data();
    size_t n = s.size();
    if (isAscii(p, n)) {
        out.resize(n);
        char* d = &out[0];
        size_t i = 0;
        for (; i + 8 <= n; i += 8) {
            uint64_t w = asciiLower8(load64(p + i));
            std::memcpy(d + i, &w, 8);
        }
        for (; i < n; ++i)
            d[i] = (p[i] >= 'A' && p[i] <= 'Z') ? static_cast<char>(p[i] + 32) : p[i];
        return;
    }
    const auto* u = reinterpret_cast<const utf8proc_uint8_t*>(p);
    utf8proc_ssize_t pos = 0, len = static_cast<utf8proc_ssize_t>(n);
    while (pos < len) {
        utf8proc_int32_t c;
        utf8proc_ssize_t k = utf8proc_iterate(u + pos, len - pos, &c);
        if (k <= 0) { // not valid UTF-8: byte by byte
            out.assign(p, n);
            return;
        }
        pos += k;
        utf8proc_uint8_t enc[4];
        utf8proc_ssize_t m = utf8proc_encode_char(simpleFold(c), enc);
        out.append(reinterpret_cast<const char*>(enc), static_cast<size_t>(m));
    }
}

// Hash of the folded form, with a fast path for short ASCII names that folds
// on the stack.
uint32_t hashName(string_view s, bool caseSensitive, std::string& scratch) {
    if (caseSensitive)
        return hashBytes(s.data(), s.size());
    // hashBytes of the ASCII-lowered bytes, folded and hashed in one pass.
    const char* p = s.data();
    size_t n = s.size();
    uint64_t h = 0x9E3779B97F4A7C15ULL ^ (n * 0xFF51AFD7ED558CCDULL);
    const uint64_t high = 0x8080808080808080ULL;
    size_t i = 0;
    for (; i + 8 <= n; i += 8) {
        uint64_t w = load64(p + i);
        if (w & high)
            goto slow;
        h = (h ^ asciiLower8(w)) * 0x9E3779B97F4A7C15ULL;
        h ^= h >> 29;
    }
    if (i < n) {
        uint64_t w = 0;
        std::memcpy(&w, p + i, n - i);
        if (w & high)
            goto slow;
        h = (h ^ asciiLower8(w)) * 0x9E3779B97F4A7C15ULL;
        h ^= h >> 29;
    }
    return static_cast<uint32_t>(mix(h) >> 32);
slow:
    foldName(s, false, scratch);
    return hashBytes(scratch.data(), scratch.size());
}

inline char asciiLower(char c) {
    return (c >= 'A' && c <= 'Z') ? static_cast<char>(c + 32) : c;
}

bool sameName(string_view a, string_view b, bool caseSensitive) {
    if (caseSensitive)
        return a == b;
    bool asciiA = isAscii(a.data(), a.size()), asciiB = isAscii(b.data(), b.size());
    if (asciiA && asciiB) {
        if (a.size() != b.size())
            return false;
        for (size_t i = 0; i < a.size(); ++i)
            if (asciiLower(a[i]) != asciiLower(b[i]))
                return false;
        return true;
    }
    std::string fa, fb;
    foldName(a, false, fa);
    foldName(b, false, fb);
    return fa == fb;
}

// ---------------------------------------------------------------------------
// Quoting. A quoted name or value stands in double quotes with the escapes
// \\ \" \n \r \t; any other backslash stands for itself.

void appendEscaped(std::string& out, string_view s) {
    out += '"';
    for (char c : s) {
        switch (c) {
        case '\\':
            out += "\\\\";
            break;
        case '"':
            out += "\\\"";
            break;
        case '\n':
            out += "\\n";
            break;
        case '\r':
            out += "\\r";
            break;
        case '\t':
            out += "\\t";
            break;
        default:
            out += c;
        }
    }
    out += '"';
}

// Decodes the text between the quotes.
std::string unescape(string_view s) {
    std::string out;
    out.reserve(s.size());
    for (size_t i = 0; i < s.size(); ++i) {
        char c = s[i];
        if (c == '\\' && i + 1 < s.size()) {
            char n = s[i + 1];
            char d = 0;
            switch (n) {
            case '\\':
                d = '\\';
                break;
            case '"':
                d = '"';
                break;
            case 'n':
                d = '\n';
                break;
            case 'r':
                d = '\r';
                break;
            case 't':
                d = '\t';
                break;
            default:
                break;
            }
            if (d) {
                out += d;
                ++i;
                continue;
            }
        }
        out += c;
    }
    return out;
}

// Finds the closing quote of a quoted text that starts at p[0] == '"';
// returns its position or npos.
size_t closingQuote(string_view s) {
    for (size_t i = 1; i < s.size(); ++i) {
        if (s[i] == '\\')
            ++i;
        else if (s[i] == '"')
            return i;
    }
    return string_view::npos;
}

bool hasLineBreak(string_view s) {
    return s.find_first_of("\r\n") != string_view::npos;
}

bool edgeBlank(string_view s) {
    return !s.empty() && (isBlank(s.front()) || isBlank(s.back()));
}

bool valueNeedsQuotes(string_view v) {
    return edgeBlank(v) || hasLineBreak(v) ||
           (v.size() >= 2 && v.front() == '"' && v.back() == '"');
}

bool keyNeedsQuotes(string_view k) {
    if (k.empty())
        return false;
    char f = k.front();
    return f == ';' || f == '#' || f == '[' || f == '"' || edgeBlank(k) || hasLineBreak(k) ||
           k.find('=') != string_view::npos;
}

bool sectionNeedsQuotes(string_view s) {
    return (!s.empty() && s.front() == '"') || edgeBlank(s) || hasLineBreak(s) ||
           s.find(']') != string_view::npos;
}

void appendValue(std::string& out, string_view v) {
    if (valueNeedsQuotes(v))
        appendEscaped(out, v);
    else
        out.append(v.data(), v.size());
}

void appendKey(std::string& out, string_view k) {
    if (keyNeedsQuotes(k))
        appendEscaped(out, k);
    else
        out.append(k.data(), k.size());
}

std::string headerLine(string_view name) {
    std::string out = "[";
    if (sectionNeedsQuotes(name))
        appendEscaped(out, name);
    else
        out.append(name.data(), name.size());
    out += ']';
    return out;
}

// ---------------------------------------------------------------------------
// Line parsing, shared by the parser and by the rewriting of a key line.

inline string_view trim(string_view s) {
    size_t b = 0, e = s.size();
    while (b < e && isBlank(s[b]))
        ++b;
    while (e > b && isBlank(s[e - 1]))
        --e;
    return s.substr(b, e - b);
}

struct KeyLineParts {
    size_t keyBeg, keyEnd; // raw key text within the line, quotes included
    bool quotedKey;
    bool hasEq;
    size_t valBeg, valEnd; // raw value text within the line
};

// Splits a key line (its first non-blank character is neither ';', '#' nor
// '[').
KeyLineParts splitKeyLine(string_view line) {
    KeyLineParts r{};
    size_t n = line.size();
    size_t b = 0;
    while (b < n && isBlank(line[b]))
        ++b;
    r.keyBeg = b;
    size_t eq = string_view::npos;
    if (b < n && line[b] == '"') {
        size_t close = closingQuote(line.substr(b));
        if (close != string_view::npos) {
            size_t after = b + close + 1, j = after;
            while (j < n && isBlank(line[j]))
                ++j;
            if (j == n || line[j] == '=') {
                r.quotedKey = true;
                r.keyEnd = after;
                eq = j < n ? j : string_view::npos;
            }
        }
    }
    if (!r.quotedKey) {
        const void* e = std::memchr(line.data() + b, '=', n - b);
        eq = e ? static_cast<size_t>(static_cast<const char*>(e) - line.data()) : string_view::npos;
        size_t ke = eq == string_view::npos ? n : eq;
        while (ke > b && isBlank(line[ke - 1]))
            --ke;
        r.keyEnd = ke;
    }
    if (eq == string_view::npos) {
        r.hasEq = false;
        r.valBeg = r.valEnd = n;
        return r;
    }
    r.hasEq = true;
    size_t vb = eq + 1, ve = n;
    while (vb < ve && isBlank(line[vb]))
        ++vb;
    while (ve > vb && isBlank(line[ve - 1]))
        --ve;
    r.valBeg = vb;
    r.valEnd = ve;
    return r;
}

// ---------------------------------------------------------------------------
// The store's records.

// kRaw: the unparsed body of a block, all its lines as one record; parsed
// into line records the first time its section's keys are needed.
enum LineKind : uint8_t { kTrivia, kHeader, kKeyLine, kRaw };
// kInBuffer: text and line end are consecutive bytes of the file buffer.
// kSeparateEol: the text is in the buffer or owned, the line end is written
// from the eol field.
enum LineStore : uint8_t { kInBuffer, kBufferText, kOwnedText };

struct Line {
    const char* p;
    uint32_t len; // text without the line end
    uint8_t eol;  // 0 none, 1 LF, 2 CRLF
    uint8_t kind;
    uint8_t store;
    int32_t prev, next;
};

struct Key {
    Text name, value;
    uint32_t hash;
    int32_t sec;
    int32_t line;
    bool dups; // more lines with this name stand in its section
    bool dead;
};

struct Slot {
    uint32_t idx1; // index + 1; 0 is an empty slot
    uint32_t hash;
};

// A plain record, so that a hundred thousand of them cost no allocations: the
// rare parts live in side tables of the store.
struct Section {
    Text name;
    uint32_t hash;
    // Keys in order: the range [firstKey, firstKey + nKeys) of the key
    // vector while the section's keys are consecutive there (the usual case
    // after parsing), otherwise the list lists[list].
    int32_t firstKey;
    int32_t nKeys;
    int32_t list;   // index into Data::lists, or kNone
    int32_t more;   // index into Data::moreBlocks (header lines of later blocks), or kNone
    int32_t header; // header line of the first block
    int32_t tail;   // line after which a new key goes
    uint32_t slotBase, slotCap, slotUsed;
    bool dead;
    bool parsed; // its keys are known (from the raw bodies, or new)
    bool lined;  // its lines are records (the raw bodies are gone)
};

struct Data {
    Buffer buf;
    size_t bufLen = 0;
    bool bom = false;
    bool crlf = false; // line end of new lines
    Arena arena;
    BigVector<Line> lines;
    int32_t lastLine = 0;
    BigVector<Key> keys;
    BigVector<Section> sections;
    BigVector<int32_t> order; // live sections in file order
    BigVector<Slot> secSlots;
    uint32_t secUsed = 0;
    BigVector<Slot> keySlots; // slices, one per section
    size_t keySlotsWaste = 0;
    std::vector<std::vector<int32_t>> lists;
    std::vector<std::vector<int32_t>> moreBlocks;
    std::vector<std::pair<int32_t, int32_t>> dupLines; // (key, line) of repeated keys
    bool anyOwned = false;                             // whether records hold malloc'd text

    int32_t keyCount(const Section& sec) const {
        return sec.list == kNone ? sec.nKeys : static_cast<int32_t>(lists[sec.list].size());
    }
    int32_t keyAt(const Section& sec, int32_t i) const {
        return sec.list == kNone ? sec.firstKey + i : lists[sec.list][static_cast<size_t>(i)];
    }
    // Header lines of every block of the section.
    std::vector<int32_t> blocksOf(const Section& sec) const {
        std::vector<int32_t> b(1, sec.header);
        if (sec.more != kNone)
            b.insert(b.end(), moreBlocks[sec.more].begin(), moreBlocks[sec.more].end());
        return b;
    }

    Data() {
        Line s{};
        s.p = "";
        s.kind = kHeader;
        s.store = kInBuffer;
        s.prev = s.next = kNone;
        lines.push_back(s);
    }
    ~Data() {
        if (!anyOwned)
            return;
        for (Key& k : keys) {
            release(k.name);
            release(k.value);
        }
        for (Section& s : sections)
            release(s.name);
        for (Line& l : lines)
            if (l.store == kOwnedText)
                std::free(const_cast<char*>(l.p));
    }
    Data(const Data&) = delete;
    Data& operator=(const Data&) = delete;
};

} // namespace

struct inifile_store {
    bool caseSensitive = false;
    std::unique_ptr<Data> d{new Data};
    std::string scratch;
};

namespace {

using Store = inifile_store;

// ---------------------------------------------------------------------------
// Section table.

int32_t findSection(Store& st, string_view name, uint32_t h) {
    Data& d = *st.d;
    if (d.secSlots.empty())
        return kNone;
    size_t mask = d.secSlots.size() - 1;
    for (size_t i = h & mask;; i = (i + 1) & mask) {
        const Slot& s = d.secSlots[i];
        if (!s.idx1)
            return kNone;
        if (s.hash == h) {
            Section& sec = d.sections[s.idx1 - 1];
            if (sec.hash == h && sameName(sec.name.view(), name, st.caseSensitive))
                return static_cast<int32_t>(s.idx1 - 1);
        }
    }
}

void placeSection(BigVector<Slot>& slots, uint32_t idx, uint32_t h) {
    size_t mask = slots.size() - 1;
    size_t i = h & mask;
    while (slots[i].idx1)
        i = (i + 1) & mask;
    slots[i].idx1 = idx + 1;
    slots[i].hash = h;
}

void growSectionTable(Data& d) {
    size_t cap = d.secSlots.empty() ? 16 : d.secSlots.size() * 2;
    BigVector<Slot> fresh(cap, Slot{0, 0});
    for (const Slot& s : d.secSlots)
        if (s.idx1)
            placeSection(fresh, s.idx1 - 1, d.sections[s.idx1 - 1].hash);
    d.secSlots.swap(fresh);
}

void insertSection(Data& d, int32_t idx) {
    if ((d.secUsed + 1) * 2 > d.secSlots.size())
        growSectionTable(d);
    placeSection(d.secSlots, static_cast<uint32_t>(idx), d.sections[idx].hash);
    ++d.secUsed;
}

// Removes a slot by backward shifting, so that probes need no tombstones.
template <class HashOf>
void eraseSlot(Slot* slots, size_t cap, size_t i, HashOf hashOf) {
    size_t mask = cap - 1;
    size_t j = i;
    for (;;) {
        j = (j + 1) & mask;
        if (!slots[j].idx1)
            break;
        size_t home = hashOf(slots[j].idx1 - 1) & mask;
        // Move slot j into the hole at i if its home isn't within (i, j].
        bool between = i <= j ? (i < home && home <= j) : (i < home || home <= j);
        if (!between) {
            slots[i] = slots[j];
            i = j;
        }
    }
    slots[i] = Slot{0, 0};
}

void eraseSection(Data& d, int32_t idx) {
    size_t mask = d.secSlots.size() - 1;
    for (size_t i = d.sections[idx].hash & mask;; i = (i + 1) & mask) {
        if (!d.secSlots[i].idx1)
            return;
        if (d.secSlots[i].idx1 == static_cast<uint32_t>(idx) + 1) {
            eraseSlot(d.secSlots.data(), d.secSlots.size(), i,
                      [&d](uint32_t k) { return d.sections[k].hash; });
            --d.secUsed;
            return;
        }
    }
}

// ---------------------------------------------------------------------------
// Key tables: a slice of keySlots per section.

int32_t findKey(Store& st, const Section& sec, string_view name, uint32_t h) {
    if (!sec.slotCap)
        return kNone;
    Data& d = *st.d;
    const Slot* slots = d.keySlots.data() + sec.slotBase;
    size_t mask = sec.slotCap - 1;
    for (size_t i = h & mask;; i = (i + 1) & mask) {
        const Slot& s = slots[i];
        if (!s.idx1)
            return kNone;
        if (s.hash == h) {
            const Key& k = d.keys[s.idx1 - 1];
            if (k.hash == h && sameName(k.name.view(), name, st.caseSensitive))
                return static_cast<int32_t>(s.idx1 - 1);
        }
    }
}

void placeKey(Slot* slots, uint32_t cap, uint32_t idx, uint32_t h) {
    size_t mask = cap - 1;
    size_t i = h & mask;
    while (slots[i].idx1)
        i = (i + 1) & mask;
    slots[i].idx1 = idx + 1;
    slots[i].hash = h;
}

void rebuildKeyTables(Data& d);

// Gives the section a slice of at least cap slots and places its keys again.
void resizeKeySlice(Data& d, Section& sec, uint32_t cap) {
    Slot small[64];
    std::vector<Slot> large;
    Slot* live = small;
    if (sec.slotCap > 64) {
        large.resize(sec.slotCap);
        live = large.data();
    }
    uint32_t nLive = 0;
    for (uint32_t i = 0; i < sec.slotCap; ++i)
        if (d.keySlots[sec.slotBase + i].idx1)
            live[nLive++] = d.keySlots[sec.slotBase + i];
    bool atEnd = sec.slotBase + sec.slotCap == d.keySlots.size();
    if (atEnd) {
        d.keySlots.resize(sec.slotBase);
    } else {
        d.keySlotsWaste += sec.slotCap;
        sec.slotBase = static_cast<uint32_t>(d.keySlots.size());
    }
    d.keySlots.resize(sec.slotBase + static_cast<size_t>(cap), Slot{0, 0});
    sec.slotCap = cap;
    for (uint32_t i = 0; i < nLive; ++i)
        placeKey(d.keySlots.data() + sec.slotBase, cap, live[i].idx1 - 1, live[i].hash);
}

// Key slices are filled to three quarters: ten keys fit in sixteen slots.
inline bool keySliceFull(const Section& sec) {
    return (sec.slotUsed + 1) * 4 > sec.slotCap * 3;
}

void insertKeySlot(Data& d, Section& sec, int32_t idx) {
    if (!sec.slotCap) { // a first slice: sixteen empty slots at the end
        sec.slotBase = static_cast<uint32_t>(d.keySlots.size());
        sec.slotCap = 16;
        d.keySlots.resize(d.keySlots.size() + 16, Slot{0, 0});
    } else if (keySliceFull(sec)) {
        uint32_t cap = sec.slotCap ? sec.slotCap * 2 : 16;
        resizeKeySlice(d, sec, cap);
        if (d.keySlotsWaste > 1024 && d.keySlotsWaste > d.keySlots.size() / 2)
            rebuildKeyTables(d);
    }
    placeKey(d.keySlots.data() + sec.slotBase, sec.slotCap, static_cast<uint32_t>(idx),
             d.keys[idx].hash);
    ++sec.slotUsed;
}

void eraseKeySlot(Data& d, Section& sec, int32_t idx) {
    if (!sec.slotCap)
        return;
    Slot* slots = d.keySlots.data() + sec.slotBase;
    size_t mask = sec.slotCap - 1;
    for (size_t i = d.keys[idx].hash & mask;; i = (i + 1) & mask) {
        if (!slots[i].idx1)
            return;
        if (slots[i].idx1 == static_cast<uint32_t>(idx) + 1) {
            eraseSlot(slots, sec.slotCap, i, [&d](uint32_t k) { return d.keys[k].hash; });
            --sec.slotUsed;
            return;
        }
    }
}

uint32_t capFor(size_t n) {
    uint32_t cap = 16;
    while (cap * 3 < (n + 1) * 4)
        cap *= 2;
    return cap;
}

// Lays out all key slices afresh, without waste.
void rebuildKeyTables(Data& d) {
    size_t total = 0;
    for (int32_t s : d.order)
        total += capFor(static_cast<size_t>(d.keyCount(d.sections[s])));
    BigVector<Slot> fresh(total, Slot{0, 0});
    size_t base = 0;
    for (Section& sec : d.sections)
        sec.slotBase = sec.slotCap = sec.slotUsed = 0;
    for (int32_t s : d.order) {
        Section& sec = d.sections[s];
        sec.slotBase = static_cast<uint32_t>(base);
        sec.slotCap = capFor(static_cast<size_t>(d.keyCount(sec)));
        base += sec.slotCap;
        for (int32_t i = 0; i < d.keyCount(sec); ++i) {
            int32_t k = d.keyAt(sec, i);
            placeKey(fresh.data() + sec.slotBase, sec.slotCap, static_cast<uint32_t>(k),
                     d.keys[k].hash);
            ++sec.slotUsed;
        }
    }
    d.keySlots.swap(fresh);
    d.keySlotsWaste = 0;
}

// After a change of the case rule: hashes and tables follow the new rule.
// Records merged under the old rule stay merged; of records that the new
// rule takes for one, the first in order is found.
void rehashAll(Store& st) {
    Data& d = *st.d;
    d.secSlots.assign(d.secSlots.size(), Slot{0, 0});
    d.secUsed = 0;
    for (int32_t s : d.order) {
        Section& sec = d.sections[s];
        sec.hash = hashName(sec.name.view(), st.caseSensitive, st.scratch);
        if (findSection(st, sec.name.view(), sec.hash) == kNone)
            insertSection(d, s);
    }
    d.keySlots.clear();
    d.keySlotsWaste = 0;
    for (Section& sec : d.sections)
        sec.slotBase = sec.slotCap = sec.slotUsed = 0;
    for (int32_t s : d.order) {
        Section& sec = d.sections[s];
        for (int32_t i = 0; i < d.keyCount(sec); ++i) {
            int32_t k = d.keyAt(sec, i);
            Key& key = d.keys[k];
            key.hash = hashName(key.name.view(), st.caseSensitive, st.scratch);
            if (findKey(st, sec, key.name.view(), key.hash) == kNone)
                insertKeySlot(d, sec, k);
        }
    }
}

// ---------------------------------------------------------------------------
// Line list.

const char* eolText(uint8_t eol) {
    return eol == 2 ? "\r\n" : eol == 1 ? "\n" : "";
}

int32_t newLine(Data& d, uint8_t kind, std::string&& text) {
    Text t = makeOwned(text);
    Line l{};
    l.p = t.p;
    l.len = t.len;
    l.eol = d.crlf ? 2 : 1;
    l.kind = kind;
    l.store = kOwnedText;
    l.prev = l.next = kNone;
    try {
        d.lines.push_back(l);
    } catch (...) {
        release(t);
        throw;
    }
    return static_cast<int32_t>(d.lines.size() - 1);
}

// Room for extra more elements, growing geometrically (a plain reserve of
// size + extra would copy the whole vector on every call).
template <class V>
void reserveMore(V& v, size_t extra) {
    if (v.size() + extra > v.capacity())
        v.reserve(std::max(v.capacity() * 2, v.size() + extra));
}

// Gives a line without a line end (the last of a file without a final line
// end) the store's line end, before another line follows it.
void ensureEol(Data& d, int32_t li) {
    Line& l = d.lines[li];
    if (l.eol)
        return;
    if (li == 0 && l.len == 0)
        return; // the empty head of the list writes nothing
    if (l.kind == kRaw && l.len && l.p[l.len - 1] == '\n')
        return; // a body's own last line end
    // A CR at the end of the line is part of its text: a bare LF after it
    // would make a CRLF of the two and swallow it, so it gets a CRLF.
    const bool endsInCr = l.len && l.p[l.len - 1] == '\r';
    l.eol = (d.crlf || endsInCr) ? 2 : 1;
    if (l.store == kInBuffer)
        l.store = kBufferText;
}

void linkAfter(Data& d, int32_t after, int32_t li) {
    ensureEol(d, after);
    Line& l = d.lines[li];
    l.prev = after;
    l.next = d.lines[after].next;
    if (l.next != kNone)
        d.lines[l.next].prev = li;
    else
        d.lastLine = li;
    d.lines[after].next = li;
}

void unlink(Data& d, int32_t li) {
    Line& l = d.lines[li];
    if (l.prev != kNone)
        d.lines[l.prev].next = l.next;
    if (l.next != kNone)
        d.lines[l.next].prev = l.prev;
    else
        d.lastLine = l.prev;
    if (l.store == kOwnedText)
        std::free(const_cast<char*>(l.p));
    l.p = "";
    l.len = 0;
    l.store = kBufferText;
    l.prev = l.next = kNone;
}

void setLineText(Line& l, std::string&& text) {
    Text t = makeOwned(text);
    if (l.store == kOwnedText)
        std::free(const_cast<char*>(l.p));
    l.p = t.p;
    l.len = t.len;
    l.store = kOwnedText;
}

// ---------------------------------------------------------------------------
// Sections and keys.

const char* cstr(Data& d, Text& t) {
    if (t.kind == kView)
        t = d.arena.copy(t.view());
    return t.p;
}

int32_t lookupSection(Store& st, string_view name) {
    return findSection(st, name, hashName(name, st.caseSensitive, st.scratch));
}

void materialize(Store& st, int32_t s);
void explode(Store& st, int32_t s);

int32_t lookupKey(Store& st, const char* sec, const char* key) {
    if (!sec || !key)
        return kNone;
    int32_t s = lookupSection(st, sec);
    if (s == kNone)
        return kNone;
    materialize(st, s);
    string_view k(key);
    return findKey(st, st.d->sections[s], k, hashName(k, st.caseSensitive, st.scratch));
}

// Adds a section record (no lines).
int32_t addSectionRecord(Store& st, Text name, uint32_t h, int32_t header, bool parsed) {
    Data& d = *st.d;
    Section sec{};
    sec.name = name;
    sec.hash = h;
    sec.list = kNone;
    sec.more = kNone;
    sec.header = header;
    sec.tail = header;
    sec.parsed = parsed;
    sec.lined = parsed;
    d.sections.push_back(sec);
    int32_t idx = static_cast<int32_t>(d.sections.size() - 1);
    d.order.push_back(idx);
    insertSection(d, idx);
    return idx;
}

// A new section at the end of the file, with its header line.
int32_t createSection(Store& st, string_view name, uint32_t h) {
    Data& d = *st.d;
    reserveMore(d.lines, 2);
    reserveMore(d.sections, 1);
    reserveMore(d.order, 1);
    Text t = makeOwned(name);
    int32_t li;
    try {
        li = newLine(d, kHeader, headerLine(name));
    } catch (...) {
        release(t);
        throw;
    }
    d.anyOwned = true;
    int32_t idx = addSectionRecord(st, t, h, li, true);
    linkAfter(d, d.lastLine, li);
    return idx;
}

// Gives the section an explicit key list (may throw; changes nothing then).
void ensureList(Data& d, Section& sec, size_t extra) {
    if (sec.list == kNone) {
        std::vector<int32_t> list;
        list.reserve(static_cast<size_t>(sec.nKeys) + extra);
        for (int32_t i = 0; i < sec.nKeys; ++i)
            list.push_back(sec.firstKey + i);
        d.lists.push_back(std::move(list));
        sec.list = static_cast<int32_t>(d.lists.size() - 1);
    } else {
        reserveMore(d.lists[sec.list], extra);
    }
}

// Whether key k can extend the section's range of consecutive keys.
inline bool extendsRange(const Section& sec, int32_t k) {
    return sec.list == kNone && (sec.nKeys == 0 || sec.firstKey + sec.nKeys == k);
}

void appendKeyToOrder(Data& d, Section& sec, int32_t k) {
    if (extendsRange(sec, k)) {
        if (sec.nKeys == 0)
            sec.firstKey = k;
        ++sec.nKeys;
        return;
    }
    ensureList(d, sec, 8);
    d.lists[sec.list].push_back(k);
}

void removeKeyFromOrder(Data& d, Section& sec, int32_t k) {
    if (sec.list == kNone && sec.nKeys > 0 && k == sec.firstKey + sec.nKeys - 1) {
        --sec.nKeys; // the last of the range
        return;
    }
    if (sec.list == kNone && sec.nKeys > 0 && k == sec.firstKey) {
        ++sec.firstKey;
        --sec.nKeys;
        return;
    }
    ensureList(d, sec, 0);
    std::vector<int32_t>& list = d.lists[sec.list];
    auto it = std::find(list.begin(), list.end(), k);
    if (it != list.end())
        list.erase(it);
}

std::string keyLineText(string_view key, string_view value) {
    std::string line;
    line.reserve(key.size() + value.size() + 8);
    appendKey(line, key);
    line += '=';
    appendValue(line, value);
    return line;
}

void writeValue(Store& st, const char* sec, const char* key, string_view value) {
    Data& d = *st.d;
    if (value.size() > kMaxText / 2 || std::strlen(sec) > kMaxText / 2 ||
        std::strlen(key) > kMaxText / 2)
        throw std::bad_alloc(); // lengths are kept in 32 bits
    string_view sname(sec), kname(key);
    uint32_t sh = hashName(sname, st.caseSensitive, st.scratch);
    int32_t s = findSection(st, sname, sh);
    uint32_t kh = hashName(kname, st.caseSensitive, st.scratch);
    if (s != kNone) {
        explode(st, s);
        int32_t k = findKey(st, d.sections[s], kname, kh);
        if (k != kNone) {
            Key& rec = d.keys[k];
            Line& l = d.lines[rec.line];
            string_view old(l.p, l.len);
            KeyLineParts parts = splitKeyLine(old);
            // The key keeps its spelling, unless it was read as plain text
            // that a new value could turn into something else (a leading
            // '"' that the value might close): then it is written quoted.
            std::string text(old.data(), parts.keyBeg);
            if (!parts.quotedKey && keyNeedsQuotes(rec.name.view()))
                appendKey(text, rec.name.view());
            else
                text.append(old.data() + parts.keyBeg, parts.keyEnd - parts.keyBeg);
            if (parts.hasEq) {
                text.append(old.data() + parts.keyEnd, parts.valBeg - parts.keyEnd);
                appendValue(text, value);
                text.append(old.data() + parts.valEnd, old.size() - parts.valEnd);
            } else {
                text += '=';
                appendValue(text, value);
                text.append(old.data() + parts.keyEnd, old.size() - parts.keyEnd);
            }
            Text v = makeOwned(value);
            d.anyOwned = true;
            try {
                setLineText(l, std::move(text));
            } catch (...) {
                release(v);
                throw;
            }
            release(rec.value);
            rec.value = v;
            return;
        }
    }
    // New key; reserve first so that nothing below fails half-way.
    reserveMore(d.keys, 1);
    reserveMore(d.lines, 2);
    reserveMore(d.keySlots, 64);
    if (s == kNone)
        s = createSection(st, sname, sh);
    Section& secr = d.sections[s];
    if (!extendsRange(secr, static_cast<int32_t>(d.keys.size())))
        ensureList(d, secr, 1);
    Text n = makeOwned(kname);
    Text v;
    int32_t li;
    try {
        v = makeOwned(value);
        li = newLine(d, kKeyLine, keyLineText(kname, value));
    } catch (...) {
        release(n);
        release(v);
        throw;
    }
    Key rec{};
    rec.name = n;
    rec.value = v;
    rec.hash = kh;
    rec.sec = s;
    rec.line = li;
    d.keys.push_back(rec);
    d.anyOwned = true;
    int32_t k = static_cast<int32_t>(d.keys.size() - 1);
    linkAfter(d, secr.tail, li);
    secr.tail = li;
    appendKeyToOrder(d, secr, k);
    insertKeySlot(d, secr, k);
}

// Unlinks the lines of a block after its header, up to the next header.
void unlinkBlockBody(Data& d, int32_t header) {
    int32_t li = d.lines[header].next;
    while (li != kNone && d.lines[li].kind != kHeader) {
        int32_t next = d.lines[li].next;
        unlink(d, li);
        li = next;
    }
}

void removeKeyRecord(Data& d, int32_t k) {
    Key& rec = d.keys[k];
    Section& sec = d.sections[rec.sec];
    auto dropLine = [&](int32_t li) {
        if (sec.tail == li)
            sec.tail = d.lines[li].prev;
        unlink(d, li);
    };
    if (rec.dups) {
        for (auto& dup : d.dupLines) {
            if (dup.first == k) {
                dropLine(dup.second);
                dup.first = kNone;
            }
        }
    }
    dropLine(rec.line);
    eraseKeySlot(d, sec, k);
    removeKeyFromOrder(d, sec, k);
    release(rec.name);
    release(rec.value);
    rec.dead = true;
}

void removeSectionRecord(Data& d, int32_t s) {
    Section& sec = d.sections[s];
    for (int32_t b : d.blocksOf(sec)) {
        unlinkBlockBody(d, b);
        if (b == 0) { // the head of the list stays, empty
            Line& head = d.lines[0];
            if (head.store == kOwnedText)
                std::free(const_cast<char*>(head.p));
            head.p = "";
            head.len = 0;
            head.eol = 0;
            head.store = kInBuffer;
        } else {
            unlink(d, b);
        }
    }
    for (int32_t i = 0; i < d.keyCount(sec); ++i) {
        Key& rec = d.keys[d.keyAt(sec, i)];
        release(rec.name);
        release(rec.value);
        rec.dead = true;
    }
    eraseSection(d, s);
    d.keySlotsWaste += sec.slotCap;
    sec.slotCap = sec.slotUsed = 0;
    if (sec.list != kNone) {
        std::vector<int32_t>().swap(d.lists[sec.list]);
        sec.list = kNone;
    }
    sec.nKeys = 0;
    sec.dead = true;
    release(sec.name);
    d.order.erase(std::find(d.order.begin(), d.order.end(), s));
}

// ---------------------------------------------------------------------------
// Errors.

void setError(pdError** out, std::string region, std::string message) {
    if (!out)
        return;
    try {
        *out = new pdError{std::move(region), std::move(message)};
    } catch (...) {
        *out = nullptr;
    }
}

// Error code of our own for a path that names no regular file.
const int kNotRegularFile = -1;

std::string sysMessage(int err) {
    if (err == kNotRegularFile)
        return "Not a regular file";
    return std::strerror(err);
}

// ---------------------------------------------------------------------------
// Parser.

struct ParseError {
    size_t line; // 1-based; 0 when no line applies
    std::string message;
};

// Opening scans the file for section headers only: each block body becomes
// one kRaw record. A section's bodies are parsed into line and key records
// by materialize() when its keys are first needed, so an application pays
// for the sections it uses. Only header lines and NUL bytes can make a file
// invalid, so every error is found by the scan.
class Parser {
public:
    Parser(Store& st, Data& d) : m_st(st), m_d(d) {}

    bool scan(ParseError& err);
    // Parses the lines of a raw body: with lines false, only into key
    // records; with lines true, into line records after the record `after`,
    // joining each key line to the key record made before. Gives the last
    // line record made.
    int32_t parseBody(int32_t section, int32_t after, const char* p, const char* end, bool lines);

private:
    void addTrivia(const char* p, size_t len, uint8_t eol);
    bool addHeader(string_view content, const char* p, size_t len, uint8_t eol, ParseError& err);
    void addKey(string_view content, const char* p, size_t len, uint8_t eol);
    // Links a new record after m_at and moves m_at to it.
    int32_t pushLine(const char* p, size_t len, uint8_t eol, uint8_t kind) {
        Line l;
        l.p = p;
        l.len = static_cast<uint32_t>(len);
        l.eol = eol;
        l.kind = kind;
        l.store = kInBuffer;
        l.prev = m_at;
        l.next = m_d.lines[m_at].next;
        m_d.lines.push_back(l);
        int32_t li = static_cast<int32_t>(m_d.lines.size() - 1);
        if (l.next != kNone)
            m_d.lines[l.next].prev = li;
        else
            m_d.lastLine = li;
        m_d.lines[m_at].next = li;
        m_at = li;
        return li;
    }
    Text textOf(string_view s) {
        Text t;
        t.p = s.data();
        t.len = static_cast<uint32_t>(s.size());
        t.kind = kView;
        return t;
    }

    Store& m_st;
    Data& m_d;
    int32_t m_cur = kNone; // current section
    int32_t m_at = 0;      // record after which the next one goes
    bool m_lines = true;   // whether parseBody makes line records
};

void Parser::addTrivia(const char* p, size_t len, uint8_t eol) {
    Line& last = m_d.lines[m_at];
    if (m_at != 0 && last.kind == kTrivia && last.store == kInBuffer && last.eol &&
        last.p + last.len + (last.eol == 2 ? 2 : 1) == p) {
        last.len = static_cast<uint32_t>(p + len - last.p);
        last.eol = eol;
        return;
    }
    pushLine(p, len, eol, kTrivia);
}

bool Parser::addHeader(string_view content, const char* p, size_t len, uint8_t eol,
                       ParseError& err) {
    size_t b = content.find('[') + 1;
    string_view rest = content.substr(b);
    Text name;
    bool named = false;
    if (!rest.empty() && rest.front() == '"') {
        size_t close = closingQuote(rest);
        if (close != string_view::npos) {
            size_t j = close + 1;
            while (j < rest.size() && isBlank(rest[j]))
                ++j;
            if (j < rest.size() && rest[j] == ']') {
                name = m_d.arena.copy(unescape(rest.substr(1, close - 1)));
                named = true;
            }
        }
    }
    if (!named) {
        size_t close = rest.find(']');
        if (close == string_view::npos) {
            err.message = "section header without a closing ']'";
            return false;
        }
        name = textOf(trim(rest.substr(0, close)));
    }
    uint32_t h = hashName(name.view(), m_st.caseSensitive, m_st.scratch);
    int32_t s = findSection(m_st, name.view(), h);
    int32_t li = pushLine(p, len, eol, kHeader);
    if (s == kNone) {
        s = addSectionRecord(m_st, name, h, li, false);
    } else {
        Section& sec = m_d.sections[s];
        if (sec.more == kNone) {
            m_d.moreBlocks.emplace_back();
            sec.more = static_cast<int32_t>(m_d.moreBlocks.size() - 1);
        }
        m_d.moreBlocks[sec.more].push_back(li);
        sec.tail = li;
    }
    m_cur = s;
    return true;
}

void Parser::addKey(string_view content, const char* p, size_t len, uint8_t eol) {
    if (m_cur == kNone) { // keys before the first header: section "", block at the list head
        string_view empty(p, 0);
        uint32_t h = hashName(empty, m_st.caseSensitive, m_st.scratch);
        m_cur = findSection(m_st, empty, h);
        if (m_cur == kNone)
            m_cur = addSectionRecord(m_st, Text(), h, 0, true);
    }
    KeyLineParts parts = splitKeyLine(content);
    string_view rawKey = content.substr(parts.keyBeg, parts.keyEnd - parts.keyBeg);
    Text name = parts.quotedKey ? m_d.arena.copy(unescape(rawKey.substr(1, rawKey.size() - 2)))
                                : textOf(rawKey);
    Section& sec = m_d.sections[m_cur];
    uint32_t h = hashName(name.view(), m_st.caseSensitive, m_st.scratch);
    int32_t existing = findKey(m_st, sec, name.view(), h);
    if (m_lines && sec.parsed) { // the keys exist: join the line to its key
        int32_t li = pushLine(p, len, eol, kKeyLine);
        sec.tail = li;
        if (existing != kNone && m_d.keys[existing].line == kNone)
            m_d.keys[existing].line = li;
        else if (existing != kNone)
            m_d.dupLines.emplace_back(existing, li);
        return;
    }
    if (existing != kNone) {
        m_d.keys[existing].dups = true;
        if (m_lines) {
            sec.tail = pushLine(p, len, eol, kKeyLine);
            m_d.dupLines.emplace_back(existing, sec.tail);
        }
        return;
    }
    string_view rawVal = content.substr(parts.valBeg, parts.valEnd - parts.valBeg);
    Text value;
    if (rawVal.size() >= 2 && rawVal.front() == '"' && rawVal.back() == '"')
        value = m_d.arena.copy(unescape(rawVal.substr(1, rawVal.size() - 2)));
    else if (!rawVal.empty())
        value = textOf(rawVal);
    Key k;
    k.name = name;
    k.value = value;
    k.hash = h;
    k.sec = m_cur;
    k.dups = false;
    k.dead = false;
    int32_t ki = static_cast<int32_t>(m_d.keys.size());
    k.line = m_lines ? pushLine(p, len, eol, kKeyLine) : kNone;
    m_d.keys.push_back(k);
    if (m_lines)
        sec.tail = k.line;
    appendKeyToOrder(m_d, sec, ki);
    insertKeySlot(m_d, sec, ki);
}

bool Parser::scan(ParseError& err) {
    const char* base = m_d.buf.get();
    const char* end = base + m_d.bufLen;
    const char* p = base;
    if (m_d.bufLen >= 3 && std::memcmp(p, "\xEF\xBB\xBF", 3) == 0) {
        m_d.bom = true;
        p += 3;
    }
    if (const void* nul = std::memchr(base, 0, m_d.bufLen)) {
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
    m_d.lines.reserve(newlines + brackets + 4);
    m_d.keys.reserve(newlines + 1);
    m_d.sections.reserve(brackets + 2);
    m_d.order.reserve(brackets + 2);
    m_d.keySlots.reserve((brackets + 2) * 16 + newlines * 2);
    size_t secCap = 16;
    while (secCap < (brackets + 2) * 2)
        secCap *= 2;
    m_d.secSlots.assign(secCap, Slot{0, 0});
    m_d.lines[0].p = p;
    m_at = 0;
    bool eolKnown = false;
    bool preamble = true, preambleKeys = false;
    const char* rawBeg = nullptr;
    const char* rawEnd = nullptr;
    auto flushRaw = [&] {
        if (rawBeg)
            pushLine(rawBeg, static_cast<size_t>(rawEnd - rawBeg), 0, kRaw);
        rawBeg = nullptr;
        if (preamble && preambleKeys) { // keys before the first header: section ""
            string_view empty(p, 0);
            uint32_t h = hashName(empty, m_st.caseSensitive, m_st.scratch);
            addSectionRecord(m_st, Text(), h, 0, false);
        }
        preamble = false;
    };
    while (p < end) {
        const char* q = p;
        while (q < end && isBlank(*q))
            ++q;
        const char* e = findNewline(q, end);
        const char* nl = e < end ? e : nullptr;
        const char* next = nl ? nl + 1 : end;
        if (q < next && *q == '[') {
            const char* ce = nl ? nl : end;
            uint8_t eol = 0;
            if (nl) {
                eol = 1;
                if (ce > p && ce[-1] == '\r') {
                    --ce;
                    eol = 2;
                }
            }
            flushRaw();
            size_t len = static_cast<size_t>(ce - p);
            if (!addHeader(string_view(p, len), p, len, eol, err)) {
                err.line = 1 + static_cast<size_t>(std::count(base, p, '\n'));
                return false;
            }
        } else {
            if (preamble && q < next && *q != ';' && *q != '#' && *q != '\n' &&
                !(*q == '\r' && q + 1 < next && q[1] == '\n'))
                preambleKeys = true;
            if (!rawBeg)
                rawBeg = p;
            rawEnd = next;
        }
        if (!eolKnown && nl) {
            m_d.crlf = nl > p && nl[-1] == '\r';
            eolKnown = true;
        }
        p = next;
    }
    flushRaw();
    return true;
}

int32_t Parser::parseBody(int32_t section, int32_t after, const char* p, const char* end,
                          bool lines) {
    m_cur = section;
    m_at = after;
    m_lines = lines;
    while (p < end) {
        const char* e = findNewline(p, end);
        const char* nl = e < end ? e : nullptr;
        const char* ce = nl ? nl : end;
        uint8_t eol = 0;
        if (nl) {
            eol = 1;
            if (ce > p && ce[-1] == '\r') {
                --ce;
                eol = 2;
            }
        }
        size_t len = static_cast<size_t>(ce - p);
        const char* q = p;
        while (q < ce && isBlank(*q))
            ++q;
        if (q == ce || *q == ';' || *q == '#') {
            if (lines)
                addTrivia(p, len, eol);
        } else {
            addKey(string_view(p, len), p, len, eol);
        }
        p = nl ? nl + 1 : end;
    }
    return m_at;
}

// Parses the kRaw bodies of a section into key records; the bodies stay, so
// that a section that is only read never gets line records.
void materialize(Store& st, int32_t s) {
    Data& d = *st.d;
    if (d.sections[s].parsed)
        return;
    std::vector<int32_t> blocks = d.blocksOf(d.sections[s]);
    Parser parser(st, d);
    for (int32_t b : blocks) {
        int32_t r = d.lines[b].next;
        if (r == kNone || d.lines[r].kind != kRaw)
            continue;
        const char* p = d.lines[r].p;
        parser.parseBody(s, b, p, p + d.lines[r].len, false);
    }
    d.sections[s].parsed = true;
}

// Replaces the kRaw bodies of a parsed section by line records, before the
// first change of its lines. Keys keep their records: each key line joins
// the key its name gives, and that under the rule the keys were made with,
// since inifile_set_case_sensitive makes every section's lines first.
void explode(Store& st, int32_t s) {
    Data& d = *st.d;
    materialize(st, s);
    if (d.sections[s].lined)
        return;
    std::vector<int32_t> blocks = d.blocksOf(d.sections[s]);
    size_t lines = 0;
    for (int32_t b : blocks) {
        int32_t r = d.lines[b].next;
        if (r != kNone && d.lines[r].kind == kRaw)
            lines +=
                static_cast<size_t>(std::count(d.lines[r].p, d.lines[r].p + d.lines[r].len, '\n')) +
                1;
    }
    reserveMore(d.lines, lines);
    reserveMore(d.dupLines, 1);
    Parser parser(st, d);
    for (int32_t b : blocks) {
        int32_t r = d.lines[b].next;
        if (r == kNone || d.lines[r].kind != kRaw)
            continue;
        const char* p = d.lines[r].p;
        const char* end = p + d.lines[r].len;
        // A line end the store gave the body, when a line was added after it.
        bool addedEol = d.lines[r].store == kBufferText && d.lines[r].eol;
        unlink(d, r);
        int32_t last = parser.parseBody(s, b, p, end, true);
        if (addedEol)
            ensureEol(d, last);
    }
    d.sections[s].lined = true;
}

void explodeAll(Store& st) {
    for (int32_t s : std::vector<int32_t>(st.d->order.begin(), st.d->order.end()))
        explode(st, s);
}

// ---------------------------------------------------------------------------
// Files.

bool readWholeFile(const char* path, Buffer& buf, size_t& len, int& err) {
    int fd;
    do
        // Non-blocking, so that a FIFO can't hold the caller up; only
        // regular files are read (a device such as /dev/zero never ends).
        fd = ::open(path, O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    while (fd < 0 && errno == EINTR);
    if (fd < 0) {
        err = errno;
        return false;
    }
    struct stat sb;
    int statErr = fstat(fd, &sb) != 0 ? errno : 0;
    if (statErr == 0 && !S_ISREG(sb.st_mode))
        statErr = S_ISDIR(sb.st_mode) ? EISDIR : kNotRegularFile;
    if (statErr != 0) {
        err = statErr;
        ::close(fd);
        return false;
    }
    size_t cap = 0;
    if (sb.st_size > 0)
        cap = static_cast<size_t>(sb.st_size);
    cap += 1; // one more byte to see the end without a second read
    Buffer data(cap);
    size_t got = 0;
    for (;;) {
        if (got == cap) {
            size_t ncap = cap * 2;
            Buffer bigger(ncap);
            std::memcpy(bigger.get(), data.get(), got);
            data.swap(bigger);
            cap = ncap;
        }
        ssize_t r = ::read(fd, data.get() + got, cap - got);
        if (r < 0) {
            if (errno == EINTR)
                continue;
            err = errno;
            ::close(fd);
            return false;
        }
        if (r == 0)
            break;
        got += static_cast<size_t>(r);
    }
    ::close(fd);
    buf.swap(data);
    len = got;
    return true;
}

bool writeAll(int fd, const char* p, size_t n, int& err) {
    while (n) {
        ssize_t w = ::write(fd, p, n);
        if (w < 0) {
            if (errno == EINTR)
                continue;
            err = errno;
            return false;
        }
        if (w == 0) {
            err = EIO;
            return false;
        }
        p += w;
        n -= static_cast<size_t>(w);
    }
    return true;
}

std::string dirOf(const std::string& path) {
    size_t slash = path.rfind('/');
    if (slash == std::string::npos)
        return ".";
    if (slash == 0)
        return "/";
    return path.substr(0, slash);
}

std::string render(const Data& d) {
    size_t total = d.bom ? 3 : 0;
    for (int32_t li = 0; li != kNone; li = d.lines[li].next)
        total += d.lines[li].len + 2;
    std::string out;
    out.reserve(total);
    if (d.bom)
        out.append("\xEF\xBB\xBF", 3);
    const char* runBeg = nullptr;
    const char* runEnd = nullptr;
    for (int32_t li = 0; li != kNone; li = d.lines[li].next) {
        const Line& l = d.lines[li];
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
        out.append(eolText(l.eol));
    }
    if (runBeg)
        out.append(runBeg, static_cast<size_t>(runEnd - runBeg));
    return out;
}

// Writes the bytes to a new file beside the target and renames it over the
// target. On failure the target is untouched and the new file gone.
bool atomicWrite(const std::string& target, const std::string& bytes, int& err) {
    struct stat sb;
    bool exists = ::stat(target.c_str(), &sb) == 0;
    std::string dir = dirOf(target);
    std::string base =
        target.substr(target.rfind('/') == std::string::npos ? 0 : target.rfind('/') + 1);
    int fd = -1;
    std::string tmp;
    struct timespec now;
    ::clock_gettime(CLOCK_MONOTONIC, &now);
    for (int attempt = 0; attempt < 100 && fd < 0; ++attempt) {
        tmp = dir + "/." + base + ".tmp" + std::to_string(::getpid()) + "." +
              std::to_string(now.tv_nsec + attempt);
        do
            fd = ::open(tmp.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
        while (fd < 0 && errno == EINTR);
        if (fd < 0 && errno != EEXIST) {
            err = errno;
            return false;
        }
    }
    if (fd < 0) {
        err = EEXIST;
        return false;
    }
    auto fail = [&](int e) {
        if (fd >= 0)
            ::close(fd);
        ::unlink(tmp.c_str());
        err = e;
        return false;
    };
    if (exists) {
        if (::fchmod(fd, sb.st_mode & 07777) != 0)
            return fail(errno);
        if (geteuid() == 0 || sb.st_uid == geteuid()) {
            if (::fchown(fd, sb.st_uid, sb.st_gid) != 0) {
                // Keeping the owner is best effort; the bits above are kept.
            }
        }
    }
    int e = 0;
    if (!writeAll(fd, bytes.data(), bytes.size(), e))
        return fail(e);
    if (::fsync(fd) != 0)
        return fail(errno);
    int c = ::close(fd);
    fd = -1;
    if (c != 0)
        return fail(errno);
    if (::rename(tmp.c_str(), target.c_str()) != 0)
        return fail(errno);
    int dfd = ::open(dir.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (dfd >= 0) {
        ::fsync(dfd);
        ::close(dfd);
    }
    return true;
}

// A target that is a symbolic link is followed: the file it leads to is
// replaced and the link stays.
bool resolveTarget(const char* path, std::string& target, int& err) {
    struct stat lsb;
    if (::lstat(path, &lsb) == 0 && S_ISLNK(lsb.st_mode)) {
        char* real = ::realpath(path, nullptr);
        if (real) {
            target = real;
            std::free(real);
            return true;
        }
        if (errno != ENOENT) {
            err = errno;
            return false;
        }
        // A dangling link: create the file it names.
        std::string link(path);
        std::vector<char> dest(static_cast<size_t>(lsb.st_size > 0 ? lsb.st_size : 255) + 1);
        ssize_t n = ::readlink(path, dest.data(), dest.size() - 1);
        if (n < 0) {
            err = errno;
            return false;
        }
        std::string to(dest.data(), static_cast<size_t>(n));
        target = (!to.empty() && to[0] == '/') ? to : dirOf(link) + "/" + to;
        return true;
    }
    target = path;
    return true;
}

// ---------------------------------------------------------------------------
// Numbers.

bool parseLong(string_view s, long& out) {
    s = trim(s);
    size_t i = 0;
    bool neg = false;
    if (i < s.size() && (s[i] == '+' || s[i] == '-')) {
        neg = s[i] == '-';
        ++i;
    }
    if (i == s.size())
        return false;
    unsigned long limit = neg ? static_cast<unsigned long>(std::numeric_limits<long>::max()) + 1
                              : static_cast<unsigned long>(std::numeric_limits<long>::max());
    unsigned long v = 0;
    for (; i < s.size(); ++i) {
        char c = s[i];
        if (c < '0' || c > '9')
            return false;
        unsigned digit = static_cast<unsigned>(c - '0');
        if (v > (limit - digit) / 10)
            return false;
        v = v * 10 + digit;
    }
    out = neg ? static_cast<long>(0UL - v) : static_cast<long>(v);
    return true;
}

bool parseDouble(string_view s, double& out) {
    s = trim(s);
    if (s.empty())
        return false;
    bool neg = false;
    if (s.front() == '+' || s.front() == '-') {
        neg = s.front() == '-';
        s.remove_prefix(1);
        if (s.empty() || s.front() == '+' || s.front() == '-')
            return false;
    }
    double v = 0;
    auto r = std::from_chars(s.data(), s.data() + s.size(), v);
    if (r.ec != std::errc() || r.ptr != s.data() + s.size())
        return false;
    out = neg ? -v : v;
    return true;
}

template <class F>
auto guarded(F f, decltype(f()) onFailure) -> decltype(f()) {
    try {
        return f();
    } catch (...) {
        return onFailure;
    }
}

const Section* liveSection(Store* h, const char* sec, int32_t& idx) {
    if (!h || !sec)
        return nullptr;
    idx = lookupSection(*h, sec);
    return idx == kNone ? nullptr : &h->d->sections[idx];
}

} // namespace

// ---------------------------------------------------------------------------
// The C interface.

extern "C" {

inifile inifile_new(void) {
    try {
        return new inifile_store;
    } catch (...) {
        return nullptr;
    }
}

void inifile_delete(inifile h) {
    delete h;
}

void inifile_clear(inifile h) {
    if (!h)
        return;
    try {
        std::unique_ptr<Data> fresh(new Data);
        h->d.swap(fresh);
    } catch (...) {
        // No memory for an empty store: empty the old one in place.
        try {
            Data& d = *h->d;
            while (!d.order.empty())
                removeSectionRecord(d, d.order.back());
        } catch (...) {
        }
    }
}

void inifile_set_case_sensitive(inifile h, int sensitive) {
    if (!h)
        return;
    bool want = sensitive != 0;
    if (want == h->caseSensitive)
        return;
    try {
        explodeAll(*h); // keys merge under the rule they were opened with
    } catch (...) {
        return;
    }
    h->caseSensitive = want;
    try {
        rehashAll(*h);
    } catch (...) {
        h->caseSensitive = !want;
        try {
            rehashAll(*h);
        } catch (...) {
        }
    }
}

int inifile_open(inifile h, const char* path, pdError** error) {
    if (error)
        *error = nullptr;
    if (!h || !path) {
        setError(error, path ? path : "", "no store or no path given");
        return -1;
    }
    try {
        std::unique_ptr<Data> fresh(new Data);
        int err = 0;
        if (!readWholeFile(path, fresh->buf, fresh->bufLen, err)) {
            setError(error, path, sysMessage(err));
            return -1;
        }
        if (fresh->bufLen > kMaxText) { // lengths are kept in 32 bits
            setError(error, path, sysMessage(EFBIG));
            return -1;
        }
        // Parse with the handle's rule into the new data, then swap it in.
        std::unique_ptr<Data> old;
        old.swap(h->d);
        h->d.swap(fresh);
        ParseError perr{0, {}};
        bool ok;
        try {
            ok = Parser(*h, *h->d).scan(perr);
        } catch (...) {
            h->d.swap(old);
            throw;
        }
        if (!ok) {
            h->d.swap(old);
            std::string region = path;
            if (perr.line)
                region += ":" + std::to_string(perr.line);
            setError(error, region, perr.message);
            return -1;
        }
        return 0;
    } catch (const std::bad_alloc&) {
        setError(error, path, sysMessage(ENOMEM));
        return -1;
    } catch (...) {
        setError(error, path, "unexpected failure");
        return -1;
    }
}

int inifile_save(inifile h, const char* path, pdError** error) {
    if (error)
        *error = nullptr;
    if (!h || !path || !*path) {
        setError(error, path ? path : "", "no store or no path given");
        return -1;
    }
    try {
        std::string target;
        int err = 0;
        if (!resolveTarget(path, target, err) || !atomicWrite(target, render(*h->d), err)) {
            setError(error, path, sysMessage(err));
            return -1;
        }
        return 0;
    } catch (const std::bad_alloc&) {
        setError(error, path, sysMessage(ENOMEM));
        return -1;
    } catch (...) {
        setError(error, path, "unexpected failure");
        return -1;
    }
}

int inifile_has_section(inifile h, const char* sec) {
    if (!h || !sec)
        return 0;
    return guarded([&] { return lookupSection(*h, sec) != kNone ? 1 : 0; }, 0);
}

int inifile_has_key(inifile h, const char* sec, const char* key) {
    if (!h)
        return 0;
    return guarded([&] { return lookupKey(*h, sec, key) != kNone ? 1 : 0; }, 0);
}

int inifile_remove_key(inifile h, const char* sec, const char* key) {
    if (!h)
        return 0;
    return guarded(
        [&] {
            int32_t k = lookupKey(*h, sec, key);
            if (k == kNone)
                return 0;
            explode(*h, h->d->keys[k].sec);
            removeKeyRecord(*h->d, k);
            return 1;
        },
        0);
}

long inifile_read_long(inifile h, const char* sec, const char* key, long def) {
    if (!h)
        return def;
    return guarded(
        [&] {
            int32_t k = lookupKey(*h, sec, key);
            long v;
            if (k != kNone && parseLong(h->d->keys[k].value.view(), v))
                return v;
            return def;
        },
        def);
}

double inifile_read_float(inifile h, const char* sec, const char* key, double def) {
    if (!h)
        return def;
    return guarded(
        [&] {
            int32_t k = lookupKey(*h, sec, key);
            double v;
            if (k != kNone && parseDouble(h->d->keys[k].value.view(), v))
                return v;
            return def;
        },
        def);
}

const char* inifile_read_string(inifile h, const char* sec, const char* key, const char* def) {
    const char* fallback = def ? def : "";
    if (!h)
        return fallback;
    return guarded(
        [&] {
            int32_t k = lookupKey(*h, sec, key);
            if (k == kNone)
                return fallback;
            return cstr(*h->d, h->d->keys[k].value);
        },
        fallback);
}

int inifile_write_string(inifile h, const char* sec, const char* key, const char* value) {
    if (!h || !sec || !key || !value)
        return 0;
    return guarded(
        [&] {
            writeValue(*h, sec, key, value);
            return 1;
        },
        0);
}

int inifile_write_long(inifile h, const char* sec, const char* key, long value) {
    char buf[32];
    auto r = std::to_chars(buf, buf + sizeof buf, value);
    *r.ptr = '\0';
    return inifile_write_string(h, sec, key, buf);
}

int inifile_write_float(inifile h, const char* sec, const char* key, double value) {
    char buf[64];
    auto r = std::to_chars(buf, buf + sizeof buf - 1, value);
    *r.ptr = '\0';
    return inifile_write_string(h, sec, key, buf);
}

int inifile_get_section_count(inifile h) {
    return h ? static_cast<int>(h->d->order.size()) : 0;
}

int inifile_get_key_count(inifile h, const char* sec) {
    int32_t s;
    return guarded(
        [&] {
            const Section* p = liveSection(h, sec, s);
            if (!p)
                return 0;
            materialize(*h, s);
            return static_cast<int>(h->d->keyCount(*p));
        },
        0);
}

const char* inifile_get_section_by_index(inifile h, int index) {
    if (!h || index < 0 || static_cast<size_t>(index) >= h->d->order.size())
        return nullptr;
    return guarded(
        [&]() -> const char* {
            Data& d = *h->d;
            return cstr(d, d.sections[d.order[static_cast<size_t>(index)]].name);
        },
        nullptr);
}

const char* inifile_get_key_by_index(inifile h, const char* sec, int index) {
    int32_t s;
    return guarded(
        [&]() -> const char* {
            const Section* p = liveSection(h, sec, s);
            if (!p)
                return nullptr;
            materialize(*h, s);
            if (index < 0 || index >= h->d->keyCount(*p))
                return nullptr;
            Data& d = *h->d;
            return cstr(d, d.keys[d.keyAt(*p, index)].name);
        },
        nullptr);
}

int inifile_remove_section(inifile h, const char* sec) {
    int32_t s;
    return guarded(
        [&] {
            if (!liveSection(h, sec, s))
                return 0;
            removeSectionRecord(*h->d, s);
            return 1;
        },
        0);
}

int inifile_rename_section(inifile h, const char* old_name, const char* new_name) {
    int32_t s;
    if (!new_name)
        return 0;
    return guarded(
        [&] {
            if (!liveSection(h, old_name, s))
                return 0;
            string_view nn(new_name);
            uint32_t nh = hashName(nn, h->caseSensitive, h->scratch);
            if (findSection(*h, nn, nh) != kNone)
                return 0;
            Data& d = *h->d;
            Section& sec = d.sections[s];
            std::vector<int32_t> blocks = d.blocksOf(sec);
            // Prepare every new text first, so that a failure changes nothing.
            std::vector<Text> texts;
            texts.reserve(blocks.size());
            Text newName;
            try {
                newName = makeOwned(nn);
                std::string line = headerLine(nn);
                for (size_t i = 0; i < blocks.size(); ++i)
                    texts.push_back(makeOwned(line));
            } catch (...) {
                for (Text& t : texts)
                    release(t);
                release(newName);
                throw;
            }
            eraseSection(d, s);
            release(sec.name);
            d.anyOwned = true;
            sec.name = newName;
            sec.hash = nh;
            insertSection(d, s);
            for (size_t i = 0; i < blocks.size(); ++i) {
                Line& l = d.lines[blocks[i]];
                if (l.store == kOwnedText)
                    std::free(const_cast<char*>(l.p));
                l.p = texts[i].p;
                l.len = texts[i].len;
                l.store = kOwnedText;
                if (!l.eol)
                    l.eol = d.crlf ? 2 : 1;
            }
            return 1;
        },
        0);
}

int inifile_register_section(inifile h, const char* sec) {
    if (!h || !sec)
        return 0;
    return guarded(
        [&] {
            string_view n(sec);
            uint32_t sh = hashName(n, h->caseSensitive, h->scratch);
            if (findSection(*h, n, sh) != kNone)
                return 0;
            createSection(*h, n, sh);
            return 1;
        },
        0);
}

int inifile_copy_section(inifile h, const char* sec, inifile other) {
    int32_t s;
    if (!other)
        return 0;
    return guarded(
        [&] {
            if (!liveSection(h, sec, s))
                return 0;
            if (other == h) // the same section: nothing to copy
                return 1;
            materialize(*h, s);
            Data& d = *h->d;
            Section& src = d.sections[s];
            const char* name = cstr(d, src.name);
            string_view n(name, src.name.len);
            uint32_t oh = hashName(n, other->caseSensitive, other->scratch);
            if (findSection(*other, n, oh) == kNone)
                createSection(*other, n, oh);
            for (int32_t i = 0; i < d.keyCount(src); ++i) {
                Key& k = d.keys[d.keyAt(src, i)];
                writeValue(*other, name, cstr(d, k.name), k.value.view());
            }
            return 1;
        },
        0);
}

char* pd_strdup(const char* text) {
    if (!text)
        return nullptr;
    size_t n = std::strlen(text) + 1;
    char* copy = static_cast<char*>(std::malloc(n));
    if (copy)
        std::memcpy(copy, text, n);
    return copy;
}

const char* pderror_region(const pdError* e) {
    return e ? e->region.c_str() : "";
}

const char* pderror_message(const pdError* e) {
    return e ? e->message.c_str() : "";
}

void pderror_free(pdError* e) {
    delete e;
}

} // extern "C"
