// Console operations on Windows: the console functions and the runtime's
// stream functions, called directly.
//
// Binding a standard stream differs between the two runtimes:
// - MSVCRT (the older msvcrt.dll; MinGW's default): a descriptor is made from
//   the console's handle and opened as a stream, whose FILE object is copied
//   over the standard stream's. This is the path built and tested here (under
//   Wine): printf, std::cout and std::cerr reach the console, std::cin reads it.
// - UCRT (MSVC 2015 and later; MinGW configured for ucrtbase): FILE is opaque
//   and copying it doesn't rebind the stream, so the standard stream is
//   reopened on the console's devices "CONOUT$" and "CONIN$" instead, the way
//   the runtime documents. Written for those runtimes, not tested here.
#if defined(_MSC_VER) && !defined(_CRT_SECURE_NO_WARNINGS)
#define _CRT_SECURE_NO_WARNINGS // freopen, which freopen_s would only wrap
#endif

#include "platform/winconsole.h"

#include <windows.h>

#include <fcntl.h>
#include <io.h>
#include <stdio.h>

namespace {

HANDLE StdHandle(ConsoleStd which) {
    switch (which) {
    case console_stdin:
        return GetStdHandle(STD_INPUT_HANDLE);
    case console_stdout:
        return GetStdHandle(STD_OUTPUT_HANDLE);
    case console_stderr:
        break;
    }
    return GetStdHandle(STD_ERROR_HANDLE);
}

unsigned StreamIndex(ConsoleStd which) {
    return which == console_stdin ? 0u : which == console_stdout ? 1u : 2u;
}

} // namespace

bool console_alloc() {
    return AllocConsole() != 0;
}

bool console_buffer_size(ConsoleStd which, int* columns, int* lines) {
    CONSOLE_SCREEN_BUFFER_INFO info;
    if (!GetConsoleScreenBufferInfo(StdHandle(which), &info))
        return false;
    *columns = info.dwSize.X;
    *lines = info.dwSize.Y;
    return true;
}

bool console_set_buffer_size(ConsoleStd which, int columns, int lines) {
    COORD size;
    size.X = static_cast<SHORT>(columns);
    size.Y = static_cast<SHORT>(lines);
    return SetConsoleScreenBufferSize(StdHandle(which), size) != 0;
}

bool console_bind_stream(ConsoleStd which) {
    const char* mode = which == console_stdin ? "r" : "w";
    FILE* standard = __acrt_iob_func(StreamIndex(which));
#if defined(_UCRT) || (defined(_MSC_VER) && _MSC_VER >= 1900)
    if (!freopen(which == console_stdin ? "CONIN$" : "CONOUT$", mode, standard))
        return false;
#else
    const int fd = _open_osfhandle(reinterpret_cast<intptr_t>(StdHandle(which)), _O_TEXT);
    if (fd == -1)
        return false;
    FILE* stream = _fdopen(fd, mode);
    if (!stream)
        return false;
    *standard = *stream;
#endif
    return setvbuf(standard, nullptr, _IONBF, 0) == 0;
}

void console_set_text_attribute(ConsoleStd which, unsigned short attribute) {
    SetConsoleTextAttribute(StdHandle(which), attribute);
}
