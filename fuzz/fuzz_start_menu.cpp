// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

// The start menu over arbitrary ".directory" and ".desktop" files: the input,
// cut at NUL bytes, gives the start menu's own ".directory", a folder's
// ".directory", an item of it, a categorized folder's ".directory" and an
// installed application. Whatever they say, the builder must not fail, and
// without the empty folders no folder of the tree may be empty.
#include "vyxstartmenu.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <iterator>
#include <string>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace {

std::string g_root;

void writeFile(const std::string& relative, const std::string& content)
{
    if (FILE* file = std::fopen((g_root + relative).c_str(), "w")) {
        std::fwrite(content.data(), 1, content.size(), file);
        std::fclose(file);
    }
}

const char* const kFiles[] = {"/home/.vyx/startmenu/.directory", "/home/.vyx/startmenu/Work/.directory",
                              "/home/.vyx/startmenu/Work/item.desktop", "/data/applications/Games/.directory",
                              "/data/applications/app.desktop"};
const char* const kDirs[] = {"/home", "/home/.vyx",         "/home/.vyx/startmenu",     "/home/.vyx/startmenu/Work",
                             "/data", "/data/applications", "/data/applications/Games", "/shared"};

void cleanUp()
{
    for (const char* file : kFiles)
        std::remove((g_root + file).c_str());
    for (auto dir = std::rbegin(kDirs); dir != std::rend(kDirs); ++dir)
        rmdir((g_root + *dir).c_str());
    rmdir(g_root.c_str());
}

bool prepare()
{
    char pattern[] = "/tmp/fuzz_start_menu.XXXXXX";
    if (!mkdtemp(pattern))
        abort();
    g_root = pattern;
    for (const char* dir : kDirs)
        mkdir((g_root + dir).c_str(), 0755);
    std::atexit(cleanUp);
    setenv("HOME", (g_root + "/home").c_str(), 1);
    setenv("XDG_DATA_HOME", (g_root + "/home/.local/share").c_str(), 1);
    setenv("XDG_DATA_DIRS", (g_root + "/data").c_str(), 1);
    setenv("VYX_SHARED_STARTMENU_DIR", (g_root + "/shared").c_str(), 1);
    setenv("LANGUAGE", "de", 1);
    return true;
}

bool hasApplications(const MenuFolderDsc& folder)
{
    if (!folder.applications.empty())
        return true;
    for (const MenuFolderDsc& child : folder.folders)
        if (hasApplications(child))
            return true;
    return false;
}

void checkNoEmptyFolder(const MenuFolderDsc& folder)
{
    for (const MenuFolderDsc& child : folder.folders) {
        if (!hasApplications(child))
            abort();
        checkNoEmptyFolder(child);
    }
}

size_t countFolders(const MenuFolderDsc& folder)
{
    size_t count = folder.folders.size();
    for (const MenuFolderDsc& child : folder.folders)
        count += countFolders(child);
    return count;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    static bool prepared = prepare();
    (void)prepared;
    std::vector<std::string> parts(std::size(kFiles));
    size_t part = 0;
    for (size_t i = 0; i < size; ++i) {
        if (data[i] == 0 && part + 1 < parts.size())
            ++part;
        else
            parts[part].push_back(static_cast<char>(data[i]));
    }
    for (size_t i = 0; i < parts.size(); ++i)
        writeFile(kFiles[i], parts[i]);

    MenuFolderDsc menu = CreateStartMenu(Vyx::tagged_bool<IncludeEmptyFolders_tag>(false));
    checkNoEmptyFolder(menu);
    MenuFolderDsc full = CreateStartMenu(Vyx::tagged_bool<IncludeEmptyFolders_tag>(true));
    if (countFolders(full) < countFolders(menu))
        abort();
    return 0;
}
