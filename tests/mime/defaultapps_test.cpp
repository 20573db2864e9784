// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

// The application catalogue and the applications for a MIME type, over real
// application directories with mimeinfo.cache files made by
// update-desktop-database.

#include "desktopentry/catalogue_p.h"
#include "support/app_worlds.h"
#include "support/files.h"
#include "support/temp_home.h"

#include <vyxmime.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

using vyxtest::ScopedEnv;
using vyxtest::TempHome;
using vyxtest::writeApp;
using Strings = std::vector<std::string>;

const Vyx::tagged_bool<AllDesktopEntries_tag> kFirst(false), kAll(true);

void updateDatabase(const std::string& dir)
{
    ASSERT_EQ(std::system(("update-desktop-database " + dir + " 2>/dev/null").c_str()), 0);
}

// The cache file of a world whose runtime directory is its own.
std::string runtimeCache(const TempHome& world)
{
    return world.path("run") + "/.vyx-mime-desktop.tbl";
}

// The application lines of a cache file's text, without the sections
// around them.
std::string applicationLines(const std::string& text)
{
    std::string::size_type begin = text.find("\n[Applications]\n");
    if (begin == std::string::npos || text.size() < 6 || text.compare(text.size() - 6, 6, "[End]\n") != 0)
        return "(not a complete cache file)";
    begin += 16;
    return text.substr(begin, text.size() - 6 - begin);
}

// The cache file as the lookups left it, with lines added at the top of
// the applications: a well-formed file, so that only the rule under test
// can turn it away.
std::string plantedCache(const TempHome& world,
                         const std::string& lines = "/evil/evil.desktop=text/plain;application/pdf\n")
{
    std::string text = vyxtest::readFile(runtimeCache(world));
    std::string::size_type at = text.find("[Applications]\n");
    if (at != std::string::npos)
        text.insert(at + 15, lines);
    return text;
}

TEST(Catalogue, DirectoryOrder)
{
    TempHome world;
    world.makeDir("home/.local/share");
    ScopedEnv dataHome("XDG_DATA_HOME", nullptr);
    ScopedEnv dataDirs("XDG_DATA_DIRS", (world.path("usr/share") + ":/usr/share").c_str());
    EXPECT_EQ(
        GetAllAppDesktopEntrySearchPaths(),
        (Strings {world.home() + "/.local/share/applications",
                  world.home() + "/.local/share/snapd/desktop/applications",
                  world.home() + "/.local/share/flatpak/exports/share/applications",
                  world.path("usr/share/applications"), "/usr/share/applications", "/usr/local/share/applications",
                  "/var/lib/snapd/desktop/applications", "/var/lib/flatpak/exports/share/applications"}));
}

TEST(Catalogue, SystemDataHomeAddsNoUserDirectory)
{
    TempHome world;
    ScopedEnv dataHome("XDG_DATA_HOME", "/usr/share");
    EXPECT_EQ(GetDesktopEntryFullPath("x.desktop"), "");  // not built yet: nothing is found (kept)
    // The data home's own first, through the XDG list; nothing under it.
    EXPECT_EQ(
        GetAllAppDesktopEntrySearchPaths(),
        (Strings {"/usr/share/applications", world.path("usr/share/applications"), "/usr/local/share/applications",
                  "/var/lib/snapd/desktop/applications", "/var/lib/flatpak/exports/share/applications"}));
}

TEST(Catalogue, PathsEntriesAndFolders)
{
    TempHome world;
    ScopedEnv dataHome("XDG_DATA_HOME", world.path("home/data").c_str());
    writeApp(world, "home/data/applications/editor.desktop", "text/plain;");
    writeApp(world, "usr/share/applications/editor.desktop", "text/plain;");
    writeApp(world, "usr/share/applications/vendor/tool.desktop", "");
    writeApp(world, "usr/share/applications/link.desktop", "", "", "Link");
    world.writeFile("usr/share/applications/games.directory", "[Desktop Entry]\nType=Directory\nCategories=Game;\n");
    world.writeFile("usr/share/applications/plain.directory", "[Desktop Entry]\nType=Directory\n");

    EXPECT_EQ(GetDesktopEntryFullPath("/x/y.desktop"), "/x/y.desktop");
    VYX_EXPECT_CHILD(vyxtest::runInChild(vyxtest::withoutSystemApps(world), [&] {
        Strings paths = GetAllAppDesktopEntryPaths();
        ASSERT_EQ(paths.size(), 4u);
        EXPECT_EQ(paths[0], world.path("home/data/applications/editor.desktop"));  // listed twice, user's first
        EXPECT_EQ(std::count(paths.begin(), paths.end(), world.path("usr/share/applications/editor.desktop")), 1);
        EXPECT_EQ(GetDesktopEntryFullPath("editor.desktop"), paths[0]);
        EXPECT_EQ(GetDesktopEntryFullPath("vendor/tool.desktop"),
                  world.path("usr/share/applications/vendor/tool.desktop"));
        EXPECT_EQ(GetAllAppDesktopEntries().size(), 3u);  // the link is not an application
        // One character more than ".directory" is cut, as it always was.
        EXPECT_EQ(GetAllCategorizedFolderList(), Strings {world.path("usr/share/applications/game")});
    }));
}

// The first questions of a process are answered from the cache file's text,
// later ones from a map made of it: both read the lines alike, however the
// types hide in paths, in longer types or behind other separators.
TEST(DefaultApps, FromMimeinfoCacheThenFromTheCacheFile)
{
    TempHome world;
    std::string dir = world.path("usr/share/applications");
    writeApp(world, "usr/share/applications/editor.desktop", "text/plain;text/x-c;");
    writeApp(world, "usr/share/applications/viewer.desktop", "text/plain;image/png;");
    updateDatabase(dir);

    VYX_EXPECT_CHILD(vyxtest::runInChild(vyxtest::withoutSystemApps(world), [&] {
        EXPECT_EQ(GetDesktopEntryForMime("image/png", kFirst).front().filePath(), dir + "/viewer.desktop");
        EXPECT_TRUE(GetDesktopEntryPathForMime("", kAll).empty());
        EXPECT_FALSE(GetMimeCacheUse().read);
    }));
    // In ascending path order.
    EXPECT_EQ(applicationLines(vyxtest::readFile(runtimeCache(world))),
              dir + "/editor.desktop=text/plain;text/x-c\n" + dir + "/viewer.desktop=image/png;text/plain\n");
    // A new process whose directories did not change reads the cache file;
    // the file is what it trusts.
    world.writeFile("run/.vyx-mime-desktop.tbl",
                    plantedCache(world, "/p/text/plain=image/png\n/q.desktop=text/plainer;x=text/plain\n"
                                        "/r.desktop=,text/plain,\n/r.desktop=text/plain\nno separator text/plain\n"
                                        "=image/png;text/plain\n"));
    VYX_EXPECT_CHILD(vyxtest::runInChild(vyxtest::withoutSystemApps(world), [&] {
        for (int round = 0; round < 4; ++round) {
            EXPECT_EQ(GetDesktopEntryPathForMime("text/plain", kAll),
                      (Strings {"/r.desktop", "", dir + "/editor.desktop", dir + "/viewer.desktop"}));
            EXPECT_EQ(GetDesktopEntryPathForMime("text/plain", kFirst), Strings {"/r.desktop"});
            EXPECT_EQ(GetDesktopEntryPathForMime("x=text/plain", kAll), Strings {"/q.desktop"});
            EXPECT_EQ(GetDesktopEntryPathForMime("image/png", kAll),
                      (Strings {"/p/text/plain", "", dir + "/viewer.desktop"}));
            EXPECT_TRUE(GetDesktopEntryPathForMime("text/plain;image/png", kAll).empty());
        }
        EXPECT_TRUE(GetMimeCacheUse().read);
    }));
}

// Comments, blank lines, tabs and lines without a separator in the aliases
// file; the aliases widen the lookup both ways.
TEST(DefaultApps, AliasesWidenTheLookup)
{
    TempHome world;
    std::string dir = world.path("usr/share/applications");
    writeApp(world, "usr/share/applications/foo.desktop", "application/x-foo;");
    writeApp(world, "usr/share/applications/bar.desktop", "application/bar;");
    updateDatabase(dir);
    const char aliases[] = "# comment\n!x\n\napplication/x-foo application/foo\napplication/x-foo2\t\tapplication/foo\n"
                           "noseparator\napplication/x-bar application/bar\n"
                           "application/x-foo3 application/foo \r\nlonely \t\n";
    world.writeFile("usr/share/mime/aliases", aliases);  // where the MIME database reads it
    VYX_EXPECT_CHILD(vyxtest::runInChild(vyxtest::withoutSystemApps(world, aliases), [&] {
        EXPECT_EQ(GetMimeAliases("application/foo"),
                  (Strings {"application/x-foo", "application/x-foo2", "application/x-foo3"}));
        EXPECT_TRUE(GetMimeAliases("application/x-foo").empty());
        EXPECT_TRUE(GetMimeAliases("").empty());  // "lonely" names no canonical type
        // The MIME database reads the same text the same way.
        for (const char* alias : {"application/x-foo", "application/x-foo2", "application/x-foo3"})
            EXPECT_STREQ(xdg_mime_unalias_mime_type(alias), "application/foo") << alias;
        EXPECT_STREQ(xdg_mime_unalias_mime_type("lonely"), "lonely");
        EXPECT_EQ(GetDesktopEntryPathForMime("application/foo", kAll), Strings {dir + "/foo.desktop"});
        EXPECT_EQ(GetDesktopEntryPathForMime("application/x-bar", kAll), Strings {dir + "/bar.desktop"});
    }));
}

TEST(Mimeapps, ListingOrderWritableListsAndAssignments)
{
    TempHome world;
    ScopedEnv desktops("XDG_CURRENT_DESKTOP", "A:B");
    for (const char* name : {"home/.config/mimeapps.list", "home/.config/B-mimeapps.list",
                             "home/.config/A-mimeapps.list", "etc/xdg/mimeapps.list",
                             "usr/share/applications/mimeapps.list", "home/.local/share/applications/A-mimeapps.list"})
        world.writeFile(name, "[Added Associations]\n");
    EXPECT_EQ(GetMimeappsLists(),
              (Strings {world.home() + "/.config/A-mimeapps.list", world.home() + "/.config/B-mimeapps.list",
                        world.home() + "/.config/mimeapps.list", world.path("etc/xdg/mimeapps.list"),
                        world.home() + "/.local/share/applications/A-mimeapps.list",
                        world.path("usr/share/applications/mimeapps.list")}));
    EXPECT_EQ(GetWritableMimeappsList(), world.home() + "/.config/mimeapps.list");
    ScopedEnv session("DESKTOP_SESSION", "vyx");
    EXPECT_EQ(GetWritableDesktopMimeappsList(), "");
    ScopedEnv mini("DESKTOP_SESSION", "vyx-mini");  // an empty answer is not kept
    EXPECT_EQ(GetWritableDesktopMimeappsList(), world.home() + "/.config/vyx-mini-mimeapps.list");

    // The lists above are empty: the two below decide alone.
    writeApp(world, "usr/share/applications/editor.desktop", "text/plain;");
    writeApp(world, "usr/share/applications/viewer.desktop", "text/plain;");
    std::string list =
        world.writeFile("home/.config/mimeapps.list",
                        "[Default Applications]\ntext/html=viewer.desktop\n"
                        "[Added Associations]\ntext/plain=viewer.desktop;missing.desktop;editor.desktop;\n");
    world.writeFile("etc/xdg/mimeapps.list", "[Added Associations]\ntext/plain=editor.desktop\n");
    std::vector<VyxDesktopEntry> first = GetAssignedDesktopEntryForMime("text/plain", kFirst);
    ASSERT_EQ(first.size(), 1u);
    EXPECT_EQ(first[0].filePath(), world.path("usr/share/applications/viewer.desktop"));
    EXPECT_TRUE(GetAssignedDesktopEntryForMime("text/html", kAll).empty());  // only Added Associations
    // Every assignment of every list, in their order.
    EXPECT_EQ(GetAssignedIconForMime("text/plain", Vyx::tagged_bool<AllIcons_tag>(true)),
              (Strings {"icon-viewer.desktop", "icon-editor.desktop", "icon-editor.desktop"}));

    // A newer list is read again.
    world.writeFile("home/.config/mimeapps.list", "[Added Associations]\ntext/plain=editor.desktop\n");
    vyxtest::setMtime(list, time(nullptr) + 60);
    EXPECT_EQ(GetAssignedDesktopEntryForMime("text/plain", kFirst)[0].filePath(),
              world.path("usr/share/applications/editor.desktop"));
}

TEST(DefaultApps, BadCachesAndListsGiveDefinedAnswers)
{
    TempHome world;
    std::string dir = world.path("usr/share/applications");
    writeApp(world, "usr/share/applications/ok.desktop", "text/plain;");
    world.writeFile("usr/share/applications/mimeinfo.cache",
                    "[MIME Cache]\ngarbage without equals\n=\ntext/plain=ok.desktop;;\n"
                    "text/huge=" +
                        std::string(20000, 'x') + ".desktop\n\x01\x02\xff=\xfe\n");
    vyxtest::setMtime(dir, 1000);
    vyxtest::setMtime(dir + "/mimeinfo.cache", 2000);
    // A binary, truncated cache file with lines far beyond 8190 characters
    // is not a cache file: ignored and rebuilt.
    std::string binary(30000, '\0');
    for (size_t i = 0; i < binary.size(); ++i)
        binary[i] = static_cast<char>((i * 131) & 0xFF);
    world.writeFile("run/.vyx-mime-desktop.tbl", binary + "/x.desktop=text/plain");
    std::string list = world.writeFile("home/.config/mimeapps.list", "[Added Associations]\ntext/plain=ok.desktop\n");
    chmod(list.c_str(), 0600);
    world.writeFile("home/.config/B-mimeapps.list", std::string(5000, '\xff'));
    VYX_EXPECT_CHILD(vyxtest::runInChild(vyxtest::withoutSystemApps(world), [&] {
        EXPECT_EQ(GetDesktopEntryPathForMime("text/plain", kAll), Strings {dir + "/ok.desktop"});
        EXPECT_EQ(GetDesktopEntryPathForMime("text/huge", kAll).size(), 1u);
        EXPECT_EQ(GetMimeCacheUse().ignored, "not a cache file of this library");
    }));
    vyxtest::ChildOptions unprivileged = vyxtest::withoutSystemApps(world);
    unprivileged.unprivileged = true;
    ScopedEnv desktops("XDG_CURRENT_DESKTOP", "B");
    VYX_EXPECT_CHILD(vyxtest::runInChild(unprivileged, [&] {
        // The user's list cannot be read and the other is garbage: no assignment.
        EXPECT_TRUE(GetAssignedDesktopEntryForMime("text/plain", kAll).empty());
    }));
}

// Another user plants a cache in a directory anyone can write and points the
// runtime directory there, or plants one where the runtime directory would
// be missing: the victim answers from the real applications, with a cache
// of its own in a directory made for the user alone.
TEST(DefaultAppsCache, PlaceOfTheFileAndCachesPlantedByAnotherUser)
{
    TempHome world;
    std::string shared = world.makeDir("shared", 01777), foreign = world.makeDir("foreign", 0700);
    ASSERT_EQ(chown(foreign.c_str(), 65534, 65534), 0);
    // The world's own runtime directory is where every other case finds the file.
    for (const std::string& runtime :
         {shared, foreign, std::string("relative/run"), world.path("missing"), world.writeFile("file", "")})
        EXPECT_EQ(Vyx::detail::chooseMimeCachePath(runtime, "/c", "/h"), "/c/vyx/.vyx-mime-desktop.tbl") << runtime;
    EXPECT_EQ(Vyx::detail::chooseMimeCachePath("", "relative", "/h"), "/h/.cache/vyx/.vyx-mime-desktop.tbl");
    EXPECT_EQ(Vyx::detail::chooseMimeCachePath("", "", ""), "");

    std::string dir = world.path("usr/share/applications");
    writeApp(world, "usr/share/applications/editor.desktop", "text/plain;application/pdf;");
    VYX_EXPECT_CHILD(vyxtest::runInChild(vyxtest::withoutSystemApps(world),
                                         [] { GetDesktopEntryPathForMime("text/plain", kFirst); }));
    std::string planted = plantedCache(world);
    world.makeDir("tmp", 01777);  // as the shared temporary directory is
    for (const char* file : {"shared/.vyx-mime-desktop.tbl", "tmp/.vyx-mime-desktop.tbl"})
        ASSERT_EQ(chown(world.writeFile(file, planted).c_str(), 65534, 65534), 0);  // the other user's
    std::remove(runtimeCache(world).c_str());
    const std::string userCache = world.home() + "/.cache/vyx/.vyx-mime-desktop.tbl";
    for (const char* runtime : {static_cast<const char*>("shared"), static_cast<const char*>(nullptr)}) {
        ScopedEnv variable("XDG_RUNTIME_DIR", runtime ? world.path(runtime).c_str() : nullptr);
        VYX_EXPECT_CHILD(vyxtest::runInChild(vyxtest::withoutSystemApps(world), [&] {
            EXPECT_EQ(GetDesktopEntryPathForMime("application/pdf", kAll), Strings {dir + "/editor.desktop"});
            VyxMimeCacheUse use = GetMimeCacheUse();
            EXPECT_EQ(use.path, userCache);
            EXPECT_TRUE(runtime ? use.written : use.read);  // made by the first, believed by the second
        }));
    }
    EXPECT_EQ(vyxtest::fileMode(world.home() + "/.cache/vyx"), 0700u);
    EXPECT_EQ(vyxtest::fileMode(userCache), 0600u);
    EXPECT_EQ(vyxtest::readFile(world.path("tmp/.vyx-mime-desktop.tbl")), planted);  // never written over

    // A cache directory that others could write into is neither read nor
    // written, although the file in it is still intact.
    chmod((world.home() + "/.cache/vyx").c_str(), 0777);
    ScopedEnv noRuntime("XDG_RUNTIME_DIR", nullptr);
    VYX_EXPECT_CHILD(vyxtest::runInChild(vyxtest::withoutSystemApps(world), [&] {
        EXPECT_EQ(GetDesktopEntryPathForMime("text/plain", kFirst), Strings {dir + "/editor.desktop"});
        VyxMimeCacheUse use = GetMimeCacheUse();
        EXPECT_FALSE(use.read || use.written);
        EXPECT_EQ(use.ignored, "in a directory others can write");
    }));
}

// Files under the cache's name that must not be believed, each in a world
// of its own; the answer is the real one and the reason is told.
TEST(DefaultAppsCache, UntrustedFilesAreIgnored)
{
    struct Case {
        const char* name;
        const char* reason;
    };
    const Case cases[] = {
        {"foreign owner", "owned by another user"},
        {"world-writable", "writable by group or others"},
        {"link to another user's file", "a symbolic link"},
        {"directory", "not a regular file"},
        {"fifo", "not a regular file"},
        {"other directory list", "made for other application directories"},
        {"truncated", "cut short"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        TempHome world;
        std::string dir = world.path("usr/share/applications");
        writeApp(world, "usr/share/applications/editor.desktop", "text/plain;");
        writeApp(world, "home/.local/share/applications/mine.desktop", "text/x-mine;");
        VYX_EXPECT_CHILD(vyxtest::runInChild(vyxtest::withoutSystemApps(world),
                                             [] { GetDesktopEntryPathForMime("text/plain", kFirst); }));
        std::string cache = runtimeCache(world), planted = plantedCache(world);
        const std::string name = c.name, other = world.writeFile("other", planted);
        ASSERT_EQ(chown(other.c_str(), 65534, 65534), 0);
        // The planted text over the file just made, then what the case changes.
        world.writeFile("run/.vyx-mime-desktop.tbl",
                        name == "truncated" ? planted.substr(0, planted.size() - 3) : planted);
        if (name == "link to another user's file" || name == "directory" || name == "fifo")
            std::remove(cache.c_str());
        int changed = 0;
        if (name == "foreign owner")
            changed = chown(cache.c_str(), 65534, 65534);
        if (name == "world-writable")
            changed = chmod(cache.c_str(), 0666);
        if (name == "link to another user's file")
            changed = symlink(other.c_str(), cache.c_str());
        if (name == "directory")
            changed = mkdir(cache.c_str(), 0755);
        if (name == "fifo")
            changed = mkfifo(cache.c_str(), 0600);
        ASSERT_EQ(changed, 0);
        ScopedEnv dataHome("XDG_DATA_HOME", name == "other directory list" ? world.path("elsewhere").c_str()
                                                                           : (world.home() + "/.local/share").c_str());
        VYX_EXPECT_CHILD(vyxtest::runInChild(vyxtest::withoutSystemApps(world), [&] {
            EXPECT_EQ(GetDesktopEntryPathForMime("text/plain", kAll), Strings {dir + "/editor.desktop"});
            VyxMimeCacheUse use = GetMimeCacheUse();
            EXPECT_FALSE(use.read);
            EXPECT_EQ(use.ignored, c.reason);
        }));
        // The other user's file is never written through the link.
        EXPECT_EQ(vyxtest::readFile(other), planted);
    }
}

// Directories without a mimeinfo.cache are scanned. Adding to one
// application directory, or seeing the list change, never loses the
// applications of the others: every rebuild reads them all.
TEST(DefaultAppsCache, NoApplicationIsLostWhenAnotherDirectoryChanges)
{
    TempHome world;
    std::string a = world.makeDir("t/a/applications"), b = world.path("t/b/applications");
    writeApp(world, "t/b/applications/appb.desktop", "text/x-b;");
    writeApp(world, "t/a/applications/appa.desktop", "text/x-a;");
    writeApp(world, "t/a/applications/link.desktop", "text/x-a;", "", "Link");  // not an application
    ScopedEnv dataDirs("XDG_DATA_DIRS", (world.path("t/a") + ":" + world.path("t/b")).c_str());
    auto expectBoth = [&](bool read) {
        VYX_EXPECT_CHILD(vyxtest::runInChild(vyxtest::withoutSystemApps(world), [&] {
            EXPECT_EQ(GetDesktopEntryPathForMime("text/x-b", kAll), Strings {b + "/appb.desktop"});
            EXPECT_EQ(GetDesktopEntryPathForMime("text/x-a", kAll), Strings {a + "/appa.desktop"});
            EXPECT_EQ(GetMimeCacheUse().read, read);
        }));
    };
    expectBoth(false);
    expectBoth(true);
    // Within the same second as the cache file was written: still seen.
    world.writeFile("t/a/applications/new.txt", "");
    expectBoth(false);
    expectBoth(true);
}

// A directory of 10,000 applications, and four processes that rebuild the
// cache at once: every reader sees no file or one complete file, never a
// mix, and what is left is believed by the next process.
TEST(DefaultAppsCache, ManyApplicationsAndRebuildsAtOnce)
{
    TempHome world;
    std::string info = "[MIME Cache]\ntext/plain=";
    for (int i = 0; i < 10000; ++i)
        info += "app" + std::to_string(i) + ".desktop;";
    world.writeFile("usr/share/applications/mimeinfo.cache", info + "\n");
    std::string cache = runtimeCache(world);
    const vyxtest::ChildOptions options = vyxtest::withoutSystemApps(world);
    for (int round = 0; round < 3; ++round) {
        std::remove(cache.c_str());
        // Four rebuild, each leaving a mark when done; the fifth reads until
        // all four are.
        EXPECT_TRUE(vyxtest::runConcurrently(5, [&](int i) {
            const std::string done = world.path("done-" + std::to_string(round) + "-");
            if (i < 4) {
                VYX_EXPECT_CHILD(vyxtest::runInChild(options, [] {
                    if (GetDesktopEntryPathForMime("text/plain", kAll).size() != 10000u)
                        _exit(3);
                }));
                close(open((done + std::to_string(i)).c_str(), O_CREAT | O_WRONLY, 0600));
                _exit(::testing::Test::HasFailure() ? 2 : 0);
            }
            size_t seen = 0, finished = 0;
            while (finished < 4) {
                finished = 0;
                for (int other = 0; other < 4; ++other)
                    finished += access((done + std::to_string(other)).c_str(), F_OK) == 0;
                std::string text = vyxtest::readFile(cache);
                if (text.empty())
                    continue;
                std::string lines = applicationLines(text);
                if (std::count(lines.begin(), lines.end(), '\n') != 10000)
                    _exit(4);
                ++seen;
            }
            _exit(seen > 0 ? 0 : 5);
        }));
    }
    // Nothing left half-written beside it.
    EXPECT_EQ(vyxtest::listDir(world.path("run")), Strings {".vyx-mime-desktop.tbl"});
    VYX_EXPECT_CHILD(vyxtest::runInChild(vyxtest::withoutSystemApps(world), [&] {
        EXPECT_EQ(GetDesktopEntryPathForMime("text/plain", kAll).size(), 10000u);
        EXPECT_TRUE(GetMimeCacheUse().read);
    }));
}

}  // namespace
