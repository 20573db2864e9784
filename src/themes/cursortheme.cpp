// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

// The X cursor theme: which one is current, which are installed, and
// making one the user's.

#include "vyxicontheme.h"

#include "core/dirwalker_p.h"
#include "core/environment_p.h"
#include "core/inireader_p.h"
#include "core/pathprobe_p.h"
#include "core/readfile_p.h"
#include "core/textlines_p.h"
#include "vyxdirs.h"
#include "vyxdisplay.h"
#include "vyxfileutils.h"
#include "vyxstrings.h"

#include <X11/Xcursor/Xcursor.h>

#include <algorithm>
#include <cctype>
#include <climits>
#include <cstdio>
#include <cstring>
#include <set>
#include <unistd.h>

namespace {

const char kCursorResource[] = "Xcursor.theme";

// The value of the resource "Xcursor.theme" in an X resources file: on the
// first line that sets it (blanks may lead; "!" starts a comment), the text
// after the ':' with leading blanks skipped, up to the line's end.
std::string cursorThemeInResources(const std::string& file)
{
    std::string value;
    FILE* in = Vyx::detail::fopenRegularFile(file.c_str());
    if (!in)
        return value;
    Vyx::detail::forEachLine(in, [&](const std::string& line) {
        size_t at = line.find_first_not_of(" \t");
        if (!value.empty() || at == std::string::npos ||
            line.compare(at, sizeof kCursorResource - 1, kCursorResource) != 0)
            return;
        at = line.find_first_not_of(" \t", at + sizeof kCursorResource - 1);
        if (at == std::string::npos || line[at] != ':')
            return;
        at = line.find_first_not_of(" \t", at + 1);
        if (at != std::string::npos)
            value = line.substr(at, line.find_first_of("\r\n", at) - at);
    });
    std::fclose(in);
    return value;
}

// The theme a "default" theme's index names: the first of its Inherits.
std::string inheritedTheme(const std::string& file)
{
    Vyx::detail::IniReader ini;
    if (!ini.loadFile(file))
        return std::string();
    for (const std::string& name : Vyx::split(ini.text("Icon Theme", "Inherits").c_str(), ", ;\t")) {
        if (!name.empty())
            return name;
    }
    return std::string();
}

// The theme directory an alternatives link points at: the link may name
// the directory itself or a theme file in it.
std::string alternativeTheme(const char* link)
{
    char target[PATH_MAX];
    const ssize_t length = readlink(link, target, sizeof target - 1);
    if (length <= 0)
        return std::string();
    std::string path(target, size_t(length));
    while (path.size() > 1 && path.back() == '/')
        path.pop_back();
    if (Vyx::endsWith(path, "/cursor.theme") || Vyx::endsWith(path, "/index.theme"))
        Vyx::cutLastSection(path, '/');
    return Vyx::lastSection(path, '/').empty() ? path : Vyx::lastSection(path, '/');
}

// The installed cursor themes by name, each with its first directory.
std::vector<std::pair<std::string, std::string>> installedCursorThemes()
{
    std::vector<std::pair<std::string, std::string>> themes;
    std::set<std::string> seen;
    for (const std::string& searchDir : VyxIconTheme::GetThemesSearchDirs()) {
        std::vector<std::string> names;
        Vyx::detail::DirWalker dir(searchDir);
        while (const dirent* entry = dir.next()) {
            if (entry->d_name[0] != '.')
                names.emplace_back(entry->d_name);
        }
        std::sort(names.begin(), names.end());
        for (const std::string& name : names) {
            const std::string path = searchDir + "/" + name;
            if (Vyx::detail::isDirectory(path + "/cursors") && seen.insert(name).second)
                themes.emplace_back(name, path);
        }
    }
    return themes;
}

}  // namespace

std::string VyxIconTheme::getCurrentCursorThemeName(Display* display)
{
    const std::string& home = GetVyxDir(HomeDir);
    std::string name;
    if (!home.empty())
        name = cursorThemeInResources(home + "/.Xresources");
    if (name.empty())
        name = cursorThemeInResources("/etc/X11/Xresources/x11-common");
    if (name.empty() && display) {
        if (const char* theme = XcursorGetTheme(display))
            name = theme;
    }
    if (name.empty())
        name = Vyx::detail::envString("XCURSOR_THEME");
    for (const std::string& file :
         {home.empty() ? std::string() : home + "/.icons/default/index.theme",
          home.empty() ? std::string() : home + "/.icons/default/cursor.theme",
          std::string("/usr/share/icons/default/index.theme"), std::string("/usr/share/icons/default/cursor.theme")}) {
        if (!name.empty())
            break;
        if (!file.empty())
            name = inheritedTheme(file);
    }
    if (name.empty())
        name = alternativeTheme("/etc/alternatives/x-cursor-theme");
    return name;
}

bool VyxIconTheme::setCurrentCursorThemeName(const char* name)
{
    const std::string& home = GetVyxDir(HomeDir);
    if (!name || !*name || home.empty() || std::strchr(name, '\n'))
        return false;
    return setXrdbParameterInFile((home + "/.Xresources").c_str(), kCursorResource, ": ", name,
                                  Vyx::tagged_bool<ApllyByXrdb_tag>(false));
}

std::vector<std::string> VyxIconTheme::getCursorThemeNames()
{
    std::vector<std::string> names;
    for (auto& [name, path] : installedCursorThemes())
        names.push_back(name);
    return names;
}

std::vector<std::string> VyxIconTheme::getCursorThemePaths()
{
    std::vector<std::string> paths;
    for (auto& [name, path] : installedCursorThemes())
        paths.push_back(path);
    return paths;
}
