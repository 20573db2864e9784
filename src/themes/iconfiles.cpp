// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "themes/iconfiles_p.h"

#include "core/dirwalker_p.h"
#include "core/mappedfile_p.h"
#include "core/uniquefd_p.h"
#include "themes/iconcachewalk_p.h"
#include "themes/icontheme_p.h"
#include "vyxfileutils.h"

#include <cerrno>
#include <cstring>
#include <ctime>
#include <deque>
#include <fcntl.h>
#include <functional>
#include <sys/stat.h>
#include <unistd.h>
#include <unordered_set>

namespace Vyx::detail {

std::atomic<int64_t> IconFiles::recheckInterval {2'000'000'000};
std::atomic<uint64_t> IconFiles::s_generation {0};
std::atomic<bool> IconFiles::enabled {true};

int64_t iconClockNow()
{
    struct timespec now;
    clock_gettime(CLOCK_REALTIME_COARSE, &now);
    return int64_t(now.tv_sec) * 1'000'000'000 + now.tv_nsec;
}

std::pair<std::string_view, IconFileKind> splitIconFileName(std::string_view name)
{
    const size_t dot = name.rfind('.');
    if (dot == std::string_view::npos)
        return {name, kBareFile};
    const std::string_view extension = name.substr(dot + 1);
    IconFileKind kind = extension == "png"   ? kPngFile
                        : extension == "svg" ? kSvgFile
                        : extension == "xpm" ? kXpmFile
                                             : kOtherFile;
    return {name.substr(0, dot), kind};
}

namespace {

int64_t modificationTime(const struct stat& st)
{
    return int64_t(st.st_mtim.tv_sec) * 1'000'000'000 + st.st_mtim.tv_nsec;
}

// Every entry name of the open directory fd (which it closes); false when
// the directory cannot be read to its end.
bool readNames(UniqueFd fd, const std::function<void(std::string_view)>& add)
{
    DirWalker dir = DirWalker::fromDescriptor(fd.release());
    if (!dir.isOpen())
        return false;
    errno = 0;
    while (const dirent* entry = dir.next()) {
        add(entry->d_name);
        errno = 0;
    }
    return errno == 0;
}

// Directories known to be missing, so that the dozens of size directories
// under a theme copy that does not exist cost one check, not one each.
class MissingDirs {
public:
    // Whether an ancestor of path is known to be missing.
    bool coverAncestorOf(std::string_view path) const
    {
        if (m_missing.empty())
            return false;
        for (size_t slash = path.rfind('/'); slash != std::string_view::npos && slash > 0;
             slash = path.rfind('/', slash - 1)) {
            if (m_missing.count(path.substr(0, slash)))
                return true;
        }
        return false;
    }
    // path is missing: notes the highest missing ancestor as well.
    void note(std::string_view path)
    {
        size_t slash = path.rfind('/');
        while (slash != std::string_view::npos && slash > 0) {
            std::string parent(path.substr(0, slash));
            if (fileExists(parent, false))
                break;
            m_missing.insert(m_names.emplace_back(std::move(parent)));
            slash = path.rfind('/', slash - 1);
        }
    }

private:
    std::deque<std::string> m_names;  // owns what m_missing views
    std::unordered_set<std::string_view> m_missing;
};

}  // namespace

bool IconListing::Hits::mayHold(uint32_t dir, IconFileKind kind) const
{
    if (!m_listing || !m_listing->knows(dir, kind))
        return true;
    for (uint32_t hit = m_first; hit != kNone; hit = m_listing->m_hits[hit].next) {
        if (m_listing->m_hits[hit].dir == dir)
            return (m_listing->m_hits[hit].kinds & kind) != 0;
    }
    return false;
}

IconListing::Hits IconListing::hits(const std::string& stem) const
{
    Hits hits;
    hits.m_listing = this;
    if (auto found = m_stems.find(stem); found != m_stems.end())
        hits.m_first = found->second;
    return hits;
}

bool IconListing::Hits::inCache() const
{
    if (!m_listing || !m_listing->m_cacheWalked)
        return true;
    for (uint32_t hit = m_first; hit != kNone; hit = m_listing->m_hits[hit].next) {
        if (m_listing->m_hits[hit].kinds & kInCache)
            return true;
    }
    return false;
}

void IconListing::markDirsOf(const Hits& hits, std::vector<uint64_t>* bits) const
{
    bits->assign((m_dirs.size() + 63) / 64, 0);
    for (uint32_t hit = hits.m_first; hit != kNone; hit = m_hits[hit].next)
        (*bits)[m_hits[hit].dir / 64] |= uint64_t(1) << (m_hits[hit].dir % 64);
}

void IconListing::add(std::string_view stem, uint32_t dir, uint8_t kinds, size_t hitsOfThisDirFrom)
{
    // One hit per (stem, directory), however many kinds it holds; the hits
    // of a stem are chained newest first, so this directory's is the head.
    auto [slot, added] = m_stems.try_emplace(std::string(stem), kNone);
    if (!added && slot->second != kNone && slot->second >= hitsOfThisDirFrom && m_hits[slot->second].dir == dir) {
        m_hits[slot->second].kinds |= kinds;
        return;
    }
    m_hits.push_back({dir, kinds, slot->second});
    slot->second = uint32_t(m_hits.size() - 1);
}

std::shared_ptr<const IconListing> IconListing::read(const std::vector<std::string>& paths,
                                                     const IconCacheSource* cache, int64_t now, int64_t youngFor)
{
    auto listing = std::make_shared<IconListing>();
    listing->m_dirs.resize(paths.size());
    listing->m_stems.reserve(4096);

    // The cache's directories, by path, and each listed directory's index
    // in the cache. A directory of the theme can be taken from the cache
    // when it is older than the cache to the nanosecond: then nothing has
    // been added since the cache was written. The cache knows images only.
    std::vector<const char*> cacheDirs;
    std::unordered_map<std::string, uint16_t> cacheIndex;
    int64_t cacheTime = 0;
    std::string themePrefix;
    // The whole cache is walked first: a damaged one is not used at all.
    struct CachedImage {
        const char* name;
        uint16_t dir;
        uint8_t kinds;
    };
    std::vector<CachedImage> cachedImages;
    auto collect = [&](const char* name, uint16_t index, uint16_t flags) {
        // The generator's flags: 1 .xpm, 2 .svg, 4 .png.
        cachedImages.push_back(
            {name, index,
             uint8_t((flags & 1 ? kXpmFile : 0) | (flags & 2 ? kSvgFile : 0) | (flags & 4 ? kPngFile : 0))});
    };
    // The walk maps the cache anew: its time is then that of the bytes
    // walked, even when the file was replaced since the reader checked it.
    MappedFile cacheFile;
    int64_t mappedTime = 0;
    if (cache && cache->reader && cache->reader->isValid() &&
        cacheFile.open(cache->themePath + "/icon-theme.cache", &mappedTime) &&
        forEachCachedImage(cacheFile.view(), &cacheDirs, collect)) {
        listing->m_cacheWalked = true;
        cacheTime = mappedTime;
        themePrefix = cache->themePath + "/";
        for (size_t i = 0; i < cacheDirs.size(); ++i)
            cacheIndex.emplace(themePrefix + cacheDirs[i], uint16_t(i));
    }
    std::vector<uint32_t> idOfCacheDir(cacheDirs.size(), kNone);

    MissingDirs missing;
    for (uint32_t id = 0; id < paths.size(); ++id) {
        Dir& dir = listing->m_dirs[id];
        const std::string& path = paths[id];
        if (missing.coverAncestorOf(path)) {
            dir.known = IconListing::kAllKinds;
            continue;
        }
        const bool inTheme = cacheTime != 0 && path.compare(0, themePrefix.size(), themePrefix) == 0;
        if (inTheme) {
            struct stat st;
            if (stat(path.c_str(), &st) == 0 && S_ISDIR(st.st_mode) && modificationTime(st) < cacheTime &&
                modificationTime(st) <= now - youngFor) {
                dir.exists = true;
                dir.mtime = modificationTime(st);
                // A directory the cache does not list held no image.
                dir.known = kImageKinds;
                if (auto listed = cacheIndex.find(path); listed != cacheIndex.end())
                    idOfCacheDir[listed->second] = id;
                continue;
            }
        }
        UniqueFd fd(open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
        if (!fd) {
            if (errno == ENOENT || errno == ENOTDIR) {
                dir.known = IconListing::kAllKinds;
                missing.note(path);
            }
            continue;
        }
        struct stat st;
        if (fstat(fd.get(), &st) != 0 || modificationTime(st) > now - youngFor)
            continue;  // known = 0: it may be changing under us
        dir.exists = true;
        dir.mtime = modificationTime(st);
        const size_t hitsBefore = listing->m_hits.size();
        const bool complete = readNames(std::move(fd), [&](std::string_view name) {
            auto [stem, kind] = splitIconFileName(name);
            listing->add(stem, id, kind, hitsBefore);
        });
        dir.known = complete ? IconListing::kAllKinds : 0;
    }

    // Images of directories read above, or outside the listed ones, still
    // mark the name as one the cache holds, on a directory of their own.
    const uint32_t elsewhere = uint32_t(paths.size());
    uint32_t lastDir = kNone;
    size_t hitsBefore = 0;
    for (const CachedImage& image : cachedImages) {
        const uint32_t id = idOfCacheDir[image.dir] == kNone ? elsewhere : idOfCacheDir[image.dir];
        if (id != lastDir) {
            lastDir = id;
            hitsBefore = listing->m_hits.size();
        }
        listing->add(image.name, id, uint8_t((id == elsewhere ? 0 : image.kinds) | kInCache), hitsBefore);
    }
    for (const Dir& dir : listing->m_dirs)
        listing->m_completeKinds &= dir.known;
    listing->m_dirs.emplace_back();  // the directory of "elsewhere in the cache", known = 0
    return listing;
}

bool IconListing::stillCurrent(const std::vector<std::string>& paths, int64_t now, int64_t youngFor) const
{
    MissingDirs missing;
    for (uint32_t id = 0; id < paths.size(); ++id) {
        const Dir& dir = m_dirs[id];
        if (!dir.exists && dir.known == IconListing::kAllKinds && missing.coverAncestorOf(paths[id]))
            continue;
        struct stat st;
        const bool found = stat(paths[id].c_str(), &st) == 0 && S_ISDIR(st.st_mode);
        if (!found && !dir.exists)
            missing.note(paths[id]);
        if (dir.known == 0) {
            // Read again once it has settled; until then its files are
            // checked one by one anyway.
            if (found && modificationTime(st) <= now - youngFor)
                return false;
        } else if (found != dir.exists || (found && modificationTime(st) != dir.mtime)) {
            return false;
        }
    }
    return true;
}

uint32_t IconFiles::add(const std::string& path)
{
    auto [slot, added] = m_ids.try_emplace(path, uint32_t(m_paths.size()));
    if (added)
        m_paths.push_back(path);
    return slot->second;
}

std::shared_ptr<const IconListing> IconFiles::listing(int64_t now)
{
    if (!enabled.load(std::memory_order_relaxed))
        return nullptr;
    const int64_t interval = recheckInterval.load(std::memory_order_relaxed);
    const int64_t checkedAt = m_checkedAt.load(std::memory_order_relaxed);
    std::shared_ptr<const IconListing> current;
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        current = m_listing;
        // Within the interval, or another thread is reading: use what we have.
        if ((current && now >= checkedAt && now - checkedAt < interval) || m_busy)
            return current;
        m_busy = true;
    }
    std::shared_ptr<const IconListing> fresh = current;
    if (!current || !current->stillCurrent(m_paths, now, interval))
        fresh = IconListing::read(m_paths, m_cache.reader ? &m_cache : nullptr, now, interval);
    std::lock_guard<std::mutex> lock(m_mutex);
    if (fresh != current) {
        m_listing = fresh;
        if (current)
            s_generation.fetch_add(1, std::memory_order_acq_rel);
    }
    m_checkedAt.store(now, std::memory_order_relaxed);
    m_busy = false;
    return fresh;
}

namespace {
thread_local uint64_t t_uncertainChecks = 0;
}

uint64_t IconProbe::uncertainChecks()
{
    return t_uncertainChecks;
}

void IconProbe::setName(const std::string& name)
{
    m_name = &name;
    // A bigger pass looks for the same name again: what is known of it
    // still holds.
    if (m_bareHitsKnown && name == m_lastName)
        return;
    m_lastName = name;
    m_carriesExtension = hasImageExtension(name.c_str());
    m_bareHitsKnown = false;
    m_bareDirs.clear();
}

const IconListing::Hits& IconProbe::bareHits()
{
    if (!m_bareHitsKnown && m_listing) {
        m_bareHits = m_listing->hits(*m_name);
        m_bareHitsKnown = true;
    }
    return m_bareHits;
}

bool IconProbe::mayHoldAny(const uint32_t* dirs, size_t count)
{
    if (!m_listing || m_carriesExtension)
        return true;
    if (m_bareDirs.empty())
        m_listing->markDirsOf(bareHits(), &m_bareDirs);
    for (size_t k = 0; k < count; ++k) {
        const uint32_t dir = dirs[k];
        if (dir == kNoDir || !m_listing->knows(dir, kPngFile) || !m_listing->knows(dir, kSvgFile) ||
            (m_bareDirs[dir / 64] >> (dir % 64) & 1))
            return true;
    }
    return false;
}

bool IconProbe::listedNowhere()
{
    if (!m_listing || !bareHits().none(kPngFile | kSvgFile))
        return false;
    // A name with an image extension is looked for as it stands.
    if (!m_carriesExtension)
        return true;
    auto [stem, kind] = splitIconFileName(*m_name);
    return m_listing->hits(std::string(stem)).none(kind);
}

bool IconProbe::mayHold(uint32_t dir, const IconListing::Hits& hits, IconFileKind kind) const
{
    return !m_listing || dir == kNoDir || hits.mayHold(dir, kind);
}

bool IconProbe::check(uint32_t dir, const std::string& path, IconFileKind kind)
{
    // A file the listing shows is still checked: it may have gone since, or
    // be a link to nothing. Other extensions share one mark in the listing,
    // so a check of one of them is never answered by it alone.
    if (!m_listing || dir == kNoDir || !m_listing->knows(dir, kind) || kind == kOtherFile)
        ++t_uncertainChecks;
    return faccessat(AT_FDCWD, path.c_str(), F_OK, AT_EACCESS) == 0;
}

std::string IconProbe::withExtension(uint32_t dir, std::string_view base, std::string_view rel,
                                     std::initializer_list<IconFileKind> kinds)
{
    for (IconFileKind kind : kinds) {
        if (!mayHold(dir, bareHits(), kind))
            continue;
        const char* extension = kind == kPngFile ? ".png" : kind == kSvgFile ? ".svg" : ".xpm";
        std::string path;
        path.reserve(base.size() + rel.size() + m_name->size() + 6);
        path.append(base).append(1, '/');
        if (!rel.empty())
            path.append(rel).append(1, '/');
        path.append(*m_name).append(extension);
        if (check(dir, path, kind))
            return path;
    }
    return std::string();
}

std::string IconProbe::asIs(uint32_t dir, std::string_view base, std::string_view rel)
{
    auto [stem, kind] = splitIconFileName(*m_name);
    if (m_listing && dir != kNoDir && !m_listing->hits(std::string(stem)).mayHold(dir, kind))
        return std::string();
    std::string path;
    path.append(base).append(1, '/');
    if (!rel.empty())
        path.append(rel).append(1, '/');
    path.append(*m_name);
    return check(dir, path, kind) ? path : std::string();
}

bool IconProbe::directoryExists(uint32_t dir, const std::string& path)
{
    if (m_listing && dir != kNoDir && m_listing->existenceKnown(dir))
        return m_listing->exists(dir);
    ++t_uncertainChecks;
    return fileExists(path, false);
}

}  // namespace Vyx::detail
