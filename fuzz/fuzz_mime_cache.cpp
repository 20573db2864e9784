// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

// The per-user MIME cache file reader and the aliases reader on any bytes.
#include "desktopentry/catalogue_p.h"
#include "mime/mimecache_p.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    if (size == 0)
        return 0;
    std::string text(reinterpret_cast<const char*>(data), size);
    FILE* file = fmemopen(&text[0], text.size(), "r");
    if (!file)
        return 0;
    Vyx::detail::AvailableMap map;
    Vyx::detail::readCacheFile(file, &map);
    std::string written = map.toCacheText();
    std::rewind(file);
    Vyx::detail::AliasTable aliases = Vyx::detail::readAliases(file);
    std::fclose(file);
    (void)aliases;
    // What the map writes, it reads back to the same text.
    if (!written.empty()) {
        FILE* again = fmemopen(&written[0], written.size(), "r");
        Vyx::detail::AvailableMap reread;
        Vyx::detail::readCacheFile(again, &reread);
        std::fclose(again);
        if (reread.toCacheText() != written)
            abort();
    }
    return 0;
}
