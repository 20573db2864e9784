// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "core/privatefile_p.h"

#include "core/firstanswer_p.h"

#include "core/uniquefd_p.h"

#include <cerrno>
#include <fcntl.h>
#include <unistd.h>

namespace Vyx::detail {

VYX_FIRST_ANSWER bool ownedPrivately(const struct stat& st)
{
    return st.st_uid == geteuid() && (st.st_mode & (S_IWGRP | S_IWOTH)) == 0;
}

VYX_FIRST_ANSWER bool isPrivateDirectory(const std::string& path)
{
    struct stat st;
    return !path.empty() && stat(path.c_str(), &st) == 0 && S_ISDIR(st.st_mode) && ownedPrivately(st);
}

VYX_FIRST_ANSWER int openPrivateFile(const std::string& path, PrivateFileState* state)
{
    // Non-blocking: opening a FIFO for reading would otherwise wait for a
    // writer that never comes.
    UniqueFd fd(open(path.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
    if (!fd) {
        *state = errno == ENOENT || errno == ENOTDIR ? PrivateFileState::Missing
                 : errno == ELOOP                    ? PrivateFileState::SymbolicLink
                                                     : PrivateFileState::Unreadable;
        return -1;
    }
    struct stat st;
    *state = fstat(fd.get(), &st) != 0 ? PrivateFileState::Unreadable
             : !S_ISREG(st.st_mode)    ? PrivateFileState::NotRegular
             : st.st_uid != geteuid()  ? PrivateFileState::ForeignOwner
             : !ownedPrivately(st)     ? PrivateFileState::WritableByOthers
                                       : PrivateFileState::Opened;
    if (*state != PrivateFileState::Opened)
        return -1;
    // Reads block again as usual.
    fcntl(fd.get(), F_SETFL, fcntl(fd.get(), F_GETFL) & ~O_NONBLOCK);
    return fd.release();
}

const char* describe(PrivateFileState state)
{
    switch (state) {
    case PrivateFileState::Opened:
        return "opened";
    case PrivateFileState::Missing:
        return "missing";
    case PrivateFileState::SymbolicLink:
        return "a symbolic link";
    case PrivateFileState::NotRegular:
        return "not a regular file";
    case PrivateFileState::ForeignOwner:
        return "owned by another user";
    case PrivateFileState::WritableByOthers:
        return "writable by group or others";
    case PrivateFileState::Unreadable:
        return "unreadable";
    }
    return "unreadable";
}

}  // namespace Vyx::detail
