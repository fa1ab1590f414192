// The operations of a store handle: each catches every failure, so that a
// read gives its fallback and a write gives 0 with the store as it was.
#include "fileio.h"
#include "numbers.h"
#include "parser.h"
#include "store.h"

namespace vesk {
namespace {

// The error of a failure without a reason of its own: memory ran out.
void outOfMemory(inifile_store::Error& error, const char* path) noexcept {
    try {
        error = inifile_store::Error{path, outOfMemoryMessage()};
    } catch (...) {
        // Not even the text: the record stays empty.
    }
}

template <class F>
auto guarded(F f, decltype(f()) onFailure) noexcept -> decltype(f()) {
    try {
        return f();
    } catch (...) {
        return onFailure;
    }
}

} // namespace
} // namespace vesk

using namespace vesk;

namespace {

// Callers often ask for one section many times in a row (its keys one by
// one): the section of the last lookup, when its name is these very bytes,
// else kNone. It is kept only while there are no twins, and then a section
// whose name is these very bytes is the only one the rule takes for them.
int32_t rememberedSection(const Contents& c, string_view name) {
    const int32_t last = c.lastSection;
    return last != kNone && c.sections[static_cast<size_t>(last)].name.view() == name ? last
                                                                                      : kNone;
}

} // namespace

int32_t inifile_store::lookupSection(std::string_view name) const {
    int32_t s = rememberedSection(*c, name);
    if (s != kNone)
        return s;
    s = findSection(*c, rule, name, rule.hash(name));
    if (!c->twins)
        c->lastSection = s;
    return s;
}

int32_t inifile_store::lookupKey(const char* sec, const char* key) {
    Contents& ct = *c;
    const string_view secName(sec), keyName(key);
    const uint32_t kh = rule.hash(keyName);
    int32_t s = rememberedSection(ct, secName);
    if (s == kNone) {
        const uint32_t sh = rule.hash(secName);
        if (ct.twins) {
            s = findSection(ct, rule, secName, sh);
        } else {
            // The slot tells where the section's keys are: their records
            // are read while the section's name is still being compared.
            const SectionSlot* slot =
                ct.sectionSlots.findSlot(ct.sectionTable, sh, [&](uint32_t i) {
                    return rule.same(ct.sections[i].name.view(), secName);
                });
            if (!slot)
                return kNone;
            s = static_cast<int32_t>(slot->index1 - 1);
            ct.lastSection = s;
            if (slot->keyCount != kNone)
                return scanKeys(ct, rule, slot->firstKey, slot->keyCount, keyName, kh);
        }
        if (s == kNone)
            return kNone;
    }
    loadKeys(*this, s);
    return findKey(ct, rule, ct.sections[static_cast<size_t>(s)], keyName, kh);
}

bool inifile_store::open(const char* path, Error& error) noexcept {
    try {
        // Parse with the handle's rule into new contents, then swap them in.
        std::unique_ptr<Contents> fresh(new Contents);
        std::string message;
        if (!readWholeFile(path, fresh->file, fresh->fileLen, message)) {
            error = Error{path, message};
            return false;
        }
        ParseError perr;
        if (!scanFile(*fresh, rule, perr)) {
            error = Error{errorRegion(path, perr.line), perr.message};
            return false;
        }
        c.swap(fresh);
        return true;
    } catch (...) {
        outOfMemory(error, path);
        return false;
    }
}

bool inifile_store::save(const char* path, Error& error) noexcept {
    try {
        String bytes = c->lines.render(c->bom);
        std::string message;
        if (!saveAtomically(path, bytes.data(), bytes.size(), message)) {
            error = Error{path, message};
            return false;
        }
        return true;
    } catch (...) {
        outOfMemory(error, path);
        return false;
    }
}

void inifile_store::clear() noexcept {
    try {
        std::unique_ptr<Contents> fresh(new Contents);
        c.swap(fresh);
    } catch (...) {
        emptyContents(*c); // no memory for new contents: empty these
    }
}

void inifile_store::setCaseSensitive(bool on) noexcept {
    if (on == rule.caseSensitive())
        return;
    try {
        // Keys merge under the rule the lines were read with: every section
        // gets its line records first.
        for (size_t i = 0; i < c->order.size(); ++i)
            expandLines(*this, c->order[i]);
        NameRule next = rule;
        next.setCaseSensitive(on);
        rehashAll(*c, next);
        rule.setCaseSensitive(on);
    } catch (...) {
        // The rule stays; the sections expanded so far read as before.
    }
}

bool inifile_store::hasSection(const char* sec) noexcept {
    return guarded([&] { return lookupSection(sec) != kNone; }, false);
}

bool inifile_store::hasKey(const char* sec, const char* key) noexcept {
    return guarded([&] { return lookupKey(sec, key) != kNone; }, false);
}

const char* inifile_store::readValue(const char* sec, const char* key) noexcept {
    return guarded(
        [&]() -> const char* {
            int32_t k = lookupKey(sec, key);
            return k == kNone ? nullptr : c->terminated(c->keys[static_cast<size_t>(k)].value);
        },
        nullptr);
}

long inifile_store::readLong(const char* sec, const char* key, long def) noexcept {
    return guarded(
        [&] {
            int32_t k = lookupKey(sec, key);
            long v;
            if (k != kNone && parseLong(c->keys[static_cast<size_t>(k)].value.view(), v))
                return v;
            return def;
        },
        def);
}

double inifile_store::readFloat(const char* sec, const char* key, double def) noexcept {
    return guarded(
        [&] {
            int32_t k = lookupKey(sec, key);
            double v;
            if (k != kNone && parseDouble(c->keys[static_cast<size_t>(k)].value.view(), v))
                return v;
            return def;
        },
        def);
}

int inifile_store::write(const char* sec, const char* key, std::string_view value) noexcept {
    return guarded(
        [&] {
            string_view name(key);
            writeKeys(*this, sec, &name, &value, 1);
            return 1;
        },
        0);
}

int inifile_store::removeKey(const char* sec, const char* key) noexcept {
    return guarded(
        [&] {
            int32_t k = lookupKey(sec, key);
            if (k == kNone)
                return 0;
            removeKeyRecord(*this, k);
            return 1;
        },
        0);
}

int inifile_store::sectionCount() const noexcept {
    return static_cast<int>(c->order.size());
}

int inifile_store::keyCount(const char* sec) noexcept {
    return guarded(
        [&] {
            int32_t s = lookupSection(sec);
            if (s == kNone)
                return 0;
            loadKeys(*this, s);
            return static_cast<int>(c->keyCount(c->sections[static_cast<size_t>(s)]));
        },
        0);
}

const char* inifile_store::sectionAt(int index) noexcept {
    if (index < 0 || static_cast<size_t>(index) >= c->order.size())
        return nullptr;
    return guarded(
        [&] {
            const int32_t s = c->order[static_cast<size_t>(index)];
            // Its keys are what a caller asks for next.
            if (!c->twins)
                c->lastSection = s;
            return c->terminated(c->sections[static_cast<size_t>(s)].name);
        },
        static_cast<const char*>(nullptr));
}

const char* inifile_store::keyAt(const char* sec, int index) noexcept {
    return guarded(
        [&]() -> const char* {
            int32_t s = lookupSection(sec);
            if (s == kNone)
                return nullptr;
            loadKeys(*this, s);
            const Section& p = c->sections[static_cast<size_t>(s)];
            if (index < 0 || index >= c->keyCount(p))
                return nullptr;
            return c->terminated(c->keys[static_cast<size_t>(c->keyAt(p, index))].name);
        },
        nullptr);
}

int inifile_store::removeSection(const char* sec) noexcept {
    return guarded(
        [&] {
            int32_t s = lookupSection(sec);
            if (s == kNone)
                return 0;
            removeSectionRecord(*c, s);
            return 1;
        },
        0);
}

int inifile_store::renameSection(const char* oldName, const char* newName) noexcept {
    return guarded(
        [&] {
            int32_t s = lookupSection(oldName);
            string_view nn(newName);
            uint32_t h = rule.hash(nn);
            if (s == kNone || findSection(*c, rule, nn, h) != kNone)
                return 0;
            renameSectionRecord(*this, s, nn, h);
            return 1;
        },
        0);
}

int inifile_store::registerSection(const char* sec) noexcept {
    return guarded(
        [&] {
            if (lookupSection(sec) != kNone)
                return 0;
            writeKeys(*this, sec, nullptr, nullptr, 0);
            return 1;
        },
        0);
}

int inifile_store::copySection(const char* sec, inifile_store& other) noexcept {
    return guarded(
        [&] {
            int32_t s = lookupSection(sec);
            if (s == kNone)
                return 0;
            if (&other == this) // the same section: nothing to copy
                return 1;
            loadKeys(*this, s);
            Section& src = c->sections[static_cast<size_t>(s)];
            size_t n = static_cast<size_t>(c->keyCount(src));
            Vector<string_view> names, values;
            names.reserve(n);
            values.reserve(n);
            for (size_t i = 0; i < n; ++i) {
                const Key& k = c->keys[static_cast<size_t>(c->keyAt(src, static_cast<int32_t>(i)))];
                names.push_back(k.name.view());
                values.push_back(k.value.view());
            }
            writeKeys(other, src.name.view(), names.data(), values.data(), n);
            return 1;
        },
        0);
}
