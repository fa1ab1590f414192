# Cross-build for 64-bit Windows with Debian's MinGW-w64 compilers (the posix
# thread model, which std::thread and std::mutex need), tests run through Wine.
#
#   cmake -S . -B build-windows -DCMAKE_TOOLCHAIN_FILE=cmake/mingw-w64-x86_64.cmake
#
# The programs link the compiler's runtime (libgcc, libstdc++, winpthread)
# statically, so they need no DLL beside them and Wine needs no WINEPATH. Wine
# runs with a private prefix in the build folder, no Mono or Gecko installer
# and no debug channels; `wineserver -k` with the same WINEPREFIX ends it.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)

set(WXSUPPORT_MINGW_PREFIX x86_64-w64-mingw32)
find_program(CMAKE_C_COMPILER NAMES ${WXSUPPORT_MINGW_PREFIX}-gcc-posix REQUIRED)
find_program(CMAKE_CXX_COMPILER NAMES ${WXSUPPORT_MINGW_PREFIX}-g++-posix REQUIRED)
find_program(CMAKE_RC_COMPILER NAMES ${WXSUPPORT_MINGW_PREFIX}-windres)

set(CMAKE_FIND_ROOT_PATH /usr/${WXSUPPORT_MINGW_PREFIX})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

set(CMAKE_EXE_LINKER_FLAGS_INIT "-static")
set(CMAKE_SHARED_LINKER_FLAGS_INIT "-static")
set(CMAKE_MODULE_LINKER_FLAGS_INIT "-static")

find_program(WXSUPPORT_WINE NAMES wine wine64)
if(WXSUPPORT_WINE)
    set(CMAKE_CROSSCOMPILING_EMULATOR
        ${CMAKE_COMMAND} -E env WINEPREFIX=${CMAKE_BINARY_DIR}/wineprefix WINEDEBUG=-all
        WINEDLLOVERRIDES=mscoree,mshtml= ${WXSUPPORT_WINE})
endif()
