// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "vyxdisplay.h"

#include "core/diag_p.h"
#include "core/environment_p.h"
#include "core/pathprobe_p.h"
#include "vyxdirs.h"
#include "vyxstrings.h"

#include <cstdio>
#include <cstring>
#include <iterator>
#include <string>
#include <strings.h>
#include <sys/stat.h>
#include <vector>

namespace {

// Wallpapers are photographs and drawings, so the list is wider than the
// icon formats: cameras write ".JPG" and newer desktops ship ".webp".
constexpr const char* kExtensions[] = {".png", ".jpg", ".jpeg", ".svg", ".webp", ".bmp", ".xpm"};

bool hasWallpaperExtension(const char* name)
{
    const char* slash = std::strrchr(name, '/');
    const char* dot = std::strrchr(slash ? slash : name, '.');
    if (!dot)
        return false;
    for (const char* extension : kExtensions) {
        if (strcasecmp(dot, extension) == 0)
            return true;
    }
    return false;
}

// The user's directories before the desktop's own and then the system's,
// so that a wallpaper a user saves under a shipped name wins.
std::vector<std::string> wallpaperDirs()
{
    const std::string userData = Vyx::detail::userDataHome();
    // xdgDataDirs leads with the user's directory only when it exists or
    // could be made, so it is told apart by name rather than by place.
    std::vector<std::string> system = xdgDataDirs(nullptr);
    if (!system.empty() && !userData.empty() && system.front() == userData)
        system.erase(system.begin());

    std::vector<std::string> dirs;
    auto add = [&dirs](const std::string& base, const char* sub) {
        if (Vyx::startsWith(base, "/"))  // no home: nothing to search at the root
            dirs.push_back(Vyx::concat(base, sub));
    };
    add(userData, "/wallpapers");
    add(GetVyxDir(VyxHomeDir), "/wallpapers");
    add(GetVyxDir(WmDataDir), "/wallpapers");
    add(GetVyxDir(ImagesDir), "");
    for (const std::string& dir : system) {
        add(dir, "/wallpapers");
        add(dir, "/backgrounds");
    }
    return dirs;
}

}  // namespace

std::string FindWallPaperByName(const char* name)
{
    if (!name || !*name)
        return std::string();
    if (name[0] == '/') {
        if (Vyx::detail::isRegularFile(name))
            return name;
    } else {
        const bool withExtension = hasWallpaperExtension(name);
        for (const std::string& dir : wallpaperDirs()) {
            const std::string base = Vyx::concat(dir, '/', name);
            if (withExtension) {
                if (Vyx::detail::isRegularFile(base))
                    return base;
                continue;
            }
            std::string path = Vyx::detail::firstRegularFile(base, kExtensions, std::size(kExtensions));
            if (!path.empty())
                return path;
        }
    }
    Vyx::detail::diag(Vyx::detail::kToolPrefix, "wallpaper '%s' not found\n", name);
    return std::string();
}
