// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "vyxfileutils.h"

#include "core/diag_p.h"
#include "core/dirwalker_p.h"
#include "core/pathprobe_p.h"
#include "core/readfile_p.h"

#include <cstdio>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr size_t kCopyChunk = 4095;

bool isSymbolicLink(const char* path)
{
    char target[1];
    return readlink(path, target, sizeof target) > 0;
}

}  // namespace

bool vyxCopyFile(const char* src, const char* dst)
{
    if (!src || !dst)
        return false;
    if (Vyx::detail::isDirectory(src)) {
        Vyx::detail::diag(Vyx::detail::kLibraryPrefix, "can't copy folder to file\n");
        return false;
    }
    std::string target =
        Vyx::detail::isDirectory(dst) ? Vyx::concat(dst, '/', Vyx::lastSection(src, '/')) : std::string(dst);
    // The source is opened first, and a file is never copied onto itself:
    // either would truncate a file the caller still needs. Only a file is
    // copied: a FIFO would never end, and a device has no content to copy.
    FILE* in = Vyx::detail::fopenRegularFile(src);
    if (!in)
        return false;
    struct stat from, to;
    if (fstat(fileno(in), &from) == 0 && stat(target.c_str(), &to) == 0 && from.st_dev == to.st_dev &&
        from.st_ino == to.st_ino) {
        std::fclose(in);
        return false;
    }
    FILE* out = std::fopen(target.c_str(), "wb");
    if (out) {
        char buffer[kCopyChunk];
        size_t n;
        while ((n = std::fread(buffer, 1, sizeof buffer, in)) > 0)
            std::fwrite(buffer, 1, n, out);
        std::fclose(out);
    }
    std::fclose(in);
    return out != nullptr;
}

bool rmdirRecursive(const char* path, Vyx::tagged_bool<InsideOnly_tag> insideOnly,
                    Vyx::tagged_bool<KeepDotDirectoryFile_tag> keepDotDirectory)
{
    if (!path)
        return false;
    // A link is removed itself, never followed out of the tree.
    if (isSymbolicLink(path))
        return unlink(path) == 0;
    struct stat st;
    if (stat(path, &st) != 0)
        return false;
    if (!S_ISDIR(st.st_mode))
        return unlink(path) == 0;

    bool ok = true;
    if (Vyx::detail::DirWalker dir(path); dir.isOpen()) {
        while (const dirent* entry = dir.next()) {
            const char* name = entry->d_name;
            if (insideOnly && keepDotDirectory && Vyx::equal(name, ".directory"))
                continue;
            std::string child = Vyx::concat(path, '/', name);
            if (!rmdirRecursive(child.c_str(), Vyx::tagged_bool<InsideOnly_tag>(false),
                                Vyx::tagged_bool<KeepDotDirectoryFile_tag>(false)))
                ok = false;  // go on with the rest
        }
    } else {
        ok = false;
    }
    if (!insideOnly && rmdir(path) != 0)
        ok = false;
    return ok;
}

bool isDirEmpty(const char* path, Vyx::tagged_bool<IgnoreDotDirectoryFile_tag> ignoreDotDirectory)
{
    Vyx::detail::DirWalker dir(path);
    while (const dirent* entry = dir.next()) {
        if (!(ignoreDotDirectory && Vyx::equal(entry->d_name, ".directory")))
            return false;
    }
    return true;
}

int64_t vyxSizeOfPath(const char* path)
{
    struct stat st;
    if (!path || lstat(path, &st) != 0)
        return 0;
    if (S_ISLNK(st.st_mode) || S_ISREG(st.st_mode))
        return st.st_size;
    if (!S_ISDIR(st.st_mode))
        return 0;
    int64_t total = 0;
    Vyx::detail::DirWalker dir(path);
    while (const dirent* entry = dir.next())
        total += vyxSizeOfPath(Vyx::concat(path, '/', entry->d_name).c_str());
    return total;
}
