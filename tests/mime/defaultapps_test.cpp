// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

// The application catalogue and the applications for a MIME type, over real
// application directories with mimeinfo.cache files made by
// update-desktop-database.

#include "desktopentry/catalogue_p.h"
#include "support/child_process.h"
#include "support/temp_home.h"

#include <vyxmime.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <sys/stat.h>
#include <sys/time.h>

namespace {

using vyxtest::ScopedEnv;
using vyxtest::TempHome;
using Strings = std::vector<std::string>;

const Vyx::tagged_bool<AllDesktopEntries_tag> kFirst(false), kAll(true);

void app(const TempHome& world, const std::string& relative, const std::string& mimeTypes, const char* type = "Application")
{
    world.writeFile(relative, "[Desktop Entry]\nType=" + std::string(type) + "\nName=" + relative +
                                  "\nExec=true\nIcon=icon-" + relative.substr(relative.rfind('/') + 1) +
                                  "\nMimeType=" + mimeTypes + "\n");
}

void updateDatabase(const std::string& dir)
{
    ASSERT_EQ(std::system(("update-desktop-database " + dir + " 2>/dev/null").c_str()), 0);
}

// The machine's own applications and aliases hidden, so only the test's
// directories count.
vyxtest::ChildOptions isolated(const TempHome& world, const std::string& aliases = "")
{
    vyxtest::ChildOptions options;
    options.mounts = {vyxtest::Mount::tmpfs("/usr/share/applications"),
                      vyxtest::Mount::bind(world.writeFile("aliases", aliases), "/usr/share/mime/aliases")};
    return options;
}

void setTime(const std::string& path, time_t seconds)
{
    timeval times[2] = {{seconds, 0}, {seconds, 0}};
    utimes(path.c_str(), times);
}

TEST(Catalogue, DirectoryOrder)
{
    TempHome world;
    world.makeDir("home/.local/share");
    ScopedEnv dataHome("XDG_DATA_HOME", nullptr);
    ScopedEnv dataDirs("XDG_DATA_DIRS", (world.path("usr/share") + ":/usr/share").c_str());
    Strings dirs = GetAllAppDesktopEntrySearchPaths();
    Strings expected = {world.home() + "/.local/share/applications",
                        world.home() + "/.local/share/snapd/desktop/applications",
                        world.home() + "/.local/share/flatpak/exports/share/applications",
                        world.path("usr/share/applications"),
                        "/usr/share/applications",
                        "/usr/local/share/applications",
                        "/var/lib/snapd/desktop/applications",
                        "/var/lib/flatpak/exports/share/applications"};
    EXPECT_EQ(dirs, expected);
}

TEST(Catalogue, SystemDataHomeAddsNoUserDirectory)
{
    TempHome world;
    ScopedEnv dataHome("XDG_DATA_HOME", "/usr/share");
    EXPECT_EQ(GetDesktopEntryFullPath("x.desktop"), "");  // not built yet: nothing is found (kept)
    Strings dirs = GetAllAppDesktopEntrySearchPaths();
    ASSERT_FALSE(dirs.empty());
    EXPECT_EQ(dirs.front(), "/usr/share/applications");  // the data home's own, through the XDG list
    for (const std::string& dir : dirs)
        EXPECT_EQ(dir.find(world.home()), std::string::npos) << dir;
    EXPECT_EQ(Vyx::detail::mimeCachePath(), world.path("run") + "/.vyx-mime-desktop.tbl");
}

TEST(Catalogue, PathsEntriesAndFolders)
{
    TempHome world;
    ScopedEnv dataHome("XDG_DATA_HOME", world.path("home/data").c_str());
    app(world, "home/data/applications/editor.desktop", "text/plain;");
    app(world, "usr/share/applications/editor.desktop", "text/plain;");
    app(world, "usr/share/applications/vendor/tool.desktop", "");
    app(world, "usr/share/applications/link.desktop", "", "Link");
    world.writeFile("usr/share/applications/games.directory", "[Desktop Entry]\nType=Directory\nCategories=Game;\n");
    world.writeFile("usr/share/applications/plain.directory", "[Desktop Entry]\nType=Directory\n");

    EXPECT_EQ(GetDesktopEntryFullPath("/x/y.desktop"), "/x/y.desktop");
    VYX_EXPECT_CHILD(vyxtest::runInChild(isolated(world), [&] {
    Strings paths = GetAllAppDesktopEntryPaths();
    ASSERT_EQ(paths.size(), 4u);
    EXPECT_EQ(paths[0], world.path("home/data/applications/editor.desktop"));  // listed twice, user's first
    EXPECT_EQ(std::count(paths.begin(), paths.end(), world.path("usr/share/applications/editor.desktop")), 1);
    EXPECT_EQ(GetDesktopEntryFullPath("editor.desktop"), paths[0]);
    EXPECT_EQ(GetDesktopEntryFullPath("vendor/tool.desktop"), world.path("usr/share/applications/vendor/tool.desktop"));
    EXPECT_EQ(GetAllAppDesktopEntries().size(), 3u);  // the link is not an application
    // One character more than ".directory" is cut, as it always was.
    EXPECT_EQ(GetAllCategorizedFolderList(), Strings{world.path("usr/share/applications/game")});
    }));
}

TEST(Catalogue, AliasesFile)
{
    TempHome world;
    std::string aliases = world.writeFile("aliases", "# comment\n!x\n\napplication/x-foo application/foo\n"
                                                     "application/x-foo2\t\tapplication/foo\nnoseparator\n");
    vyxtest::ChildOptions options;
    options.mounts = {vyxtest::Mount::bind(aliases, "/usr/share/mime/aliases")};
    VYX_EXPECT_CHILD(vyxtest::runInChild(options, [] {
        EXPECT_EQ(GetMimeAliases("application/foo"), (Strings{"application/x-foo", "application/x-foo2"}));
        EXPECT_TRUE(GetMimeAliases("application/x-foo").empty());
    }));
}

TEST(DefaultApps, FromMimeinfoCacheThenFromTheCacheFile)
{
    TempHome world;
    std::string dir = world.path("usr/share/applications");
    app(world, "usr/share/applications/editor.desktop", "text/plain;text/x-c;");
    app(world, "usr/share/applications/viewer.desktop", "text/plain;image/png;");
    updateDatabase(dir);
    std::string cache = world.path("run") + "/.vyx-mime-desktop.tbl";

    VYX_EXPECT_CHILD(vyxtest::runInChild(isolated(world), [&] {
        Strings all = GetDesktopEntryPathForMime("text/plain", kAll);
        EXPECT_EQ(all.size(), 2u);
        EXPECT_EQ(GetDesktopEntryPathForMime("text/plain", kFirst).size(), 1u);
        EXPECT_EQ(GetDesktopEntryPathForMime("image/png", kAll), Strings{dir + "/viewer.desktop"});
        EXPECT_TRUE(GetDesktopEntryPathForMime("", kAll).empty());
        EXPECT_EQ(vyxtest::readFile(cache), dir + "/editor.desktop=text/plain;text/x-c\n" + dir +
                                                 "/viewer.desktop=image/png;text/plain\n");
    }));
    // A new process whose sources are not newer reads the cache file, in
    // ascending path order; the file is what it trusts.
    world.writeFile("run/.vyx-mime-desktop.tbl", "/from/cache.desktop=text/plain\n" + vyxtest::readFile(cache));
    setTime(cache, time(nullptr) + 10);
    VYX_EXPECT_CHILD(vyxtest::runInChild(isolated(world), [&] {
        EXPECT_EQ(GetDesktopEntryPathForMime("text/plain", kAll),
                  (Strings{"/from/cache.desktop", dir + "/editor.desktop", dir + "/viewer.desktop"}));
        EXPECT_EQ(GetDesktopEntryForMime("image/png", kFirst).front().filePath(), dir + "/viewer.desktop");
    }));
}

TEST(DefaultApps, DirectoryWithoutMimeinfoIsScannedWhenNewer)
{
    TempHome world;
    std::string dir = world.path("usr/share/applications");
    app(world, "usr/share/applications/a.desktop", "text/html;");
    app(world, "usr/share/applications/b.desktop", "text/html;", "Link");  // not an application
    std::string cache = world.writeFile("run/.vyx-mime-desktop.tbl", "/old.desktop=text/html\n");
    setTime(cache, 1000);
    setTime(dir, 2000);
    VYX_EXPECT_CHILD(vyxtest::runInChild(isolated(world), [&] {
        EXPECT_EQ(GetDesktopEntryPathForMime("text/html", kAll), Strings{dir + "/a.desktop"});
    }));
    EXPECT_EQ(vyxtest::readFile(cache), dir + "/a.desktop=text/html\n");
}

TEST(DefaultApps, AliasesWidenTheLookup)
{
    TempHome world;
    std::string dir = world.path("usr/share/applications");
    app(world, "usr/share/applications/foo.desktop", "application/x-foo;");
    app(world, "usr/share/applications/bar.desktop", "application/bar;");
    updateDatabase(dir);
    VYX_EXPECT_CHILD(vyxtest::runInChild(
        isolated(world, "application/x-foo application/foo\napplication/x-bar application/bar\n"), [&] {
        EXPECT_EQ(GetDesktopEntryPathForMime("application/foo", kAll), Strings{dir + "/foo.desktop"});
        EXPECT_EQ(GetDesktopEntryPathForMime("application/x-bar", kAll), Strings{dir + "/bar.desktop"});
    }));
}

TEST(Mimeapps, ListingOrderAndWritableLists)
{
    TempHome world;
    ScopedEnv desktops("XDG_CURRENT_DESKTOP", "A:B");
    for (const char* name : {"home/.config/mimeapps.list", "home/.config/B-mimeapps.list",
                             "home/.config/A-mimeapps.list", "etc/xdg/mimeapps.list",
                             "usr/share/applications/mimeapps.list", "home/.local/share/applications/A-mimeapps.list"})
        world.writeFile(name, "[Added Associations]\n");
    EXPECT_EQ(GetMimeappsLists(),
              (Strings{world.home() + "/.config/A-mimeapps.list", world.home() + "/.config/B-mimeapps.list",
                       world.home() + "/.config/mimeapps.list", world.path("etc/xdg/mimeapps.list"),
                       world.home() + "/.local/share/applications/A-mimeapps.list",
                       world.path("usr/share/applications/mimeapps.list")}));
    EXPECT_EQ(GetWritableMimeappsList(), world.home() + "/.config/mimeapps.list");
    ScopedEnv session("DESKTOP_SESSION", "vyx");
    EXPECT_EQ(GetWritableDesktopMimeappsList(), "");
}

TEST(Mimeapps, DesktopSpecificWritableList)
{
    TempHome world;
    ScopedEnv session("DESKTOP_SESSION", "vyx-mini");
    EXPECT_EQ(GetWritableDesktopMimeappsList(), world.home() + "/.config/vyx-mini-mimeapps.list");
}

TEST(Mimeapps, AssignedApplicationsAndIcons)
{
    TempHome world;
    app(world, "usr/share/applications/editor.desktop", "text/plain;");
    app(world, "usr/share/applications/viewer.desktop", "text/plain;");
    std::string list = world.writeFile("home/.config/mimeapps.list",
                                       "[Default Applications]\ntext/html=viewer.desktop\n"
                                       "[Added Associations]\ntext/plain=viewer.desktop;missing.desktop;editor.desktop;\n");
    world.writeFile("etc/xdg/mimeapps.list", "[Added Associations]\ntext/plain=editor.desktop\n");
    std::vector<VyxDesktopEntry> first = GetAssignedDesktopEntryForMime("text/plain", kFirst);
    ASSERT_EQ(first.size(), 1u);
    EXPECT_EQ(first[0].filePath(), world.path("usr/share/applications/viewer.desktop"));
    EXPECT_EQ(first[0].icon(), "icon-viewer.desktop");
    EXPECT_EQ(GetAssignedDesktopEntryForMime("text/plain", kAll).size(), 3u);
    EXPECT_TRUE(GetAssignedDesktopEntryForMime("text/html", kAll).empty());  // only Added Associations
    EXPECT_EQ(GetAssignedIconForMime("text/plain", Vyx::tagged_bool<AllIcons_tag>(true)),
              (Strings{"icon-viewer.desktop", "icon-editor.desktop", "icon-editor.desktop"}));

    // A newer list is read again.
    world.writeFile("home/.config/mimeapps.list", "[Added Associations]\ntext/plain=editor.desktop\n");
    setTime(list, time(nullptr) + 60);
    EXPECT_EQ(GetAssignedDesktopEntryForMime("text/plain", kFirst)[0].filePath(),
              world.path("usr/share/applications/editor.desktop"));
}

}  // namespace

namespace {

TEST(DefaultApps, BadCachesAndListsGiveDefinedAnswers)
{
    TempHome world;
    std::string dir = world.path("usr/share/applications");
    app(world, "usr/share/applications/ok.desktop", "text/plain;");
    world.writeFile("usr/share/applications/mimeinfo.cache",
                    "[MIME Cache]\ngarbage without equals\n=\ntext/plain=ok.desktop;;\n"
                    "text/huge=" + std::string(20000, 'x') + ".desktop\n\x01\x02\xff=\xfe\n");
    setTime(dir, 1000);
    setTime(dir + "/mimeinfo.cache", 2000);
    // A binary, truncated cache file with lines far beyond 8190 characters.
    std::string binary(30000, '\0');
    for (size_t i = 0; i < binary.size(); ++i)
        binary[i] = static_cast<char>((i * 131) & 0xFF);
    std::string cache = world.writeFile("run/.vyx-mime-desktop.tbl", binary + "/x.desktop=text/plain");
    setTime(cache, 500);  // older than the mimeinfo.cache: rebuilt from it
    std::string list = world.writeFile("home/.config/mimeapps.list", "[Added Associations]\ntext/plain=ok.desktop\n");
    chmod(list.c_str(), 0600);
    world.writeFile("home/.config/B-mimeapps.list", std::string(5000, '\xff'));
    VYX_EXPECT_CHILD(vyxtest::runInChild(isolated(world), [&] {
        EXPECT_EQ(GetDesktopEntryPathForMime("text/plain", kAll), Strings{dir + "/ok.desktop"});
        EXPECT_EQ(GetDesktopEntryPathForMime("text/huge", kAll).size(), 1u);
    }));
    // Newer than every source (the hidden system directory is a fresh mount): it is read.
    setTime(cache, time(nullptr) + 100);
    VYX_EXPECT_CHILD(vyxtest::runInChild(isolated(world), [&] {
        EXPECT_EQ(GetDesktopEntryPathForMime("text/plain", kAll), Strings{dir + "/ok.desktop"});
    }));
    world.writeFile("run/.vyx-mime-desktop.tbl", binary);
    setTime(cache, time(nullptr) + 100);
    VYX_EXPECT_CHILD(vyxtest::runInChild(isolated(world), [&] {
        EXPECT_TRUE(GetDesktopEntryPathForMime("text/plain", kAll).empty());
    }));
    vyxtest::ChildOptions unprivileged = isolated(world);
    unprivileged.unprivileged = true;
    ScopedEnv desktops("XDG_CURRENT_DESKTOP", "B");
    VYX_EXPECT_CHILD(vyxtest::runInChild(unprivileged, [&] {
        // The user's list cannot be read and the other is garbage: no assignment.
        EXPECT_TRUE(GetAssignedDesktopEntryForMime("text/plain", kAll).empty());
    }));
}

}  // namespace
