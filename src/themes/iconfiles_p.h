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
// Only "missing" is answered from memory. A file the listing shows is still
// checked with stat before a lookup returns it, so a deleted icon is never
// handed out. A file added later can go unseen for a short time: the
// directories are compared with their modification times at most once per
// recheck interval, and a directory changed less than an interval ago is
// not trusted at all (a change made within the same clock tick as our read
// would not move its time), so its candidates are checked one by one.

#include <atomic>
#include <cstdint>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

class VyxIconCacheGtkReader;

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

// The theme's icon-theme.cache, which may stand in for reading the
// directories it covers.
struct IconCacheSource {
    VyxIconCacheGtkReader* reader = nullptr;
    std::string themePath;
};

// One reading of a fixed list of directories. Never changed once built.
class IconListing {
public:
    static constexpr uint8_t kAllKinds = kPngFile | kSvgFile | kXpmFile | kBareFile | kOtherFile;
    static constexpr uint8_t kImageKinds = kPngFile | kSvgFile | kXpmFile;

    // The directories that hold files of one stem, with their kinds.
    class Hits {
    public:
        // Whether directory dir may hold stem + the extension of kind: false
        // only when the listing knows it does not.
        bool mayHold(uint32_t dir, IconFileKind kind) const;
        // Whether the theme's cache may hold an entry of this name: false
        // only when the whole cache was walked without it.
        bool inCache() const;
        // Whether no directory holds the stem with an extension of kinds.
        bool none(uint8_t kinds) const
        {
            return m_listing && (m_listing->m_completeKinds & kinds) == kinds && m_first == kNone;
        }

    private:
        friend class IconListing;
        const IconListing* m_listing = nullptr;  // none: everything may exist
        uint32_t m_first = kNone;
    };
    static constexpr uint32_t kNone = 0xFFFFFFFFu;

    // Reads every directory of paths (cache, when given, standing in for
    // those it covers and is newer than); now is the wall-clock time in ns.
    static std::shared_ptr<const IconListing> read(const std::vector<std::string>& paths, const IconCacheSource* cache,
                                                   int64_t now, int64_t youngFor);
    Hits hits(const std::string& stem) const;
    // Whether the listing is sure about files of kind in directory dir.
    bool knows(uint32_t dir, IconFileKind kind) const { return (m_dirs[dir].known & kind) != 0; }
    // Whether the directory existed when read (false too when unknown).
    bool exists(uint32_t dir) const { return m_dirs[dir].exists; }
    bool existenceKnown(uint32_t dir) const { return m_dirs[dir].known != 0; }
    // Sets the bit of every directory that holds stem (bits sized to the
    // directory count).
    void markDirsOf(const Hits& hits, std::vector<uint64_t>* bits) const;
    size_t dirCount() const { return m_dirs.size(); }
    // Whether the directories still look as they did; false when any
    // changed, or one that was too young to trust has since aged.
    bool stillCurrent(const std::vector<std::string>& paths, int64_t now, int64_t youngFor) const;

private:
    struct Dir {
        uint8_t known = 0;  // the kinds of file this listing is sure about
        bool exists = false;
        int64_t mtime = 0;
    };
    struct Hit {
        uint32_t dir;
        uint8_t kinds;
        uint32_t next;
    };
    void add(std::string_view stem, uint32_t dir, uint8_t kinds, size_t hitsOfThisDirFrom);

    static constexpr uint8_t kInCache = 32;  // a hit's mark: the cache lists it
    std::vector<Dir> m_dirs;  // one more than the paths: images elsewhere in the cache
    bool m_cacheWalked = false;
    uint8_t m_completeKinds = kAllKinds;  // the kinds every directory knows
    std::vector<Hit> m_hits;
    std::unordered_map<std::string, uint32_t> m_stems;  // stem -> first hit
};

// The directories a theme searches, given ids in the order they are added,
// and their current listing.
class IconFiles {
public:
    // How long a listing is used before its directories are compared with
    // the disk again, and how long after a change a directory is left
    // untrusted (ns). Tests shorten them.
    static std::atomic<int64_t> recheckInterval;
    // Off: no listing at all, every candidate is checked on disk (tests
    // compare the two).
    static std::atomic<bool> enabled;

    uint32_t add(const std::string& path);
    // The theme's cache, when it may stand in for reading directories.
    void setCache(IconCacheSource cache) { m_cache = std::move(cache); }
    // The listing to answer from; null while the first reading is under
    // way on another thread. The first call reads; a later call after the
    // interval compares and reads again when needed.
    std::shared_ptr<const IconListing> listing(int64_t now);

    // A process-wide count of readings that replaced an older one: answers
    // drawn from listings hold while it stays the same.
    static uint64_t generation() { return s_generation.load(std::memory_order_acquire); }

private:
    std::vector<std::string> m_paths;
    std::unordered_map<std::string, uint32_t> m_ids;
    IconCacheSource m_cache;
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
    static constexpr uint32_t kNoDir = IconListing::kNone;

    IconProbe() = default;  // no listing: every check goes to the file system
    explicit IconProbe(std::shared_ptr<const IconListing> listing) : m_listing(std::move(listing)) { }

    // The name the following checks look for.
    void setName(const std::string& name);
    // Whether the name carries an image extension: it is then looked for
    // as it stands, else with ".png" and ".svg".
    bool carriesExtension() const { return m_carriesExtension; }
    // The first existing file base + "/" + rel + "/" + name + the extension
    // of each kind in turn (without rel when it is empty); empty when none
    // exists. dir is the listing's id of that directory, or kNoDir.
    std::string withExtension(uint32_t dir, std::string_view base, std::string_view rel,
                              std::initializer_list<IconFileKind> kinds);
    // The same file with the name as it stands.
    std::string asIs(uint32_t dir, std::string_view base, std::string_view rel);
    bool directoryExists(uint32_t dir, const std::string& path);
    // Whether the listing is sure that no listed directory holds the name
    // with any extension.
    bool listedNowhere();
    // Whether any of the count directories dirs may hold the name with an
    // extension appended (false only when the listing is sure of all).
    bool mayHoldAny(const uint32_t* dirs, size_t count);
    // Whether the theme's cache may list the name (as it stands).
    bool mayBeInCache() { return !m_listing || bareHits().inCache(); }

    // How many checks this thread has made that no listing could answer.
    static uint64_t uncertainChecks();

private:
    bool mayHold(uint32_t dir, const IconListing::Hits& hits, IconFileKind kind) const;
    bool check(uint32_t dir, const std::string& path, IconFileKind kind);
    const IconListing::Hits& bareHits();

    std::shared_ptr<const IconListing> m_listing;
    const std::string* m_name = nullptr;
    std::string m_lastName;  // the name the remembered hits are of
    bool m_carriesExtension = false;
    IconListing::Hits m_bareHits;
    bool m_bareHitsKnown = false;
    std::vector<uint64_t> m_bareDirs;  // bit per directory holding the name, once asked
};

}  // namespace Vyx::detail

#endif
