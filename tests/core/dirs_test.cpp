// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "support/temp_home.h"

#include <vyxdirs.h>

#include <gtest/gtest.h>

#include <sys/stat.h>
#include <unistd.h>

namespace {

using vyxtest::ScopedEnv;
using vyxtest::TempHome;

TEST(Dirs, HomeFromLognameAndNothingWithoutAnyName)
{
    TempHome world;
    ScopedEnv home("HOME", nullptr), logname("LOGNAME", "alice"), user("USER", "bob");
    EXPECT_EQ(GetVyxDir(HomeDir), "/home/alice");
    EXPECT_EQ(GetVyxDir(VyxHomeDir), "/home/alice/.vyx");

    ScopedEnv noLogname("LOGNAME", ""), noUser("USER", nullptr);
    ResetVyxDirs();
    EXPECT_EQ(GetVyxDir(HomeDir), "");
    EXPECT_EQ(GetVyxDir(VyxHomeDir), "");
    EXPECT_EQ(GetVyxDir(StartMenuDir), "/startmenu");  // formed without a home, as it always was
    EXPECT_EQ(GetVyxDir(ControlPanelDir), "/startmenu/controlpanel");
    EXPECT_EQ(GetVyxDir(CacheDir), world.home() + "/.cache");  // XDG_CACHE_HOME still set
    ScopedEnv noCache("XDG_CACHE_HOME", nullptr), noData("XDG_DATA_HOME", nullptr);
    ResetVyxDirs();
    EXPECT_EQ(GetVyxDir(CacheDir), "");
    EXPECT_EQ(GetVyxDir(TrashFilesDir), "");
}

TEST(Dirs, EmptyAnswersAreRetriedUntilTheyExist)
{
    TempHome world;
    ScopedEnv home("HOME", nullptr), logname("LOGNAME", nullptr), user("USER", nullptr);
    EXPECT_EQ(GetVyxDir(VyxHomeDir), "");
    setenv("HOME", "/later/home", 1);
    // No reset: an empty answer is simply computed again.
    EXPECT_EQ(GetVyxDir(TempDir), world.path("tmp"));
    EXPECT_EQ(GetVyxDir(VyxHomeDir), "/later/home/.vyx");
}

TEST(Dirs, AliasesAndResetFollowingTheEnvironmentButKeepingSharedDirs)
{
    TempHome world;
    ScopedEnv shared("VYX_SHARED_DESKTOP_DIR", "/first/desktop"), help("VYXHELPDIR", "/help");
    EXPECT_EQ(&GetVyxDir(TempDirAlias), &GetVyxDir(TempDir));
    EXPECT_EQ(&vyxGetPath(DesktopDir), &GetVyxDir(DesktopDir));
    EXPECT_EQ(GetVyxDir(static_cast<VyxDir>(30)), "");
    EXPECT_EQ(GetVyxDir(static_cast<VyxDir>(-1)), "");
    EXPECT_EQ(GetVyxDir(SoundsDir), "/usr/share/vyx-wm/sounds");
    EXPECT_EQ(GetVyxDir(TranslationsDir), "/usr/share/vyx/translations");
    EXPECT_EQ(GetVyxDir(HomeDir), world.home());
    EXPECT_EQ(GetVyxDir(SharedDesktopDir), "/first/desktop");
    EXPECT_EQ(GetVyxDir(SharedStartMenuDir), "/usr/share/applications/vyxstartmenu");
    EXPECT_EQ(GetVyxDir(QtHelpDir), "/help/qthelp");

    const std::string& cached = GetVyxDir(HomeDir);
    setenv("HOME", "/elsewhere", 1);
    setenv("VYX_SHARED_DESKTOP_DIR", "/second/desktop", 1);
    setenv("VYX_SHARED_STARTMENU_DIR", "/second/menu", 1);
    unsetenv("VYXHELPDIR");
    EXPECT_EQ(GetVyxDir(HomeDir), world.home());  // cached until reset
    ResetVyxDirs();
    EXPECT_EQ(GetVyxDir(HomeDir), "/elsewhere");
    EXPECT_EQ(&cached, &GetVyxDir(HomeDir));  // the same object, new content
    EXPECT_EQ(GetVyxDir(VyxHomeDir), "/elsewhere/.vyx");
    EXPECT_EQ(GetVyxDir(SharedDesktopDir), "/first/desktop");
    EXPECT_EQ(GetVyxDir(SharedStartMenuDir), "/usr/share/applications/vyxstartmenu");
    EXPECT_EQ(GetVyxDir(QtHelpDir), "/usr/share/doc/vyx/qthelp");
    setenv("HOME", world.home().c_str(), 1);
}

TEST(Dirs, UserDirectoriesAndTheirFallbacks)
{
    TempHome world;
    world.writeFile("home/.config/user-dirs.dirs", "XDG_MUSIC_DIR=\"$HOME/Tunes\"\n");
    EXPECT_EQ(GetVyxDir(MusicDir), world.home() + "/Tunes");
    EXPECT_EQ(GetVyxDir(DesktopDir), world.home() + "/Desktop");
    EXPECT_EQ(GetVyxDir(VideosDir), world.home());  // no entry: the home itself
    EXPECT_EQ(GetVyxDir(DocumentsDir), world.home());
    EXPECT_EQ(GetVyxDir(TrashFilesDir), world.home() + "/.local/share/Trash/files");
}

TEST(Dirs, KioskSessionSelectsSystemThemeAndToolbar)
{
    TempHome world;
    std::string toolbar = world.makeDir("kiosk-toolbar");
    ScopedEnv session("DESKTOP_SESSION", "vyx-kiosk");
    ScopedEnv rc("VYX_RC_FILE", "/usr/share/vyx-wm/kiosk/settings.rc");
    ScopedEnv bar("VYX_KIOSK_TOOLBAR_DIR", toolbar.c_str());
    EXPECT_EQ(GetVyxDir(ThemeDir), "/usr/share/vyx-wm/theme");
    EXPECT_EQ(GetVyxDir(KioskToolbarDir), toolbar);

    ResetVyxDirs();
    setenv("VYX_RC_FILE", "/etc/settings.rc", 1);
    setenv("VYX_KIOSK_TOOLBAR_DIR", "/does/not/exist", 1);
    EXPECT_EQ(GetVyxDir(ThemeDir), world.home() + "/.vyx/theme");
    EXPECT_EQ(GetVyxDir(KioskToolbarDir), world.home() + "/.vyx/toolbar");
}

TEST(Dirs, OrdinarySessionIgnoresKioskSettings)
{
    TempHome world;
    ScopedEnv session("DESKTOP_SESSION", "vyx");
    ScopedEnv rc("VYX_RC_FILE", "/usr/share/vyx-wm/settings.rc");
    ScopedEnv bar("VYX_KIOSK_TOOLBAR_DIR", world.root().c_str());
    EXPECT_EQ(GetVyxDir(ThemeDir), world.home() + "/.vyx/theme");
    EXPECT_EQ(GetVyxDir(KioskToolbarDir), world.home() + "/.vyx/toolbar");
}

TEST(XdgDirs, FindAndListTheUserDirectoryFirstThenTheSystemList)
{
    TempHome world;
    std::string system = world.makeDir("etc/xdg/autostart");
    // The user's directory cannot be made (no .config), so the system one answers.
    EXPECT_EQ(autostartDir(), system);
    EXPECT_EQ(GetVyxDir(AutostartDir), system);
    world.makeDir("home/.config");
    EXPECT_EQ(findInXDGConfigDirs("autostart"), world.home() + "/.config/autostart");
    EXPECT_EQ(findInXDGDataDirs("nothing-here"), "");
    ScopedEnv dirs("XDG_CONFIG_DIRS", "/a::/b");
    EXPECT_EQ(xdgConfigDirs("x"), (std::vector<std::string> {world.home() + "/.config/x", "/a/x", "/b/x"}));
    struct stat st;
    ASSERT_EQ(stat((world.home() + "/.config/x").c_str(), &st), 0);
    EXPECT_EQ(st.st_mode & 0777, 0700u);

    ScopedEnv noDirs("XDG_CONFIG_DIRS", ""), noHome("XDG_CONFIG_HOME", nullptr);
    EXPECT_EQ(xdgConfigDirs(nullptr), (std::vector<std::string> {world.home() + "/.config", "/etc/xdg"}));
}

TEST(XdgDirs, UncreatableOrUncreatedUserDirectoryIsLeftOut)
{
    TempHome world;
    ScopedEnv noDirs("XDG_DATA_DIRS", nullptr);
    // ".local" is missing, and only one level is ever created.
    EXPECT_EQ(xdgDataDirs("applications"),
              (std::vector<std::string> {"/usr/local/share/applications", "/usr/share/applications"}));
    world.makeDir("home/.local/share");
    EXPECT_EQ(xdgDataDirs("applications").front(), world.home() + "/.local/share/applications");

    // Creation switched off leaves the home alone.
    const std::string user = world.home() + "/.local/share/sounds";
    setXdgUserDirCreation(false);
    EXPECT_EQ(xdgDataDirs("sounds"), (std::vector<std::string> {"/usr/local/share/sounds", "/usr/share/sounds"}));
    EXPECT_NE(access(user.c_str(), F_OK), 0);
    world.makeDir("home/.local/share/sounds");
    EXPECT_EQ(xdgDataDirs("sounds").front(), user) << "an existing directory still leads";
    setXdgUserDirCreation(true);
    EXPECT_EQ(xdgDataDirs("icons").front(), world.home() + "/.local/share/icons");
}

}  // namespace
