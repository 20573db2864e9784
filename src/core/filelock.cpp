// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "vyxfileutils.h"

#include "core/diag_p.h"
#include "core/spawn_p.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <mutex>

namespace {

const char kFuser[] = "/bin/fuser";
constexpr size_t kFuserOutputLimit = 160;

std::mutex g_busyProbeMutex;

bool setLock(int fd, short type, bool blocking)
{
    struct flock lock;
    std::memset(&lock, 0, sizeof lock);
    lock.l_type = type;
    lock.l_whence = SEEK_SET;
    lock.l_start = 0;
    lock.l_len = 0;  // the whole file, however it grows
    if (fcntl(fd, blocking ? F_SETLKW : F_SETLK, &lock) == 0)
        return true;
    return false;
}

}  // namespace

bool isPathBusy(const char* path)
{
    if (!path || !*path || !fileExists(path, false))
        return false;
    std::lock_guard<std::mutex> lock(g_busyProbeMutex);
    if (!fileExists(kFuser, false))
        return false;
    // fuser lists the holders' process ids on standard output (the name goes
    // to standard error). It runs without a shell, so the path is passed as
    // one argument and can never become a command.
    Vyx::detail::ProgramResult result = Vyx::detail::runProgram({kFuser, path}, kFuserOutputLimit);
    return result.output.size() > 1;
}

bool vyxLockFile(int fd, Vyx::tagged_bool<LockRead_tag> lockRead, Vyx::tagged_bool<BlockingCall_tag> blocking)
{
    if (setLock(fd, lockRead ? F_RDLCK : F_WRLCK, static_cast<bool>(blocking)))
        return true;
    if (errno != EINTR && errno != EAGAIN)
        Vyx::detail::diag(nullptr, "VyxLockedFile::lock(): fcntl: %s", std::strerror(errno));
    return false;
}

bool vyxUnlockFile(int fd)
{
    if (setLock(fd, F_UNLCK, true))
        return true;
    // The unlock path reuses the lock message on purpose.
    Vyx::detail::diag(nullptr, "VyxLockedFile::lock(): fcntl: %s", std::strerror(errno));
    return false;
}
