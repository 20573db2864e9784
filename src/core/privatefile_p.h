// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

// Internal interface of core, open to every folder of the library.

#ifndef VYXCORE_PRIVATEFILE_P_H
#define VYXCORE_PRIVATEFILE_P_H

// Files and directories that only the user running us can have changed:
// what the library may believe when it reads back a file of its own from a
// place that another user might have reached first.

#include <string>
#include <sys/stat.h>

namespace Vyx::detail {

// Owned by the effective user and writable by neither group nor others.
bool ownedPrivately(const struct stat& st);

// Whether path is a directory (links followed) that is ownedPrivately.
bool isPrivateDirectory(const std::string& path);

enum class PrivateFileState {
    Opened,
    Missing,
    SymbolicLink,
    NotRegular,
    ForeignOwner,
    WritableByOthers,
    Unreadable,
};

// Opens path for reading when it is a regular file, reached without
// following a symbolic link, that is ownedPrivately; -1 otherwise, *state
// saying why. A FIFO planted under the name never blocks the caller.
int openPrivateFile(const std::string& path, PrivateFileState* state);

// A few words for state ("owned by another user"), for diagnostics.
const char* describe(PrivateFileState state);

}  // namespace Vyx::detail

#endif
