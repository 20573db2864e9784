// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

// Icon themes built in a temporary data directory: the index model, the
// lookup order (own directories, parents with hicolor last, bigger sizes,
// generic names), the switches, the current-theme settings, the size
// tables and the cursor themes. The installed themes are asked with the MIME
// icons.

#include "support/child_process.h"
#include "support/temp_home.h"
#include "support/text_checks.h"

#include <vyxicontheme.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <thread>
#include <unistd.h>

namespace {

using vyxtest::Mount;
using vyxtest::ScopedEnv;
using vyxtest::TempHome;

class Themes : public ::testing::Test {
protected:
    // A theme under the data directory's icons, with the given index text
    // after the main group's header, and files (paths relative to the theme).
    std::string theme(const std::string& name, const std::string& index, const std::vector<std::string>& files = {})
    {
        std::string dir = "usr/share/icons/" + name;
        world.writeFile(dir + "/index.theme", "[Icon Theme]\n" + index);
        for (const std::string& file : files)
            world.writeFile(dir + "/" + file, "icon");
        return world.path(dir);
    }
    void SetUp() override
    {
        theme("hicolor", "Name=Hicolor\nDirectories=48x48/apps\n[48x48/apps]\nType=Threshold\n",
              {"48x48/apps/only-hicolor.png", "48x48/apps/both.png"});
        theme("parent", "Name=Parent\nDirectories=48x48/apps\n[48x48/apps]\nType=Threshold\n", {"48x48/apps/both.png"});
    }

    TempHome world;
};

TEST_F(Themes, IndexModelAndInheritanceCycles)
{
    ScopedEnv language("LANGUAGE", "de");
    // Written before the first theme is loaded: where each theme lives is
    // looked up once.
    theme("a", "Name=Alpha\nInherits=b\nDirectories=\n");
    theme("b", "Name=Beta\nInherits=c,hicolor\nDirectories=\n");
    theme("c", "Name=Gamma\nInherits=a\nDirectories=\n");
    theme("own",
          "Name=Own\nName[de]=Eigen\nComment=Mine\nHidden=TRUE\nExample=folder\n"
          "Directories=48x48/apps,scalable/apps,missing/apps;16x16/actions\n"
          "[48x48/apps]\nType=Fixed\nContext=Applications\n"
          "[scalable/apps]\nType=Scalable\nMinSize=8\nMaxSize=512\n"
          "[16x16/actions]\nSize=16\nThreshold=5\nType=Threshold\n",
          {"48x48/apps/a.png", "scalable/apps/b.svg", "16x16/actions/c.png"});
    VyxIconTheme own("own", "", false);
    EXPECT_FALSE(own.load());  // loaded, but scalable/apps has no size
    ASSERT_TRUE(own.isLoaded());
    EXPECT_TRUE(own.load());  // at once: loaded already
    EXPECT_EQ(own.name(), "Own");
    EXPECT_EQ(own.localName(), "Eigen");
    EXPECT_FALSE(own.hidden());  // "TRUE" holds no "rue"
    EXPECT_EQ(own.inheritedNames(), std::vector<std::string> {"hicolor"});
    ASSERT_EQ(own.parents().size(), 1u);
    EXPECT_EQ(own.parents()[0].themeName(), "hicolor");
    EXPECT_TRUE(own.parents()[0].inheritedNames().empty());
    ASSERT_EQ(own.subdirs().size(), 3u);  // the missing directory is skipped
    EXPECT_EQ(own.subdirs()[0].size(), 48);
    EXPECT_EQ(own.subdirs()[0].maxSize(), 48);
    EXPECT_EQ(own.subdirs()[1].size(), 0);  // no Size and no "NxN" name
    EXPECT_EQ(own.subdirs()[2].threshold(), 5);
    EXPECT_TRUE(own.subdirs()[2].matchesSize(21));
    EXPECT_FALSE(own.subdirs()[2].matchesSize(22));
    EXPECT_TRUE(own.subdirs()[1].matchesSize(512));
    EXPECT_FALSE(own.subdirs()[0].matchesSize(47));

    // A theme written back reads the same.
    own.setComment("Changed");
    own.setHidden(true);
    ASSERT_TRUE(own.save());
    VyxIconTheme again("own", "", true);
    EXPECT_EQ(again.comment(), "Changed");
    EXPECT_TRUE(again.hidden());
    EXPECT_EQ(again.subdirs().size(), 3u);
    EXPECT_EQ(again.localName(), "Eigen");  // keys the model does not write survive

    // Inheritance cycles end.
    VyxIconTheme a("a", "", true);
    ASSERT_TRUE(a.isLoaded());
    ASSERT_EQ(a.parents().size(), 1u);
    const VyxIconTheme& b = a.parents()[0];
    ASSERT_EQ(b.parents().size(), 2u);
    EXPECT_TRUE(b.parents()[0].parents().empty());  // c does not load a again
    EXPECT_EQ(a.getIconPath("only-hicolor", 48, nullptr),
              world.path("usr/share/icons/hicolor/48x48/apps/only-hicolor.png"));
}

TEST_F(Themes, LookupOrder)
{
    std::string own = theme("own",
                            "Name=Own\nInherits=hicolor,parent\n"
                            "Directories=48x48/apps,48x48/actions,128x128/apps\n"
                            "[48x48/apps]\nType=Fixed\nContext=Applications\n"
                            "[48x48/actions]\nType=Fixed\nContext=Actions\n"
                            "[128x128/apps]\nType=Fixed\nContext=Applications\n",
                            {"48x48/apps/mine.png", "48x48/apps/mine.svg", "48x48/actions/edit.png",
                             "128x128/apps/huge.png", "48x48/apps/text.png"});
    testing::internal::CaptureStderr();
    VyxIconTheme theme("own", "", true);
    EXPECT_EQ(theme.getIconPath("mine", 48, nullptr), own + "/48x48/apps/mine.png");  // .png before .svg
    EXPECT_EQ(theme.getIconPath("mine", 48, "Actions"), own + "/48x48/apps/mine.png");  // context retried without
    EXPECT_EQ(theme.getIconPath("mine", 0, nullptr), own + "/48x48/apps/mine.png");  // 32 fails, the bigger 48 finds it
    EXPECT_EQ(theme.getIconPath("huge", 64, nullptr), own + "/128x128/apps/huge.png");
    // hicolor comes last although Inherits names it first.
    EXPECT_EQ(theme.getIconPath("both", 48, nullptr), world.path("usr/share/icons/parent/48x48/apps/both.png"));
    EXPECT_EQ(theme.getIconPath("only-hicolor", 48, nullptr),
              world.path("usr/share/icons/hicolor/48x48/apps/only-hicolor.png"));
    // A theme without a cache is named once per process, not per lookup.
    const std::string messages = testing::internal::GetCapturedStderr();
    const std::string complaint = "libvyxcore: invalid cache of " + own + "\n";
    EXPECT_HAS(messages, complaint);
    EXPECT_EQ(messages.find(complaint), messages.rfind(complaint));
    // Generic names: cut at the last "-", but not into the application and
    // MIME directories.
    EXPECT_EQ(theme.getIconPath("edit-paste-special", 48, "Actions"), own + "/48x48/actions/edit.png");
    EXPECT_EQ(theme.getIconPath("text-x-foo", 48, nullptr), "");
    EXPECT_EQ(theme.getIconPath("mine.png", 48, nullptr), own + "/48x48/apps/mine.png");
    EXPECT_EQ(theme.getIconPath((own + "/48x48/apps/mine.svg").c_str(), 48, nullptr), own + "/48x48/apps/mine.svg");
    EXPECT_EQ(theme.getIconPath("", 48, nullptr), "");
    EXPECT_EQ(theme.getIconPath(nullptr, 48, nullptr), "");

    // A remembered answer whose file has gone is not searched again.
    ASSERT_EQ(unlink((own + "/48x48/apps/mine.png").c_str()), 0);
    EXPECT_EQ(theme.getIconPath("mine", 48, nullptr), "");
    EXPECT_EQ(VyxIconTheme("own", "", true).getIconPath("mine", 48, nullptr), own + "/48x48/apps/mine.svg");

    std::string context;
    EXPECT_EQ(VyxIconTheme::CheckFullPath("own/48x48/actions/edit.png", &context), own + "/48x48/actions/edit.png");
    EXPECT_EQ(context, "Actions");
}

TEST_F(Themes, SwitchesTurnStagesOff)
{
    ScopedEnv noGeneric("VYX_ICON_NO_SEARCH_GENERIC", "1");
    ScopedEnv noBigger("VYX_ICON_NO_SEARCH_BIGGER", "1");
    ScopedEnv hicolorInPlace("VYX_ICON_SEARCH_HICOLOR_NOT_LAST", "1");
    ScopedEnv cacheSize("VYX_ICON_THEME_CACHE_SIZE", "Max");
    std::string own = theme("own",
                            "Name=Own\nInherits=hicolor,parent\nDirectories=48x48/actions\n"
                            "[48x48/actions]\nType=Fixed\nContext=Actions\n",
                            {"48x48/actions/edit.png"});
    testing::internal::CaptureStderr();
    VyxIconTheme theme("own", "", true);
    EXPECT_HAS(testing::internal::GetCapturedStderr(), "VYX_ICON_THEME_CACHE_SIZE=Max, cache size = 5000\n");
    EXPECT_EQ(theme.getIconPath("edit-paste", 48, "Actions"), "");
    EXPECT_EQ(theme.getIconPath("edit", 0, nullptr), "");
    EXPECT_EQ(theme.getIconPath("both", 48, nullptr), world.path("usr/share/icons/hicolor/48x48/apps/both.png"));
}

TEST(CurrentThemes, SettingsFileAndTrayColours)
{
    TempHome world;
    EXPECT_EQ(VyxIconTheme::getCurrentThemeName(), "vyx-orvel");
    world.writeFile("home/.vyx/theme/current.themerc",
                    "[Variables]\nIconTheme=Own\nUseTrayIconTheme=auto\nTaskbarColor=PrimaryDarkColor\n");
    EXPECT_EQ(VyxIconTheme::getCurrentTrayThemeName("#101010"), "vyx-orvel-flat-white");
    EXPECT_EQ(VyxIconTheme::getCurrentTrayThemeName("#F0F0F0"), "vyx-orvel-flat-black");
    // The dark variant of a light primary colour is still light.
    world.writeFile("home/.vyx/theme/paletterc", "[Variables]\nPrimaryColor=#FFFFFF\n");
    EXPECT_EQ(VyxIconTheme::getCurrentTrayThemeName(""), "vyx-orvel-flat-black");
    world.writeFile("home/.vyx/theme/paletterc", "[Variables]\nPrimaryColor=#5682a3\n");
    EXPECT_EQ(VyxIconTheme::getCurrentTrayThemeName(""), "vyx-orvel-flat-white");
    world.writeFile("home/.vyx/theme/current.themerc", "[Variables]\nUseTrayIconTheme=MyTray\n");
    EXPECT_EQ(VyxIconTheme::getCurrentTrayThemeName(""), "MyTray");
    world.writeFile("home/.vyx/theme/current.themerc", "[Variables]\nUseTrayIconTheme=FALSE\n");
    EXPECT_EQ(VyxIconTheme::getCurrentTrayThemeName(""), "");
    EXPECT_EQ(VyxIconTheme::currentTray(Vyx::tagged_bool<ForceLoad_tag>(false), ""), nullptr);
}

// While the configured theme changes, threads asking for the current theme
// each get one that lives on and names a configured theme.
TEST(CurrentThemes, ThreadsAskingWhileTheNameChanges)
{
    TempHome world;
    const std::string settings = world.writeFile("home/.vyx/theme/current.themerc", "[Variables]\nIconTheme=first\n");
    std::vector<std::thread> threads;
    std::vector<int> wrong(3, 0);
    for (int t = 0; t < 3; ++t) {
        threads.emplace_back([&, t] {
            for (int round = 0; round < 300; ++round) {
                VyxIconTheme* theme = VyxIconTheme::current(Vyx::tagged_bool<ForceLoad_tag>(false));
                if (t == 0) {
                    // Swapped in whole, so a read sees one name or the other.
                    world.writeFile("home/.vyx/theme/next",
                                    round % 2 ? "[Variables]\nIconTheme=first\n" : "[Variables]\nIconTheme=second\n");
                    std::rename(world.path("home/.vyx/theme/next").c_str(), settings.c_str());
                }
                const std::string name = theme ? theme->themeName() : std::string();
                wrong[t] += name != "first" && name != "second";
            }
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(wrong, std::vector<int>(3, 0));
}

// The size tables: bounds of each step, where off-by-one slips hide.
TEST(IconSizes, StepsAndTheirBounds)
{
    // dpi and step -> icon size; at step 0 the size changes at 130, 168, 240
    // and 336 dpi.
    const int icons[][3] = {{96, 0, 32},     {129, 0, 32},   {130, 0, 48},  {167, 0, 48},
                            {168, 0, 64},    {239, 0, 64},   {240, 0, 96},  {335, 0, 96},
                            {336, 0, 128},   {1000, 0, 128}, {96, -1, 22},  {96, -2, 16},
                            {96, -1000, 16}, {336, 1, 192},  {336, 2, 256}, {96, 2147483647, 256}};
    for (const auto& [dpi, step, size] : icons)
        EXPECT_EQ(VyxIconTheme::GetIconSizeForDPI(dpi, step), size) << dpi << " " << step;
    EXPECT_EQ(VyxIconTheme::GetFrameTitleSizeForDPI(96, 20), 20);
    EXPECT_EQ(VyxIconTheme::GetFrameTitleSizeForDPI(240, 20), 50);
    EXPECT_EQ(VyxIconTheme::GetFrameBorderSizeForDPI(130, 4), 7);
    EXPECT_EQ(VyxIconTheme::GetFrameBorderSizeForDPI(400, 4), 16);

    const std::pair<int, int> standard[] = {{-5, 16}, {21, 16}, {22, 22}, {31, 22},   {32, 32},   {47, 32},
                                            {48, 48}, {95, 64}, {96, 96}, {191, 128}, {192, 192}, {300, 256}};
    for (auto [size, expected] : standard)
        EXPECT_EQ(VyxIconTheme::GetStandardIconSize(size), expected) << size;
    // Emblem bounds belong to the step below them.
    const std::pair<int, int> emblems[] = {{31, 8},  {32, 16}, {48, 16},  {49, 22}, {64, 22},
                                           {65, 32}, {96, 32}, {128, 48}, {129, 64}};
    for (auto [size, expected] : emblems)
        EXPECT_EQ(VyxIconTheme::GetIconEmblemSize(size), expected) << size;
}

// The current cursor theme from each of its sources in turn (the system's
// own settings files replaced in a private mount namespace), setting it,
// and the installed cursor themes.
TEST(CursorThemes, SourcesInTheirOrderAndTheInstalledOnes)
{
    TempHome world;
    vyxtest::ChildOptions options;
    options.mounts = {Mount::bind(world.makeDir("fake-etc-xresources"), "/etc/X11/Xresources"),
                      Mount::bind(world.makeDir("fake-default-icons"), "/usr/share/icons/default"),
                      Mount::bind(world.makeDir("fake-alternatives"), "/etc/alternatives")};
    symlink("/usr/share/icons/FromAlternatives/cursor.theme", world.path("fake-alternatives/x-cursor-theme").c_str());
    VYX_EXPECT_CHILD(vyxtest::runInChild(options, [&] {
        ScopedEnv noTheme("XCURSOR_THEME", nullptr);
        EXPECT_EQ(VyxIconTheme::getCurrentCursorThemeName(nullptr), "FromAlternatives");
        world.writeFile("fake-default-icons/cursor.theme", "[Icon Theme]\nInherits=FromSystemDefault\n");
        EXPECT_EQ(VyxIconTheme::getCurrentCursorThemeName(nullptr), "FromSystemDefault");
        world.writeFile("home/.icons/default/index.theme", "[Icon Theme]\nInherits= FromUserDefault, Other\n");
        EXPECT_EQ(VyxIconTheme::getCurrentCursorThemeName(nullptr), "FromUserDefault");
        {
            ScopedEnv variable("XCURSOR_THEME", "FromVariable");
            EXPECT_EQ(VyxIconTheme::getCurrentCursorThemeName(nullptr), "FromVariable");
        }
        world.writeFile("fake-etc-xresources/x11-common", "! Xcursor.theme: commented\nXcursor.theme:\tFromSystem\r\n");
        EXPECT_EQ(VyxIconTheme::getCurrentCursorThemeName(nullptr), "FromSystem");
        world.writeFile("home/.Xresources",
                        "*background: grey\nXcursor.themeX: wrong\n*huge: " + std::string(1 << 20, 'h') +
                            "\nXcursor.theme\n  Xcursor.theme :  FromUser\n");
        EXPECT_EQ(VyxIconTheme::getCurrentCursorThemeName(nullptr), "FromUser");

        // Setting it rewrites the user's line and keeps the other resources.
        EXPECT_TRUE(VyxIconTheme::setCurrentCursorThemeName("Chosen"));
        EXPECT_EQ(VyxIconTheme::getCurrentCursorThemeName(nullptr), "Chosen");
        EXPECT_HAS(vyxtest::readFile(world.home() + "/.Xresources"), "*background: grey");
        EXPECT_LACKS(vyxtest::readFile(world.home() + "/.Xresources"), "FromUser");
        EXPECT_FALSE(VyxIconTheme::setCurrentCursorThemeName("two\nlines"));
        EXPECT_FALSE(VyxIconTheme::setCurrentCursorThemeName(""));
    }));

    world.makeDir("home/.icons/Mine/cursors");
    world.makeDir("usr/share/icons/Mine/cursors");  // the same name again: listed once, the first
    world.makeDir("usr/share/icons/Other/cursors");
    world.writeFile("usr/share/icons/NoCursors/index.theme", "[Icon Theme]\nName=N\n");
    std::vector<std::string> names = VyxIconTheme::getCursorThemeNames();
    std::vector<std::string> paths = VyxIconTheme::getCursorThemePaths();
    // The system's own cursor themes follow ours.
    ASSERT_GE(names.size(), 2u);
    ASSERT_EQ(paths.size(), names.size());
    EXPECT_EQ(std::vector<std::string>(names.begin(), names.begin() + 2), (std::vector<std::string> {"Mine", "Other"}));
    EXPECT_EQ(paths[0], world.home() + "/.icons/Mine");
    EXPECT_EQ(paths[1], world.path("usr/share/icons/Other"));
    EXPECT_EQ(std::count(names.begin(), names.end(), "Mine"), 1);
    EXPECT_EQ(std::count(names.begin(), names.end(), "NoCursors"), 0);
}

}  // namespace
