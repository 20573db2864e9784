// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

// Lookups answered from the in-memory directory listings must equal the
// lookups that check every candidate on disk (and the installed cache must
// agree with the installed files): on the installed themes, on a
// theme whose listing comes from its icon-theme.cache, and after the disk
// changes under a theme that has already answered or a theme installed anew
// with the same directory times.

#include "core/spawn_p.h"
#include "support/files.h"
#include "support/temp_home.h"
#include "themes/iconfiles_p.h"

#include <vyxfileutils.h>
#include <vyxicontheme.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <map>
#include <random>
#include <set>
#include <thread>
#include <unistd.h>

namespace {

using Vyx::detail::IconFiles;
using vyxtest::ScopedEnv;
using vyxtest::TempHome;

// Restores the listing switches a test changes.
struct ListingSettings {
    ~ListingSettings()
    {
        IconFiles::enabled = true;
        IconFiles::recheckInterval = 2'000'000'000;
    }
};

struct Query {
    std::string name;
    int size;
    const char* context;
};

// The answers of a freshly loaded theme, with or without listings.
std::vector<std::string> answers(const std::string& theme, const std::vector<Query>& queries, bool listings)
{
    IconFiles::enabled = listings;
    VyxIconTheme loaded(theme, "", true);
    std::vector<std::string> result;
    for (const Query& query : queries)
        result.push_back(loaded.getIconPath(query.name.c_str(), query.size, query.context));
    // Asked twice: the second answers come from what the first remembered.
    for (size_t i = 0; i < queries.size(); ++i) {
        std::string again = loaded.getIconPath(queries[i].name.c_str(), queries[i].size, queries[i].context);
        if (again != result[i])
            result[i] += " | again: " + again;
    }
    return result;
}

void expectSameAnswers(const std::string& theme, const std::vector<Query>& queries)
{
    ListingSettings restore;
    std::vector<std::string> onDisk = answers(theme, queries, false);
    std::vector<std::string> listed = answers(theme, queries, true);
    for (size_t i = 0; i < queries.size(); ++i) {
        EXPECT_EQ(listed[i], onDisk[i]) << theme << ": " << queries[i].name << " at " << queries[i].size << " in "
                                        << (queries[i].context ? queries[i].context : "any context");
    }
}

TEST(IconListings, InstalledThemesAnswerAsTheDiskDoes)
{
    TempHome world;
    ScopedEnv dirs("XDG_DATA_DIRS", "/usr/share");
    const std::string adwaita = "/usr/share/icons/Adwaita";
    std::vector<std::string> files;
    GetFileList(&files, adwaita.c_str(), 3, "*.*", Vyx::tagged_bool<FilesOnly_tag>(true));
    std::set<std::string> stems;
    // Where the cache must find each icon: the directories holding an image
    // of its name. Only the last extension goes: "x-symbolic.symbolic.png"
    // is the icon "x-symbolic.symbolic".
    std::map<std::string, std::vector<std::string>> imageDirs;
    for (const std::string& file : files) {
        const size_t slash = file.rfind('/'), dot = file.rfind('.');
        const std::string stem = file.substr(slash + 1, dot - slash - 1);
        stems.insert(stem);
        if (std::set<std::string> {".png", ".svg", ".xpm"}.count(file.substr(dot)) && !stem.empty())
            imageDirs[stem].push_back(file.substr(adwaita.size() + 1, slash - adwaita.size() - 1));
    }
    std::vector<std::string> names(stems.begin(), stems.end());
    std::shuffle(names.begin(), names.end(), std::mt19937(7));
    ASSERT_GT(names.size(), 300u);

    std::vector<Query> queries;
    const char* contexts[] = {nullptr, "Actions", "Applications", "MimeTypes"};
    for (size_t i = 0; i < 240; ++i)
        queries.push_back({names[i], i % 3 == 0 ? 16 : i % 3 == 1 ? 48 : 256, contexts[i % 4]});
    // Names found only by their shorter parts, or nowhere, are the ones that
    // visit every directory, the parents and the places outside themes.
    for (size_t i = 240; i < 270; ++i)
        queries.push_back({names[i] + "-no-such-variant", i % 2 ? 48 : 0, contexts[i % 4]});
    for (const char* name : {"folder.png", "folder.jpg", "edit-copy.svg", "text-x-generic", "xterm-color",
                             "debian-logo", "no-such-icon-at-all", "a", "ab.c"})
        queries.push_back({name, 32, nullptr});
    expectSameAnswers("Adwaita", queries);
    expectSameAnswers("hicolor", queries);

    // The public cache reader, on a cache far bigger than the ones built in
    // the tests, with offsets past 64 KiB, dozens of directories and long
    // chains: every icon in exactly its directories, nothing else, quietly.
    VyxIconCacheGtkReader reader(adwaita);
    ASSERT_TRUE(reader.isValid()) << "the set-up script installs the theme with its cache";
    ASSERT_GT(imageDirs.size(), 1000u);
    testing::internal::CaptureStderr();
    int wrong = 0;
    for (const auto& [name, dirs] : imageDirs) {
        std::vector<const char*> found = reader.lookup(name);
        if ((vyxtest::sorted({found.begin(), found.end()}) != vyxtest::sorted(dirs) ||
             !reader.lookup(name + "-not-installed").empty()) &&
            ++wrong <= 5)
            ADD_FAILURE() << name << ": " << found.size() << " directories, expected " << dirs.size();
    }
    for (const std::string& absent :
         std::vector<std::string> {"edit-copy.png", "edit", "EDIT-COPY", "", std::string("edit-copy\0", 10)})
        EXPECT_TRUE(reader.lookup(absent).empty()) << absent;
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    EXPECT_EQ(wrong, 0);
    EXPECT_TRUE(reader.isValid());
}

class AgedTheme : public ::testing::Test {
protected:
    void SetUp() override
    {
        world.writeFile("usr/share/icons/hicolor/index.theme", "[Icon Theme]\nName=Hicolor\nDirectories=\n");
        install({"48x48/apps/both.png", "48x48/apps/both.svg", "48x48/apps/only-svg.svg", "48x48/apps/abc",
                 "48x48/apps/photo.jpg", "48x48/actions/edit.png", "scalable/apps/big.svg", "48x48/apps/a.b.png"});
    }

    // The theme "own" holding files (relative to it) with its cache. Every
    // directory is an hour old, older than the cache, so the listing may
    // take them from the cache; a theme installed anew gets the same times.
    void install(const std::vector<std::string>& files)
    {
        world.writeFile("usr/share/icons/own/index.theme",
                        "[Icon Theme]\nName=Own\nDirectories=48x48/apps,48x48/actions,scalable/apps,32x32/apps\n"
                        "[48x48/apps]\nType=Fixed\nContext=Applications\n"
                        "[48x48/actions]\nType=Fixed\nContext=Actions\n"
                        "[scalable/apps]\nSize=48\nType=Scalable\nMinSize=8\nMaxSize=512\n"
                        "[32x32/apps]\nType=Fixed\n");
        for (const std::string& file : files)
            world.writeFile("usr/share/icons/own/" + file, "icon");
        world.makeDir("usr/share/icons/own/32x32/apps");  // empty: not in the cache
        auto run = Vyx::detail::runProgram(
            {"/usr/bin/gtk-update-icon-cache", "--force", "--ignore-theme-index", "--quiet", own}, 4096);
        ASSERT_TRUE(run.started);
        ASSERT_EQ(run.exitStatus, 0);
        for (const char* dir :
             {"", "/48x48", "/48x48/apps", "/48x48/actions", "/scalable", "/scalable/apps", "/32x32", "/32x32/apps"})
            ASSERT_TRUE(vyxtest::setMtime(own + dir, aged)) << dir;
    }

    TempHome world;
    const std::string own = world.path("usr/share/icons/own");
    const time_t aged = time(nullptr) - 3600;
    ListingSettings restore;
};

TEST_F(AgedTheme, ListingFromTheCacheAnswersAsTheDiskDoes)
{
    std::vector<Query> queries;
    for (const char* name : {"both", "only-svg", "abc", "photo.jpg", "photo", "edit", "edit-paste", "big", "a.b",
                             "a.b.png", "both-x-y", "missing", "both.png"})
        for (int size : {0, 32, 48, 64})
            for (const char* context : {static_cast<const char*>(nullptr), "Actions", "Applications"})
                queries.push_back({name, size, context});
    expectSameAnswers("own", queries);
}

// A directory changed less than an interval ago may change again within the
// same clock tick: it is checked on disk, not taken from the cache.
TEST_F(AgedTheme, YoungDirectoryIsCheckedOnDisk)
{
    ASSERT_TRUE(vyxtest::setMtime(own + "/48x48/apps", vyxtest::mtimeOf(own + "/icon-theme.cache")));
    VyxIconTheme theme("own", "", true);
    ASSERT_TRUE(theme.hasValidCache());
    EXPECT_EQ(theme.getIconPath("both", 48, nullptr), own + "/48x48/apps/both.png");
    world.writeFile("usr/share/icons/own/48x48/apps/late.png", "icon");
    EXPECT_EQ(theme.getIconPath("late", 48, nullptr), own + "/48x48/apps/late.png");
}

TEST_F(AgedTheme, AThemeInstalledAnewAndChangesOnDiskAreSeenAfterTheRecheckInterval)
{
    IconFiles::recheckInterval = 20'000'000;  // 20 ms
    VyxIconTheme theme("own", "", true);
    EXPECT_EQ(theme.getIconPath("only-svg", 48, nullptr), own + "/48x48/apps/only-svg.svg");
    EXPECT_EQ(theme.getIconPath("new", 48, nullptr), "");

    // Replaced as a package update does it: the old tree moved away, the
    // new one in its place with the same directory times.
    ASSERT_EQ(std::rename(own.c_str(), (own + "-old").c_str()), 0);
    ASSERT_NO_FATAL_FAILURE(install({"48x48/apps/new.png", "48x48/apps/both.png", "48x48/apps/both.svg",
                                     "48x48/actions/edit.png", "scalable/apps/big.svg"}));
    std::this_thread::sleep_for(std::chrono::milliseconds(60));
    EXPECT_EQ(theme.getIconPath("new", 48, nullptr), own + "/48x48/apps/new.png");
    EXPECT_EQ(theme.getIconPath("only-svg", 48, nullptr), "");
    EXPECT_EQ(theme.getIconPath("both", 48, nullptr), own + "/48x48/apps/both.png");
    EXPECT_EQ(theme.getIconPath("late", 48, nullptr), "");
    EXPECT_EQ(theme.getIconPath("late-comer", 32, nullptr), "");

    // A new icon in a directory the listing took from the cache, and one in
    // the directory the cache did not know.
    world.writeFile("usr/share/icons/own/48x48/apps/late.png", "icon");
    world.writeFile("usr/share/icons/own/32x32/apps/late-comer.png", "icon");
    // A listed file that goes: its lookup moves on to the next candidate at
    // once, as the check on disk finds it missing.
    ASSERT_EQ(unlink((own + "/48x48/apps/both.png").c_str()), 0);
    EXPECT_EQ(theme.getIconPath("both", 48, "Applications"), own + "/48x48/apps/both.svg");

    std::this_thread::sleep_for(std::chrono::milliseconds(60));
    EXPECT_EQ(theme.getIconPath("late", 48, nullptr), own + "/48x48/apps/late.png");
    // Asked before: the answer "" is not kept past the interval.
    EXPECT_EQ(theme.getIconPath("late-comer", 32, nullptr), own + "/32x32/apps/late-comer.png");
}

TEST_F(AgedTheme, ThreadsShareListingsThatAreReadAgain)
{
    IconFiles::recheckInterval = 1'000'000;  // 1 ms: listings are compared and read again while threads look
    std::vector<const char*> names = {"both", "only-svg", "edit-paste", "big", "a.b", "photo.jpg", "missing", "abc-d"};
    VyxIconTheme single("own", "", true), shared("own", "", true);
    std::vector<std::string> expected;
    for (const char* name : names)
        expected.push_back(single.getIconPath(name, 48, nullptr));
    std::vector<int> mismatches(4, 0);
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t) {
        threads.emplace_back([&, t] {
            for (int round = 0; round < 300; ++round) {
                if (t == 0 && round % 50 == 0)  // a change: the listings are read anew
                    world.writeFile("usr/share/icons/own/32x32/apps/x" + std::to_string(round) + ".png", "icon");
                for (size_t i = 0; i < names.size(); ++i)
                    mismatches[t] += shared.getIconPath(names[i], 48, nullptr) != expected[i];
            }
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(mismatches, std::vector<int>(4, 0));
}

}  // namespace
