// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

// Internal interface of desktopentry, open to mime and shell.
//
// Where the catalogue keeps the per-user cache of which installed
// application takes which MIME type: the catalogue decides it once with the
// application directories, the MIME side reads and writes the file.

#ifndef VYXCORE_CATALOGUE_P_H
#define VYXCORE_CATALOGUE_P_H

#include <string>

namespace Vyx::detail {

// The per-user cache file of installed applications: in runtimeDir when it
// is absolute and a directory of the user's own that no one else can write,
// else in a "vyx" directory of the user's cache (cacheHome, else home +
// "/.cache"), which is made, mode 0700, only when the file is written.
// Empty when there is no such place: then no cache file is used.
std::string chooseMimeCachePath(const std::string& runtimeDir, const std::string& cacheHome, const std::string& home);

// The cache file's path as the catalogue's one-time build
// (FillDesktopEntriesDirArray) chose it; empty: no cache file.
const std::string& mimeCachePath();

}  // namespace Vyx::detail

#endif
