// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "support/files.h"

#include <algorithm>
#include <dirent.h>
#include <fcntl.h>
#include <fstream>
#include <stdexcept>
#include <sys/stat.h>

namespace vyxtest {

void findFiles(const std::string& dir, const std::string& suffix, int depth, std::vector<std::string>* out)
{
    for (const std::string& name : listDir(dir)) {
        const std::string path = dir + "/" + name;
        struct stat st;
        if (stat(path.c_str(), &st) != 0)
            continue;
        if (S_ISDIR(st.st_mode) && depth > 0)
            findFiles(path, suffix, depth - 1, out);
        else if (S_ISREG(st.st_mode) && name.size() >= suffix.size() &&
                 name.compare(name.size() - suffix.size(), std::string::npos, suffix) == 0)
            out->push_back(path);
    }
}

void writeRepeated(const std::string& path, const std::string& head, char byte, size_t count, const std::string& tail)
{
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    out << head;
    const std::string chunk(1 << 20, byte);
    for (size_t left = count; left > 0;) {
        size_t piece = std::min(left, chunk.size());
        out.write(chunk.data(), static_cast<std::streamsize>(piece));
        left -= piece;
    }
    out << tail;
    if (!out)
        throw std::runtime_error("cannot write " + path);
}

std::vector<std::string> sorted(std::vector<std::string> list)
{
    std::sort(list.begin(), list.end());
    return list;
}

uint32_t readBe32(const std::string& bytes, uint32_t at)
{
    uint32_t value = 0;
    for (int i = 0; i < 4; ++i)
        value = value << 8 | static_cast<unsigned char>(bytes[at + i]);
    return value;
}

void writeBe32(std::string& bytes, uint32_t at, uint32_t value)
{
    for (int i = 0; i < 4; ++i)
        bytes[at + i] = static_cast<char>(value >> (24 - 8 * i));
}

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
