/** \file
 * INI store (libvesk): holds INI data in memory, reads it from and writes it
 * to files. C interface, usable from C and C++; wxIniFile is its C++ face.
 *
 * Use: inifile_new, then inifile_open (or start empty), read and write by
 * section and key, inifile_save to a path, inifile_delete. A handle is used
 * by one thread at a time, for reads too (a read may parse a section);
 * separate handles are independent.
 *
 * File format
 * - UTF-8 text. LF and CRLF line ends and a UTF-8 byte order mark are read and
 *   kept. Bytes that aren't valid UTF-8 are kept as they are.
 * - "[name]" starts a section; blanks (space, tab) around the name are
 *   dropped, and whatever follows the first ']' is ignored (and kept in the
 *   file). A line that starts with '[' and has no ']' makes inifile_open fail.
 * - "key=value": blanks around key and value are dropped; the key ends at the
 *   first '='. A bare "key" line without '=' is a key with an empty value.
 * - A line whose first non-blank character is ';' or '#' is a comment, and so
 *   is a blank line. ';' or '#' after a value belong to the value.
 * - Keys before the first section header belong to the section "" (written
 *   "[]" where the store has to write its header). Those lines are all that
 *   marks it: once they are removed, a saved file has no section "" there.
 * - A section that stands twice forms one section. Of a key that stands twice
 *   in a section, the first line is what reads and writes see; the others stay
 *   in the file untouched, and inifile_remove_key removes them all.
 * - Quoting: a value written in double quotes reads without them, and a key
 *   or section name may be quoted likewise ("k=ey"=v, ["a]b"]). Inside the
 *   quotes `\\`, `\n`, `\r` and `\t` stand for backslash, LF, CR and tab, and
 *   a backslash before a double quote for the quote; any other backslash
 *   stands for itself. A hand-written quoted Windows path therefore needs
 *   doubled backslashes: `"C:\\temp"` (unquoted, `C:\temp` reads as it
 *   stands).
 * - The store quotes on writing only where the plain form wouldn't read back
 *   the same: a value with a line break, with a blank at either end, or that
 *   starts and ends with '"'; a key that contains '=' or a line break, starts
 *   with ';', '#', '[' or '"', or has a blank at either end; a section name
 *   with ']' or a line break, a leading '"', or a blank at either end. So any
 *   name or value without a NUL byte reads back as it was written.
 *
 * Saving keeps the file: a store opened and saved unchanged gives the same
 * bytes (comments, blank lines, order, spacing, line ends, byte order mark,
 * a missing final line end). A changed value rewrites only its own line,
 * keeping the key's spelling and the spacing around '=' (a key read as plain
 * text that starts with '"' is written quoted then). A new key goes
 * directly after the last key line of its section (after its header when it
 * has none), so trailing comments and blank lines stay before the next
 * section; a new section goes at the end of the file as "[name]" and new
 * lines take the file's first line end (LF for a new file). Removing a key
 * removes its line; removing a section removes each of its header lines and
 * every line up to the next header.
 *
 * Names compare without regard to case by default (Unicode simple case
 * folding for valid UTF-8, byte by byte otherwise). Indexes count from 0 in
 * file order (sections and keys in order of first appearance, new ones last).
 *
 * Cost: inifile_open reads the file and finds its section headers; the keys
 * of a section are parsed the first time one of its keys is needed. Lookups
 * take O(1) on average, whatever the size of the store: sections and the keys
 * of sections with more than 16 keys through hash tables, the keys of smaller
 * sections by a scan of their records, which the section's table entry
 * points at (a read in a store far larger than the caches waits for about
 * three memory accesses). The store remembers the section of the last lookup,
 * so that reading or listing one section's keys after another skips it.
 *
 * Texts: all arguments are zero-terminated UTF-8; the store copies what it
 * keeps. A null handle or a null name is never an error: reads give their
 * default (or 0, or NULL), writes and removals do nothing and give 0.
 * Strings that the store returns (values, names) are owned by the store and
 * stay valid until the next call that changes this store: inifile_clear, a
 * successful inifile_open, inifile_set_case_sensitive, any inifile_write_*,
 * inifile_remove_*, inifile_rename_section, inifile_register_section,
 * inifile_copy_section into it, or inifile_delete.
 */
#ifndef WXSUPPORT_CONFIG_INIFILE_H
#define WXSUPPORT_CONFIG_INIFILE_H

#if defined(_WIN32)
#if defined(VESK_BUILDING)
#define VESK_API __declspec(dllexport)
#else
#define VESK_API __declspec(dllimport)
#endif
#else
#define VESK_API __attribute__((visibility("default")))
#endif

#ifdef __cplusplus
extern "C" {
#endif

/** Opaque handle of one store. */
typedef struct inifile_store* inifile;
/** Opaque error record, read through pderror_region and pderror_message. */
typedef struct pdError pdError;

/** A new, empty store, case-insensitive; NULL only when memory runs out. */
VESK_API inifile inifile_new(void);
/** Frees the store and everything it returned; NULL is accepted. */
VESK_API void inifile_delete(inifile h);
/** Removes all sections; the case setting stays. */
VESK_API void inifile_clear(inifile h);
/** 1: names compare exactly; 0 (the default): without regard to case. The
 * setting belongs to the handle and survives inifile_open and inifile_clear;
 * switching it keeps sections and keys merged as they are, later lookups
 * follow the new rule: of names that it takes for one, the first in order is
 * found, and once that is removed the next. */
VESK_API void inifile_set_case_sensitive(inifile h, int sensitive);

/** Reads the whole file into a new store that replaces this one's contents.
 * Only regular files are read: a directory, device, FIFO or socket fails at
 * once ("Not a regular file"; a directory gives strerror(EISDIR)).
 * 0 on success. On failure (missing or unreadable file, a directory, a NUL
 * byte in the text, a '[' line without ']') the contents stay as they were,
 * and *error (preset to NULL) receives a record: region "PATH:LINE" where a
 * line is known, else "PATH"; the message in plain words (strerror's text for
 * system errors). Free it with pderror_free. error may be NULL. */
VESK_API int inifile_open(inifile h, const char* path, pdError** error);
/** Writes the store to path atomically: a temporary file in the same
 * directory, written in full, fsync'ed and renamed over the target, whose
 * permission bits (and owner, where allowed) it keeps. A symbolic link is
 * followed: the file it leads to is replaced, the link stays. 0 on success;
 * on failure the target is untouched, no temporary file is left, and *error
 * receives region "PATH" and strerror's text. */
VESK_API int inifile_save(inifile h, const char* path, pdError** error);

/** 1 if the section exists (a registered, empty one included), else 0. */
VESK_API int inifile_has_section(inifile h, const char* sec);
/** 1 if the key exists in the section, else 0. */
VESK_API int inifile_has_key(inifile h, const char* sec, const char* key);
/** 1 when the key (with every duplicate line of it) went away, 0 if absent. */
VESK_API int inifile_remove_key(inifile h, const char* sec, const char* key);

/** The value as a decimal long: blanks around, an optional sign, digits.
 * def when absent, empty, anything else, or beyond the range of long. */
VESK_API long inifile_read_long(inifile h, const char* sec, const char* key, long def);
/** The value as a double, read in the "C" locale whatever the process locale:
 * blanks around, an optional sign, a decimal number with optional exponent,
 * or inf, infinity, nan (any case). def when absent, empty, out of range of
 * double, or anything else (no hexadecimal, no comma). */
VESK_API double inifile_read_float(inifile h, const char* sec, const char* key, double def);
/** Never NULL: the value, or def itself when the key is absent ("" when def is
 * NULL too). The value is owned by the store (see above). */
VESK_API const char* inifile_read_string(inifile h, const char* sec, const char* key,
                                         const char* def);

/* The write functions create the section and the key if needed (see the
 * file format above for where); 1 when stored, 0 on a null argument or when
 * memory runs out. Every change of a store (these, removals, renaming,
 * registering, copying) that fails leaves the store as it was. */
/** Stores the value in decimal; 1 when stored, 0 on a null argument or when
 * memory runs out. */
VESK_API int inifile_write_long(inifile h, const char* sec, const char* key, long value);
/** Written in the "C" locale, in the shortest form that reads back to the very
 * same double (1.5, 1e+300, inf, nan); 1 when stored, 0 as for write_long. */
VESK_API int inifile_write_float(inifile h, const char* sec, const char* key, double value);
/** Stores a copy of the text; 1 when stored, 0 on a null argument or when
 * memory runs out. */
VESK_API int inifile_write_string(inifile h, const char* sec, const char* key, const char* value);

/** Number of sections (a registered, empty one included). */
VESK_API int inifile_get_section_count(inifile h);
/** 0 when the section is absent. */
VESK_API int inifile_get_key_count(inifile h, const char* sec);
/** The name at index (0-based, file order); NULL when out of range. */
VESK_API const char* inifile_get_section_by_index(inifile h, int index);
/** The key name at index within the section; NULL when out of range or when
 * the section is absent. */
VESK_API const char* inifile_get_key_by_index(inifile h, const char* sec, int index);

/** 1 when the section went away with all its lines, 0 if absent. */
VESK_API int inifile_remove_section(inifile h, const char* sec);
/** Rewrites the section's header lines with the new name. Does nothing and
 * gives 0 when old_name is absent or new_name already exists (the old name in
 * another case included). */
VESK_API int inifile_rename_section(inifile h, const char* old_name, const char* new_name);
/** Adds an empty section at the end (saved as its header line) and gives 1;
 * gives 0 and changes nothing if it exists. */
VESK_API int inifile_register_section(inifile h, const char* sec);
/** Copies the section's keys and values from h into other, creating the
 * section there if needed and overwriting same-named keys (comments are not
 * copied). Copying into the same store changes nothing. 1 when the section
 * exists in h, 0 when it is absent. */
VESK_API int inifile_copy_section(inifile h, const char* sec, inifile other);

/** A copy of text made with malloc, to be released with free; NULL for NULL
 * (and when memory runs out). */
VESK_API char* pd_strdup(const char* text);

/** Where the error happened ("PATH:LINE", "PATH", or ""); never NULL. */
VESK_API const char* pderror_region(const pdError* e);
/** What went wrong, in plain words; never NULL. */
VESK_API const char* pderror_message(const pdError* e);
/** Frees the record; NULL is accepted. */
VESK_API void pderror_free(pdError* e);

#ifdef __cplusplus
}
#endif

#endif /* WXSUPPORT_CONFIG_INIFILE_H */
