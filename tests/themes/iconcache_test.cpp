// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

// The icon-theme.cache reader, and a theme that believes it, against caches
// written by the real generator for a small theme built here, then aged or
// damaged on purpose. The installed themes' caches are read with the
// listings' installed themes.

#include "core/spawn_p.h"
#include "support/files.h"
#include "support/temp_home.h"
#include "support/text_checks.h"

#include <vyxicontheme.h>

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <unistd.h>

namespace {

using vyxtest::TempHome;
using Strings = std::vector<std::string>;

const char kGenerator[] = "/usr/bin/gtk-update-icon-cache";
const time_t kThen = 1600000000;

using vyxtest::readBe32;
using vyxtest::setMtime;
using vyxtest::writeBe32;

// The directory names the cache lists, read straight from its bytes.
Strings listedDirs(const std::string& cache)
{
    Strings dirs;
    uint32_t list = readBe32(cache, 8);
    for (uint32_t i = 0; i < readBe32(cache, list); ++i)
        dirs.push_back(cache.c_str() + readBe32(cache, list + 4 + 4 * i));
    return dirs;
}

// The offset of the hash entry for name, found by walking every chain.
uint32_t entryOf(const std::string& cache, const std::string& name)
{
    uint32_t hash = readBe32(cache, 4);
    for (uint32_t i = 0; i < readBe32(cache, hash); ++i)
        for (uint32_t e = readBe32(cache, hash + 4 + 4 * i); uint64_t(e) + 12 <= cache.size(); e = readBe32(cache, e))
            if (name == cache.c_str() + readBe32(cache, e + 4))
                return e;
    return 0;
}

class SmallTheme : public ::testing::Test {
protected:
    void SetUp() override
    {
        for (const char* file :
             {"16x16/apps/a.png", "48x48/apps/a.svg", "48x48/apps/b.xpm", "scalable/apps/a.svg", "scalable/apps/c.png"})
            world.writeFile(std::string("usr/share/icons/own/") + file, "x");
        // Enough names that buckets hold chains of several entries.
        for (int i = 0; i < 60; ++i)
            world.writeFile("usr/share/icons/own/22x22/apps/n" + std::to_string(i) + ".png", "x");
        auto run = Vyx::detail::runProgram({kGenerator, "--force", "--ignore-theme-index", "--quiet", theme}, 4096);
        ASSERT_TRUE(run.started) << kGenerator << " is missing (scripts/setup.sh installs it)";
        ASSERT_EQ(run.exitStatus, 0);
        cache = vyxtest::readFile(cachePath);
        ASSERT_EQ(listedDirs(cache).size(), 4u);
    }

    // Writes bytes as the cache, dates the theme's directories dirTime and
    // the cache cacheTime, and opens a reader; its messages go to *messages.
    std::unique_ptr<VyxIconCacheGtkReader> open(const std::string& bytes, std::string* messages,
                                                time_t cacheTime = kThen + 10, time_t dirTime = kThen)
    {
        world.writeFile("usr/share/icons/own/icon-theme.cache", bytes);
        for (const std::string& dir : listedDirs(cache))
            EXPECT_TRUE(access((theme + "/" + dir).c_str(), F_OK) != 0 || setMtime(theme + "/" + dir, dirTime));
        EXPECT_TRUE(setMtime(theme, dirTime) && setMtime(cachePath, cacheTime));
        std::unique_ptr<VyxIconCacheGtkReader> reader;
        *messages = vyxtest::stderrOf([&] { reader = std::make_unique<VyxIconCacheGtkReader>(theme); });
        return reader;
    }

    std::string lookupMessages(VyxIconCacheGtkReader& reader, const std::string& name, Strings* found = nullptr)
    {
        testing::internal::CaptureStderr();
        const std::vector<const char*> dirs = reader.lookup(name);
        if (found)
            *found = vyxtest::sorted({dirs.begin(), dirs.end()});
        return testing::internal::GetCapturedStderr();
    }

    TempHome world;
    const std::string theme = world.makeDir("usr/share/icons/own"), cachePath = theme + "/icon-theme.cache";
    std::string cache;
};

TEST_F(SmallTheme, RefusesACacheOlderThanItsDirectories)
{
    std::string messages;
    EXPECT_TRUE(open(cache, &messages, kThen, kThen)->isValid()) << "same second";
    EXPECT_FALSE(open(cache, &messages, kThen - 1, kThen)->isValid());
    EXPECT_EQ(messages, "libvyxcore: outdated cache " + cachePath + ", 1599999999 < 1600000000\n");
    EXPECT_FALSE(open(cache.substr(0, 3), &messages)->isValid());
    EXPECT_EQ(messages, "libvyxcore: outdated cache " + cachePath + ", 1600000010 < 1600000000\n");

    world.writeFile("usr/share/icons/own/icon-theme.cache", cache);
    ASSERT_TRUE(setMtime(cachePath, kThen + 10) && setMtime(theme + "/48x48/apps", kThen + 20));
    EXPECT_EQ(vyxtest::stderrOf([&] { EXPECT_FALSE(VyxIconCacheGtkReader(theme).isValid()); }),
              "libvyxcore: theme subdir " + theme + "/48x48/apps is newer than cache " + cachePath +
                  ", 1600000010 < 1600000020\n");

    vyxtest::removeTree(theme + "/scalable/apps");
    auto reader = open(cache, &messages);
    EXPECT_FALSE(reader->isValid());
    EXPECT_EQ(messages, "libvyxcore: no theme subdir " + theme + "/scalable/apps in cache " + cachePath + "\n");
    Strings found;
    EXPECT_EQ(lookupMessages(*reader, "a", &found), "");
    EXPECT_TRUE(found.empty());

    vyxtest::removeTree(cachePath);
    EXPECT_EQ(vyxtest::stderrOf([&] { EXPECT_FALSE(VyxIconCacheGtkReader(theme).isValid()); }),
              "libvyxcore: no cache file " + cachePath + "\n");
}

TEST_F(SmallTheme, DamagedCachesGiveDefinedAnswers)
{
    const uint32_t hash = readBe32(cache, 4), buckets = readBe32(cache, hash), entryA = entryOf(cache, "a");
    const uint32_t images = readBe32(cache, entryA + 8);
    ASSERT_NE(entryA, 0u);
    ASSERT_EQ(readBe32(cache, images), 3u);
    const std::string firstDirOfA = listedDirs(cache).at(readBe32(cache, images + 4) >> 16);
    const uint32_t pastEnd = (static_cast<uint32_t>(cache.size()) + 64) & ~3u;
    const std::string prefix = "libvyxcore: cache " + cachePath;
    struct Damage {
        const char* what;
        std::function<void(std::string&)> damage;
        std::string openMessage = {};  // empty: the reader opens valid
        std::string lookupName = {};  // looked up twice
        std::string lookupMessage = {};  // printed by the first lookup only
        Strings found = {};
    };
    // clang-format off
    const Damage cases[] = {
        {"none", [](std::string&) {}, "", "a", "", Strings {"16x16/apps", "48x48/apps", "scalable/apps"}},
        {"major version 2", [](std::string& b) { b[1] = 2; }, "libvyxcore: can't mmap file " + cachePath + "\n"},
        {"directory name past the end", [&](std::string& b) { writeBe32(b, readBe32(b, 8) + 8, pastEnd); },
         prefix + " has invalid data/size\n"},
        {"directory name without NUL at the end",
         [&](std::string& b) { writeBe32(b, readBe32(b, 8) + 4, uint32_t(b.size())); b += "16x16/apps"; },
         prefix + " has invalid data/size\n"},
        {"no buckets", [&](std::string& b) { writeBe32(b, hash, 0); }, "", "a", prefix + " has invalid hash\n"},
        {"hash table past the end", [&](std::string& b) { writeBe32(b, 4, pastEnd); }, "", "a",
         prefix + " has invalid hash\n"},
        {"buckets point past the end",
         [&](std::string& b) { for (uint32_t i = 0; i < buckets; ++i) writeBe32(b, hash + 4 + 4 * i, pastEnd); },
         "", "a", ""},
        {"chain loops",
         [&](std::string& b) {
             for (uint32_t i = 0; i < buckets; ++i) writeBe32(b, hash + 4 + 4 * i, entryA);
             writeBe32(b, entryA, entryA);
         }, "", "n7", ""},
        {"image list past the end", [&](std::string& b) { writeBe32(b, images, 0x10000000); }, "", "a",
         prefix + " read hash length failed\n"},
        // The second of a's three images; the first is still answered.
        {"directory index out of range", [&](std::string& b) { b[images + 12] = 0x7f; }, "", "a",
         prefix + " read hash item failed\n", Strings {firstDirOfA}},
        {"icon name without NUL at the end",
         [&](std::string& b) { writeBe32(b, entryA + 4, uint32_t(b.size())); b += "a"; }, "", "a", ""},
    };
    // clang-format on
    for (const Damage& c : cases) {
        SCOPED_TRACE(c.what);
        std::string bytes = cache, messages;
        c.damage(bytes);
        auto reader = open(bytes, &messages);
        EXPECT_EQ(messages, c.openMessage);
        EXPECT_EQ(reader->isValid(), c.openMessage.empty());
        if (!reader->isValid())
            continue;
        Strings found;
        EXPECT_EQ(lookupMessages(*reader, c.lookupName, &found), c.lookupMessage);
        EXPECT_EQ(found, c.found);
        EXPECT_EQ(reader->isValid(), c.lookupMessage.empty());
        EXPECT_EQ(lookupMessages(*reader, c.lookupName), "") << "reported once";
    }
    std::string bytes = cache, messages;
    writeBe32(bytes, 8, pastEnd);
    EXPECT_FALSE(open(bytes, &messages)->isValid()) << "directory list past the end";
}

// A theme takes what its directories hold from the cache one name at a time:
// once a name's entry turns out damaged, the disk answers for every name,
// even one the cache left out of a directory that looks no newer.
TEST_F(SmallTheme, ThemeStopsBelievingACacheDamagedAtOneName)
{
    world.writeFile("usr/share/icons/own/index.theme",
                    "[Icon Theme]\nName=Own\nDirectories=22x22/apps\n[22x22/apps]\nType=Fixed\n");
    world.writeFile("usr/share/icons/own/22x22/apps/unlisted.png", "x");
    std::string bytes = cache, messages;
    writeBe32(bytes, entryOf(cache, "n2") + 8, 0x10000000);  // its image list past the end
    open(bytes, &messages);
    testing::internal::CaptureStderr();
    VyxIconTheme own("own", "", true);
    ASSERT_TRUE(own.hasValidCache());
    EXPECT_EQ(own.getIconPath("n1", 22, nullptr), theme + "/22x22/apps/n1.png");
    EXPECT_EQ(own.getIconPath("n2", 22, nullptr), theme + "/22x22/apps/n2.png");
    EXPECT_FALSE(own.hasValidCache());
    EXPECT_EQ(own.getIconPath("unlisted", 22, nullptr), theme + "/22x22/apps/unlisted.png");
    EXPECT_HAS(testing::internal::GetCapturedStderr(), "libvyxcore: invalid read cache of " + theme + ", empty=1\n");
}

}  // namespace
