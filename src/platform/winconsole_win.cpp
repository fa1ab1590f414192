// Console operations on Windows: the console functions and the runtime's
// stream functions, called directly.
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
    const int fd = _open_osfhandle(reinterpret_cast<intptr_t>(StdHandle(which)), _O_TEXT);
    if (fd == -1)
        return false;
    FILE* stream = _fdopen(fd, which == console_stdin ? "r" : "w");
    if (!stream)
        return false;
    FILE* standard = __acrt_iob_func(StreamIndex(which));
    *standard = *stream;
    setvbuf(standard, nullptr, _IONBF, 0);
    return true;
}

void console_set_text_attribute(ConsoleStd which, unsigned short attribute) {
    SetConsoleTextAttribute(StdHandle(which), attribute);
}
