// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "support/child_process.h"
#include "support/temp_home.h"
#include "support/text_checks.h"
#include "support/unix_socket.h"

#include <vyxdirs.h>
#include <vyxsession.h>

#include <gtest/gtest.h>

#include <unistd.h>

namespace {

using vyxtest::ScopedEnv;
using vyxtest::TempHome;

TEST(Session, SavedNameKindSuffixAndKioskFromDesktopSession)
{
    TempHome world;
    std::string file = world.home() + "/.vyx/last-desktop-session-name";
    EXPECT_FALSE(vyxSessionSaveName("vyx-mini"));
    EXPECT_NE(access((world.home() + "/.vyx").c_str(), F_OK), 0);
    EXPECT_EQ(vyxSessionGetSavedName(), "");

    world.makeDir("home/.vyx");
    EXPECT_TRUE(vyxSessionSaveName("vyx-mini"));
    EXPECT_EQ(vyxtest::readFile(file), "vyx-mini");  // no line feed
    EXPECT_EQ(vyxSessionGetSavedName(), "vyx-mini");

    world.writeFile("home/.vyx/last-desktop-session-name", "first\nsecond\n");
    EXPECT_EQ(vyxSessionGetSavedName(), "first");

    EXPECT_FALSE(vyxSessionSaveName(nullptr));  // DESKTOP_SESSION unset: disk untouched
    EXPECT_EQ(vyxtest::readFile(file), "first\nsecond\n");
    ScopedEnv session("DESKTOP_SESSION", "vyx-weston");
    EXPECT_TRUE(vyxSessionSaveName(nullptr));
    EXPECT_EQ(vyxtest::readFile(file), "vyx-weston");

    ScopedEnv home("HOME", nullptr), logname("LOGNAME", nullptr), user("USER", nullptr);
    ResetVyxDirs();
    EXPECT_FALSE(vyxSessionSaveName("vyx"));
    EXPECT_EQ(vyxSessionGetSavedName(), "");

    const struct {
        const char* name;  // null: unset
        WhatVyxSession kind;
        const char* suffix;
    } cases[] = {
        {nullptr, UnknownSession, ""},
        {"", UnknownSession, ""},
        {"vyx", VyxDefaultSession, ""},
        {"VYX-Kiosk", VyxKioskSession, ".vyx-kiosk"},  // fixed suffixes are lower case
        {"vyx-tablet", VyxTabletSession, ".vyx-tablet"},
        {"vyx-mini", VyxMiniSession, ".vyx-mini"},
        {"Vyx-Mobile", VyxMobileSession, ".vyx-mobile"},
        {"vyx-weston", VyxWestonSession, ""},
        {"FailSafe", FailsafeSession, ""},
        {"vyxfoo", UnknownSession, ".vyxfoo"},
        {"vyx-other", UnknownSession, ".vyx-other"},
        {"gnome", UnknownSession, ".gnome"},
        {"VYX", VyxDefaultSession, ""},
    };
    for (const auto& c : cases) {
        ScopedEnv session("DESKTOP_SESSION", c.name);
        SCOPED_TRACE(c.name ? c.name : "(unset)");
        EXPECT_EQ(whatVyxSession(), c.kind);
        EXPECT_EQ(vyxSessionConfigSuffix(whatVyxSession()), c.suffix);
    }
    // Unknown kinds take the suffix from the live name: only the exact name
    // "vyx" has no suffix of its own.
    ScopedEnv upper("DESKTOP_SESSION", "VYX");
    EXPECT_EQ(vyxSessionConfigSuffix(UnknownSession), ".VYX");
    EXPECT_EQ(vyxSessionConfigSuffix(static_cast<WhatVyxSession>(42)), ".VYX");

    // The kiosk flag is decided once per process; a fresh one decides: not
    // kiosk outside the kiosk kinds.
    setenv("DESKTOP_SESSION", "vyx-kiosky", 1);
    VYX_EXPECT_CHILD(vyxtest::runInChild({}, [] { EXPECT_FALSE(isVyxKioskSession()); }));
    setenv("DESKTOP_SESSION", "vyx-tablet-kiosk", 1);
    EXPECT_TRUE(isVyxKioskSession());
    setenv("DESKTOP_SESSION", "vyx", 1);
    EXPECT_TRUE(isVyxKioskSession());
    EXPECT_EQ(whatVyxSession(), VyxDefaultSession);
}

// Holds the abstract socket an X server on display n would hold.
int occupy(int number)
{
    return vyxtest::bindUnixSocket("/tmp/.X11-unix/X" + std::to_string(number), true);
}

TEST(DisplayNumber, FromTheNameRemoteUnlessLocalAndTheFirstFree)
{
    TempHome world;
    EXPECT_EQ(GetDisplayNumberByName(nullptr, nullptr), 0);  // no name at all
    EXPECT_FALSE(isSessionRemote(nullptr, nullptr));
    for (const auto& [name, number] : {std::pair<const char*, int> {":0.0", 0}, {"host:12.1", 12}, {":1x", -1}})
        EXPECT_EQ(GetDisplayNumberByName(name, nullptr), number) << name;
    EXPECT_EQ(vyxtest::stderrOf([] { EXPECT_EQ(GetDisplayNumberByName("host12", nullptr), -1); }),
              "Wrong display name host12\n");
    EXPECT_THROW(GetDisplayNumberByName("host:", nullptr), std::invalid_argument);
    EXPECT_THROW(GetDisplayNumberByName(":x", nullptr), std::invalid_argument);

    ScopedEnv display("DISPLAY", ":7");
    EXPECT_EQ(GetDisplayNumberByName(nullptr, nullptr), 7);
    EXPECT_EQ(GetDisplayNumberByName("", nullptr), 7);

    // Remote unless local or forwarded.
    for (const char* local : {":0", ":1.0", "localhost:10.0", "127.0.0.1:0"})
        EXPECT_FALSE(isSessionRemote(local, nullptr)) << local;
    for (const char* remote : {"unix:0", "myhost:0", ":x", "10.0.0.2:0"})
        EXPECT_TRUE(isSessionRemote(remote, nullptr)) << remote;
    ScopedEnv far("DISPLAY", "far:3");
    EXPECT_TRUE(isSessionRemote(nullptr, nullptr));

    // The first free one, in a network namespace of our own: nobody else's sockets.
    VYX_EXPECT_CHILD(vyxtest::runInChild({{}, true}, [] {
        EXPECT_EQ(getFreeXDisplayNumber(-5), 0);
        int zero = occupy(0);
        ASSERT_GE(zero, 0);
        EXPECT_EQ(getFreeXDisplayNumber(0), 1);
        EXPECT_EQ(getFreeXDisplayNumber(-5), 1);
        int one = occupy(1);
        EXPECT_EQ(getFreeXDisplayNumber(0), 2);
        EXPECT_EQ(getFreeXDisplayNumber(59535), 59535);
        EXPECT_EQ(getFreeXDisplayNumber(59536), -1);
        close(one);
        close(zero);
        EXPECT_EQ(getFreeXDisplayNumber(0), 0);  // released, free again
    }));
}

}  // namespace
