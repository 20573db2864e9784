// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "core/readfile_p.h"

#include "core/firstanswer_p.h"

#include "core/uniquefd_p.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace Vyx::detail {

namespace {

// Reads fd from offset to its end with pread, appending to out. The
// buffer is small: this reads only what came after the size fstat gave.
bool appendFrom(int fd, off_t offset, std::string& out)
{
    char buffer[1024];
    for (;;) {
        const ssize_t n = pread(fd, buffer, sizeof buffer, offset);
        if (n < 0 && errno == EINTR)
            continue;
        if (n < 0)
            return false;
        if (n == 0)
            return true;
        out.append(buffer, size_t(n));
        offset += n;
    }
}

// The size fstat gave is read straight into out, then whatever the file has
// grown by since: no copy through a buffer of our own, whose pages a fresh
// process would fault in for nothing.
bool readFrom(int fd, const struct stat& st, std::string& out)
{
    out.clear();
    size_t got = 0;
    if (st.st_size > 0) {
        out.resize(size_t(st.st_size));
        while (got < out.size()) {
            const ssize_t n = pread(fd, &out[got], out.size() - got, off_t(got));
            if (n < 0 && errno == EINTR)
                continue;
            if (n < 0) {
                out.clear();
                return false;
            }
            if (n == 0)
                break;
            got += size_t(n);
        }
        out.resize(got);
    }
    if (appendFrom(fd, off_t(got), out))
        return true;
    out.clear();
    return false;
}

VYX_FIRST_ANSWER int openRegular(const char* path, struct stat* st)
{
    if (!path || !*path) {
        errno = ENOENT;
        return -1;
    }
    // O_NOCTTY: a terminal at the path must not become our controlling one
    // merely because we looked at it.
    UniqueFd fd(::open(path, O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
    if (!fd) {
        // A socket cannot be opened at all; it is refused like every other
        // thing that is not a file.
        if (errno == ENXIO)
            errno = ENOENT;
        return -1;
    }
    if (fstat(fd.get(), st) != 0 || !S_ISREG(st->st_mode)) {
        fd.reset();
        errno = ENOENT;
        return -1;
    }
    const int flags = fcntl(fd.get(), F_GETFL);
    if (flags < 0 || fcntl(fd.get(), F_SETFL, flags & ~O_NONBLOCK) < 0) {
        const int saved = errno;
        fd.reset();
        errno = saved;
        return -1;
    }
    return fd.release();
}

}  // namespace

VYX_FIRST_ANSWER int openRegularFile(const char* path)
{
    struct stat st;
    return openRegular(path, &st);
}

FILE* fopenRegularFile(const char* path)
{
    UniqueFd fd(openRegularFile(path));
    if (!fd)
        return nullptr;
    FILE* file = fdopen(fd.get(), "r");
    if (!file) {
        const int saved = errno;
        fd.reset();
        errno = saved;
        return nullptr;
    }
    fd.release();  // the stream owns it now
    return file;
}

bool readRegularFile(const char* path, std::string& out)
{
    out.clear();
    struct stat st;
    const UniqueFd fd(openRegular(path, &st));
    return fd && readFrom(fd.get(), st, out);
}

bool readRegularDescriptor(int fd, std::string& out)
{
    out.clear();
    struct stat st;
    if (fstat(fd, &st) != 0 || !S_ISREG(st.st_mode))
        return false;
    return readFrom(fd, st, out);
}

}  // namespace Vyx::detail
