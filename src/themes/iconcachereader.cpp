// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "vyxicontheme.h"

#include "core/mappedfile_p.h"
#include "themes/iconcachefile_p.h"
#include "themes/iconcachewalk_p.h"

VyxIconCacheGtkReader::VyxIconCacheGtkReader(const std::string& themePath)
    : m_cachePath(themePath + "/icon-theme.cache"), m_file(std::make_unique<Vyx::detail::MappedFile>())
{
    Vyx::detail::IconCacheStamp stamp;
    const bool valid = Vyx::detail::openIconCache(themePath, m_cachePath, m_file.get(), &stamp);
    m_data = m_file->data();
    m_size = m_file->size();
    m_modified = stamp.modified;
    m_valid = valid;
}

VyxIconCacheGtkReader::~VyxIconCacheGtkReader() = default;

uint32_t VyxIconCacheGtkReader::read32At(uint64_t offset)
{
    return Vyx::detail::readCache32(m_file->view(), &m_valid, offset);
}

uint16_t VyxIconCacheGtkReader::read16At(uint64_t offset)
{
    return Vyx::detail::readCache16(m_file->view(), &m_valid, offset);
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
    const uint32_t entry = Vyx::detail::findCacheEntry(m_file->view(), &m_valid, m_cachePath, iconName);
    return entry ? imagesOf(entry) : std::vector<const char*>();
}

std::vector<const char*> VyxIconCacheGtkReader::imagesOf(uint32_t entry)
{
    std::vector<Vyx::detail::IconCacheImage> images;
    Vyx::detail::cacheImagesAt(m_file->view(), &m_valid, m_cachePath, entry, &images);
    std::vector<const char*> dirs;
    dirs.reserve(images.size());
    for (const Vyx::detail::IconCacheImage& image : images)
        dirs.push_back(image.dir);
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
