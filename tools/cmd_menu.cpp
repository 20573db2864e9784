// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

// vyxcore menu: the start menu as an indented tree of folders and
// applications.

#include "commands.h"

#include <vyxstartmenu.h>

#include <cstdio>

namespace tool {

namespace {

std::string folderJson(const MenuFolderDsc& folder)
{
    std::vector<std::string> folders, applications;
    for (const MenuFolderDsc& child : folder.folders)
        folders.push_back(folderJson(child));
    for (const VyxDesktopEntry& entry : folder.applications)
        applications.push_back(JsonObject()
                                   .addString("name", entry.localNameOrFallback())
                                   .addString("file", Vyx::fileName(entry.filePath()))
                                   .addString("path", entry.filePath())
                                   .addString("icon", entry.localIconOrFallback())
                                   .str());
    return JsonObject()
        .addString("name", folder.name)
        .addString("local_name", folder.localName)
        .addString("icon", folder.icon)
        .addString("directory_file", folder.directoryFile)
        .add("categories", jsonStringArray(folder.categories))
        .add("folders", jsonArray(folders))
        .add("applications", jsonArray(applications))
        .str();
}

void printFolder(const MenuFolderDsc& folder, int depth)
{
    for (const MenuFolderDsc& child : folder.folders) {
        std::printf("%*s%s/", depth * 2, "", child.localName.c_str());
        if (child.localName != child.name)
            std::printf("  (%s)", child.name.c_str());
        std::printf("\n");
        printFolder(child, depth + 1);
    }
    for (const VyxDesktopEntry& entry : folder.applications)
        std::printf("%*s%s  %s\n", depth * 2, "", entry.localNameOrFallback().c_str(), entry.filePath().c_str());
}

}  // namespace

int runMenu(const CommonOptions& options)
{
    MenuFolderDsc root = CreateStartMenu(Vyx::tagged_bool<IncludeEmptyFolders_tag>(options.hasFlag("--empty")));
    if (options.json)
        std::printf("%s\n", folderJson(root).c_str());
    else
        printFolder(root, 0);
    return Done;
}

}  // namespace tool
