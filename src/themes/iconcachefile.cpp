// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "themes/iconcachefile_p.h"

#include "core/diag_p.h"
#include "core/pathprobe_p.h"
#include "core/uniquefd_p.h"

#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace Vyx::detail {

namespace {

// The generator's string hash: bytes taken as signed chars, h = h * 31 + c.
uint32_t iconHash(const std::string& name)
{
    uint32_t h = 0;
    for (size_t i = 0; i < name.size(); ++i) {
        uint32_t c = static_cast<uint32_t>(static_cast<int32_t>(static_cast<signed char>(name[i])));
        h = i == 0 ? c : h * 31 + c;
    }
    return h;
}

// Whether the string at offset is exactly name. Bounded by the file: the
// last string of a damaged cache need not end with a NUL.
bool sameName(const ByteView& bytes, uint64_t offset, const std::string& name)
{
    if (offset >= bytes.size() || bytes.size() - offset <= name.size())
        return false;
    const unsigned char* s = bytes.data() + offset;
    return std::memcmp(s, name.data(), name.size()) == 0 && s[name.size()] == '\0';
}

// Which file st describes, and as of when.
IconCacheStamp stampOf(const struct stat& st)
{
    return {modifiedNs(st), st.st_dev, st.st_ino};
}

unsigned long seconds(const struct stat& st)
{
    return static_cast<unsigned long>(st.st_mtim.tv_sec);
}

// A big-endian integer of the format's alignment inside bytes, else 0
// with *valid cleared.
template <typename Int> Int readAligned(const ByteView& bytes, std::atomic<bool>* valid, uint64_t offset)
{
    Int value = 0;
    bool read = false;
    if (offset % sizeof(Int) == 0) {
        if constexpr (sizeof(Int) == 4)
            read = bytes.u32(offset, &value);
        else
            read = bytes.u16(offset, &value);
    }
    if (!read)
        valid->store(false, std::memory_order_relaxed);
    return read ? value : 0;
}

}  // namespace

uint32_t readCache32(const ByteView& bytes, std::atomic<bool>* valid, uint64_t offset)
{
    return readAligned<uint32_t>(bytes, valid, offset);
}

uint16_t readCache16(const ByteView& bytes, std::atomic<bool>* valid, uint64_t offset)
{
    return readAligned<uint16_t>(bytes, valid, offset);
}

bool openIconCache(const std::string& themePath, const std::string& cachePath, MappedFile* file, IconCacheStamp* stamp,
                   std::vector<SeenDirectory>* seen)
{
    const char* path = cachePath.c_str();
    struct stat themeStat, cacheStat;
    if (stat(themePath.c_str(), &themeStat) != 0 || stat(path, &cacheStat) != 0) {
        diag(kLibraryPrefix, "no cache file %s\n", path);
        return false;
    }
    // The generator writes the cache after scanning the theme, so a cache
    // from the same second as the directory is current.
    if (cacheStat.st_size < 4 || seconds(cacheStat) < seconds(themeStat)) {
        diag(kLibraryPrefix, "outdated cache %s, %lu < %lu\n", path, seconds(cacheStat), seconds(themeStat));
        return false;
    }
    // A cache we may not read is simply not used. O_NONBLOCK keeps a FIFO
    // in its place from stalling us; it is refused below as unmappable.
    const UniqueFd fd(::open(path, O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    if (!fd)
        return false;
    // The time and identity of the bytes mapped, not of whatever the path
    // named a moment before.
    struct stat mapped;
    std::atomic<bool> valid {fstat(fd.get(), &mapped) == 0 && file->map(fd.get(), mapped)};
    const ByteView bytes = file->view();
    if (!valid || readCache16(bytes, &valid, 0) != 1) {
        diag(kLibraryPrefix, "can't mmap file %s\n", path);
        return false;
    }
    *stamp = stampOf(mapped);

    const uint32_t dirList = readCache32(bytes, &valid, 8);
    const uint32_t dirCount = readCache32(bytes, &valid, dirList);
    std::string dir = themePath + "/";
    for (uint32_t i = 0; i < dirCount; ++i) {
        const uint32_t nameOffset = readCache32(bytes, &valid, uint64_t(dirList) + 4 + 4 * uint64_t(i));
        const char* name = valid ? bytes.string(nameOffset) : nullptr;
        if (!name) {
            diag(kLibraryPrefix, "cache %s has invalid data/size\n", path);
            return false;
        }
        // Icons added to a directory after the cache was written would be
        // missed, and a directory that is gone would be answered anyway.
        dir.resize(themePath.size() + 1);
        dir.append(name);
        struct stat dirStat;
        if (stat(dir.c_str(), &dirStat) != 0) {
            diag(kLibraryPrefix, "no theme subdir %s in cache %s\n", dir.c_str(), path);
            return false;
        }
        if (seen)
            seen->emplace_back(name, S_ISDIR(dirStat.st_mode));
        if (seconds(cacheStat) < seconds(dirStat)) {
            diag(kLibraryPrefix, "theme subdir %s is newer than cache %s, %lu < %lu\n", dir.c_str(), path,
                 seconds(cacheStat), seconds(dirStat));
            return false;
        }
    }
    return valid;
}

uint32_t findCacheEntry(const ByteView& bytes, std::atomic<bool>* valid, const std::string& cachePath,
                        const std::string& iconName)
{
    // A name with a NUL inside can equal no string of the file.
    if (!valid->load(std::memory_order_relaxed) || iconName.find('\0') != std::string::npos)
        return 0;
    const uint32_t hash = iconHash(iconName);
    const uint32_t hashOffset = readCache32(bytes, valid, 4);
    const uint32_t buckets = readCache32(bytes, valid, hashOffset);
    if (!valid->load(std::memory_order_relaxed) || buckets == 0) {
        diag(kLibraryPrefix, "cache %s has invalid hash\n", cachePath.c_str());
        valid->store(false, std::memory_order_relaxed);
        return 0;
    }
    uint32_t entry = readCache32(bytes, valid, uint64_t(hashOffset) + 4 + 4 * uint64_t(hash % buckets));
    // Empty buckets and chain ends are 0 or, as the generator writes them,
    // an offset past the end. No chain holds more entries than the file
    // has room for; a longer one loops.
    for (uint64_t steps = bytes.size() / 12; entry != 0 && uint64_t(entry) + 12 <= bytes.size() && steps > 0; --steps) {
        if (sameName(bytes, readCache32(bytes, valid, uint64_t(entry) + 4), iconName))
            return entry;
        entry = readCache32(bytes, valid, entry);
    }
    return 0;
}

void cacheImagesAt(const ByteView& bytes, std::atomic<bool>* valid, const std::string& cachePath, uint32_t entry,
                   std::vector<IconCacheImage>* images, const std::vector<SeenDirectory>* dirs)
{
    const uint32_t dirList = dirs ? 0 : readCache32(bytes, valid, 8);
    const uint32_t dirCount = dirs ? uint32_t(dirs->size()) : readCache32(bytes, valid, dirList);
    const uint32_t list = readCache32(bytes, valid, uint64_t(entry) + 8);
    const uint32_t count = readCache32(bytes, valid, list);
    if (!valid->load(std::memory_order_relaxed) || uint64_t(list) + 8 * uint64_t(count) + 4 > bytes.size()) {
        diag(kLibraryPrefix, "cache %s read hash length failed\n", cachePath.c_str());
        valid->store(false, std::memory_order_relaxed);
        return;
    }
    images->reserve(images->size() + count);
    for (uint32_t j = 0; j < count && valid->load(std::memory_order_relaxed); ++j) {
        const uint16_t dir = readCache16(bytes, valid, uint64_t(list) + 4 + 8 * uint64_t(j));
        const uint16_t flags = readCache16(bytes, valid, uint64_t(list) + 6 + 8 * uint64_t(j));
        // The caller reads the name as a C string, so it must end inside
        // the mapping.
        const char* name = nullptr;
        if (dirs) {
            name = valid->load(std::memory_order_relaxed) && dir < dirCount ? (*dirs)[dir].first.data() : nullptr;
        } else {
            const uint32_t nameOffset = readCache32(bytes, valid, uint64_t(dirList) + 4 + 4 * uint64_t(dir));
            name = valid->load(std::memory_order_relaxed) && dir < dirCount ? bytes.string(nameOffset) : nullptr;
        }
        if (!name) {
            diag(kLibraryPrefix, "cache %s read hash item failed\n", cachePath.c_str());
            valid->store(false, std::memory_order_relaxed);
            return;
        }
        images->push_back({name, dir, flags});
    }
}

IconThemeCache::IconThemeCache(const std::string& themePath) : m_cachePath(themePath + "/icon-theme.cache")
{
    m_valid = openIconCache(themePath, m_cachePath, &m_file, &m_stamp, &m_dirs);
}

void IconThemeCache::lookup(const std::string& iconName, std::vector<IconCacheImage>* images)
{
    images->clear();
    const ByteView bytes = m_file.view();
    // The directory names were checked when the cache was opened.
    if (const uint32_t entry = findCacheEntry(bytes, &m_valid, m_cachePath, iconName))
        cacheImagesAt(bytes, &m_valid, m_cachePath, entry, images, &m_dirs);
}

bool IconThemeCache::stillInPlace() const
{
    struct stat st;
    return stat(m_cachePath.c_str(), &st) == 0 && stampOf(st) == m_stamp;
}

}  // namespace Vyx::detail
