// File input and output on POSIX systems.
#include "fileio.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <vector>

#include <fcntl.h>
#include <sys/stat.h>
#include <time.h>
#include <unistd.h>

namespace vesk {

namespace {

// Closes a file descriptor when it goes.
struct FileDescriptor {
    int fd;
    ~FileDescriptor() {
        if (fd >= 0)
            ::close(fd);
    }
};

// Error code of our own for a path that names no regular file.
const int kNotRegularFile = -1;

std::string systemMessage(int err) {
    if (err == kNotRegularFile)
        return "Not a regular file";
    return std::strerror(err);
}

bool readAll(int fd, size_t sizeHint, Buffer& buf, size_t& len, int& err) {
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
        ssize_t r = ::read(fd, data.get() + got, cap - got);
        if (r < 0) {
            if (errno == EINTR)
                continue;
            err = errno;
            return false;
        }
        if (r == 0)
            break;
        got += static_cast<size_t>(r);
        if (got > kMaxText) { // lengths are kept in 32 bits
            err = EFBIG;
            return false;
        }
    }
    buf.swap(data);
    len = got;
    return true;
}

bool writeAll(int fd, const char* p, size_t n, int& err) {
    while (n) {
        ssize_t w = ::write(fd, p, n);
        if (w < 0) {
            if (errno == EINTR)
                continue;
            err = errno;
            return false;
        }
        if (w == 0) {
            err = EIO;
            return false;
        }
        p += w;
        n -= static_cast<size_t>(w);
    }
    return true;
}

std::string dirOf(const std::string& path) {
    size_t slash = path.rfind('/');
    if (slash == std::string::npos)
        return ".";
    if (slash == 0)
        return "/";
    return path.substr(0, slash);
}

// A target that is a symbolic link is followed: the file it leads to is
// replaced and the link stays; a dangling link names the file to create.
bool resolveTarget(const char* path, std::string& target, int& err) {
    struct stat lsb;
    if (::lstat(path, &lsb) != 0 || !S_ISLNK(lsb.st_mode)) {
        target = path;
        return true;
    }
    if (char* real = ::realpath(path, nullptr)) {
        target = real;
        std::free(real);
        return true;
    }
    if (errno != ENOENT) {
        err = errno;
        return false;
    }
    std::vector<char> dest(static_cast<size_t>(lsb.st_size > 0 ? lsb.st_size : 255) + 1);
    ssize_t n = ::readlink(path, dest.data(), dest.size() - 1);
    if (n < 0) {
        err = errno;
        return false;
    }
    std::string to(dest.data(), static_cast<size_t>(n));
    target = (!to.empty() && to[0] == '/') ? to : dirOf(path) + "/" + to;
    return true;
}

// Writes the bytes to a new file beside the target and renames it over the
// target. On failure the target is untouched and the new file gone.
bool atomicWrite(const std::string& target, const char* bytes, size_t size, int& err) {
    struct stat sb;
    bool exists = ::stat(target.c_str(), &sb) == 0;
    std::string dir = dirOf(target);
    size_t slash = target.rfind('/');
    std::string base = target.substr(slash == std::string::npos ? 0 : slash + 1);
    int fd = -1;
    std::string tmp;
    struct timespec now;
    ::clock_gettime(CLOCK_MONOTONIC, &now);
    for (int attempt = 0; attempt < 100 && fd < 0; ++attempt) {
        tmp = dir + "/." + base + ".tmp" + std::to_string(::getpid()) + "." +
              std::to_string(now.tv_nsec + attempt);
        do
            fd = ::open(tmp.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
        while (fd < 0 && errno == EINTR);
        if (fd < 0 && errno != EEXIST) {
            err = errno;
            return false;
        }
    }
    if (fd < 0) {
        err = EEXIST;
        return false;
    }
    auto fail = [&](int e) {
        if (fd >= 0)
            ::close(fd);
        ::unlink(tmp.c_str());
        err = e;
        return false;
    };
    if (exists) {
        if (::fchmod(fd, sb.st_mode & 07777) != 0)
            return fail(errno);
        if (geteuid() == 0 || sb.st_uid == geteuid()) {
            if (::fchown(fd, sb.st_uid, sb.st_gid) != 0) {
                // Keeping the owner is best effort; the bits above are kept.
            }
        }
    }
    int e = 0;
    if (!writeAll(fd, bytes, size, e))
        return fail(e);
    if (::fsync(fd) != 0)
        return fail(errno);
    int c = ::close(fd);
    fd = -1;
    if (c != 0)
        return fail(errno);
    if (::rename(tmp.c_str(), target.c_str()) != 0)
        return fail(errno);
    int dfd = ::open(dir.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (dfd >= 0) {
        ::fsync(dfd);
        ::close(dfd);
    }
    return true;
}

} // namespace

bool readWholeFile(const char* path, Buffer& buf, size_t& len, std::string& message) {
    int fd;
    do
        // Non-blocking, so that a FIFO can't hold the caller up; only
        // regular files are read (a device such as /dev/zero never ends).
        fd = ::open(path, O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    while (fd < 0 && errno == EINTR);
    if (fd < 0) {
        message = systemMessage(errno);
        return false;
    }
    FileDescriptor closer{fd}; // also when a buffer can't be had
    struct stat sb;
    int err = ::fstat(fd, &sb) != 0 ? errno : 0;
    if (err == 0 && !S_ISREG(sb.st_mode))
        err = S_ISDIR(sb.st_mode) ? EISDIR : kNotRegularFile;
    if (err == 0 && static_cast<unsigned long long>(sb.st_size) > kMaxText)
        err = EFBIG;
    bool ok = err == 0 &&
              readAll(fd, sb.st_size > 0 ? static_cast<size_t>(sb.st_size) : 0, buf, len, err);
    if (!ok)
        message = systemMessage(err);
    return ok;
}

bool saveAtomically(const char* path, const char* bytes, size_t n, std::string& message) {
    std::string target;
    int err = 0;
    if (!resolveTarget(path, target, err) || !atomicWrite(target, bytes, n, err)) {
        message = systemMessage(err);
        return false;
    }
    return true;
}

std::string outOfMemoryMessage() {
    return std::strerror(ENOMEM);
}

} // namespace vesk
