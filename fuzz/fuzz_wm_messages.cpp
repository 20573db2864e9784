// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

// The window manager's message catalogue on arbitrary file contents: every
// line goes through the catalogue's own line reader and line rules.
#include "core/textlines_p.h"
#include "shell/wmmessages_p.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    std::string content(reinterpret_cast<const char*>(data), size);
    FILE* file = fmemopen(content.empty() ? nullptr : &content[0], content.size(), "r");
    if (!file)
        return 0;
    Vyx::detail::forEachLine(file, [](const std::string& line) {
        const std::string text = Vyx::detail::catalogueText(line);
        if (text.size() > line.size())
            abort();  // the rules only ever remove
        if (line.find_first_of("\"\\") != std::string::npos || text.empty())
            return;
        // Without quotes or escapes a message is the line without its blanks.
        const char blanks[] = " \t\n";
        if (text != line.substr(line.find_first_not_of(blanks),
                                line.find_last_not_of(blanks) - line.find_first_not_of(blanks) + 1))
            abort();
    });
    std::fclose(file);
    return 0;
}
