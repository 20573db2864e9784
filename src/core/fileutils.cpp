// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "vyxfileutils.h"

#include <cstring>
#include <sys/stat.h>

bool fileExists(const char* path, bool nonEmpty)
{
    struct stat st;
    if (!path || stat(path, &st) != 0)
        return false;
    return !nonEmpty || st.st_size >= 1;
}

bool fileExists(const std::string& path, bool nonEmpty)
{
    return fileExists(path.c_str(), nonEmpty);
}

bool fileNameExtension(const char* name, unsigned maxLength)
{
    if (!name || !*name)
        return false;
    const char* dot = std::strrchr(name, '.');
    if (!dot)
        return false;
    const char* extension = dot + 1;
    size_t length = std::strlen(extension);
    // With a limit of 3, ".jpeg" and ".tiff" are deliberately not extensions.
    return length > 0 && length <= maxLength && !std::strchr(extension, '/');
}
