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

// The catalogue's process-wide state, built by FillDesktopEntriesDirArray.
const AliasTable& mimeAliasTable();
const std::string& mimeCachePath();

}  // namespace Vyx::detail

#endif
