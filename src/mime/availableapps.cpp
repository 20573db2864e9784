// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "mime/mimecache_p.h"

#include "core/atomicfile_p.h"
#include "core/ini_p.h"
#include "core/textlines_p.h"
#include "desktopentry/catalogue_p.h"
#include "vyxfileutils.h"
#include "vyxmime.h"

#include <algorithm>
#include <cstring>
#include <mutex>
#include <sys/stat.h>

namespace Vyx::detail {

uint32_t AvailableMap::internPath(const std::string& path)
{
    auto [it, inserted] = m_pathIndex.emplace(path, static_cast<uint32_t>(m_paths.size()));
    if (inserted)
        m_paths.push_back(path);
    return it->second;
}

void AvailableMap::add(const std::string& type, uint32_t pathIndex)
{
    auto [typeIt, newType] = m_typeIndex.emplace(type, static_cast<uint32_t>(m_byType.size()));
    if (newType)
        m_byType.emplace_back();
    uint64_t pair = static_cast<uint64_t>(typeIt->second) << 32 | pathIndex;
    if (m_pairs.insert(pair).second)
        m_byType[typeIt->second].push_back(pathIndex);
}

void AvailableMap::add(const std::string& type, const std::string& path)
{
    add(type, internPath(path));
}

std::vector<std::string> AvailableMap::pathsFor(const std::string& type, bool all) const
{
    std::vector<std::string> result;
    auto it = m_typeIndex.find(type);
    if (it != m_typeIndex.end()) {
        for (uint32_t index : m_byType[it->second]) {
            result.push_back(m_paths[index]);
            if (!all)
                break;
        }
    }
    return result;
}

std::string AvailableMap::toCacheText() const
{
    std::vector<std::vector<const std::string*>> typesOf(m_paths.size());
    for (const auto& [type, number] : m_typeIndex) {
        for (uint32_t index : m_byType[number])
            typesOf[index].push_back(&type);
    }
    std::vector<uint32_t> order(m_paths.size());
    for (uint32_t i = 0; i < order.size(); ++i)
        order[i] = i;
    std::sort(order.begin(), order.end(), [this](uint32_t a, uint32_t b) { return m_paths[a] < m_paths[b]; });
    std::string text;
    for (uint32_t index : order) {
        if (typesOf[index].empty())
            continue;
        // Types in a stable order: sorted, as a reader cannot tell otherwise.
        std::vector<const std::string*>& types = typesOf[index];
        std::sort(types.begin(), types.end(), [](const std::string* a, const std::string* b) { return *a < *b; });
        text += m_paths[index];
        text += '=';
        for (size_t i = 0; i < types.size(); ++i) {
            if (i)
                text += ';';
            text += *types[i];
        }
        text += '\n';
    }
    return text;
}

void readCacheFile(FILE* file, AvailableMap* map)
{
    char line[8191];
    while (std::fgets(line, sizeof line, file)) {
        size_t length = std::strlen(line);
        if (length && line[length - 1] == '\n')
            line[--length] = '\0';
        char* eq = std::strchr(line, '=');
        if (!eq)
            continue;
        *eq = '\0';
        uint32_t path = map->internPath(line);
        // The types after "=", split at "," and ";", without a list in between.
        std::string type;
        for (const char* p = eq + 1;; ++p) {
            if (*p == ',' || *p == ';' || *p == '\0') {
                if (!type.empty())
                    map->add(type, path);
                type.clear();
                if (!*p)
                    break;
            } else {
                type += *p;
            }
        }
    }
}

namespace {

std::mutex g_availableMutex;
AvailableMap g_available;

// Seconds of the modification time; -1 when the path does not exist.
long long modifiedAt(const std::string& path)
{
    struct stat st;
    return stat(path.c_str(), &st) == 0 ? static_cast<long long>(st.st_mtime) : -1;
}

// For each type, the types the alias table links it to (its aliases, or its
// canonical type), in table order: built once, so that registering does not
// walk the whole table.
const std::unordered_map<std::string, std::vector<std::string>>& linkedTypes()
{
    static const std::unordered_map<std::string, std::vector<std::string>> links = [] {
        std::unordered_map<std::string, std::vector<std::string>> map;
        for (const auto& [canonical, alias] : mimeAliasTable()) {
            map[canonical].push_back(alias);
            if (alias != canonical)
                map[alias].push_back(canonical);
        }
        return map;
    }();
    return links;
}

// Registers path for type and for the types the alias table links to it.
void registerType(AvailableMap& map, const std::string& type, const std::string& path)
{
    uint32_t index = map.internPath(path);
    map.add(type, index);
    auto it = linkedTypes().find(type);
    if (it != linkedTypes().end()) {
        for (const std::string& linked : it->second)
            map.add(linked, index);
    }
}

void readMimeinfoCache(const std::string& dir, AvailableMap& map)
{
    FILE* file = std::fopen((dir + "/mimeinfo.cache").c_str(), "r");
    if (!file)
        return;
    Vyx::detail::forEachLine(file, [&](const std::string& current) {
        if (current.empty() || current[0] == '[')
            return;
        std::string::size_type eq = current.find('=');
        if (eq == std::string::npos)
            return;
        std::string type = current.substr(0, eq);
        for (const std::string& name : Vyx::split(current.c_str() + eq + 1, ";"))
            registerType(map, type, dir + "/" + name);
    });
    std::fclose(file);
}

void scanDesktopFiles(const std::string& dir, AvailableMap& map)
{
    std::vector<std::string> files;
    GetFileList(&files, dir.c_str(), 2, "*.desktop", Vyx::tagged_bool<FilesOnly_tag>(true));
    for (const std::string& file : files) {
        IniDocument ini;
        if (!ini.loadFile(file) || ini.text("Desktop Entry", "Type") != "Application")
            continue;
        for (const std::string& type : Vyx::split(ini.text("Desktop Entry", "MimeType").c_str(), ",;"))
            registerType(map, type, file);
    }
}

}  // namespace

}  // namespace Vyx::detail

using namespace Vyx::detail;

std::vector<std::string> GetMimeAliases(const char* mime)
{
    std::vector<std::string> aliases;
    if (!mime)
        return aliases;
    for (const auto& [canonical, alias] : mimeAliasTable()) {
        if (canonical == mime)
            aliases.push_back(alias);
    }
    return aliases;
}

std::vector<std::string> GetDesktopEntryPathForMime(const char* mime, Vyx::tagged_bool<AllDesktopEntries_tag> all)
{
    if (!mime || !*mime)
        return {};
    FillDesktopEntriesDirArray();
    std::lock_guard<std::mutex> lock(g_availableMutex);

    const std::string& cache = mimeCachePath();
    long long cacheTime = modifiedAt(cache);  // -1: no cache file
    AvailableMap rebuiltMap;
    bool rebuilt = false;
    for (const std::string& dir : GetAllAppDesktopEntrySearchPaths()) {
        long long dirTime = modifiedAt(dir);
        long long infoTime = modifiedAt(dir + "/mimeinfo.cache");
        if (infoTime >= 0 && dirTime <= infoTime) {
            if (cacheTime < 0 || cacheTime < infoTime) {
                rebuilt = true;
                readMimeinfoCache(dir, rebuiltMap);
            }
        } else if (dirTime >= 0 && (cacheTime < 0 || cacheTime < dirTime)) {
            rebuilt = true;
            scanDesktopFiles(dir, rebuiltMap);
        }
        // Otherwise the directory is older than the cache file. When another
        // directory forces a rebuild, this one is left out of it (kept).
    }
    if (rebuilt) {
        g_available = std::move(rebuiltMap);
        // Replaced whole, so another process never reads half a file.
        writeFileAtomically(cache, g_available.toCacheText(), false);
    }
    if (g_available.empty()) {
        if (FILE* file = std::fopen(cache.c_str(), "r")) {
            readCacheFile(file, &g_available);
            std::fclose(file);
        }
    }
    return g_available.pathsFor(mime, static_cast<bool>(all));
}

std::vector<VyxDesktopEntry> GetDesktopEntryForMime(const char* mime, Vyx::tagged_bool<AllDesktopEntries_tag> all)
{
    std::vector<VyxDesktopEntry> entries;
    for (const std::string& path : GetDesktopEntryPathForMime(mime, all))
        entries.emplace_back(path);
    return entries;
}
