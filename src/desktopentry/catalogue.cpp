// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "desktopentry/catalogue_p.h"

#include "core/readfile_p.h"
#include "core/environment_p.h"
#include "core/privatefile_p.h"
#include "vyxdesktopentry.h"
#include "vyxdirs.h"
#include "vyxfileutils.h"

#include <algorithm>
#include <cstring>
#include <mutex>
#include <string_view>

namespace Vyx::detail {

namespace {

std::once_flag g_once;
std::vector<std::string> g_appDirs;
std::once_flag g_aliasesOnce;  // read on first use: most lookups never need it
AliasTable g_aliases;
std::string g_cachePath;

void addOnce(std::vector<std::string>& list, const std::string& dir)
{
    // Duplicates are equal strings; paths are not normalised.
    if (!dir.empty() && std::find(list.begin(), list.end(), dir) == list.end())
        list.push_back(dir);
}

void build()
{
    std::string dataHome = envString("XDG_DATA_HOME");
    std::string home = GetVyxDir(HomeDir);
    // The user's own application directories: under the data home, unless it
    // is one of the system's data directories.
    static const char* const userDirs[][2] = {
        {"/.local/share/applications", "/applications"},
        {"/.local/share/snapd/desktop/applications", "/snapd/desktop/applications"},
        {"/.local/share/flatpak/exports/share/applications", "/flatpak/exports/share/applications"},
    };
    for (const auto& dirs : userDirs) {
        if (dataHome.empty() && !home.empty())
            addOnce(g_appDirs, home + dirs[0]);
        else if (!dataHome.empty() && dataHome != "/usr/share" && dataHome != "/usr/local/share")
            addOnce(g_appDirs, dataHome + dirs[1]);
    }
    for (const std::string& dir : xdgDataDirs("applications"))
        addOnce(g_appDirs, dir);
    for (const char* dir : {"/usr/local/share/applications", "/usr/share/applications",
                            "/var/lib/snapd/desktop/applications", "/var/lib/flatpak/exports/share/applications"})
        addOnce(g_appDirs, dir);

    g_cachePath = chooseMimeCachePath(envString("XDG_RUNTIME_DIR"), envString("XDG_CACHE_HOME"), home);
}

}  // namespace

AliasTable readAliases(FILE* file)
{
    AliasTable table;
    char buffer[4096];
    std::string longLine;
    while (std::fgets(buffer, sizeof buffer, file)) {
        size_t length = std::strlen(buffer);
        const char* line = buffer;
        if (length == sizeof buffer - 1 && buffer[length - 1] != '\n' && !std::feof(file)) {
            longLine.append(buffer, length);  // a long line arrives in pieces
            continue;
        }
        if (!longLine.empty()) {
            longLine.append(buffer, length);
            line = longLine.c_str();
            length = longLine.size();
        }
        if (length && line[length - 1] == '\n')
            --length;
        if (length && line[0] != '!' && line[0] != '#') {
            std::string_view text(line, length);
            std::string_view::size_type gap = text.find_first_of(" \t");
            if (gap != std::string_view::npos) {
                std::string_view::size_type canonical = text.find_first_not_of(" \t", gap);
                table.emplace_back(canonical == std::string_view::npos ? std::string() : std::string(text.substr(canonical)),
                                   std::string(text.substr(0, gap)));
            }
        }
        longLine.clear();
    }
    return table;
}

std::string chooseMimeCachePath(const std::string& runtimeDir, const std::string& cacheHome, const std::string& home)
{
    // Never the shared temporary directory, nor any directory another user
    // can write: whoever writes this file chooses the program that opens
    // the user's files. The runtime directory only when it is really the
    // user's own; else a directory of the user's cache made for us alone.
    if (!runtimeDir.empty() && runtimeDir[0] == '/' && isPrivateDirectory(runtimeDir))
        return runtimeDir + "/.vyx-mime-desktop.tbl";
    std::string base = !cacheHome.empty() && cacheHome[0] == '/' ? cacheHome
                       : !home.empty() && home[0] == '/'          ? home + "/.cache"
                                                                  : std::string();
    return base.empty() ? std::string() : base + "/vyx/.vyx-mime-desktop.tbl";
}

const AliasTable& mimeAliasTable()
{
    std::call_once(g_aliasesOnce, [] {
        if (FILE* file = Vyx::detail::fopenRegularFile("/usr/share/mime/aliases")) {
            g_aliases = readAliases(file);
            std::fclose(file);
        }
    });
    return g_aliases;
}

const std::string& mimeCachePath()
{
    FillDesktopEntriesDirArray();
    return g_cachePath;
}

}  // namespace Vyx::detail

void FillDesktopEntriesDirArray()
{
    std::call_once(Vyx::detail::g_once, Vyx::detail::build);
}

std::vector<std::string> GetAllAppDesktopEntrySearchPaths()
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
