// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

// What the writers are given never becomes a key or a group of its own:
// names full of line breaks, brackets, quotes and stray bytes either are
// refused or read back exactly, through every writer of desktop entries,
// autostart, recent items and desktop positions. Also the user's files never
// briefly missing.

#include "core/ini_p.h"
#include "support/temp_home.h"
#include "support/text_checks.h"

#include <vyxdesktopentry.h>
#include <vyxdirs.h>
#include <vyxsession.h>

#include <gtest/gtest.h>

#include <random>
#include <strings.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

using vyxtest::readFile;
using vyxtest::TempHome;

const auto kNoEmpty = Vyx::tagged_bool<SaveEmptyFields_tag>(false);
const auto kAll = Vyx::tagged_bool<ProgsOnly_tag>(false);

// Names built from the bytes that mean something to the file format or to
// a shell, with invalid UTF-8 and a few 4,000-byte ones.
std::vector<std::string> hostileNames(size_t count, unsigned seed, size_t longest = 40)
{
    static const std::vector<std::string> pieces = {"\n",   "\r",   "\r\n",     "[",   "]",   "=",    "\"",
                                                    "'",    "$",    "`",        "\\",  "\\n", "\\\\", " ",
                                                    "\t",   "#",    ";",        "a",   "b",   "Exec", "[Desktop Entry]",
                                                    "\xff", "\xc3", "\xc3\xa9", "x=1", "%f",  "%%"};
    std::mt19937 random(seed);
    std::vector<std::string> names;
    for (size_t i = 0; i < count; ++i) {
        std::string name;
        const size_t parts = 1 + random() % (i % 50 == 49 ? 4000 : longest / 2);
        while (name.size() < parts && name.size() < 4000)
            name += pieces[random() % pieces.size()];
        names.push_back(name.substr(0, std::min<size_t>(name.size(), i % 50 == 49 ? 4000 : longest)));
    }
    return names;
}

// The file a recent item hands "vyx-open --exec" when started as the
// desktop starts it; empty for any other command.
std::string openedFile(const VyxDesktopEntry& item)
{
    const std::vector<std::vector<std::string>> commands = ExecArgVectors(item, {});
    const bool opens =
        commands.size() == 1 && commands[0].size() == 3 && commands[0][0] == "vyx-open" && commands[0][1] == "--exec";
    return opens ? commands[0][2] : std::string();
}

using Pairs = std::vector<std::pair<std::string, std::string>>;

TEST(Writers, DesktopEntryValuesReadBackAndBadKeysAreRefused)
{
    TempHome world;
    const std::string path = world.path("entry.desktop");
    int refusedKeys = 0;
    for (const std::string& name : hostileNames(2000, 1)) {
        VyxDesktopEntry entry;
        entry.setFilePath(path);
        entry.setType("Application");
        entry.setName(name);
        entry.setExec(name);
        entry.setUnknowns({{"X-Value", name}});
        ASSERT_TRUE(entry.save(kNoEmpty));
        VyxDesktopEntry back(path);
        ASSERT_TRUE(back.isLoaded());
        EXPECT_EQ(back.name(), name);
        EXPECT_EQ(back.exec(), name);
        EXPECT_EQ(back.unknowns(), (Pairs {{"X-Value", name}}));

        // The same text as a key name: refused with nothing written, or kept.
        if (strcasecmp(name.c_str(), "Exec") == 0)
            continue;  // a key of the model, not an unknown one
        unlink(path.c_str());
        entry.setUnknowns({{name, "v"}});
        testing::internal::CaptureStderr();
        const bool saved = entry.save(kNoEmpty);
        const std::string message = testing::internal::GetCapturedStderr();
        if (!saved) {
            ++refusedKeys;
            EXPECT_NE(access(path.c_str(), F_OK), 0) << "a refused save wrote " << path;
            EXPECT_EQ(std::count(message.begin(), message.end(), '\n'), 1) << message;
            continue;
        }
        EXPECT_EQ(VyxDesktopEntry(path).unknowns(), (Pairs {{name, "v"}}));
    }
    EXPECT_GT(refusedKeys, 800);  // most of these names cannot be keys
}

TEST(Writers, PositionsRecentItemsAndAutostartRefuseOrReadBack)
{
    TempHome world;
    const std::string directory = world.writeFile("home/Desktop/.directory", "[Desktop Entry]\nIcon=user-desktop\n");
    world.makeDir("home/docs");
    const std::string recents = world.makeDir("home/.vyx/startmenu/recents");
    // Each name as an item's and as a monitor's: refused with one line and
    // the file as it was, or read back; the desktop's own group stays.
    int saves = 0;
    for (const std::string& name : hostileNames(600, 2)) {
        for (const auto& [item, monitor] : Pairs {{name, "HDMI-1"}, {"item", name}}) {
            const std::string before = readFile(directory);
            bool saved = false;
            const std::string message =
                vyxtest::stderrOf([&] { saved = SaveDesktopItemPosition(item.c_str(), 3, 4, monitor); });
            Vyx::detail::IniDocument ini;
            ASSERT_TRUE(ini.loadFile(directory));
            EXPECT_EQ(ini.entries("Desktop Entry").size(), 1u) << name;
            EXPECT_EQ(ini.text("Desktop Entry", "Icon"), "user-desktop");
            const std::string group = "IconPosition::" + item;
            if (saved) {
                ++saves;
                EXPECT_EQ(ini.entries(group.c_str()).size(), 3u);
                EXPECT_EQ(ini.text(group.c_str(), "Monitor"), monitor);
            } else {
                EXPECT_EQ(readFile(directory), before);
                EXPECT_EQ(std::count(message.begin(), message.end(), '\n'), 1) << message;
            }
        }
    }
    EXPECT_GT(saves, 300);  // the names a group can hold are not refused

    // The position file is the desktop's own too: lines our reader would
    // drop keep it from being rewritten, and the save says so.
    for (const char* text : {"[Desktop Entry]\nIcon=a\nIcon=b\n", "[Desktop Entry]\nthis line is not a key\n",
                             "[Desktop Entry]\nIcon=a\n# a closing comment\n", "[A]\nX=1\n[A]\nX=2\n"}) {
        world.writeFile("home/Desktop/.directory", text);
        EXPECT_HAS(vyxtest::stderrOf([] { EXPECT_FALSE(SaveDesktopItemPosition("item", 1, 2, "")); }), ".directory");
        EXPECT_EQ(readFile(directory), text);
    }
    // Comments before keys, blanks and spacing are kept, so this one is saved.
    world.writeFile("home/Desktop/.directory", "# mine\n[Desktop Entry]\n Icon = a \n\n");
    EXPECT_TRUE(SaveDesktopItemPosition("item", 1, 2, ""));
    EXPECT_HAS(readFile(directory), "# mine");

    // Recent items: names a file can have (no '/', at most 255 bytes).
    for (std::string name : hostileNames(300, 3)) {
        std::replace(name.begin(), name.end(), '/', '_');
        name = name.substr(0, 200) + ".pdf";
        const std::string file = world.writeFile("home/docs/" + name, "%PDF");
        ASSERT_EQ(putEntryToRecentsMenu(file.c_str(), nullptr, nullptr, kAll), 0) << name;
        VyxDesktopEntry item(recents + "/" + name + ".desktop");
        ASSERT_TRUE(item.isLoaded());
        EXPECT_EQ(item.name(), name);
        EXPECT_EQ(openedFile(item), file) << item.exec();
    }
    // Reproductions: a text file that merely contains ".desktop" in its name
    // copied as a launcher; an autostart command that adds a second Exec.
    const std::string fake = world.writeFile("home/docs/photos.desktop.txt",
                                             "[Desktop Entry]\nType=Application\nExec=sh -c \"touch pwned\"\n");
    EXPECT_EQ(putEntryToRecentsMenu(fake.c_str(), nullptr, nullptr, kAll), 0);  // 1 would mean copied
    EXPECT_EQ(openedFile(VyxDesktopEntry(recents + "/photos.desktop.txt.desktop")), fake);
    // Nor is a ".desktop" file that is not a launcher.
    const std::string text = world.writeFile("home/docs/notes.desktop", "Exec=sh -c boom\n");
    EXPECT_EQ(putEntryToRecentsMenu(text.c_str(), nullptr, nullptr, kAll), 0);
    EXPECT_EQ(openedFile(VyxDesktopEntry(recents + "/notes.desktop")), text);

    world.writeFile("usr/share/applications/foo.desktop", "[Desktop Entry]\nType=Application\nName=Foo\nExec=foo\n");
    ASSERT_TRUE(vyxEnableAutostart("foo", true, "foo\nExec=touch x", Vyx::tagged_bool<DeleteIfDisabled_tag>(false)));
    VyxDesktopEntry autostart(world.home() + "/.config/autostart/foo.desktop");
    EXPECT_EQ(autostart.exec(), "foo\nExec=touch x");
    EXPECT_EQ(autostart.name(), "Foo");
}

// Switching autostart replaces the user's file in one step: a reader (or a
// crash) at any moment finds the old entry or the new one, never none.
TEST(Writers, AutostartSwitchNeverLeavesTheUserWithoutTheirFile)
{
    TempHome world;
    world.writeFile("etc/xdg/autostart/clock.desktop", "[Desktop Entry]\nType=Application\nName=Clock\nExec=clock\n");
    const std::string userFile =
        world.writeFile("home/.config/autostart/clock.desktop",
                        "[Desktop Entry]\nType=Application\nName=Clock\nExec=clock --mine\nHidden=true\n");
    const pid_t pid = fork();
    ASSERT_GE(pid, 0);
    if (pid == 0) {
        for (int i = 0; i < 300; ++i) {
            const std::string command = "clock --mine " + std::to_string(i);
            vyxEnableAutostart("clock", true, command.c_str(), Vyx::tagged_bool<DeleteIfDisabled_tag>(false));
        }
        _exit(0);
    }
    int missing = 0, status = 0;
    while (waitpid(pid, &status, WNOHANG) == 0)
        missing += access(userFile.c_str(), F_OK) != 0;
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
    EXPECT_EQ(missing, 0);
    EXPECT_EQ(VyxDesktopEntry(userFile).exec(), "clock --mine 299");
}

}  // namespace
