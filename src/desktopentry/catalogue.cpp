// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "desktopentry/catalogue_p.h"

#include "core/firstanswer_p.h"

#include "core/environment_p.h"
#include "core/privatefile_p.h"
#include "vyxdesktopentry.h"
#include "vyxdirs.h"
#include "vyxfileutils.h"

#include <algorithm>
#include <mutex>

namespace Vyx::detail {

namespace {

std::once_flag g_once;
std::vector<std::string> g_appDirs;
std::string g_cachePath;

VYX_FIRST_ANSWER void addOnce(std::vector<std::string>& list, const std::string& dir)
{
    // Duplicates are equal strings; paths are not normalised.
    if (!dir.empty() && std::find(list.begin(), list.end(), dir) == list.end())
        list.push_back(dir);
}

VYX_FIRST_ANSWER void build()
{
    std::string home = GetVyxDir(HomeDir);
    // The user's own application directories: under the data home, unless
    // it is one of the system's data directories, which keep their own place
    // after the user's.
    const std::string dataHome = userDataHome();
    if (!dataHome.empty() && dataHome != "/usr/share" && dataHome != "/usr/local/share") {
        for (const char* dir : {"/applications", "/snapd/desktop/applications", "/flatpak/exports/share/applications"})
            addOnce(g_appDirs, dataHome + dir);
    }
    for (const std::string& dir : xdgDataDirs("applications"))
        addOnce(g_appDirs, dir);
    for (const char* dir : {"/usr/local/share/applications", "/usr/share/applications",
                            "/var/lib/snapd/desktop/applications", "/var/lib/flatpak/exports/share/applications"})
        addOnce(g_appDirs, dir);

    g_cachePath = chooseMimeCachePath(envString("XDG_RUNTIME_DIR"), envString("XDG_CACHE_HOME"), home);
}

}  // namespace

VYX_FIRST_ANSWER std::string chooseMimeCachePath(const std::string& runtimeDir, const std::string& cacheHome,
                                                 const std::string& home)
{
    // Never the shared temporary directory, nor any directory another user
    // can write: whoever writes this file chooses the program that opens
    // the user's files. The runtime directory only when it is really the
    // user's own; else a directory of the user's cache made for us alone.
    if (!runtimeDir.empty() && runtimeDir[0] == '/' && isPrivateDirectory(runtimeDir))
        return runtimeDir + "/.vyx-mime-desktop.tbl";
    std::string base = !cacheHome.empty() && cacheHome[0] == '/' ? cacheHome
                       : !home.empty() && home[0] == '/'         ? home + "/.cache"
                                                                 : std::string();
    return base.empty() ? std::string() : base + "/vyx/.vyx-mime-desktop.tbl";
}

VYX_FIRST_ANSWER const std::string& mimeCachePath()
{
    FillDesktopEntriesDirArray();
    return g_cachePath;
}

}  // namespace Vyx::detail

VYX_FIRST_ANSWER void FillDesktopEntriesDirArray()
{
    std::call_once(Vyx::detail::g_once, Vyx::detail::build);
}

VYX_FIRST_ANSWER std::vector<std::string> GetAllAppDesktopEntrySearchPaths()
{
    FillDesktopEntriesDirArray();
    return Vyx::detail::g_appDirs;
}

std::string GetDesktopEntryFullPath(const char* name)
{
    if (!name || !*name)
        return std::string();
    if (name[0] == '/')
        return name;
    // Reads the list as it stands: before the catalogue is built, nothing is
    // found (kept as it always was).
    for (const std::string& dir : Vyx::detail::g_appDirs) {
        std::string path = Vyx::concat(dir, '/', name);
        if (fileExists(path, false))
            return path;
    }
    return std::string();
}

std::vector<std::string> GetAllAppDesktopEntryPaths()
{
    std::vector<std::string> paths;
    for (const std::string& dir : GetAllAppDesktopEntrySearchPaths())
        GetFileList(&paths, dir.c_str(), 2, "*.desktop", Vyx::tagged_bool<FilesOnly_tag>(true));
    return paths;
}

std::vector<VyxDesktopEntry> GetAllAppDesktopEntries()
{
    std::vector<VyxDesktopEntry> entries;
    for (const std::string& path : GetAllAppDesktopEntryPaths()) {
        VyxDesktopEntry entry(path);
        if (entry.type() == "Application")
            entries.push_back(std::move(entry));
    }
    return entries;
}

std::vector<std::string> GetAllCategorizedFolderList()
{
    std::vector<std::string> folders;
    for (const std::string& dir : GetAllAppDesktopEntrySearchPaths()) {
        std::vector<std::string> files;
        GetFileList(&files, dir.c_str(), 2, "*.directory", Vyx::tagged_bool<FilesOnly_tag>(true));
        for (const std::string& file : files) {
            VyxDesktopEntry entry(file);
            // One character more than ".directory" is cut (kept as it always was).
            if (entry.type() == "Directory" && !entry.categories().empty() && file.size() >= 11)
                folders.push_back(file.substr(0, file.size() - 11));
        }
    }
    return folders;
}
