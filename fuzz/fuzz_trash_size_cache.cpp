// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

// The trash's "directorysizes" reader on arbitrary contents: the line
// splitting and the 64-bit parsing that size() relies on.
#include "shell/trashsizes_p.h"

#include <cinttypes>
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
    Vyx::detail::DirSizeCache cache = Vyx::detail::readSizeCache(file);
    std::fclose(file);

    // Every entry taken is a line the writer could have written: formatted
    // again, it reads back the same.
    for (const auto& entry : cache) {
        if (entry.second.size < 0 || entry.first.find('\n') != std::string::npos)
            abort();
        char numbers[64];
        std::snprintf(numbers, sizeof numbers, "%" PRId64 " %" PRId64 " ", entry.second.size, entry.second.recordTime);
        std::string name;
        Vyx::detail::CachedDirSize again;
        if (!Vyx::detail::parseSizeCacheLine(numbers + entry.first, &name, &again) || name != entry.first ||
            again.size != entry.second.size || again.recordTime != entry.second.recordTime)
            abort();
    }
    std::string name;
    Vyx::detail::CachedDirSize one;
    Vyx::detail::parseSizeCacheLine(content, &name, &one);
    return 0;
}
