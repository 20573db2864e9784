// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

// vyxcore session: the session kind and the X display it runs on.

#include "commands.h"

#include <X11/Xlib.h>

#include <cstdio>
#include <cstdlib>
#include <stdexcept>

namespace tool {

const char* sessionKindName(WhatVyxSession kind)
{
    static const char* const names[] = {"UnknownSession",   "FailsafeSession", "VyxDefaultSession",
                                        "VyxTabletSession", "VyxMiniSession",  "VyxMobileSession",
                                        "VyxWestonSession", "VyxKioskSession", "VyxTabletKioskSession"};
    return kind >= 0 && kind <= VyxTabletKioskSession ? names[kind] : "?";
}

const char* desktopName(int code)
{
    static const char* const names[] = {"none recognised", "KDE", "GNOME", "CDE", "SGI desktop", "Vyx"};
    return code >= 0 && code <= 5 ? names[code] : "?";
}

SessionFacts collectSessionFacts()
{
    SessionFacts facts;
    if (const char* name = vyxSessionName()) {
        facts.sessionNameSet = true;
        facts.sessionName = name;
    }
    facts.kind = whatVyxSession();
    facts.suffix = vyxSessionConfigSuffix(facts.kind);
    facts.kiosk = isVyxKioskSession();
    facts.savedName = vyxSessionGetSavedName();

    Display* display = XOpenDisplay(nullptr);
    const char* name = display ? DisplayString(display) : std::getenv("DISPLAY");
    facts.hasDisplayName = name && *name;
    if (facts.hasDisplayName)
        facts.displayName = name;
    try {
        facts.displayNumber = GetDisplayNumberByName(nullptr, display);
    } catch (const std::exception&) {
        facts.displayNumber = -1;
        facts.displayNumberError = "no number after ':'";
    }
    facts.remote = isSessionRemote(nullptr, display);
    if (display) {
        facts.connected = true;
        facts.desktop = whatDE(display, DefaultRootWindow(display));
        facts.nested = isSessionNested(nullptr, display);
        XCloseDisplay(display);
    }
    return facts;
}

namespace {

const char* yesNo(bool value)
{
    return value ? "yes" : "no";
}

void printJson(const SessionFacts& facts)
{
    JsonObject out;
    out.addString("session_name", facts.sessionNameSet ? facts.sessionName.c_str() : nullptr)
        .addInt("kind", facts.kind)
        .addString("kind_name", sessionKindName(facts.kind))
        .addString("config_suffix", facts.suffix)
        .addBool("kiosk", facts.kiosk)
        .addString("saved_name", facts.savedName)
        .addString("display_name", facts.hasDisplayName ? facts.displayName.c_str() : nullptr)
        .addInt("display_number", facts.displayNumber)
        .addBool("remote", facts.remote)
        .addBool("connected", facts.connected);
    if (facts.connected) {
        out.addInt("desktop", facts.desktop)
            .addString("desktop_name", desktopName(facts.desktop))
            .addBool("nested", facts.nested);
    } else {
        out.add("desktop", "null").add("desktop_name", "null").add("nested", "null");
    }
    std::printf("%s\n", out.str().c_str());
}

void printText(const SessionFacts& facts)
{
    std::vector<std::pair<std::string, std::string>> rows;
    rows.emplace_back("Session name", facts.sessionNameSet ? facts.sessionName : "(DESKTOP_SESSION unset)");
    rows.emplace_back("Session kind", std::to_string(facts.kind) + " " + sessionKindName(facts.kind));
    rows.emplace_back("Config suffix", facts.suffix.empty() ? "(none)" : facts.suffix);
    rows.emplace_back("Kiosk", yesNo(facts.kiosk));
    rows.emplace_back("Saved session", facts.savedName.empty() ? "(none)" : facts.savedName);
    if (!facts.hasDisplayName) {
        rows.emplace_back("Display", "(none)");
    } else {
        std::string number =
            facts.displayNumberError.empty() ? std::to_string(facts.displayNumber) : facts.displayNumberError;
        rows.emplace_back("Display",
                          facts.displayName + " (number " + number + ", " + (facts.remote ? "remote" : "local") + ")");
    }
    if (facts.connected) {
        rows.emplace_back("Desktop", std::to_string(facts.desktop) + " " + desktopName(facts.desktop));
        rows.emplace_back("Nested", yesNo(facts.nested));
    } else {
        rows.emplace_back("Desktop", "(no X server reachable)");
    }
    printRows(rows);
}

}  // namespace

int runSession(const CommonOptions& options)
{
    SessionFacts facts = collectSessionFacts();
    if (options.json)
        printJson(facts);
    else
        printText(facts);
    return Done;
}

}  // namespace tool
