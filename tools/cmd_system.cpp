// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

// vyxcore system: the user and the machine.

#include "commands.h"

#include <vyxstrings.h>
#include <vyxsystem.h>

#include <cstdio>

namespace tool {

int runSystem(const CommonOptions& options)
{
    std::string user = getUserName();
    bool admin = isUserInGroup("orvel-admin");
    std::vector<std::string> v4 = getIPv4Addresses(), v6 = getIPv6Addresses();
    if (options.json) {
        JsonObject out;
        out.addString("user", user)
            .addString("full_name", getUserFullName())
            .addBool("root", isUserRoot())
            .addBool("admin", admin)
            .addInt("memory_kb", GetMemTotal())
            .addInt("cpu_mhz", GetCPUMhz())
            .addBool("light_platform", lightPlatform())
            .addBool("sound_card", isAlsaActive())
            .addString("locale", GetSystemLocale())
            .addBool("edition_se", isOrvelSE())
            .addInt("edition_mode", getOrvelMode())
            .addInt("sessions", numWho())
            .add("ipv4", jsonStringArray(v4))
            .add("ipv6", jsonStringArray(v6));
        std::printf("%s\n", out.str().c_str());
        return Done;
    }
    auto yesNo = [](bool value) { return std::string(value ? "yes" : "no"); };
    auto orNone = [](const std::string& text) { return text.empty() ? std::string("(none)") : text; };
    printRows({
        {"User", orNone(user)},
        {"Full name", orNone(getUserFullName())},
        {"Root", yesNo(isUserRoot())},
        {"Administrator", yesNo(admin)},
        {"Memory", GetMemTotal() ? std::to_string(GetMemTotal()) + " kB" : "(unknown)"},
        {"CPU", GetCPUMhz() ? std::to_string(GetCPUMhz()) + " MHz" : "(unknown)"},
        {"Light platform", yesNo(lightPlatform())},
        {"Sound card", yesNo(isAlsaActive())},
        {"Locale", orNone(GetSystemLocale())},
        {"Edition", Vyx::concat(isOrvelSE() ? "SE" : "standard", ", mode ", getOrvelMode())},
        {"Sessions", std::to_string(numWho())},
        {"IPv4", orNone(Vyx::join(v4, " "))},
        {"IPv6", orNone(Vyx::join(v6, " "))},
    });
    return Done;
}

}  // namespace tool
