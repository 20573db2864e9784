// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "vyxsession.h"

#include "core/diag_p.h"
#include "core/environment_p.h"
#include "display/session_p.h"
#include "display/xerrortrap_p.h"
#include "vyxstrings.h"

#include <X11/Xatom.h>
#include <X11/Xlib.h>

#include <cstdio>
#include <cstring>
#include <string>

namespace {

// One property read, with the server's buffer freed.
struct Property {
    Atom type = None;
    int format = 0;
    unsigned long items = 0;
    std::string data;
};

// Reads a property without letting an X error (a window that no longer
// exists, a stale _NET_SUPPORTING_WM_CHECK) reach Xlib's default handler,
// which would end the process. Any failure reads as an absent property.
// An atom the server has never seen cannot name a property, so atoms are
// looked up, never created.
bool readProperty(Display* display, Window window, const char* name, long length, Atom requiredType, Property* out)
{
    Atom property = XInternAtom(display, name, True);
    if (property == None)
        return false;

    Vyx::detail::XErrorTrap trap(display);
    Atom type = None;
    int format = 0;
    unsigned long items = 0, after = 0;
    unsigned char* data = nullptr;
    int status = XGetWindowProperty(display, window, property, 0, length, False, requiredType, &type, &format, &items,
                                    &after, &data);
    bool ok = status == Success && !trap.errorOccurred();
    if (ok) {
        out->type = type;
        out->format = format;
        out->items = items;
        if (data && items > 0) {
            size_t unit = format == 32 ? sizeof(long) : format == 16 ? sizeof(short) : 1;
            out->data.assign(reinterpret_cast<const char*>(data), items * unit);
        }
    }
    if (data)
        XFree(data);
    return ok;
}

bool propertyPresent(Display* display, Window window, const char* name, Atom requiredType)
{
    Property property;
    return readProperty(display, window, name, 1, requiredType, &property) && property.items >= 1;
}

int desktopFromWmName(Display* display, Window window)
{
    Property check;
    if (!readProperty(display, window, "_NET_SUPPORTING_WM_CHECK", 1024, XA_WINDOW, &check) ||
        check.type != XA_WINDOW || check.format != 32 || check.items < 1)
        return 0;
    Window wm = *reinterpret_cast<const unsigned long*>(check.data.data());

    Atom utf8 = XInternAtom(display, "UTF8_STRING", True);
    Property name;
    if (utf8 == None || !readProperty(display, wm, "_NET_WM_NAME", 1024, utf8, &name) || name.type != utf8 ||
        name.format != 8)
        return 0;
    if (name.data == "vyx-wm")
        return 5;
    if (name.data == "KWin")
        return 1;
    if (name.data == "Metacity")
        return 2;
    return 0;
}

// The display name to use: the argument, else the connection's, else DISPLAY.
const char* resolveDisplayName(const char* name, Display* display)
{
    if (name && *name)
        return name;
    if (display)
        return DisplayString(display);
    return Vyx::detail::envValue("DISPLAY");
}

}  // namespace

namespace Vyx::detail {

bool vendorMeansNested(const char* vendor)
{
    return vendor && Vyx::ciContains(vendor, "Xephyr");
}

}  // namespace Vyx::detail

int whatDE(Display* display, Window window)
{
    // A window manager announcing itself by EWMH wins; an unknown EWMH name
    // falls through to the older conventions.
    int desktop = desktopFromWmName(display, window);
    if (desktop != 0)
        return desktop;
    if (propertyPresent(display, window, "DTWM_IS_RUNNING", AnyPropertyType))
        return 3;
    if (propertyPresent(display, window, "GNOME_BACKGROUND_PROPERTIES", AnyPropertyType))
        return 2;
    if (std::getenv("GNOME_DESKTOP_SESSION_ID"))  // set at all, whatever its value
        return 2;
    for (const char* kde : {"KDE_FULL_SESSION", "KWIN_RUNNING", "KWM_RUNNING"}) {
        if (propertyPresent(display, window, kde, AnyPropertyType))
            return 1;
    }
    if (propertyPresent(display, window, "_SGI_DESKS_MANAGER", XA_WINDOW))
        return 4;
    return 0;
}

int GetDisplayNumberByName(const char* name, Display* display)
{
    const char* resolved = resolveDisplayName(name, display);
    if (!resolved)
        return 0;
    const char* colon = std::strchr(resolved, ':');
    if (!colon) {
        Vyx::detail::diag(nullptr, "Wrong display name %s\n", resolved);
        return -1;
    }
    std::string number(colon + 1);
    number = number.substr(0, number.find('.'));
    size_t used = 0;
    // std::stoi throws on an empty or non-numeric text; that is left to the
    // caller, as documented.
    int value = std::stoi(number, &used, 10);
    return used == number.size() ? value : -1;
}

bool isSessionRemote(const char* name, Display* display)
{
    const char* resolved = resolveDisplayName(name, display);
    if (!resolved)
        return false;
    if (resolved[0] == ':' && resolved[1] >= '0' && resolved[1] <= '9')
        return false;
    return !Vyx::startsWith(resolved, "localhost") && !Vyx::startsWith(resolved, "127.");
}

bool isSessionNested(const char*, Display* display)
{
    return Vyx::detail::vendorMeansNested(ServerVendor(display));
}
