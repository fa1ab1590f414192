// libvesk's C interface: each function checks its arguments and makes one
// call on the store (store.h), which catches every failure itself.
#include <wxsupport/config/inifile.h>

#include "numbers.h"
#include "store.h"

#include <cstdlib>
#include <cstring>
#include <new>
#include <string>

struct pdError {
    std::string region;
    std::string message;
};

namespace {

// Hands an error over through the out-argument, if one was given (none when
// even the record can't be had).
int fail(pdError** out, const char* region, const char* message) {
    if (out) {
        try {
            *out = new pdError{region, message};
        } catch (...) {
            *out = nullptr;
        }
    }
    return -1;
}

} // namespace

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
    if (h)
        h->clear();
}

void inifile_set_case_sensitive(inifile h, int sensitive) {
    if (h)
        h->setCaseSensitive(sensitive != 0);
}

int inifile_open(inifile h, const char* path, pdError** error) {
    if (error)
        *error = nullptr;
    inifile_store::Error e;
    if (!h || !path)
        return fail(error, path ? path : "", "no store or no path given");
    return h->open(path, e) ? 0 : fail(error, e.region.c_str(), e.message.c_str());
}

int inifile_save(inifile h, const char* path, pdError** error) {
    if (error)
        *error = nullptr;
    inifile_store::Error e;
    if (!h || !path || !*path)
        return fail(error, path ? path : "", "no store or no path given");
    return h->save(path, e) ? 0 : fail(error, e.region.c_str(), e.message.c_str());
}

int inifile_has_section(inifile h, const char* sec) {
    return h && sec && h->hasSection(sec) ? 1 : 0;
}

int inifile_has_key(inifile h, const char* sec, const char* key) {
    return h && sec && key && h->hasKey(sec, key) ? 1 : 0;
}

int inifile_remove_key(inifile h, const char* sec, const char* key) {
    return h && sec && key ? h->removeKey(sec, key) : 0;
}

long inifile_read_long(inifile h, const char* sec, const char* key, long def) {
    return h && sec && key ? h->readLong(sec, key, def) : def;
}

double inifile_read_float(inifile h, const char* sec, const char* key, double def) {
    return h && sec && key ? h->readFloat(sec, key, def) : def;
}

const char* inifile_read_string(inifile h, const char* sec, const char* key, const char* def) {
    const char* value = h && sec && key ? h->readValue(sec, key) : nullptr;
    return value ? value : def ? def : "";
}

int inifile_write_string(inifile h, const char* sec, const char* key, const char* value) {
    return h && sec && key && value ? h->write(sec, key, value) : 0;
}

int inifile_write_long(inifile h, const char* sec, const char* key, long value) {
    char buf[32];
    vesk::formatLong(value, buf);
    return inifile_write_string(h, sec, key, buf);
}

int inifile_write_float(inifile h, const char* sec, const char* key, double value) {
    char buf[64];
    vesk::formatDouble(value, buf);
    return inifile_write_string(h, sec, key, buf);
}

int inifile_get_section_count(inifile h) {
    return h ? h->sectionCount() : 0;
}

int inifile_get_key_count(inifile h, const char* sec) {
    return h && sec ? h->keyCount(sec) : 0;
}

const char* inifile_get_section_by_index(inifile h, int index) {
    return h ? h->sectionAt(index) : nullptr;
}

const char* inifile_get_key_by_index(inifile h, const char* sec, int index) {
    return h && sec ? h->keyAt(sec, index) : nullptr;
}

int inifile_remove_section(inifile h, const char* sec) {
    return h && sec ? h->removeSection(sec) : 0;
}

int inifile_rename_section(inifile h, const char* old_name, const char* new_name) {
    return h && old_name && new_name ? h->renameSection(old_name, new_name) : 0;
}

int inifile_register_section(inifile h, const char* sec) {
    return h && sec ? h->registerSection(sec) : 0;
}

int inifile_copy_section(inifile h, const char* sec, inifile other) {
    return h && sec && other ? h->copySection(sec, *other) : 0;
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
