// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "desktopentry/mimealiases_p.h"

#include "core/readfile_p.h"
#include "core/textlines_p.h"

#include <mutex>

namespace Vyx::detail {

namespace {

const char kBlanks[] = " \t";

// Read on first use: most lookups never need it.
std::once_flag g_aliasesOnce;
AliasTable g_aliases;

}  // namespace

void forEachMimeAlias(FILE* file, const std::function<void(std::string alias, std::string canonical)>& visit)
{
    forEachLine(file, [&](const std::string& line) {
        // A file saved with DOS line ends, or a stray blank, must not make
        // the canonical name one nobody asks for.
        std::string::size_type end = line.find_last_not_of(" \t\r");
        if (end == std::string::npos || line[0] == '#' || line[0] == '!')
            return;
        std::string::size_type gap = line.find_first_of(kBlanks);
        if (gap == std::string::npos || gap > end)
            return;
        std::string::size_type canonical = line.find_first_not_of(kBlanks, gap);
        visit(line.substr(0, gap), line.substr(canonical, end + 1 - canonical));
    });
}

AliasTable readAliases(FILE* file)
{
    AliasTable table;
    forEachMimeAlias(file, [&table](std::string alias, std::string canonical) {
        table.emplace_back(std::move(canonical), std::move(alias));
    });
    return table;
}

const AliasTable& mimeAliasTable()
{
    std::call_once(g_aliasesOnce, [] {
        if (FILE* file = fopenRegularFile("/usr/share/mime/aliases")) {
            g_aliases = readAliases(file);
            std::fclose(file);
        }
    });
    return g_aliases;
}

}  // namespace Vyx::detail
