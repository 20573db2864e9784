// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

// vyxcore apps, default, assigned, mimeapps: which applications exist, are
// shown, and open a MIME type, with the file each answer came from.

#include "commands.h"

#include <vyxdesktopentry.h>
#include <vyxmime.h>

#include <cstdio>
#include <fstream>
#include <sys/stat.h>

namespace tool {

namespace {

// As the library decides: only a file is a cache.
bool isFile(const std::string& path)
{
    struct stat st;
    return stat(path.c_str(), &st) == 0 && S_ISREG(st.st_mode);
}

std::string desktopId(const std::string& path)
{
    for (const std::string& dir : GetAllAppDesktopEntrySearchPaths()) {
        if (path.size() > dir.size() + 1 && path.compare(0, dir.size(), dir) == 0 && path[dir.size()] == '/')
            return path.substr(dir.size() + 1);
    }
    std::string::size_type slash = path.rfind('/');
    return slash == std::string::npos ? path : path.substr(slash + 1);
}

// Where the installed-applications answer for path came from: its
// directory's mimeinfo.cache, or the desktop files themselves.
std::string availableSource(const std::string& path)
{
    for (const std::string& dir : GetAllAppDesktopEntrySearchPaths()) {
        if (path.compare(0, dir.size() + 1, dir + "/") == 0)
            return isFile(dir + "/mimeinfo.cache") ? dir + "/mimeinfo.cache" : "the desktop files of " + dir;
    }
    return "the cache file";
}

// The first mimeapps.list whose "Added Associations" give id to type.
std::string assignedSource(const std::string& type, const std::string& id)
{
    for (const std::string& list : GetMimeappsLists()) {
        std::ifstream in(list);
        std::string line;
        bool inGroup = false;
        while (std::getline(in, line)) {
            if (!line.empty() && line[0] == '[') {
                inGroup = line.rfind("[Added Associations]", 0) == 0;
                continue;
            }
            std::string::size_type eq = line.find('=');
            if (!inGroup || eq == std::string::npos)
                continue;
            std::string key = line.substr(0, eq);
            while (!key.empty() && key.back() == ' ')
                key.pop_back();
            if (key == type) {
                for (const std::string& item : Vyx::split(line.c_str() + eq + 1, ";, "))
                    if (item == id)
                        return list;
            }
        }
    }
    return "(unknown)";
}

// What the installed-applications lookups made of the user's cache file.
std::string cacheUseText(const VyxMimeCacheUse& use)
{
    if (use.path.empty())
        return "none: no private directory for one";
    std::string text = use.path + (use.read      ? " (read)"
                                   : use.written ? " (rebuilt and written)"
                                                 : " (rebuilt, not written)");
    if (!use.ignored.empty())
        text += "; the file there was ignored: " + use.ignored;
    return text;
}

std::string cacheUseJson(const VyxMimeCacheUse& use)
{
    JsonObject object;
    object.addString("path", use.path).addBool("read", use.read).addBool("written", use.written);
    if (use.ignored.empty())
        object.add("ignored", "null");
    else
        object.addString("ignored", use.ignored);
    return object.str();
}

}  // namespace

int runApps(const CommonOptions& options)
{
    bool all = options.hasFlag("--all");
    std::vector<std::string> json;
    std::vector<std::pair<std::string, std::string>> rows;
    for (const VyxDesktopEntry& entry : GetAllAppDesktopEntries()) {
        VyxDesktopEntry::DisplayableCode shown;
        VyxDesktopEntry::SuitableCode usable;
        bool displayable = entry.isDisplayable(&shown);
        bool suitable = entry.isSuitable(&usable);
        if (!all && !(displayable && suitable))
            continue;
        std::string id = desktopId(entry.filePath());
        if (options.json) {
            JsonObject item;
            item.addString("name", entry.localNameOrFallback()).addString("id", id).addString("path", entry.filePath());
            if (all)
                item.addBool("displayable", displayable)
                    .addInt("displayable_code", shown)
                    .addBool("suitable", suitable)
                    .addInt("suitable_code", usable);
            json.push_back(item.str());
        } else {
            std::string line = id + "  " + entry.filePath();
            if (all && !(displayable && suitable))
                line += "  [" + std::string(displayable ? "" : "not shown " + std::to_string(shown)) +
                        (displayable || suitable ? "" : ", ") +
                        (suitable ? "" : "not usable " + std::to_string(usable)) + "]";
            rows.emplace_back(entry.localNameOrFallback(), line);
        }
    }
    if (options.json)
        std::printf("%s\n", JsonObject().add("apps", jsonArray(json)).str().c_str());
    else
        printRows(rows);
    return Done;
}

int runDefault(const CommonOptions& options)
{
    if (!options.valuesOf("--set").empty())
        return setDefault(options);
    const std::string& type = options.positional[0];
    std::vector<std::string> paths =
        GetDesktopEntryPathForMime(type.c_str(), Vyx::tagged_bool<AllDesktopEntries_tag>(options.hasFlag("--all")));
    std::vector<std::string> json;
    for (const std::string& path : paths) {
        if (options.json)
            json.push_back(JsonObject().addString("path", path).addString("source", availableSource(path)).str());
        else
            std::printf("%s  (from %s)\n", path.c_str(), availableSource(path).c_str());
    }
    VyxMimeCacheUse use = GetMimeCacheUse();
    if (options.json)
        std::printf("%s\n", JsonObject()
                                .addString("type", type)
                                .add("applications", jsonArray(json))
                                .add("cache_file", cacheUseJson(use))
                                .str()
                                .c_str());
    else if (!paths.empty())
        std::printf("cache file: %s\n", cacheUseText(use).c_str());
    return paths.empty() ? notFound("default", "no installed application opens " + type) : Done;
}

int runAssigned(const CommonOptions& options)
{
    const std::string& type = options.positional[0];
    bool all = options.hasFlag("--all");
    std::vector<VyxDesktopEntry> entries =
        GetAssignedDesktopEntryForMime(type.c_str(), Vyx::tagged_bool<AllDesktopEntries_tag>(all));
    std::vector<std::string> json;
    std::vector<std::string> types {type};
    for (const std::string& alias : GetMimeAliases(type.c_str()))
        types.push_back(alias);
    for (const VyxDesktopEntry& entry : entries) {
        std::string id = desktopId(entry.filePath()), source = "(unknown)";
        for (const std::string& t : types) {
            source = assignedSource(t, id);
            if (source != "(unknown)")
                break;
        }
        if (options.json)
            json.push_back(JsonObject()
                               .addString("path", entry.filePath())
                               .addString("icon", entry.localIconOrFallback())
                               .addString("source", source)
                               .str());
        else
            std::printf("%s  (from %s)\n", entry.filePath().c_str(), source.c_str());
    }
    if (options.json)
        std::printf("%s\n", JsonObject().addString("type", type).add("applications", jsonArray(json)).str().c_str());
    return entries.empty() ? notFound("assigned", "no application is assigned to " + type + " in mimeapps.list") : Done;
}

int runMimeapps(const CommonOptions& options)
{
    std::vector<std::string> lists = GetMimeappsLists();
    std::string writable = GetWritableMimeappsList(), desktop = GetWritableDesktopMimeappsList();
    if (options.json) {
        std::printf("%s\n", JsonObject()
                                .add("lists", jsonStringArray(lists))
                                .addString("writable", writable)
                                .addString("writable_desktop", desktop)
                                .add("cache_file", cacheUseJson(GetMimeCacheUse()))
                                .str()
                                .c_str());
        return Done;
    }
    std::printf("mimeapps.list files, highest priority first:\n");
    for (const std::string& list : lists)
        std::printf("  %s\n", list.c_str());
    if (lists.empty())
        std::printf("  (none)\n");
    printRows({{"Writable", writable.empty() ? "(none)" : writable},
               {"Writable for this desktop", desktop.empty() ? "(none)" : desktop},
               {"Installed applications cache", cacheUseText(GetMimeCacheUse())}});
    return Done;
}

}  // namespace tool
