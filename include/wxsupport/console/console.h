/// \file
/// A console window for the diagnostic output of a GUI program, and the colours
/// of the text written to it.
#ifndef WXSUPPORT_CONSOLE_CONSOLE_H
#define WXSUPPORT_CONSOLE_CONSOLE_H

#include <wxsupport/defs.h>

/// Opens a console window with 500 lines of scroll-back and binds stdout,
/// stdin and stderr (and so std::cout, std::cin, std::cerr) to it, unbuffered.
/// 1 on success; 0, with the streams left alone, when the process already has a
/// console (also one from an earlier call) or none can be opened. Call it
/// before other threads use the standard streams.
WXSUPPORT_API int pd_console_create();

/// Sets the colours of the text written to stdout and stderr from now on.
/// Colour numbers are the ANSI ones (0 black, 1 red, 2 green, 3 yellow, 4 blue,
/// 5 magenta, 6 cyan, 7 white, 9 default, others none), plus 0x10 for bright.
/// A stream that isn't a console gets nothing.
WXSUPPORT_API void pd_console_set_color(int foreground, int background);

/// The console attribute pd_console_set_color applies: foreground in bits 0-3
/// (1 blue, 2 green, 4 red, 8 intensity), background in bits 4-7 likewise.
/// Number 9 gives 7 as foreground and nothing as background, ignoring the
/// bright bit; bits above 0x10 are ignored.
WXSUPPORT_API unsigned short pd_console_color_attribute(int foreground, int background);

#endif // WXSUPPORT_CONSOLE_CONSOLE_H
