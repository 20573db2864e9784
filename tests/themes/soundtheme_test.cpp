// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

// Sound themes built in temporary data directories: the index model, the
// lookup order (profiles, languages, extensions, inheritance with a cycle,
// shorter names, "freedesktop", unthemed files), the current theme from the
// settings file, and where the desktop's own sounds directory stands.

#include "support/child_process.h"
#include "support/temp_home.h"

#include <vyxsoundtheme.h>

#include <gtest/gtest.h>

namespace {

using vyxtest::ScopedEnv;
using vyxtest::TempHome;

class SoundThemes : public ::testing::Test {
protected:
    // Empty files under the system data directory's sounds, by relative path.
    std::string sound(const std::string& relative) { return world.writeFile("usr/share/sounds/" + relative, ""); }
    void theme(const std::string& name, const std::string& mainKeys, const std::string& groups = "")
    {
        world.writeFile("usr/share/sounds/" + name + "/index.theme", "[Sound Theme]\n" + mainKeys + groups);
    }

    TempHome world;
};

TEST_F(SoundThemes, ModelLookupOrderFallbackAndTheCurrentTheme)
{
    ScopedEnv language("LANGUAGE", "de:fr");
    theme("own", "Name=Own\nComment=Mine\nInherits=base;missing\nDirectories=stereo,surround,plain,absent\n",
          "[stereo]\nOutputProfile=stereo\n[surround]\nOutputProfile=5.1\n[plain]\n");
    theme("base", "Name=Base\nInherits=own\nDirectories=stereo\n", "[stereo]\nOutputProfile=stereo\n");
    theme("freedesktop", "Name=Default\nDirectories=stereo\n", "[stereo]\nOutputProfile=stereo\n");
    // A user's copy of a system theme, without an index of its own, adds to it.
    std::string mine = world.writeFile("home/.local/share/sounds/base/stereo/mine.oga", "");
    for (const char* dir :
         {"own/stereo/de", "own/stereo/fr", "own/surround", "own/plain", "base/stereo", "freedesktop/stereo"})
        world.makeDir(std::string("usr/share/sounds/") + dir);
    VyxSoundTheme own("own");
    ASSERT_TRUE(own.isLoaded());
    EXPECT_EQ(own.path(), world.path("usr/share/sounds/own"));
    EXPECT_EQ(own.name(), "Own");
    EXPECT_EQ(own.comment(), "Mine");
    EXPECT_EQ(own.inheritedNames(), (std::vector<std::string> {"base", "missing"}));
    ASSERT_EQ(own.directories().size(), 4u);
    EXPECT_EQ(own.directories()[1].outputProfile, "5.1");
    EXPECT_EQ(own.directories()[2].outputProfile, "stereo") << "no OutputProfile: stereo";
    // The cycle back to "own" ends; an uninstalled parent is left out.
    EXPECT_EQ(own.searchedThemes(), (std::vector<std::string> {"own", "base", "freedesktop"}));

    sound("own/surround/bell.oga");
    std::string bell = sound("base/stereo/bell.wav");
    EXPECT_EQ(own.getSoundPath("bell"), bell) << "other profiles are passed by";
    std::string both = sound("own/plain/both.ogg");
    sound("base/stereo/both.oga");
    EXPECT_EQ(own.getSoundPath("both"), both) << "the theme before its parents";
    for (const char* ext : {".wav", ".ogg"})
        sound(std::string("own/stereo/order") + ext);
    EXPECT_EQ(own.getSoundPath("order"), world.path("usr/share/sounds/own/stereo/order.ogg"));
    sound("own/stereo/order.oga");
    EXPECT_EQ(own.getSoundPath("order"), world.path("usr/share/sounds/own/stereo/order.oga"));

    sound("own/stereo/hello.oga");
    sound("own/stereo/fr/hello.oga");
    EXPECT_EQ(own.getSoundPath("hello"), world.path("usr/share/sounds/own/stereo/fr/hello.oga"));
    sound("own/stereo/de/hello.wav");
    EXPECT_EQ(own.getSoundPath("hello"), world.path("usr/share/sounds/own/stereo/de/hello.wav"));

    // Shorter names are tried in the inherited themes before "freedesktop"
    // is asked, and "freedesktop" before the unthemed files.
    std::string specific = sound("freedesktop/stereo/dialog-error.oga");
    EXPECT_EQ(own.getSoundPath("dialog-error-disk-full"), specific);
    std::string generic = sound("base/stereo/dialog.oga");
    EXPECT_EQ(own.getSoundPath("dialog-error-disk-full"), generic);
    sound("dialog-warning.oga");
    EXPECT_EQ(own.getSoundPath("dialog-warning"), generic);
    std::string loose = sound("message-new.wav");
    EXPECT_EQ(own.getSoundPath("message-new-instant"), loose);

    EXPECT_EQ(own.getSoundPath("mine"), mine);
    for (const char* bad : {"", "stereo/bell", "../sounds/message-new"})
        EXPECT_EQ(own.getSoundPath(bad), "") << bad;
    EXPECT_EQ(own.getSoundPath(nullptr), "");

    // A theme that is not installed, or is no sound theme, ends in "freedesktop".
    const std::string fallback = sound("freedesktop/stereo/bell.oga");
    world.writeFile("usr/share/sounds/icons-only/index.theme", "[Icon Theme]\nName=Icons\n");
    world.writeFile("usr/share/index.theme", "[Sound Theme]\nName=Outside\n");  // what ".." would reach
    for (const char* name : {"not-installed", "icons-only", ".."}) {
        VyxSoundTheme theme(name);
        EXPECT_FALSE(theme.isLoaded()) << name;
        EXPECT_EQ(theme.searchedThemes(), std::vector<std::string> {"freedesktop"}) << name;
        EXPECT_EQ(theme.getSoundPath("bell"), fallback) << name;
    }

    // The current theme comes from the session's settings.
    EXPECT_EQ(VyxSoundTheme::getCurrentThemeName(), "freedesktop");
    world.writeFile("home/.vyx/theme/current.themerc", "[Variables]\nIconTheme=icons\nSoundTheme=ordinary\n");
    world.writeFile("home/.vyx/theme/current.themerc.vyx-tablet", "[Variables]\nSoundTheme=touch\n");
    EXPECT_EQ(VyxSoundTheme::getCurrentThemeName(), "ordinary");
    ScopedEnv session("DESKTOP_SESSION", "vyx-tablet");
    EXPECT_EQ(VyxSoundTheme::getCurrentThemeName(), "touch");
}

TEST_F(SoundThemes, DesktopSoundsDirectoryComesLast)
{
    vyxtest::ChildOptions options;
    options.mounts.push_back(vyxtest::Mount::bind(world.makeDir("desktop-sounds"), "/usr/share/vyx-wm/sounds"));
    world.writeFile("desktop-sounds/freedesktop/index.theme", "[Sound Theme]\nDirectories=stereo\n");
    world.writeFile("desktop-sounds/freedesktop/stereo/login.oga", "");
    world.writeFile("desktop-sounds/startup.wav", "");
    VYX_EXPECT_CHILD(vyxtest::runInChild(options, [&] {
        EXPECT_EQ(VyxSoundTheme("").getSoundPath("login"), "/usr/share/vyx-wm/sounds/freedesktop/stereo/login.oga");
        EXPECT_EQ(VyxSoundTheme("").getSoundPath("startup"), "/usr/share/vyx-wm/sounds/startup.wav");
        std::string installed = sound("startup.oga");
        EXPECT_EQ(VyxSoundTheme("").getSoundPath("startup"), installed);
    }));
}

}  // namespace
