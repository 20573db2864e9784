// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "core/userdirs_p.h"
#include "support/temp_home.h"

#include <vyxdirs.h>

#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>

namespace {

using vyxtest::ScopedEnv;
using vyxtest::TempHome;

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

TEST(UserDirs, FileLocationAndFallbacks)
{
    TempHome world;
    EXPECT_EQ(xdgUserDirLookup("DESKTOP"), world.home() + "/Desktop");
    EXPECT_EQ(xdgUserDirLookup("MUSIC"), world.home());
    world.writeFile("home/.config/user-dirs.dirs", "XDG_DESKTOP_DIR=\"$HOME/Schreibtisch\"\n");
    EXPECT_EQ(xdgUserDirLookup("DESKTOP"), world.home() + "/Schreibtisch");
    {
        // XDG_CONFIG_HOME, not HOME/.config, names the file when set.
        ScopedEnv config("XDG_CONFIG_HOME", world.makeDir("cfg").c_str());
        EXPECT_EQ(xdgUserDirLookup("DESKTOP"), world.home() + "/Desktop");
        world.writeFile("cfg/user-dirs.dirs", "XDG_DESKTOP_DIR=\"/from/cfg\"\n");
        EXPECT_EQ(xdgUserDirLookup("DESKTOP"), "/from/cfg");
    }
    ScopedEnv noHome("HOME", "");
    EXPECT_EQ(xdgUserDirLookup("DESKTOP"), "/tmp");
    EXPECT_EQ(xdgUserDirLookup("MUSIC"), "/tmp");
}

TEST(UserDirs, KioskDesktopIsDecidedOnce)
{
    TempHome world;
    std::string kiosk = world.makeDir("kiosk-desktop");
    ScopedEnv session("DESKTOP_SESSION", "vyx-tablet-kiosk");
    ScopedEnv desktop("VYX_KIOSK_DESKTOP_DIR", kiosk.c_str());
    EXPECT_EQ(xdgUserDirLookup("DESKTOP"), kiosk);
    EXPECT_EQ(xdgUserDirLookup("MUSIC"), world.home());
    unsetenv("DESKTOP_SESSION");
    EXPECT_EQ(xdgUserDirLookup("DESKTOP"), kiosk);
}

TEST(UserDirs, KioskDesktopMustExist)
{
    TempHome world;
    ScopedEnv session("DESKTOP_SESSION", "vyx-kiosk");
    ScopedEnv desktop("VYX_KIOSK_DESKTOP_DIR", "/no/such/dir");
    EXPECT_EQ(xdgUserDirLookup("DESKTOP"), world.home() + "/Desktop");
}

}  // namespace
