#include "mime/mimecache_p.h"

#include "core/atomicfile_p.h"
#include "core/ini_p.h"
#include "desktopentry/catalogue_p.h"
#include "vyxfileutils.h"
#include "vyxmime.h"

#include <algorithm>
#include <cstring>
#include <mutex>
#include <sys/stat.h>

namespace Vyx::detail {

void AvailableMap::add(const std::string& type, const std::string& path)
{
    std::vector<std::string>& paths = m_byType[type];
    if (std::find(paths.begin(), paths.end(), path) == paths.end())
        paths.push_back(path);
}

const std::vector<std::string>* AvailableMap::pathsFor(const std::string& type) const
{
    auto it = m_byType.find(type);
    return it == m_byType.end() ? nullptr : &it->second;
}

std::string AvailableMap::toCacheText() const
{
    std::map<std::string, std::vector<std::string>> byPath;
    for (const auto& [type, paths] : m_byType) {
        for (const std::string& path : paths)
            byPath[path].push_back(type);
    }
    std::string text;
    for (const auto& [path, types] : byPath)
        text += path + "=" + Vyx::join(types, ";") + "\n";
    return text;
}

void readCacheFile(FILE* file, AvailableMap* map)
{
    char line[8191];
    while (std::fgets(line, sizeof line, file)) {
        size_t length = std::strlen(line);
        if (length && line[length - 1] == '\n')
            line[length - 1] = '\0';
        char* eq = std::strchr(line, '=');
        if (!eq)
            continue;
        *eq = '\0';
        for (const std::string& type : Vyx::split(eq + 1, ",;"))
            map->add(type, line);
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

// Registers path for type and for the type's aliases (or canonical type).
void registerType(AvailableMap& map, const std::string& type, const std::string& path)
{
    map.add(type, path);
    for (const auto& [canonical, alias] : mimeAliasTable()) {
        if (type == canonical)
            map.add(alias, path);
        else if (type == alias)
            map.add(canonical, path);
    }
}

void readMimeinfoCache(const std::string& dir, AvailableMap& map)
{
    FILE* file = std::fopen((dir + "/mimeinfo.cache").c_str(), "r");
    if (!file)
        return;
    std::string line;
    char chunk[4096];
    while (std::fgets(chunk, sizeof chunk, file)) {
        line += chunk;
        if (line.back() != '\n' && !std::feof(file))
            continue;
        if (line.back() == '\n')
            line.pop_back();
        std::string current;
        current.swap(line);
        if (current.empty() || current[0] == '[')
            continue;
        std::string::size_type eq = current.find('=');
        if (eq == std::string::npos)
            continue;
        std::string type = current.substr(0, eq);
        for (const std::string& name : Vyx::split(current.c_str() + eq + 1, ";"))
            registerType(map, type, dir + "/" + name);
    }
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
    std::vector<std::string> result;
    if (!mime || !*mime)
        return result;
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
        writeFileAtomically(cache, g_available.toCacheText());
    }
    if (g_available.empty()) {
        if (FILE* file = std::fopen(cache.c_str(), "r")) {
            readCacheFile(file, &g_available);
            std::fclose(file);
        }
    }
    if (const std::vector<std::string>* paths = g_available.pathsFor(mime)) {
        for (const std::string& path : *paths) {
            result.push_back(path);
            if (!all)
                break;
        }
    }
    return result;
}

std::vector<VyxDesktopEntry> GetDesktopEntryForMime(const char* mime, Vyx::tagged_bool<AllDesktopEntries_tag> all)
{
    std::vector<VyxDesktopEntry> entries;
    for (const std::string& path : GetDesktopEntryPathForMime(mime, all))
        entries.emplace_back(path);
    return entries;
}
