// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "core/pathprobe_p.h"

#include <sys/stat.h>

namespace Vyx::detail {

bool isRegularFile(const std::string& path)
{
    struct stat st;
    return stat(path.c_str(), &st) == 0 && S_ISREG(st.st_mode);
}

std::string firstRegularFile(const std::string& base, const char* const* extensions, size_t count)
{
    for (size_t i = 0; i < count; ++i) {
        std::string path = base + extensions[i];
        if (isRegularFile(path))
            return path;
    }
    return std::string();
}

}  // namespace Vyx::detail
