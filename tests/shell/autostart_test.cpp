// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

// Autostart: which file decides, and switching a program on and off in the
// user's directory while the system's files stay as they are.

#include "support/temp_home.h"

#include <vyxsession.h>

#include <gtest/gtest.h>

#include <unistd.h>

namespace {

using vyxtest::TempHome;

const auto kKeep = Vyx::tagged_bool<DeleteIfDisabled_tag>(false);

class Autostart : public ::testing::Test {
protected:
    std::string system(const std::string& name, const std::string& extra = "")
    {
        return world.writeFile("etc/xdg/autostart/" + name, entry(name, extra));
    }
    static std::string entry(const std::string& name, const std::string& extra)
    {
        return "[Desktop Entry]\nType=Application\nName=" + name + "\nExec=/bin/true\n" + extra;
    }
    std::string userPath(const std::string& name) const { return world.path("home/.config/autostart/" + name); }

    TempHome world;
};

TEST_F(Autostart, TheFirstFileDecidesAndSwitchingOnlyTouchesTheUsersDirectory)
{
    const std::string quiet = system("quiet.desktop", "NoDisplay=true\n");
    EXPECT_TRUE(vyxIsAutostartEnabled("quiet"));  // hidden from menus, still started
    EXPECT_EQ(vyxAutostartEnabledPath("quiet.desktop"), quiet);

    system("off.desktop", "Hidden=true\n");
    EXPECT_FALSE(vyxIsAutostartEnabled("off"));
    EXPECT_EQ(vyxAutostartEnabledPath("off"), "");  // a system file that disables is not named

    system("overridden.desktop");
    const std::string mine =
        world.writeFile("home/.config/autostart/overridden.desktop", entry("overridden", "Hidden=true\n"));
    EXPECT_FALSE(vyxIsAutostartEnabled("overridden"));
    EXPECT_EQ(vyxAutostartEnabledPath("overridden"), mine);

    world.writeFile("etc/xdg/autostart/broken.desktop", "no group here\n\x01\x02");
    EXPECT_FALSE(vyxIsAutostartEnabled("broken"));
    world.writeFile("etc/xdg/autostart/script", "#!/bin/sh\n");
    EXPECT_TRUE(vyxIsAutostartEnabled("/opt/tools/script.sh"));  // a plain file's presence is enough
    EXPECT_FALSE(vyxIsAutostartEnabled("nothing"));
    EXPECT_FALSE(vyxIsAutostartEnabled(nullptr));

    const std::string systemFile = system("app.desktop");
    const std::string systemText = vyxtest::readFile(systemFile);
    EXPECT_TRUE(vyxEnableAutostart("app", true, nullptr, kKeep));  // already on: nothing to do
    EXPECT_NE(access(userPath("app.desktop").c_str(), F_OK), 0);

    // Off: a user copy that is Hidden.
    EXPECT_TRUE(vyxEnableAutostart("app", false, nullptr, kKeep));
    EXPECT_FALSE(vyxIsAutostartEnabled("app"));
    EXPECT_TRUE(vyxEnableAutostart("app", true, "/bin/echo started", kKeep));
    EXPECT_TRUE(vyxIsAutostartEnabled("app"));
    EXPECT_EQ(vyxtest::readFile(systemFile), systemText);

    // A program installed only as an application is copied as it is.
    const std::string tool = world.writeFile("usr/share/applications/tool.desktop", entry("tool", "X-Mine=1\n"));
    EXPECT_TRUE(vyxEnableAutostart("tool", true, nullptr, kKeep));
    EXPECT_EQ(vyxtest::readFile(userPath("tool.desktop")), vyxtest::readFile(tool));
}

}  // namespace
