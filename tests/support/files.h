// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#ifndef VYXCORE_TESTS_FILES_H
#define VYXCORE_TESTS_FILES_H

// Small file jobs several tests share: dating files, listing directories,
// writing files too big to build in memory, and the big-endian words of the
// binary caches the library reads.

#include <cstdint>
#include <ctime>
#include <string>
#include <sys/types.h>
#include <vector>

namespace vyxtest {

// Regular files under dir whose names end with suffix, entering depth levels
// of subdirectories (links followed), appended to *out.
void findFiles(const std::string& dir, const std::string& suffix, int depth, std::vector<std::string>* out);

// Writes head, then count times the byte, then tail, without holding the
// whole file in memory.
void writeRepeated(const std::string& path, const std::string& head, char byte, size_t count,
                   const std::string& tail = "");

std::vector<std::string> sorted(std::vector<std::string> list);

uint32_t readBe32(const std::string& bytes, uint32_t at);
void writeBe32(std::string& bytes, uint32_t at, uint32_t value);

// The names in dir, sorted, without "." and ".."; with hidden false also
// without any other name that starts with a dot. Empty when dir cannot be
// read.
std::vector<std::string> listDir(const std::string& dir, bool hidden = true);
// The permission bits of path itself (a link is not followed); 0 when it
// does not exist.
mode_t fileMode(const std::string& path);
// The modification or access time of path; -1 when it does not exist.
time_t mtimeOf(const std::string& path);
time_t atimeOf(const std::string& path);
// Sets both times of path; false when that fails.
bool setTimes(const std::string& path, time_t atime, time_t mtime);
inline bool setMtime(const std::string& path, time_t when)
{
    return setTimes(path, when, when);
}

}  // namespace vyxtest

#endif
