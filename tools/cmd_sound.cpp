// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

// vyxcore sound: the file an event sound's name stands for.

#include "commands.h"

#include <vyxsoundtheme.h>

#include <cstdio>

namespace tool {

int runSound(const CommonOptions& options)
{
    const std::string& name = options.positional[0];
    std::vector<std::string> themes = options.valuesOf("--theme");
    VyxSoundTheme theme(themes.empty() ? std::string() : themes.back());
    std::string file = theme.getSoundPath(name.c_str());
    if (options.json) {
        std::printf("%s\n", JsonObject()
                                .addString("name", name)
                                .addString("theme", theme.themeName())
                                .addBool("installed", theme.isLoaded())
                                .add("searched", jsonStringArray(theme.searchedThemes()))
                                .addString("file", file)
                                .str()
                                .c_str());
    } else if (!file.empty()) {
        std::printf("%s\n", file.c_str());
    } else if (!theme.isLoaded()) {
        std::fprintf(stderr, "vyxcore sound: no sound '%s'; sound theme %s is not installed\n", name.c_str(),
                     theme.themeName().c_str());
    } else {
        std::fprintf(stderr, "vyxcore sound: no sound '%s' in theme %s or its fallbacks\n", name.c_str(),
                     theme.themeName().c_str());
    }
    return file.empty() ? NothingFound : Done;
}

}  // namespace tool
