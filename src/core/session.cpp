// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "vyxsession.h"

#include "core/environment_p.h"
#include "core/readfile_p.h"
#include "core/session_p.h"
#include "vyxdirs.h"
#include "vyxstrings.h"

#include <cstdio>
#include <strings.h>

namespace {

const char kSavedNameFile[] = "/last-desktop-session-name";

std::string savedNamePath()
{
    const std::string& dir = GetVyxDir(VyxHomeDir);
    return dir.empty() ? std::string() : dir + kSavedNameFile;
}

}  // namespace

namespace Vyx::detail {

const char* sessionName()
{
    return envValue("DESKTOP_SESSION");
}

bool isKioskSession()
{
    // Decided once: a later change of DESKTOP_SESSION does not turn a
    // running program into a kiosk or out of one.
    static const bool kiosk = [] {
        WhatVyxSession kind = whatVyxSession();
        return kind == VyxKioskSession || kind == VyxTabletKioskSession;
    }();
    return kiosk;
}

std::string sessionConfigSuffix()
{
    return vyxSessionConfigSuffix(whatVyxSession());
}

}  // namespace Vyx::detail

const char* vyxSessionName()
{
    return Vyx::detail::sessionName();
}

WhatVyxSession whatVyxSession()
{
    const char* name = vyxSessionName();
    if (!name)
        return UnknownSession;
    if (strncasecmp(name, "vyx", 3) != 0)
        return strcasecmp(name, "failsafe") == 0 ? FailsafeSession : UnknownSession;

    static const struct {
        const char* name;
        WhatVyxSession kind;
    } kinds[] = {
        {"vyx", VyxDefaultSession},
        {"vyx-tablet", VyxTabletSession},
        {"vyx-mini", VyxMiniSession},
        {"vyx-mobile", VyxMobileSession},
        {"vyx-weston", VyxWestonSession},
        {"vyx-kiosk", VyxKioskSession},
        {"vyx-tablet-kiosk", VyxTabletKioskSession},
    };
    for (const auto& entry : kinds) {
        if (strcasecmp(name, entry.name) == 0)
            return entry.kind;
    }
    return UnknownSession;
}

bool isVyxKioskSession()
{
    return Vyx::detail::isKioskSession();
}

std::string vyxSessionConfigSuffix(WhatVyxSession kind)
{
    switch (kind) {
    case VyxTabletSession:
        return ".vyx-tablet";
    case VyxMiniSession:
        return ".vyx-mini";
    case VyxMobileSession:
        return ".vyx-mobile";
    case VyxKioskSession:
        return ".vyx-kiosk";
    case VyxTabletKioskSession:
        return ".vyx-tablet-kiosk";
    // Weston deliberately shares the ordinary session's settings.
    case FailsafeSession:
    case VyxDefaultSession:
    case VyxWestonSession:
        return std::string();
    default:
        break;
    }
    const char* name = vyxSessionName();
    if (!name || Vyx::equal(name, "vyx"))
        return std::string();
    return Vyx::concat('.', name);
}

bool vyxSessionSaveName(const char* name)
{
    if (!name)
        name = vyxSessionName();
    if (!name)
        return false;
    std::string path = savedNamePath();
    if (path.empty())
        return false;
    FILE* file = std::fopen(path.c_str(), "w");
    if (!file)
        return false;
    std::fputs(name, file);
    std::fclose(file);
    return true;
}

std::string vyxSessionGetSavedName()
{
    std::string path = savedNamePath();
    if (path.empty())
        return std::string();
    std::string line;
    Vyx::detail::readRegularFile(path.c_str(), line);
    return line.substr(0, line.find('\n'));
}
