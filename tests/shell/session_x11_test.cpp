// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "display/session_p.h"
#include "support/temp_home.h"
#include "support/xvfb.h"

#include <vyxsession.h>

#include <X11/Xatom.h>
#include <X11/Xlib.h>
#include <X11/Xutil.h>

#include <gtest/gtest.h>

#include <clocale>

namespace {

// What a session on a running server finds on its root window.
class XSession : public vyxtest::XvfbTest {
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

    Window make() { return XCreateSimpleWindow(display(), root(), 0, 0, 10, 10, 0, 0, 0); }
    void setName(Window w, const char* encoding, const std::string& text)
    {
        XTextProperty property = {reinterpret_cast<unsigned char*>(const_cast<char*>(text.c_str())), atom(encoding), 8,
                                  text.size()};
        XSetWMName(display(), w, &property);
    }
    void setClass(Window w, const char* instance, const char* klass)
    {
        XClassHint hint = {const_cast<char*>(instance), const_cast<char*>(klass)};
        XSetClassHint(display(), w, &hint);
    }
    Window find(const char* name) { return FindToplevelWindowByName(display(), root(), name); }

    vyxtest::TempHome m_world;
};

// Xvfb is no nested server (its vendor text says so) and runs no desktop;
// wrong types are absent, and an announced name wins over legacy properties.
// Windows are found by their name, then a class prefix, then the icon name.
TEST_F(XSession, TheDesktopFromTheRootWindowAndToplevelWindowsByName)
{
    EXPECT_FALSE(isSessionNested(nullptr, display()));
    EXPECT_TRUE(Vyx::detail::vendorMeansNested("The XEPHYR project"));
    EXPECT_FALSE(Vyx::detail::vendorMeansNested(nullptr));
    EXPECT_EQ(GetDisplayNumberByName("other:3", display()), 3);  // a given name comes first
    EXPECT_EQ(whatDE(display(), root()), 0);
    setLegacy("_SGI_DESKS_MANAGER", XA_CARDINAL);  // must be a window
    EXPECT_EQ(whatDE(display(), root()), 0);
    Window check = announceWindowManager("KWin");
    XChangeProperty(display(), check, atom("_NET_WM_NAME"), XA_STRING, 8, PropModeReplace,
                    reinterpret_cast<const unsigned char*>("KWin"), 4);
    XSync(display(), False);
    EXPECT_EQ(whatDE(display(), root()), 0);

    // A stale check window does not kill the process, and the connection
    // is still usable afterwards.
    XDestroyWindow(display(), check);
    setLegacy("KDE_FULL_SESSION");
    EXPECT_EQ(whatDE(display(), root()), 1);
    EXPECT_EQ(whatDE(display(), root()), 1);
    XDeleteProperty(display(), root(), atom("KDE_FULL_SESSION"));

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

    ASSERT_TRUE(std::setlocale(LC_ALL, "C.UTF-8"));
    Window mailIcon = make(), files = make(), cafe = make(), mailer = make(), viewer = make(), filesByName = make(),
           calendar = make();
    XSetIconName(display(), mailIcon, "Mail");
    setClass(files, "files", "Files");
    XSetIconName(display(), files, "Files");
    setName(cafe, "STRING", "Caf\xe9");  // Latin-1
    setClass(mailer, "mailer", "Mailbox");
    setClass(viewer, "viewer", nullptr);
    setName(filesByName, "UTF8_STRING", "Files");
    XSetIconName(display(), calendar, "Calendar");

    EXPECT_EQ(find("Files"), filesByName);  // WM_NAME beats earlier class and icon matches
    EXPECT_EQ(find("File"), files);  // but must match whole
    EXPECT_EQ(find("Caf\xc3\xa9"), cafe);  // compared in the locale's encoding
    EXPECT_EQ(find("Mail"), mailer);  // a class prefix beats an earlier icon name
    EXPECT_EQ(find("mail"), mailer);
    EXPECT_EQ(find("view"), viewer);
    EXPECT_EQ(find("Calendar"), calendar);
    EXPECT_EQ(find("Cal"), 0u);  // icon names match whole
    EXPECT_EQ(find(nullptr), 0u);
    EXPECT_EQ(FindToplevelWindowByName(display(), calendar + 1000, "Files"), 0u);  // no such parent: no X error
    std::setlocale(LC_ALL, "C");

    vyxtest::ScopedEnv other("DISPLAY", ":99.0");  // the connection names the display
    EXPECT_EQ(GetVyxDMFIFOPath(display()).first, "/var/run/xdmctl/dmctl-" + server().displayName() + "/socket");
    EXPECT_EQ(GetOrganization(), "quorbitek");
}

}  // namespace
