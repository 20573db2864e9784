// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

// vyxcore trash: put files into the user's trash, list, restore and empty
// it, and tell its size.

#include "commands.h"

#include <vyxfileutils.h>
#include <vyxstrings.h>
#include <vyxtrash.h>

#include <algorithm>
#include <cstdio>
#include <sys/stat.h>

namespace tool {

namespace {

struct Trashed {
    std::string name;
    std::string path;
    std::string date;  // as the record writes it, without "DeletionDate="
    long long time = -1;
};

std::vector<Trashed> trashedObjects()
{
    std::vector<Trashed> objects;
    std::string info = VyxTrash::getInfoDirPath();
    std::vector<std::string> records;
    if (info.empty() ||
        !GetFileNameList(&records, info.c_str(), 0, "*.trashinfo", Vyx::tagged_bool<FilesOnly_tag>(true)))
        return objects;
    std::sort(records.begin(), records.end());
    for (const std::string& record : records) {
        Trashed object;
        object.name = record.substr(0, record.size() - std::string(".trashinfo").size());
        object.path = VyxTrash::getPath(object.name.c_str());
        object.date = VyxTrash::getDate(object.name.c_str());
        if (Vyx::startsWith(object.date, "DeletionDate="))
            object.date.erase(0, std::string("DeletionDate=").size());
        if (!object.date.empty())
            object.time = VyxTrash::getDeletionDate(object.name.c_str());
        objects.push_back(object);
    }
    return objects;
}

int listTrash(const CommonOptions& options)
{
    std::vector<Trashed> objects = trashedObjects();
    if (options.json) {
        std::vector<std::string> items;
        for (const Trashed& object : objects)
            items.push_back(JsonObject()
                                .addString("name", object.name)
                                .addString("path", object.path)
                                .addString("deletion_date", object.date)
                                .addInt("deletion_time", object.time)
                                .str());
        std::printf("%s\n", jsonArray(items).c_str());
    } else {
        std::vector<std::pair<std::string, std::string>> rows;
        for (const Trashed& object : objects)
            rows.emplace_back(object.name, (object.date.empty() ? std::string("-") : object.date) + "  " +
                                               (object.path.empty() ? std::string("-") : object.path));
        printRows(rows);
    }
    return Done;  // an empty trash is a listing with nothing in it, not a failure
}

int putInTrash(const std::vector<std::string>& paths)
{
    int status = Done;
    for (const std::string& path : paths) {
        struct stat st;
        if (lstat(path.c_str(), &st) != 0) {
            std::fprintf(stderr, "vyxcore trash: %s: no such file or directory\n", path.c_str());
            status = NothingFound;
        } else if (!VyxTrash::moveToTrash(path.c_str())) {
            std::fprintf(stderr, "vyxcore trash: %s was not put in the trash\n", path.c_str());
            status = NothingFound;
        }
    }
    return status;
}

int restoreFromTrash(const std::vector<std::string>& paths)
{
    int status = Done;
    for (const std::string& path : paths) {
        if (!VyxTrash::restoreFromTrash(path.c_str())) {
            std::fprintf(stderr, "vyxcore trash: %s was not restored\n", path.c_str());
            status = NothingFound;
        }
    }
    return status;
}

int trashSize(const CommonOptions& options)
{
    long long size = VyxTrash::size();
    bool cache = VyxTrash::hasSizeCache();
    if (options.json)
        std::printf("%s\n", JsonObject().addInt("size", size).addBool("size_cache", cache).str().c_str());
    else
        printRows({{"size", std::to_string(size) + " bytes"},
                   {"size cache", cache ? "yes (cached directory sizes used)" : "no (directories measured)"}});
    return Done;
}

}  // namespace

int runTrash(const CommonOptions& options)
{
    const std::string& action = options.positional[0];
    std::vector<std::string> paths(options.positional.begin() + 1, options.positional.end());
    bool takesPaths = action == "put" || action == "restore";
    if (action != "put" && action != "restore" && action != "list" && action != "empty" && action != "size")
        return usageError("trash", "unknown action '" + action + "'");
    if (takesPaths && paths.empty())
        return usageError("trash", action + " needs at least one PATH");
    if (!takesPaths && !paths.empty())
        return usageError("trash", action + " takes no PATH");

    if (action == "put")
        return putInTrash(paths);
    if (action == "restore")
        return restoreFromTrash(paths);
    if (action == "list")
        return listTrash(options);
    if (action == "size")
        return trashSize(options);
    if (!VyxTrash::cleanAll()) {
        std::fprintf(stderr, "vyxcore trash: some of the trash could not be removed\n");
        return NothingFound;
    }
    return Done;
}

}  // namespace tool
