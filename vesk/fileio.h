// File input and output of the INI store: reading a whole file and the
// atomic save. Paths arrive as the C interface got them (narrow, zero-
// terminated); messages are the system's reason in plain words, UTF-8.
//
// One file per platform implements this header: fileio_posix.cpp with the
// POSIX calls. A Windows file implements the same functions
// with the wide API: it converts the path (UTF-8 when valid, else the ANSI
// code page), replaces the target with ReplaceFileW or MoveFileExW and
// takes its messages from FormatMessageW. Nothing else in the store calls
// the system for files.
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
// target, which keeps its permissions (and owner, where allowed). A
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
