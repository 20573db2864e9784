// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#ifndef VYXCORE_TRASH_P_H
#define VYXCORE_TRASH_P_H

// What the trash's source files share: where its directories are, the lock,
// and making directories without a shell.

#include <mutex>
#include <string>

namespace Vyx::detail {

// The trash's directories as the environment names them now. Computing them
// touches no file: callers that write try the real operation first and make
// the directories only when it fails for their lack, so a put costs no
// extra stat or mkdir once the trash exists.
struct TrashDirs {
    std::string files;  // the trashed objects
    std::string top;  // files without its last component
    std::string info;  // top + "/info"

    // All three empty when the user has no trash directory.
    static TrashDirs current();
    bool valid() const { return !files.empty(); }

    // info + "/" + name + ".trashinfo"; "" for a name that cannot be a trash
    // name (empty, or holding '/', which would leave the info directory).
    std::string recordPath(const std::string& name) const;
    std::string sizeCachePath() const { return top + "/directorysizes"; }
};

// Guards the removal of records and objects, and the read-modify-write of
// the size cache, within one process.
std::mutex& trashMutex();

// Makes the directory and its missing parents (mode 0700), after a stat that
// finds most trash directories already there.
bool ensureTrashDir(const std::string& path);

}  // namespace Vyx::detail

#endif
