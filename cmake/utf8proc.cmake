# utf8proc built from its sources as a static library, for platforms where no
# system library is at hand (the Windows cross-build). Gives the same target
# name as the system library found through pkg-config, PkgConfig::UTF8PROC,
# so that the store links it the same way on every platform.
set(_utf8proc_source ${WXSUPPORT_UTF8PROC_SOURCE_DIR}/utf8proc.c)
if(NOT EXISTS ${_utf8proc_source} OR NOT EXISTS ${WXSUPPORT_UTF8PROC_SOURCE_DIR}/utf8proc_data.c)
    message(FATAL_ERROR "WXSUPPORT_UTF8PROC_SOURCE_DIR: no utf8proc sources in "
                        "${WXSUPPORT_UTF8PROC_SOURCE_DIR}")
endif()
# utf8proc.c includes utf8proc_data.c itself.
add_library(wxsupport_utf8proc STATIC ${_utf8proc_source})
target_include_directories(wxsupport_utf8proc SYSTEM PUBLIC ${WXSUPPORT_UTF8PROC_SOURCE_DIR})
# No dllimport/dllexport: the library is linked into the store.
target_compile_definitions(wxsupport_utf8proc PUBLIC UTF8PROC_STATIC)
set_target_properties(wxsupport_utf8proc PROPERTIES
    POSITION_INDEPENDENT_CODE ON C_VISIBILITY_PRESET hidden)
add_library(PkgConfig::UTF8PROC ALIAS wxsupport_utf8proc)
