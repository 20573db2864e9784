// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#ifndef VYXCORE_MIMECACHE_P_H
#define VYXCORE_MIMECACHE_P_H

#include <cstdint>
#include <cstdio>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace Vyx::detail {

// MIME type -> desktop-file paths, each type's paths in the order they were
// registered, no pair twice. Paths are stored once and referred to by
// number: a path stands under several types, and a first lookup in a new
// process builds the whole map.
class AvailableMap {
public:
    void add(const std::string& type, const std::string& path);
    void add(const std::string& type, uint32_t pathIndex);
    uint32_t internPath(const std::string& path);
    bool empty() const { return m_byType.empty(); }
    // The paths of type in registration order; empty when none.
    std::vector<std::string> pathsFor(const std::string& type, bool all) const;
    // The cache file's text: one line per path, ascending, "path=type;type\n".
    std::string toCacheText() const;

private:
    std::vector<std::string> m_paths;
    std::unordered_map<std::string, uint32_t> m_pathIndex;
    std::unordered_map<std::string, uint32_t> m_typeIndex;
    std::vector<std::vector<uint32_t>> m_byType;  // by type number
    std::unordered_set<uint64_t> m_pairs;         // type number << 32 | path number
};

// Reads cache-file lines (at most 8190 characters each) into map.
void readCacheFile(FILE* file, AvailableMap* map);

}  // namespace Vyx::detail

#endif
