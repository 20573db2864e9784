// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "mime/mimecache_p.h"

#include "core/firstanswer_p.h"

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
#include <string_view>
#include <sys/stat.h>
#include <unistd.h>

namespace Vyx::detail {

uint32_t AvailableMap::internPath(std::string_view path)
{
    return m_paths.intern(path);
}

uint32_t AvailableMap::internType(std::string_view type)
{
    const uint32_t number = m_types.intern(type);
    if (number == m_byType.size()) {
        m_byType.emplace_back();
        m_listed.emplace_back();
    }
    return number;
}

void AvailableMap::addNumbered(uint32_t typeNumber, uint32_t pathIndex)
{
    // Most types have a few applications: their own list tells whether the
    // pair is known. A long list gets its bits.
    constexpr size_t kShortList = 16;
    std::vector<uint32_t>& paths = m_byType[typeNumber];
    std::vector<bool>& listed = m_listed[typeNumber];
    if (paths.size() < kShortList) {
        if (std::find(paths.begin(), paths.end(), pathIndex) != paths.end())
            return;
        paths.push_back(pathIndex);
        if (paths.size() == kShortList) {
            for (uint32_t known : paths) {
                if (known >= listed.size())
                    listed.resize(std::max<size_t>(known + 1, 2 * listed.size()));
                listed[known] = true;
            }
        }
        return;
    }
    if (pathIndex >= listed.size())
        listed.resize(std::max<size_t>(pathIndex + 1, 2 * listed.size()));
    if (!listed[pathIndex]) {
        listed[pathIndex] = true;
        paths.push_back(pathIndex);
    }
}

std::vector<std::string> AvailableMap::pathsFor(const std::string& type, bool all) const
{
    std::vector<std::string> result;
    const uint32_t number = m_types.find(type);
    if (number != StringPool::kNone) {
        for (uint32_t index : m_byType[number]) {
            result.emplace_back(m_paths.at(index));
            if (!all)
                break;
        }
    }
    return result;
}

namespace {

// Values grouped by key, each group in the order forEachPair gives them:
// group k is (*values)[(*start)[k] .. (*start)[k + 1]). forEachPair(visit)
// calls visit(key, value) for every pair, keys below keys; it is walked
// twice (counted, then placed), so that no list of pairs is made.
template <typename ForEachPair>
void groupByKey(size_t keys, ForEachPair forEachPair, std::vector<uint32_t>* start, std::vector<uint32_t>* values)
{
    start->assign(keys + 1, 0);
    forEachPair([start](uint32_t key, uint32_t) { ++(*start)[key + 1]; });
    for (size_t i = 1; i < start->size(); ++i)
        (*start)[i] += (*start)[i - 1];
    values->resize(start->back());
    std::vector<uint32_t> next(start->begin(), start->end() - 1);
    forEachPair([&](uint32_t key, uint32_t value) { (*values)[next[key]++] = value; });
}

}  // namespace

bool AvailableMap::writeCacheText(const std::function<bool(std::string_view)>& sink) const
{
    // Types in a stable order: sorted, as a reader cannot tell otherwise.
    // Sorted once here, each path's types come out in that order.
    const std::vector<uint32_t> typeOrder = m_types.numbersInOrder();
    std::vector<uint32_t> start, typesOf;
    groupByKey(
        m_paths.size(),
        [&](auto visit) {
            for (uint32_t number : typeOrder) {
                for (uint32_t index : m_byType[number])
                    visit(index, number);
            }
        },
        &start, &typesOf);
    // Handed on in pieces: the whole text is as large as the map.
    constexpr size_t kPiece = 16384;
    std::string piece;
    piece.reserve(kPiece + 512);
    for (uint32_t index : m_paths.numbersInOrder()) {
        if (start[index] == start[index + 1])
            continue;
        piece += m_paths.at(index);
        char separator = '=';
        for (uint32_t at = start[index]; at < start[index + 1]; ++at) {
            piece += separator;
            piece += m_types.at(typesOf[at]);
            separator = ';';
        }
        piece += '\n';
        if (piece.size() >= kPiece) {
            if (!sink(piece))
                return false;
            piece.clear();
        }
    }
    return piece.empty() || sink(piece);
}

namespace {

std::mutex g_availableMutex;
AvailableMap g_available;
// A believed cache file not yet added to g_available: the first questions
// are answered from its text, and the map is made only for a process that
// keeps asking.
CacheFileLines g_fileLines;
unsigned g_fileLinesAsked = 0;
constexpr unsigned kAskedBeforeMap = 8;
std::string g_availableSources;  // the sources g_available was made from; empty: not made yet
VyxMimeCacheUse g_cacheUse;

// Each link of the alias table in both directions, as a number: 2 * line
// for canonical -> alias, one more for alias -> canonical; grouped by the
// type linked from, in table order within a group. Built once, so that
// registering does not walk the whole table.
struct TypeLinks {
    StringPool from;  // the types linked from, numbered
    std::vector<uint32_t> start;  // by number of from: where its links begin in codes
    std::vector<uint32_t> codes;
};

std::string_view linkTo(const AliasTable& table, uint32_t code)
{
    return code % 2 ? table[code / 2].first : table[code / 2].second;
}

const TypeLinks& typeLinks()
{
    static const TypeLinks links = [] {
        const AliasTable& table = mimeAliasTable();
        TypeLinks built;
        // (number of from, code) in table order, then counted into groups.
        std::vector<std::pair<uint32_t, uint32_t>> pairs;
        pairs.reserve(2 * table.size());
        for (uint32_t line = 0; line < table.size(); ++line) {
            pairs.emplace_back(built.from.intern(table[line].first), 2 * line);
            if (table[line].first != table[line].second)
                pairs.emplace_back(built.from.intern(table[line].second), 2 * line + 1);
        }
        groupByKey(
            built.from.size(),
            [&pairs](auto visit) {
                for (const auto& [number, code] : pairs)
                    visit(number, code);
            },
            &built.start, &built.codes);
        return built;
    }();
    return links;
}

// The numbers of type and of the types the alias table links to it.
void typeNumbers(AvailableMap& map, const std::string& type, std::vector<uint32_t>* numbers)
{
    numbers->clear();
    numbers->push_back(map.internType(type));
    const TypeLinks& links = typeLinks();
    const uint32_t from = links.from.find(type);
    if (from == StringPool::kNone)
        return;
    const AliasTable& table = mimeAliasTable();
    for (uint32_t at = links.start[from]; at < links.start[from + 1]; ++at)
        numbers->push_back(map.internType(linkTo(table, links.codes[at])));
}

// Registers path for type and for the types the alias table links to it.
void registerType(AvailableMap& map, const std::string& type, const std::string& path)
{
    std::vector<uint32_t> numbers;
    typeNumbers(map, type, &numbers);
    uint32_t index = map.internPath(path);
    for (uint32_t number : numbers)
        map.addNumbered(number, index);
}

void readMimeinfoCache(const std::string& dir, AvailableMap& map)
{
    FILE* file = Vyx::detail::fopenRegularFile((dir + "/mimeinfo.cache").c_str());
    if (!file)
        return;
    // One line names many applications for one type: the type and its
    // links are looked up once, and the paths built in one buffer.
    std::string path = dir + "/";
    const size_t dirLength = path.size();
    std::vector<uint32_t> numbers;
    Vyx::detail::forEachLine(file, [&](const std::string& current) {
        if (current.empty() || current[0] == '[')
            return;
        std::string::size_type eq = current.find('=');
        if (eq == std::string::npos)
            return;
        numbers.clear();
        // The names end at a NUL byte, as a C string does.
        for (const char* name = current.c_str() + eq + 1; *name;) {
            size_t length = std::strcspn(name, ";");
            if (length) {
                if (numbers.empty())
                    typeNumbers(map, current.substr(0, eq), &numbers);
                path.resize(dirLength);
                path.append(name, length);
                uint32_t index = map.internPath(path);
                for (uint32_t number : numbers)
                    map.addNumbered(number, index);
            }
            name += length;
            if (*name)
                ++name;
        }
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

// The cache file at path, mapped, when it may be believed: opened without
// following a link, regular, the user's own and writable by no one else.
// Otherwise null, *why saying why unless the file is simply missing. An
// empty file is kept as no text, for the reader to judge.
VYX_FIRST_ANSWER bool openPrivateCacheFile(const std::string& path, CacheFileLines* lines, const std::string& section,
                                           CacheVerdict* verdict, std::string* why)
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
    if (fstat(fd, &st) != 0)
        return false;
    if (st.st_size > kMaxCacheFileSize) {
        *why = "too large";
        return false;
    }
    if (st.st_size == 0) {
        *verdict = lines->take(std::string(), section);
        return true;
    }
    // The last line is read on its own: a question answered near the start
    // of the file then never touches its last pages.
    char tail[8];
    const size_t tailLength = std::min(sizeof tail, size_t(st.st_size));
    auto file = std::make_unique<MappedFile>();
    if (pread(fd, tail, tailLength, st.st_size - off_t(tailLength)) != ssize_t(tailLength) || !file->map(fd, st))
        return false;
    *verdict = lines->take(std::move(file), std::string_view(tail, tailLength), section);
    return true;
}

// Brings the available map up to date with the application directories: kept
// while no directory changed, else taken from the cache file when that was
// made for exactly these directories as they are, else rebuilt from every
// directory and saved. Called under g_availableMutex.
VYX_FIRST_ANSWER void refreshAvailable()
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
        CacheFileLines read;
        CacheVerdict verdict = CacheVerdict::NotACacheFile;
        if (!privateDir) {
            use.ignored = "in a directory others can write";
        } else if (openPrivateCacheFile(use.path, &read, section, &verdict, &use.ignored)) {
            if (verdict == CacheVerdict::Believed) {
                g_available = AvailableMap();
                g_fileLines = std::move(read);
                g_fileLinesAsked = 0;
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
    g_fileLines = CacheFileLines();
    if (privateDir && makePrivateDirectories(dir) && isPrivateDirectory(dir))
        use.written = replacePrivateFile(use.path, [&](int fd) { return writeCacheFile(fd, section, g_available); });
    g_availableSources = std::move(section);
    g_cacheUse = std::move(use);
}

// The paths of type, under g_availableMutex after refreshAvailable.
VYX_FIRST_ANSWER std::vector<std::string> availablePaths(const std::string& type, bool all)
{
    if (!g_fileLines.empty()) {
        if (g_fileLinesAsked < kAskedBeforeMap) {
            ++g_fileLinesAsked;
            return g_fileLines.pathsFor(type, all);
        }
        g_fileLines.addTo(&g_available);
        g_fileLines = CacheFileLines();
    }
    return g_available.pathsFor(type, all);
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
            aliases.emplace_back(alias);
    }
    return aliases;
}

VYX_FIRST_ANSWER std::vector<std::string> GetDesktopEntryPathForMime(const char* mime,
                                                                     Vyx::tagged_bool<AllDesktopEntries_tag> all)
{
    if (!mime || !*mime)
        return {};
    FillDesktopEntriesDirArray();
    std::lock_guard<std::mutex> lock(g_availableMutex);
    refreshAvailable();
    return availablePaths(mime, static_cast<bool>(all));
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
