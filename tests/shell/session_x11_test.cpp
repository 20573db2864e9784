// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "display/session_p.h"
#include "support/temp_home.h"
#include "support/xvfb.h"

#include <vyxsession.h>

#include <X11/Xatom.h>
#include <X11/Xlib.h>

#include <gtest/gtest.h>

namespace {

class WhatDE : public vyxtest::XvfbTest {
protected:
    Window root() { return DefaultRootWindow(display()); }
    Atom atom(const char* name) { return XInternAtom(display(), name, False); }

    Window announceWindowManager(const char* name) { return vyxtest::announceWindowManager(display(), name); }
    void setLegacy(const char* name, Atom type = XA_CARDINAL)
    {
        long value = 1;
        XChangeProperty(display(), root(), atom(name), type, 32, PropModeReplace,
                        reinterpret_cast<unsigned char*>(&value), 1);
        XSync(display(), False);
    }

    vyxtest::TempHome m_world;
};

TEST_F(WhatDE, EwmhNameWinsOverLegacyProperties)
{
    setLegacy("GNOME_BACKGROUND_PROPERTIES");
    setLegacy("KWIN_RUNNING");
    // Unknown names fall through: the GNOME probe comes first.
    for (const auto& [name, desktop] : {std::pair {"vyx-wm", 5}, {"KWin", 1}, {"Metacity", 2}, {"vyx-wm2", 2}}) {
        announceWindowManager(name);
        EXPECT_EQ(whatDE(display(), root()), desktop) << name;
    }

    // Legacy probes in order, once no known name is announced.
    announceWindowManager("Mutter");
    XDeleteProperty(display(), root(), atom("GNOME_BACKGROUND_PROPERTIES"));
    XDeleteProperty(display(), root(), atom("KWIN_RUNNING"));
    setLegacy("_SGI_DESKS_MANAGER", XA_WINDOW);
    EXPECT_EQ(whatDE(display(), root()), 4);
    setLegacy("KWM_RUNNING");
    EXPECT_EQ(whatDE(display(), root()), 1);
    {
        vyxtest::ScopedEnv gnome("GNOME_DESKTOP_SESSION_ID", "this-is-deprecated");
        EXPECT_EQ(whatDE(display(), root()), 2);
    }
    setLegacy("DTWM_IS_RUNNING");
    EXPECT_EQ(whatDE(display(), root()), 3);
}

// Xvfb is no nested server (its vendor text says so) and runs no desktop.
TEST_F(WhatDE, NothingOnABareServerAndWrongTypesAreAbsent)
{
    EXPECT_FALSE(isSessionNested(nullptr, display()));
    EXPECT_TRUE(Vyx::detail::vendorMeansNested("The XEPHYR project"));
    EXPECT_FALSE(Vyx::detail::vendorMeansNested(nullptr));
    EXPECT_EQ(GetDisplayNumberByName("other:3", display()), 3);  // a given name comes first
    EXPECT_EQ(whatDE(display(), root()), 0);
    setLegacy("_SGI_DESKS_MANAGER", XA_CARDINAL);  // must be a window
    EXPECT_EQ(whatDE(display(), root()), 0);
    Window check = announceWindowManager("KWin");
    const char name[] = "KWin";
    XChangeProperty(display(), check, atom("_NET_WM_NAME"), XA_STRING, 8, PropModeReplace,
                    reinterpret_cast<const unsigned char*>(name), 4);
    XSync(display(), False);
    EXPECT_EQ(whatDE(display(), root()), 0);

    // A stale check window does not kill the process, and the connection
    // is still usable afterwards.
    XDestroyWindow(display(), check);
    setLegacy("KDE_FULL_SESSION");
    EXPECT_EQ(whatDE(display(), root()), 1);
    EXPECT_EQ(whatDE(display(), root()), 1);
}

}  // namespace
