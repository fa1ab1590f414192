// The console operations that pd_console_create and pd_console_set_color are
// built from, private to the library. On Windows each is the console or
// runtime call of the same name; on POSIX systems with X11 the console is a
// pseudo-terminal shown in an xterm window (winconsole_posix.cpp).
#ifndef WXSUPPORT_PLATFORM_WINCONSOLE_H
#define WXSUPPORT_PLATFORM_WINCONSOLE_H

// The three standard handles of the process.
enum ConsoleStd { console_stdin, console_stdout, console_stderr };

// AllocConsole: gives the process a new console; false when it got none.
bool console_alloc();

// GetConsoleScreenBufferInfo on a standard handle: the screen buffer's size in
// character cells. False, with the outputs untouched, when it isn't a console.
bool console_buffer_size(ConsoleStd which, int* columns, int* lines);

// SetConsoleScreenBufferSize on a standard handle.
bool console_set_buffer_size(ConsoleStd which, int columns, int lines);

// Binds a standard stream (stdin "r", stdout and stderr "w") to the console's
// handle in text mode and makes it unbuffered.
bool console_bind_stream(ConsoleStd which);

// SetConsoleTextAttribute on a standard handle; does nothing when the handle
// isn't a console.
void console_set_text_attribute(ConsoleStd which, unsigned short attribute);

#endif // WXSUPPORT_PLATFORM_WINCONSOLE_H
