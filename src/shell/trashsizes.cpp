// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

// The size of the trash, and the "directorysizes" cache that spares
// measuring trashed directories again.

#include "vyxtrash.h"

#include "core/atomicfile_p.h"
#include "core/dirwalker_p.h"
#include "core/readfile_p.h"
#include "core/textlines_p.h"
#include "core/uniquefd_p.h"
#include "shell/trash_p.h"
#include "shell/trashsizes_p.h"
#include "vyxfileutils.h"
#include "vyxstrings.h"

#include <cerrno>
#include <charconv>
#include <cstdio>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace Vyx::detail {

namespace {

// The whole of [begin, end) as a base-10 64-bit integer: no blanks, no
// trailing text, nothing out of range.
bool wholeInt64(const char* begin, const char* end, int64_t* value)
{
    auto [stop, error] = std::from_chars(begin, end, *value, 10);
    return begin != end && error == std::errc() && stop == end;
}

}  // namespace

bool parseSizeCacheLine(const std::string& line, std::string* encodedName, CachedDirSize* entry)
{
    std::string::size_type first = line.find(' ');
    if (first == std::string::npos)
        return false;
    std::string::size_type second = line.find(' ', first + 1);
    if (second == std::string::npos)
        return false;
    const char* text = line.data();
    CachedDirSize parsed;
    if (!wholeInt64(text, text + first, &parsed.size) ||
        !wholeInt64(text + first + 1, text + second, &parsed.recordTime) || parsed.size < 0)
        return false;
    *encodedName = line.substr(second + 1);
    *entry = parsed;
    return true;
}

DirSizeCache readSizeCache(FILE* cache)
{
    DirSizeCache sizes;
    forEachLine(cache, [&sizes](const std::string& line) {
        std::string name;
        CachedDirSize entry;
        if (parseSizeCacheLine(line, &name, &entry))
            sizes[name] = entry;
    });
    return sizes;
}

}  // namespace Vyx::detail

using Vyx::detail::TrashDirs;

namespace {

// The modification time of the record of name; 0 when it cannot be had.
int64_t recordTime(const TrashDirs& dirs, const std::string& name)
{
    std::string record = dirs.recordPath(name);
    struct stat st;
    return !record.empty() && stat(record.c_str(), &st) == 0 ? static_cast<int64_t>(st.st_mtime) : 0;
}

}  // namespace

int64_t VyxTrash::size()
{
    TrashDirs dirs = TrashDirs::current();
    if (!dirs.valid())
        return 0;
    Vyx::detail::DirSizeCache cache;
    if (FILE* file = Vyx::detail::fopenRegularFile(dirs.sizeCachePath().c_str())) {
        cache = Vyx::detail::readSizeCache(file);
        std::fclose(file);
    }
    Vyx::detail::DirWalker dir(dirs.files);
    int64_t total = 0;
    while (const dirent* entry = dir.next()) {
        const char* name = entry->d_name;
        struct stat st;
        if (fstatat(dir.descriptor(), name, &st, AT_SYMLINK_NOFOLLOW) != 0)
            continue;
        if (S_ISLNK(st.st_mode) || S_ISREG(st.st_mode)) {
            total += st.st_size;
        } else if (S_ISDIR(st.st_mode)) {
            // A cached size counts only while the record is the one it was
            // taken for: a directory trashed again under the same name has a
            // newer record.
            if (!cache.empty()) {
                auto cached = cache.find(Vyx::encodedUrl(name));
                if (cached != cache.end()) {
                    struct stat record;
                    std::string recordPath = dirs.recordPath(name);
                    if (stat(recordPath.c_str(), &record) == 0 && record.st_mtime == cached->second.recordTime) {
                        total += cached->second.size;
                        continue;
                    }
                }
            }
            total += vyxSizeOfPath(Vyx::concat(dirs.files, '/', name).c_str());
        }
    }
    return total;
}

void VyxTrash::registerDirSize(const char* name, int64_t size)
{
    if (!name || !*name)
        return;
    if (size < 0) {
        std::string files = getFileDirPath();
        if (files.empty())
            return;
        size = vyxSizeOfPath(Vyx::concat(files, '/', name).c_str());
    }
    registerDirSizeHelper(name, size);
}

void VyxTrash::unregisterDirSize(const char* name)
{
    registerDirSizeHelper(name, -1);
}

void VyxTrash::registerDirSizeHelper(const char* name, int64_t size)
{
    if (!name || !*name)
        return;
    TrashDirs dirs = TrashDirs::current();
    if (!dirs.valid() || !Vyx::detail::ensureTrashDir(dirs.top))
        return;
    const std::string cachePath = dirs.sizeCachePath();
    const std::string suffix = " " + Vyx::encodedUrl(name);

    // One rewrite at a time in this process, so that two threads do not
    // each drop the other's line. Between processes the last rename wins.
    std::lock_guard<std::mutex> lock(Vyx::detail::trashMutex());
    // A file with no name until it is complete: a crash or a full disk
    // leaves the old cache in place and nothing behind.
    const Vyx::detail::UniqueFd fd(open(dirs.top.c_str(), O_TMPFILE | O_WRONLY | O_CLOEXEC, 0644));
    if (!fd)
        return;
    std::string content;
    if (FILE* old = Vyx::detail::fopenRegularFile(cachePath.c_str())) {
        Vyx::detail::forEachLine(old, [&](const std::string& line) {
            if (!Vyx::endsWith(line, suffix))
                content.append(line).push_back('\n');
        });
        std::fclose(old);
    }
    if (size >= 0)
        content += Vyx::concat(size, ' ', recordTime(dirs, name), suffix, '\n');
    if (Vyx::detail::writeAll(fd.get(), content)) {
        std::string self = Vyx::concat("/proc/self/fd/", fd.get());
        for (int number = 0; number <= 18; ++number) {
            std::string linked = Vyx::concat(cachePath, number);
            if (linkat(AT_FDCWD, self.c_str(), AT_FDCWD, linked.c_str(), AT_SYMLINK_FOLLOW) == 0) {
                if (rename(linked.c_str(), cachePath.c_str()) != 0)
                    unlink(linked.c_str());
                break;
            }
            if (errno != EEXIST)
                break;
        }
    }
}

bool VyxTrash::hasSizeCache()
{
    TrashDirs dirs = TrashDirs::current();
    struct stat st;
    // Only a file is a cache: anything else at its name is never read.
    return dirs.valid() && stat(dirs.sizeCachePath().c_str(), &st) == 0 && S_ISREG(st.st_mode);
}
