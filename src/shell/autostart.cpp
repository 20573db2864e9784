// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

// Whether a program starts with the session, and switching that in the
// user's autostart directory. System autostart files are never changed:
// the user's file of the same name overrides them.

#include "core/atomicfile_p.h"
#include "core/diag_p.h"
#include "core/environment_p.h"
#include "core/makedirs_p.h"
#include "core/readfile_p.h"
#include "vyxdesktopentry.h"
#include "vyxdirs.h"
#include "vyxfileutils.h"
#include "vyxsession.h"
#include "vyxstrings.h"

#include <cstdio>
#include <unistd.h>

namespace {

const auto kSaveEmpty = Vyx::tagged_bool<SaveEmptyFields_tag>(false);

// The autostart file name a program is known by. A path to anything but a
// desktop file names a plain file whose presence alone means enabled.
struct AutostartName {
    std::string fileName;
    bool desktop = true;
};

AutostartName autostartName(const std::string& name)
{
    if (name.find('/') == std::string::npos)
        return {Vyx::endsWith(name, ".desktop") ? name : name + ".desktop", true};
    const std::string last = Vyx::fileName(name);
    if (Vyx::endsWith(name, ".desktop"))
        return {last, true};
    return {Vyx::completeBaseName(last), false};
}

struct Decision {
    bool enabled = false;
    std::string path;  // the file that decided, when the caller may see it
};

// The first autostart file of the program decides; a disabling system file
// is not named, a disabling file of the user's is (it is theirs to change).
// A file at ignored is passed over, as if it were not there.
Decision decide(const AutostartName& program, const std::string& ignored = std::string())
{
    Decision decision;
    const std::vector<std::string> dirs = autostartDirs();
    if (dirs.empty()) {
        Vyx::detail::diag(nullptr, "Can't find 'autostart' directories\n");
        return decision;
    }
    for (const std::string& dir : dirs) {
        const std::string candidate = dir + "/" + program.fileName;
        if (candidate == ignored || !fileExists(candidate, false))
            continue;
        if (!program.desktop)
            return {true, candidate};
        VyxDesktopEntry entry(candidate);
        VyxDesktopEntry::DisplayableCode code = VyxDesktopEntry::Displayable;
        const bool usable = entry.isLoaded() && entry.isValid() && entry.isSuitable();
        // NoDisplay hides an entry from menus, not from the session's start.
        if (usable && (entry.isDisplayable(&code) || code == VyxDesktopEntry::DisplayableNoDisplay))
            return {true, candidate};
        const std::string& home = GetVyxDir(HomeDir);
        if (!home.empty() && Vyx::startsWith(dir, home + "/"))
            decision.path = candidate;
        return decision;
    }
    return decision;
}

// The directory switches are written to: the user's own, made when missing.
// autostartDir() is the first existing autostart directory, which is a
// system one when even the user's configuration directory is missing, and a
// system directory is never written.
std::string userAutostartDir()
{
    const std::string config = Vyx::detail::userConfigHome();
    if (config.empty())
        return std::string();
    const std::string mine = config + "/autostart";
    return Vyx::detail::makePrivateDirectories(mine) ? mine : std::string();
}

Decision decide(const char* name)
{
    if (!name || !*name)
        return {};
    return decide(autostartName(name));
}

// The installed application file the program comes from: the path itself,
// or the first application directory holding the file name.
std::string sourceOf(const char* name, const AutostartName& program)
{
    if (name[0] == '/')
        return name;
    for (const std::string& dir : GetAllAppDesktopEntrySearchPaths()) {
        const std::string candidate = dir + "/" + program.fileName;
        if (fileExists(candidate, false))
            return candidate;
    }
    return std::string();
}

// Copies source to target so that target is either absent or whole: a
// half-copied autostart file could run half a command line.
bool copyWhole(const std::string& source, const std::string& target)
{
    std::string data;
    return Vyx::detail::readRegularFile(source.c_str(), data) && Vyx::detail::writeFileAtomically(target, data);
}

// The user's file is never deleted to be written again: it is replaced in
// one step, so that a crash leaves either the old entry or the new one.
bool enable(const char* name, const AutostartName& program, const std::string& userFile, const char* command)
{
    if (fileExists(userFile, false)) {
        VyxDesktopEntry user(userFile);
        if (!user.isLoaded())
            return false;
        if (command)
            user.setExec(command);
        Decision now = decide(program, userFile);
        if (!now.enabled) {
            VyxDesktopEntry::DisplayableCode code = VyxDesktopEntry::Displayable;
            if (!user.isDisplayable(&code) && code == VyxDesktopEntry::DisplayableNotForSession) {
                user.setOnlyShowIn({});
                user.setNotShowIn({});
            }
            user.setHidden(false);
            user.save(kSaveEmpty);
            return true;
        }
        // Enabled by a system file: the user's override goes when it says
        // nothing else.
        VyxDesktopEntry deciding(now.path);
        if (!user.identicalTo(deciding)) {
            user.setHidden(false);
            user.save(kSaveEmpty);
        } else {
            unlink(userFile.c_str());
        }
        return true;
    }
    const std::string source = sourceOf(name, program);
    if (source.empty())
        return false;
    bool copied;
    if (command) {
        VyxDesktopEntry copy(source);
        copied = copy.isLoaded();
        copy.setExec(command);
        if (copied)
            copy.saveAs(userFile, kSaveEmpty);
    } else {
        copied = copyWhole(source, userFile);
    }
    syncDesktopEntryTime(true, userFile.c_str(), nullptr);
    return copied;
}

bool disable(const AutostartName& program, const Decision& before, const std::string& userFile, const char* command,
             bool deleteIfDisabled)
{
    bool result = false;
    Decision now = before;
    if (fileExists(userFile, false)) {
        if (deleteIfDisabled) {
            // Inverted on purpose: true when the deletion failed.
            result = unlink(userFile.c_str()) != 0;
        } else {
            VyxDesktopEntry user(userFile);
            if (user.isLoaded()) {
                if (command)
                    user.setExec(command);
                user.setHidden(true);
                result = user.save(kSaveEmpty);
            }
        }
        now = decide(program);
        if (!now.enabled)
            return result;
    }
    // Still enabled: a system file, or the user's file could not be changed.
    if (!program.desktop)
        return result;
    // The deciding file is read and the user's written in one replacement,
    // never copied over it first.
    VyxDesktopEntry user(now.path.empty() ? userFile : now.path);
    const bool loaded = user.isLoaded();
    user.setFilePath(userFile);
    if (!loaded) {
        user = VyxDesktopEntry();
        user.setFilePath(userFile);
        user.setType("Application");
        user.setName("Fake item");
        user.setLocalName("Служебный");
        user.setExec(command ? command : "ls");
    } else if (command) {
        user.setExec(command);
    }
    user.setHidden(true);
    return user.save(kSaveEmpty);
}

}  // namespace

bool vyxIsAutostartEnabled(const char* name)
{
    return decide(name).enabled;
}

std::string vyxAutostartEnabledPath(const char* name)
{
    return decide(name).path;
}

bool vyxEnableAutostart(const char* name, bool enable, const char* command,
                        Vyx::tagged_bool<DeleteIfDisabled_tag> deleteIfDisabled)
{
    if (!name || !*name)
        return false;
    const AutostartName program = autostartName(name);
    const Decision before = decide(program);
    if ((!enable && !before.enabled) || (enable && before.enabled && !command))
        return true;
    const std::string dir = userAutostartDir();
    if (dir.empty()) {
        Vyx::detail::diag(nullptr, "Can't find 'autostart' directory\n");
        return false;
    }
    const std::string userFile = dir + "/" + program.fileName;
    return enable ? ::enable(name, program, userFile, command)
                  : disable(program, before, userFile, command, static_cast<bool>(deleteIfDisabled));
}
