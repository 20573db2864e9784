// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "vyxdirs.h"

#include "core/firstanswer_p.h"

#include "core/environment_p.h"
#include "vyxfileutils.h"
#include "vyxstrings.h"

#include <atomic>
#include <sys/stat.h>

namespace {

std::atomic<bool> g_createUserDirs {true};

// The user's directory first (created, one level, when missing; left out if
// that fails, or when there is no home to put it under), then the system
// list or its defaults.
std::vector<std::string> searchPath(std::string user, const std::vector<std::string>& system, const char* subdir)
{
    std::vector<std::string> dirs;
    if (!user.empty()) {
        if (subdir)
            user = Vyx::concat(user, '/', subdir);
        if (fileExists(user, false) ||
            (g_createUserDirs.load(std::memory_order_relaxed) && mkdir(user.c_str(), 0700) == 0))
            dirs.push_back(user);
    }

    for (const std::string& dir : system)
        dirs.push_back(subdir ? Vyx::concat(dir, '/', subdir) : dir);
    return dirs;
}

std::string firstExisting(const std::vector<std::string>& dirs)
{
    for (const std::string& dir : dirs) {
        if (fileExists(dir, false))
            return dir;
    }
    return std::string();
}

}  // namespace

void setXdgUserDirCreation(bool create)
{
    g_createUserDirs.store(create, std::memory_order_relaxed);
}

std::vector<std::string> xdgConfigDirs(const char* subdir)
{
    return searchPath(Vyx::detail::userConfigHome(), Vyx::detail::xdgConfigDirList(), subdir);
}

VYX_FIRST_ANSWER std::vector<std::string> xdgDataDirs(const char* subdir)
{
    return searchPath(Vyx::detail::userDataHome(), Vyx::detail::xdgDataDirList(), subdir);
}

std::string findInXDGConfigDirs(const char* subdir)
{
    return firstExisting(xdgConfigDirs(subdir));
}

std::string findInXDGDataDirs(const char* subdir)
{
    return firstExisting(xdgDataDirs(subdir));
}

std::string autostartDir()
{
    return findInXDGConfigDirs("autostart");
}

std::vector<std::string> autostartDirs()
{
    return xdgConfigDirs("autostart");
}
