// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

// The recent-items folder: ten items at most (also with writers at once),
// refreshed and replaced items, the entries written for files and folders,
// and the result codes.

#include "support/child_process.h"
#include "support/files.h"
#include "support/temp_home.h"

#include <vyxdesktopentry.h>
#include <vyxfileutils.h>
#include <vyxsession.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <sys/stat.h>

namespace {

using vyxtest::TempHome;

const auto kAll = Vyx::tagged_bool<ProgsOnly_tag>(false);
const auto kProgs = Vyx::tagged_bool<ProgsOnly_tag>(true);

class Recents : public ::testing::Test {
protected:
    void SetUp() override { folder = world.makeDir("home/.vyx/startmenu/recents"); }
    VyxDesktopEntry item(const std::string& name) const
    {
        VyxDesktopEntry entry(folder + "/" + name);
        EXPECT_TRUE(entry.load()) << name;
        return entry;
    }
    std::vector<std::string> items() const { return vyxtest::listDir(folder, false); }
    void age(const std::string& name, time_t when) const { vyxtest::setTimes(folder + "/" + name, when, when); }

    TempHome world;
    std::string folder;
};

TEST_F(Recents, TenItemsTheOldestGoesTheSameOneIsRefreshed)
{
    for (int i = 0; i < 10; ++i) {
        std::string file = world.writeFile("home/docs/file" + std::to_string(i) + ".txt", "x");
        ASSERT_EQ(putEntryToRecentsMenu(file.c_str(), "text-x-generic", nullptr, kAll), 0);
        age("file" + std::to_string(i) + ".txt.desktop", 1000 + i * 10);
    }
    age("file4.txt.desktop", 500);  // the oldest
    std::string another = world.writeFile("home/docs/another.txt", "x");
    EXPECT_EQ(putEntryToRecentsMenu(another.c_str(), nullptr, nullptr, kAll), 0);
    std::vector<std::string> now = items();
    EXPECT_EQ(now.size(), 10u);
    EXPECT_EQ(std::count(now.begin(), now.end(), "file4.txt.desktop"), 0);

    // The same file again: still one item, written afresh.
    EXPECT_EQ(putEntryToRecentsMenu(world.path("home/docs/file0.txt").c_str(), nullptr, nullptr, kAll), 0);
    EXPECT_EQ(items().size(), 10u);
    EXPECT_GT(vyxtest::mtimeOf(folder + "/file0.txt.desktop"), 2000);
}

// Four processes recording at once into an empty folder: each may see room
// for one more item at the same moment.
TEST_F(Recents, FourWritersAtOnceKeepTheLimit)
{
    std::vector<std::string> files;
    for (int i = 0; i < 80; ++i)
        files.push_back(world.writeFile("home/docs/f" + std::to_string(i) + ".txt", "x"));
    EXPECT_TRUE(vyxtest::runConcurrently(4, [&](int p) {
        for (int i = 0; i < 20; ++i)
            putEntryToRecentsMenu(files[p * 20 + i].c_str(), nullptr, nullptr, kAll);
    }));
    EXPECT_EQ(items().size(), 10u);
}

TEST_F(Recents, DesktopEntriesFoldersAndPrograms)
{
    std::string editor = world.writeFile("usr/share/applications/editor.desktop",
                                         "[Desktop Entry]\nType=Application\nName=Editor\nExec=editor %f\n");
    world.writeFile("home/.vyx/startmenu/recents/old-editor.desktop",
                    "[Desktop Entry]\nType=Application\nName=Old\nExec=editor %f\n");
    EXPECT_EQ(putEntryToRecentsMenu(editor.c_str(), nullptr, nullptr, kProgs), 1);  // copied
    EXPECT_EQ(items(), std::vector<std::string> {"editor.desktop"});  // the same program's item replaced

    std::string red = world.makeDir("home/red");
    world.writeFile("home/red/.directory", "[Desktop Entry]\nName=Red things\nIcon=folder-red\n");
    std::string plain = world.makeDir("home/plain");
    EXPECT_EQ(putEntryToRecentsMenu(red.c_str(), "ignored", nullptr, kAll), 0);
    EXPECT_EQ(putEntryToRecentsMenu(plain.c_str(), nullptr, nullptr, kAll), 0);
    EXPECT_EQ(item("red.desktop").icon(), "folder-red");
    EXPECT_EQ(item("red.desktop").name(), "Red things");
    EXPECT_EQ(item("plain.desktop").icon(), "folder");
    EXPECT_EQ(item("plain.desktop").name(), "plain");

    // Only programs: a data file and a folder are left out, quietly.
    std::string data = world.writeFile("home/data.bin", "x");
    std::string tool = world.writeFile("home/tool.sh", "#!/bin/sh\n");
    chmod(tool.c_str(), 0755);
    for (const std::string& path : {data, plain, tool})
        EXPECT_EQ(putEntryToRecentsMenu(path.c_str(), nullptr, nullptr, kProgs), 0) << path;
    std::vector<std::string> now = items();
    EXPECT_EQ(std::count(now.begin(), now.end(), "data.bin.desktop"), 0);
    EXPECT_EQ(std::count(now.begin(), now.end(), "tool.sh.desktop"), 1);
}

TEST_F(Recents, ResultCodesAndStrayFiles)
{
    EXPECT_EQ(putEntryToRecentsMenu(nullptr, nullptr, nullptr, kAll), -1);
    EXPECT_EQ(putEntryToRecentsMenu("", nullptr, nullptr, kAll), -1);
    EXPECT_EQ(putEntryToRecentsMenu("relative-name", nullptr, nullptr, kAll), -2);
    EXPECT_EQ(putEntryToRecentsMenu(world.path("home/no-such-file").c_str(), nullptr, nullptr, kAll), -1);
    // Files that are not desktop entries count as items and do no harm.
    for (int i = 0; i < 12; ++i)
        world.writeFile("home/.vyx/startmenu/recents/stray" + std::to_string(i), "not an entry");
    std::string file = world.writeFile("home/one.txt", "x");
    EXPECT_EQ(putEntryToRecentsMenu(file.c_str(), nullptr, nullptr, kAll), 0);
    EXPECT_EQ(items().size(), 10u);  // the oldest strays went, down to the limit
    ASSERT_TRUE(rmdirRecursive(folder.c_str(), Vyx::tagged_bool<InsideOnly_tag>(false),
                               Vyx::tagged_bool<KeepDotDirectoryFile_tag>(false)));
    EXPECT_EQ(putEntryToRecentsMenu(file.c_str(), nullptr, nullptr, kAll), -2);
}

}  // namespace
