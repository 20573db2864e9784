// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

// The recent-items menu: a folder of at most ten desktop entries that the
// window manager shows, the oldest giving way to the newest.

#include "vyxdesktopentry.h"
#include "vyxdirs.h"
#include "vyxfileutils.h"
#include "vyxsession.h"
#include "vyxstrings.h"

#include <cstring>
#include <dirent.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

const size_t kMostItems = 10;

// The entry that stands for a path that is not a desktop file itself: a
// directory shows its own ".directory" name and icon when it has them.
VyxDesktopEntry itemFor(const std::string& path, const std::string& itemFile, bool isDirectory, const char* icon)
{
    VyxDesktopEntry item;
    item.setFilePath(itemFile);
    std::string name = Vyx::lastSection(path, '/'), localName = name, iconName = icon ? icon : "";
    if (isDirectory) {
        const VyxDesktopEntry directory(path + "/.directory");
        if (directory.isLoaded()) {
            if (!directory.localIconOrFallback().empty())
                iconName = directory.localIconOrFallback();
            name = directory.name();
            localName = directory.localName();
        }
        if (iconName.empty())
            iconName = "folder";
    }
    item.setType("Application");
    item.setName(name);
    item.setLocalName(localName);
    item.setExec("vyx-open --exec " + Vyx::quoteArg(path.c_str()));
    item.setIcon(iconName);
    return item;
}

enum class Room { Made, Replaced, Failed, Unlistable };

// Lists the folder's items; an item running the same program as the
// recorded desktop entry is deleted (the caller starts again), else the
// oldest goes when the folder is full.
Room makeRoom(const std::string& folder, const VyxDesktopEntry* recorded)
{
    DIR* dir = opendir(folder.c_str());
    if (!dir)
        return Room::Unlistable;
    size_t count = 0;
    std::string oldest;
    time_t oldestTime = 0;
    bool haveOldest = false;
    while (struct dirent* entry = readdir(dir)) {
        if (entry->d_name[0] == '.')
            continue;
        const std::string file = folder + "/" + entry->d_name;
        if (recorded && Vyx::endsWith(file, ".desktop")) {
            VyxDesktopEntry item(file);
            if (item.isLoaded() && item.exec() == recorded->exec()) {
                closedir(dir);
                return unlink(file.c_str()) == 0 ? Room::Replaced : Room::Failed;
            }
        }
        ++count;
        // Among equal times the first listed stays the oldest.
        struct stat st;
        if (stat(file.c_str(), &st) == 0 && (!haveOldest || st.st_mtime < oldestTime)) {
            oldest = file;
            oldestTime = st.st_mtime;
            haveOldest = true;
        }
    }
    closedir(dir);
    if (count >= kMostItems && haveOldest)
        unlink(oldest.c_str());
    return Room::Made;
}

}  // namespace

int putEntryToRecentsMenu(const char* path, const char* icon, Display* display,
                          Vyx::tagged_bool<ProgsOnly_tag> progsOnly)
{
    if (!path || !*path)
        return -1;
    const std::string& startMenu = GetVyxDir(StartMenuDir);
    const std::string folder = startMenu.empty() ? std::string() : startMenu + "/recents";
    if (folder.empty() || !fileExists(folder, false))
        return -2;
    const std::string recorded = path;
    if (recorded.find('/') == std::string::npos)
        return -2;
    struct stat st;
    if (stat(path, &st) != 0)
        return -1;
    const bool isDirectory = S_ISDIR(st.st_mode);
    const bool executable = (st.st_mode & S_IXUSR) != 0;
    if (progsOnly && isDirectory)
        return 0;

    std::string name = Vyx::lastSection(recorded, '/');
    if (!Vyx::endsWith(name, ".desktop"))
        name += ".desktop";
    const std::string itemFile = folder + "/" + name;
    if (itemFile == recorded)
        return 0;

    const bool isEntry = Vyx::endsWith(recorded, ".desktop");
    if (fileExists(itemFile, false)) {
        // Written afresh below, which makes it the newest.
        unlink(itemFile.c_str());
    } else {
        // Only a desktop file is read: the path may be any file at all.
        const VyxDesktopEntry entry(isEntry ? recorded : std::string());
        if (isEntry) {
            if (progsOnly && entry.type() != "Application")
                return 0;
        }
        for (;;) {
            const Room room = makeRoom(folder, isEntry ? &entry : nullptr);
            if (room == Room::Unlistable)
                return -2;
            if (room == Room::Failed)
                return 0;
            if (room == Room::Made)
                break;
        }
    }

    int result;
    if (recorded.find(".desktop") != std::string::npos) {
        result = vyxCopyFile(path, itemFile.c_str()) ? 1 : 0;
    } else if (progsOnly && !executable) {
        return 0;
    } else {
        VyxDesktopEntry item = itemFor(recorded, itemFile, isDirectory, icon);
        result = item.save(Vyx::tagged_bool<SaveEmptyFields_tag>(false)) ? 0 : -1;
    }
    if (display)
        SendCommandToWM(display, "VYXWM_UPDATE_RECENTSMENU\n");
    return result;
}
