/* INI store (libvesk): holds INI data in memory, reads it from and writes it
 * to files. C interface, usable from C and C++; wxIniFile is its C++ face.
 *
 * (File format and behaviour: documented below by the store's author.)
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

/* Opaque handle of one store. */
typedef struct inifile_store* inifile;
/* Opaque error record, read through pderror_region and pderror_message. */
typedef struct pdError pdError;

VESK_API inifile inifile_new(void);
VESK_API void inifile_delete(inifile h);
VESK_API void inifile_clear(inifile h);
VESK_API void inifile_set_case_sensitive(inifile h, int sensitive);

VESK_API int inifile_open(inifile h, const char* path, pdError** error);
VESK_API int inifile_save(inifile h, const char* path, pdError** error);

VESK_API int inifile_has_section(inifile h, const char* sec);
VESK_API int inifile_has_key(inifile h, const char* sec, const char* key);
VESK_API int inifile_remove_key(inifile h, const char* sec, const char* key);

VESK_API long inifile_read_long(inifile h, const char* sec, const char* key, long def);
VESK_API double inifile_read_float(inifile h, const char* sec, const char* key, double def);
VESK_API const char* inifile_read_string(inifile h, const char* sec, const char* key,
                                         const char* def);

VESK_API int inifile_write_long(inifile h, const char* sec, const char* key, long value);
VESK_API int inifile_write_float(inifile h, const char* sec, const char* key, double value);
VESK_API int inifile_write_string(inifile h, const char* sec, const char* key, const char* value);

VESK_API int inifile_get_section_count(inifile h);
VESK_API int inifile_get_key_count(inifile h, const char* sec);
VESK_API const char* inifile_get_section_by_index(inifile h, int index);
VESK_API const char* inifile_get_key_by_index(inifile h, const char* sec, int index);

VESK_API int inifile_remove_section(inifile h, const char* sec);
VESK_API int inifile_rename_section(inifile h, const char* old_name, const char* new_name);
VESK_API int inifile_register_section(inifile h, const char* sec);
VESK_API int inifile_copy_section(inifile h, const char* sec, inifile other);

VESK_API char* pd_strdup(const char* text);

VESK_API const char* pderror_region(const pdError* e);
VESK_API const char* pderror_message(const pdError* e);
VESK_API void pderror_free(pdError* e);

#ifdef __cplusplus
}
#endif

#endif /* WXSUPPORT_CONFIG_INIFILE_H */
