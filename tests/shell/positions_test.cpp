// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

// Desktop icon positions in the desktop's ".directory", from one process and
// from several at once, and the common time stamp of desktop-entry files.

#include "support/temp_home.h"

#include <vyxsession.h>

#include <gtest/gtest.h>

#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>
#include <utime.h>

namespace {

using vyxtest::TempHome;

bool has(const std::string& text, const std::string& part)
{
    return text.find(part) != std::string::npos;
}

TEST(DesktopPositions, SavedOnceRemovedAloneNeverCreated)
{
    TempHome world;
    world.makeDir("home/Desktop");
    EXPECT_FALSE(SaveDesktopItemPosition("a.txt", 1, 2, "HDMI-1"));  // no .directory: not made here
    EXPECT_NE(access(world.path("home/Desktop/.directory").c_str(), F_OK), 0);

    const std::string file = world.writeFile("home/Desktop/.directory",
                                             "[Desktop Entry]\nIcon=user-desktop\n\n"
                                             "[IconPosition::other.txt]\nX=5\nY=6\nMonitor=\n");
    ASSERT_TRUE(SaveDesktopItemPosition("a.txt", 10, 20, "HDMI-1"));
    ASSERT_TRUE(SaveDesktopItemPosition("a.txt", -30, 40, ""));
    std::string text = vyxtest::readFile(file);
    EXPECT_EQ(text.find("[IconPosition::a.txt]"), text.rfind("[IconPosition::a.txt]")) << text;
    EXPECT_TRUE(has(text, "X = -30") || has(text, "X=-30")) << text;
    EXPECT_FALSE(has(text, "HDMI-1")) << text;
    EXPECT_TRUE(has(text, "Icon")) << text;

    ASSERT_TRUE(RemoveDesktopItemPosition("a.txt"));
    ASSERT_TRUE(RemoveDesktopItemPosition("never-placed"));
    text = vyxtest::readFile(file);
    EXPECT_FALSE(has(text, "a.txt")) << text;
    EXPECT_TRUE(has(text, "[IconPosition::other.txt]")) << text;
    EXPECT_FALSE(SaveDesktopItemPosition(nullptr, 1, 1, ""));
}

TEST(DesktopPositions, ProcessesSavingAtOnceKeepEveryItem)
{
    TempHome world;
    const std::string file = world.writeFile("home/Desktop/.directory", "[Desktop Entry]\n");
    const int kProcesses = 8, kItems = 15;
    std::vector<pid_t> children;
    for (int p = 0; p < kProcesses; ++p) {
        pid_t pid = fork();
        ASSERT_GE(pid, 0);
        if (pid == 0) {
            bool ok = true;
            for (int i = 0; i < kItems; ++i)
                ok = SaveDesktopItemPosition(("item-" + std::to_string(p) + "-" + std::to_string(i)).c_str(), p, i,
                                             "") && ok;
            _exit(ok ? 0 : 1);
        }
        children.push_back(pid);
    }
    for (pid_t pid : children) {
        int status = 0;
        waitpid(pid, &status, 0);
        EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
    }
    const std::string text = vyxtest::readFile(file);
    int missing = 0;
    for (int p = 0; p < kProcesses; ++p)
        for (int i = 0; i < kItems; ++i)
            missing += !has(text, "[IconPosition::item-" + std::to_string(p) + "-" + std::to_string(i) + "]");
    EXPECT_EQ(missing, 0) << text;
}

TEST(DesktopEntryTimes, FollowTheMenuTime)
{
    TempHome world;
    const std::string menutime = world.writeFile("home/.vyx/menutime", "");
    struct utimbuf stamp = {1000000, 2000000};
    ASSERT_EQ(utime(menutime.c_str(), &stamp), 0);
    auto mtime = [](const std::string& path) {
        struct stat st;
        return stat(path.c_str(), &st) == 0 ? st.st_mtime : -1;
    };
    auto atime = [](const std::string& path) {
        struct stat st;
        return stat(path.c_str(), &st) == 0 ? st.st_atime : -1;
    };

    const std::string changed = world.writeFile("home/.vyx/startmenu/a/b/changed.desktop", "[Desktop Entry]\n");
    syncDesktopEntryTime(false, changed.c_str(), nullptr);  // its own time differs: left alone
    EXPECT_NE(mtime(changed), 2000000);
    syncDesktopEntryTime(true, changed.c_str(), nullptr);
    EXPECT_EQ(mtime(changed), 2000000);
    EXPECT_EQ(atime(changed), 2000000);

    const std::string same = world.writeFile("home/.vyx/toolbar/same.desktop", "[Desktop Entry]\n");
    struct utimbuf sameTimes = {5, 2000000};
    utime(same.c_str(), &sameTimes);
    const std::string desk = world.writeFile("home/Desktops/one/desk.desktop", "[Desktop Entry]\n");
    const std::string deep = world.writeFile("home/Desktops/one/two/deep.desktop", "[Desktop Entry]\n");
    syncUserDesktopEntriesTime(false, nullptr);
    EXPECT_EQ(atime(same), 2000000);  // only the access time moved
    EXPECT_NE(mtime(desk), 2000000);
    syncUserDesktopEntriesTime(true, nullptr);
    EXPECT_EQ(mtime(desk), 2000000);
    EXPECT_NE(mtime(deep), 2000000);  // deeper than the one level searched

    struct utimbuf given = {7, 8};
    syncDesktopEntryTime(true, desk.c_str(), &given);
    EXPECT_EQ(mtime(desk), 8);
    unlink(menutime.c_str());
    syncDesktopEntryTime(true, changed.c_str(), nullptr);  // no menu time: nothing
    EXPECT_EQ(mtime(changed), 2000000);
}

}  // namespace
