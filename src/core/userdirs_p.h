// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

// Internal interface of core, open to every folder of the library.

#ifndef VYXCORE_USERDIRS_P_H
#define VYXCORE_USERDIRS_P_H

#include <cstdio>

namespace Vyx::detail {

// Reads "user-dirs.dirs" text from file and returns, in a malloc() buffer,
// the value of the last line "XDG_<type>_DIR=..." that names "$HOME/..."
// (made absolute with home) or an absolute path. Null when no line matches,
// or when memory ran out (then *outOfMemory is set).
char* readUserDirs(FILE* file, const char* type, const char* home, bool* outOfMemory);

}  // namespace Vyx::detail

#endif
