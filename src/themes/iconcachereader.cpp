// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "vyxicontheme.h"

#include "core/diag_p.h"
#include "core/mappedfile_p.h"
#include "core/uniquefd_p.h"
#include "themes/iconcachewalk_p.h"

#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

using Vyx::detail::diag;
using Vyx::detail::kLibraryPrefix;

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
bool sameName(const unsigned char* data, uint64_t size, uint64_t offset, const std::string& name)
{
    if (offset >= size || size - offset <= name.size())
        return false;
    const unsigned char* s = data + offset;
    return std::memcmp(s, name.data(), name.size()) == 0 && s[name.size()] == '\0';
}

unsigned long seconds(const struct stat& st)
{
    return static_cast<unsigned long>(st.st_mtim.tv_sec);
}

}  // namespace

VyxIconCacheGtkReader::VyxIconCacheGtkReader(const std::string& themePath)
    : m_cachePath(themePath + "/icon-theme.cache"), m_file(std::make_unique<Vyx::detail::MappedFile>())
{
    const char* cachePath = m_cachePath.c_str();
    struct stat themeStat, cacheStat;
    if (stat(themePath.c_str(), &themeStat) != 0 || stat(cachePath, &cacheStat) != 0) {
        diag(kLibraryPrefix, "no cache file %s\n", cachePath);
        return;
    }
    // The generator writes the cache after scanning the theme, so a cache
    // from the same second as the directory is current.
    if (cacheStat.st_size < 4 || seconds(cacheStat) < seconds(themeStat)) {
        diag(kLibraryPrefix, "outdated cache %s, %lu < %lu\n", cachePath, seconds(cacheStat), seconds(themeStat));
        return;
    }
    // A cache we may not read is simply not used. O_NONBLOCK keeps a FIFO
    // in its place from stalling us; it is refused below as unmappable.
    const Vyx::detail::UniqueFd fd(::open(cachePath, O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    if (!fd)
        return;
    bool mapped = S_ISREG(cacheStat.st_mode) && m_file->open(m_cachePath);
    if (mapped) {
        m_data = m_file->data();
        m_size = m_file->size();
    }
    if (!mapped || read16(0) != 1) {
        diag(kLibraryPrefix, "can't mmap file %s\n", cachePath);
        return;
    }

    m_modified = int64_t(cacheStat.st_mtim.tv_sec) * 1'000'000'000 + cacheStat.st_mtim.tv_nsec;
    m_valid = true;
    const uint32_t dirList = read32(8);
    const uint32_t dirCount = read32At(dirList);
    for (uint32_t i = 0; i < dirCount; ++i) {
        uint32_t nameOffset = read32At(uint64_t(dirList) + 4 + 4 * uint64_t(i));
        const char* name = m_valid ? m_file->string(nameOffset) : nullptr;
        if (!name) {
            diag(kLibraryPrefix, "cache %s has invalid data/size\n", cachePath);
            m_valid = false;
            break;
        }
        // Icons added to a directory after the cache was written would be
        // missed, and a directory that is gone would be answered anyway.
        std::string dir = themePath + "/" + name;
        struct stat dirStat;
        if (stat(dir.c_str(), &dirStat) != 0) {
            diag(kLibraryPrefix, "no theme subdir %s in cache %s\n", dir.c_str(), cachePath);
            m_valid = false;
            break;
        }
        if (seconds(cacheStat) < seconds(dirStat)) {
            diag(kLibraryPrefix, "theme subdir %s is newer than cache %s, %lu < %lu\n", dir.c_str(), cachePath,
                 seconds(cacheStat), seconds(dirStat));
            m_valid = false;
            break;
        }
    }
}

VyxIconCacheGtkReader::~VyxIconCacheGtkReader() = default;

uint32_t VyxIconCacheGtkReader::read32At(uint64_t offset)
{
    uint32_t value = 0;
    if (offset % 4 != 0 || !m_file->u32(offset, &value)) {
        m_valid = false;
        return 0;
    }
    return value;
}

uint16_t VyxIconCacheGtkReader::read16At(uint64_t offset)
{
    uint16_t value = 0;
    if (offset % 2 != 0 || !m_file->u16(offset, &value)) {
        m_valid = false;
        return 0;
    }
    return value;
}

uint32_t VyxIconCacheGtkReader::read32(uint32_t offset)
{
    return read32At(offset);
}

uint16_t VyxIconCacheGtkReader::read16(uint32_t offset)
{
    return read16At(offset);
}

std::vector<const char*> VyxIconCacheGtkReader::lookup(const std::string& iconName)
{
    // A name with a NUL inside can equal no string of the file.
    if (!m_valid || iconName.find('\0') != std::string::npos)
        return {};
    const uint32_t hash = iconHash(iconName);
    const uint32_t hashOffset = read32(4);
    const uint32_t buckets = read32At(hashOffset);
    if (!m_valid || buckets == 0) {
        diag(kLibraryPrefix, "cache %s has invalid hash\n", m_cachePath.c_str());
        m_valid = false;
        return {};
    }
    uint32_t entry = read32At(uint64_t(hashOffset) + 4 + 4 * uint64_t(hash % buckets));
    // Empty buckets and chain ends are 0 or, as the generator writes them,
    // an offset past the end. No chain holds more entries than the file
    // has room for; a longer one loops.
    for (uint64_t steps = m_size / 12; entry != 0 && uint64_t(entry) + 12 <= m_size && steps > 0; --steps) {
        if (sameName(m_data, m_size, read32At(uint64_t(entry) + 4), iconName))
            return imagesOf(entry);
        entry = read32At(entry);
    }
    return {};
}

std::vector<const char*> VyxIconCacheGtkReader::imagesOf(uint32_t entry)
{
    std::vector<const char*> dirs;
    const uint32_t dirList = read32(8);
    const uint32_t dirCount = read32At(dirList);
    const uint32_t images = read32At(uint64_t(entry) + 8);
    const uint32_t imageCount = read32At(images);
    if (!m_valid || uint64_t(images) + 8 * uint64_t(imageCount) + 4 > m_size) {
        diag(kLibraryPrefix, "cache %s read hash length failed\n", m_cachePath.c_str());
        m_valid = false;
        return dirs;
    }
    dirs.reserve(imageCount);
    for (uint32_t j = 0; j < imageCount && m_valid; ++j) {
        const uint16_t dir = read16At(uint64_t(images) + 4 + 8 * uint64_t(j));
        const uint32_t nameOffset = read32At(uint64_t(dirList) + 4 + 4 * uint64_t(dir));
        // The caller reads the name as a C string, so it must end inside
        // the mapping.
        const char* name = m_valid && dir < dirCount ? m_file->string(nameOffset) : nullptr;
        if (!name) {
            diag(kLibraryPrefix, "cache %s read hash item failed\n", m_cachePath.c_str());
            m_valid = false;
            return dirs;
        }
        dirs.push_back(name);
    }
    return dirs;
}

bool VyxIconCacheGtkReader::forEachImage(std::vector<const char*>* dirs,
                                         const std::function<void(const char*, uint16_t, uint16_t)>& visit) const
{
    return m_valid && Vyx::detail::forEachCachedImage(m_file->view(), dirs, visit);
}

namespace Vyx::detail {

bool forEachCachedImage(const ByteView& bytes, std::vector<const char*>* dirs,
                        const std::function<void(const char*, uint16_t, uint16_t)>& visit)
{
    auto u32 = [&](uint64_t offset, uint32_t* out) { return offset % 4 == 0 && bytes.u32(offset, out); };
    uint32_t dirList = 0, dirCount = 0, hashOffset = 0, buckets = 0;
    if (!u32(8, &dirList) || !u32(dirList, &dirCount) || !u32(4, &hashOffset) || !u32(hashOffset, &buckets))
        return false;
    dirs->clear();
    for (uint32_t i = 0; i < dirCount; ++i) {
        uint32_t nameOffset = 0;
        const char* name =
            u32(uint64_t(dirList) + 4 + 4 * uint64_t(i), &nameOffset) ? bytes.string(nameOffset) : nullptr;
        if (!name)
            return false;
        dirs->push_back(name);
    }
    if (!visit)
        return true;
    // Entries are 12 bytes: the file has room for no more, so a walk that
    // goes on longer runs in a loop.
    uint64_t budget = bytes.size() / 12;
    for (uint32_t bucket = 0; bucket < buckets; ++bucket) {
        uint32_t entry = 0;
        if (!u32(uint64_t(hashOffset) + 4 + 4 * uint64_t(bucket), &entry))
            return false;
        for (; entry != 0 && uint64_t(entry) + 12 <= bytes.size(); --budget) {
            uint32_t nameOffset = 0, images = 0, count = 0, next = 0;
            if (budget == 0 || !u32(uint64_t(entry) + 4, &nameOffset) || !u32(uint64_t(entry) + 8, &images) ||
                !u32(images, &count) || !u32(entry, &next) ||
                !bytes.contains(uint64_t(images) + 4, 8 * uint64_t(count)))
                return false;
            const char* name = bytes.string(nameOffset);
            if (!name)
                return false;
            for (uint32_t j = 0; j < count; ++j) {
                uint16_t dir = 0, flags = 0;
                bytes.u16(uint64_t(images) + 4 + 8 * uint64_t(j), &dir);
                bytes.u16(uint64_t(images) + 6 + 8 * uint64_t(j), &flags);
                if (dir >= dirCount)
                    return false;
                visit(name, dir, flags);
            }
            entry = next;
        }
    }
    return true;
}

}  // namespace Vyx::detail
