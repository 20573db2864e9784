// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

// Internal interface of core, open to every folder of the library.

#ifndef VYXCORE_TEXTLINES_P_H
#define VYXCORE_TEXTLINES_P_H

#include <algorithm>
#include <cstdio>
#include <string>
#include <string_view>

namespace Vyx::detail {

// Calls visit(line) for each line of file, its "\n" removed, whatever the
// line's length. A NUL byte in the file ends its line's text there.
template <typename Visit> void forEachLine(FILE* file, Visit visit)
{
    std::string line;
    char chunk[4096];
    while (std::fgets(chunk, sizeof chunk, file)) {
        line += chunk;
        if (!line.empty() && line.back() != '\n' && !std::feof(file))
            continue;
        if (!line.empty() && line.back() == '\n')
            line.pop_back();
        std::string current;
        current.swap(line);
        visit(current);
    }
}

// The same for text in memory: each line a view into text, its "\n"
// removed; a last line without "\n" counts, and NUL bytes are kept.
template <typename Visit> void forEachLine(std::string_view text, Visit visit)
{
    while (!text.empty()) {
        const size_t end = std::min(text.find('\n'), text.size());
        visit(text.substr(0, end));
        text.remove_prefix(std::min(end + 1, text.size()));
    }
}

}  // namespace Vyx::detail

#endif
