// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#ifndef VYXCORE_TRASH_H
#define VYXCORE_TRASH_H

/// \file
/// The user's trash can: a top directory holding "files" (the trashed
/// objects), "info" (one NAME.trashinfo record per object: "[Trash Info]",
/// "Path=" with the URL-encoded original path, "DeletionDate=" in local time
/// as %Y-%m-%dT%H:%M:%S) and an optional "directorysizes" cache of the sizes
/// of trashed directories. Objects are moved in and out by rename only; a
/// move across file systems fails, and the caller falls back to the
/// desktop's file-operations tool ("vyx-fops").
///
/// Members that take "a path" accept three forms: a path inside the files
/// directory (its last component is the trash name), any other absolute path
/// (an original path, looked up among the records), or a relative name (the
/// trash name itself). Nothing throws; failures answer false, "" or -1, with
/// a "vyxcore: ..." or "libvyxcore: ..." line on standard error where noted.
///
/// Threads: see VyxTrash.

#include "vyxexport.h"

#include <cstdint>
#include <ctime>
#include <string>

/// The user's trash: static members only, with no state kept between calls.
/// Any member may be called from several threads at once: records are
/// created exclusively (two threads never get the same trash name), and
/// unregistering, emptying and rewriting the size cache hold the trash's
/// mutex. As with another process using the same trash, two threads that
/// move the same object at once race on the file system; one of them fails.
class VYX_EXPORT VyxTrash {
public:
    VyxTrash() = delete;

    /// The trash's top directory (the files directory without its last
    /// component), made with mode 0700 when missing; "" when the user has no
    /// data directory.
    static std::string getTopDirPath();
    /// The files directory (XDG_DATA_HOME + "/Trash/files", else
    /// ~/.local/share/Trash/files), made when missing; "" as above.
    static std::string getFileDirPath();
    /// The info directory (top + "/info"), made when missing; "" as above.
    static std::string getInfoDirPath();

    /// True when nothing is in the trash: the info directory holds no entry
    /// and the files directory none but a ".directory" file. True as well
    /// when there is no trash directory at all.
    static bool isEmpty();

    /// Writes the record for the object name from directory and returns the
    /// path the object must be moved to: files dir + "/" + name, or, when a
    /// record of that name exists, + "/" + stem + "_N" + extension with the
    /// first free N from 0 (the extension starts at the first '.'). Records
    /// are created exclusively, so concurrent callers never share a name. ""
    /// when every N up to 10000 is taken or the record cannot be written
    /// ("vyxcore: can't create trashinfo file: ...").
    static std::string setPath(const char* name, const char* directory);
    /// setPath for an original path (trailing '/' dropped; a relative path is
    /// taken from the current directory). "" for a null or empty path.
    static std::string registerFile(const char* path);
    /// Removes the record of the trash name. False when it cannot be removed
    /// ("vyxcore: can't remove trashinfo file: ..."), or for a null name.
    static bool delPath(const char* name);
    /// delPath of the last component of path (one trailing '/' dropped).
    /// False for a null path or when the record cannot be removed.
    static bool unregisterFile(const char* path);
    /// True when path contains the files directory; false for null or when
    /// there is no trash directory.
    static bool isFileInTrash(const char* path);

    /// The decoded "Path=" value of the record of the trash name; "" when the
    /// record is missing ("vyxcore: can't find trashinfo file: ...") or has no
    /// "Path=" line.
    static std::string getPath(const char* name);
    /// The record's whole "DeletionDate=..." line; "" when the record is
    /// missing (same message) or has no such line.
    static std::string getDate(const char* name);
    /// The deletion time of the object path names, in seconds since the
    /// epoch (the record holds local time); -1 when there is no record or no
    /// date, or the date does not read ("vyxcore: can't convert '...' to
    /// time_t").
    static time_t getDeletionDate(const char* path);
    /// The original path of the object path names; "" when not found.
    static std::string getFilePathToRestore(const char* path);
    /// The trash name of the object trashed from the absolute original path;
    /// "" when no record names it. A relative path, or one inside the files
    /// directory, gives "" with "libvyxcore: path ... must be absolute
    /// original path before trash"; an unreadable info directory gives ""
    /// with "libvyxcore: cant open ...".
    static std::string getFileNameInTrash(const char* path);
    /// Files dir + "/" + getFileNameInTrash(path); "" when that is "".
    static std::string getFilePathInTrash(const char* path);

    /// Moves path into the trash and records it. False for a null or empty
    /// path, when no record can be written, and when the rename fails
    /// ("vyxcore: can't trash file, rename(...) failed due to ..., will try
    /// vyx-fops"; the record is removed again). An object of another file
    /// system is never copied: that is the caller's fallback. An object that
    /// sits in the files directory without a record is never replaced: the
    /// next free name is taken.
    static bool moveToTrash(const char* path);
    /// Moves the object path names back to its original path and removes its
    /// record. The original's directory is not made, and an object that is
    /// there now is never replaced: false ("vyxcore: can't restore file,
    /// rename(...) failed due to ...") leaves both in place. False as well
    /// when there is no record.
    static bool restoreFromTrash(const char* path);

    /// Removes every record. False when something stayed.
    static bool cleanRegistry();
    /// Removes every trashed object, keeping a ".directory" file. False when
    /// something stayed.
    static bool cleanFiles();
    /// cleanRegistry, then cleanFiles (always both); true when both
    /// succeeded. The size cache is left as it is.
    static bool cleanAll();

    /// The bytes held by the trashed objects: files and symbolic links by
    /// their own size, directories by their cached size when the cache line
    /// is as recent as their record, else measured. 0 for an empty or missing
    /// trash. Never writes the cache.
    static int64_t size();
    /// Caches the size of the trashed directory name (measured when size is
    /// -1, or any negative figure), replacing its old line.
    static void registerDirSize(const char* name, int64_t size);
    /// Drops the cache line of name.
    static void unregisterDirSize(const char* name);
    /// Replaces the line of name in the size cache with one for size, or
    /// drops it when size is -1 (or any negative figure). The cache is replaced whole, atomically; it
    /// is left unchanged when it cannot be rewritten.
    static void registerDirSizeHelper(const char* name, int64_t size);
    /// True when the size cache file exists.
    static bool hasSizeCache();
};

#endif
