// File input and output on Windows, with the wide API.
//
// Paths: the store's callers hand a path over as UTF-8 (wxIniFile::Open) or
// in the runtime's locale, the ANSI code page (wxIniFile::Save). A path that
// is valid UTF-8 is read as UTF-8, any other in the ANSI code page. ASCII is
// the same in both; a name in the ANSI code page that happens to be valid
// UTF-8 as well (such as "Ã©", two letters of code page 1252) is read as
// UTF-8.
//
// The atomic save: a temporary file beside the target, written in full and
// flushed (FlushFileBuffers), then put in the target's place. A new target
// gets it with MoveFileExW (MOVEFILE_REPLACE_EXISTING |
// MOVEFILE_WRITE_THROUGH). An existing one is replaced with ReplaceFileW,
// which keeps the target's attributes, security and streams, and which is
// given a backup name so that each of its half-way failures leaves a whole
// file under the target's name:
//   ERROR_UNABLE_TO_REMOVE_REPLACED and ERROR_UNABLE_TO_MOVE_REPLACEMENT:
//     nothing was renamed: the target is the old file; the temporary file is
//     removed and the save fails.
//   ERROR_UNABLE_TO_MOVE_REPLACEMENT_2: the old file was renamed to the
//     backup name, the new one is still the temporary file: the temporary
//     file is moved to the target's name (the save succeeds) or, when that
//     fails too, the backup is moved back (the save fails, the target is the
//     old file). Only if the system refuses both moves is the old file left
//     under the backup name, which the message then gives.
// Any failure removes the temporary file. A target that is open elsewhere
// without sharing delete access is refused with the system's reason (a
// sharing violation) and left as it was.
//
// Links: a symbolic link to a file is followed, as on POSIX: the file it
// leads to is replaced (its final path from GetFinalPathNameByHandleW) and
// the link stays. A dangling link is replaced by the new file. A junction
// or a directory link as the target names a directory, which is refused
// like any directory; junctions and links within the path are followed by
// the system.
#include "fileio.h"

#include <cstring>

#include <windows.h>

namespace vesk {

namespace {

// Error code of our own for a path that names no regular file.
const DWORD kNotRegularFile = 0xE0000001;
// The reasons for a directory where a file is expected. Not every system
// has a text for ERROR_DIRECTORY_NOT_SUPPORTED; the POSIX text stands in.
const DWORD kIsDirectory = 0xE0000002;
// ERROR_DIRECTORY_NOT_SUPPORTED, which older SDK headers (MinGW's) lack.
const DWORD kDirectoryNotSupported = 336;

// Closes a handle when it goes.
struct Handle {
    HANDLE h;
    ~Handle() {
        if (h != INVALID_HANDLE_VALUE)
            ::CloseHandle(h);
    }
};

std::string toUtf8(const wchar_t* w, int n) {
    if (n <= 0)
        return std::string();
    int len = ::WideCharToMultiByte(CP_UTF8, 0, w, n, nullptr, 0, nullptr, nullptr);
    std::string out(static_cast<size_t>(len > 0 ? len : 0), '\0');
    if (len > 0)
        ::WideCharToMultiByte(CP_UTF8, 0, w, n, &out[0], len, nullptr, nullptr);
    return out;
}

// The system's text for an error, in UTF-8, without the line end it has.
std::string systemMessage(DWORD err) {
    if (err == kNotRegularFile)
        return "Not a regular file";
    DWORD code = err == kIsDirectory ? kDirectoryNotSupported : err;
    wchar_t* text = nullptr;
    DWORD n = ::FormatMessageW(FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM |
                                   FORMAT_MESSAGE_IGNORE_INSERTS,
                               nullptr, code, 0, reinterpret_cast<wchar_t*>(&text), 0, nullptr);
    while (n && (text[n - 1] == L'\r' || text[n - 1] == L'\n' || text[n - 1] == L' '))
        --n;
    std::string message = n ? toUtf8(text, static_cast<int>(n)) : std::string();
    ::LocalFree(text);
    if (!message.empty())
        return message;
    if (err == kIsDirectory)
        return "Is a directory";
    return "System error " + std::to_string(err);
}

// The path as UTF-16: UTF-8 when it is valid UTF-8, else the ANSI code page.
std::wstring widePath(const char* path) {
    int n = ::MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, path, -1, nullptr, 0);
    UINT page = CP_UTF8;
    DWORD flags = MB_ERR_INVALID_CHARS;
    if (n <= 0) {
        page = CP_ACP;
        flags = 0;
        n = ::MultiByteToWideChar(page, flags, path, -1, nullptr, 0);
    }
    std::wstring w(static_cast<size_t>(n > 0 ? n : 1), L'\0');
    if (n > 0)
        ::MultiByteToWideChar(page, flags, path, -1, &w[0], n);
    w.resize(w.size() - 1); // the terminator
    return w;
}

// The directory part of a path with its separator ("" for a bare name).
std::wstring dirPrefix(const std::wstring& path) {
    size_t sep = path.find_last_of(L"\\/:");
    return sep == std::wstring::npos ? std::wstring() : path.substr(0, sep + 1);
}

bool readAll(HANDLE h, size_t sizeHint, Buffer& buf, size_t& len, DWORD& err) {
    size_t cap = sizeHint + 1; // one more byte to see the end without a second read
    Buffer data(cap);
    size_t got = 0;
    for (;;) {
        if (got == cap) {
            Buffer bigger(cap * 2);
            std::memcpy(bigger.get(), data.get(), got);
            data.swap(bigger);
            cap *= 2;
        }
        size_t want = cap - got;
        DWORD chunk = want > 0x40000000u ? 0x40000000u : static_cast<DWORD>(want);
        DWORD r = 0;
        if (!::ReadFile(h, data.get() + got, chunk, &r, nullptr)) {
            err = ::GetLastError();
            return false;
        }
        if (r == 0)
            break;
        got += r;
        if (got > kMaxText) { // lengths are kept in 32 bits
            err = ERROR_FILE_TOO_LARGE;
            return false;
        }
    }
    buf.swap(data);
    len = got;
    return true;
}

bool writeAll(HANDLE h, const char* p, size_t n, DWORD& err) {
    while (n) {
        DWORD chunk = n > 0x40000000u ? 0x40000000u : static_cast<DWORD>(n);
        DWORD w = 0;
        if (!::WriteFile(h, p, chunk, &w, nullptr)) {
            err = ::GetLastError();
            return false;
        }
        if (w == 0) {
            err = ERROR_WRITE_FAULT;
            return false;
        }
        p += w;
        n -= w;
    }
    return true;
}

// The file a save replaces, and whether it exists: a symbolic link to a
// file is followed to the file's final path. A directory (a junction or a
// directory link too) is refused.
bool resolveTarget(const std::wstring& path, std::wstring& target, bool& exists, DWORD& err) {
    target = path;
    DWORD attrs = ::GetFileAttributesW(path.c_str());
    exists = attrs != INVALID_FILE_ATTRIBUTES;
    if (!exists)
        return true; // new, or a dangling link, which the new file replaces
    if (attrs & FILE_ATTRIBUTE_DIRECTORY) {
        err = kIsDirectory;
        return false;
    }
    if (!(attrs & FILE_ATTRIBUTE_REPARSE_POINT))
        return true;
    Handle h{::CreateFileW(path.c_str(), 0, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                           nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr)};
    if (h.h == INVALID_HANDLE_VALUE) {
        err = ::GetLastError();
        if (err != ERROR_FILE_NOT_FOUND && err != ERROR_PATH_NOT_FOUND)
            return false;
        exists = false; // dangling
        return true;
    }
    DWORD n = ::GetFinalPathNameByHandleW(h.h, nullptr, 0, FILE_NAME_NORMALIZED);
    std::wstring final(n, L'\0');
    if (n == 0 || (n = ::GetFinalPathNameByHandleW(h.h, &final[0], n, FILE_NAME_NORMALIZED)) == 0) {
        err = ::GetLastError();
        return false;
    }
    final.resize(n);
    target = final;
    return true;
}

// A unique name beside the target, for the new file or the old one's backup.
std::wstring sideName(const std::wstring& target, const wchar_t* kind, unsigned attempt) {
    std::wstring prefix = dirPrefix(target);
    LARGE_INTEGER now;
    ::QueryPerformanceCounter(&now);
    return prefix + target.substr(prefix.size()) + kind + std::to_wstring(::GetCurrentProcessId()) +
           L"." + std::to_wstring(static_cast<unsigned long long>(now.QuadPart) + attempt);
}

// The reason a replacement failed: for a target that can't be opened for
// deletion (open elsewhere without sharing, say) the system's reason for
// that, else ReplaceFileW's own.
DWORD replaceFailure(const std::wstring& target, DWORD err) {
    HANDLE h = ::CreateFileW(target.c_str(), DELETE,
                             FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                             OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (h == INVALID_HANDLE_VALUE)
        return ::GetLastError();
    ::CloseHandle(h);
    return err;
}

// Puts the finished temporary file in the target's place; see the top of
// the file for the outcomes of ReplaceFileW.
bool replaceTarget(const std::wstring& tmp, const std::wstring& target, bool exists, DWORD& err,
                   std::string& note) {
    const DWORD moveFlags = MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH;
    if (!exists) {
        if (::MoveFileExW(tmp.c_str(), target.c_str(), moveFlags))
            return true;
        err = ::GetLastError();
        return false;
    }
    std::wstring backup = sideName(target, L".old", 0);
    DWORD attrs = ::GetFileAttributesW(target.c_str());
    if (::ReplaceFileW(target.c_str(), tmp.c_str(), backup.c_str(), REPLACEFILE_IGNORE_MERGE_ERRORS,
                       nullptr, nullptr)) {
        ::DeleteFileW(backup.c_str());
        // Windows' ReplaceFileW keeps the attributes; not every
        // implementation does (Wine's doesn't), so they are checked.
        if (attrs != INVALID_FILE_ATTRIBUTES && ::GetFileAttributesW(target.c_str()) != attrs)
            ::SetFileAttributesW(target.c_str(), attrs);
        return true;
    }
    err = ::GetLastError();
    switch (err) {
    case ERROR_UNABLE_TO_MOVE_REPLACEMENT_2:
        // The old file is the backup now, the new one still the temporary.
        if (::MoveFileExW(tmp.c_str(), target.c_str(), moveFlags)) {
            ::DeleteFileW(backup.c_str());
            return true;
        }
        err = ::GetLastError();
        if (!::MoveFileExW(backup.c_str(), target.c_str(), moveFlags))
            note = " (the old file is kept as " +
                   toUtf8(backup.c_str(), static_cast<int>(backup.size())) + ")";
        return false;
    case ERROR_FILE_NOT_FOUND:
        // The target went away since it was looked at: it is new again.
        if (::GetFileAttributesW(target.c_str()) == INVALID_FILE_ATTRIBUTES)
            return replaceTarget(tmp, target, false, err, note);
        return false;
    case ERROR_UNABLE_TO_REMOVE_REPLACED:
    case ERROR_UNABLE_TO_MOVE_REPLACEMENT:
    default:
        // Nothing was renamed: the target is the old file.
        err = replaceFailure(target, err);
        return false;
    }
}

// Writes the bytes to a new file beside the target and puts it in the
// target's place. On failure the target is whole and the new file gone.
bool atomicWrite(const std::wstring& target, bool exists, const char* bytes, size_t size,
                 DWORD& err, std::string& note) {
    std::wstring tmp;
    HANDLE h = INVALID_HANDLE_VALUE;
    for (unsigned attempt = 0; attempt < 100 && h == INVALID_HANDLE_VALUE; ++attempt) {
        tmp = sideName(target, L".tmp", attempt);
        h = ::CreateFileW(tmp.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW, FILE_ATTRIBUTE_NORMAL,
                          nullptr);
        if (h == INVALID_HANDLE_VALUE) {
            err = ::GetLastError();
            if (err != ERROR_FILE_EXISTS && err != ERROR_ALREADY_EXISTS)
                return false;
        }
    }
    if (h == INVALID_HANDLE_VALUE)
        return false;
    bool ok = writeAll(h, bytes, size, err);
    if (ok && !::FlushFileBuffers(h)) {
        err = ::GetLastError();
        ok = false;
    }
    if (!::CloseHandle(h) && ok) {
        err = ::GetLastError();
        ok = false;
    }
    ok = ok && replaceTarget(tmp, target, exists, err, note);
    if (!ok)
        ::DeleteFileW(tmp.c_str());
    return ok;
}

} // namespace

bool readWholeFile(const char* path, Buffer& buf, size_t& len, std::string& message) {
    // Backup semantics, so that a directory opens and is told apart.
    Handle h{::CreateFileW(widePath(path).c_str(), GENERIC_READ,
                           FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                           OPEN_EXISTING, FILE_FLAG_SEQUENTIAL_SCAN | FILE_FLAG_BACKUP_SEMANTICS,
                           nullptr)};
    if (h.h == INVALID_HANDLE_VALUE) {
        message = systemMessage(::GetLastError());
        return false;
    }
    DWORD err = 0;
    BY_HANDLE_FILE_INFORMATION info = {};
    if (!::GetFileInformationByHandle(h.h, &info))
        err = ::GetLastError();
    else if (info.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY)
        err = kIsDirectory;
    else if (::GetFileType(h.h) != FILE_TYPE_DISK)
        err = kNotRegularFile;
    unsigned long long size =
        (static_cast<unsigned long long>(info.nFileSizeHigh) << 32) | info.nFileSizeLow;
    if (err == 0 && size > kMaxText)
        err = ERROR_FILE_TOO_LARGE;
    bool ok = err == 0 && readAll(h.h, static_cast<size_t>(size), buf, len, err);
    if (!ok)
        message = systemMessage(err);
    return ok;
}

bool saveAtomically(const char* path, const char* bytes, size_t n, std::string& message) {
    std::wstring target;
    bool exists = false;
    DWORD err = 0;
    std::string note;
    if (!resolveTarget(widePath(path), target, exists, err) ||
        !atomicWrite(target, exists, bytes, n, err, note)) {
        message = systemMessage(err) + note;
        return false;
    }
    return true;
}

std::string outOfMemoryMessage() {
    return systemMessage(ERROR_NOT_ENOUGH_MEMORY);
}

} // namespace vesk
