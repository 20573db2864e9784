// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#ifndef VYXCORE_ICONPATHCACHE_P_H
#define VYXCORE_ICONPATHCACHE_P_H

// What one theme remembers of its lookups, so that asking again for a name
// costs a hash lookup and one check of the remembered file.

#include "core/uniquefd_p.h"

#include <cstdint>
#include <mutex>
#include <string>
#include <unordered_map>

namespace Vyx::detail {

// The answers of a theme's lookups: the files found, by the key of the pass
// that found them ("name-size-context"), and, for names found only by a
// later pass or not at all, how many passes the lookup made. Both are
// emptied whole when they outgrow the capacity. Every member may be called
// from several threads at once: one mutex guards it all and is held only
// while the maps and the theme's handle are used, never during a search.
class IconPathCache {
public:
    // The passes of an earlier lookup, while the listings they searched hold.
    struct Trail {
        int count = 0;  // 0: none remembered
        bool found = false;  // the last pass found the answer
    };

    explicit IconPathCache(uint32_t capacity) : m_capacity(capacity) { }

    // The file remembered under key, as it was stored; false when none is.
    bool recall(const std::string& key, std::string* file);
    // The same, with the file checked on disk under themePath: *file is
    // left empty when it has gone, so that it is not searched again.
    bool recallExisting(const std::string& key, const std::string& themePath, int64_t now, std::string* file);
    // The trail of key when it was made from listings of this generation
    // less than a recheck interval ago; an older one is forgotten.
    Trail trail(const std::string& key, uint64_t generation, int64_t now);
    void forgetTrail(const std::string& key);

    void store(const std::string& key, const std::string& file);
    void storeTrail(std::string key, Trail trail, uint64_t generation, int64_t now);

    // Whether a remembered file under themePath still exists.
    bool fileExists(const std::string& file, const std::string& themePath, int64_t now);

private:
    struct StoredTrail {
        Trail trail;
        uint64_t generation = 0;
        int64_t madeAt = 0;
    };
    bool existsLocked(const std::string& file, const std::string& themePath, int64_t now);

    std::mutex m_mutex;
    const uint32_t m_capacity;
    std::unordered_map<std::string, std::string> m_files;
    std::unordered_map<std::string, StoredTrail> m_trails;
    // A handle of the theme directory, to check remembered files with a
    // shorter walk; compared with the theme's path again once per recheck
    // interval.
    UniqueFd m_root;
    std::string m_rootPath;
    int64_t m_rootCheckedAt = 0;
};

}  // namespace Vyx::detail

#endif
