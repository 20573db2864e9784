// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "desktopentry/suitability_p.h"

#include "core/environment_p.h"
#include "core/session_p.h"
#include "vyxfileutils.h"
#include "vyxsystem.h"

#include <cstdlib>
#include <cstring>
#include <mutex>
#include <sys/stat.h>

using Code = VyxDesktopEntry::SuitableCode;
using DisplayCode = VyxDesktopEntry::DisplayableCode;

namespace Vyx::detail {

const char* const kProgramDirs[6] = {"/usr/bin/", "/usr/local/bin/", "/usr/games/", "/bin/", "/sbin/", "/usr/sbin/"};

namespace {

// The kiosk entries: filled once there are any, retried while empty.
std::mutex g_kioskMutex;
std::vector<std::string> g_kioskEntries;

std::vector<std::string> kioskEntries()
{
    std::lock_guard<std::mutex> lock(g_kioskMutex);
    if (g_kioskEntries.empty()) {
        if (const char* dir = envValue("VYX_KIOSK_CONFIG_DIR"))
            GetFileList(&g_kioskEntries, dir, 3, "*.desktop", Vyx::tagged_bool<FilesOnly_tag>(true));
    }
    return g_kioskEntries;
}

// Whether kiosk command K and entry command E name the same program, one of
// them possibly without its directory.
bool sameProgram(const std::string& k, const std::string& e)
{
    bool kAbsolute = !k.empty() && k[0] == '/', eAbsolute = !e.empty() && e[0] == '/';
    if (kAbsolute == eAbsolute)
        return k == e;
    const std::string& bare = kAbsolute ? e : k;
    const std::string& full = kAbsolute ? k : e;
    for (const char* dir : kProgramDirs) {
        if (Vyx::concat(dir, bare) == full)
            return true;
    }
    return false;
}

std::string lastComponent(const std::string& path)
{
    std::string::size_type slash = path.rfind('/');
    return slash == std::string::npos ? path : path.substr(slash + 1);
}

// The kiosk whitelist: an entry is shown only when a kiosk entry of the same
// file name runs the same program, and no "-kiosk" variant stands next to it.
bool passesKioskWhitelist(const VyxDesktopEntry& entry)
{
    std::string own = lastComponent(entry.filePath());
    std::string match;
    for (const std::string& kiosk : kioskEntries()) {
        if (lastComponent(kiosk) == own) {
            match = kiosk;
            break;
        }
    }
    if (match.empty())
        return false;
    const std::string& file = entry.filePath();
    if (file.size() >= 8 && fileExists(file.substr(0, file.size() - 8) + "-kiosk.desktop", false))
        return false;
    VyxDesktopEntry kiosk(match);
    return kiosk.isLoaded() && sameProgram(kiosk.exec(), entry.exec());
}

bool namesSession(const std::string& item, const SessionFacts& facts)
{
    return Vyx::ciEqual(item, facts.sessionName) || Vyx::ciEqual(item, "VYX");
}

void setCode(Code* code, Code value)
{
    if (code)
        *code = value;
}

}  // namespace

const SessionFacts& sessionFacts()
{
    static SessionFacts facts;
    static std::once_flag once;
    std::call_once(once, [] {
        if (const char* name = Vyx::detail::sessionName())
            facts.sessionName = name;
        facts.plasmaPresent = fileExists("/usr/bin/plasmashell", false);
        facts.kiosk = Vyx::detail::isKioskSession();
    });
    return facts;
}

const UserFacts& userFacts()
{
    static UserFacts facts;
    static std::once_flag once;
    std::call_once(once, [] {
        // Switches on when set at all, even empty: not envValue, which reads
        // an empty value as unset.
        facts.noAdminCheck = std::getenv("VYX_NO_ADMIN_CHECK") != nullptr;
        facts.root = isUserRoot();
        facts.administrator = isUserInGroup("orvel-admin");
        struct stat st;
        bool terminalsRestricted = stat("/dev/pts", &st) == 0 && !(st.st_mode & S_IXOTH);
        facts.consoleAllowed = !terminalsRestricted || isUserInGroup("orvel-console");
    });
    return facts;
}

bool tryExecOnly()
{
    static const bool only = std::getenv("VYX_CHECK_TRYEXEC_ONLY") != nullptr;  // set at all, as above
    return only;
}

bool isForSession(const VyxDesktopEntry& entry, const SessionFacts& facts, DisplayCode* code)
{
    if (code)
        *code = VyxDesktopEntry::Displayable;
    const std::vector<std::string>& onlyShowIn = entry.onlyShowIn();
    if (facts.kiosk) {
        const char* dir = envValue("VYX_KIOSK_CONFIG_DIR");
        bool madeForKiosk = false;
        for (const std::string& item : onlyShowIn)
            madeForKiosk = madeForKiosk || Vyx::ciEqual(item, "vyx-kiosk") || Vyx::ciEqual(item, "vyx-tablet-kiosk");
        bool applies =
            !Vyx::startsWith(entry.filePath(), dir ? dir : "") && entry.type() != "Directory" && !madeForKiosk;
        if (applies && !passesKioskWhitelist(entry)) {
            if (code)
                *code = VyxDesktopEntry::DisplayableNotForSession;
            return false;
        }
    }
    if (!onlyShowIn.empty()) {
        bool named = false;
        for (const std::string& item : onlyShowIn) {
            // "KDE" stands for us where no Plasma shell is installed; only
            // here, never in NotShowIn (kept as intended).
            named = named || namesSession(item, facts) || (item == "KDE" && !facts.plasmaPresent);
        }
        if (!named) {
            if (code)
                *code = VyxDesktopEntry::DisplayableNotForSession;
            return false;
        }
    }
    for (const std::string& item : entry.notShowIn()) {
        if (namesSession(item, facts)) {
            if (code)
                *code = VyxDesktopEntry::DisplayableNotForSession;
            return false;
        }
    }
    return true;
}

bool isExecSuitableFor(const char* exec, bool adminOnly, const UserFacts& user, Code* code)
{
    setCode(code, VyxDesktopEntry::Suitable);
    if (!exec || !*exec) {
        setCode(code, VyxDesktopEntry::SuitableBadExec);
        return false;
    }
    const std::string command = exec;
    bool privileged = user.administrator || user.root;
    if (!privileged && !user.noAdminCheck &&
        (adminOnly || Vyx::contains(exec, "su-to-root ") || Vyx::contains(exec, "vyx-su ") ||
         Vyx::contains(exec, "pkexec"))) {
        setCode(code, VyxDesktopEntry::SuitableAdminRequired);
        return false;
    }
    if (!privileged && !user.consoleAllowed &&
        (Vyx::contains(exec, "xterm") || Vyx::contains(exec, "vyx-term") ||
         Vyx::contains(exec, "x-terminal-emulator") || Vyx::contains(exec, "konsole") || command == "mc")) {
        setCode(code, VyxDesktopEntry::SuitableAdminRequired);
        return false;
    }
    // Window-manager commands are not programs.
    if (command.size() >= 7 && Vyx::startsWith(command, "VYXWM_"))
        return true;

    const std::string::size_type npos = std::string::npos;
    std::string::size_type start = 0, end = npos;
    if (command.size() >= 12 && command.compare(0, 10, "su-to-root") == 0) {
        std::string::size_type c = command.find("-c ");
        if (c == npos)
            return false;  // code left 0, as it always was
        start = c + 3;
        bool quoted = start < command.size() && command[start] == '"';
        if (quoted) {
            ++start;
            std::string::size_type close = command.find('"', start);
            if (close == npos || close == start) {
                setCode(code, VyxDesktopEntry::SuitableBadExec);
                return false;
            }
        }
        end = command.find(' ', start);
        if (end == npos)
            end = quoted ? command.size() - 1 : command.size();  // the closing quote is dropped
    } else if (command.size() >= 5 && Vyx::startsWith(command, "env ")) {
        std::string::size_type eq = command.find('=', 4);
        if (eq == npos)
            return false;  // code left 0
        std::string::size_type blank = command.find(' ', eq);
        if (blank == npos)
            return false;  // code left 0
        start = blank + 1;
        end = command.find(' ', start);
    } else if (command[0] == '"') {
        start = 1;
        end = command.find('"', start);
        if (end == npos || end == start) {
            setCode(code, VyxDesktopEntry::SuitableBadExec);
            return false;
        }
    } else {
        end = command.find(' ');
    }
    if (end == npos || end > command.size())
        end = command.size();
    std::string name = command.substr(start, end > start ? end - start : 0);
    name = name.substr(0, name.find(';'));

    if (name.find('/') == npos) {
        if (FindFileInPATH(name.c_str()).empty()) {
            setCode(code, VyxDesktopEntry::SuitableExecNotInPath);
            return false;
        }
    } else if (!fileExists(name, false)) {
        setCode(code, VyxDesktopEntry::SuitableExecNotFound);
        return false;
    }
    return true;
}

}  // namespace Vyx::detail

using namespace Vyx::detail;

bool VyxDesktopEntry::isDisplayable(DisplayableCode* code) const
{
    if (code)
        *code = Displayable;
    if (hidden()) {
        if (code)
            *code = DisplayableHidden;
        return false;
    }
    if (!isForVyx(code))
        return false;
    if (noDisplay()) {
        if (code)
            *code = DisplayableNoDisplay;
        return false;
    }
    return true;
}

bool VyxDesktopEntry::isForVyx(DisplayableCode* code) const
{
    return isForSession(*this, sessionFacts(), code);
}

bool VyxDesktopEntry::isTryExecSuitable(const char* tryExec, SuitableCode* code)
{
    setCode(code, Suitable);
    if (!tryExec)
        tryExec = "";
    if (!std::strchr(tryExec, '/')) {
        if (FindFileInPATH(tryExec).empty()) {
            setCode(code, SuitableTryExecNotInPath);
            return false;
        }
    } else if (!fileExists(tryExec, false)) {
        setCode(code, SuitableTryExecNotFound);
        return false;
    }
    return true;
}

bool VyxDesktopEntry::isExecSuitable(const char* exec, Vyx::tagged_bool<AdminOnly_tag> adminOnly, SuitableCode* code)
{
    return isExecSuitableFor(exec, static_cast<bool>(adminOnly), userFacts(), code);
}

namespace {

bool hasExpansion(const std::string& text)
{
    return text.find('~') != std::string::npos || text.find('$') != std::string::npos;
}

}  // namespace

bool VyxDesktopEntry::isSuitable(SuitableCode* code) const
{
    bool onlyTryExec = tryExecOnly();
    setCode(code, Suitable);
    if (type().empty()) {
        setCode(code, SuitableNoType);
        return false;
    }
    if (type() == "Link" && url().empty()) {
        setCode(code, SuitableLinkWithoutUrl);
        return false;
    }
    bool tryExecPassed = false;
    if (!tryExec().empty()) {
        // A "~" or "$" gets one more try, expanded.
        if (!isTryExecSuitable(tryExec().c_str(), code) &&
            (!hasExpansion(tryExec()) || !isTryExecSuitable(ExtractPathName(tryExec().c_str()).c_str(), code)))
            return false;
        tryExecPassed = true;
    }
    bool adminOnly = Vyx::ciEqual(getUnknownValue("X-Vyx-AdminOnly"), "true");
    if (type() == "Application" || type() == "Service") {
        if (!(onlyTryExec && tryExecPassed)) {
            Vyx::tagged_bool<AdminOnly_tag> admin(adminOnly);
            if (!isExecSuitable(exec().c_str(), admin, code) &&
                (!hasExpansion(exec()) || !isExecSuitable(ExtractPathName(exec().c_str()).c_str(), admin, code)))
                return false;
        }
    } else if (adminOnly && !userFacts().root && !userFacts().administrator) {
        setCode(code, SuitableAdminRequired);
        return false;
    }
    std::string origin = getUnknownValue("X-Vyx-OriginFile");
    if (!origin.empty() && !fileExists(origin, false)) {
        setCode(code, SuitableOriginFileMissing);
        return false;
    }
    std::string modes = getUnknownValue("X-Vyx-OnlyShowInModes");
    if (!modes.empty()) {
        int mode = getOrvelMode();
        bool listed = false;
        for (const std::string& item : Vyx::split(modes.c_str(), ",;"))
            listed = listed || std::atoi(item.c_str()) == mode;
        if (!listed) {
            setCode(code, SuitableModeMismatch);
            return false;
        }
    }
    return true;
}
