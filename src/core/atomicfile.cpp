// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "core/atomicfile_p.h"

#include "core/uniquefd_p.h"

#include <atomic>
#include <cerrno>
#include <climits>
#include <cstdlib>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace Vyx::detail {

namespace {

// The file that is really written: a symbolic link (even a dangling one) is
// followed, so the link itself survives the replacement.
std::string realTarget(const std::string& path)
{
    std::string current = path;
    for (int depth = 0; depth < 40; ++depth) {
        char target[PATH_MAX];
        ssize_t n = readlink(current.c_str(), target, sizeof target - 1);
        if (n < 0)
            return current;
        target[n] = '\0';
        if (target[0] == '/') {
            current = target;
        } else {
            std::string::size_type slash = current.rfind('/');
            current = (slash == std::string::npos ? std::string() : current.substr(0, slash + 1)) + target;
        }
    }
    return current;
}

std::atomic<unsigned> g_counter {0};

// Closes the temporary file fd and, when it was written whole (ok), puts it
// in place of target; otherwise removes it, so the old file stays.
bool closeAndRename(UniqueFd& fd, bool ok, const std::string& temp, const std::string& target)
{
    ok = fd.close() && ok;
    if (ok)
        ok = rename(temp.c_str(), target.c_str()) == 0;
    if (!ok)
        unlink(temp.c_str());
    return ok;
}

}  // namespace

bool writeAll(int fd, std::string_view content)
{
    const char* p = content.data();
    size_t left = content.size();
    while (left > 0) {
        ssize_t n = write(fd, p, left);
        if (n < 0 && errno == EINTR)
            continue;
        if (n <= 0)
            return false;
        p += n;
        left -= static_cast<size_t>(n);
    }
    return true;
}

bool writeFileAtomically(const std::string& path, const std::string& content, bool durable)
{
    if (path.empty())
        return false;
    std::string target = realTarget(path);
    struct stat old;
    bool existed = stat(target.c_str(), &old) == 0;
    if (existed && !S_ISREG(old.st_mode))
        return false;

    // A fresh name beside the target; O_EXCL guards against a race with
    // another writer, and the mode 0666 lets the umask decide for new files.
    std::string temp;
    UniqueFd fd;
    for (int attempt = 0; attempt < 100 && !fd; ++attempt) {
        temp = target + ".tmp-" + std::to_string(getpid()) + "-" + std::to_string(g_counter++);
        fd.reset(open(temp.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666));
        if (!fd && errno != EEXIST)
            return false;
    }
    if (!fd)
        return false;

    bool ok = writeAll(fd.get(), content) && (!durable || fsync(fd.get()) == 0);
    if (ok && existed)
        ok = fchmod(fd.get(), old.st_mode & 07777) == 0;
    return closeAndRename(fd, ok, temp, target);
}

bool replacePrivateFile(const std::string& path, const std::string& content)
{
    return replacePrivateFile(path, [&content](int fd) { return writeAll(fd, content); });
}

bool replacePrivateFile(const std::string& path, const std::function<bool(int fd)>& write)
{
    if (path.empty())
        return false;
    std::string temp = path + ".XXXXXX";
    UniqueFd fd(mkostemp(&temp[0], O_CLOEXEC));
    if (!fd)
        return false;
    const bool written = write(fd.get());
    return closeAndRename(fd, written, temp, path);
}

}  // namespace Vyx::detail
