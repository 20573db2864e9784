// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

// The per-user MIME cache file reader and the aliases reader on any bytes.
#include "desktopentry/mimealiases_p.h"
#include "mime/mimecache_p.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    if (size == 0)
        return 0;
    std::string text(reinterpret_cast<const char*>(data), size);
    Vyx::detail::AppDirSource dir;
    dir.dir = "/a\n[Applications]\\";
    dir.kind = Vyx::detail::AppDirSource::MimeinfoCache;
    const std::string sources = Vyx::detail::sourcesSection({dir});
    // As it comes, and behind the expected first section, so that the
    // application lines are reached whatever the input.
    Vyx::detail::AvailableMap map;
    Vyx::detail::readCacheText(text, sources, &map);
    Vyx::detail::AvailableMap lines;
    Vyx::detail::readCacheText(sources + "[Applications]\n" + text + "\n[End]\n", sources, &lines);

    // The text answers what the map made of it answers, for the items of
    // the input and some of their pieces; every read stays in the text.
    Vyx::detail::CacheFileLines kept;
    if (kept.take(sources + "[Applications]\n" + text + "\n[End]\n", sources) != Vyx::detail::CacheVerdict::Believed)
        abort();
    std::vector<std::string> types {"text/plain", "", "a;b", "=", text.substr(0, 8)};
    for (size_t start = 0, n = 0; start < text.size() && n < 16; ++n) {
        size_t end = text.find_first_of("=;,\n", start);
        types.push_back(text.substr(start, end == std::string::npos ? std::string::npos : end - start));
        start = end == std::string::npos ? text.size() : end + 1;
    }
    for (const std::string& type : types) {
        for (bool all : {false, true}) {
            if (kept.pathsFor(type, all) != lines.pathsFor(type, all))
                abort();
        }
    }

    // What the map writes, it reads back to the same text.
    std::string written = Vyx::detail::cacheFileText(sources, lines);
    Vyx::detail::AvailableMap reread;
    if (Vyx::detail::readCacheText(written, sources, &reread) != Vyx::detail::CacheVerdict::Believed ||
        Vyx::detail::cacheFileText(sources, reread) != written)
        abort();

    // Every name read lies inside the text.
    for (const auto& [canonical, alias] : Vyx::detail::readAliases(text)) {
        for (std::string_view name : {canonical, alias}) {
            if (!name.empty() && (name.data() < text.data() || name.data() + name.size() > text.data() + text.size()))
                abort();
        }
    }
    return 0;
}
