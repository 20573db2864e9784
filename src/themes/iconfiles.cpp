// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "themes/iconfiles_p.h"

#include "core/dirwalker_p.h"
#include "core/pathprobe_p.h"
#include "core/uniquefd_p.h"
#include "themes/icontheme_p.h"
#include "vyxfileutils.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <ctime>
#include <fcntl.h>
#include <functional>
#include <sys/stat.h>
#include <unistd.h>

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

// Whether path lies under one of the directories in missing.
bool underMissing(const std::vector<std::string>& missing, std::string_view path)
{
    for (const std::string& gone : missing) {
        if (path.size() > gone.size() && path[gone.size()] == '/' && path.compare(0, gone.size(), gone) == 0)
            return true;
    }
    return false;
}

// path is missing: notes its highest missing ancestor, so that the dozens
// of size directories under a theme copy that does not exist cost one
// check, not one each.
void noteMissing(std::vector<std::string>* missing, std::string_view path)
{
    std::string_view highest;
    for (size_t slash = path.rfind('/'); slash != std::string_view::npos && slash > 0;
         slash = path.rfind('/', slash - 1)) {
        if (fileExists(std::string(path.substr(0, slash)), false))
            break;
        highest = path.substr(0, slash);
    }
    if (!highest.empty())
        missing->emplace_back(highest);
}

}  // namespace

uint16_t IconDirList::addBase(std::string base)
{
    m_bases.push_back(std::move(base));
    return uint16_t(m_bases.size() - 1);
}

uint32_t IconDirList::add(uint16_t base, std::string_view rel, int32_t cacheIndex)
{
    m_dirs.push_back({base, cacheIndex, rel});
    return uint32_t(m_dirs.size() - 1);
}

void IconDirList::path(uint32_t id, std::string* path) const
{
    const Dir& dir = m_dirs[id];
    path->assign(m_bases[dir.base]);
    if (!dir.rel.empty())
        path->append(1, '/').append(dir.rel);
}

IconListing::IconListing(std::shared_ptr<const IconDirList> dirs, int64_t youngFor)
    : m_dirs(std::move(dirs)), m_youngFor(youngFor), m_states(new IconDirState[m_dirs->size()])
{ }

IconListing::~IconListing() = default;

const IconDirState& IconListing::dir(uint32_t id) const
{
    IconDirState& state = m_states[id];
    if (!state.ready.load(std::memory_order_acquire)) {
        std::lock_guard<std::mutex> lock(m_mutex);
        if (!state.ready.load(std::memory_order_relaxed)) {
            read(id, state);
            state.ready.store(true, std::memory_order_release);
        }
    }
    return state;
}

uint8_t IconListing::kindsOf(const IconDirState& dir, std::string_view stem)
{
    if (!dir.names)
        return 0;
    auto found = std::lower_bound(dir.names->begin(), dir.names->end(), stem,
                                  [](const auto& entry, std::string_view key) { return entry.first < key; });
    return found != dir.names->end() && found->first == stem ? found->second : 0;
}

bool IconListing::cacheUsable() const
{
    // Once per listing: a cache replaced since the theme mapped it (the
    // theme reinstalled under us) no longer tells what the directories
    // hold, even when they look old enough.
    if (m_cacheUsable.load(std::memory_order_relaxed) < 0) {
        const IconThemeCache* cache = m_dirs->cache;
        m_cacheUsable.store(cache && cache->isValid() && cache->stillInPlace(), std::memory_order_relaxed);
    }
    return m_cacheUsable.load(std::memory_order_relaxed) > 0 && m_dirs->cache->isValid();
}

void IconListing::read(uint32_t id, IconDirState& dir) const
{
    std::string path;
    m_dirs->path(id, &path);
    if (underMissing(m_missing, path)) {
        dir.known = kAllKinds;
        return;
    }
    const int64_t now = iconClockNow();
    // One of the theme's directories may be taken from the cache when it is
    // older than the cache to the nanosecond: nothing has been added since
    // the cache was written. One the cache does not list held no image.
    if (m_dirs->cacheIndex(id) != IconDirList::kOutsideTheme && cacheUsable()) {
        struct stat st;
        if (stat(path.c_str(), &st) == 0 && S_ISDIR(st.st_mode) && modifiedNs(st) < m_dirs->cache->modified() &&
            modifiedNs(st) <= now - m_youngFor) {
            dir.exists = true;
            dir.fromCache = true;
            dir.mtime = modifiedNs(st);
            dir.known = kImageKinds;
            return;
        }
    }
    UniqueFd fd(open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!fd) {
        if (errno == ENOENT || errno == ENOTDIR) {
            dir.known = kAllKinds;
            noteMissing(&m_missing, path);
        }
        return;
    }
    struct stat st;
    if (fstat(fd.get(), &st) != 0 || modifiedNs(st) > now - m_youngFor)
        return;  // known = 0: it may be changing under us
    dir.exists = true;
    dir.mtime = modifiedNs(st);
    auto names = std::make_unique<std::vector<std::pair<std::string, uint8_t>>>();
    const bool complete = readNames(std::move(fd), [&](std::string_view name) {
        auto [stem, kind] = splitIconFileName(name);
        names->emplace_back(stem, kind);
    });
    std::sort(names->begin(), names->end());
    // One entry per stem, with every kind it has.
    size_t kept = 0;
    for (size_t i = 0; i < names->size(); ++i) {
        if (kept > 0 && (*names)[kept - 1].first == (*names)[i].first)
            (*names)[kept - 1].second |= (*names)[i].second;
        else if (kept++ != i)
            (*names)[kept - 1] = std::move((*names)[i]);
    }
    names->resize(kept);
    dir.known = complete ? kAllKinds : 0;
    dir.names = names.get();
    m_names.push_back(std::move(names));
}

const std::vector<std::string>* IconListing::diskImageStems() const
{
    if (!m_complete.load(std::memory_order_acquire)) {
        std::lock_guard<std::mutex> lock(m_mutex);
        if (!m_complete.load(std::memory_order_relaxed)) {
            m_allSure = true;
            for (uint32_t id = 0; id < m_dirs->size(); ++id) {
                IconDirState& state = m_states[id];
                if (!state.ready.load(std::memory_order_relaxed)) {
                    read(id, state);
                    state.ready.store(true, std::memory_order_release);
                }
                if ((state.known & (kPngFile | kSvgFile)) != (kPngFile | kSvgFile))
                    m_allSure = false;
                if (!state.names)
                    continue;
                for (const auto& [stem, kinds] : *state.names) {
                    if (kinds & (kPngFile | kSvgFile))
                        m_diskStems.push_back(stem);
                }
            }
            std::sort(m_diskStems.begin(), m_diskStems.end());
            m_diskStems.erase(std::unique(m_diskStems.begin(), m_diskStems.end()), m_diskStems.end());
            m_complete.store(true, std::memory_order_release);
        }
    }
    return m_allSure ? &m_diskStems : nullptr;
}

bool IconListing::stillCurrent(int64_t now) const
{
    // A theme installed anew may keep its directories' times; its cache is
    // then the sign that what the old one listed no longer holds.
    if (m_cacheUsable.load(std::memory_order_relaxed) > 0 && !m_dirs->cache->stillInPlace())
        return false;
    std::vector<std::string> missing;
    std::string path;
    for (uint32_t id = 0; id < m_dirs->size(); ++id) {
        const IconDirState& dir = m_states[id];
        if (!dir.ready.load(std::memory_order_acquire))
            continue;  // never asked: nothing was answered from it
        m_dirs->path(id, &path);
        if (!dir.exists && dir.known == kAllKinds && underMissing(missing, path))
            continue;
        struct stat st;
        const bool found = stat(path.c_str(), &st) == 0 && S_ISDIR(st.st_mode);
        if (!found && !dir.exists)
            noteMissing(&missing, path);
        if (dir.known == 0) {
            // Read again once it has settled; until then its files are
            // checked one by one anyway.
            if (found && modifiedNs(st) <= now - m_youngFor)
                return false;
        } else if (found != dir.exists || (found && modifiedNs(st) != dir.mtime)) {
            return false;
        }
    }
    return true;
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
        if (!current) {
            // Nothing is read yet: a listing costs nothing until asked.
            m_listing = current = std::make_shared<IconListing>(m_dirs, interval);
            m_checkedAt.store(now, std::memory_order_relaxed);
            return current;
        }
        // Within the interval, or another thread is comparing: use what we have.
        if ((now >= checkedAt && now - checkedAt < interval) || m_busy)
            return current;
        m_busy = true;
    }
    std::shared_ptr<const IconListing> fresh = current;
    if (!current->stillCurrent(now))
        fresh = std::make_shared<IconListing>(m_dirs, interval);
    std::lock_guard<std::mutex> lock(m_mutex);
    if (fresh != current) {
        m_listing = fresh;
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
    if (!m_lastName.empty() && name == m_lastName)
        return;
    m_lastName = name;
    m_carriesExtension = hasImageExtension(name.c_str());
    m_imagesKnown[0] = m_imagesKnown[1] = false;
}

const std::vector<IconCacheImage>& IconProbe::cacheImages()
{
    if (!m_imagesKnown[0]) {
        m_imagesKnown[0] = true;
        m_images[0].clear();
        if (m_cache)
            m_cache->lookup(*m_name, &m_images[0]);
        // A lookup that met a damaged part tells nothing.
        m_imagesBelieved[0] = m_cache && m_cache->isValid();
    }
    return m_images[0];
}

IconProbe::Kinds IconProbe::kindsIn(uint32_t dir, bool bare)
{
    if (!m_listing || dir == kNoDir)
        return {};
    const IconDirState& state = m_listing->dir(dir);
    if (!state.known)
        return {};
    if (!state.fromCache)
        return {IconListing::kindsOf(state, bare ? std::string_view(*m_name) : splitIconFileName(*m_name).first),
                state.known};
    const int slot = bare ? 0 : 1;
    if (bare) {
        cacheImages();
    } else if (!m_imagesKnown[1]) {
        m_imagesKnown[1] = true;
        m_cache->lookup(std::string(splitIconFileName(*m_name).first), &m_images[1]);
        m_imagesBelieved[1] = m_cache->isValid();
    }
    if (!m_imagesBelieved[slot])
        return {};
    Kinds kinds {0, state.known};
    const int32_t index = m_listing->dirs().cacheIndex(dir);
    for (const IconCacheImage& image : m_images[slot]) {
        if (int32_t(image.index) == index)
            kinds.present =
                uint8_t((image.flags & kCachedPng ? kPngFile : 0) | (image.flags & kCachedSvg ? kSvgFile : 0) |
                        (image.flags & kCachedXpm ? kXpmFile : 0));
    }
    return kinds;
}

IconProbe::Known IconProbe::known(uint32_t dir, bool bare, IconFileKind kind)
{
    const Kinds kinds = kindsIn(dir, bare);
    if (!(kinds.sure & kind))
        return Known::Unknown;
    if (!(kinds.present & kind))
        return Known::Absent;
    // Other extensions share one mark: "present" may be another of them.
    return kind == kOtherFile ? Known::Unknown : Known::Present;
}

bool IconProbe::mayHoldAny(const uint32_t* dirs, size_t count)
{
    if (!m_listing || m_carriesExtension)
        return true;
    constexpr uint8_t kBoth = kPngFile | kSvgFile;
    for (size_t k = 0; k < count; ++k) {
        const Kinds kinds = kindsIn(dirs[k], true);
        if ((kinds.sure & kBoth) != kBoth || (kinds.present & kBoth))
            return true;
    }
    return false;
}

bool IconProbe::listedNowhere()
{
    if (!m_listing || m_carriesExtension)
        return false;
    // A name the cache lists is somewhere: the directories are asked one
    // by one. One it does not list is looked for in what the disk holds.
    if (!m_cache || !m_listing->dirs().cache) {
        // No cache stands in for any directory.
    } else if (cacheImages(), !m_imagesBelieved[0] || !m_images[0].empty()) {
        return false;
    }
    const std::vector<std::string>* stems = m_listing->diskImageStems();
    return stems && !std::binary_search(stems->begin(), stems->end(), *m_name);
}

bool IconProbe::check(Known known, const std::string& path)
{
    // A file the listing shows is still checked: it may have gone since, or
    // be a link to nothing.
    if (known == Known::Unknown)
        ++t_uncertainChecks;
    return faccessat(AT_FDCWD, path.c_str(), F_OK, AT_EACCESS) == 0;
}

std::string IconProbe::withExtension(uint32_t dir, std::string_view base, std::string_view rel,
                                     std::initializer_list<IconFileKind> kinds)
{
    for (IconFileKind kind : kinds) {
        const Known answer = known(dir, true, kind);
        if (answer == Known::Absent)
            continue;
        const char* extension = kind == kPngFile ? ".png" : kind == kSvgFile ? ".svg" : ".xpm";
        std::string path;
        path.reserve(base.size() + rel.size() + m_name->size() + 6);
        path.append(base).append(1, '/');
        if (!rel.empty())
            path.append(rel).append(1, '/');
        path.append(*m_name).append(extension);
        if (check(answer, path))
            return path;
    }
    return std::string();
}

std::string IconProbe::asIs(uint32_t dir, std::string_view base, std::string_view rel)
{
    const Known answer = known(dir, false, splitIconFileName(*m_name).second);
    if (answer == Known::Absent)
        return std::string();
    std::string path;
    path.append(base).append(1, '/');
    if (!rel.empty())
        path.append(rel).append(1, '/');
    path.append(*m_name);
    return check(answer, path) ? path : std::string();
}

bool IconProbe::directoryExists(uint32_t dir, const std::string& path)
{
    if (m_listing && dir != kNoDir) {
        const IconDirState& state = m_listing->dir(dir);
        if (state.known != 0)
            return state.exists;
    }
    ++t_uncertainChecks;
    return fileExists(path, false);
}

}  // namespace Vyx::detail
