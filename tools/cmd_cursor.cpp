// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

// vyxcore cursor: the current X cursor theme and the installed ones.

#include "commands.h"

#include <vyxicontheme.h>

#include <X11/Xlib.h>

#include <cstdio>
#include <cstdlib>

namespace tool {

int runCursor(const CommonOptions& options)
{
    std::vector<std::string> set = options.valuesOf("--set");
    if (!set.empty()) {
        if (!VyxIconTheme::setCurrentCursorThemeName(set.back().c_str())) {
            std::fprintf(stderr, "vyxcore cursor: cannot make '%s' the cursor theme in ~/.Xresources\n",
                         set.back().c_str());
            return NothingFound;
        }
    }
    // The display's own setting is one of the sources, when there is one.
    const char* displayName = std::getenv("DISPLAY");
    Display* display = displayName && *displayName ? XOpenDisplay(nullptr) : nullptr;
    const std::string current = VyxIconTheme::getCurrentCursorThemeName(display);
    if (display)
        XCloseDisplay(display);
    const std::vector<std::string> names = VyxIconTheme::getCursorThemeNames();
    const std::vector<std::string> paths = VyxIconTheme::getCursorThemePaths();
    if (options.json) {
        std::printf("%s\n", JsonObject()
                                .addString("current", current)
                                .add("themes", jsonStringArray(names))
                                .add("paths", jsonStringArray(paths))
                                .str()
                                .c_str());
    } else {
        printRows({{"current cursor theme", current.empty() ? "(none)" : current}});
        std::printf("installed cursor themes:\n");
        std::vector<std::pair<std::string, std::string>> rows;
        for (size_t i = 0; i < names.size() && i < paths.size(); ++i)
            rows.emplace_back("  " + names[i], paths[i]);
        printRows(rows);
    }
    return Done;
}

}  // namespace tool
