// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

// Internal interface of core, open to every folder of the library.

#ifndef VYXCORE_PATHPROBE_P_H
#define VYXCORE_PATHPROBE_P_H

#include "core/uniquefd_p.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <sys/stat.h>
#include <unordered_map>

namespace Vyx::detail {

// Whether path is a regular file (or a link to one): a directory that
// happens to carry a file's name is not what a lookup wants.
bool isRegularFile(const std::string& path);
// Whether path is a directory (or a link to one).
bool isDirectory(const std::string& path);

// st's modification time in nanoseconds: a file replaced within the same
// second still compares different.
inline int64_t modifiedNs(const struct stat& st)
{
    return int64_t(st.st_mtim.tv_sec) * 1'000'000'000 + st.st_mtim.tv_nsec;
}

// Whether name can stand for one entry of a directory by itself: not empty,
// not "." or "..", and without a '/', so that joining it to the directory
// cannot lead out of it.
bool isPlainFileName(const std::string& name);

// The first base + extension, in the order given, that is a regular file;
// empty when none is.
std::string firstRegularFile(const std::string& base, const char* const* extensions, size_t count);

// Whether root + "/" + relative is a directory (or a link to one), for many
// relative paths under one root: each parent directory is listed once
// instead of one stat per path. A theme index names hundreds of
// subdirectories, and a stat of each was most of a theme's load. Entries
// the listing cannot type (links, file systems without types) and paths
// with ".", ".." or empty parts are asked of stat as before.
class DirectoryProbe {
public:
    explicit DirectoryProbe(std::string root);
    ~DirectoryProbe();
    DirectoryProbe(const DirectoryProbe&) = delete;
    DirectoryProbe& operator=(const DirectoryProbe&) = delete;

    bool isDirectory(const std::string& relative);

private:
    struct Listing {
        bool listed = false;  // false: the parent could not be listed, ask stat
        std::unordered_map<std::string, unsigned char> types;  // name -> dirent type
    };
    const Listing& listing(const std::string& parent);
    bool statIsDirectory(const std::string& relative) const;

    std::string m_root;
    UniqueFd m_rootFd;
    std::unordered_map<std::string, Listing> m_listings;
};

}  // namespace Vyx::detail

#endif
