#include "core/readfile_p.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace Vyx::detail {

namespace {

// Opens path as openRegularFile does and leaves its status in *st.
// keepNonBlocking spares the two calls that clear O_NONBLOCK where it
// cannot matter: reading a regular file to its end never waits.
int openChecked(const char* path, struct stat* st, bool keepNonBlocking)
{
    if (!path || !*path) {
        errno = ENOENT;
        return -1;
    }
    const int fd = open(path, O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (fd < 0)
        return -1;
    if (fstat(fd, st) != 0 || !S_ISREG(st->st_mode)) {
        close(fd);
        errno = ENOENT;
        return -1;
    }
    if (!keepNonBlocking) {
        const int flags = fcntl(fd, F_GETFL);
        if (flags >= 0 && (flags & O_NONBLOCK))
            fcntl(fd, F_SETFL, flags & ~O_NONBLOCK);
    }
    return fd;
}

}  // namespace

int openRegularFile(const char* path)
{
    struct stat st;
    return openChecked(path, &st, false);
}

bool readRegularFile(const char* path, std::string& out)
{
    out.clear();
    struct stat st;
    const int fd = openChecked(path, &st, true);
    if (fd < 0)
        return false;
    // One byte more than fstat's size, so that reaching the end costs no
    // second allocation; a file that grew meanwhile is still read whole.
    size_t capacity = st.st_size > 0 ? size_t(st.st_size) + 1 : 4096;
    size_t used = 0;
    out.resize(capacity);
    for (;;) {
        if (used == capacity) {
            capacity *= 2;
            out.resize(capacity);
        }
        const ssize_t n = read(fd, &out[used], capacity - used);
        if (n < 0 && errno == EINTR)
            continue;
        if (n < 0) {
            const int saved = errno;
            close(fd);
            out.clear();
            errno = saved;
            return false;
        }
        if (n == 0)
            break;
        used += size_t(n);
    }
    close(fd);
    out.resize(used);
    return true;
}

}  // namespace Vyx::detail
