// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

// End-to-end tests of the vyxcore tool: the real binary, run as a user
// would, in an isolated home.

#include "support/app_worlds.h"
#include "support/run_program.h"
#include "support/temp_home.h"
#include "support/text_checks.h"
#include "support/unix_socket.h"
#include "support/xvfb.h"

#include <gtest/gtest.h>

#include <sstream>
#include <sys/stat.h>
#include <unistd.h>

namespace {

using vyxtest::ProgramRun;
using vyxtest::readFile;
using vyxtest::runTool;
using vyxtest::ScopedEnv;
using vyxtest::TempHome;
using Args = std::vector<std::string>;

// The tool's run, once it exited with status.
ProgramRun ran(const Args& args, int status)
{
    const ProgramRun run = runTool(args);
    std::string command = "vyxcore";
    for (const std::string& arg : args)
        command += " " + arg;
    EXPECT_EQ(run.status, status) << command << "\n" << run.err;
    return run;
}

// What the tool printed on standard output, once it exited with status.
std::string out(const Args& args, int status = 0)
{
    return ran(args, status).out;
}

std::string dataFile(const char* name)
{
    return std::string(VYX_TEST_DATA_DIR) + "/desktop/" + name;
}

TEST(ToolDirs, ListsAnswersOneAndRefusesBadNames)
{
    TempHome world;
    EXPECT_HAS(out({"dirs"}), "18 HomeDir", "29 SharedStartMenuDir", world.home() + "/.vyx");
    EXPECT_HAS(out({"dirs", "--json"}),
               "{\"value\": 2, \"name\": \"VyxHomeDir\", \"path\": \"" + world.home() + "/.vyx\"}");
    EXPECT_EQ(out({"dirs", "desktopdir"}), world.home() + "/Desktop\n");
    EXPECT_EQ(out({"dirs", "26"}), world.home() + "/.cache\n");
    ScopedEnv noHome("HOME", nullptr), noLogname("LOGNAME", nullptr), noUser("USER", nullptr);
    EXPECT_EQ(out({"dirs", "VyxHomeDir"}, 1), "") << "an empty path is nothing found";
}

TEST(ToolSession, ReportsKindSuffixAndDisplayProblems)
{
    TempHome world;
    ScopedEnv session("DESKTOP_SESSION", "VYX-Tablet-Kiosk");
    EXPECT_HAS(out({"session"}), "8 VyxTabletKioskSession", ".vyx-tablet-kiosk", "no X server reachable");
    EXPECT_HAS(out({"session", "--json"}), "\"kiosk\": true", "\"display_name\": null", "\"connected\": false");
    // A wrong display name is reported, not fatal.
    ScopedEnv display("DISPLAY", "host12");
    EXPECT_HAS(out({"session", "--json"}), "\"display_number\": -1");
}

class ToolOnX : public vyxtest::XvfbTest {
protected:
    TempHome m_world;  // made before SetUp sets DISPLAY
};

TEST_F(ToolOnX, SeesTheDesktopThatOwnsTheDisplay)
{
    vyxtest::announceWindowManager(display(), "vyx-wm");
    EXPECT_HAS(out({"session", "--json"}), "\"desktop\": 5", "\"display_number\": " + std::to_string(server().number()),
               "\"remote\": false");
    EXPECT_HAS(out({}), "Desktop  Vyx", m_world.home() + "/Desktop");
}

TEST(ToolUtilities, WhichSplitAndSystem)
{
    TempHome world;
    ScopedEnv path("PATH", "/usr/bin:/bin"), var("VYXTARGET", "/tmp/x y"), locale("LC_ALL", "de_DE.UTF-8");
    EXPECT_EQ(out({"which", "sh"}), "/usr/bin/sh\n");
    ran({"which", "no-such-program-42"}, 1);

    EXPECT_EQ(out({"split", "cp 'a b' \"$VYXTARGET\" >> log # note"}),
              "argv[0] cp\nargv[1] a b\nargv[2] /tmp/x y\n>> log\n");
    EXPECT_HAS(out({"split", "--json", "a > f | b"}, 1),
               "\"error\": 7, \"message\": \"Cannot redirect and pipe out at the same time\"");

    EXPECT_HAS(out({"system", "--json"}), "\"locale\": \"de_DE.UTF-8\"", "\"edition_mode\": ");
    EXPECT_HAS(out({"system"}), "Locale          de_DE.UTF-8");
}

// entry, exec and why: show, edit, expand and judge one desktop entry.
TEST(ToolEntry, ShowsEditsExpandsAndJudges)
{
    TempHome world;
    ScopedEnv language("LANGUAGE", "de");
    EXPECT_HAS(out({"entry", dataFile("browser.desktop")}), "Name (translated)  ", "Webbrowser", "Other Name[ru]");
    const std::string copy = world.path("copy.desktop");
    EXPECT_HAS(out({"entry", dataFile("browser.desktop"), "--set", "Name=Edited", "--set=X-Mine=1", "--save-as", copy,
                    "--json"}),
               "\"name\": \"Edited\"");
    EXPECT_HAS(readFile(copy), "X-Mine = 1");
    ran({"entry", world.path("none.desktop")}, 1);

    EXPECT_EQ(out({"exec", dataFile("browser.desktop"), "--url", "https://example.org/a b"}),
              "/usr/lib/browser/browser \"https://example.org/a b\"\n");
    EXPECT_EQ(out({"exec", dataFile("crlf-bom.desktop"), "--file", "/a", "--file", "/b c"}), "editor /a \"/b c\"\n");
    ran({"exec", dataFile("link.desktop")}, 1);  // no Exec at all

    const std::string gone =
        world.writeFile("gone.desktop", "[Desktop Entry]\nType=Application\nExec=no-such-42\nNoDisplay=true\n");
    EXPECT_HAS(out({"why", gone}), "no  -3 DisplayableNoDisplay", "no  4 SuitableExecNotInPath");
    EXPECT_HAS(out({"why", dataFile("link.desktop"), "--json"}), "\"suitable\": true");
}

TEST(ToolApps, ListsDefaultsAssignmentsAndTheirSources)
{
    TempHome world;
    world.writeFile("usr/share/applications/shown.desktop",
                    "[Desktop Entry]\nType=Application\nName=Shown App\nExec=true\nMimeType=text/x-vyxtest;\n");
    world.writeFile("usr/share/applications/hidden.desktop",
                    "[Desktop Entry]\nType=Application\nName=Hidden App\nExec=true\nNoDisplay=true\n");
    const std::string list =
        world.writeFile("home/.config/mimeapps.list", "[Added Associations]\ntext/x-vyxtest=shown.desktop;\n");
    const std::string apps = out({"apps"});
    EXPECT_HAS(apps, "Shown App");
    EXPECT_LACKS(apps, "Hidden App");
    EXPECT_HAS(out({"apps", "--all"}), "hidden.desktop");

    // Which cache file answered, and why one was not believed.
    const std::string cache = world.path("run") + "/.vyx-mime-desktop.tbl";
    EXPECT_HAS(out({"default", "text/x-vyxtest"}),
               world.path("usr/share/applications/shown.desktop") + "  (from the desktop files of",
               "cache file: " + cache + " (rebuilt and written)\n");
    const ProgramRun none = ran({"default", "text/x-none-vyxtest"}, 1);
    EXPECT_EQ(none.out + none.err, "vyxcore default: no installed application opens text/x-none-vyxtest\n");
    EXPECT_HAS(out({"default", "text/x-vyxtest"}), "cache file: " + cache + " (read)\n");
    chmod(cache.c_str(), 0666);
    EXPECT_HAS(out({"mimeapps", "--json"}), "\"cache_file\": {\"path\": \"" + cache +
                                                "\", \"read\": false, \"written\": true, \"ignored\": \"writable "
                                                "by group or others\"}");
    EXPECT_HAS(out({"assigned", "text/x-vyxtest", "--json"}), "\"source\": \"" + list + "\"");
    EXPECT_HAS(out({"mimeapps"}), list);

    // An application is named alike by id, file name or path, in every command.
    for (const auto& name : Args {"hidden", "hidden.desktop", world.path("usr/share/applications/hidden.desktop")})
        EXPECT_HAS(out({"why", name}), "DisplayableNoDisplay");
    EXPECT_EQ(out({"exec", "shown"}), "true\n");
    EXPECT_HAS(out({"entry", "shown", "--json"}), "\"name\": \"Shown App\"");
    EXPECT_HAS(ran({"why", "no-such-app"}, 1).err, "'no-such-app'");
}

TEST(ToolMime, TypesOfFilesAndFactsOfTypes)
{
    TempHome world;
    ScopedEnv dirs("XDG_DATA_DIRS", "/usr/share");
    const std::string png = world.writeFile("picture.txt", std::string("\x89PNG\r\n\x1a\n\0\0\0\rIHDR", 16));
    EXPECT_HAS(out({"mime", png, world.path("missing")}, 1), "by name text/plain, by content image/png");
    EXPECT_HAS(out({"mimetype", "application/x-pdf", "--json"}), "\"canonical\": \"application/pdf\"");
}

// icon, icon-for, themes, theme and cursor against themes of the test's own.
TEST(ToolIcons, FindsIconsAndShowsThemesAndCursors)
{
    TempHome world;
    world.writeFile("usr/share/icons/own/index.theme",
                    "[Icon Theme]\nName=Own\nDirectories=48x48/apps,48x48/places,48x48/mimetypes\n"
                    "[48x48/apps]\nType=Fixed\nContext=Applications\n[48x48/places]\nType=Fixed\nContext=Places\n"
                    "[48x48/mimetypes]\nType=Fixed\nContext=MimeTypes\n");
    const std::string icon = world.writeFile("usr/share/icons/own/48x48/apps/thing.png", "icon");
    const std::string home = world.writeFile("usr/share/icons/own/48x48/places/user-home.png", "icon");
    const std::string generic = world.writeFile("usr/share/icons/own/48x48/mimetypes/text-x-generic.png", "icon");
    world.writeFile("home/.vyx/theme/current.themerc", "[Variables]\nIconTheme=own\n");
    EXPECT_EQ(out({"icon", "thing", "--theme", "own", "--context", "Applications", "--size", "48"}), icon + "\n");
    ran({"icon", "missing-thing"}, 1);
    EXPECT_HAS(ran({"icon", "thing", "--theme", "not-here"}, 1).err, "icon theme not-here is not installed");
    EXPECT_HAS(out({"icon", "thing", "--json"}), "\"file\": \"" + icon + "\"");

    EXPECT_EQ(out({"icon-for", "vyx-fm:Home"}), "file     " + home + "\nname     user-home\ncontext  Places\n");
    EXPECT_HAS(out({"icon-for", "text/x-no-such-type", "--json"}), "\"file\": \"" + generic + "\"",
               "\"context\": \"MimeTypes\"");
    ran({"icon-for", "ftp://example.org"}, 1);  // no handler, no "network" icon

    // A theme installed twice is listed once, with the copy used.
    const std::string index = "[Icon Theme]\nName=Twice\nDirectories=16x16/apps\n[16x16/apps]\nSize=16\n";
    world.writeFile("home/.icons/twice/index.theme", index);
    world.writeFile("usr/share/icons/twice/index.theme", index);
    const std::string themes = out({"themes"});
    EXPECT_HAS(themes, world.home() + "/.icons/twice (first of 2 copies)\n");
    EXPECT_LACKS(themes, world.path("usr/share/icons/twice"));
    EXPECT_HAS(out({"themes", "--json"}), "\"own\"", "\"current\": \"own\"", "\"twice\", \"twice\"");
    EXPECT_HAS(out({"theme", "twice"}), world.path("usr/share/icons/twice"));
    EXPECT_HAS(out({"theme", "own"}), "48x48/apps", "hicolor");
    ran({"theme", "no-such-theme"}, 1);

    world.makeDir("home/.icons/Pointy/cursors");
    ran({"cursor", "--set", "Pointy"}, 0);
    EXPECT_HAS(out({"cursor", "--json"}), "\"current\": \"Pointy\"", world.home() + "/.icons/Pointy");
}

TEST(ToolTrash, PutsListsRestoresAndEmpties)
{
    TempHome world;
    const std::string doc = world.writeFile("home/docs/a b.txt", "12345");
    EXPECT_HAS(ran({"trash", "put", doc, world.path("missing")}, 1).err, "missing");  // one PATH failed
    EXPECT_HAS(out({"trash", "list", "--json"}),
               "[{\"name\": \"a b.txt\", \"path\": \"" + doc + "\", \"deletion_date\": \"");
    EXPECT_EQ(out({"trash", "size", "--json"}), "{\"size\": 5, \"size_cache\": false}\n");
    ran({"trash", "restore", doc}, 0);
    ran({"trash", "restore", doc}, 1);  // nothing left to restore
    EXPECT_EQ(out({"trash", "list", "--json"}), "[]\n");
    ran({"trash", "put", doc}, 0);
    ran({"trash", "empty"}, 0);
    const ProgramRun none = ran({"trash", "list"}, 0);  // an empty trash is an empty listing
    EXPECT_EQ(none.out + none.err, "");
}

TEST(ToolSessionServices, AutostartRecentAndPositions)
{
    TempHome world;
    world.writeFile("usr/share/applications/clock.desktop", "[Desktop Entry]\nType=Application\nName=Clock\nExec=sh\n");
    ran({"autostart", "clock", "--enable"}, 0);
    const std::string mine = world.home() + "/.config/autostart/clock.desktop";
    EXPECT_HAS(out({"autostart", "clock", "--json"}), "\"enabled\": true, \"file\": \"" + mine + "\"");
    ran({"autostart", "clock", "--disable"}, 0);
    EXPECT_HAS(out({"autostart", "clock"}), "disabled");
    ran({"autostart", "clock", "--disable", "--delete"}, 0);  // already off: nothing to do
    ran({"autostart", "clock", "--enable"}, 0);
    ran({"autostart", "clock", "--disable", "--delete"}, 0);
    EXPECT_NE(access(mine.c_str(), F_OK), 0);
    ran({"autostart", "no-such-app", "--enable"}, 1);

    const std::string doc = world.writeFile("home/notes.txt", "x");
    ran({"recent", doc}, 1);  // no recents folder: it is never made
    world.makeDir("home/.vyx/startmenu/recents");
    EXPECT_HAS(out({"recent", doc, "--json"}), "\"result\": 0");

    ran({"position", "notes.txt", "10", "20"}, 1);  // the .directory is never created
    const std::string positions = world.writeFile("home/Desktop/.directory", "");
    ran({"position", "notes.txt", "-10", "20", "HDMI-1"}, 0);
    EXPECT_HAS(readFile(positions), "X = -10");
    ran({"position", "--remove", "notes.txt"}, 0);
    EXPECT_LACKS(readFile(positions), "notes.txt");
}

TEST(ToolSounds, FindsSoundsInTheCurrentOrGivenTheme)
{
    TempHome world;
    world.writeFile("usr/share/sounds/own/index.theme", "[Sound Theme]\nName=Own\nDirectories=stereo\n");
    const std::string own = world.writeFile("usr/share/sounds/own/stereo/bell.ogg", "");
    const std::string loose = world.writeFile("usr/share/sounds/bell.oga", "");
    world.writeFile("home/.vyx/theme/current.themerc", "[Variables]\nSoundTheme=own\n");
    EXPECT_EQ(out({"sound", "bell-terminal"}), own + "\n");
    EXPECT_HAS(out({"sound", "bell", "--theme", "not-here", "--json"}), "\"installed\": false",
               "\"file\": \"" + loose + "\"");
    EXPECT_HAS(ran({"sound", "no-such-sound"}, 1).err, "no sound 'no-such-sound' in theme own");
    EXPECT_HAS(out({}), "Sound theme  own  " + world.path("usr/share/sounds/own") + "\n")
        << "the overview names the current theme";
}

TEST(ToolDisplay, WallpaperAndKeysym)
{
    TempHome world;
    const std::string sea = world.writeFile("usr/share/backgrounds/sea.jpg", "");
    EXPECT_EQ(out({"wallpaper", "sea"}), sea + "\n");
    const ProgramRun none = ran({"wallpaper", "lake", "--json"}, 1);
    EXPECT_HAS(none.out, "\"file\": \"\"");
    EXPECT_EQ(none.err, "vyxcore: wallpaper 'lake' not found\n");

    EXPECT_HAS(out({"keysym", "aogonek"}), "0x1b1 (aogonek)", "U+0105", "\xc4\x85");
    EXPECT_HAS(out({"keysym", "0x20ac", "--json"}), "\"ucs\": 8364, \"unicode\": \"U+20AC\"");
    ran({"keysym", "Shift_L"}, 1);
}

TEST(ToolMenu, TheStartMenuAsATree)
{
    TempHome world;
    world.writeFile("usr/share/applications/Games/.directory",
                    "[Desktop Entry]\nType=Directory\nName=Games\nCategories=Game;\n");
    const std::string chess =
        world.writeFile("usr/share/applications/chess.desktop",
                        "[Desktop Entry]\nType=Application\nName=Chess\nExec=sh\nCategories=Game;\n");
    world.writeFile("home/.vyx/startmenu/Work/.directory", "[Desktop Entry]\nType=Directory\nName=Work\n");
    world.writeFile("home/.vyx/startmenu/Work/Deep/.directory", "[Desktop Entry]\nType=Directory\nName=Deeper\n");
    const std::string notes = world.writeFile("home/.vyx/startmenu/Work/Deep/notes.desktop",
                                              "[Desktop Entry]\nType=Application\nName=Notes\nExec=sh\n");
    world.writeFile("home/.vyx/startmenu/Empty/.directory", "[Desktop Entry]\nType=Directory\nName=Empty\n");
    const std::string text = out({"menu"});
    EXPECT_HAS(text, "Games/\n  Chess  " + chess + "\n", "Work/\n  Deeper/  (Deep)\n    Notes  " + notes + "\n");
    EXPECT_LACKS(text, "Empty/");
    EXPECT_HAS(out({"menu", "--empty"}), "Empty/\n");
    EXPECT_HAS(out({"menu", "--json"}), "{\"name\": \"Games\", \"local_name\": \"Games\", \"icon\": \"\", "
                                        "\"directory_file\": \"" +
                                            world.path("usr/share/applications/Games/.directory") +
                                            "\", \"categories\": [\"Game\"], \"folders\": [], \"applications\": "
                                            "[{\"name\": \"Chess\", \"file\": \"chess.desktop\", \"path\": \"" +
                                            chess + "\"");
}

// Every file the library reads of its own accord, each with commands that
// read it. Put a FIFO, a socket or a directory in its place and the
// commands must neither hang nor answer otherwise than when it is missing.
struct ConfigReader {
    const char* name;  // the case's name
    const char* file;  // relative to the world's root
    std::vector<Args> commands;
    // Whether the answer must be exactly the missing file's. Not where the
    // file is found by listing its directory or by its presence: there it is
    // seen, and its reader refuses it with its message for an unreadable file.
    bool asMissing = true;
};

const ConfigReader kConfigReaders[] = {
    {"UserDirs", "home/.config/user-dirs.dirs", {{"dirs"}, {}}},
    {"TrashRecord",
     "home/.local/share/Trash/info/kept.trashinfo",
     {{"trash", "list"}, {"trash", "restore", "kept"}},
     false},
    {"TrashSizes", "home/.local/share/Trash/directorysizes", {{"trash", "size"}}},
    {"DesktopFile",
     "home/.local/share/applications/own.desktop",
     {{"apps"}, {"menu"}, {"default", "text/plain"}},
     false},
    {"AutostartFile", "home/.config/autostart/own.desktop", {{"autostart", "own"}}, false},
    {"MimeinfoCache", "usr/share/applications/mimeinfo.cache", {{"default", "text/plain"}, {"assigned", "text/plain"}}},
    {"DataMimeapps", "usr/share/applications/mimeapps.list", {{"default", "text/plain"}, {"assigned", "text/plain"}}},
    {"UserMimeapps", "home/.config/mimeapps.list", {{"assigned", "text/plain"}}},
    {"IconThemeIndex", "home/.icons/own/index.theme", {{"themes"}, {"theme", "own"}}, false},
    {"SoundThemeIndex", "home/.local/share/sounds/own/index.theme", {{"sound", "bell", "--theme", "own"}}, false},
    {"CurrentThemerc", "home/.vyx/theme/current.themerc", {{"themes"}, {"sound", "bell"}}},
    {"Xresources", "home/.Xresources", {{"cursor"}}},
    {"MimeCache", "home/.local/share/mime/mime.cache", {{"mime", "@home/notes.txt"}}},
    {"MimeGlobs", "home/.local/share/mime/globs2", {{"mime", "@home/notes.txt"}}},
    {"MimeMagic", "home/.local/share/mime/magic", {{"mime", "@home/notes.txt"}}},
};

// Names the case by its file, not by its bytes: the bytes hold addresses,
// and a case name that changes from run to run cannot be selected or
// compared between runs.
void PrintTo(const ConfigReader& reader, std::ostream* os)
{
    *os << reader.file;
}

std::string withoutCacheLine(const std::string& out)
{
    std::string kept;
    std::istringstream lines(out);
    for (std::string line; std::getline(lines, line);) {
        if (line.rfind("cache file: ", 0) != 0)
            kept += line + '\n';
    }
    return kept;
}

using ConfigFileInPlace = ::testing::TestWithParam<ConfigReader>;

TEST_P(ConfigFileInPlace, IsReadAsMissingAtOnce)
{
    TempHome world;
    // Enough of a desktop that every command has something to answer.
    vyxtest::writeApp(world, "usr/share/applications/editor.desktop", "text/plain;");
    world.writeFile("home/.local/share/Trash/files/kept", "data");
    world.writeFile("home/notes.txt", "some text\n");
    for (const char* dir : {"home/.local/share/mime", "home/.icons/own", "home/.local/share/sounds/own"})
        world.makeDir(dir);
    const ConfigReader& reader = GetParam();
    const std::string path = world.makeDir(reader.file);
    rmdir(path.c_str());
    for (Args args : reader.commands) {
        for (std::string& arg : args)
            arg = arg[0] == '@' ? world.path(arg.substr(1)) : arg;
        const ProgramRun missing = runTool(args, 30);
        ASSERT_NE(missing.status, -1) << "killed without the file";
        for (const char* kind : {"FIFO", "socket", "directory"}) {
            SCOPED_TRACE(std::string(kind) + " at " + reader.file + ", vyxcore " + (args.empty() ? "" : args[0]));
            if (kind[0] == 'F')
                ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
            else if (kind[0] == 's')
                ASSERT_EQ(close(vyxtest::bindUnixSocket(path)), 0);
            else
                ASSERT_EQ(mkdir(path.c_str(), 0755), 0);
            const ProgramRun planted = runTool(args, 30);
            EXPECT_NE(planted.status, -1) << "hung or killed";
            if (reader.asMissing) {
                EXPECT_EQ(planted.status, missing.status);
                // The cache line tells whether the per-user cache was fresh,
                // and planting touches the application directory.
                EXPECT_EQ(withoutCacheLine(planted.out), withoutCacheLine(missing.out));
                EXPECT_EQ(planted.err, missing.err);
            } else {
                EXPECT_TRUE(planted.status == 0 || planted.status == 1) << planted.status << planted.err;
            }
            remove(path.c_str());
        }
    }
}

INSTANTIATE_TEST_SUITE_P(EveryReader, ConfigFileInPlace, ::testing::ValuesIn(kConfigReaders),
                         [](const ::testing::TestParamInfo<ConfigReader>& info) { return info.param.name; });

// The promises every command keeps, whatever it does.
TEST(ToolConventions, BadUsageVersionAndTheEndOfOptions)
{
    TempHome world;
    // Bad usage is status 2 in every command, before anything is looked at.
    // Command lines ended by ";", split at blanks; ENTRY stands for a desktop file.
    std::istringstream lines("nonsense;dirs NoSuchDir;dirs 30;dirs --frobnicate;dirs a b;session extra;which;"
                             "entry ENTRY --set novalue;exec ENTRY --file;mimetype nonsense;icon thing --size big;"
                             "icon-for vyx-fm:Home --size 0;trash put;trash shred;autostart clock --enable --disable;"
                             "position notes.txt ten 20;sound;keysym no_such_keysym;keysym 0x-1;menu extra;");
    for (std::string line; std::getline(lines, line, ';');) {
        Args bad;
        std::istringstream words(line);
        for (std::string word; words >> word;)
            bad.push_back(word == "ENTRY" ? dataFile("browser.desktop") : word);
        EXPECT_EQ(ran(bad, 2).out, "");
    }

    const std::string version = out({"--version"});
    EXPECT_EQ(version, std::string("vyxcore ") + VYXCORE_VERSION + "\n");
    EXPECT_EQ(out({"version"}), version);
    EXPECT_EQ(out({"version", "--json"}), std::string("{\"version\": \"") + VYXCORE_VERSION + "\"}\n");
    // Every command's help and its options line are held against the manual page by check_docs.sh.
    EXPECT_HAS(out({"help", "dirs"}), "usage: vyxcore dirs [NAME|NUMBER] [--json]\n");

    world.writeFile("-n.txt", "plain words\n");
    ASSERT_EQ(chdir(world.root().c_str()), 0);
    EXPECT_HAS(out({"mime", "--", "-n.txt"}), "-n.txt: text/plain");
    ran({"mime", "-n.txt"}, 2);  // without --, it is an option
    const ProgramRun both = ran({"--", "mime", "--json", "--", "--json"}, 1);
    ASSERT_EQ(chdir("/"), 0);
    EXPECT_HAS(both.out, "\"file\": \"--json\"") << "a file named --json, asked for in JSON";
    EXPECT_EQ(both.err, "vyxcore mime: cannot examine --json\n");
}

// Every string is valid JSON; file names that are not UTF-8 keep their
// bytes in a "_raw" twin.
TEST(ToolConventions, JsonStaysValidForNamesThatAreNotUtf8)
{
    TempHome world;
    // A stray byte, an overlong "/", a surrogate, and good two-byte text.
    const std::string file = world.writeFile(std::string("a\xff\xc0\xaf\xed\xa0\x80") + "\xc3\xa4.txt", "x");
    std::string bytes;
    for (unsigned char c : file)
        bytes += (bytes.empty() ? "" : ", ") + std::to_string(c);
    EXPECT_HAS(out({"mime", "--json", file}), "a\\u00ff\\u00c0\\u00af\\u00ed\\u00a0\\u0080\xc3\xa4.txt\"",
               "\"file_raw\": [" + bytes + "]");
    EXPECT_LACKS(out({"mime", "--json", world.writeFile("\xc3\xa4.txt", "x")}), "_raw") << "UTF-8 names need no twin";
}

// A command that shows leaves the home directory as it found it (the
// autostart case shows one that changes things creating what it needs).
TEST(ToolConventions, ShowingNeverCreatesDirectories)
{
    TempHome world;
    world.makeDir("home/.local/share");
    world.makeDir("home/.config");
    for (const Args& args : {Args {}, Args {"apps"}, Args {"sound", "bell"}, Args {"menu"}, Args {"autostart", "clock"},
                             Args {"themes"}, Args {"trash", "list"}}) {
        runTool(args);
        for (const char* dir : {"home/.local/share/applications", "home/.local/share/sounds", "home/.config/autostart"})
            EXPECT_NE(access(world.path(dir).c_str(), F_OK), 0) << dir << " after " << (args.empty() ? "" : args[0]);
    }
}

}  // namespace
