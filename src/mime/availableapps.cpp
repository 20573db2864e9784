// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "mime/mimecache_p.h"

#include "core/atomicfile_p.h"
#include "core/inireader_p.h"
#include "core/makedirs_p.h"
#include "core/privatefile_p.h"
#include "core/readfile_p.h"
#include "core/textlines_p.h"
#include "core/uniquefd_p.h"
#include "desktopentry/catalogue_p.h"
#include "desktopentry/mimealiases_p.h"
#include "vyxfileutils.h"
#include "vyxmime.h"

#include <algorithm>
#include <cstring>
#include <mutex>
#include <sys/stat.h>
#include <unistd.h>

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
    // Looked up before inserting: most types are met again and again, and
    // emplace would build (and throw away) a node each time.
    auto typeIt = m_typeIndex.find(type);
    if (typeIt == m_typeIndex.end()) {
        typeIt = m_typeIndex.emplace(type, static_cast<uint32_t>(m_byType.size())).first;
        m_byType.emplace_back();
    }
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

namespace {

std::mutex g_availableMutex;
AvailableMap g_available;
std::string g_availableSources;  // the sources g_available was made from; empty: not made yet
VyxMimeCacheUse g_cacheUse;

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
    FILE* file = Vyx::detail::fopenRegularFile((dir + "/mimeinfo.cache").c_str());
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
        IniReader ini;
        if (!ini.loadFile(file) || ini.text("Desktop Entry", "Type") != "Application")
            continue;
        for (const std::string& type : Vyx::split(ini.text("Desktop Entry", "MimeType").c_str(), ",;"))
            registerType(map, type, file);
    }
}

constexpr off_t kMaxCacheFileSize = 256 << 20;

// The whole of the cache file at path when it may be believed: opened
// without following a link, regular, the user's own and writable by no one
// else. Otherwise false, *why saying why unless the file is simply missing.
bool readPrivateCacheFile(const std::string& path, std::string* text, std::string* why)
{
    PrivateFileState state;
    UniqueFd owned(openPrivateFile(path, &state));
    const int fd = owned.get();
    if (fd < 0) {
        if (state != PrivateFileState::Missing)
            *why = describe(state);
        return false;
    }
    struct stat st;
    const bool small = fstat(fd, &st) == 0 && st.st_size <= kMaxCacheFileSize;
    const bool ok = small && Vyx::detail::readRegularDescriptor(fd, *text);
    if (!small)
        *why = "too large";
    return ok;
}

// Brings the available map up to date with the application directories: kept
// while no directory changed, else taken from the cache file when that was
// made for exactly these directories as they are, else rebuilt from every
// directory and saved. Called under g_availableMutex.
void refreshAvailable()
{
    std::vector<AppDirSource> sources = currentSources(GetAllAppDesktopEntrySearchPaths());
    std::string section = sourcesSection(sources);
    if (section == g_availableSources)
        return;

    VyxMimeCacheUse use;
    use.path = mimeCachePath();
    std::string dir = use.path.substr(0, use.path.rfind('/') + 1);
    bool privateDir = false;
    if (!use.path.empty()) {
        // A directory someone else can write would let them swap the file.
        privateDir = !fileExists(dir, false) || isPrivateDirectory(dir);
        std::string text;
        if (!privateDir) {
            use.ignored = "in a directory others can write";
        } else if (readPrivateCacheFile(use.path, &text, &use.ignored)) {
            AvailableMap read;
            CacheVerdict verdict = readCacheText(text, section, &read);
            if (verdict == CacheVerdict::Believed) {
                g_available = std::move(read);
                g_availableSources = std::move(section);
                use.read = true;
                g_cacheUse = std::move(use);
                return;
            }
            use.ignored = describe(verdict);
        }
    }

    // Every directory, not only the changed ones: a directory left out of a
    // rebuild would lose its applications for good, the new file being
    // newer than it.
    AvailableMap rebuilt;
    for (const AppDirSource& source : sources) {
        if (source.kind == AppDirSource::MimeinfoCache)
            readMimeinfoCache(source.dir, rebuilt);
        else if (source.kind == AppDirSource::DesktopFiles)
            scanDesktopFiles(source.dir, rebuilt);
    }
    g_available = std::move(rebuilt);
    if (privateDir && makePrivateDirectories(dir) && isPrivateDirectory(dir))
        use.written = replacePrivateFile(use.path, cacheFileText(section, g_available));
    g_availableSources = std::move(section);
    g_cacheUse = std::move(use);
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
    refreshAvailable();
    return g_available.pathsFor(mime, static_cast<bool>(all));
}

VyxMimeCacheUse GetMimeCacheUse()
{
    FillDesktopEntriesDirArray();
    std::lock_guard<std::mutex> lock(g_availableMutex);
    refreshAvailable();
    return g_cacheUse;
}

std::vector<VyxDesktopEntry> GetDesktopEntryForMime(const char* mime, Vyx::tagged_bool<AllDesktopEntries_tag> all)
{
    std::vector<VyxDesktopEntry> entries;
    for (const std::string& path : GetDesktopEntryPathForMime(mime, all))
        entries.emplace_back(path);
    return entries;
}
