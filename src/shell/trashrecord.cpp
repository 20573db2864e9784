// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "shell/trashrecord_p.h"

#include "core/textlines_p.h"
#include "vyxstrings.h"

#include <cstring>

namespace Vyx::detail {

std::string trashRecordText(const std::string& originalPath, time_t when)
{
    struct tm local;
    char date[64] = "";
    if (localtime_r(&when, &local))
        std::strftime(date, sizeof date, "%Y-%m-%dT%H:%M:%S", &local);
    return Vyx::concat("[Trash Info]\nPath=", Vyx::encodedUrl(originalPath), "\nDeletionDate=", date, '\n');
}

std::pair<std::string, std::string> splitTrashName(const std::string& name)
{
    std::string::size_type dot = name.find('.');
    if (dot == std::string::npos)
        return {name, std::string()};
    return {name.substr(0, dot), name.substr(dot)};
}

std::string firstRecordLine(FILE* record, const char* key)
{
    std::string found;
    bool done = false;
    forEachLine(record, [&](const std::string& line) {
        if (!done && Vyx::startsWith(line, key)) {
            found = line;
            done = true;
        }
    });
    return found;
}

std::string recordedPath(const std::string& decoded, const std::string& trashTop)
{
    if (decoded.find('\0') != std::string::npos || decoded.find_first_not_of('/') == std::string::npos)
        return std::string();
    if (decoded[0] == '/')
        return decoded;
    // Relative to the trash's own volume, as other trash writers record
    // objects of a removable disk; never to our working directory, which
    // would restore the object wherever the caller happens to be.
    const std::string::size_type slash = trashTop.rfind('/');
    if (slash == std::string::npos)
        return std::string();
    return Vyx::concat(trashTop.substr(0, slash), '/', decoded);
}

std::string recordOriginalPath(FILE* record, const std::string& trashTop)
{
    std::string line = firstRecordLine(record, "Path=");
    return line.empty() ? std::string() : recordedPath(Vyx::decodedUrl(line.c_str() + 5), trashTop);
}

bool recordNamesPath(FILE* record, const std::string& path, const std::string& trashTop)
{
    bool named = false;
    forEachLine(record, [&](const std::string& line) {
        if (!named && Vyx::startsWith(line, "Path="))
            named = !path.empty() && recordedPath(Vyx::decodedUrl(line.c_str() + 5), trashTop) == path;
    });
    return named;
}

bool parseDeletionDate(const std::string& line, time_t* when)
{
    struct tm broken;
    std::memset(&broken, 0, sizeof broken);
    if (!strptime(line.c_str(), "DeletionDate=%Y-%m-%dT%H:%M:%S", &broken))
        return false;
    // The record holds local time with no zone: let mktime decide whether
    // daylight saving applied then.
    broken.tm_isdst = -1;
    *when = mktime(&broken);
    return true;
}

}  // namespace Vyx::detail
