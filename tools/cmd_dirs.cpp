// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

// vyxcore dirs: the well-known directories.

#include "commands.h"

#include <cstdio>
#include <strings.h>

namespace tool {

const std::vector<DirName>& dirNames()
{
    static const std::vector<DirName> names = {
        {WmDataDir, "WmDataDir"},
        {TempDir, "TempDir"},
        {VyxHomeDir, "VyxHomeDir"},
        {ThemeDir, "ThemeDir"},
        {StartMenuDir, "StartMenuDir"},
        {ControlPanelDir, "ControlPanelDir"},
        {DesktopDir, "DesktopDir"},
        {DocumentsDir, "DocumentsDir"},
        {TrashFilesDir, "TrashFilesDir"},
        {TempDirAlias, "TempDirAlias"},
        {VyxDataDir, "VyxDataDir"},
        {TranslationsDir, "TranslationsDir"},
        {HelpDir, "HelpDir"},
        {QtHelpDir, "QtHelpDir"},
        {SoundsDir, "SoundsDir"},
        {ImagesDir, "ImagesDir"},
        {KeymapsDir, "KeymapsDir"},
        {KioskToolbarDir, "KioskToolbarDir"},
        {HomeDir, "HomeDir"},
        {VideosDir, "VideosDir"},
        {MusicDir, "MusicDir"},
        {PicturesDir, "PicturesDir"},
        {DownloadDir, "DownloadDir"},
        {PublicShareDir, "PublicShareDir"},
        {TemplatesDir, "TemplatesDir"},
        {AutostartDir, "AutostartDir"},
        {CacheDir, "CacheDir"},
        {DecorationsDir, "DecorationsDir"},
        {SharedDesktopDir, "SharedDesktopDir"},
        {SharedStartMenuDir, "SharedStartMenuDir"},
    };
    return names;
}

namespace {

const DirName* findDir(const std::string& key)
{
    for (const DirName& dir : dirNames()) {
        if (strcasecmp(key.c_str(), dir.name) == 0 || key == std::to_string(dir.value))
            return &dir;
    }
    return nullptr;
}

std::string dirJson(const DirName& dir, const std::string& path)
{
    return JsonObject().addInt("value", dir.value).addString("name", dir.name).addString("path", path).str();
}

}  // namespace

int runDirs(const CommonOptions& options)
{
    if (options.positional.size() == 1) {
        const DirName* dir = findDir(options.positional[0]);
        if (!dir)
            return usageError("dirs", "no directory named '" + options.positional[0] + "'");
        std::string path = GetVyxDir(dir->value);
        if (options.json)
            std::printf("%s\n", dirJson(*dir, path).c_str());
        else if (!path.empty())
            std::printf("%s\n", path.c_str());
        return path.empty() ? notFound("dirs", std::string("no path for ") + dir->name + " here") : Done;
    }

    std::vector<std::string> items;
    std::vector<std::pair<std::string, std::string>> rows;
    for (const DirName& dir : dirNames()) {
        std::string path = GetVyxDir(dir.value);
        items.push_back(dirJson(dir, path));
        rows.emplace_back(std::to_string(dir.value) + " " + dir.name, path.empty() ? "(none)" : path);
    }
    if (options.json)
        std::printf("%s\n", JsonObject().add("dirs", jsonArray(items)).str().c_str());
    else
        printRows(rows);
    return Done;
}

}  // namespace tool
