// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

// vyxcore dpi: the screen's resolution as each source reports it, and the
// sizes of fonts, icons and window frames that follow from it.

#include "commands.h"

#include <vyxdisplay.h>
#include <vyxicontheme.h>
#include <vyxstrings.h>

#include <X11/Xlib.h>
#include <X11/extensions/Xrandr.h>

#include <cstdio>
#include <cstdlib>

namespace tool {

namespace {

struct DpiFacts {
    std::string display;
    int widthPx = 0, heightPx = 0, widthMM = 0, heightMM = 0;
    double screenX = 0, screenY = 0;  // 0 when the screen has no size in mm
    double xft = 0;
    bool randr = false;
    double randrX = 0, randrY = 0;
    bool hasPrimary = false;
    std::string primary;
    std::string measured;  // the output the RandR DPI is of
    double dpi = 0;  // FindDPI's answer
};

// The current primary output, asked directly: the library's report says
// which output it measured, not whether that one is primary.
bool primaryOutputName(Display* dpy, Window root, std::string* name)
{
    int opcode = 0, eventBase = 0, errorBase = 0, major = 0, minor = 0;
    if (!XQueryExtension(dpy, RANDR_NAME, &opcode, &eventBase, &errorBase) || !XRRQueryVersion(dpy, &major, &minor) ||
        (major == 1 && minor < 3))
        return false;
    RROutput primary = XRRGetOutputPrimary(dpy, root);
    XRRScreenResources* resources = primary ? XRRGetScreenResourcesCurrent(dpy, root) : nullptr;
    XRROutputInfo* info = resources ? XRRGetOutputInfo(dpy, resources, primary) : nullptr;
    if (info)
        *name = std::string(info->name, size_t(info->nameLen));
    if (info)
        XRRFreeOutputInfo(info);
    if (resources)
        XRRFreeScreenResources(resources);
    return info != nullptr;
}

DpiFacts collect(Display* dpy)
{
    DpiFacts facts;
    const int screen = DefaultScreen(dpy);
    const Window root = RootWindow(dpy, screen);
    facts.display = DisplayString(dpy);
    facts.widthPx = DisplayWidth(dpy, screen);
    facts.heightPx = DisplayHeight(dpy, screen);
    facts.widthMM = DisplayWidthMM(dpy, screen);
    facts.heightMM = DisplayHeightMM(dpy, screen);
    if (facts.widthMM > 0 && facts.heightMM > 0) {
        facts.screenX = facts.widthPx / (facts.widthMM / 25.4);
        facts.screenY = facts.heightPx / (facts.heightMM / 25.4);
    }
    facts.xft = GetXftDPI(dpy, screen);
    // A report never changes the server: the query functions measure the
    // output that would be made primary instead of making it so.
    facts.hasPrimary = primaryOutputName(dpy, root, &facts.primary);
    facts.randr = QueryRRPrimaryDPI(dpy, root, &facts.randrX, &facts.randrY, &facts.measured);
    facts.dpi = QueryDPI(dpy, screen, root);
    return facts;
}

std::string number(double value)
{
    char text[32];
    std::snprintf(text, sizeof text, "%.2f", value);
    return text;
}

}  // namespace

int runDpi(const CommonOptions& options)
{
    Display* dpy = XOpenDisplay(nullptr);
    if (!dpy) {
        const char* name = std::getenv("DISPLAY");
        std::fprintf(stderr, "vyxcore dpi: cannot open display '%s'\n", name ? name : "");
        return NothingFound;
    }
    const DpiFacts facts = collect(dpy);
    XCloseDisplay(dpy);

    const int dpi = int(facts.dpi);
    const int font = GetFontSizeForDPI(dpi, 0);
    const int icon = VyxIconTheme::GetIconSizeForDPI(dpi, 0);
    const int title = VyxIconTheme::GetFrameTitleSizeForDPI(dpi, 0);
    const int border = VyxIconTheme::GetFrameBorderSizeForDPI(dpi, 0);
    const bool screenKnown = facts.widthMM > 0 && facts.heightMM > 0;
    if (options.json) {
        std::printf("%s\n", JsonObject()
                                .addString("display", facts.display)
                                .add("screen_dpi_x", screenKnown ? number(facts.screenX) : "null")
                                .add("screen_dpi_y", screenKnown ? number(facts.screenY) : "null")
                                .add("xft_dpi", number(facts.xft))
                                .add("randr_dpi_x", facts.randr ? number(facts.randrX) : "null")
                                .add("randr_dpi_y", facts.randr ? number(facts.randrY) : "null")
                                .addString("randr_primary", facts.hasPrimary ? facts.primary.c_str() : nullptr)
                                .addString("randr_output", facts.measured.empty() ? nullptr : facts.measured.c_str())
                                .add("dpi", number(facts.dpi))
                                .addInt("font_size", font)
                                .addInt("icon_size", icon)
                                .addInt("frame_title_size", title)
                                .addInt("frame_border_size", border)
                                .str()
                                .c_str());
        return Done;
    }
    const std::string size =
        Vyx::concat(" (", facts.widthPx, 'x', facts.heightPx, " px, ", facts.widthMM, 'x', facts.heightMM, " mm)");
    printRows({
        {"Display", facts.display},
        {"Screen size",
         screenKnown ? number(facts.screenX) + " x " + number(facts.screenY) + size : "(no size in mm)" + size},
        {"Xft", facts.xft > 0 ? number(facts.xft) : "(none)"},
        {"RandR primary", facts.randr ? number(facts.randrX) + " x " + number(facts.randrY) : "(unknown)"},
        {"Primary output", facts.hasPrimary         ? facts.primary
                           : facts.measured.empty() ? std::string("(none)")
                                                    : "(none; " + facts.measured + " would be chosen)"},
        {"DPI", number(facts.dpi)},
        {"Font size", std::to_string(font) + " pt"},
        {"Icon size", std::to_string(icon) + " px"},
        {"Frame title", std::to_string(title) + " px"},
        {"Frame border", std::to_string(border) + " px"},
    });
    return Done;
}

}  // namespace tool
