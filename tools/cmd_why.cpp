// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

// vyxcore why: whether a desktop entry is shown and may run here, and why not.

#include "commands.h"

#include <vyxdesktopentry.h>

#include <cstdio>

namespace tool {

namespace {

const char* displayableName(VyxDesktopEntry::DisplayableCode code)
{
    switch (code) {
    case VyxDesktopEntry::Displayable:
        return "Displayable";
    case VyxDesktopEntry::DisplayableHidden:
        return "DisplayableHidden (Hidden is true)";
    case VyxDesktopEntry::DisplayableNotForSession:
        return "DisplayableNotForSession (OnlyShowIn, NotShowIn or the kiosk whitelist)";
    case VyxDesktopEntry::DisplayableNoDisplay:
        return "DisplayableNoDisplay (NoDisplay is true)";
    }
    return "?";
}

const char* suitableName(VyxDesktopEntry::SuitableCode code)
{
    switch (code) {
    case VyxDesktopEntry::Suitable:
        return "Suitable";
    case VyxDesktopEntry::SuitableNoType:
        return "SuitableNoType (Type is empty)";
    case VyxDesktopEntry::SuitableBadExec:
        return "SuitableBadExec (the command or its quoted program is empty)";
    case VyxDesktopEntry::SuitableExecNotFound:
        return "SuitableExecNotFound (the program's path does not exist)";
    case VyxDesktopEntry::SuitableExecNotInPath:
        return "SuitableExecNotInPath (the program is not in PATH)";
    case VyxDesktopEntry::SuitableOriginFileMissing:
        return "SuitableOriginFileMissing (X-Vyx-OriginFile is missing)";
    case VyxDesktopEntry::SuitableTryExecNotFound:
        return "SuitableTryExecNotFound (TryExec's path does not exist)";
    case VyxDesktopEntry::SuitableTryExecNotInPath:
        return "SuitableTryExecNotInPath (TryExec is not in PATH)";
    case VyxDesktopEntry::SuitableLinkWithoutUrl:
        return "SuitableLinkWithoutUrl (a Link without URL)";
    case VyxDesktopEntry::SuitableAdminRequired:
        return "SuitableAdminRequired (needs administrator or console rights)";
    case VyxDesktopEntry::SuitableModeMismatch:
        return "SuitableModeMismatch (X-Vyx-OnlyShowInModes lacks the edition mode)";
    }
    return "?";
}

}  // namespace

int runWhy(const CommonOptions& options)
{
    const std::string path = applicationFile(options.positional[0]);
    VyxDesktopEntry entry(path);
    if (path.empty() || !entry.isLoaded())
        return noApplication("why", options.positional[0]);
    VyxDesktopEntry::DisplayableCode displayCode;
    VyxDesktopEntry::SuitableCode suitableCode;
    bool displayable = entry.isDisplayable(&displayCode);
    bool suitable = entry.isSuitable(&suitableCode);
    // Two failing paths leave the code 0: say so rather than "Suitable".
    std::string suitableText = suitable ? "Suitable"
                               : suitableCode == VyxDesktopEntry::Suitable
                                   ? "unsuitable, no code (an su-to-root without -c, or an env without a program)"
                                   : suitableName(suitableCode);
    if (options.json) {
        std::printf("%s\n", JsonObject()
                                .addString("file", entry.filePath())
                                .addBool("displayable", displayable)
                                .addInt("displayable_code", displayCode)
                                .addString("displayable_reason", displayableName(displayCode))
                                .addBool("suitable", suitable)
                                .addInt("suitable_code", suitableCode)
                                .addString("suitable_reason", suitableText)
                                .str()
                                .c_str());
    } else {
        printRows({{"File", entry.filePath()},
                   {"Shown", std::string(displayable ? "yes" : "no") + "  " + std::to_string(displayCode) + " " +
                                 displayableName(displayCode)},
                   {"Usable",
                    std::string(suitable ? "yes" : "no") + "  " + std::to_string(suitableCode) + " " + suitableText}});
    }
    return Done;
}

}  // namespace tool
