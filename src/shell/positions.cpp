// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

// Where the desktop's icons stand, in the desktop directory's ".directory",
// and the common time stamp of the user's desktop-entry files.

#include "core/diag_p.h"
#include "core/ini_p.h"
#include "core/uniquefd_p.h"
#include "desktopentry/entryvalue_p.h"
#include "vyxdirs.h"
#include "vyxfileutils.h"
#include "vyxsession.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <functional>
#include <mutex>
#include <sys/stat.h>
#include <unistd.h>
#include <utime.h>

namespace {

std::mutex g_positionMutex;

// Opens the position file and takes its lock for a read-modify-write. The
// lock is exclusive: a shared lock would let two writers read the same old
// text and the later save would drop the other's item. The file is replaced
// by rename when saved, so a lock won on a file that was replaced meanwhile
// is given up and taken again on the current one. No descriptor when the
// file cannot be opened (the edit then goes ahead without a lock). The file must then be
// read through this descriptor: closing any other descriptor of it would
// release the lock.
Vyx::detail::UniqueFd lockPositionFile(const std::string& file)
{
    for (int attempt = 0; attempt < 100; ++attempt) {
        Vyx::detail::UniqueFd fd(open(file.c_str(), O_RDWR | O_NONBLOCK | O_CLOEXEC));
        if (!fd)
            return fd;
        if (!vyxLockFile(fd.get(), Vyx::tagged_bool<LockRead_tag>(false), Vyx::tagged_bool<BlockingCall_tag>(true)))
            return Vyx::detail::UniqueFd();
        struct stat locked, current;
        if (fstat(fd.get(), &locked) == 0 && stat(file.c_str(), &current) == 0 && locked.st_dev == current.st_dev &&
            locked.st_ino == current.st_ino)
            return fd;
        vyxUnlockFile(fd.get());
    }
    return Vyx::detail::UniqueFd();
}

// Loads the position file, lets edit change it and saves it, under the
// process's mutex and the file's lock. False when the file does not load
// (it is never created here), when edit refuses, or when it cannot be saved.
// The file is the desktop's own settings too, written by other programs: a
// file holding lines our reader cannot keep (text it cannot parse, a key
// twice) is left as it is rather than rewritten without them.
bool editPositions(const std::function<bool(Vyx::detail::IniDocument&)>& edit)
{
    const std::string& desktop = GetVyxDir(DesktopDir);
    if (desktop.empty())
        return false;
    const std::string file = desktop + "/.directory";
    std::lock_guard<std::mutex> lock(g_positionMutex);
    Vyx::detail::UniqueFd fd = lockPositionFile(file);
    const bool locked = static_cast<bool>(fd);
    if (!locked)
        fd.reset(open(file.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));  // not writable: read, then replace
    Vyx::detail::IniDocument ini;
    std::string text;
    bool saved = false;
    if (fd && ini.loadDescriptor(fd.get(), &text)) {
        if (!ini.keepsEveryLine(text))
            Vyx::detail::diag(Vyx::detail::kLibraryPrefix, "%s holds lines that would be lost, not rewritten\n",
                              file.c_str());
        else if (edit(ini))
            saved = ini.saveAtomically(file);
    }
    if (locked)
        vyxUnlockFile(fd.get());
    return saved;
}

// The group of an item's position; "" when the name cannot be a group name,
// with a message (shown escaped, so that it stays one line).
std::string section(const char* name)
{
    std::string group = std::string("IconPosition::") + name;
    if (Vyx::detail::IniDocument::isWritableGroup(group.c_str()))
        return group;
    Vyx::detail::diag(Vyx::detail::kLibraryPrefix, "can't keep a position for '%s': not a name a group can hold\n",
                      Vyx::detail::encodeEntryValue(name).c_str());
    return std::string();
}

// The time stamp of "menutime"; false when it cannot be examined.
bool menuTime(struct utimbuf* times)
{
    const std::string& home = GetVyxDir(VyxHomeDir);
    struct stat st;
    if (home.empty() || stat((home + "/menutime").c_str(), &st) != 0)
        return false;
    times->actime = times->modtime = st.st_mtime;
    return true;
}

}  // namespace

bool SaveDesktopItemPosition(const char* name, int x, int y, const std::string& monitor)
{
    if (!name)
        return false;
    const std::string group = section(name);
    if (group.empty())
        return false;
    if (!Vyx::detail::IniDocument::isWritableValue(monitor)) {
        Vyx::detail::diag(Vyx::detail::kLibraryPrefix,
                          "can't keep a position on a monitor named with a line break or edge blanks\n");
        return false;
    }
    return editPositions([&](Vyx::detail::IniDocument& ini) {
        return ini.set(group.c_str(), "X", std::to_string(x)) && ini.set(group.c_str(), "Y", std::to_string(y)) &&
               ini.set(group.c_str(), "Monitor", monitor);
    });
}

bool RemoveDesktopItemPosition(const char* name)
{
    if (!name)
        return false;
    const std::string group = section(name);
    if (group.empty())
        return false;
    return editPositions([&](Vyx::detail::IniDocument& ini) {
        ini.removeGroup(group.c_str());
        return true;
    });
}

void RenameDesktopShortcutCoord(const char* oldPath, const char* newPath, Display* display)
{
    const std::string& desktop = GetVyxDir(DesktopDir);
    if (!oldPath || !newPath || desktop.empty() || !std::strstr(oldPath, desktop.c_str()))
        return;
    const std::string target = newPath;
    const size_t slash = target.rfind('/');
    const std::string newName =
        slash == std::string::npos || slash + 1 == target.size() ? target : target.substr(slash + 1);
    SendCommandToWM(display, (std::string("VYXWM_UPDATE_ICONFILENAME ") + oldPath + "|" + newName + "\n").c_str());
}

void syncDesktopEntryTime(bool force, const char* path, const struct utimbuf* times)
{
    struct utimbuf chosen;
    if (times)
        chosen = *times;
    else if (!menuTime(&chosen))
        return;
    if (!path)
        return;
    if (!force) {
        // Only the access time may move: a file whose contents changed
        // since keeps its own modification time.
        struct stat st;
        if (stat(path, &st) != 0 || st.st_mtime != chosen.modtime)
            return;
    }
    utime(path, &chosen);
}

void syncUserDesktopEntriesTime(bool force, const struct utimbuf* times)
{
    std::vector<std::string> files;
    const auto filesOnly = Vyx::tagged_bool<FilesOnly_tag>(true);
    GetFileList(&files, GetVyxDir(StartMenuDir).c_str(), 5, "*.desktop", filesOnly);
    GetFileList(&files, GetVyxDir(KioskToolbarDir).c_str(), 0, "*.desktop", filesOnly);
    const std::string& home = GetVyxDir(HomeDir);
    if (!home.empty())
        GetFileList(&files, (home + "/Desktops").c_str(), 1, "*.desktop", filesOnly);
    struct utimbuf chosen;
    if (times)
        chosen = *times;
    else if (!menuTime(&chosen))
        return;
    for (const std::string& file : files)
        syncDesktopEntryTime(force, file.c_str(), &chosen);
}
