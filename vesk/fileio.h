// File input and output of the INI store: reading a whole file and the
// atomic save. Paths arrive as the C interface got them (narrow, zero-
// terminated); messages are the system's reason in plain words, UTF-8.
//
// One file per platform implements this header: fileio_posix.cpp with the
// POSIX calls, fileio_win.cpp with the wide API. On Windows a path is read
// as UTF-8 when it is valid UTF-8 and in the ANSI code page otherwise (what
// wxIniFile::Save hands over); the target is replaced with ReplaceFileW
// (existing) or MoveFileExW (new), which keep it whole, old or new, on any
// failure; messages are FormatMessageW's in UTF-8. Nothing else in the store
// calls the system for files.
#pragma once

#include "text.h"

#include <string>

namespace vesk {

// Reads the whole regular file at path into buf (len bytes; buf holds at
// least one byte more). Anything but a regular file fails at once, a
// directory with the system's own text for that, others with "Not a
// regular file"; so does a file longer than kMaxText. False on failure,
// with the reason in message.
bool readWholeFile(const char* path, Buffer& buf, size_t& len, std::string& message);

// Replaces the file at path with the bytes: a temporary file in the same
// directory, written in full, flushed to the disk and renamed over the
// target, which keeps its permissions (and owner, where allowed; on
// Windows its attributes and security). A
// symbolic link is followed: the file it leads to is replaced, the link
// stays. On failure the target is untouched, no temporary file is left,
// and message has the reason.
bool saveAtomically(const char* path, const char* bytes, size_t n, std::string& message);

// The system's text for running out of memory.
std::string outOfMemoryMessage();

// The region of an error record: "PATH:LINE" where a line is known (line
// > 0), else "PATH".
inline std::string errorRegion(const char* path, size_t line) {
    std::string region = path;
    if (line)
        region += ":" + std::to_string(line);
    return region;
}

} // namespace vesk
