// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "core/makedirs_p.h"

#include <cerrno>
#include <sys/stat.h>

namespace Vyx::detail {

bool makePrivateDirectories(const std::string& path)
{
    if (path.empty())
        return false;
    if (mkdir(path.c_str(), 0700) == 0 || errno == EEXIST)
        return true;
    if (errno != ENOENT)
        return false;
    // Some parent is missing too: make each level from the top.
    for (std::string::size_type slash = path.find('/', 1);; slash = path.find('/', slash + 1)) {
        const std::string level = path.substr(0, slash);
        if (mkdir(level.c_str(), 0700) != 0 && errno != EEXIST)
            return false;
        if (slash == std::string::npos)
            return true;
    }
}

}  // namespace Vyx::detail
