// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

// The user's preferred applications over a written tree of mimeapps.list
// files at every level, and setting a default in the user's list.

#include "support/app_worlds.h"
#include "support/temp_home.h"

#include <vyxmime.h>

#include <gtest/gtest.h>

#include <sys/stat.h>

namespace {

using vyxtest::ScopedEnv;
using vyxtest::TempHome;
using vyxtest::writeApp;
using Strings = std::vector<std::string>;

// The machine's own applications and aliases hidden; the world's MIME
// database knows one alias and one sub-class.
vyxtest::ChildOptions isolated(const TempHome& world)
{
    std::string aliases = world.writeFile("usr/share/mime/aliases", "application/x-foo application/foo\n");
    world.writeFile("usr/share/mime/subclasses", "application/x-child application/foo\n");
    return vyxtest::withoutSystemApps(world, vyxtest::readFile(aliases));
}

Strings ids(const std::vector<VyxMimeApp>& apps)
{
    Strings out;
    for (const VyxMimeApp& a : apps)
        out.push_back(a.id);
    return out;
}

TEST(PreferredApps, EveryLevelInPriorityOrder)
{
    TempHome world;
    ScopedEnv desktop("XDG_CURRENT_DESKTOP", "TestDE:Other");
    for (const char* name : {"a", "b", "c", "e"})
        writeApp(world, "usr/share/applications/" + std::string(name) + ".desktop", "text/plain;");
    writeApp(world, "usr/share/applications/d.desktop", "image/png;");
    writeApp(world, "usr/share/applications/vendor/sub.desktop", "text/plain;");
    writeApp(world, "usr/share/applications/bad.desktop", "text/plain;", "TryExec=vyx-no-such-program\n");
    writeApp(world, "usr/share/applications/hidden.desktop", "text/plain;", "Hidden=true\n");
    writeApp(world, "home/.local/share/applications/u.desktop", "");
    writeApp(world, "usr/share/applications/foo.desktop", "application/foo;");

    world.writeFile("home/.config/testde-mimeapps.list",
                    "[Default Applications]\ntext/plain=missing.desktop;d.desktop;\n"
                    "[Added Associations]\ntext/plain=u.desktop;\n");  // only defaults count here
    world.writeFile("home/.config/mimeapps.list",
                    "[Default Applications]\ntext/plain=bad.desktop;b.desktop\n"
                    "[Added Associations]\ntext/plain=c.desktop;hidden.desktop;../x.desktop;\n"
                    "[Removed Associations]\ntext/plain=a.desktop;\n");
    world.writeFile("etc/xdg/mimeapps.list",
                    "[Default Applications]\ntext/plain=a.desktop\n"
                    "[Added Associations]\ntext/plain=vendor-sub.desktop;\n"
                    "[Removed Associations]\ntext/plain=b.desktop;\n");  // lower: b stays
    world.writeFile("home/.local/share/applications/mimeapps.list",
                    "[Added Associations]\ntext/plain=u.desktop;\n[Removed Associations]\ntext/plain=u.desktop;\n");
    world.writeFile("usr/share/applications/mimeapps.list",
                    "[Default Applications]\nimage/png=b.desktop;\napplication/foo=b.desktop;\n");

    VYX_EXPECT_CHILD(vyxtest::runInChild(isolated(world), [&] {
        std::vector<VyxMimeApp> apps = GetPreferredApplications("text/plain");
        ASSERT_EQ(ids(apps), Strings({"d.desktop", "b.desktop", "c.desktop", "vendor-sub.desktop", "e.desktop"}));
        EXPECT_EQ(apps[0].source, world.path("home/.config/testde-mimeapps.list"));
        EXPECT_EQ(apps[0].group, "Default Applications");
        EXPECT_EQ(apps[2].group, "Added Associations");
        EXPECT_EQ(apps[3].source, world.path("etc/xdg/mimeapps.list"));
        EXPECT_EQ(apps[3].path, world.path("usr/share/applications/vendor/sub.desktop"));
        EXPECT_EQ(apps[4].source, "");
        EXPECT_EQ(apps[4].group, "installed");

        // A list below the data directories still chooses defaults.
        EXPECT_EQ(ids(GetPreferredApplications("image/png")), Strings({"b.desktop", "d.desktop"}));
        // Nothing of its own: the parent text type answers, and says so.
        std::vector<VyxMimeApp> source = GetPreferredApplications("text/x-csrc");
        ASSERT_FALSE(source.empty());
        EXPECT_EQ(source[0].id, "d.desktop");
        EXPECT_EQ(source[0].type, "text/plain");
        // An alias answers as its canonical type, lists included; so does a
        // sub-class of it.
        EXPECT_EQ(ids(GetPreferredApplications("application/x-foo")), Strings({"b.desktop", "foo.desktop"}));
        EXPECT_EQ(ids(GetPreferredApplications("application/x-child")), Strings({"b.desktop", "foo.desktop"}));
        EXPECT_TRUE(GetPreferredApplications("application/x-nobody").empty());
        EXPECT_TRUE(GetPreferredApplications("not a type").empty());
        EXPECT_TRUE(GetPreferredApplications(nullptr).empty());
    }));
}

// Setting a default keeps the rest of the list; damaged lists are never
// rewritten.
TEST(PreferredApps, SetDefaultKeepsTheRestOfTheListAndNeverRewritesADamagedOne)
{
    TempHome world;
    writeApp(world, "usr/share/applications/a.desktop", "text/plain;");
    writeApp(world, "usr/share/applications/b.desktop", "text/plain;");
    const std::string before = "# my settings\n[Default Applications]\nimage/png=x.desktop;\n# keep me\n\n"
                               "[Added Associations]\ntext/plain=b.desktop;a.desktop;\n[X-Other]\nK = v\n"
                               "[Removed Associations]\ntext/plain=a.desktop;c.desktop;\n# trailing\n";
    const std::string list = world.writeFile("home/.config/mimeapps.list", before);

    std::string defaults = "[Default Applications]\ntext/plain=";
    for (int i = 0; i < 1000; ++i)
        defaults += "a" + std::to_string(i) + ".desktop;";
    const std::vector<std::string> damaged = {std::string("[Default Applications]\nx/y=a.desktop\0junk", 40),
                                              "[Default Applications]\nthis line is no key\n",
                                              std::string(5 << 20, '#')};
    VYX_EXPECT_CHILD(vyxtest::runInChild(isolated(world), [&] {
        ASSERT_TRUE(SetDefaultApplication("text/plain", "a.desktop"));
        EXPECT_EQ(vyxtest::readFile(list),
                  "# my settings\n[Default Applications]\nimage/png=x.desktop;\n# keep me\ntext/plain=a.desktop;\n\n"
                  "[Added Associations]\ntext/plain=a.desktop;b.desktop;\n[X-Other]\nK = v\n"
                  "[Removed Associations]\ntext/plain=c.desktop;\n# trailing\n");

        // Refused, and the file left alone.
        std::string now = vyxtest::readFile(list);
        for (const char* id : {"missing.desktop", "../a.desktop", "sub/a.desktop", "a", ".desktop", ""})
            EXPECT_FALSE(SetDefaultApplication("text/plain", id)) << id;
        for (const char* type : {"text", "text/plain\n[x]", "text/pl=ain", "", "a b/c"})
            EXPECT_FALSE(SetDefaultApplication(type, "a.desktop")) << type;
        EXPECT_FALSE(SetDefaultApplication(nullptr, "a.desktop"));
        EXPECT_EQ(vyxtest::readFile(list), now);

        // Damaged lists are never rewritten.
        for (const std::string& text : damaged) {
            world.writeFile("home/.config/mimeapps.list", text);
            EXPECT_FALSE(SetDefaultApplication("text/plain", "a.desktop"));
            EXPECT_EQ(vyxtest::readFile(list), text);
        }
        // A type with a thousand defaults is only long.
        world.writeFile("home/.config/mimeapps.list", defaults + "\n");
        EXPECT_EQ(GetPreferredApplications("text/plain")[0].group, "installed");
        EXPECT_TRUE(SetDefaultApplication("text/plain", "a.desktop"));
        EXPECT_EQ(vyxtest::readFile(list), "[Default Applications]\ntext/plain=a.desktop;\n"
                                           "\n[Added Associations]\ntext/plain=a.desktop;\n");

        unlink(list.c_str());
        ASSERT_EQ(mkfifo(list.c_str(), 0600), 0);
        EXPECT_FALSE(SetDefaultApplication("text/plain", "a.desktop"));  // neither call blocks
        EXPECT_EQ(GetPreferredApplications("text/plain").size(), 2u);
        struct stat st;
        EXPECT_TRUE(lstat(list.c_str(), &st) == 0 && S_ISFIFO(st.st_mode));
        unlink(list.c_str());
        ASSERT_EQ(mkdir(list.c_str(), 0700), 0);
        EXPECT_FALSE(SetDefaultApplication("text/plain", "a.desktop"));
        EXPECT_TRUE(lstat(list.c_str(), &st) == 0 && S_ISDIR(st.st_mode));
        rmdir(list.c_str());
        // No list yet: one is made, and the next question sees it.
        EXPECT_TRUE(SetDefaultApplication("text/plain", "a.desktop"));
        const std::vector<VyxMimeApp> apps = GetPreferredApplications("text/plain");
        ASSERT_FALSE(apps.empty());
        EXPECT_EQ(apps[0].id, "a.desktop");
        EXPECT_EQ(apps[0].group, "Default Applications");
    }));
}

}  // namespace
