#ifndef VYXCORE_ICONTHEME_H
#define VYXCORE_ICONTHEME_H

// Icon themes: the theme directories installed on the system, and the
// precomputed index ("icon-theme.cache") that tells which of a theme's
// directories hold an icon without probing the file system.

#include "vyxexport.h"

#include <atomic>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace Vyx::detail {
class MappedFile;
}

// Read-only view of a theme's icon-theme.cache (version 1 of the binary
// layout the common icon-cache generator writes). A cache older than the
// theme directory, or than any directory it lists, is refused. Problems are
// reported on standard error and leave the reader invalid for good; lookups
// on an invalid reader answer nothing, so callers fall back to the file
// system.
class VYX_EXPORT VyxIconCacheGtkReader {
public:
    // Opens and checks themePath + "/icon-theme.cache". Never throws; see
    // isValid().
    explicit VyxIconCacheGtkReader(const std::string& themePath);
    ~VyxIconCacheGtkReader();
    VyxIconCacheGtkReader(const VyxIconCacheGtkReader&) = delete;
    VyxIconCacheGtkReader& operator=(const VyxIconCacheGtkReader&) = delete;

    bool isValid() const { return m_valid; }

    // The theme-relative directories ("48x48/apps", ...) that hold an image
    // of iconName (a name without extension), in the cache's order. The
    // pointers stay valid while the reader lives. Empty when the icon is
    // absent or the reader is invalid.
    std::vector<const char*> lookup(const std::string& iconName);

    // Big-endian reads from the cache. read32 needs a 4-aligned offset with
    // 4 bytes left, read16 an even one with 2 bytes left; a read that breaks
    // this answers 0 and makes the reader invalid.
    uint32_t read32(uint32_t offset);
    uint16_t read16(uint32_t offset);

private:
    uint32_t read32At(uint64_t offset);
    uint16_t read16At(uint64_t offset);
    std::vector<const char*> imagesOf(uint32_t entry);

    const unsigned char* m_data = nullptr;  // the whole file, mapped; null when not mapped
    uint64_t m_size = 0;
    // Cleared by a failing lookup while other threads may be looking up:
    // they then answer nothing, never read a torn flag.
    std::atomic<bool> m_valid{false};
    std::string m_cachePath;
    std::unique_ptr<Vyx::detail::MappedFile> m_file;  // owns the mapping
};

#endif
