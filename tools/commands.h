// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#ifndef VYXCORE_TOOL_COMMANDS_H
#define VYXCORE_TOOL_COMMANDS_H

// The subcommands of vyxcore and the facts they share with the overview.

#include "output.h"

#include <vyxdirs.h>
#include <vyxsession.h>

#include <string>
#include <vector>

namespace tool {

int runOverview(const CommonOptions& options);
int runDirs(const CommonOptions& options);
int runSession(const CommonOptions& options);
int runWhich(const CommonOptions& options);
int runSplit(const CommonOptions& options);
int runSystem(const CommonOptions& options);
int runEntry(const CommonOptions& options);
int runExec(const CommonOptions& options);
int runWhy(const CommonOptions& options);
int runApps(const CommonOptions& options);
int runDefault(const CommonOptions& options);
int runAssigned(const CommonOptions& options);
int runOpen(const CommonOptions& options);
int runPrefer(const CommonOptions& options);
// default TYPE --set ID
int setDefault(const CommonOptions& options);
int runMimeapps(const CommonOptions& options);
int runMime(const CommonOptions& options);
int runMimetype(const CommonOptions& options);
int runIcon(const CommonOptions& options);
int runIconFor(const CommonOptions& options);
int runCursor(const CommonOptions& options);
int runDpi(const CommonOptions& options);
int runThemes(const CommonOptions& options);
int runTheme(const CommonOptions& options);
int runWm(const CommonOptions& options);
int runDm(const CommonOptions& options);
int runTrash(const CommonOptions& options);
int runAutostart(const CommonOptions& options);
int runRecent(const CommonOptions& options);
int runPosition(const CommonOptions& options);
int runSound(const CommonOptions& options);
int runMenu(const CommonOptions& options);
int runWallpaper(const CommonOptions& options);
int runKeysym(const CommonOptions& options);
int runInput(const CommonOptions& options);
int runVersion(const CommonOptions& options);

// The desktop file an application's name stands for: a path (anything with
// a "/"), an installed desktop-file id with or without ".desktop", or a
// file in the current directory; empty when it is none of them.
std::string applicationFile(const std::string& name);
// Says that name is no application we could read; gives NothingFound.
int noApplication(const char* command, const std::string& name);

// The table of every command, for dispatch and for the overview's list.
const std::vector<Command>& commands();

// --- directories ---
struct DirName {
    VyxDir value;
    const char* name;
};
const std::vector<DirName>& dirNames();

// --- session ---
struct SessionFacts {
    std::string sessionName;  // DESKTOP_SESSION, empty when unset
    bool sessionNameSet = false;
    WhatVyxSession kind = UnknownSession;
    std::string suffix;
    bool kiosk = false;
    std::string savedName;

    bool hasDisplayName = false;
    std::string displayName;
    int displayNumber = 0;
    std::string displayNumberError;  // set when the name cannot be parsed
    bool remote = false;

    bool connected = false;  // the X server answered
    int desktop = 0;
    bool nested = false;
};
SessionFacts collectSessionFacts();
const char* sessionKindName(WhatVyxSession kind);
const char* desktopName(int code);

}  // namespace tool

#endif
