// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "themes/iconpathcache_p.h"

#include "themes/iconfiles_p.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace Vyx::detail {

bool IconPathCache::recall(const std::string& key, std::string* file)
{
    std::lock_guard<std::mutex> lock(m_mutex);
    auto found = m_files.find(key);
    if (found == m_files.end())
        return false;
    *file = found->second;
    return true;
}

bool IconPathCache::recallExisting(const std::string& key, const std::string& themePath, int64_t now, std::string* file)
{
    std::lock_guard<std::mutex> lock(m_mutex);
    auto found = m_files.find(key);
    if (found == m_files.end())
        return false;
    if (existsLocked(found->second, themePath, now))
        *file = found->second;
    else
        file->clear();
    return true;
}

IconPathCache::Trail IconPathCache::trail(const std::string& key, uint64_t generation, int64_t now)
{
    std::lock_guard<std::mutex> lock(m_mutex);
    auto found = m_trails.find(key);
    if (found == m_trails.end())
        return Trail();
    const StoredTrail& stored = found->second;
    if (stored.generation == generation && now >= stored.madeAt &&
        now - stored.madeAt < IconFiles::recheckInterval.load())
        return stored.trail;
    m_trails.erase(found);
    return Trail();
}

void IconPathCache::forgetTrail(const std::string& key)
{
    std::lock_guard<std::mutex> lock(m_mutex);
    m_trails.erase(key);
}

void IconPathCache::store(const std::string& key, const std::string& file)
{
    std::lock_guard<std::mutex> lock(m_mutex);
    if (m_files.size() > m_capacity)
        m_files.clear();
    m_files[key] = file;
}

void IconPathCache::storeTrail(std::string key, Trail trail, uint64_t generation, int64_t now)
{
    std::lock_guard<std::mutex> lock(m_mutex);
    if (m_trails.size() > m_capacity)
        m_trails.clear();
    m_trails[std::move(key)] = {trail, generation, now};
}

bool IconPathCache::fileExists(const std::string& file, const std::string& themePath, int64_t now)
{
    std::lock_guard<std::mutex> lock(m_mutex);
    return existsLocked(file, themePath, now);
}

bool IconPathCache::existsLocked(const std::string& file, const std::string& themePath, int64_t now)
{
    if (now < m_rootCheckedAt || now - m_rootCheckedAt >= IconFiles::recheckInterval.load()) {
        m_rootCheckedAt = now;
        // The handle must still be the directory the path names: a theme
        // directory replaced by another is opened anew.
        struct stat byPath, byHandle;
        const bool same = m_root && m_rootPath == themePath && stat(themePath.c_str(), &byPath) == 0 &&
                          fstat(m_root.get(), &byHandle) == 0 && byPath.st_dev == byHandle.st_dev &&
                          byPath.st_ino == byHandle.st_ino;
        if (!same) {
            m_rootPath = themePath;
            m_root.reset(open(themePath.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
        }
    }
    // access() walks the path as stat() does without filling a record, and
    // from the handle only the part below the theme is walked.
    if (m_root && file.size() > m_rootPath.size() + 1 && file.compare(0, m_rootPath.size(), m_rootPath) == 0 &&
        file[m_rootPath.size()] == '/')
        return faccessat(m_root.get(), file.c_str() + m_rootPath.size() + 1, F_OK, AT_EACCESS) == 0;
    return faccessat(AT_FDCWD, file.c_str(), F_OK, AT_EACCESS) == 0;
}

}  // namespace Vyx::detail
