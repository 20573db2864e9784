// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

// The current cursor theme from each of its sources in turn, setting it,
// and the installed cursor themes. The system's own settings files are
// replaced in a private mount namespace.

#include "support/child_process.h"
#include "support/temp_home.h"

#include <vyxicontheme.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <unistd.h>

namespace {

using vyxtest::Mount;
using vyxtest::ScopedEnv;
using vyxtest::TempHome;

TEST(CursorThemes, SourcesInTheirOrder)
{
    TempHome world;
    const std::string etc = world.makeDir("fake-etc-xresources");
    const std::string icons = world.makeDir("fake-default-icons");
    const std::string alternatives = world.makeDir("fake-alternatives");
    symlink("/usr/share/icons/FromAlternatives/cursor.theme", (alternatives + "/x-cursor-theme").c_str());
    vyxtest::ChildOptions options;
    options.mounts = {Mount::bind(etc, "/etc/X11/Xresources"), Mount::bind(icons, "/usr/share/icons/default"),
                      Mount::bind(alternatives, "/etc/alternatives")};
    VYX_EXPECT_CHILD(vyxtest::runInChild(options, [&] {
        ScopedEnv noTheme("XCURSOR_THEME", nullptr);
        EXPECT_EQ(VyxIconTheme::getCurrentCursorThemeName(nullptr), "FromAlternatives");
        world.writeFile("fake-default-icons/cursor.theme", "[Icon Theme]\nInherits=FromSystemDefault\n");
        EXPECT_EQ(VyxIconTheme::getCurrentCursorThemeName(nullptr), "FromSystemDefault");
        world.writeFile("home/.icons/default/index.theme", "[Icon Theme]\nInherits= FromUserDefault, Other\n");
        EXPECT_EQ(VyxIconTheme::getCurrentCursorThemeName(nullptr), "FromUserDefault");
        {
            ScopedEnv variable("XCURSOR_THEME", "FromVariable");
            EXPECT_EQ(VyxIconTheme::getCurrentCursorThemeName(nullptr), "FromVariable");
        }
        world.writeFile("fake-etc-xresources/x11-common", "! Xcursor.theme: commented\nXcursor.theme:\tFromSystem\r\n");
        EXPECT_EQ(VyxIconTheme::getCurrentCursorThemeName(nullptr), "FromSystem");
        world.writeFile("home/.Xresources",
                        "*background: grey\nXcursor.themeX: wrong\n*huge: " + std::string(1 << 20, 'h') +
                            "\nXcursor.theme\n  Xcursor.theme :  FromUser\n");
        EXPECT_EQ(VyxIconTheme::getCurrentCursorThemeName(nullptr), "FromUser");

        // Setting it rewrites the user's line and keeps the other resources.
        EXPECT_TRUE(VyxIconTheme::setCurrentCursorThemeName("Chosen"));
        EXPECT_EQ(VyxIconTheme::getCurrentCursorThemeName(nullptr), "Chosen");
        const std::string text = vyxtest::readFile(world.home() + "/.Xresources");
        EXPECT_NE(text.find("*background: grey"), std::string::npos) << text;
        EXPECT_EQ(text.find("FromUser"), std::string::npos) << text;
        EXPECT_FALSE(VyxIconTheme::setCurrentCursorThemeName("two\nlines"));
        EXPECT_FALSE(VyxIconTheme::setCurrentCursorThemeName(""));
    }));
}

TEST(CursorThemes, InstalledOnesHaveCursors)
{
    TempHome world;
    world.makeDir("home/.icons/Mine/cursors");
    world.makeDir("usr/share/icons/Mine/cursors");  // the same name again: listed once, the first
    world.makeDir("usr/share/icons/Other/cursors");
    world.writeFile("usr/share/icons/NoCursors/index.theme", "[Icon Theme]\nName=N\n");
    std::vector<std::string> names = VyxIconTheme::getCursorThemeNames();
    std::vector<std::string> paths = VyxIconTheme::getCursorThemePaths();
    // The system's own cursor themes follow ours.
    ASSERT_GE(names.size(), 2u);
    ASSERT_EQ(paths.size(), names.size());
    EXPECT_EQ(std::vector<std::string>(names.begin(), names.begin() + 2), (std::vector<std::string> {"Mine", "Other"}));
    EXPECT_EQ(paths[0], world.home() + "/.icons/Mine");
    EXPECT_EQ(paths[1], world.path("usr/share/icons/Other"));
    EXPECT_EQ(std::count(names.begin(), names.end(), "Mine"), 1);
    EXPECT_EQ(std::count(names.begin(), names.end(), "NoCursors"), 0);
}

}  // namespace
