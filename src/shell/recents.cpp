// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

// The recent-items menu: a folder of at most ten desktop entries that the
// window manager shows, the oldest giving way to the newest.

#include "core/dirwalker_p.h"
#include "core/uniquefd_p.h"
#include "desktopentry/entryvalue_p.h"
#include "vyxdesktopentry.h"
#include "vyxdirs.h"
#include "vyxfileutils.h"
#include "vyxsession.h"
#include "vyxstrings.h"

#include <cerrno>

#include <algorithm>
#include <cstring>
#include <fcntl.h>
#include <sys/file.h>
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
    // Quoted by the Exec rules, not for a shell: the value is read as Exec
    // (field codes and all), and a name holding quotes, '$' or '%' must stay
    // one argument naming this path.
    item.setExec("vyx-open --exec " + Vyx::detail::quoteExecArgument(path));
    item.setIcon(iconName);
    return item;
}

enum class Room { Made, Replaced, Failed, Unlistable };

struct Item {
    std::string file;
    time_t mtime;
};

// Lists the folder's items; an item running the same program as the
// recorded desktop entry is deleted (the caller starts again), else the
// oldest go until there is room for one more. However many items the
// folder holds (another program, an older version of this one), a record
// brings it back to the limit.
Room makeRoom(const std::string& folder, const VyxDesktopEntry* recorded)
{
    Vyx::detail::DirWalker dir(folder);
    if (!dir.isOpen())
        return Room::Unlistable;
    size_t count = 0;
    std::vector<Item> dated;
    while (const dirent* entry = dir.next()) {
        if (entry->d_name[0] == '.')
            continue;
        const std::string file = folder + "/" + entry->d_name;
        if (recorded && Vyx::endsWith(file, ".desktop")) {
            VyxDesktopEntry item(file);
            if (item.isLoaded() && item.exec() == recorded->exec())
                return unlink(file.c_str()) == 0 ? Room::Replaced : Room::Failed;
        }
        ++count;
        struct stat st;
        if (stat(file.c_str(), &st) == 0)
            dated.push_back({file, st.st_mtime});
    }
    // Among equal times the first listed stays the oldest.
    std::stable_sort(dated.begin(), dated.end(), [](const Item& a, const Item& b) { return a.mtime < b.mtime; });
    for (size_t i = 0; count >= kMostItems && i < dated.size(); ++i) {
        if (unlink(dated[i].file.c_str()) == 0)
            --count;
    }
    return Room::Made;
}

// Holds an exclusive lock on the folder's lock file while it lives, so that
// two processes recording at once do not both count nine items and both
// add one. Without a lock file (a read-only folder) the record goes ahead
// unlocked, as it would have before.
class FolderLock {
public:
    explicit FolderLock(const std::string& folder)
        : m_fd(open((folder + "/.lock").c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK, 0600))
    {
        while (m_fd && flock(m_fd.get(), LOCK_EX) != 0 && errno == EINTR) { }
    }

private:
    Vyx::detail::UniqueFd m_fd;
};

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

    // A launcher is copied as it is, so only a file that is one counts: its
    // name ends with ".desktop" and it reads as a desktop entry (one with a
    // Type: any text file parses as an empty INI document). Any other
    // file (say "photos.desktop.txt") is an ordinary document whose item
    // opens it, whatever its text says.
    const VyxDesktopEntry entry(Vyx::endsWith(recorded, ".desktop") ? recorded : std::string());
    const bool isEntry = entry.isLoaded() && !entry.type().empty();
    const FolderLock lock(folder);
    if (fileExists(itemFile, false)) {
        // Written afresh below, which makes it the newest.
        unlink(itemFile.c_str());
    } else {
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
    if (isEntry) {
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
