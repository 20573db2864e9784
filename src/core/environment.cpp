// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "core/environment_p.h"

#include "core/firstanswer_p.h"

#include "vyxstrings.h"

#include <cstdlib>

namespace Vyx::detail {

VYX_FIRST_ANSWER const char* envValue(const char* name)
{
    const char* value = std::getenv(name);
    return (value && *value) ? value : nullptr;
}

VYX_FIRST_ANSWER std::string envString(const char* name)
{
    const char* value = envValue(name);
    return value ? std::string(value) : std::string();
}

VYX_FIRST_ANSWER std::string homeFromEnvironment()
{
    if (const char* home = envValue("HOME"))
        return home;
    const char* user = envValue("LOGNAME");
    if (!user)
        user = envValue("USER");
    return user ? std::string("/home/") + user : std::string();
}

namespace {

VYX_FIRST_ANSWER std::string userHomeDir(const char* variable, const char* underHome, const std::string& home)
{
    if (const char* dir = envValue(variable))
        return dir;
    return home.empty() ? home : home + underHome;
}

VYX_FIRST_ANSWER std::string userHomeDir(const char* variable, const char* underHome)
{
    return userHomeDir(variable, underHome, homeFromEnvironment());
}

}  // namespace

std::string userConfigHome()
{
    return userHomeDir("XDG_CONFIG_HOME", "/.config");
}

VYX_FIRST_ANSWER std::string userDataHome()
{
    return userHomeDir("XDG_DATA_HOME", "/.local/share");
}

VYX_FIRST_ANSWER std::string userDataHome(const std::string& home)
{
    return userHomeDir("XDG_DATA_HOME", "/.local/share", home);
}

std::string userCacheHome(const std::string& home)
{
    return userHomeDir("XDG_CACHE_HOME", "/.cache", home);
}

namespace {

VYX_FIRST_ANSWER std::vector<std::string> dirList(const char* variable, std::vector<std::string> defaults)
{
    // Set but empty counts as unset; a list of nothing but separators names
    // no directory at all.
    if (const char* list = envValue(variable))
        return Vyx::split(list, ":");
    return defaults;
}

}  // namespace

VYX_FIRST_ANSWER std::vector<std::string> xdgDataDirList()
{
    return dirList("XDG_DATA_DIRS", {"/usr/local/share", "/usr/share"});
}

std::vector<std::string> xdgConfigDirList()
{
    return dirList("XDG_CONFIG_DIRS", {"/etc/xdg"});
}

}  // namespace Vyx::detail
