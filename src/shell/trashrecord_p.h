// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#ifndef VYXCORE_TRASHRECORD_P_H
#define VYXCORE_TRASHRECORD_P_H

// Writing and reading the NAME.trashinfo records. The readers take any
// bytes: a record is outside data (other programs write them too), so every
// answer is bounded by what the file holds.

#include <cstdio>
#include <ctime>
#include <string>
#include <utility>

namespace Vyx::detail {

// The three lines of a record: "[Trash Info]", "Path=" + the encoded
// original path, "DeletionDate=" + when in local time.
std::string trashRecordText(const std::string& originalPath, time_t when);

// A name split at its first '.': ("a", ".tar.gz") for "a.tar.gz",
// ("", ".bashrc") for ".bashrc", ("README", "") for "README".
std::pair<std::string, std::string> splitTrashName(const std::string& name);

// The first line of record that begins with key, whole; "" when none does.
std::string firstRecordLine(FILE* record, const char* key);

// The path a decoded "Path=" value stands for, in the trash whose top
// directory is trashTop: an absolute value as it is, a relative one under
// the directory that holds trashTop. "" for a value that names no object: one
// holding a NUL (which would cut it short, to another file) or no component
// at all ("", "/", "//").
std::string recordedPath(const std::string& decoded, const std::string& trashTop);
// recordedPath of the first "Path=" line of record; "" when none.
std::string recordOriginalPath(FILE* record, const std::string& trashTop);
// True when some "Path=" line of record stands for exactly path.
bool recordNamesPath(FILE* record, const std::string& path, const std::string& trashTop);

// The time a "DeletionDate=%Y-%m-%dT%H:%M:%S" line gives, read as local
// time; false when the line does not read so.
bool parseDeletionDate(const std::string& line, time_t* when);

}  // namespace Vyx::detail

#endif
