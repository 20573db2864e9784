// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#ifndef VYXCORE_ICONFILES_P_H
#define VYXCORE_ICONFILES_P_H

// What a theme's directories hold, kept in memory so that an icon lookup
// learns that a candidate file is missing without asking the file system.
// A name goes through dozens of candidates (two extensions, every
// directory of its size, the theme's other copies, the parents, bigger
// sizes, shorter names) and nearly all of them are missing.
//
// A directory the theme's icon-theme.cache covers is answered from the
// mapped cache, one name at a time; any other is read when a lookup first
// asks about it. A fresh process thus pays for the names and directories
// its lookups meet, not for the whole theme.
//
// Only "missing" is answered from memory. A file the listing shows is still
// checked with stat before a lookup returns it, so a deleted icon is never
// handed out. A file added later can go unseen for a short time: the
// directories are compared with their modification times at most once per
// recheck interval, and a directory changed less than an interval ago is
// not trusted at all (a change made within the same clock tick as our read
// would not move its time), so its candidates are checked one by one.

#include "themes/iconcachefile_p.h"

#include <atomic>
#include <cstdint>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

namespace Vyx::detail {

// How a file name ends, split at its last '.'.
enum IconFileKind : uint8_t {
    kPngFile = 1,
    kSvgFile = 2,
    kXpmFile = 4,
    kBareFile = 8,  // no '.' at all
    kOtherFile = 16  // any other extension
};
// The part before the last '.' and the kind of what follows it.
std::pair<std::string_view, IconFileKind> splitIconFileName(std::string_view name);

class IconThemeCache;

// The directories a theme searches: each a base (the theme's directory, its
// copies under the other search directories, the places outside themes)
// with a relative path under it, given ids in the order they are added.
class IconDirList {
public:
    static constexpr int32_t kOutsideTheme = -2;  // not one of the theme's own directories
    static constexpr int32_t kNotInCache = -1;  // the theme's, but the cache lists no image there

    // base is copied; rel must outlive the list (the theme's subdir paths).
    uint16_t addBase(std::string base);
    // cacheIndex: kOutsideTheme, kNotInCache or the directory's index in
    // the cache's directory list.
    uint32_t add(uint16_t base, std::string_view rel, int32_t cacheIndex);
    size_t size() const { return m_dirs.size(); }
    // The directory's path, written into *path.
    void path(uint32_t id, std::string* path) const;
    int32_t cacheIndex(uint32_t id) const { return m_dirs[id].cacheIndex; }

    // The theme's cache, when it may stand in for reading the directories
    // it covers; and the directory of each index of its list (kNone when
    // the theme does not search it).
    IconThemeCache* cache = nullptr;
    std::vector<uint32_t> idOfCacheIndex;

private:
    struct Dir {
        uint16_t base;
        int32_t cacheIndex;
        std::string_view rel;
    };
    std::vector<std::string> m_bases;
    std::vector<Dir> m_dirs;
};

// What one reading found in one directory, filled the first time a lookup
// needs it and never changed afterwards.
struct IconDirState {
    std::atomic<bool> ready {false};
    uint8_t known = 0;  // the kinds of file this reading is sure about
    bool exists = false;
    bool fromCache = false;  // its images are those the cache lists
    int64_t mtime = 0;
    // The stems of its files with their kinds, sorted; null when taken
    // from the cache or not read.
    const std::vector<std::pair<std::string, uint8_t>>* names = nullptr;
};

// One reading of a fixed list of directories. Each directory is read (or
// found covered by the theme's cache, or missing) only when a lookup first
// asks about it, so a theme's first lookups read no directory they do not
// need.
class IconListing {
public:
    static constexpr uint8_t kAllKinds = kPngFile | kSvgFile | kXpmFile | kBareFile | kOtherFile;
    static constexpr uint8_t kImageKinds = kPngFile | kSvgFile | kXpmFile;

    IconListing(std::shared_ptr<const IconDirList> dirs, int64_t youngFor);
    ~IconListing();
    IconListing(const IconListing&) = delete;
    IconListing& operator=(const IconListing&) = delete;

    // Directory id as read, reading it first when no lookup has asked yet.
    const IconDirState& dir(uint32_t id) const;
    // The kinds directory id holds files of stem in, when it was read.
    static uint8_t kindsOf(const IconDirState& dir, std::string_view stem);
    // Whether the directories read so far still look as they did; false
    // when any changed, or one that was too young to trust has since aged.
    bool stillCurrent(int64_t now) const;
    const IconDirList& dirs() const { return *m_dirs; }

    // Every directory read: the stems with a .png or .svg file in those
    // read from disk, sorted, or null when some directory is not sure of
    // both kinds. Made by the first call, which reads what no lookup has
    // asked about yet: only names the cache does not list ask for it.
    const std::vector<std::string>* diskImageStems() const;

private:
    void read(uint32_t id, IconDirState& dir) const;
    bool cacheUsable() const;

    std::shared_ptr<const IconDirList> m_dirs;
    int64_t m_youngFor;
    std::unique_ptr<IconDirState[]> m_states;
    mutable std::mutex m_mutex;  // held while one directory is read
    mutable std::vector<std::unique_ptr<std::vector<std::pair<std::string, uint8_t>>>> m_names;
    mutable std::vector<std::string> m_missing;  // directories found missing, and their missing parents
    mutable std::atomic<int8_t> m_cacheUsable {-1};  // -1 not asked yet; set under m_mutex
    mutable std::atomic<bool> m_complete {false};  // m_diskStems and m_allSure are made
    mutable std::vector<std::string> m_diskStems;
    mutable bool m_allSure = false;
};

// A theme's directories and their current listing.
class IconFiles {
public:
    // How long a listing is used before its directories are compared with
    // the disk again, and how long after a change a directory is left
    // untrusted (ns). Tests shorten them.
    static std::atomic<int64_t> recheckInterval;
    // Off: no listing at all, every candidate is checked on disk (tests
    // compare the two).
    static std::atomic<bool> enabled;

    explicit IconFiles(std::shared_ptr<const IconDirList> dirs) : m_dirs(std::move(dirs)) { }
    // The listing to answer from; null only when listings are off. A call
    // after the interval compares the directories read so far with the
    // disk and starts a new listing when any changed.
    std::shared_ptr<const IconListing> listing(int64_t now);

    // A process-wide count of listings that replaced an older one: answers
    // drawn from listings hold while it stays the same.
    static uint64_t generation() { return s_generation.load(std::memory_order_acquire); }

private:
    std::shared_ptr<const IconDirList> m_dirs;
    std::mutex m_mutex;  // guards m_listing and m_busy only, never held during I/O
    std::shared_ptr<const IconListing> m_listing;
    bool m_busy = false;
    std::atomic<int64_t> m_checkedAt {0};
    static std::atomic<uint64_t> s_generation;
};

// The wall-clock time in ns, coarse.
int64_t iconClockNow();

// The existence checks of a lookup for one name at a time: answered by the
// listing where it can, by the file system where it cannot.
class IconProbe {
public:
    static constexpr uint32_t kNoDir = 0xFFFFFFFFu;

    IconProbe() = default;  // no listing, no cache: every check goes to the file system
    IconProbe(std::shared_ptr<const IconListing> listing, IconThemeCache* cache)
        : m_listing(std::move(listing)), m_cache(cache)
    { }

    // The name the following checks look for.
    void setName(const std::string& name);
    // Whether the name carries an image extension: it is then looked for
    // as it stands, else with ".png" and ".svg".
    bool carriesExtension() const { return m_carriesExtension; }
    // The images the theme's cache lists for the name, looked up once per
    // name; empty without a cache.
    const std::vector<IconCacheImage>& cacheImages();
    // The first existing file base + "/" + rel + "/" + name + the extension
    // of each kind in turn (without rel when it is empty); empty when none
    // exists. dir is the listing's id of that directory, or kNoDir.
    std::string withExtension(uint32_t dir, std::string_view base, std::string_view rel,
                              std::initializer_list<IconFileKind> kinds);
    // The same file with the name as it stands.
    std::string asIs(uint32_t dir, std::string_view base, std::string_view rel);
    bool directoryExists(uint32_t dir, const std::string& path);
    // Whether any of the count directories dirs may hold the name with an
    // extension appended (false only when the listing is sure of all).
    bool mayHoldAny(const uint32_t* dirs, size_t count);
    // Whether the listing is sure that no directory holds the name with an
    // extension appended.
    bool listedNowhere();

    // How many checks this thread has made that no listing could answer.
    static uint64_t uncertainChecks();

private:
    enum class Known { Absent, Present, Unknown };
    struct Kinds {
        uint8_t present = 0;  // the kinds of file the directory holds
        uint8_t sure = 0;  // the kinds the listing is sure about there
    };
    // What the listing knows of the name (bare) or its stem in dir.
    Kinds kindsIn(uint32_t dir, bool bare);
    Known known(uint32_t dir, bool bare, IconFileKind kind);
    bool check(Known known, const std::string& path);

    std::shared_ptr<const IconListing> m_listing;
    IconThemeCache* m_cache = nullptr;
    const std::string* m_name = nullptr;
    std::string m_lastName;  // the name the remembered images are of
    bool m_carriesExtension = false;
    // The cache's images of the name (bare) and of its stem (a name that
    // carries an extension), each looked up when first needed.
    std::vector<IconCacheImage> m_images[2];
    bool m_imagesKnown[2] = {false, false};
    bool m_imagesBelieved[2] = {false, false};
};

}  // namespace Vyx::detail

#endif
