// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "vyxmime.h"

#include "mime/mimeapps_p.h"

#include "core/environment_p.h"
#include "core/inireader_p.h"
#include "core/session_p.h"
#include "vyxfileutils.h"
#include "vyxstrings.h"

#include <map>
#include <mutex>
#include <sys/stat.h>

namespace {

struct Locations {
    std::vector<std::string> desktops;
    std::string configHome;  // empty when unknown
    std::vector<std::string> configDirs;
    std::string dataHome;
    std::vector<std::string> dataDirs;
};

Locations locations()
{
    Locations l;
    l.desktops = Vyx::split(Vyx::detail::envString("XDG_CURRENT_DESKTOP").c_str(), ":");
    l.configHome = Vyx::detail::userConfigHome();
    l.configDirs = Vyx::detail::xdgConfigDirList();
    l.dataHome = Vyx::detail::userDataHome();
    l.dataDirs = Vyx::detail::xdgDataDirList();
    return l;
}

}  // namespace

std::vector<std::string> Vyx::detail::findMimeappsLists(bool lowerCaseDesktops)
{
    Locations l = locations();
    if (lowerCaseDesktops) {
        for (std::string& desktop : l.desktops) {
            for (char& c : desktop)
                c = static_cast<char>(c >= 'A' && c <= 'Z' ? c - 'A' + 'a' : c);
        }
    }
    std::vector<std::string> candidates;
    auto add = [&](const std::string& path) {
        if (fileExists(path, false))
            candidates.push_back(path);
    };
    auto inDir = [&](const std::string& dir, const char* sub) {
        if (dir.empty())
            return;
        for (const std::string& desktop : l.desktops)
            add(dir + sub + desktop + "-mimeapps.list");
        add(dir + sub + "mimeapps.list");
    };
    auto inDirs = [&](const std::vector<std::string>& dirs, const char* sub) {
        for (const std::string& desktop : l.desktops) {
            for (const std::string& dir : dirs)
                add(dir + sub + desktop + "-mimeapps.list");
        }
        for (const std::string& dir : dirs)
            add(dir + sub + "mimeapps.list");
    };
    inDir(l.configHome, "/");
    inDirs(l.configDirs, "/");
    inDir(l.dataHome, "/applications/");
    inDirs(l.dataDirs, "/applications/");
    return candidates;
}

namespace {

// The lists as the assignment lookups have always read them: desktop names
// in the case XDG_CURRENT_DESKTOP gives.
std::vector<std::string> listExisting()
{
    return Vyx::detail::findMimeappsLists(false);
}

// The assignments of the "Added Associations" groups.
std::mutex g_assignMutex;
std::multimap<std::string, VyxDesktopEntry> g_entries;
std::multimap<std::string, std::string> g_icons;
long long g_loadTime = 0;

void refreshAssignments()
{
    static const std::vector<std::string> lists = listExisting();
    long long newest = 0;
    for (const std::string& list : lists) {
        struct stat st;
        if (stat(list.c_str(), &st) == 0 && st.st_mtime > newest) {
            newest = st.st_mtime;
            if (g_loadTime && newest > g_loadTime)
                break;
        }
    }
    if (g_loadTime >= newest)
        return;
    g_entries.clear();
    g_icons.clear();
    FillDesktopEntriesDirArray();
    for (const std::string& list : lists) {
        Vyx::detail::IniReader ini;
        if (!ini.loadFile(list))
            continue;
        for (const auto& [type, value] : ini.entries("Added Associations")) {
            for (const std::string& item : Vyx::split(value, ";,")) {
                std::string path = GetDesktopEntryFullPath(item.c_str());
                if (path.empty())
                    continue;
                VyxDesktopEntry entry(path);
                if (entry.isLoaded() && !entry.localIconOrFallback().empty())
                    g_icons.emplace(type, entry.localIconOrFallback());
                g_entries.emplace(type, std::move(entry));
            }
        }
    }
    g_loadTime = newest;
}

// mime first, then its aliases; the first found only unless all.
template <typename Visit> void walkAssigned(const char* mime, bool all, Visit visit)
{
    std::vector<std::string> types {mime};
    for (const std::string& alias : GetMimeAliases(mime))
        types.push_back(alias);
    std::lock_guard<std::mutex> lock(g_assignMutex);
    refreshAssignments();
    bool found = false;
    for (const std::string& type : types) {
        auto range = g_entries.equal_range(type);
        for (auto it = range.first; it != range.second; ++it) {
            visit(it->second);
            found = true;
            if (!all)
                return;
        }
        if (!all && found)
            return;
    }
}

}  // namespace

std::vector<std::string> GetMimeappsLists()
{
    static const std::vector<std::string> lists = listExisting();
    return lists;
}

namespace {

// A writable list's path, kept once it is known.
template <typename Compute> std::string cachedOnceKnown(std::string& cache, std::mutex& mutex, Compute compute)
{
    std::lock_guard<std::mutex> lock(mutex);
    if (cache.empty())
        cache = compute();
    return cache;
}

}  // namespace

std::string GetWritableMimeappsList()
{
    static std::mutex mutex;
    static std::string cached;
    return cachedOnceKnown(cached, mutex, [] {
        std::string configHome = locations().configHome;
        return configHome.empty() ? std::string() : configHome + "/mimeapps.list";
    });
}

std::string GetWritableDesktopMimeappsList()
{
    static std::mutex mutex;
    static std::string cached;
    return cachedOnceKnown(cached, mutex, [] {
        Locations l = locations();
        std::string name = Vyx::makeString(Vyx::detail::sessionName());
        if (name.empty() && !l.desktops.empty())
            name = l.desktops.front();
        if (l.configHome.empty() || name.empty() || name == "vyx")
            return std::string();
        return l.configHome + "/" + name + "-mimeapps.list";
    });
}

std::vector<VyxDesktopEntry> GetAssignedDesktopEntryForMime(const char* mime,
                                                            Vyx::tagged_bool<AllDesktopEntries_tag> all)
{
    std::vector<VyxDesktopEntry> result;
    if (!mime || !*mime)
        return result;
    walkAssigned(mime, static_cast<bool>(all), [&](const VyxDesktopEntry& stored) {
        VyxDesktopEntry copy;
        copy.setFilePath(stored.filePath());
        copy.copyFrom(stored);
        result.push_back(std::move(copy));
    });
    return result;
}

std::vector<std::string> GetAssignedIconForMime(const char* mime, Vyx::tagged_bool<AllIcons_tag> all)
{
    std::vector<std::string> result;
    if (!mime || !*mime)
        return result;
    walkAssigned(mime, static_cast<bool>(all),
                 [&](const VyxDesktopEntry& stored) { result.push_back(stored.localIconOrFallback()); });
    return result;
}
