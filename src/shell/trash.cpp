// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

// Putting objects into the trash, taking them back out, and finding them.

#include "vyxtrash.h"

#include "core/atomicfile_p.h"
#include "core/diag_p.h"
#include "core/dirwalker_p.h"
#include "core/makedirs_p.h"
#include "core/pathprobe_p.h"
#include "core/readfile_p.h"
#include "core/uniquefd_p.h"
#include "shell/trash_p.h"
#include "shell/trashrecord_p.h"
#include "vyxdirs.h"
#include "vyxfileutils.h"
#include "vyxstrings.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace Vyx::detail {

TrashDirs TrashDirs::current()
{
    TrashDirs dirs;
    // A copy at once: another thread's ResetVyxDirs may empty the cached one.
    std::string files = GetVyxDir(TrashFilesDir);
    std::string::size_type slash = files.rfind('/');
    if (slash == std::string::npos || slash == 0)
        return dirs;
    dirs.top = files.substr(0, slash);
    dirs.info = dirs.top + "/info";
    dirs.files = std::move(files);
    // A files or info directory that is a link, or not ours, would have us
    // move, list and delete things outside the trash, or in another user's
    // hands: such a trash is not used at all. A missing one is made later.
    for (const std::string* dir : {&dirs.files, &dirs.info}) {
        struct stat st;
        if (lstat(dir->c_str(), &st) != 0)
            continue;
        if (!S_ISDIR(st.st_mode) || st.st_uid != geteuid()) {
            Vyx::detail::diag(Vyx::detail::kToolPrefix, "%s is not a directory of this user's, the trash is not used\n",
                              dir->c_str());
            return TrashDirs();
        }
    }
    return dirs;
}

std::string TrashDirs::recordPath(const std::string& name) const
{
    if (name.empty() || name.find('/') != std::string::npos || info.empty())
        return std::string();
    return Vyx::concat(info, '/', name, ".trashinfo");
}

std::mutex& trashMutex()
{
    static std::mutex mutex;
    return mutex;
}

bool ensureTrashDir(const std::string& path)
{
    struct stat st;
    if (stat(path.c_str(), &st) == 0)
        return S_ISDIR(st.st_mode);
    return makePrivateDirectories(path);
}

}  // namespace Vyx::detail

using Vyx::detail::TrashDirs;

namespace {

constexpr int kLastCounter = 10000;

void stripTrailingSlashes(std::string& path)
{
    while (!path.empty() && path.back() == '/')
        path.pop_back();
}

// The current directory into a 4096-byte buffer; "" when it cannot be had.
std::string currentDir()
{
    char buffer[4096];
    return getcwd(buffer, sizeof buffer) ? std::string(buffer) : std::string();
}

// rename that never replaces what is at to: an object already there (a
// stray in the files directory, a new file at a restored path) would be
// lost without a trace. File systems without RENAME_NOREPLACE get a test
// just before the rename instead.
int renameNoReplace(const char* from, const char* to)
{
    if (renameat2(AT_FDCWD, from, AT_FDCWD, to, RENAME_NOREPLACE) == 0)
        return 0;
    if (errno != EINVAL && errno != ENOSYS)
        return -1;
    struct stat st;
    if (lstat(to, &st) == 0) {
        errno = EEXIST;
        return -1;
    }
    return rename(from, to);
}

// Creates the record for name from directory under the first free trash
// name, starting at counter (-1 is the plain name), and returns that name
// with *counter set to its number; "" when none can be made. The record is
// created exclusively, so two processes trashing equal names at once both
// succeed under different names, and a record that cannot be written whole
// is removed again.
std::string createRecord(const TrashDirs& dirs, const std::string& name, const std::string& directory, int* counter)
{
    const auto [stem, extension] = Vyx::detail::splitTrashName(name);
    // An object directly under "/" is recorded as "//name": kept on purpose
    // (the record format is shared), and restoring to it still works.
    const std::string text = Vyx::detail::trashRecordText(Vyx::concat(directory, '/', name), time(nullptr));
    bool madeDirs = false;
    while (*counter <= kLastCounter) {
        std::string trashName = *counter < 0 ? name : Vyx::concat(stem, '_', *counter, extension);
        std::string record = dirs.recordPath(trashName);
        if (record.empty())
            break;
        Vyx::detail::UniqueFd fd(open(record.c_str(), O_CREAT | O_EXCL | O_WRONLY | O_CLOEXEC, 0600));
        if (!fd) {
            if (errno == EEXIST) {
                ++*counter;
                continue;
            }
            if (errno == EINTR)
                continue;
            // A first trash: make the directories once, then try again.
            if (errno == ENOENT && !madeDirs) {
                madeDirs = true;
                if (Vyx::detail::makePrivateDirectories(dirs.info) && Vyx::detail::makePrivateDirectories(dirs.files))
                    continue;
            }
            Vyx::detail::diag(Vyx::detail::kToolPrefix, "can't create trashinfo file: %s\n", record.c_str());
            return std::string();
        }
        bool written = Vyx::detail::writeAll(fd.get(), text);
        if (!fd.close())
            written = false;
        if (!written) {
            // A full disk: no half record may stay behind.
            unlink(record.c_str());
            Vyx::detail::diag(Vyx::detail::kToolPrefix, "can't create trashinfo file: %s\n", record.c_str());
            return std::string();
        }
        return trashName;
    }
    return std::string();
}

// An emptying of the trash in another process may have taken the record
// just before the object arrived, and would leave the object unlisted:
// the record is written again when it is gone.
void restoreLostRecord(const TrashDirs& dirs, const std::string& trashName, const std::string& directory,
                       const std::string& name)
{
    const std::string record = dirs.recordPath(trashName);
    struct stat st;
    if (lstat(record.c_str(), &st) == 0 || errno != ENOENT)
        return;
    Vyx::detail::UniqueFd fd(open(record.c_str(), O_CREAT | O_EXCL | O_WRONLY | O_CLOEXEC, 0600));
    if (!fd)
        return;
    bool written =
        Vyx::detail::writeAll(fd.get(), Vyx::detail::trashRecordText(Vyx::concat(directory, '/', name), time(nullptr)));
    if (!fd.close() || !written)
        unlink(record.c_str());
}

// Splits an original path into its directory and name as registerFile
// does; false when nothing is left of it.
bool splitOriginal(const char* path, std::string* directory, std::string* name)
{
    if (!path || !*path)
        return false;
    std::string original = path;
    stripTrailingSlashes(original);
    if (original.empty())
        return false;
    // A relative path is taken from the current directory, so that the
    // record always holds an absolute path to restore to.
    if (original[0] != '/') {
        std::string cwd = currentDir();
        if (cwd.empty())
            return false;
        original = Vyx::concat(cwd == "/" ? "" : cwd.c_str(), '/', original);
    }
    std::string::size_type slash = original.rfind('/');
    *name = original.substr(slash + 1);
    *directory = slash == 0 ? std::string("/") : original.substr(0, slash);
    return !name->empty();
}

// The trash name a path stands for, by its three forms. A path into the
// files directory counts only when it names an entry of it directly, read
// as written: "files/../../x" is not inside the trash, whatever its last
// component is called, and taking it so would move a file that was never
// trashed. "" (with a message) for such a path.
std::string trashNameOf(const TrashDirs& dirs, const std::string& path)
{
    if (path.empty())
        return std::string();
    std::string name;
    if (path[0] != '/')
        name = path;
    else if (Vyx::startsWith(path, dirs.files + "/"))
        name = path.substr(dirs.files.size() + 1);
    else
        return VyxTrash::getFileNameInTrash(path.c_str());
    if (!Vyx::detail::isPlainFileName(name)) {
        Vyx::detail::diag(Vyx::detail::kToolPrefix, "%s is not an object directly in the trash\n", path.c_str());
        return std::string();
    }
    return name;
}

// The real path of an existing directory, or the path as given.
std::string realDirectory(const std::string& path)
{
    char* real = realpath(path.c_str(), nullptr);
    if (!real)
        return path;
    std::string result = real;
    std::free(real);
    return result;
}

// Whether the object name in directory is the trash's top directory or lies
// in it (its files and info directories, the size cache, what they hold):
// trashing one of them would make every record unusable or the object
// unreachable. The directory is compared by its real path, so that "..",
// "." and links on the way do not hide it.
bool isPartOfTrash(const TrashDirs& dirs, const std::string& directory, const std::string& name)
{
    std::string top = realDirectory(dirs.top), where = realDirectory(directory);
    if (where == "/")
        where.clear();
    const std::string object = Vyx::concat(where, '/', name);
    return object == top || Vyx::startsWith(object, top + "/") || Vyx::startsWith(where + "/", top + "/");
}

std::string readRecordLine(const TrashDirs& dirs, const char* name, bool originalPath)
{
    if (!name)
        return std::string();
    std::string record = dirs.recordPath(name);
    FILE* file = record.empty() ? nullptr : Vyx::detail::fopenRegularFile(record.c_str());
    if (!file) {
        Vyx::detail::diag(Vyx::detail::kToolPrefix, "can't find trashinfo file: %s\n",
                          record.empty() ? name : record.c_str());
        return std::string();
    }
    std::string answer = originalPath ? Vyx::detail::recordOriginalPath(file, dirs.top)
                                      : Vyx::detail::firstRecordLine(file, "DeletionDate=");
    if (originalPath && answer.empty()) {
        std::rewind(file);
        if (!Vyx::detail::firstRecordLine(file, "Path=").empty())
            Vyx::detail::diag(Vyx::detail::kToolPrefix, "trashinfo file %s holds no usable path\n", record.c_str());
    }
    std::fclose(file);
    return answer;
}

bool removeRecord(const TrashDirs& dirs, const char* name)
{
    if (!name)
        return false;
    std::string record = dirs.recordPath(name);
    if (record.empty() || unlink(record.c_str()) != 0) {
        Vyx::detail::diag(Vyx::detail::kToolPrefix, "can't remove trashinfo file: %s\n",
                          record.empty() ? name : record.c_str());
        return false;
    }
    return true;
}

// One of the trash's directories, made when missing; empty without a trash.
std::string madeTrashDir(std::string TrashDirs::*which)
{
    TrashDirs dirs = TrashDirs::current();
    if (!dirs.valid())
        return std::string();
    Vyx::detail::ensureTrashDir(dirs.*which);
    return dirs.*which;
}

}  // namespace

std::string VyxTrash::getTopDirPath()
{
    return madeTrashDir(&TrashDirs::top);
}

std::string VyxTrash::getFileDirPath()
{
    return madeTrashDir(&TrashDirs::files);
}

std::string VyxTrash::getInfoDirPath()
{
    return madeTrashDir(&TrashDirs::info);
}

bool VyxTrash::isEmpty()
{
    std::string info = getInfoDirPath();
    if (info.empty())
        return true;
    if (!isDirEmpty(info.c_str(), Vyx::tagged_bool<IgnoreDotDirectoryFile_tag>(false)))
        return false;
    std::string files = getFileDirPath();
    return files.empty() || isDirEmpty(files.c_str(), Vyx::tagged_bool<IgnoreDotDirectoryFile_tag>(true));
}

std::string VyxTrash::setPath(const char* name, const char* directory)
{
    TrashDirs dirs = TrashDirs::current();
    if (!name || !*name || !directory || !dirs.valid())
        return std::string();
    // Callers move the object themselves, so the files directory must be
    // there too, not only the info directory the record makes.
    Vyx::detail::ensureTrashDir(dirs.files);
    int counter = -1;
    std::string trashName = createRecord(dirs, name, directory, &counter);
    return trashName.empty() ? std::string() : Vyx::concat(dirs.files, '/', trashName);
}

std::string VyxTrash::registerFile(const char* path)
{
    std::string directory, name;
    if (!splitOriginal(path, &directory, &name))
        return std::string();
    return setPath(name.c_str(), directory.c_str());
}

bool VyxTrash::delPath(const char* name)
{
    return removeRecord(TrashDirs::current(), name);
}

bool VyxTrash::unregisterFile(const char* path)
{
    if (!path)
        return false;
    std::string copy(path, strnlen(path, 4095));
    if (!copy.empty() && copy.back() == '/')
        copy.pop_back();
    std::lock_guard<std::mutex> lock(Vyx::detail::trashMutex());
    return delPath(Vyx::fileName(copy).c_str());
}

bool VyxTrash::isFileInTrash(const char* path)
{
    if (!path)
        return false;
    std::string files = GetVyxDir(TrashFilesDir);
    return !files.empty() && std::strstr(path, files.c_str()) != nullptr;
}

std::string VyxTrash::getPath(const char* name)
{
    return readRecordLine(TrashDirs::current(), name, true);
}

std::string VyxTrash::getDate(const char* name)
{
    return readRecordLine(TrashDirs::current(), name, false);
}

time_t VyxTrash::getDeletionDate(const char* path)
{
    if (!path)
        return -1;
    std::string name = trashNameOf(TrashDirs::current(), path);
    if (name.empty())
        return -1;
    std::string line = getDate(name.c_str());
    if (line.empty())
        return -1;
    time_t when = -1;
    if (!Vyx::detail::parseDeletionDate(line, &when)) {
        Vyx::detail::diag(Vyx::detail::kToolPrefix, "can't convert '%s' to time_t\n", line.c_str());
        return -1;
    }
    return when;
}

std::string VyxTrash::getFilePathToRestore(const char* path)
{
    if (!path)
        return std::string();
    std::string name = trashNameOf(TrashDirs::current(), path);
    return name.empty() ? std::string() : getPath(name.c_str());
}

std::string VyxTrash::getFileNameInTrash(const char* path)
{
    TrashDirs dirs = TrashDirs::current();
    if (!path || !*path || !dirs.valid())
        return std::string();
    std::string original = path;
    stripTrailingSlashes(original);
    if (original.empty() || original[0] != '/' || original == dirs.files ||
        Vyx::startsWith(original, dirs.files + "/")) {
        Vyx::detail::diag(Vyx::detail::kLibraryPrefix, "path %s must be absolute original path before trash\n", path);
        return std::string();
    }
    Vyx::detail::ensureTrashDir(dirs.info);
    Vyx::detail::DirWalker dir(dirs.info);
    if (!dir.isOpen()) {
        Vyx::detail::diag(Vyx::detail::kLibraryPrefix, "cant open %s\n", dirs.info.c_str());
        return std::string();
    }
    // Of several records of one path, the newest: the version the user
    // trashed last is the one they mean, whatever the directory order.
    std::string found;
    time_t foundWhen = 0;
    while (const dirent* entry = dir.next()) {
        FILE* record = Vyx::detail::fopenRegularFile(Vyx::concat(dirs.info, '/', entry->d_name).c_str());
        if (!record)
            continue;
        bool named = Vyx::detail::recordNamesPath(record, original, dirs.top);
        time_t when = -1;
        if (named) {
            std::rewind(record);
            if (!Vyx::detail::parseDeletionDate(Vyx::detail::firstRecordLine(record, "DeletionDate="), &when))
                when = -1;
        }
        std::fclose(record);
        if (named && (found.empty() || when > foundWhen)) {
            found = entry->d_name;
            foundWhen = when;
        }
    }
    std::string::size_type dot = found.rfind('.');
    if (dot != std::string::npos)
        found.erase(dot);
    return found;
}

std::string VyxTrash::getFilePathInTrash(const char* path)
{
    std::string name = getFileNameInTrash(path);
    return name.empty() ? std::string() : Vyx::concat(TrashDirs::current().files, '/', name);
}

bool VyxTrash::moveToTrash(const char* path)
{
    // The directories are computed once, and made only when the first
    // attempt shows they are missing: a put is one open, one write and one
    // rename.
    TrashDirs dirs = TrashDirs::current();
    std::string directory, name;
    if (!dirs.valid() || !splitOriginal(path, &directory, &name))
        return false;
    const std::string source = directory == "/" ? "/" + name : Vyx::concat(directory, '/', name);
    if (isPartOfTrash(dirs, directory, name)) {
        Vyx::detail::diag(Vyx::detail::kToolPrefix, "can't trash %s, it is part of the trash itself\n", source.c_str());
        return false;
    }
    bool madeFilesDir = false;
    int counter = -1;
    while (true) {
        std::string trashName = createRecord(dirs, name, directory, &counter);
        if (trashName.empty())
            return false;
        std::string target = Vyx::concat(dirs.files, '/', trashName);
        if (renameNoReplace(source.c_str(), target.c_str()) == 0) {
            restoreLostRecord(dirs, trashName, directory, name);
            return true;
        }
        int error = errno;
        unregisterFile(target.c_str());
        if (error == EEXIST) {
            // An object without a record sits at that name: keep it and take
            // the next free name.
            ++counter;
            continue;
        }
        struct stat st;
        if (error == ENOENT && !madeFilesDir && lstat(source.c_str(), &st) == 0) {
            madeFilesDir = true;
            if (Vyx::detail::makePrivateDirectories(dirs.files))
                continue;  // the name just given up is free again
        }
        Vyx::detail::diag(Vyx::detail::kToolPrefix,
                          "can't trash file, rename(%s,%s) failed due to %s, will try vyx-fops\n", source.c_str(),
                          target.c_str(), std::strerror(error));
        return false;
    }
}

bool VyxTrash::restoreFromTrash(const char* path)
{
    TrashDirs dirs = TrashDirs::current();
    if (!path || !*path || !dirs.valid())
        return false;
    std::string given = path;
    if (given.size() > 1 && given.back() == '/')
        given.pop_back();
    std::string name = trashNameOf(dirs, given);
    // The directories checked above serve every step of the restore.
    std::string destination = name.empty() ? std::string() : readRecordLine(dirs, name.c_str(), true);
    if (destination.empty())
        return false;
    // Always the entry of the files directory the name gives, never the path
    // as the caller wrote it (checked by trashNameOf to be that entry).
    const std::string source = Vyx::concat(dirs.files, '/', name);

    struct stat st;
    bool isDirectory = lstat(source.c_str(), &st) == 0 && S_ISDIR(st.st_mode);
    if (renameNoReplace(source.c_str(), destination.c_str()) != 0) {
        int error = errno;
        Vyx::detail::diag(Vyx::detail::kToolPrefix, "can't restore file, rename(%s,%s) failed due to %s\n",
                          source.c_str(), destination.c_str(), std::strerror(error));
        if (lstat(source.c_str(), &st) != 0)
            Vyx::detail::diag(Vyx::detail::kToolPrefix, "can't find file in trash to restore: %s\n", source.c_str());
        return false;
    }
    bool unregistered;
    {
        std::lock_guard<std::mutex> lock(Vyx::detail::trashMutex());
        unregistered = removeRecord(dirs, name.c_str());
    }
    if (!unregistered) {
        Vyx::detail::diag(Vyx::detail::kToolPrefix, "can't unregister trashed file %s\n", source.c_str());
        return false;
    }
    // A later directory trashed under the same name within the same second
    // would otherwise be taken for this one by size().
    if (isDirectory && hasSizeCache())
        unregisterDirSize(Vyx::fileName(source).c_str());
    return true;
}

namespace {

// Removes everything inside dir (one of the trash's directories, empty when
// there is no trash), under the trash's lock.
bool emptyTrashDir(const std::string& dir, bool keepDotDirectory)
{
    if (dir.empty())
        return false;
    std::lock_guard<std::mutex> lock(Vyx::detail::trashMutex());
    return rmdirRecursive(dir.c_str(), Vyx::tagged_bool<InsideOnly_tag>(true),
                          Vyx::tagged_bool<KeepDotDirectoryFile_tag>(keepDotDirectory));
}

}  // namespace

bool VyxTrash::cleanRegistry()
{
    return emptyTrashDir(getInfoDirPath(), false);
}

bool VyxTrash::cleanFiles()
{
    // The files directory's own ".directory" (its name and icon) stays.
    return emptyTrashDir(getFileDirPath(), true);
}

namespace {

// Removes the object in the files directory that the trash name stands for,
// then its record. An object that cannot be removed keeps its record, so
// that it stays listed and counted instead of lingering unseen. False, with
// a message naming what stays, when either removal fails.
bool removeTrashed(const TrashDirs& dirs, const std::string& name)
{
    const std::string object = Vyx::concat(dirs.files, '/', name);
    struct stat st;
    if (lstat(object.c_str(), &st) == 0 && !rmdirRecursive(object.c_str(), Vyx::tagged_bool<InsideOnly_tag>(false),
                                                           Vyx::tagged_bool<KeepDotDirectoryFile_tag>(false))) {
        Vyx::detail::diag(Vyx::detail::kToolPrefix, "can't remove %s from the trash, its record is kept\n",
                          object.c_str());
        return false;
    }
    const std::string record = dirs.recordPath(name);
    if (unlink(record.c_str()) != 0 && errno != ENOENT) {
        Vyx::detail::diag(Vyx::detail::kToolPrefix, "can't remove trashinfo file: %s\n", record.c_str());
        return false;
    }
    return true;
}

// The names in dir, but "." and "..".
std::vector<std::string> entriesOf(const std::string& dir)
{
    std::vector<std::string> names;
    Vyx::detail::DirWalker d(dir);
    while (const dirent* entry = d.next())
        names.emplace_back(entry->d_name);
    return names;
}

}  // namespace

bool VyxTrash::cleanAll()
{
    // Object by object, each before its record, rather than every record
    // and then every object: a removal that fails or is cut short (a kill,
    // an immutable file) never leaves an object in the trash with no record
    // saying where it came from.
    const std::string files = getFileDirPath(), info = getInfoDirPath();
    const TrashDirs dirs = TrashDirs::current();
    if (files.empty() || info.empty() || !dirs.valid())
        return false;
    std::lock_guard<std::mutex> lock(Vyx::detail::trashMutex());
    bool ok = true;
    const std::string suffix = ".trashinfo";
    for (const std::string& entry : entriesOf(dirs.info)) {
        if (entry.size() > suffix.size() && Vyx::endsWith(entry, suffix)) {
            ok = removeTrashed(dirs, entry.substr(0, entry.size() - suffix.size())) && ok;
        } else if (!rmdirRecursive(Vyx::concat(dirs.info, '/', entry).c_str(), Vyx::tagged_bool<InsideOnly_tag>(false),
                                   Vyx::tagged_bool<KeepDotDirectoryFile_tag>(false))) {
            Vyx::detail::diag(Vyx::detail::kToolPrefix, "can't remove %s/%s from the trash\n", dirs.info.c_str(),
                              entry.c_str());
            ok = false;
        }
    }
    // What is left without a record (another program's half-done trashing,
    // an older emptying cut short) goes too; the directory's own
    // ".directory" stays, as it names and decorates the trash.
    for (const std::string& entry : entriesOf(dirs.files)) {
        if (entry == ".directory" || fileExists(dirs.recordPath(entry), false))
            continue;
        const std::string object = Vyx::concat(dirs.files, '/', entry);
        if (!rmdirRecursive(object.c_str(), Vyx::tagged_bool<InsideOnly_tag>(false),
                            Vyx::tagged_bool<KeepDotDirectoryFile_tag>(false))) {
            Vyx::detail::diag(Vyx::detail::kToolPrefix, "can't remove %s from the trash\n", object.c_str());
            ok = false;
        }
    }
    return ok;
}
