// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

// vyxcore autostart, recent, position: the user's session start, the
// recent-items menu and the desktop's icon positions.

#include "commands.h"

#include <vyxsession.h>

#include <X11/Xlib.h>

#include <cstdio>
#include <cstdlib>
#include <unistd.h>

namespace tool {

namespace {

bool parseInt(const std::string& text, int* value)
{
    char* end = nullptr;
    const long number = std::strtol(text.c_str(), &end, 10);
    if (text.empty() || *end || number < -1000000 || number > 1000000)
        return false;
    *value = int(number);
    return true;
}

// The window manager is told through the display; without one nothing is sent.
Display* openDisplay()
{
    const char* name = std::getenv("DISPLAY");
    return name && *name ? XOpenDisplay(nullptr) : nullptr;
}

}  // namespace

int runAutostart(const CommonOptions& options)
{
    const std::string& name = options.positional[0];
    const bool enable = options.hasFlag("--enable"), disable = options.hasFlag("--disable");
    if (enable && disable)
        return usageError("autostart", "--enable and --disable exclude each other");
    const std::vector<std::string> commands = options.valuesOf("--command");
    const char* command = commands.empty() ? nullptr : commands.back().c_str();
    if (command && !enable && !disable)
        return usageError("autostart", "--command goes with --enable or --disable");
    if (options.hasFlag("--delete") && !disable)
        return usageError("autostart", "--delete goes with --disable");
    bool changed = true;
    if (enable || disable) {
        const bool wasEnabled = vyxIsAutostartEnabled(name.c_str());
        const bool answer = vyxEnableAutostart(name.c_str(), enable, command,
                                               Vyx::tagged_bool<DeleteIfDisabled_tag>(options.hasFlag("--delete")));
        // Deleting answers true when the deletion failed; disabling what is
        // already off answers true as there is nothing to do.
        changed = options.hasFlag("--delete") && wasEnabled ? !answer : answer;
    }
    const bool enabled = vyxIsAutostartEnabled(name.c_str());
    const std::string path = vyxAutostartEnabledPath(name.c_str());
    if (options.json) {
        std::printf(
            "%s\n",
            JsonObject().addString("name", name).addBool("enabled", enabled).addString("file", path).str().c_str());
    } else {
        printRows({{"autostart", enabled ? "enabled" : "disabled"}, {"decided by", path.empty() ? "-" : path}});
    }
    if (enable && changed && !enabled && !path.empty()) {
        // The user's file says yes, but the entry cannot run in this session.
        std::fprintf(stderr, "vyxcore autostart: %s is in place but cannot start here (see 'vyxcore why %s')\n",
                     path.c_str(), path.c_str());
        return NothingFound;
    }
    if (!changed || (enable && !enabled) || (disable && enabled)) {
        std::fprintf(stderr, "vyxcore autostart: could not %s '%s'%s\n", enable ? "enable" : "disable", name.c_str(),
                     enable ? " (no application of that name is installed)" : "");
        return NothingFound;
    }
    return Done;
}

int runRecent(const CommonOptions& options)
{
    const std::vector<std::string> icons = options.valuesOf("--icon");
    std::string path = options.positional[0];
    char cwd[4096];
    if (!path.empty() && path[0] != '/' && getcwd(cwd, sizeof cwd))
        path = std::string(cwd) + "/" + path;
    Display* display = openDisplay();
    const int result = putEntryToRecentsMenu(path.c_str(), icons.empty() ? nullptr : icons.back().c_str(), display,
                                             Vyx::tagged_bool<ProgsOnly_tag>(options.hasFlag("--programs")));
    if (display)
        XCloseDisplay(display);
    static const char* const kMeanings[] = {"the recents folder (startmenu/recents) is missing or cannot be listed",
                                            "the path cannot be examined or the item could not be written",
                                            "recorded (or nothing to do)", "recorded as a copy of the desktop entry"};
    const char* meaning = result >= -2 && result <= 1 ? kMeanings[result + 2] : "unknown";
    if (options.json)
        std::printf("%s\n", JsonObject().addString("path", path).addInt("result", result).str().c_str());
    else
        printRows({{"result", std::to_string(result) + " (" + meaning + ")"}});
    return result < 0 ? NothingFound : Done;
}

int runPosition(const CommonOptions& options)
{
    const std::vector<std::string> removed = options.valuesOf("--remove");
    if (!removed.empty()) {
        if (!options.positional.empty())
            return usageError("position", "--remove NAME takes no other arguments");
        if (!RemoveDesktopItemPosition(removed.back().c_str())) {
            std::fprintf(stderr, "vyxcore position: cannot update the desktop's .directory\n");
            return NothingFound;
        }
        return Done;
    }
    int x = 0, y = 0;
    if (options.positional.size() < 3 || !parseInt(options.positional[1], &x) || !parseInt(options.positional[2], &y))
        return usageError("position", "wants NAME X Y [MONITOR] with whole numbers, or --remove NAME");
    const std::string monitor = options.positional.size() > 3 ? options.positional[3] : "";
    if (!SaveDesktopItemPosition(options.positional[0].c_str(), x, y, monitor)) {
        std::fprintf(stderr, "vyxcore position: cannot update the desktop's .directory (it must exist)\n");
        return NothingFound;
    }
    return Done;
}

}  // namespace tool
