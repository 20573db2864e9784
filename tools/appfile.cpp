// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

// Naming an application: the same rule for every command that takes one.

#include "commands.h"

#include <vyxdesktopentry.h>
#include <vyxstrings.h>

#include <sys/stat.h>

namespace tool {

std::string applicationFile(const std::string& name)
{
    // Anything with a "/" is a path, as a shell user expects.
    if (name.find('/') != std::string::npos)
        return name;
    FillDesktopEntriesDirArray();
    // As named, else as a desktop-file id, which also finds
    // "vendor-app.desktop" kept as "vendor/app.desktop".
    std::string found = GetDesktopEntryFullPath(name.c_str());
    if (found.empty())
        found = GetDesktopFileForId(Vyx::endsWith(name, ".desktop") ? name.c_str() : (name + ".desktop").c_str());
    if (!found.empty())
        return found;
    // Not installed under that id: a file of that name in the current
    // directory, or nothing.
    struct stat st;
    return stat(name.c_str(), &st) == 0 ? name : std::string();
}

int noApplication(const char* command, const std::string& name)
{
    return notFound(command, "no desktop entry '" + name + "' (neither a readable file nor an installed id)");
}

}  // namespace tool
