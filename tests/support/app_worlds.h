// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#ifndef VYXCORE_TESTS_APP_WORLDS_H
#define VYXCORE_TESTS_APP_WORLDS_H

// Applications written into a test's world, and a child in which the
// machine's own applications and MIME aliases are hidden, so that only the
// world's directories answer which application opens a type.

#include "support/child_process.h"
#include "support/temp_home.h"

#include <string>

namespace vyxtest {

// Writes an entry at relative (under the world's root) named after its path,
// with the icon "icon-<file name>", the given MIME types and extra key lines.
inline std::string writeApp(const TempHome& world, const std::string& relative, const std::string& mimeTypes,
                            const std::string& extra = "", const std::string& type = "Application")
{
    return world.writeFile(relative, "[Desktop Entry]\nType=" + type + "\nName=" + relative +
                                         "\nExec=true %F\nIcon=icon-" + relative.substr(relative.rfind('/') + 1) +
                                         "\nMimeType=" + mimeTypes + "\n" + extra);
}

// The same empty directory over the system's applications each time, so
// that one child finds it as the previous one left it; aliases is the text
// of the system's MIME aliases file.
inline ChildOptions withoutSystemApps(const TempHome& world, const std::string& aliases = "")
{
    ChildOptions options;
    options.mounts = {Mount::bind(world.makeDir("no-applications"), "/usr/share/applications"),
                      Mount::bind(world.writeFile("aliases", aliases), "/usr/share/mime/aliases")};
    return options;
}

}  // namespace vyxtest

#endif
