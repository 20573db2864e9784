// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#ifndef VYXCORE_CATALOGUE_P_H
#define VYXCORE_CATALOGUE_P_H

#include <cstdio>
#include <string>
#include <utility>
#include <vector>

namespace Vyx::detail {

// The MIME alias table: (canonical type, alias) pairs in file order.
using AliasTable = std::vector<std::pair<std::string, std::string>>;

// Reads "aliases" lines ("alias canonical"); comments, blank lines and lines
// without a separator are skipped.
AliasTable readAliases(FILE* file);

// The per-user cache file of installed applications: in runtimeDir when it
// is absolute and a directory of the user's own that no one else can write,
// else in a "vyx" directory of the user's cache (cacheHome, else home +
// "/.cache"), which is made, mode 0700, only when the file is written.
// Empty when there is no such place: then no cache file is used.
std::string chooseMimeCachePath(const std::string& runtimeDir, const std::string& cacheHome, const std::string& home);

// The catalogue's process-wide state, built by FillDesktopEntriesDirArray.
const AliasTable& mimeAliasTable();
const std::string& mimeCachePath();  // empty: no cache file

}  // namespace Vyx::detail

#endif
