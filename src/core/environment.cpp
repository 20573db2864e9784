// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "core/environment_p.h"

#include "vyxstrings.h"

#include <cstdlib>

namespace Vyx::detail {

const char* envValue(const char* name)
{
    const char* value = std::getenv(name);
    return (value && *value) ? value : nullptr;
}

std::string envString(const char* name)
{
    const char* value = envValue(name);
    return value ? std::string(value) : std::string();
}

std::string homeFromEnvironment()
{
    if (const char* home = envValue("HOME"))
        return home;
    const char* user = envValue("LOGNAME");
    if (!user)
        user = envValue("USER");
    return user ? std::string("/home/") + user : std::string();
}

namespace {

std::string userHomeDir(const char* variable, const char* underHome)
{
    if (const char* dir = envValue(variable))
        return dir;
    const std::string home = homeFromEnvironment();
    return home.empty() ? home : home + underHome;
}

}  // namespace

std::string userConfigHome()
{
    return userHomeDir("XDG_CONFIG_HOME", "/.config");
}

std::string userDataHome()
{
    return userHomeDir("XDG_DATA_HOME", "/.local/share");
}

namespace {

std::vector<std::string> dirList(const char* variable, std::vector<std::string> defaults)
{
    // Set but empty counts as unset; a list of nothing but separators names
    // no directory at all.
    if (const char* list = envValue(variable))
        return Vyx::split(list, ":");
    return defaults;
}

}  // namespace

std::vector<std::string> xdgDataDirList()
{
    return dirList("XDG_DATA_DIRS", {"/usr/local/share", "/usr/share"});
}

std::vector<std::string> xdgConfigDirList()
{
    return dirList("XDG_CONFIG_DIRS", {"/etc/xdg"});
}

}  // namespace Vyx::detail
