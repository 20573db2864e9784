// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "desktopentry/desktopid_p.h"

#include "core/pathprobe_p.h"
#include "vyxdesktopentry.h"
#include "vyxstrings.h"

#include <cstring>

namespace Vyx::detail {

bool isWellFormedDesktopId(const std::string& id)
{
    if (id.size() <= 8 || id[0] == '.' || !Vyx::endsWith(id, ".desktop"))
        return false;
    for (unsigned char c : id) {
        if (c < 0x21 || c == 0x7f || std::strchr("/=;[]\\", c))
            return false;
    }
    return true;
}

std::string desktopIdPath(const std::string& id)
{
    if (!isWellFormedDesktopId(id))
        return std::string();
    for (const std::string& dir : GetAllAppDesktopEntrySearchPaths()) {
        std::string path = dir + '/' + id;
        if (isRegularFile(path))
            return path;
        // "vendor-app.desktop" may also be "vendor/app.desktop"; the catalogue
        // reads two levels, so one folder is as deep as an id can reach.
        for (std::string::size_type dash = id.find('-'); dash != std::string::npos; dash = id.find('-', dash + 1)) {
            path = dir + '/' + id.substr(0, dash) + '/' + id.substr(dash + 1);
            if (isRegularFile(path))
                return path;
        }
    }
    return std::string();
}

std::string desktopIdOf(const std::string& path)
{
    for (const std::string& dir : GetAllAppDesktopEntrySearchPaths()) {
        if (path.size() > dir.size() + 1 && path.compare(0, dir.size(), dir) == 0 && path[dir.size()] == '/') {
            std::string id = path.substr(dir.size() + 1);
            for (char& c : id) {
                if (c == '/')
                    c = '-';
            }
            return id;
        }
    }
    return Vyx::fileName(path);
}

}  // namespace Vyx::detail

std::string GetDesktopFileForId(const char* id)
{
    return Vyx::detail::desktopIdPath(Vyx::makeString(id));
}
