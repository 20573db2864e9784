// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

// A theme's lookups take what its directories hold from its icon-theme.cache,
// one name at a time: a cache damaged at one name, or a theme installed anew
// under a running process with the same directory times, must still give
// the answers the disk gives.

#include "core/spawn_p.h"
#include "support/files.h"
#include "support/temp_home.h"
#include "themes/iconfiles_p.h"

#include <vyxicontheme.h>

#include <gtest/gtest.h>

#include <chrono>
#include <cstdio>
#include <thread>

namespace {

using Vyx::detail::IconFiles;
using vyxtest::TempHome;

const time_t kLongAgo = 1600000000;

class CachedTheme : public ::testing::Test {
protected:
    void SetUp() override
    {
        world.writeFile("usr/share/icons/hicolor/index.theme", "[Icon Theme]\nName=Hicolor\nDirectories=\n");
        own = world.path("usr/share/icons/own");
    }
    void TearDown() override { IconFiles::recheckInterval = 2'000'000'000; }

    // The theme "own" holding icons in 48x48/apps, with its cache, every
    // directory dated kLongAgo (older than the cache).
    void install(const std::vector<std::string>& icons)
    {
        world.writeFile("usr/share/icons/own/index.theme",
                        "[Icon Theme]\nName=Own\nDirectories=48x48/apps\n[48x48/apps]\nType=Fixed\n");
        for (const std::string& icon : icons)
            world.writeFile("usr/share/icons/own/48x48/apps/" + icon + ".png", "icon");
        auto run = Vyx::detail::runProgram(
            {"/usr/bin/gtk-update-icon-cache", "--force", "--ignore-theme-index", "--quiet", own}, 4096);
        ASSERT_TRUE(run.started);
        ASSERT_EQ(run.exitStatus, 0);
        for (const char* dir : {"", "/48x48", "/48x48/apps"})
            ASSERT_TRUE(vyxtest::setMtime(own + dir, kLongAgo)) << dir;
    }

    TempHome world;
    std::string own;
};

void writeBe32(std::string& bytes, size_t offset, uint32_t value)
{
    for (int i = 0; i < 4; ++i)
        bytes[offset + size_t(i)] = char(value >> (24 - 8 * i));
}

TEST_F(CachedTheme, CacheDamagedAtOneNameIsNoLongerBelieved)
{
    install({"broken", "fine"});
    // An icon the cache does not know in a directory that looks no newer.
    world.writeFile("usr/share/icons/own/48x48/apps/unlisted.png", "icon");
    ASSERT_TRUE(vyxtest::setMtime(own + "/48x48/apps", kLongAgo));
    const std::string cachePath = own + "/icon-theme.cache";
    std::string cache = vyxtest::readFile(cachePath);
    // The entry naming "broken" gets an image list past the end of the file.
    const size_t name = cache.find(std::string("broken", 7));
    ASSERT_NE(name, std::string::npos);
    size_t entry = 0;
    for (size_t at = 4; at + 8 <= cache.size() && !entry; at += 4) {
        const auto* p = reinterpret_cast<const unsigned char*>(cache.data() + at);
        if ((uint32_t(p[0]) << 24 | uint32_t(p[1]) << 16 | uint32_t(p[2]) << 8 | p[3]) == name)
            entry = at - 4;
    }
    ASSERT_NE(entry, 0u);
    writeBe32(cache, entry + 8, 0x10000000);
    world.writeFile("usr/share/icons/own/icon-theme.cache", cache);

    testing::internal::CaptureStderr();
    VyxIconTheme theme("own", "", true);
    ASSERT_TRUE(theme.hasValidCache());
    EXPECT_EQ(theme.getIconPath("fine", 48, nullptr), own + "/48x48/apps/fine.png");
    EXPECT_EQ(theme.getIconPath("broken", 48, nullptr), own + "/48x48/apps/broken.png");
    EXPECT_FALSE(theme.hasValidCache());
    // While believed, the cache said the directory holds no such icon.
    EXPECT_EQ(theme.getIconPath("unlisted", 48, nullptr), own + "/48x48/apps/unlisted.png");
    const std::string messages = testing::internal::GetCapturedStderr();
    EXPECT_NE(messages.find("libvyxcore: cache " + cachePath + " read hash length failed\n"), std::string::npos)
        << messages;
    EXPECT_NE(messages.find("libvyxcore: invalid read cache of " + own + ", empty=1\n"), std::string::npos) << messages;
}

TEST_F(CachedTheme, ThemeInstalledAnewIsSeenAfterTheRecheckInterval)
{
    IconFiles::recheckInterval = 20'000'000;  // 20 ms
    install({"old"});
    VyxIconTheme theme("own", "", true);
    EXPECT_EQ(theme.getIconPath("old", 48, nullptr), own + "/48x48/apps/old.png");
    EXPECT_EQ(theme.getIconPath("new", 48, nullptr), "");

    // Replaced as a package update does it: the old tree moved away, the
    // new one in its place with the same directory times.
    ASSERT_EQ(std::rename(own.c_str(), (own + "-old").c_str()), 0);
    install({"new"});
    std::this_thread::sleep_for(std::chrono::milliseconds(60));
    EXPECT_EQ(theme.getIconPath("new", 48, nullptr), own + "/48x48/apps/new.png");
    EXPECT_EQ(theme.getIconPath("old", 48, nullptr), "");
}

}  // namespace
