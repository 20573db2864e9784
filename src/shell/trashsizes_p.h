// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#ifndef VYXCORE_TRASHSIZES_P_H
#define VYXCORE_TRASHSIZES_P_H

// Reading the "directorysizes" cache: one line per trashed directory,
// "SIZE MTIME ENCODED-NAME", where MTIME is the modification time of the
// directory's record when the size was taken. The file is outside data;
// lines that do not read are skipped.

#include <cstdint>
#include <cstdio>
#include <string>
#include <unordered_map>

namespace Vyx::detail {

struct CachedDirSize {
    int64_t size = 0;
    int64_t recordTime = 0;
};

// Keyed by the encoded trash name, as the lines hold it.
using DirSizeCache = std::unordered_map<std::string, CachedDirSize>;

// Splits one line at its first and second blank. False when the size or
// the time is not a whole base-10 64-bit integer, or the size is negative.
bool parseSizeCacheLine(const std::string& line, std::string* encodedName, CachedDirSize* entry);

// Every line of cache that reads; a later line for a name wins.
DirSizeCache readSizeCache(FILE* cache);

}  // namespace Vyx::detail

#endif
