// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

// Putting objects into the trash, taking them back out, and finding them.

#include "vyxtrash.h"

#include "core/atomicfile_p.h"
#include "core/makedirs_p.h"
#include "shell/trash_p.h"
#include "shell/trashrecord_p.h"
#include "vyxdirs.h"
#include "vyxfileutils.h"
#include "vyxstrings.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

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
        int fd = open(record.c_str(), O_CREAT | O_EXCL | O_WRONLY | O_CLOEXEC, 0600);
        if (fd < 0) {
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
            std::fprintf(stderr, "vyxcore: can't create trashinfo file: %s\n", record.c_str());
            return std::string();
        }
        bool written = Vyx::detail::writeAll(fd, text);
        if (close(fd) != 0)
            written = false;
        if (!written) {
            // A full disk: no half record may stay behind.
            unlink(record.c_str());
            std::fprintf(stderr, "vyxcore: can't create trashinfo file: %s\n", record.c_str());
            return std::string();
        }
        return trashName;
    }
    return std::string();
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

// The trash name a path stands for, by its three forms.
std::string trashNameOf(const TrashDirs& dirs, const std::string& path)
{
    if (path.empty())
        return std::string();
    if (path[0] != '/')
        return path;
    if (Vyx::startsWith(path, dirs.files + "/"))
        return Vyx::fileName(path);
    return VyxTrash::getFileNameInTrash(path.c_str());
}

std::string readRecordLine(const char* name, bool originalPath)
{
    if (!name)
        return std::string();
    std::string record = TrashDirs::current().recordPath(name);
    FILE* file = record.empty() ? nullptr : std::fopen(record.c_str(), "re");
    if (!file) {
        std::fprintf(stderr, "vyxcore: can't find trashinfo file: %s\n", record.empty() ? name : record.c_str());
        return std::string();
    }
    std::string answer = originalPath ? Vyx::detail::recordOriginalPath(file)
                                      : Vyx::detail::firstRecordLine(file, "DeletionDate=");
    std::fclose(file);
    return answer;
}

}  // namespace

namespace {

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
    if (!name)
        return false;
    std::string record = TrashDirs::current().recordPath(name);
    if (record.empty() || unlink(record.c_str()) != 0) {
        std::fprintf(stderr, "vyxcore: can't remove trashinfo file: %s\n", record.empty() ? name : record.c_str());
        return false;
    }
    return true;
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
    return readRecordLine(name, true);
}

std::string VyxTrash::getDate(const char* name)
{
    return readRecordLine(name, false);
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
        std::fprintf(stderr, "vyxcore: can't convert '%s' to time_t\n", line.c_str());
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
        std::fprintf(stderr, "libvyxcore: path %s must be absolute original path before trash\n", path);
        return std::string();
    }
    Vyx::detail::ensureTrashDir(dirs.info);
    DIR* dir = opendir(dirs.info.c_str());
    if (!dir) {
        std::fprintf(stderr, "libvyxcore: cant open %s\n", dirs.info.c_str());
        return std::string();
    }
    std::string found;
    while (dirent* entry = readdir(dir)) {
        if (Vyx::equal(entry->d_name, ".") || Vyx::equal(entry->d_name, ".."))
            continue;
        FILE* record = std::fopen(Vyx::concat(dirs.info, '/', entry->d_name).c_str(), "re");
        if (!record)
            continue;
        bool named = Vyx::detail::recordNamesPath(record, original);
        std::fclose(record);
        if (named) {
            found = entry->d_name;
            std::string::size_type dot = found.rfind('.');
            if (dot != std::string::npos)
                found.erase(dot);
            break;
        }
    }
    closedir(dir);
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
    bool madeFilesDir = false;
    int counter = -1;
    while (true) {
        std::string trashName = createRecord(dirs, name, directory, &counter);
        if (trashName.empty())
            return false;
        std::string target = Vyx::concat(dirs.files, '/', trashName);
        if (renameNoReplace(source.c_str(), target.c_str()) == 0)
            return true;
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
        std::fprintf(stderr, "vyxcore: can't trash file, rename(%s,%s) failed due to %s, will try vyx-fops\n",
                     source.c_str(), target.c_str(), std::strerror(error));
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
    std::string destination = name.empty() ? std::string() : getPath(name.c_str());
    if (destination.empty())
        return false;
    std::string source;
    if (given[0] != '/')
        source = Vyx::concat(dirs.files, '/', given);
    else if (Vyx::startsWith(given, dirs.files + "/"))
        source = given;
    else
        source = Vyx::concat(dirs.files, '/', name);

    struct stat st;
    bool isDirectory = lstat(source.c_str(), &st) == 0 && S_ISDIR(st.st_mode);
    if (renameNoReplace(source.c_str(), destination.c_str()) != 0) {
        int error = errno;
        std::fprintf(stderr, "vyxcore: can't restore file, rename(%s,%s) failed due to %s\n", source.c_str(),
                     destination.c_str(), std::strerror(error));
        if (lstat(source.c_str(), &st) != 0)
            std::fprintf(stderr, "vyxcore: can't find file in trash to restore: %s\n", source.c_str());
        return false;
    }
    if (!unregisterFile(source.c_str())) {
        std::fprintf(stderr, "vyxcore: can't unregister trashed file %s\n", source.c_str());
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

bool VyxTrash::cleanAll()
{
    bool registry = cleanRegistry();
    bool files = cleanFiles();
    return registry && files;
}
