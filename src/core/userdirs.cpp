// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "core/readfile_p.h"
#include "core/userdirs_p.h"

#include "core/environment_p.h"
#include "core/session_p.h"
#include "vyxdirs.h"
#include "vyxfileutils.h"

#include <cstdlib>
#include <cstring>
#include <mutex>
#include <string>

namespace Vyx::detail {

namespace {

// Lines are read into this many bytes; a longer line arrives in pieces and
// each piece is read as a line of its own.
constexpr size_t kLineBuffer = 512;

const char* skipBlanks(const char* p)
{
    while (*p == ' ' || *p == '\t')
        ++p;
    return p;
}

// The value of one line for type, in a malloc() buffer; null when the line
// does not match (or memory ran out: *outOfMemory).
char* parseLine(const char* line, const char* type, size_t typeLength, const char* home, bool* outOfMemory)
{
    const char* p = skipBlanks(line);
    if (std::strncmp(p, "XDG_", 4) != 0)
        return nullptr;
    p += 4;
    if (std::strncmp(p, type, typeLength) != 0)
        return nullptr;
    p += typeLength;
    if (std::strncmp(p, "_DIR", 4) != 0)
        return nullptr;
    p = skipBlanks(p + 4);
    if (*p != '=')
        return nullptr;
    p = skipBlanks(p + 1);
    if (*p != '"')
        return nullptr;
    ++p;

    std::string prefix;
    if (std::strncmp(p, "$HOME/", 6) == 0) {
        prefix = home;
        prefix += '/';
        p += 6;
    } else if (*p != '/') {
        return nullptr;  // relative values are not meant for us
    }

    // Room for the prefix and every byte of the rest, which is at least the
    // unescaped value.
    size_t room = prefix.size() + std::strlen(p) + 1;
    char* value = static_cast<char*>(std::malloc(room));
    if (!value) {
        *outOfMemory = true;
        return nullptr;
    }
    std::memcpy(value, prefix.data(), prefix.size());
    char* out = value + prefix.size();
    while (*p && *p != '"') {
        if (*p == '\\') {
            ++p;
            if (!*p)
                break;  // a backslash at the end of the line is dropped
        }
        *out++ = *p++;
    }
    *out = '\0';
    return value;
}

}  // namespace

char* readUserDirs(FILE* file, const char* type, const char* home, bool* outOfMemory)
{
    *outOfMemory = false;
    size_t typeLength = std::strlen(type);
    char* found = nullptr;
    char line[kLineBuffer];
    while (std::fgets(line, sizeof line, file)) {
        size_t length = std::strlen(line);
        if (length > 0 && line[length - 1] == '\n')
            line[length - 1] = '\0';
        char* value = parseLine(line, type, typeLength, home, outOfMemory);
        if (*outOfMemory) {
            std::free(found);
            return nullptr;
        }
        if (value) {
            std::free(found);  // the last matching line wins
            found = value;
        }
    }
    return found;
}

}  // namespace Vyx::detail

namespace {

// In a kiosk session the desktop may be a fixed directory. Decided once per
// process; the guard makes concurrent first calls safe.
const std::string& kioskDesktopDir()
{
    static std::string dir;
    static std::once_flag once;
    std::call_once(once, [] {
        // Any session whose name holds a kiosk name, not only the kiosk kinds.
        const char* session = Vyx::detail::sessionName();
        const char* desktop = Vyx::detail::envValue("VYX_KIOSK_DESKTOP_DIR");
        if (session && (std::strstr(session, "vyx-kiosk") || std::strstr(session, "vyx-tablet-kiosk")) && desktop &&
            fileExists(desktop, false))
            dir = desktop;
    });
    return dir;
}

char* copyOf(const std::string& text)
{
    char* copy = static_cast<char*>(std::malloc(text.size() + 1));
    if (copy)
        std::memcpy(copy, text.c_str(), text.size() + 1);
    return copy;
}

}  // namespace

extern "C" char* xdg_user_dir_lookup(const char* type)
{
    if (std::strcmp(type, "DESKTOP") == 0 && !kioskDesktopDir().empty())
        return copyOf(kioskDesktopDir());

    const char* home = Vyx::detail::envValue("HOME");
    if (home) {
        // With HOME set, the configuration home's own fallback is under it.
        const std::string path = Vyx::detail::userConfigHome() + "/user-dirs.dirs";
        if (FILE* file = Vyx::detail::fopenRegularFile(path.c_str())) {
            bool outOfMemory = false;
            char* value = Vyx::detail::readUserDirs(file, type, home, &outOfMemory);
            std::fclose(file);
            if (value)
                return value;
        }
    }

    // Fallbacks: a type without an entry is the home directory itself.
    if (!home)
        return copyOf("/tmp");
    if (std::strcmp(type, "DESKTOP") == 0)
        return copyOf(std::string(home) + "/Desktop");
    return copyOf(home);
}

std::string xdgUserDirLookup(const char* type)
{
    char* value = xdg_user_dir_lookup(type);
    if (!value)
        return std::string();
    std::string result(value);
    std::free(value);
    return result;
}
