// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

// vyxcore with no command: a short picture of this desktop. Each later
// capability of the library adds its own lines here.

#include "commands.h"

#include <vyxicontheme.h>
#include <vyxsoundtheme.h>
#include <vyxstrings.h>
#include <vyxsystem.h>

#include <cstdio>

namespace tool {

namespace {

const VyxDir kOverviewDirs[] = {HomeDir,       VyxHomeDir, DesktopDir, DocumentsDir, DownloadDir,
                                TrashFilesDir, CacheDir,   ThemeDir,   AutostartDir};

const char* nameOf(VyxDir value)
{
    for (const DirName& dir : dirNames()) {
        if (dir.value == value)
            return dir.name;
    }
    return "?";
}

// A theme's name, and whether it is installed here.
std::string themeState(const std::string& name, const std::string& path)
{
    if (name.empty())
        return "(none)";
    return path.empty() ? name + " (not installed)" : name + "  " + path;
}

}  // namespace

int runOverview(const CommonOptions& options)
{
    SessionFacts session = collectSessionFacts();
    if (options.json) {
        std::vector<std::string> dirs;
        for (VyxDir dir : kOverviewDirs)
            dirs.push_back(JsonObject().addString("name", nameOf(dir)).addString("path", GetVyxDir(dir)).str());
        JsonObject out;
        out.addInt("session_kind", session.kind)
            .addString("session_kind_name", sessionKindName(session.kind))
            .addString("display_name", session.hasDisplayName ? session.displayName.c_str() : nullptr)
            .add("desktop", session.connected ? std::to_string(session.desktop) : "null")
            .add("dirs", jsonArray(dirs))
            .addString("icon_theme", VyxIconTheme::getCurrentThemeName())
            .addString("sound_theme", VyxSoundTheme::getCurrentThemeName())
            .addString("user", getUserName())
            .addInt("edition_mode", getOrvelMode());
        std::printf("%s\n", out.str().c_str());
        return Done;
    }

    std::printf("Vyx desktop\n\nSession\n");
    std::vector<std::pair<std::string, std::string>> rows;
    rows.emplace_back("  Kind", std::to_string(session.kind) + " " + sessionKindName(session.kind) +
                                    (session.sessionNameSet ? " (DESKTOP_SESSION=" + session.sessionName + ")"
                                                            : " (DESKTOP_SESSION unset)"));
    rows.emplace_back("  Display", session.hasDisplayName ? session.displayName : "(none)");
    rows.emplace_back("  Desktop", session.connected ? desktopName(session.desktop) : "(no X server reachable)");
    printRows(rows);

    std::printf("\nDirectories\n");
    rows.clear();
    for (VyxDir dir : kOverviewDirs) {
        const std::string& path = GetVyxDir(dir);
        rows.emplace_back(std::string("  ") + nameOf(dir), path.empty() ? "(none)" : path);
    }
    printRows(rows);

    std::printf("\nThemes\n");
    const std::string iconTheme = VyxIconTheme::getCurrentThemeName();
    const std::string soundTheme = VyxSoundTheme::getCurrentThemeName();
    printRows({{"  Icon theme", themeState(iconTheme, VyxIconTheme::findThemePath(iconTheme))},
               {"  Sound theme", themeState(soundTheme, VyxSoundTheme::findThemePath(soundTheme))}});

    std::printf("\nSystem\n");
    printRows({{"  User", getUserName().empty() ? "(unknown)" : getUserName()},
               {"  Locale", *GetSystemLocale() ? GetSystemLocale() : "(none)"},
               {"  Edition", Vyx::concat(isOrvelSE() ? "SE" : "standard", ", mode ", getOrvelMode())}});

    std::printf("\nMore: 'vyxcore help' lists the commands; each takes --json.\n");
    return Done;
}

}  // namespace tool
