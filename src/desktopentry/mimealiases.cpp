// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "desktopentry/mimealiases_p.h"

#include "core/mappedfile_p.h"
#include "core/textlines_p.h"

#include <algorithm>
#include <cstring>
#include <mutex>

namespace Vyx::detail {

namespace {

// Read on first use: most lookups never need it. The names point into the
// mapped file, kept for the life of the process: the table costs a pair of
// pointers per line, not four strings.
std::once_flag g_aliasesOnce;
MappedFile g_aliasesFile;
AliasTable g_aliases;

}  // namespace

bool splitAliasLine(std::string_view line, std::string_view* alias, std::string_view* canonical)
{
    auto blank = [](char c) { return c == ' ' || c == '\t'; };
    // A file saved with DOS line ends, or a stray blank, must not make the
    // canonical name one nobody asks for.
    size_t end = line.size();
    while (end > 0 && (blank(line[end - 1]) || line[end - 1] == '\r'))
        --end;
    if (end == 0 || line[0] == '#' || line[0] == '!')
        return false;
    size_t gap = 0;
    while (gap < end && !blank(line[gap]))
        ++gap;
    if (gap == end)
        return false;
    size_t start = gap;
    while (blank(line[start]))
        ++start;
    *alias = line.substr(0, gap);
    *canonical = line.substr(start, end - start);
    return true;
}

void forEachMimeAlias(FILE* file, const std::function<void(std::string alias, std::string canonical)>& visit)
{
    forEachLine(file, [&](const std::string& line) {
        std::string_view alias, canonical;
        if (splitAliasLine(line, &alias, &canonical))
            visit(std::string(alias), std::string(canonical));
    });
}

AliasTable readAliases(std::string_view text)
{
    AliasTable table;
    // Room for lines of about the usual length, so that the table is not
    // copied as it grows.
    table.reserve(text.size() / 24 + 1);
    forEachLine(text, [&table](std::string_view line) {
        std::string_view alias, canonical;
        if (splitAliasLine(line.substr(0, line.find('\0')), &alias, &canonical))
            table.emplace_back(canonical, alias);
    });
    return table;
}

const AliasTable& mimeAliasTable()
{
    std::call_once(g_aliasesOnce, [] {
        if (g_aliasesFile.open("/usr/share/mime/aliases"))
            g_aliases = readAliases(
                std::string_view(reinterpret_cast<const char*>(g_aliasesFile.data()), g_aliasesFile.size()));
    });
    return g_aliases;
}

}  // namespace Vyx::detail
