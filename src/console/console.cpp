// Console window: opening it and binding the standard streams, and the colour
// scheme. The platform operations are in platform/winconsole.h.
#include <wxsupport/console/console.h>

#include "platform/winconsole.h"

#include <ios>

namespace {

// Attribute bits of ANSI colour numbers 0-7 as foreground; the background
// bits are these shifted left by four.
const unsigned short kForeground[8] = {0, 4, 2, 6, 1, 5, 3, 7};
const unsigned short kIntensity = 0x08;
const int kDefaultColour = 9;
const int kBright = 0x10;
const int kScreenBufferLines = 500;

} // namespace

unsigned short pd_console_color_attribute(int foreground, int background) {
    unsigned short attribute = 0;
    const int fg = foreground & 0x0F;
    if (fg == kDefaultColour) {
        attribute = 7;
    } else {
        if (fg < 8)
            attribute = kForeground[fg];
        if (foreground & kBright)
            attribute += kIntensity;
    }
    const int bg = background & 0x0F;
    if (bg != kDefaultColour) {
        if (bg < 8)
            attribute += static_cast<unsigned short>(kForeground[bg] << 4);
        if (background & kBright)
            attribute += kIntensity << 4;
    }
    return attribute;
}

int pd_console_create() {
    if (!console_alloc())
        return 0;
    int columns = 0;
    int lines = 0;
    if (console_buffer_size(console_stdout, &columns, &lines))
        console_set_buffer_size(console_stdout, columns, kScreenBufferLines);
    // The console exists from here on, so the result is 1: a stream that
    // can't be bound stays where it was, and the others are bound all the same.
    console_bind_stream(console_stdout);
    console_bind_stream(console_stdin);
    console_bind_stream(console_stderr);
    std::ios_base::sync_with_stdio(true);
    return 1;
}

void pd_console_set_color(int foreground, int background) {
    const unsigned short attribute = pd_console_color_attribute(foreground, background);
    console_set_text_attribute(console_stdout, attribute);
    console_set_text_attribute(console_stderr, attribute);
}
