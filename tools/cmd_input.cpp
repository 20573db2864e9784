// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

// vyxcore input: the touchscreens, touchpads and tablets of the display.

#include "commands.h"

#include <vyxdisplay.h>

#include <X11/Xlib.h>

#include <cstdio>
#include <cstdlib>

namespace tool {

namespace {

const char* kindName(VyxInputDeviceKind kind)
{
    switch (kind) {
    case TouchscreenDevice:
        return "touchscreen";
    case TouchpadDevice:
        return "touchpad";
    case TabletDevice:
        return "tablet";
    }
    return "unknown";
}

}  // namespace

int runInput(const CommonOptions& options)
{
    const char* displayName = std::getenv("DISPLAY");
    Display* display = displayName && *displayName ? XOpenDisplay(nullptr) : nullptr;
    if (!display) {
        std::fprintf(stderr, "vyxcore input: cannot open the display '%s'\n", displayName ? displayName : "");
        return NothingFound;
    }
    const std::vector<VyxInputDevice> devices = findTouchAndTabletDevices(display);
    XCloseDisplay(display);
    if (options.json) {
        std::vector<std::string> items;
        for (const VyxInputDevice& device : devices)
            items.push_back(JsonObject()
                                .addInt("id", device.id)
                                .addString("name", device.name)
                                .addString("kind", kindName(device.kind))
                                .str());
        std::printf("%s\n", jsonArray(items).c_str());
    } else {
        std::vector<std::pair<std::string, std::string>> rows;
        for (const VyxInputDevice& device : devices)
            rows.emplace_back(std::to_string(device.id) + "  " + kindName(device.kind), device.name);
        printRows(rows);
    }
    return Done;
}

}  // namespace tool
