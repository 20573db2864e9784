// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#ifndef VYXCORE_TESTS_FILE_FACTS_H
#define VYXCORE_TESTS_FILE_FACTS_H

// What a test checks of files it did not write itself: the names in a
// directory, permission bits and time stamps, and setting those stamps.

#include <ctime>
#include <string>
#include <sys/types.h>
#include <vector>

namespace vyxtest {

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

}  // namespace vyxtest

#endif
