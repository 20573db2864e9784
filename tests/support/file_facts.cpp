// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "support/file_facts.h"

#include <algorithm>
#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

namespace vyxtest {

std::vector<std::string> listDir(const std::string& dir, bool hidden)
{
    std::vector<std::string> names;
    if (DIR* d = opendir(dir.c_str())) {
        while (dirent* entry = readdir(d)) {
            const std::string name = entry->d_name;
            if (name != "." && name != ".." && (hidden || name[0] != '.'))
                names.push_back(name);
        }
        closedir(d);
    }
    std::sort(names.begin(), names.end());
    return names;
}

mode_t fileMode(const std::string& path)
{
    struct stat st;
    return lstat(path.c_str(), &st) == 0 ? st.st_mode & 07777 : 0;
}

time_t mtimeOf(const std::string& path)
{
    struct stat st;
    return stat(path.c_str(), &st) == 0 ? st.st_mtime : -1;
}

time_t atimeOf(const std::string& path)
{
    struct stat st;
    return stat(path.c_str(), &st) == 0 ? st.st_atime : -1;
}

bool setTimes(const std::string& path, time_t atime, time_t mtime)
{
    const struct timespec times[2] = {{atime, 0}, {mtime, 0}};
    return utimensat(AT_FDCWD, path.c_str(), times, 0) == 0;
}

}  // namespace vyxtest
