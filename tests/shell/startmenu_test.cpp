// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

// The start menu built from a generated world: categorized folders in the
// application directories, the user's start-menu tree over a shared one, and
// the machine's own applications hidden behind a tmpfs.

#include "support/child_process.h"
#include "support/temp_home.h"

#include <vyxstartmenu.h>

#include <gtest/gtest.h>

#include <functional>

namespace {

using vyxtest::ScopedEnv;
using vyxtest::TempHome;
using Strings = std::vector<std::string>;

const auto kDropEmpty = Vyx::tagged_bool<IncludeEmptyFolders_tag>(false);
const auto kKeepEmpty = Vyx::tagged_bool<IncludeEmptyFolders_tag>(true);

std::string app(const std::string& name, const std::string& extra = "")
{
    return "[Desktop Entry]\nType=Application\nName=" + name + "\nExec=sh\n" + extra;
}

std::string folder(const std::string& name, const std::string& extra = "")
{
    return "[Desktop Entry]\nType=Directory\nName=" + name + "\n" + extra;
}

Strings folderNames(const MenuFolderDsc& parent)
{
    Strings names;
    for (const MenuFolderDsc& child : parent.folders)
        names.push_back(child.localName);
    return names;
}

Strings appNames(const MenuFolderDsc& parent)
{
    Strings names;
    for (const VyxDesktopEntry& entry : parent.applications)
        names.push_back(entry.localNameOrFallback());
    return names;
}

const MenuFolderDsc* child(const MenuFolderDsc& parent, const std::string& name)
{
    for (const MenuFolderDsc& folder : parent.folders)
        if (folder.name == name)
            return &folder;
    return nullptr;
}

// Runs body where only the test's files are installed.
void inIsolation(const std::function<void()>& body)
{
    vyxtest::ChildOptions options;
    options.mounts = {vyxtest::Mount::tmpfs("/usr/share/applications")};
    VYX_EXPECT_CHILD(vyxtest::runInChild(options, body));
}

// Games and Office collect by category; the user's data directory hides one
// system application and adds a folder of the same name as a system one.
void writeCatalogue(const TempHome& world)
{
    const std::string sys = "usr/share/applications/", user = "home/.local/share/applications/";
    world.writeFile(sys + "Games/.directory",
                    folder("Games", "Name[de]=Spiele\nIcon=applications-games\nCategories=Game;\n"));
    world.writeFile(sys + "Office/.directory", folder("Office", "Name[de]=Buero\nCategories=Office\n"));
    world.writeFile(sys + "Tools/.directory", folder("Tools", "Name[de]=Werkzeuge\nCategories=Utility;\n"));
    world.writeFile(sys + "Science/.directory", folder("Science", "Categories=Science;\n"));
    world.writeFile(sys + "Secret/.directory", folder("Secret", "NoDisplay=true\nCategories=Secret;\n"));
    world.writeFile(user + "Games/.directory", folder("My Games", "Categories=Puzzle;\n"));
    world.writeFile(sys + "chess.desktop", app("Chess", "Name[de]=Schach\nCategories=Game;BoardGame;\n"));
    world.writeFile(sys + "mines.desktop", app("Mines", "Name[de]=Minen\nCategories=Puzzle\n"));
    world.writeFile(sys + "editor.desktop", app("Editor", "Categories=Office;Utility;\n"));
    world.writeFile(sys + "lonely.desktop", app("Lonely"));
    world.writeFile(sys + "spy.desktop", app("Spy", "Categories=Secret;\n"));
    world.writeFile(sys + "calc.desktop", app("Calc", "NoDisplay=true\nCategories=Office;\n"));
    world.writeFile(sys + "ghost.desktop", "[Desktop Entry]\nType=Application\nName=Ghost\nExec=/no/such/ghost\n"
                                           "Categories=Office;\n");
    world.writeFile(sys + "gnome.desktop", app("Gnome", "OnlyShowIn=GNOME;\nCategories=Office;\n"));
    world.writeFile(sys + "kde/viewer.desktop", app("Viewer", "Categories=Office;\n"));
    world.writeFile(sys + "old.desktop", app("Old", "Categories=Game;\n"));
    world.writeFile(user + "old.desktop", app("Old", "Hidden=true\n"));
}

TEST(StartMenu, PlacesApplicationsByCategoriesSortedByTranslatedNames)
{
    TempHome world;
    writeCatalogue(world);
    world.writeFile("usr/share/applications/apple.desktop", app("apple"));
    // The start menu's own folders: one hides a categorized folder, one takes it in.
    world.writeFile("home/.vyx/startmenu/Tools/.directory", folder("Tools", "Hidden=true\n"));
    world.writeFile("home/.vyx/startmenu/Office/.directory", folder("My Office"));
    world.writeFile("home/.vyx/startmenu/Office/memo.desktop", app("Memo"));
    inIsolation([&] {
        MenuFolderDsc root = CreateStartMenu(kDropEmpty);
        // Sorted by name; the empty Science folder and the hidden ones are gone.
        ASSERT_EQ(folderNames(root), (Strings {"My Games", "My Office", "Other"}));

        const MenuFolderDsc& games = root.folders[0];
        EXPECT_EQ(games.directoryFile, world.path("home/.local/share/applications/Games/.directory"));
        EXPECT_EQ(games.icon, "") << "the user's folder describes it, not the system's";
        EXPECT_EQ(appNames(games), (Strings {"Mines"})) << "the user's Games collects only Puzzle; Old is Hidden";
        const MenuFolderDsc& office = *child(root, "Office");
        EXPECT_EQ(office.directoryFile, world.path("home/.vyx/startmenu/Office/.directory"));
        EXPECT_EQ(appNames(office), (Strings {"Editor", "Memo", "Viewer"}));
        // Chess lists no category of a shown folder; Spy's folder is hidden.
        EXPECT_EQ(appNames(*child(root, "Other")), (Strings {"apple", "Chess", "Lonely"}));
        EXPECT_EQ(child(root, "Other")->icon, "applications-other");

        EXPECT_EQ(folderNames(CreateStartMenu(kKeepEmpty)), (Strings {"My Games", "My Office", "Other", "Science"}));
    });

    // Sorted by the translated names (in a new process: the language is read once).
    world.writeFile("home/.local/share/applications/Games/.directory",
                    folder("Games", "Name[de]=Spiele\nCategories=Game;Puzzle;\n"));
    vyxtest::removeTree(world.path("home/.vyx/startmenu"));
    ScopedEnv language("LANGUAGE", "de");
    inIsolation([&] {
        MenuFolderDsc root = CreateStartMenu(kDropEmpty);
        EXPECT_EQ(folderNames(root), (Strings {"Buero", "Other", "Spiele", "Werkzeuge"}));
        EXPECT_EQ(appNames(*child(root, "Games")), (Strings {"Minen", "Schach"}));
        const MenuFolderDsc& tools = *child(root, "Tools");
        EXPECT_EQ(appNames(tools), (Strings {"Editor"})) << "one application, two folders";
        EXPECT_EQ(tools.applications[0].filePath(), world.path("usr/share/applications/editor.desktop"));
        EXPECT_TRUE(tools.applications[0].isLoaded());
        EXPECT_EQ(appNames(*child(root, "Office")), (Strings {"Editor", "Viewer"}));
    });
}

// The user's start-menu tree over the shared one: SortOrder, layering,
// hidden and damaged folders, and directories that are not menu folders.
TEST(StartMenu, FolderTreeOfTheStartMenuDirectories)
{
    TempHome world;
    ScopedEnv shared("VYX_SHARED_STARTMENU_DIR", world.path("shared").c_str());
    const std::string mine = "home/.vyx/startmenu/";
    world.writeFile(mine + ".directory", folder("Start", "SortOrder=Work/;zeta.desktop\n"));
    world.writeFile(mine + "alpha.desktop", app("Alpha"));
    world.writeFile(mine + "zeta.desktop", app("Zeta"));
    world.writeFile(mine + "Work/.directory", folder("Work", "SortOrder=yak;beta.desktop;nothing\n"));
    world.writeFile(mine + "Work/alpha.desktop", app("Alpha"));
    world.writeFile(mine + "Work/beta.desktop", app("Beta mine"));
    world.writeFile(mine + "Work/yak.desktop", app("Yak"));
    world.writeFile(mine + "Work/Deep/.directory", folder("Deep"));
    world.writeFile(mine + "Work/Deep/link.desktop",
                    "[Desktop Entry]\nType=Link\nName=Link\nURL=https://example.org/\n");
    world.writeFile(mine + "Work/Deep/broken-link.desktop", "[Desktop Entry]\nType=Link\nName=Broken\n");
    world.writeFile(mine + "Work/Deep/dir.desktop", "[Desktop Entry]\nType=Directory\nName=NotAnItem\n");
    world.writeFile(mine + "Damaged/.directory", "\x01\x02 not an entry [\n=\n");
    world.writeFile(mine + "Damaged/tool.desktop", app("Tool"));
    world.writeFile(mine + "Gone/.directory", folder("Gone", "Hidden=true\n"));
    world.writeFile(mine + "recents/recent.desktop", app("Recent"));
    world.writeFile("shared/Work/.directory", folder("Shared work", "Icon=shared\n"));
    world.writeFile("shared/Work/beta.desktop", app("Beta shared"));
    world.writeFile("shared/Work/gamma.desktop", app("Gamma"));
    world.writeFile("shared/Gone/.directory", folder("Gone"));
    world.writeFile("shared/Gone/lost.desktop", app("Lost"));
    world.writeFile("shared/Extra/.directory", folder("Extra", "Name[de]=Extras\nIcon=extra\n"));
    world.writeFile("shared/Extra/x.desktop", app("X"));
    inIsolation([&] {
        MenuFolderDsc root = CreateStartMenu(kDropEmpty);
        EXPECT_EQ(root.localName, "Start");
        EXPECT_EQ(folderNames(root), (Strings {"Work", "Damaged", "Extra"}));
        EXPECT_EQ(appNames(root), (Strings {"Zeta", "Alpha"}));

        const MenuFolderDsc& work = root.folders[0];
        EXPECT_EQ(work.directoryFile, world.path(mine + "Work/.directory"));
        EXPECT_EQ(work.icon, "") << "the user's .directory describes the folder";
        EXPECT_EQ(appNames(work), (Strings {"Yak", "Beta mine", "Alpha", "Gamma"}));
        ASSERT_EQ(folderNames(work), (Strings {"Deep"}));
        EXPECT_EQ(appNames(work.folders[0]), (Strings {"Link"}));

        const MenuFolderDsc& damaged = root.folders[1];
        EXPECT_EQ(damaged.localName, "Damaged");
        EXPECT_EQ(damaged.directoryFile, "");
        EXPECT_EQ(appNames(damaged), (Strings {"Tool"}));
        EXPECT_EQ(root.folders[2].icon, "extra");
    });
}

}  // namespace
