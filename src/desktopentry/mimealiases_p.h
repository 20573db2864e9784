// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

// Internal interface of desktopentry, open to mime and shell.
//
// MIME aliases: the other names of a type, one "alias canonical" line each
// in a MIME directory's "aliases" file. One reader for every such file, so
// that the application catalogue and the MIME database can never disagree
// on what a line says.

#ifndef VYXCORE_MIMEALIASES_P_H
#define VYXCORE_MIMEALIASES_P_H

#include <cstdio>
#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace Vyx::detail {

// The MIME alias table: (canonical type, alias) pairs in file order, the
// names pointing into the text they were read from.
using AliasTable = std::vector<std::pair<std::string_view, std::string_view>>;

// The two names of one line (without its line break), when it names both:
// blanks at the end are dropped, the two names are parted by spaces or tabs,
// and empty lines and lines starting with "#" or "!" are comments.
bool splitAliasLine(std::string_view line, std::string_view* alias, std::string_view* canonical);

// Calls visit(alias, canonical) for each line of file that names both.
void forEachMimeAlias(FILE* file, const std::function<void(std::string alias, std::string canonical)>& visit);

// Every alias line of text, in order; a line ends at its line break, or at
// a NUL byte, after which the rest of that line is not read.
AliasTable readAliases(std::string_view text);

// The machine's alias table, read once, on first use. Safe from any thread.
const AliasTable& mimeAliasTable();

}  // namespace Vyx::detail

#endif
