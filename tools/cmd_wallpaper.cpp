// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

// vyxcore wallpaper: the file a wallpaper's name stands for.

#include "commands.h"

#include <vyxdisplay.h>

#include <cstdio>

namespace tool {

int runWallpaper(const CommonOptions& options)
{
    const std::string& name = options.positional[0];
    // The library says on standard error when nothing is found.
    const std::string file = FindWallPaperByName(name.c_str());
    if (options.json)
        std::printf("%s\n", JsonObject().addString("name", name).addString("file", file).str().c_str());
    else if (!file.empty())
        std::printf("%s\n", file.c_str());
    return file.empty() ? NothingFound : Done;
}

}  // namespace tool
