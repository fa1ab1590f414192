# wxsupport_add_catalog(TARGET_NAME DOMAIN PO_FILE LANG)
#
# Compiles a gettext catalogue with msgfmt --check into
#   ${CMAKE_BINARY_DIR}/share/locale/LANG/LC_MESSAGES/DOMAIN.mo
# as part of the default build (target TARGET_NAME), and installs it under
# share/locale/LANG/LC_MESSAGES/ below the prefix. The build tree's
# share/locale/ thus has the installed layout: a program or test can add it
# as a lookup prefix of wxFileTranslationsLoader as it is.
include_guard(GLOBAL)
include(GNUInstallDirs)

find_program(WXSUPPORT_MSGFMT_EXECUTABLE msgfmt)

function(wxsupport_add_catalog target_name domain po_file lang)
    if(NOT WXSUPPORT_MSGFMT_EXECUTABLE)
        message(FATAL_ERROR "msgfmt not found: install gettext to build the ${lang} "
                            "catalogue ${domain}")
    endif()
    get_filename_component(po_file "${po_file}" ABSOLUTE)
    set(dir "${CMAKE_BINARY_DIR}/share/locale/${lang}/LC_MESSAGES")
    set(mo "${dir}/${domain}.mo")
    add_custom_command(OUTPUT "${mo}"
        COMMAND ${CMAKE_COMMAND} -E make_directory "${dir}"
        COMMAND ${WXSUPPORT_MSGFMT_EXECUTABLE} --check -o "${mo}" "${po_file}"
        DEPENDS "${po_file}"
        COMMENT "Compiling the ${lang} catalogue ${domain}.mo"
        VERBATIM)
    add_custom_target(${target_name} ALL DEPENDS "${mo}")
    install(FILES "${mo}" DESTINATION "${CMAKE_INSTALL_LOCALEDIR}/${lang}/LC_MESSAGES")
endfunction()
