// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

// Whether entries are shown and may run: the rules on given facts, and the
// process's own facts from the real machine.

#include "desktopentry/suitability_p.h"
#include "support/child_process.h"
#include "support/temp_home.h"

#include <vyxdesktopentry.h>

#include <gtest/gtest.h>

#include <functional>
#include <sys/stat.h>

namespace {

using Code = VyxDesktopEntry::SuitableCode;
using DisplayCode = VyxDesktopEntry::DisplayableCode;
using Vyx::detail::SessionFacts;
using Vyx::detail::UserFacts;
using vyxtest::ScopedEnv;
using vyxtest::TempHome;

VyxDesktopEntry entryFrom(const TempHome& world, const std::string& name, const std::string& body)
{
    return VyxDesktopEntry(world.writeFile(name, "[Desktop Entry]\n" + body));
}

DisplayCode displayCode(const VyxDesktopEntry& entry, const SessionFacts& facts)
{
    DisplayCode code = VyxDesktopEntry::Displayable;
    Vyx::detail::isForSession(entry, facts, &code);
    return code;
}

TEST(Displayable, SessionPlasmaHiddenAndNoDisplayInOrder)
{
    TempHome world;
    // Plasma on the machine turns "KDE" entries away. Asked in children
    // first: a process keeps its own facts once asked.
    std::string kdeFile = world.writeFile("kde.desktop", "[Desktop Entry]\nOnlyShowIn=KDE;\n");
    vyxtest::ChildOptions options;
    options.mounts = {vyxtest::Mount::bind(world.writeFile("plasmashell", ""), "/usr/bin/plasmashell")};
    VYX_EXPECT_CHILD(vyxtest::runInChild(options, [&] { EXPECT_FALSE(VyxDesktopEntry(kdeFile).isDisplayable()); }));
    options.mounts = {vyxtest::Mount::tmpfs("/usr/bin")};
    VYX_EXPECT_CHILD(vyxtest::runInChild(options, [&] { EXPECT_TRUE(VyxDesktopEntry(kdeFile).isDisplayable()); }));

    SessionFacts plain, plasma, mini;
    plasma.plasmaPresent = true;
    mini.sessionName = "vyx-mini";
    VyxDesktopEntry kde(kdeFile);
    EXPECT_EQ(displayCode(kde, plain), VyxDesktopEntry::Displayable);  // no Plasma: "KDE" means us
    EXPECT_EQ(displayCode(kde, plasma), VyxDesktopEntry::DisplayableNotForSession);
    EXPECT_EQ(displayCode(entryFrom(world, "notkde.desktop", "NotShowIn=KDE;\n"), plasma),
              VyxDesktopEntry::Displayable);
    EXPECT_EQ(displayCode(entryFrom(world, "vyx.desktop", "OnlyShowIn=GNOME;vyx;\n"), plain),
              VyxDesktopEntry::Displayable);
    EXPECT_EQ(displayCode(entryFrom(world, "gnome.desktop", "OnlyShowIn=GNOME;\n"), plain),
              VyxDesktopEntry::DisplayableNotForSession);
    VyxDesktopEntry notMini = entryFrom(world, "nomini.desktop", "NotShowIn=Vyx-Mini;\n");
    EXPECT_EQ(displayCode(notMini, mini), VyxDesktopEntry::DisplayableNotForSession);
    EXPECT_EQ(displayCode(notMini, plain), VyxDesktopEntry::Displayable);

    // Hidden, then the session, then NoDisplay.
    DisplayCode code;
    EXPECT_FALSE(entryFrom(world, "h.desktop", "Hidden=true\nOnlyShowIn=GNOME\n").isDisplayable(&code));
    EXPECT_EQ(code, VyxDesktopEntry::DisplayableHidden);
    EXPECT_FALSE(entryFrom(world, "n.desktop", "NoDisplay=true\nOnlyShowIn=GNOME\n").isDisplayable(&code));
    EXPECT_EQ(code, VyxDesktopEntry::DisplayableNotForSession);
    EXPECT_TRUE(entryFrom(world, "ok.desktop", "OnlyShowIn=VYX\n").isDisplayable(&code));  // DESKTOP_SESSION unset
    EXPECT_EQ(code, VyxDesktopEntry::Displayable);
}

TEST(Suitable, ProgramNamesPrivilegesTerminalsAndWholeEntries)
{
    TempHome world;
    std::string program = world.writeFile("my app/run", "#!/bin/sh\n");
    chmod(program.c_str(), 0755);
    const std::string quoted = "\"" + program + "\" --x";
    UserFacts ordinary, admin, unchecked, noConsole, root;
    admin.administrator = true;
    unchecked.noAdminCheck = true;
    noConsole.consoleAllowed = false;
    root = noConsole;
    root.root = true;
    const struct {
        const char* exec;
        const UserFacts& user;
        Code code;
        bool ok = false;
        bool adminOnly = false;
    } cases[] = {
        {quoted.c_str(), ordinary, VyxDesktopEntry::Suitable, true},
        {"\"", ordinary, VyxDesktopEntry::SuitableBadExec},
        {"\"\" x", ordinary, VyxDesktopEntry::SuitableBadExec},
        {"", ordinary, VyxDesktopEntry::SuitableBadExec},
        {"env LANG=C ls --all", ordinary, VyxDesktopEntry::Suitable, true},
        {"env LANG=C no-such-program-42", ordinary, VyxDesktopEntry::SuitableExecNotInPath},
        {"env foo", ordinary, VyxDesktopEntry::Suitable},  // false with code 0, kept
        {"ls;rm -rf /", ordinary, VyxDesktopEntry::Suitable, true},
        {"VYXWM_RESTART", ordinary, VyxDesktopEntry::Suitable, true},  // a window-manager command, not a program
        {"VYXWM_", ordinary, VyxDesktopEntry::SuitableExecNotInPath},
        {"/no/such/program %f", ordinary, VyxDesktopEntry::SuitableExecNotFound},
        {"su-to-root -X ls", admin, VyxDesktopEntry::Suitable},  // no "-c": code 0, kept
        {"su-to-root -c \"ls\"", admin, VyxDesktopEntry::Suitable, true},
        {"su-to-root -c ls -l", admin, VyxDesktopEntry::Suitable, true},
        {"su-to-root -c \"", admin, VyxDesktopEntry::SuitableBadExec},
        // Privileges and terminals.
        {"pkexec ls", ordinary, VyxDesktopEntry::SuitableAdminRequired},
        {"vyx-su ls", ordinary, VyxDesktopEntry::SuitableAdminRequired},
        {"ls", ordinary, VyxDesktopEntry::SuitableAdminRequired, false, true},
        {"pkexec no-such-42", unchecked, VyxDesktopEntry::SuitableExecNotInPath},  // no rights check
        {"su-to-root", ordinary, VyxDesktopEntry::SuitableExecNotInPath},  // no blank: no rights check
        {"x-terminal-emulator -e top", noConsole, VyxDesktopEntry::SuitableAdminRequired},
        {"mc", noConsole, VyxDesktopEntry::SuitableAdminRequired},
        {"ls --color", root, VyxDesktopEntry::Suitable, true},
    };
    for (const auto& c : cases) {
        Code code = static_cast<Code>(99);
        EXPECT_EQ(Vyx::detail::isExecSuitableFor(c.exec, c.adminOnly, c.user, &code), c.ok) << c.exec;
        EXPECT_EQ(code, c.code) << c.exec;
    }

    // Whole entries: type, link, TryExec, origin file and edition modes.
    world.writeFile("home/tool", "x");
    const std::pair<const char*, Code> entries[] = {
        {"Exec=ls\n", VyxDesktopEntry::SuitableNoType},
        {"Type=Link\n", VyxDesktopEntry::SuitableLinkWithoutUrl},
        {"Type=Application\nTryExec=/no/such\nExec=ls\n", VyxDesktopEntry::SuitableTryExecNotFound},
        {"Type=Application\nTryExec=nope-42\nExec=ls\n", VyxDesktopEntry::SuitableTryExecNotInPath},
        {"Type=Application\nTryExec=$HOME/tool\nExec=ls\n", VyxDesktopEntry::Suitable},
        {"Type=Application\nExec=ls\nX-Vyx-OriginFile=/no/origin\n", VyxDesktopEntry::SuitableOriginFileMissing},
        {"Type=Link\nURL=https://x\n", VyxDesktopEntry::Suitable}};
    for (const auto& [body, expected] : entries) {
        Code code = static_cast<Code>(99);
        EXPECT_EQ(entryFrom(world, "entry.desktop", body).isSuitable(&code), expected == VyxDesktopEntry::Suitable)
            << body;
        EXPECT_EQ(code, expected) << body;
    }

    std::string modes = world.writeFile("h.desktop", "[Desktop Entry]\nType=Directory\nX-Vyx-OnlyShowInModes=1;2\n");
    vyxtest::ChildOptions options;
    options.mounts = {vyxtest::Mount::bind(world.writeFile("edition", "mode=3\n"), "/etc/vyx/edition")};
    VYX_EXPECT_CHILD(vyxtest::runInChild(options, [&] {
        Code inner;
        EXPECT_FALSE(VyxDesktopEntry(modes).isSuitable(&inner));
        EXPECT_EQ(inner, VyxDesktopEntry::SuitableModeMismatch);
    }));
}

TEST(Kiosk, WhitelistByFileNameAndProgram)
{
    TempHome world;
    std::string kioskDir = world.path("kiosk");
    world.writeFile("kiosk/sub/editor.desktop", "[Desktop Entry]\nExec=/usr/bin/editor --kiosk\n");
    ScopedEnv session("DESKTOP_SESSION", "vyx-kiosk"), config("VYX_KIOSK_CONFIG_DIR", kioskDir.c_str());
    DisplayCode code;
    EXPECT_TRUE(entryFrom(world, "apps/editor.desktop", "Exec=editor --kiosk\n").isForVyx(&code));
    EXPECT_FALSE(entryFrom(world, "apps2/editor.desktop", "Exec=other\n").isForVyx(&code));
    EXPECT_EQ(code, VyxDesktopEntry::DisplayableNotForSession);
    EXPECT_FALSE(entryFrom(world, "apps/viewer.desktop", "Exec=viewer\n").isForVyx(&code));
    EXPECT_TRUE(entryFrom(world, "apps/menu.directory", "Type=Directory\n").isForVyx());
    EXPECT_TRUE(entryFrom(world, "apps/kiosk-only.desktop", "Exec=x\nOnlyShowIn=VYX-KIOSK;\n").isForVyx());
    world.writeFile("apps3/editor-kiosk.desktop", "[Desktop Entry]\n");
    EXPECT_FALSE(entryFrom(world, "apps3/editor.desktop", "Exec=/usr/bin/editor --kiosk\n").isForVyx(&code));
}

// Real users and groups: a private group database, a restricted /dev/pts,
// and a child running as the test user.
void asUser(const TempHome& world, uid_t uid, const std::string& groups, bool restrictTerminals,
            const std::function<void()>& body)
{
    std::string passwd = vyxtest::readFile("/etc/passwd") + "alice:x:2001:2001::/home/alice:/bin/sh\n" +
                         "bob:x:2002:2002::/home/bob:/bin/sh\n";
    std::string group = vyxtest::readFile("/etc/group") + "alice:x:2001:\nbob:x:2002:\n" + groups;
    vyxtest::ChildOptions options;
    options.mounts = {vyxtest::Mount::bind(world.writeFile("passwd", passwd), "/etc/passwd"),
                      vyxtest::Mount::bind(world.writeFile("group", group), "/etc/group")};
    if (restrictTerminals)
        options.mounts.push_back(vyxtest::Mount::bind(world.makeDir("pts", 0750), "/dev/pts"));
    options.unprivileged = true;
    options.uid = uid;
    options.gid = uid;
    VYX_EXPECT_CHILD(vyxtest::runInChild(options, body));
}

Code codeOf(const char* exec)
{
    Code code;
    VyxDesktopEntry::isExecSuitable(exec, Vyx::tagged_bool<AdminOnly_tag>(false), &code);
    return code;
}

// The administrator group allows privilege tools and entries for
// administrators only; restricted terminals need the console group.
TEST(RealUsers, AdministratorAndConsoleGroups)
{
    TempHome world;
    const std::string admins = "orvel-admin:x:3000:alice\n", groups = "orvel-console:x:3001:alice\n";
    std::string dir = world.writeFile("admin.directory", "[Desktop Entry]\nType=Directory\nX-Vyx-AdminOnly=TRUE\n");
    asUser(world, 2001, admins, false, [] {
        EXPECT_EQ(codeOf("pkexec no-such-42"), VyxDesktopEntry::SuitableExecNotInPath);  // allowed, just missing
    });
    asUser(world, 2002, admins, false, [&] {
        EXPECT_EQ(codeOf("pkexec no-such-42"), VyxDesktopEntry::SuitableAdminRequired);
        Code code;
        EXPECT_FALSE(VyxDesktopEntry(dir).isSuitable(&code));
        EXPECT_EQ(code, VyxDesktopEntry::SuitableAdminRequired);
    });
    asUser(world, 2001, groups, true,
           [] { EXPECT_EQ(codeOf("xterm-no-such"), VyxDesktopEntry::SuitableExecNotInPath); });
    asUser(world, 2002, groups, true,
           [] { EXPECT_EQ(codeOf("xterm-no-such"), VyxDesktopEntry::SuitableAdminRequired); });
    asUser(world, 2002, groups, false,
           [] { EXPECT_EQ(codeOf("xterm-no-such"), VyxDesktopEntry::SuitableExecNotInPath); });
    // Asked last: this process keeps its own facts once asked, and the
    // children above are forked from it.
    if (geteuid() == 0) {
        EXPECT_TRUE(VyxDesktopEntry(dir).isSuitable());  // root may
    }
}

}  // namespace
