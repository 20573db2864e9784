// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "vyxdisplay.h"

#include "core/diag_p.h"
#include "display/xserver_p.h"

#include <X11/Xlib.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <utility>

namespace Vyx::detail {

namespace {

// "The integer part is 96", written so that no out-of-range value (Xft
// reports infinity for a screen without a height in millimetres) is ever
// converted to int.
bool isNinetySixSomething(double dpi)
{
    return dpi >= 96.0 && dpi < 97.0;
}

// Monitors that report slightly wrong sizes land a little off 96; counting
// all of them as 96 keeps fonts at the size they were designed for.
double snapNearlyNinetySix(double dpi)
{
    return dpi > 90.0 && dpi < 100.0 ? 96.0 : dpi;
}

bool atOrigin(const RandrCrtcInfo& crtc)
{
    return crtc.x == 0 && crtc.y == 0 && crtc.width != 0 && crtc.height != 0;
}

// The server's current resources, or when those list no output (a server
// that has never probed its outputs) the probed ones.
bool loadResources(XServer& server, Window root, std::vector<unsigned long>* outputs)
{
    if (server.loadScreenResources(root, true, outputs) && !outputs->empty())
        return true;
    return server.loadScreenResources(root, false, outputs);
}

}  // namespace

double xftDPI(XServer& server, int screen)
{
    return server.xftDefaultDPI(screen).value_or(0.0);
}

void setXftDPI(XServer& server, int screen, double dpi, bool setInXrdb)
{
    if (dpi == 0)
        return;
    // Kept on purpose: a DPI that Xft already has wins over the one asked
    // for, so that a resource the user set is never overridden.
    if (std::optional<double> current = server.xftDefaultDPI(screen))
        dpi = *current;
    if (dpi != 0)
        server.setXftDefaultDPI(screen, dpi);
    if (!setInXrdb)
        return;

    char line[64];
    std::snprintf(line, sizeof line, "Xft.dpi: %ld", std::lround(dpi));
    double published = 0;
    if (std::optional<std::string> text = server.resource("Xft.dpi", "Xft.Dpi"))
        published = std::strtod(text->substr(0, 255).c_str(), nullptr);
    if (dpi != published)
        server.putResourceLine(line);
}

bool chooseRRPrimary(XServer& server, Window root, int major, int minor, unsigned long* chosen, bool* alreadyPrimary)
{
    *chosen = 0;
    if (alreadyPrimary)
        *alreadyPrimary = false;
    if (!root)
        return false;
    if (major == 0 && minor == 0) {
        if (!server.hasRandr()) {
            Vyx::detail::diag(nullptr, "libvyxcore SetRRPrimary(): No RANDR support!");
            return false;
        }
        server.randrVersion(&major, &minor);
    }
    // Both tests on purpose: 1.3 and every 2.x pass, 1.2 does not.
    if (major < 2 && minor < 3) {
        Vyx::detail::diag(nullptr, "libvyxcore SetRRPrimary(): too old RANDR version %d.%d\n", major, minor);
        return false;
    }
    std::vector<unsigned long> outputs;
    if (!loadResources(server, root, &outputs)) {
        Vyx::detail::diag(nullptr, "libvyxcore SetRRPrimary(): cant get screen resources\n");
        return false;
    }
    if ((*chosen = server.primaryOutput(root))) {
        if (alreadyPrimary)
            *alreadyPrimary = true;
        return true;
    }

    for (unsigned long output : outputs) {
        RandrOutputInfo info;
        if (!server.outputInfo(output, &info))
            continue;
        Vyx::detail::diag(nullptr, "libvyxcore SetRRPrimary(): output is %s wmm=%lu hmm=%lu\n", info.name.c_str(),
                          info.mmWidth, info.mmHeight);
        if (!info.connected)
            continue;
        Vyx::detail::diag(nullptr, "  connected\n");
        RandrCrtcInfo crtc;
        if (!server.crtcInfo(info.crtc, &crtc)) {
            Vyx::detail::diag(nullptr, "  can't get crtc info - skipped");
            continue;
        }
        Vyx::detail::diag(nullptr, "    main crtc: %d %d %d %d\n", crtc.x, crtc.y, int(crtc.width), int(crtc.height));
        if (atOrigin(crtc)) {
            *chosen = output;
            return true;
        }
        for (size_t i = 0; i < info.crtcs.size(); ++i) {
            if (!server.crtcInfo(info.crtcs[i], &crtc)) {
                Vyx::detail::diag(nullptr, "    can't get crtc info - skipped");
                continue;
            }
            Vyx::detail::diag(nullptr, "    crtc[%d]: %d %d %d %d\n", int(i), crtc.x, crtc.y, int(crtc.width),
                              int(crtc.height));
            if (atOrigin(crtc)) {
                *chosen = output;
                return true;
            }
        }
    }
    return true;
}

bool setRRPrimary(XServer& server, Window root, int major, int minor)
{
    unsigned long chosen = 0;
    bool alreadyPrimary = false;
    if (!chooseRRPrimary(server, root, major, minor, &chosen, &alreadyPrimary))
        return false;
    if (chosen && !alreadyPrimary)
        server.setPrimaryOutput(root, chosen);
    return true;
}

bool rrPrimaryDPI(XServer& server, Window root, double* dpix, double* dpiy, PrimaryChoice choice,
                  std::string* outputName)
{
    if (outputName)
        outputName->clear();
    if (!root)
        return false;
    unsigned long primary = server.primaryOutput(root);
    if (!primary) {
        if (choice == PrimaryChoice::Set) {
            setRRPrimary(server, root, 0, 0);
            primary = server.primaryOutput(root);
        } else {
            chooseRRPrimary(server, root, 0, 0, &primary);
        }
        if (!primary)
            return false;
    }
    std::vector<unsigned long> outputs;
    RandrOutputInfo info;
    if (!loadResources(server, root, &outputs) || !server.outputInfo(primary, &info))
        return false;
    if (outputName)
        *outputName = info.name;
    const char* name = info.name.empty() ? "unknown" : info.name.c_str();
    if (info.mmWidth == 0 || info.mmHeight == 0) {
        Vyx::detail::diag(nullptr, "libvyxcore GetRRPrimaryDPI(): %s no size in mm (%lux%lu), bad EDID/driver/etc ?\n",
                          name, info.mmWidth, info.mmHeight);
        return false;
    }
    RandrCrtcInfo crtc;
    if (!server.crtcInfo(info.crtc, &crtc)) {
        Vyx::detail::diag(nullptr, "libvyxcore GetRRPrimaryDPI(): %s cant get ctrc info\n", name);
        return false;
    }
    if (crtc.width == 0 || crtc.height == 0) {
        Vyx::detail::diag(nullptr,
                          "libvyxcore GetRRPrimaryDPI(): %s no crtc size in pixels (%lux%lu mm, %ux%u pix), "
                          "rotation=%d, disconnected?\n",
                          name, info.mmWidth, info.mmHeight, crtc.width, crtc.height, crtc.rotation);
        return false;
    }

    // The physical size is the panel's; a CRTC turned on its side shows the
    // panel's height across. Reflection bits do not change which is which.
    unsigned long mmAcross = info.mmWidth;
    unsigned long mmDown = info.mmHeight;
    const int turn = crtc.rotation & 0x0F;
    if (turn == 2 || turn == 8)
        std::swap(mmAcross, mmDown);

    double measuredX = 0, measuredY = 0, x = 0, y = 0;
    if (dpix && mmAcross) {
        measuredX = double(crtc.width) / (double(mmAcross) / 25.4);
        x = *dpix = snapNearlyNinetySix(measuredX);
    }
    if (dpiy && mmDown) {
        measuredY = double(crtc.height) / (double(mmDown) / 25.4);
        y = *dpiy = snapNearlyNinetySix(measuredY);
    }
    Vyx::detail::diag(nullptr,
                      "libvyxcore GetRRPrimaryDPI(): mm_width=%lu mm_height=%lu, rotation=%d main crtc: %d %d %d %d, "
                      "dpix=%f(%f) dpiy=%f(%f)\n",
                      info.mmWidth, info.mmHeight, crtc.rotation, crtc.x, crtc.y, int(crtc.width), int(crtc.height), x,
                      measuredX, y, measuredY);
    return true;
}

double findDPI(XServer& server, int screen, Window root, PrimaryChoice choice)
{
    if (!root)
        return 0;
    double dpi = 96.0;
    const int mm = server.screenWidthMM(screen);
    if (mm > 0)
        dpi = double(server.screenWidth(screen)) / (double(mm) / 25.4);
    // 96.x is what servers report when they do not know the monitor, so the
    // better-informed sources are asked.
    if (isNinetySixSomething(dpi)) {
        double xft = xftDPI(server, screen);
        if (xft > 0)
            dpi = xft;
    }
    if (isNinetySixSomething(dpi)) {
        double x = 0, y = 0;
        if (rrPrimaryDPI(server, root, &x, &y, choice) && x != 0 && y != 0)
            dpi = x;
    }
    return dpi;
}

}  // namespace Vyx::detail

namespace {

bool hasScreen(Display* dpy, int screen)
{
    return dpy && screen >= 0 && screen < ScreenCount(dpy);
}

// Only root windows are accepted: an unknown window id would make the
// server answer with an error, which Xlib's default handler turns into an
// exit of the whole process.
bool isRootWindow(Display* dpy, Window window)
{
    if (!dpy || !window)
        return false;
    for (int screen = 0; screen < ScreenCount(dpy); ++screen) {
        if (RootWindow(dpy, screen) == window)
            return true;
    }
    return false;
}

}  // namespace

int GetFontSizeForDPI(int dpi, int delta)
{
    static const int kSizes[] = {9, 10, 11, 12, 14, 16, 18};  // levels -1 to 5
    const int base = dpi < 120 ? 0 : dpi < 168 ? 1 : dpi < 240 ? 2 : dpi < 336 ? 3 : 4;
    const long level = long(base) + delta;
    return level < -1 ? 8 : level > 5 ? 20 : kSizes[level + 1];
}

double GetXftDPI(Display* dpy, int screen)
{
    if (!hasScreen(dpy, screen))
        return 0;
    return Vyx::detail::xftDPI(*Vyx::detail::connectXServer(dpy), screen);
}

void SetXftDPI(Display* dpy, int screen, double dpi, Vyx::tagged_bool<SetInXrdb_tag> setInXrdb)
{
    if (!hasScreen(dpy, screen))
        return;
    Vyx::detail::setXftDPI(*Vyx::detail::connectXServer(dpy), screen, dpi, bool(setInXrdb));
}

bool SetRRPrimary(Display* dpy, Window root, int major, int minor)
{
    if (!isRootWindow(dpy, root))
        return false;
    return Vyx::detail::setRRPrimary(*Vyx::detail::connectXServer(dpy), root, major, minor);
}

bool GetRRPrimaryDPI(Display* dpy, Window root, double* dpix, double* dpiy)
{
    if (!isRootWindow(dpy, root))
        return false;
    return Vyx::detail::rrPrimaryDPI(*Vyx::detail::connectXServer(dpy), root, dpix, dpiy);
}

double FindDPI(Display* dpy, int screen, Window root)
{
    if (!hasScreen(dpy, screen) || !isRootWindow(dpy, root))
        return 0;
    return Vyx::detail::findDPI(*Vyx::detail::connectXServer(dpy), screen, root);
}

bool QueryRRPrimaryDPI(Display* dpy, Window root, double* dpix, double* dpiy, std::string* output)
{
    if (output)
        output->clear();
    if (!isRootWindow(dpy, root))
        return false;
    return Vyx::detail::rrPrimaryDPI(*Vyx::detail::connectXServer(dpy), root, dpix, dpiy,
                                     Vyx::detail::PrimaryChoice::Leave, output);
}

double QueryDPI(Display* dpy, int screen, Window root)
{
    if (!hasScreen(dpy, screen) || !isRootWindow(dpy, root))
        return 0;
    return Vyx::detail::findDPI(*Vyx::detail::connectXServer(dpy), screen, root, Vyx::detail::PrimaryChoice::Leave);
}
