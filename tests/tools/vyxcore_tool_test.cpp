// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

// End-to-end tests of the vyxcore tool: the real binary, run as a user
// would, in an isolated home.

#include "support/run_program.h"
#include "support/temp_home.h"
#include "support/xvfb.h"

#include <X11/Xatom.h>
#include <X11/Xlib.h>

#include <gtest/gtest.h>

#include <cerrno>
#include <ostream>
#include <sstream>
#include <string>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace {

struct ToolRun {
    int status = -1;  // -1 when the tool was killed, by the time limit or otherwise
    std::string out;
    std::string err;
};

ToolRun runTool(const std::vector<std::string>& args, unsigned timeLimit = 0)
{
    std::vector<std::string> argv{VYXCORE_TOOL};
    argv.insert(argv.end(), args.begin(), args.end());
    vyxtest::ProgramRun run = vyxtest::runProgram(argv, timeLimit);
    return {run.status, run.out, run.err};
}

bool has(const std::string& text, const std::string& piece)
{
    return text.find(piece) != std::string::npos;
}

TEST(ToolDirs, ListsEveryDirectoryAndAnswersOne)
{
    vyxtest::TempHome world;
    ToolRun all = runTool({"dirs"});
    EXPECT_EQ(all.status, 0);
    EXPECT_TRUE(has(all.out, "18 HomeDir")) << all.out;
    EXPECT_TRUE(has(all.out, "29 SharedStartMenuDir")) << all.out;
    EXPECT_TRUE(has(all.out, world.home() + "/.vyx")) << all.out;

    ToolRun json = runTool({"dirs", "--json"});
    EXPECT_EQ(json.status, 0);
    EXPECT_TRUE(has(json.out, "{\"value\": 2, \"name\": \"VyxHomeDir\", \"path\": \"" + world.home() + "/.vyx\"}"))
        << json.out;

    ToolRun one = runTool({"dirs", "desktopdir"});
    EXPECT_EQ(one.status, 0);
    EXPECT_EQ(one.out, world.home() + "/Desktop\n");
    EXPECT_EQ(runTool({"dirs", "26"}).out, world.home() + "/.cache\n");
}

TEST(ToolDirs, EmptyPathIsNothingFoundAndBadNamesAreUsageErrors)
{
    vyxtest::TempHome world;
    vyxtest::ScopedEnv noHome("HOME", nullptr), noLogname("LOGNAME", nullptr), noUser("USER", nullptr);
    ToolRun empty = runTool({"dirs", "VyxHomeDir"});
    EXPECT_EQ(empty.status, 1);
    EXPECT_EQ(empty.out, "");

    EXPECT_EQ(runTool({"dirs", "NoSuchDir"}).status, 2);
    EXPECT_EQ(runTool({"dirs", "30"}).status, 2);
    EXPECT_EQ(runTool({"dirs", "--frobnicate"}).status, 2);
    EXPECT_EQ(runTool({"dirs", "a", "b"}).status, 2);
    EXPECT_EQ(runTool({"nonsense"}).status, 2);
}

TEST(ToolSession, ReportsKindSuffixAndMissingDisplay)
{
    vyxtest::TempHome world;
    vyxtest::ScopedEnv session("DESKTOP_SESSION", "VYX-Tablet-Kiosk");
    ToolRun text = runTool({"session"});
    EXPECT_EQ(text.status, 0);
    EXPECT_TRUE(has(text.out, "8 VyxTabletKioskSession")) << text.out;
    EXPECT_TRUE(has(text.out, ".vyx-tablet-kiosk")) << text.out;
    EXPECT_TRUE(has(text.out, "no X server reachable")) << text.out;

    ToolRun json = runTool({"session", "--json"});
    EXPECT_EQ(json.status, 0);
    EXPECT_TRUE(has(json.out, "\"kiosk\": true")) << json.out;
    EXPECT_TRUE(has(json.out, "\"display_name\": null")) << json.out;
    EXPECT_TRUE(has(json.out, "\"connected\": false")) << json.out;
    EXPECT_EQ(runTool({"session", "extra"}).status, 2);
}

TEST(ToolSession, WrongDisplayNameIsReportedNotFatal)
{
    vyxtest::TempHome world;
    vyxtest::ScopedEnv display("DISPLAY", "host12");
    ToolRun run = runTool({"session", "--json"});
    EXPECT_EQ(run.status, 0);
    EXPECT_TRUE(has(run.err, "Wrong display name host12")) << run.err;
    EXPECT_TRUE(has(run.out, "\"display_number\": -1")) << run.out;
}

class ToolOnX : public vyxtest::XvfbTest {
protected:
    vyxtest::TempHome m_world;  // made before SetUp sets DISPLAY
};

TEST_F(ToolOnX, SeesTheDesktopThatOwnsTheDisplay)
{
    Display* dpy = display();
    Window root = DefaultRootWindow(dpy);
    Window check = XCreateSimpleWindow(dpy, root, 0, 0, 1, 1, 0, 0, 0);
    Atom supporting = XInternAtom(dpy, "_NET_SUPPORTING_WM_CHECK", False);
    Atom wmName = XInternAtom(dpy, "_NET_WM_NAME", False);
    Atom utf8 = XInternAtom(dpy, "UTF8_STRING", False);
    XChangeProperty(dpy, root, supporting, XA_WINDOW, 32, PropModeReplace,
                    reinterpret_cast<unsigned char*>(&check), 1);
    const char name[] = "vyx-wm";
    XChangeProperty(dpy, check, wmName, utf8, 8, PropModeReplace, reinterpret_cast<const unsigned char*>(name),
                    sizeof name - 1);
    XSync(dpy, False);

    ToolRun run = runTool({"session", "--json"});
    EXPECT_EQ(run.status, 0);
    EXPECT_TRUE(has(run.out, "\"desktop\": 5")) << run.out;
    EXPECT_TRUE(has(run.out, "\"display_number\": " + std::to_string(server().number()))) << run.out;
    EXPECT_TRUE(has(run.out, "\"remote\": false")) << run.out;

    ToolRun overview = runTool({});
    EXPECT_EQ(overview.status, 0);
    EXPECT_TRUE(has(overview.out, "Desktop  Vyx")) << overview.out;
    EXPECT_TRUE(has(overview.out, m_world.home() + "/Desktop")) << overview.out;
}

TEST(ToolHelp, EveryCommandHasHelp)
{
    vyxtest::TempHome world;
    ToolRun help = runTool({"--help"});
    EXPECT_EQ(help.status, 0);
    for (const char* command : {"dirs", "session", "which", "split", "system", "entry", "exec", "why", "apps", "default", "assigned", "mimeapps", "mime", "mimetype", "icon", "themes", "theme"}) {
        EXPECT_TRUE(has(help.out, command)) << help.out;
        ToolRun own = runTool({command, "--help"});
        EXPECT_EQ(own.status, 0);
        EXPECT_TRUE(has(own.out, std::string("usage: vyxcore ") + command)) << own.out;
    }
}

}  // namespace

namespace {

TEST(ToolWhich, FindsProgramsOrSaysNothingFound)
{
    vyxtest::TempHome world;
    vyxtest::ScopedEnv path("PATH", "/usr/bin:/bin");
    ToolRun found = runTool({"which", "sh"});
    EXPECT_EQ(found.status, 0);
    EXPECT_EQ(found.out, "/usr/bin/sh\n");
    EXPECT_EQ(runTool({"which", "no-such-program-42"}).status, 1);
    EXPECT_EQ(runTool({"which"}).status, 2);
}

TEST(ToolSplit, PrintsTheVectorOrTheError)
{
    vyxtest::TempHome world;
    vyxtest::ScopedEnv var("VYXTARGET", "/tmp/x y");
    ToolRun split = runTool({"split", "cp 'a b' \"$VYXTARGET\" >> log # note"});
    EXPECT_EQ(split.status, 0);
    EXPECT_EQ(split.out, "argv[0] cp\nargv[1] a b\nargv[2] /tmp/x y\n>> log\n");
    ToolRun bad = runTool({"split", "--json", "a > f | b"});
    EXPECT_EQ(bad.status, 1);
    EXPECT_TRUE(has(bad.out, "\"error\": 7, \"message\": \"Cannot redirect and pipe out at the same time\""))
        << bad.out;
}

TEST(ToolSystem, ReportsTheUserAndTheMachine)
{
    vyxtest::TempHome world;
    vyxtest::ScopedEnv locale("LC_ALL", "de_DE.UTF-8");
    ToolRun json = runTool({"system", "--json"});
    EXPECT_EQ(json.status, 0);
    EXPECT_TRUE(has(json.out, "\"locale\": \"de_DE.UTF-8\"")) << json.out;
    EXPECT_TRUE(has(json.out, "\"edition_mode\": ")) << json.out;
    EXPECT_TRUE(has(runTool({"system"}).out, "Locale          de_DE.UTF-8")) << runTool({"system"}).out;
}

}  // namespace

namespace {

std::string dataFile(const char* name)
{
    return std::string(VYX_TEST_DATA_DIR) + "/desktop/" + name;
}

TEST(ToolEntry, ShowsEditsAndSaves)
{
    vyxtest::TempHome world;
    vyxtest::ScopedEnv language("LANGUAGE", "de");
    ToolRun shown = runTool({"entry", dataFile("browser.desktop")});
    EXPECT_EQ(shown.status, 0);
    EXPECT_TRUE(has(shown.out, "Name (translated)  ")) << shown.out;
    EXPECT_TRUE(has(shown.out, "Webbrowser")) << shown.out;
    EXPECT_TRUE(has(shown.out, "Other Name[ru]")) << shown.out;

    std::string copy = world.path("copy.desktop");
    ToolRun edited = runTool({"entry", dataFile("browser.desktop"), "--set", "Name=Edited", "--set=X-Mine=1",
                              "--save-as", copy, "--json"});
    EXPECT_EQ(edited.status, 0) << edited.err;
    EXPECT_TRUE(has(edited.out, "\"name\": \"Edited\"")) << edited.out;
    EXPECT_TRUE(has(vyxtest::readFile(copy), "X-Mine = 1"));
    EXPECT_EQ(runTool({"entry", world.path("none.desktop")}).status, 1);
    EXPECT_EQ(runTool({"entry", copy, "--set", "novalue"}).status, 2);
}

TEST(ToolExec, ExpandsWithoutRunning)
{
    vyxtest::TempHome world;
    ToolRun single = runTool({"exec", dataFile("browser.desktop"), "--url", "https://example.org/a b"});
    EXPECT_EQ(single.status, 0);
    EXPECT_EQ(single.out, "/usr/lib/browser/browser \"https://example.org/a b\"\n");
    ToolRun list = runTool({"exec", dataFile("crlf-bom.desktop"), "--file", "/a", "--file", "/b c"});
    EXPECT_EQ(list.out, "editor /a \"/b c\"\n");
    EXPECT_EQ(runTool({"exec", dataFile("link.desktop")}).status, 1);  // no Exec at all
    EXPECT_EQ(runTool({"exec", dataFile("browser.desktop"), "--file"}).status, 2);
}

}  // namespace

namespace {

TEST(ToolWhy, GivesTheReasonWithItsCode)
{
    vyxtest::TempHome world;
    std::string file = world.writeFile("gone.desktop", "[Desktop Entry]\nType=Application\nExec=no-such-42\nNoDisplay=true\n");
    ToolRun why = runTool({"why", file});
    EXPECT_EQ(why.status, 0);
    EXPECT_TRUE(has(why.out, "no  -3 DisplayableNoDisplay")) << why.out;
    EXPECT_TRUE(has(why.out, "no  4 SuitableExecNotInPath")) << why.out;
    EXPECT_TRUE(has(runTool({"why", dataFile("link.desktop"), "--json"}).out, "\"suitable\": true"));
}

}  // namespace

namespace {

TEST(ToolApps, ListsDefaultsAssignmentsAndTheirSources)
{
    vyxtest::TempHome world;
    world.writeFile("usr/share/applications/shown.desktop",
                    "[Desktop Entry]\nType=Application\nName=Shown App\nExec=true\nMimeType=text/x-vyxtest;\n");
    world.writeFile("usr/share/applications/hidden.desktop",
                    "[Desktop Entry]\nType=Application\nName=Hidden App\nExec=true\nNoDisplay=true\n");
    std::string list = world.writeFile("home/.config/mimeapps.list",
                                       "[Added Associations]\ntext/x-vyxtest=shown.desktop;\n");

    ToolRun apps = runTool({"apps"});
    EXPECT_EQ(apps.status, 0);
    EXPECT_TRUE(has(apps.out, "Shown App")) << apps.out;
    EXPECT_FALSE(has(apps.out, "Hidden App")) << apps.out;
    EXPECT_TRUE(has(runTool({"apps", "--all"}).out, "hidden.desktop")) << apps.out;

    ToolRun found = runTool({"default", "text/x-vyxtest"});
    EXPECT_EQ(found.status, 0);
    EXPECT_TRUE(has(found.out, world.path("usr/share/applications/shown.desktop") + "  (from the desktop files of"))
        << found.out;
    ToolRun none = runTool({"default", "text/x-none-vyxtest"});
    EXPECT_EQ(none.status, 1);
    EXPECT_EQ(none.out, "");
    EXPECT_EQ(none.err, "vyxcore default: no installed application opens text/x-none-vyxtest\n");
    // Which cache file answered, and why one was not believed.
    std::string cache = world.path("run") + "/.vyx-mime-desktop.tbl";
    EXPECT_TRUE(has(found.out, "cache file: " + cache + " (rebuilt and written)\n")) << found.out;
    EXPECT_TRUE(has(runTool({"default", "text/x-vyxtest"}).out, "cache file: " + cache + " (read)\n"));
    chmod(cache.c_str(), 0666);
    ToolRun ignored = runTool({"mimeapps", "--json"});
    EXPECT_TRUE(has(ignored.out, "\"cache_file\": {\"path\": \"" + cache +
                                     "\", \"read\": false, \"written\": true, \"ignored\": \"writable by group or others\"}"))
        << ignored.out;

    ToolRun assigned = runTool({"assigned", "text/x-vyxtest", "--json"});
    EXPECT_EQ(assigned.status, 0);
    EXPECT_TRUE(has(assigned.out, "\"source\": \"" + list + "\"")) << assigned.out;
    EXPECT_TRUE(has(runTool({"mimeapps"}).out, list));
    // An application is named alike by id, file name or path, in every command.
    for (const std::string& name : {std::string("hidden"), std::string("hidden.desktop"),
                                    world.path("usr/share/applications/hidden.desktop")})
        EXPECT_TRUE(has(runTool({"why", name}).out, "DisplayableNoDisplay")) << name;
    EXPECT_EQ(runTool({"exec", "shown"}).out, "true\n");
    EXPECT_TRUE(has(runTool({"entry", "shown", "--json"}).out, "\"name\": \"Shown App\"")) << "entry by id";
    ToolRun unknown = runTool({"why", "no-such-app"});
    EXPECT_EQ(unknown.status, 1);
    EXPECT_TRUE(has(unknown.err, "'no-such-app'")) << unknown.err;
}

}  // namespace

namespace {

TEST(ToolMime, TypesOfFilesAndFactsOfTypes)
{
    vyxtest::TempHome world;
    vyxtest::ScopedEnv dirs("XDG_DATA_DIRS", "/usr/share");
    std::string png = world.writeFile("picture.txt", std::string("\x89PNG\r\n\x1a\n\0\0\0\rIHDR", 16));
    ToolRun mime = runTool({"mime", png, world.path("missing")});
    EXPECT_EQ(mime.status, 1);
    EXPECT_TRUE(has(mime.out, "by name text/plain, by content image/png")) << mime.out;
    ToolRun type = runTool({"mimetype", "application/x-pdf", "--json"});
    EXPECT_EQ(type.status, 0);
    EXPECT_TRUE(has(type.out, "\"canonical\": \"application/pdf\"")) << type.out;
    EXPECT_EQ(runTool({"mimetype", "nonsense"}).status, 2);
}

}  // namespace

namespace {

TEST(ToolIcons, FindsIconsAndShowsThemes)
{
    vyxtest::TempHome world;
    world.writeFile("usr/share/icons/own/index.theme",
                    "[Icon Theme]\nName=Own\nDirectories=48x48/apps\n[48x48/apps]\nType=Fixed\nContext=Applications\n");
    std::string icon = world.writeFile("usr/share/icons/own/48x48/apps/thing.png", "icon");
    world.writeFile("home/.vyx/theme/current.themerc", "[Variables]\nIconTheme=own\n");
    EXPECT_EQ(runTool({"icon", "thing"}).out, icon + "\n");
    EXPECT_EQ(runTool({"icon", "thing", "--theme", "own", "--context", "Applications", "--size", "48"}).out, icon + "\n");
    EXPECT_EQ(runTool({"icon", "missing-thing"}).status, 1);
    ToolRun uninstalled = runTool({"icon", "thing", "--theme", "not-here"});
    EXPECT_EQ(uninstalled.status, 1);
    EXPECT_TRUE(has(uninstalled.err, "icon theme not-here is not installed")) << uninstalled.err;
    EXPECT_EQ(runTool({"icon", "thing", "--size", "big"}).status, 2);
    EXPECT_NE(runTool({"icon", "thing", "--json"}).out.find("\"file\": \"" + icon + "\""), std::string::npos);

    ToolRun themes = runTool({"themes", "--json"});
    EXPECT_NE(themes.out.find("\"own\""), std::string::npos) << themes.out;
    EXPECT_NE(themes.out.find("\"current\": \"own\""), std::string::npos) << themes.out;
    ToolRun theme = runTool({"theme", "own"});
    EXPECT_EQ(theme.status, 0);
    EXPECT_NE(theme.out.find("48x48/apps"), std::string::npos) << theme.out;
    EXPECT_NE(theme.out.find("hicolor"), std::string::npos) << theme.out;
    EXPECT_EQ(runTool({"theme", "no-such-theme"}).status, 1);
}

TEST(ToolIcons, IconsForThingsThatAreNotIconNames)
{
    vyxtest::TempHome world;
    world.writeFile("usr/share/icons/own/index.theme",
                    "[Icon Theme]\nName=Own\nDirectories=48x48/places,48x48/mimetypes\n"
                    "[48x48/places]\nType=Fixed\nContext=Places\n[48x48/mimetypes]\nType=Fixed\nContext=MimeTypes\n");
    std::string home = world.writeFile("usr/share/icons/own/48x48/places/user-home.png", "icon");
    std::string generic = world.writeFile("usr/share/icons/own/48x48/mimetypes/text-x-generic.png", "icon");
    world.writeFile("home/.vyx/theme/current.themerc", "[Variables]\nIconTheme=own\n");
    EXPECT_EQ(runTool({"icon-for", "vyx-fm:Home"}).out,
              "file     " + home + "\nname     user-home\ncontext  Places\n");
    ToolRun type = runTool({"icon-for", "text/x-no-such-type", "--json"});
    EXPECT_TRUE(has(type.out, "\"file\": \"" + generic + "\"")) << type.out;
    EXPECT_TRUE(has(type.out, "\"context\": \"MimeTypes\"")) << type.out;
    EXPECT_EQ(runTool({"icon-for", "ftp://example.org"}).status, 1);  // no handler, no "network" icon
    EXPECT_EQ(runTool({"icon-for", "vyx-fm:Home", "--size", "0"}).status, 2);
}

TEST(ToolIcons, CursorThemeShownAndSet)
{
    vyxtest::TempHome world;
    world.makeDir("home/.icons/Pointy/cursors");
    world.writeFile("home/.Xresources", "*background: grey\n");
    EXPECT_EQ(runTool({"cursor", "--set", "Pointy"}).status, 0);
    ToolRun shown = runTool({"cursor", "--json"});
    EXPECT_TRUE(has(shown.out, "\"current\": \"Pointy\"")) << shown.out;
    EXPECT_TRUE(has(shown.out, world.home() + "/.icons/Pointy")) << shown.out;
    EXPECT_TRUE(has(vyxtest::readFile(world.home() + "/.Xresources"), "*background: grey")) << "other resources kept";
}

TEST(ToolIcons, ThemeInstalledTwiceIsListedOnceWithTheCopyUsed)
{
    vyxtest::TempHome world;
    const std::string index = "[Icon Theme]\nName=Twice\nDirectories=16x16/apps\n[16x16/apps]\nSize=16\n";
    world.writeFile("home/.icons/twice/index.theme", index);
    world.writeFile("usr/share/icons/twice/index.theme", index);
    ToolRun themes = runTool({"themes"});
    EXPECT_EQ(themes.status, 0);
    EXPECT_TRUE(has(themes.out, world.home() + "/.icons/twice (first of 2 copies)\n")) << themes.out;
    EXPECT_FALSE(has(themes.out, world.path("usr/share/icons/twice"))) << themes.out;
    EXPECT_TRUE(has(runTool({"themes", "--json"}).out, "\"twice\", \"twice\"")) << themes.out;
    EXPECT_TRUE(has(runTool({"theme", "twice"}).out, world.path("usr/share/icons/twice"))) << "other path";
}

TEST(ToolTrash, PutsListsRestoresAndEmpties)
{
    vyxtest::TempHome world;
    const std::string doc = world.writeFile("home/docs/a b.txt", "12345");
    ToolRun put = runTool({"trash", "put", doc, world.path("missing")});
    EXPECT_EQ(put.status, 1) << "one PATH failed";
    EXPECT_TRUE(has(put.err, "missing")) << put.err;
    EXPECT_NE(access(doc.c_str(), F_OK), 0);
    ToolRun listed = runTool({"trash", "list", "--json"});
    EXPECT_TRUE(has(listed.out, "[{\"name\": \"a b.txt\", \"path\": \"" + doc + "\", \"deletion_date\": \""))
        << listed.out;
    EXPECT_EQ(runTool({"trash", "size", "--json"}).out, "{\"size\": 5, \"size_cache\": false}\n");
    EXPECT_EQ(runTool({"trash", "restore", doc}).status, 0);
    EXPECT_EQ(vyxtest::readFile(doc), "12345");
    EXPECT_EQ(runTool({"trash", "restore", doc}).status, 1) << "nothing left to restore";
    ToolRun none = runTool({"trash", "list"});
    EXPECT_EQ(none.status, 0) << "an empty trash is an empty listing";
    EXPECT_EQ(none.out + none.err, "");
    EXPECT_EQ(runTool({"trash", "list", "--json"}).out, "[]\n");
    EXPECT_EQ(runTool({"trash", "put"}).status, 2);
    EXPECT_EQ(runTool({"trash", "shred"}).status, 2);
    EXPECT_EQ(runTool({"trash", "put", doc}).status, 0);
    EXPECT_EQ(runTool({"trash", "empty"}).status, 0);
    EXPECT_EQ(runTool({"trash", "list"}).out, "");
}

TEST(ToolSessionServices, AutostartRecentAndPositions)
{
    vyxtest::TempHome world;
    world.writeFile("usr/share/applications/clock.desktop", "[Desktop Entry]\nType=Application\nName=Clock\nExec=sh\n");
    EXPECT_EQ(runTool({"autostart", "clock", "--enable"}).status, 0);
    const std::string mine = world.home() + "/.config/autostart/clock.desktop";
    EXPECT_TRUE(has(runTool({"autostart", "clock", "--json"}).out, "\"enabled\": true, \"file\": \"" + mine + "\""));
    EXPECT_EQ(runTool({"autostart", "clock", "--disable"}).status, 0);
    EXPECT_TRUE(has(runTool({"autostart", "clock"}).out, "disabled"));
    EXPECT_TRUE(has(vyxtest::readFile(mine), "Hidden")) << "the user's file says so";
    EXPECT_EQ(runTool({"autostart", "clock", "--disable", "--delete"}).status, 0) << "already off: nothing to do";
    EXPECT_EQ(runTool({"autostart", "clock", "--enable"}).status, 0);
    EXPECT_EQ(runTool({"autostart", "clock", "--disable", "--delete"}).status, 0);
    EXPECT_NE(access(mine.c_str(), F_OK), 0);
    EXPECT_EQ(runTool({"autostart", "no-such-app", "--enable"}).status, 1);
    EXPECT_EQ(runTool({"autostart", "clock", "--enable", "--disable"}).status, 2);

    const std::string doc = world.writeFile("home/notes.txt", "x");
    EXPECT_EQ(runTool({"recent", doc}).status, 1) << "no recents folder: it is never made";
    world.makeDir("home/.vyx/startmenu/recents");
    EXPECT_TRUE(has(runTool({"recent", doc, "--json"}).out, "\"result\": 0"));
    EXPECT_TRUE(has(vyxtest::readFile(world.home() + "/.vyx/startmenu/recents/notes.txt.desktop"), "notes.txt"));

    EXPECT_EQ(runTool({"position", "notes.txt", "10", "20"}).status, 1) << "the .directory is never created";
    const std::string positions = world.writeFile("home/Desktop/.directory", "");
    EXPECT_EQ(runTool({"position", "notes.txt", "-10", "20", "HDMI-1"}).status, 0);
    EXPECT_TRUE(has(vyxtest::readFile(positions), "X = -10")) << vyxtest::readFile(positions);
    EXPECT_EQ(runTool({"position", "notes.txt", "ten", "20"}).status, 2);
    EXPECT_EQ(runTool({"position", "--remove", "notes.txt"}).status, 0);
    EXPECT_FALSE(has(vyxtest::readFile(positions), "notes.txt"));
}

TEST(ToolSounds, FindsSoundsInTheCurrentOrGivenTheme)
{
    vyxtest::TempHome world;
    world.writeFile("usr/share/sounds/own/index.theme", "[Sound Theme]\nName=Own\nDirectories=stereo\n");
    std::string own = world.writeFile("usr/share/sounds/own/stereo/bell.ogg", "");
    std::string loose = world.writeFile("usr/share/sounds/bell.oga", "");
    world.writeFile("home/.vyx/theme/current.themerc", "[Variables]\nSoundTheme=own\n");
    EXPECT_EQ(runTool({"sound", "bell-terminal"}).out, own + "\n");
    ToolRun other = runTool({"sound", "bell", "--theme", "not-here", "--json"});
    EXPECT_TRUE(has(other.out, "\"installed\": false")) << other.out;
    EXPECT_TRUE(has(other.out, "\"file\": \"" + loose + "\"")) << other.out;
    ToolRun none = runTool({"sound", "no-such-sound"});
    EXPECT_EQ(none.status, 1);
    EXPECT_TRUE(has(none.err, "no sound 'no-such-sound' in theme own")) << none.err;
    EXPECT_EQ(runTool({"sound"}).status, 2);
    EXPECT_TRUE(has(runTool({}).out, "Sound theme  own  " + world.path("usr/share/sounds/own") + "\n"))
        << "the overview names the current theme";
}

TEST(ToolDisplay, WallpaperAndKeysym)
{
    vyxtest::TempHome world;
    const std::string sea = world.writeFile("usr/share/backgrounds/sea.jpg", "");
    EXPECT_EQ(runTool({"wallpaper", "sea"}).out, sea + "\n");
    ToolRun none = runTool({"wallpaper", "lake", "--json"});
    EXPECT_EQ(none.status, 1);
    EXPECT_TRUE(has(none.out, "\"file\": \"\"")) << none.out;
    EXPECT_EQ(none.err, "vyxcore: wallpaper 'lake' not found\n");

    ToolRun ogonek = runTool({"keysym", "aogonek"});
    EXPECT_EQ(ogonek.status, 0);
    EXPECT_TRUE(has(ogonek.out, "0x1b1 (aogonek)") && has(ogonek.out, "U+0105") && has(ogonek.out, "\xc4\x85"))
        << ogonek.out;
    EXPECT_TRUE(has(runTool({"keysym", "0x20ac", "--json"}).out, "\"ucs\": 8364, \"unicode\": \"U+20AC\""));
    EXPECT_EQ(runTool({"keysym", "Shift_L"}).status, 1);
    EXPECT_EQ(runTool({"keysym", "no_such_keysym"}).status, 2);
    EXPECT_EQ(runTool({"keysym", "0x-1"}).status, 2);
}

TEST(ToolMenu, TheStartMenuAsATree)
{
    vyxtest::TempHome world;
    world.writeFile("usr/share/applications/Games/.directory",
                    "[Desktop Entry]\nType=Directory\nName=Games\nCategories=Game;\n");
    const std::string chess = world.writeFile("usr/share/applications/chess.desktop",
                                              "[Desktop Entry]\nType=Application\nName=Chess\nExec=sh\nCategories=Game;\n");
    world.writeFile("home/.vyx/startmenu/Work/.directory", "[Desktop Entry]\nType=Directory\nName=Work\n");
    world.writeFile("home/.vyx/startmenu/Work/Deep/.directory", "[Desktop Entry]\nType=Directory\nName=Deeper\n");
    const std::string notes = world.writeFile("home/.vyx/startmenu/Work/Deep/notes.desktop",
                                              "[Desktop Entry]\nType=Application\nName=Notes\nExec=sh\n");
    world.writeFile("home/.vyx/startmenu/Empty/.directory", "[Desktop Entry]\nType=Directory\nName=Empty\n");
    ToolRun text = runTool({"menu"});
    EXPECT_EQ(text.status, 0);
    EXPECT_TRUE(has(text.out, "Games/\n  Chess  " + chess + "\n")) << text.out;
    EXPECT_TRUE(has(text.out, "Work/\n  Deeper/  (Deep)\n    Notes  " + notes + "\n")) << text.out;
    EXPECT_FALSE(has(text.out, "Empty/"));
    EXPECT_TRUE(has(runTool({"menu", "--empty"}).out, "Empty/\n"));
    ToolRun json = runTool({"menu", "--json"});
    EXPECT_TRUE(has(json.out, "{\"name\": \"Games\", \"local_name\": \"Games\", \"icon\": \"\", \"directory_file\": \"" +
                                  world.path("usr/share/applications/Games/.directory") +
                                  "\", \"categories\": [\"Game\"], \"folders\": [], \"applications\": [{\"name\": \"Chess\", "
                                  "\"file\": \"chess.desktop\", \"path\": \"" + chess + "\""))
        << json.out;
    EXPECT_EQ(runTool({"menu", "extra"}).status, 2);
}

}  // namespace

namespace {

// Every file the library reads of its own accord, each with commands that
// read it. Put a FIFO, a socket or a directory in its place and the
// commands must neither hang nor answer otherwise than when it is missing.
struct ConfigReader {
    const char* name;  // the case's name
    const char* file;  // relative to the world's root
    std::vector<std::vector<std::string>> commands;
    // Whether the answer must be exactly the missing file's. Not where the
    // file is found by listing its directory or by its presence: there it is
    // seen, and its reader refuses it with its message for an unreadable file.
    bool asMissing = true;
};

const ConfigReader kConfigReaders[] = {
    {"UserDirs", "home/.config/user-dirs.dirs", {{"dirs"}, {}}},
    {"TrashRecord", "home/.local/share/Trash/info/kept.trashinfo", {{"trash", "list"}, {"trash", "restore", "kept"}}, false},
    {"TrashSizes", "home/.local/share/Trash/directorysizes", {{"trash", "size"}}},
    {"DesktopFile", "home/.local/share/applications/own.desktop", {{"apps"}, {"menu"}, {"default", "text/plain"}}, false},
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

// Names the case by its file, not by its bytes.
void PrintTo(const ConfigReader& reader, std::ostream* os)
{
    *os << reader.file;
}

class ConfigFileInPlace : public ::testing::TestWithParam<ConfigReader> {
protected:
    ConfigFileInPlace()
    {
        // Enough of a desktop that every command has something to answer.
        m_world.writeFile("usr/share/applications/editor.desktop",
                          "[Desktop Entry]\nType=Application\nName=Editor\nExec=true\nMimeType=text/plain;\n");
        m_world.writeFile("home/.local/share/Trash/files/kept", "data");
        m_world.makeDir("home/.local/share/mime");
        m_world.writeFile("home/notes.txt", "some text\n");
        m_world.makeDir("home/.icons/own");
        m_world.makeDir("home/.local/share/sounds/own");
    }

    std::vector<std::string> resolved(std::vector<std::string> args) const
    {
        for (std::string& arg : args) {
            if (!arg.empty() && arg[0] == '@')
                arg = m_world.path(arg.substr(1));
        }
        return args;
    }

    vyxtest::TempHome m_world;
};

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

TEST_P(ConfigFileInPlace, IsReadAsMissingAtOnce)
{
    const ConfigReader& reader = GetParam();
    const std::string path = m_world.path(reader.file);
    m_world.makeDir(reader.file);
    rmdir(path.c_str());
    for (const std::vector<std::string>& command : reader.commands) {
        const std::vector<std::string> args = resolved(command);
        const ToolRun missing = runTool(args, 30);
        ASSERT_NE(missing.status, -1) << "killed without the file";
        for (const char* kind : {"FIFO", "socket", "directory"}) {
            SCOPED_TRACE(std::string(kind) + " at " + reader.file + ", vyxcore " + (args.empty() ? "" : args[0]));
            if (kind[0] == 'F') {
                ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
            } else if (kind[0] == 's') {
                sockaddr_un address = {};
                address.sun_family = AF_UNIX;
                ASSERT_LT(path.size(), sizeof address.sun_path);
                path.copy(address.sun_path, sizeof address.sun_path - 1);
                int fd = socket(AF_UNIX, SOCK_STREAM, 0);
                ASSERT_EQ(bind(fd, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
                close(fd);
            } else {
                ASSERT_EQ(mkdir(path.c_str(), 0755), 0);
            }
            const ToolRun planted = runTool(args, 30);
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
TEST(ToolConventions, VersionAndTheEndOfOptions)
{
    vyxtest::TempHome world;
    ToolRun version = runTool({"--version"});
    EXPECT_EQ(version.status, 0);
    EXPECT_EQ(version.out, std::string("vyxcore ") + VYXCORE_VERSION + "\n");
    EXPECT_EQ(runTool({"version"}).out, version.out);
    EXPECT_EQ(runTool({"version", "--json"}).out, std::string("{\"version\": \"") + VYXCORE_VERSION + "\"}\n");

    const std::string dashed = world.writeFile("-n.txt", "plain words\n");
    ASSERT_EQ(chdir(world.root().c_str()), 0);
    ToolRun mime = runTool({"mime", "--", "-n.txt"});
    ToolRun refused = runTool({"mime", "-n.txt"});
    ToolRun both = runTool({"--", "mime", "--json", "--", "--json"});
    ASSERT_EQ(chdir("/"), 0);
    EXPECT_EQ(mime.status, 0) << mime.err;
    EXPECT_TRUE(has(mime.out, "-n.txt: text/plain")) << mime.out;
    EXPECT_EQ(refused.status, 2) << "without --, it is an option";
    EXPECT_EQ(both.status, 1);
    EXPECT_TRUE(has(both.out, "\"file\": \"--json\"")) << "a file named --json, asked for in JSON: " << both.out;
    EXPECT_EQ(both.err, "vyxcore mime: cannot examine --json\n");
}

// Every string is valid JSON; file names that are not UTF-8 keep their
// bytes in a "_raw" twin.
TEST(ToolConventions, JsonStaysValidForNamesThatAreNotUtf8)
{
    vyxtest::TempHome world;
    // A stray byte, an overlong "/", a surrogate, and good two-byte text.
    const std::string name = std::string("a\xff\xc0\xaf\xed\xa0\x80") + "\xc3\xa4.txt";
    const std::string file = world.writeFile(name, "x");
    ToolRun mime = runTool({"mime", "--json", file});
    EXPECT_EQ(mime.status, 0);
    EXPECT_TRUE(has(mime.out, "a\\u00ff\\u00c0\\u00af\\u00ed\\u00a0\\u0080\xc3\xa4.txt\"")) << mime.out;
    std::string bytes;
    for (unsigned char c : file)
        bytes += (bytes.empty() ? "" : ", ") + std::to_string(c);
    EXPECT_TRUE(has(mime.out, "\"file_raw\": [" + bytes + "]")) << mime.out;

    const std::string good = world.writeFile("\xc3\xa4.txt", "x");
    EXPECT_FALSE(has(runTool({"mime", "--json", good}).out, "_raw")) << "UTF-8 names need no twin";

    ASSERT_EQ(runTool({"trash", "put", file}).status, 0);
    ToolRun listed = runTool({"trash", "list", "--json"});
    EXPECT_TRUE(has(listed.out, "\"name\": \"a\\u00ff")) << listed.out;
    EXPECT_TRUE(has(listed.out, "\"name_raw\": [97, 255, ")) << listed.out;
    EXPECT_TRUE(has(listed.out, "\"path_raw\": [" + bytes + "]")) << listed.out;
}

// A command that shows leaves the home directory as it found it; one that
// changes things may still create what it needs.
TEST(ToolConventions, ShowingNeverCreatesDirectories)
{
    vyxtest::TempHome world;
    world.makeDir("home/.local/share");
    world.makeDir("home/.config");
    for (std::vector<std::string> args : {std::vector<std::string>{}, {"apps"}, {"sound", "bell"}, {"menu"},
                                          {"autostart", "clock"}, {"themes"}, {"trash", "list"}}) {
        runTool(args);
        for (const char* dir : {"home/.local/share/applications", "home/.local/share/sounds", "home/.config/autostart"})
            EXPECT_NE(access(world.path(dir).c_str(), F_OK), 0) << dir << " after " << (args.empty() ? "" : args[0]);
    }
    world.writeFile("usr/share/applications/clock.desktop", "[Desktop Entry]\nType=Application\nName=Clock\nExec=sh\n");
    EXPECT_EQ(runTool({"autostart", "clock", "--enable"}).status, 0);
    EXPECT_EQ(access(world.path("home/.config/autostart/clock.desktop").c_str(), F_OK), 0);
}

}  // namespace
