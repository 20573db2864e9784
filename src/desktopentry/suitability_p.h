// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#ifndef VYXCORE_SUITABILITY_P_H
#define VYXCORE_SUITABILITY_P_H

#include "vyxdesktopentry.h"

#include <string>
#include <vector>

namespace Vyx::detail {

// What the display and suitability rules know about the session, the user
// and the machine. The process keeps one set, filled on first use and never
// refreshed; the rules take it as a parameter so they can be tried on any.
struct SessionFacts {
    std::string sessionName = "VYX";  // DESKTOP_SESSION, or "VYX"
    bool plasmaPresent = false;  // /usr/bin/plasmashell exists
    bool kiosk = false;
};

struct UserFacts {
    bool noAdminCheck = false;  // VYX_NO_ADMIN_CHECK is set
    bool root = false;
    bool administrator = false;  // in "orvel-admin"
    bool consoleAllowed = true;  // terminals unrestricted, or in "orvel-console"
};

const SessionFacts& sessionFacts();
const UserFacts& userFacts();
bool tryExecOnly();  // VYX_CHECK_TRYEXEC_ONLY is set

// The program directories the kiosk whitelist matches commands in.
extern const char* const kProgramDirs[6];

bool isForSession(const VyxDesktopEntry& entry, const SessionFacts& facts, VyxDesktopEntry::DisplayableCode* code);
bool isExecSuitableFor(const char* exec, bool adminOnly, const UserFacts& user, VyxDesktopEntry::SuitableCode* code);

}  // namespace Vyx::detail

#endif
