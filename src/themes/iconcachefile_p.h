// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#ifndef VYXCORE_ICONCACHEFILE_P_H
#define VYXCORE_ICONCACHEFILE_P_H

// A theme's icon-theme.cache, mapped once and read one name at a time: the
// checks that decide whether it may be believed, the walk from a name to
// its images, and the theme's own record of it. The public reader and the
// theme share these reads, so that both report a damaged cache alike.

#include "core/mappedfile_p.h"

#include <atomic>
#include <cstdint>
#include <string>
#include <string_view>
#include <sys/types.h>
#include <vector>

namespace Vyx::detail {

// Which file was mapped: a cache replaced since is not this one.
struct IconCacheStamp {
    int64_t modified = 0;  // ns
    dev_t device = 0;
    ino_t inode = 0;

    bool operator==(const IconCacheStamp& other) const
    {
        return modified == other.modified && device == other.device && inode == other.inode;
    }
};

// A directory the cache lists (its name, inside the mapping and ending
// there) and whether the checks found a directory there.
using SeenDirectory = std::pair<std::string_view, bool>;

// Maps themePath's cache (cachePath) into *file and checks it: present, not
// older than the theme or any directory it lists, version 1. Reports what
// is wrong on standard error; true when the cache may be believed. *seen,
// when given, receives every directory the checks looked at, in the
// cache's order.
bool openIconCache(const std::string& themePath, const std::string& cachePath, MappedFile* file, IconCacheStamp* stamp,
                   std::vector<SeenDirectory>* seen = nullptr);

// Big-endian reads that stay inside bytes and keep the format's alignment;
// a read that breaks either answers 0 and clears *valid.
uint32_t readCache32(const ByteView& bytes, std::atomic<bool>* valid, uint64_t offset);
uint16_t readCache16(const ByteView& bytes, std::atomic<bool>* valid, uint64_t offset);

// One image the cache lists for a name: its directory (the name, inside the
// mapping, and the index into the cache's directory list) and its flags.
struct IconCacheImage {
    const char* dir;
    uint16_t index;
    uint16_t flags;
};
// The generator's flags for the extensions an image exists with.
enum : uint16_t { kCachedXpm = 1, kCachedSvg = 2, kCachedPng = 4 };

// The offset of iconName's entry, 0 when the cache has none. A hash table
// that cannot be read is reported and clears *valid.
uint32_t findCacheEntry(const ByteView& bytes, std::atomic<bool>* valid, const std::string& cachePath,
                        const std::string& iconName);
// The images of the entry at offset entry, appended to *images in the
// cache's order; a damaged list is reported, clears *valid and ends the
// list where the damage starts. dirs, when given, is the whole directory
// list as openIconCache checked it, read from there instead of the file.
void cacheImagesAt(const ByteView& bytes, std::atomic<bool>* valid, const std::string& cachePath, uint32_t entry,
                   std::vector<IconCacheImage>* images, const std::vector<SeenDirectory>* dirs = nullptr);

// The theme's record of its cache: the one mapping, opened at load and kept
// for the theme's life. Lookups take no lock; a damaged part found by one
// makes the record invalid for every later one.
class IconThemeCache {
public:
    explicit IconThemeCache(const std::string& themePath);
    IconThemeCache(const IconThemeCache&) = delete;
    IconThemeCache& operator=(const IconThemeCache&) = delete;

    bool isValid() const { return m_valid.load(std::memory_order_relaxed); }
    // The images of iconName; empty when it has none or the cache is not
    // believed (any more).
    void lookup(const std::string& iconName, std::vector<IconCacheImage>* images);
    // The directories the checks looked at, by index: all the cache lists
    // when it is valid.
    const std::vector<SeenDirectory>& directories() const { return m_dirs; }
    // Whether the file at the cache's path is still the one mapped.
    bool stillInPlace() const;
    int64_t modified() const { return m_stamp.modified; }

private:
    std::string m_cachePath;
    MappedFile m_file;
    IconCacheStamp m_stamp;
    std::vector<SeenDirectory> m_dirs;
    std::atomic<bool> m_valid {false};
};

}  // namespace Vyx::detail

#endif
