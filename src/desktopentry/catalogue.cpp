#include "desktopentry/catalogue_p.h"

#include "core/environment_p.h"
#include "vyxdesktopentry.h"
#include "vyxdirs.h"
#include "vyxfileutils.h"

#include <algorithm>
#include <cstring>
#include <mutex>

namespace Vyx::detail {

namespace {

std::once_flag g_once;
std::vector<std::string> g_appDirs;
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

    if (FILE* file = std::fopen("/usr/share/mime/aliases", "r")) {
        g_aliases = readAliases(file);
        std::fclose(file);
    }

    std::string runtime = envString("XDG_RUNTIME_DIR");
    std::string base = !runtime.empty() && fileExists(runtime, false) ? runtime
                       : !GetVyxDir(TempDir).empty() && fileExists(GetVyxDir(TempDir), false) ? GetVyxDir(TempDir)
                                                                                               : home;
    g_cachePath = base + "/.vyx-mime-desktop.tbl";
}

}  // namespace

AliasTable readAliases(FILE* file)
{
    AliasTable table;
    std::string line;
    char chunk[4096];
    while (std::fgets(chunk, sizeof chunk, file)) {
        line += chunk;
        if (!line.empty() && line.back() != '\n' && !std::feof(file))
            continue;  // a long line arrives in pieces
        if (!line.empty() && line.back() == '\n')
            line.pop_back();
        std::string current;
        current.swap(line);
        if (current.empty() || current[0] == '!' || current[0] == '#')
            continue;
        std::string::size_type gap = current.find_first_of(" \t");
        if (gap == std::string::npos)
            continue;
        std::string alias = current.substr(0, gap);
        std::string::size_type canonical = current.find_first_not_of(" \t", gap);
        table.emplace_back(canonical == std::string::npos ? std::string() : current.substr(canonical), alias);
    }
    return table;
}

const AliasTable& mimeAliasTable()
{
    FillDesktopEntriesDirArray();
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
