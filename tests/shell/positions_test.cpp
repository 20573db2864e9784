// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

// Desktop icon positions in the desktop's ".directory", from one process and
// from several at once, and the common time stamp of desktop-entry files.

#include "support/child_process.h"
#include "support/files.h"
#include "support/temp_home.h"
#include "support/text_checks.h"

#include <vyxsession.h>

#include <gtest/gtest.h>

#include <unistd.h>
#include <utime.h>

namespace {

using vyxtest::atimeOf;
using vyxtest::mtimeOf;
using vyxtest::TempHome;

TEST(DesktopPositions, SavedOnceRemovedAloneNeverCreatedAndAllKeptByProcessesAtOnce)
{
    TempHome world;
    world.makeDir("home/Desktop");
    EXPECT_FALSE(SaveDesktopItemPosition("a.txt", 1, 2, "HDMI-1"));  // no .directory: not made here
    EXPECT_NE(access(world.path("home/Desktop/.directory").c_str(), F_OK), 0);

    const std::string file =
        world.writeFile("home/Desktop/.directory", "[Desktop Entry]\nIcon=user-desktop\n\n"
                                                   "[IconPosition::other.txt]\nX=5\nY=6\nMonitor=\n");
    ASSERT_TRUE(SaveDesktopItemPosition("a.txt", 10, 20, "HDMI-1"));
    ASSERT_TRUE(SaveDesktopItemPosition("a.txt", -30, 40, ""));
    std::string text = vyxtest::readFile(file);
    EXPECT_EQ(text.find("[IconPosition::a.txt]"), text.rfind("[IconPosition::a.txt]")) << text;
    EXPECT_HAS(text, "X = -30", "Icon");
    EXPECT_LACKS(text, "HDMI-1");

    ASSERT_TRUE(RemoveDesktopItemPosition("a.txt"));
    ASSERT_TRUE(RemoveDesktopItemPosition("never-placed"));
    EXPECT_HAS(vyxtest::readFile(file), "[IconPosition::other.txt]");
    EXPECT_FALSE(SaveDesktopItemPosition(nullptr, 1, 1, ""));

    const int kProcesses = 8, kItems = 15;
    EXPECT_TRUE(vyxtest::runConcurrently(kProcesses, [](int p) {
        for (int i = 0; i < kItems; ++i) {
            if (!SaveDesktopItemPosition(("item-" + std::to_string(p) + "-" + std::to_string(i)).c_str(), p, i, ""))
                _exit(1);
        }
    }));
    text = vyxtest::readFile(file);
    for (int p = 0; p < kProcesses; ++p)
        for (int i = 0; i < kItems; ++i)
            EXPECT_HAS(text, "[IconPosition::item-" + std::to_string(p) + "-" + std::to_string(i) + "]");
}

TEST(DesktopEntryTimes, FollowTheMenuTime)
{
    TempHome world;
    const std::string menutime = world.writeFile("home/.vyx/menutime", "");
    ASSERT_TRUE(vyxtest::setTimes(menutime, 1000000, 2000000));
    const std::string changed = world.writeFile("home/.vyx/startmenu/a/b/changed.desktop", "[Desktop Entry]\n");
    syncDesktopEntryTime(true, changed.c_str(), nullptr);
    EXPECT_EQ(mtimeOf(changed), 2000000);

    const std::string same = world.writeFile("home/.vyx/toolbar/same.desktop", "[Desktop Entry]\n");
    vyxtest::setTimes(same, 5, 2000000);
    const std::string desk = world.writeFile("home/Desktops/one/desk.desktop", "[Desktop Entry]\n");
    const std::string deep = world.writeFile("home/Desktops/one/two/deep.desktop", "[Desktop Entry]\n");
    syncUserDesktopEntriesTime(false, nullptr);
    EXPECT_EQ(atimeOf(same), 2000000);  // only the access time moved
    EXPECT_NE(mtimeOf(desk), 2000000);  // its own time differs: left alone
    syncUserDesktopEntriesTime(true, nullptr);
    EXPECT_EQ(mtimeOf(desk), 2000000);
    EXPECT_NE(mtimeOf(deep), 2000000);  // deeper than the one level searched

    struct utimbuf given = {7, 8};
    syncDesktopEntryTime(true, desk.c_str(), &given);
    EXPECT_EQ(mtimeOf(desk), 8);
    unlink(menutime.c_str());
    syncDesktopEntryTime(true, changed.c_str(), nullptr);  // no menu time: nothing
    EXPECT_EQ(mtimeOf(changed), 2000000);
}

}  // namespace
