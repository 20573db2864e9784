// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "core/userdirs_p.h"
#include "support/child_process.h"
#include "support/files.h"
#include "support/temp_home.h"

#include <vyxdirs.h>

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <unistd.h>

namespace {

using vyxtest::ScopedEnv;
using vyxtest::TempHome;

// The home from LOGNAME, nothing without any name, and empty answers tried
// again until they exist.
TEST(Dirs, HomeFromLognameAndNothingWithoutAnyName)
{
    TempHome world;
    ScopedEnv home("HOME", nullptr), logname("LOGNAME", "alice"), user("USER", "bob");
    EXPECT_EQ(GetVyxDir(VyxHomeDir), "/home/alice/.vyx");

    ScopedEnv noLogname("LOGNAME", ""), noUser("USER", nullptr);
    ResetVyxDirs();
    EXPECT_EQ(GetVyxDir(StartMenuDir), "/startmenu");  // no vyx home, and formed without it as it always was
    EXPECT_EQ(GetVyxDir(ControlPanelDir), "/startmenu/controlpanel");
    EXPECT_EQ(GetVyxDir(CacheDir), world.home() + "/.cache");  // XDG_CACHE_HOME still set
    ScopedEnv noCache("XDG_CACHE_HOME", nullptr), noData("XDG_DATA_HOME", nullptr);
    ResetVyxDirs();
    EXPECT_EQ(GetVyxDir(CacheDir), "");
    EXPECT_EQ(GetVyxDir(TrashFilesDir), "");
    // No reset: an empty answer is simply computed again once it can be.
    setenv("HOME", "/later/home", 1);
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
    EXPECT_EQ(GetVyxDir(TranslationsDir), "/usr/share/vyx/translations");
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
    EXPECT_EQ(GetVyxDir(VyxHomeDir), "/elsewhere/.vyx");
    EXPECT_EQ(cached, "/elsewhere");  // the same object, new content
    EXPECT_EQ(GetVyxDir(SharedDesktopDir), "/first/desktop");
    EXPECT_EQ(GetVyxDir(SharedStartMenuDir), "/usr/share/applications/vyxstartmenu");
    EXPECT_EQ(GetVyxDir(QtHelpDir), "/usr/share/doc/vyx/qthelp");
}

// The kiosk settings count only in a kiosk session, and only where they name
// the system directory or a directory that exists. The session kind and the
// kiosk desktop are decided once per process, so each session gets a child.
TEST(Dirs, KioskSettingsCountOnlyInAKioskSession)
{
    TempHome world;
    const std::string toolbar = world.makeDir("kiosk-toolbar"), desktop = world.makeDir("kiosk-desktop");
    const std::string vyxHome = world.home() + "/.vyx", homeDesktop = world.home() + "/Desktop";
    const std::string wmRc = "/usr/share/vyx-wm/kiosk/settings.rc", system = "/usr/share/vyx-wm/theme";
    const struct {
        std::string session, rc, toolbarEnv, desktopEnv, theme, toolbar, desktop;
    } cases[] = {
        {"vyx", wmRc, toolbar, desktop, vyxHome + "/theme", vyxHome + "/toolbar", homeDesktop},
        {"vyx-kiosk", wmRc, toolbar, "/no/such/dir", system, toolbar, homeDesktop},
        {"vyx-kiosk", "/etc/settings.rc", "/does/not/exist", desktop, vyxHome + "/theme", vyxHome + "/toolbar",
         desktop},
        {"vyx-tablet-kiosk", wmRc, toolbar, desktop, system, toolbar, desktop},
    };
    for (const auto& c : cases) {
        ScopedEnv session("DESKTOP_SESSION", c.session.c_str()), rc("VYX_RC_FILE", c.rc.c_str());
        ScopedEnv bar("VYX_KIOSK_TOOLBAR_DIR", c.toolbarEnv.c_str()),
            kiosk("VYX_KIOSK_DESKTOP_DIR", c.desktopEnv.c_str());
        VYX_EXPECT_CHILD(vyxtest::runInChild({}, [&] {
            SCOPED_TRACE(c.session + " " + c.rc);
            EXPECT_EQ(GetVyxDir(ThemeDir), c.theme);
            EXPECT_EQ(GetVyxDir(KioskToolbarDir), c.toolbar);
            EXPECT_EQ(GetVyxDir(DesktopDir), c.desktop);
            EXPECT_EQ(GetVyxDir(MusicDir), world.home());  // only the desktop has a kiosk directory
            unsetenv("DESKTOP_SESSION");
            EXPECT_EQ(xdgUserDirLookup("DESKTOP"), c.desktop);
        }));
    }
}

// The user's directory first, created one level deep when it can be and
// creation is on, left out otherwise; then the system list or its defaults.
TEST(XdgDirs, UserDirectoryFirstOnlyWhenItExistsOrCanBeMade)
{
    TempHome world;
    std::string system = world.makeDir("etc/xdg/autostart");
    ScopedEnv noDirs("XDG_DATA_DIRS", nullptr);
    // No .config and no .local: the user's directories cannot be made.
    EXPECT_EQ(GetVyxDir(AutostartDir), system);
    EXPECT_EQ(xdgDataDirs("applications"),
              (std::vector<std::string> {"/usr/local/share/applications", "/usr/share/applications"}));
    EXPECT_EQ(findInXDGDataDirs("nothing-here"), "");
    world.makeDir("home/.config");
    EXPECT_EQ(findInXDGConfigDirs("autostart"), world.home() + "/.config/autostart");
    ScopedEnv dirs("XDG_CONFIG_DIRS", "/a::/b");
    EXPECT_EQ(xdgConfigDirs("x"), (std::vector<std::string> {world.home() + "/.config/x", "/a/x", "/b/x"}));
    EXPECT_EQ(vyxtest::fileMode(world.home() + "/.config/x") & 0777, 0700u);
    ScopedEnv emptyDirs("XDG_CONFIG_DIRS", ""), noHome("XDG_CONFIG_HOME", nullptr);
    EXPECT_EQ(xdgConfigDirs(nullptr), (std::vector<std::string> {world.home() + "/.config", "/etc/xdg"}));

    // Creation switched off leaves the home alone.
    world.makeDir("home/.local/share");
    const std::string user = world.home() + "/.local/share/sounds";
    setXdgUserDirCreation(false);
    EXPECT_EQ(xdgDataDirs("sounds"), (std::vector<std::string> {"/usr/local/share/sounds", "/usr/share/sounds"}));
    world.makeDir("home/.local/share/sounds");
    EXPECT_EQ(xdgDataDirs("sounds").front(), user) << "an existing directory still leads";
    setXdgUserDirCreation(true);
    EXPECT_EQ(xdgDataDirs("icons").front(), world.home() + "/.local/share/icons");
}

// The reader on an in-memory file.
std::string parse(const std::string& text, const char* type, const char* home = "/h")
{
    FILE* file = fmemopen(const_cast<char*>(text.data()), text.size(), "r");
    bool outOfMemory = false;
    char* value = Vyx::detail::readUserDirs(file, type, home, &outOfMemory);
    std::fclose(file);
    std::string result = value ? value : "<none>";
    std::free(value);
    return result;
}

TEST(UserDirs, LineSyntaxAndMalformedValues)
{
    const std::pair<std::string, const char*> cases[] = {
        {"XDG_MUSIC_DIR=\"$HOME/Mu\\\"sic\"\n", "/h/Mu\"sic"},
        {" \tXDG_MUSIC_DIR \t= \t\"/abs/music\"", "/abs/music"},
        {"XDG_MUSIC_DIR=\"Music\"\n", "<none>"},
        {"XDG_MUSIC_DIR=$HOME/Music\n", "<none>"},  // no quote
        {"xdg_music_dir=\"/m\"\nXDG_Music_DIR=\"/m\"\n", "<none>"},
        {"XDG_MUSIC_DIRS=\"/m\"\n", "<none>"},
        {"# XDG_MUSIC_DIR=\"/m\"\n", "<none>"},
        {"XDG_DESKTOP_DIR=\"/d\"\n", "<none>"},
        // Malformed values stay inside their line.
        {"XDG_MUSIC_DIR=\"/unterminated\n", "/unterminated"},
        {"XDG_MUSIC_DIR=\"/trailing\\", "/trailing"},
        {"XDG_MUSIC_DIR=\"/a\\\\b\\c\"tail", "/a\\bc"},
        {"XDG_MUSIC_DIR=\"/one\"\nXDG_MUSIC_DIR=\"relative\"\nXDG_MUSIC_DIR=\"/two\"\n", "/two"},  // the last wins
    };
    for (const auto& [text, expected] : cases)
        EXPECT_EQ(parse(text, "MUSIC"), expected) << text;
    EXPECT_EQ(parse("XDG_MUSIC_DIR=\"$HOME/\"", "MUSIC", ""), "/");
    // 511 bytes fill the buffer; the rest of the line is read as a new line,
    // and here that rest is itself a valid entry.
    std::string longLine = "XDG_MUSIC_DIR=\"/" + std::string(511 - 16, 'x');
    ASSERT_EQ(longLine.size(), 511u);
    EXPECT_EQ(parse(longLine + "XDG_MUSIC_DIR=\"/piece\"\n", "MUSIC"), "/piece");
    std::string hugeValue = "XDG_MUSIC_DIR=\"/" + std::string(5000, 'y') + "\"\n";
    EXPECT_EQ(parse(hugeValue, "MUSIC"), "/" + std::string(511 - 16, 'y'));
}

// The directories of the user's file, the home itself for a type without an
// entry; XDG_CONFIG_HOME, not HOME/.config, names the file when set.
TEST(UserDirs, FileLocationAndFallbacks)
{
    TempHome world;
    world.writeFile("home/.config/user-dirs.dirs",
                    "XDG_DESKTOP_DIR=\"$HOME/Schreibtisch\"\nXDG_MUSIC_DIR=\"$HOME/Tunes\"\n");
    EXPECT_EQ(GetVyxDir(DesktopDir), world.home() + "/Schreibtisch");
    EXPECT_EQ(GetVyxDir(MusicDir), world.home() + "/Tunes");
    EXPECT_EQ(GetVyxDir(VideosDir), world.home());
    EXPECT_EQ(GetVyxDir(DocumentsDir), world.home());
    EXPECT_EQ(GetVyxDir(TrashFilesDir), world.home() + "/.local/share/Trash/files");
    {
        ScopedEnv config("XDG_CONFIG_HOME", world.makeDir("cfg").c_str());
        EXPECT_EQ(xdgUserDirLookup("DESKTOP"), world.home() + "/Desktop");
        EXPECT_EQ(xdgUserDirLookup("MUSIC"), world.home());
        world.writeFile("cfg/user-dirs.dirs", "XDG_DESKTOP_DIR=\"/from/cfg\"\n");
        EXPECT_EQ(xdgUserDirLookup("DESKTOP"), "/from/cfg");
    }
    ScopedEnv noHome("HOME", "");
    EXPECT_EQ(xdgUserDirLookup("DESKTOP"), "/tmp");
    EXPECT_EQ(xdgUserDirLookup("MUSIC"), "/tmp");
}

}  // namespace
