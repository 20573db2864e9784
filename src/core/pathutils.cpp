// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "vyxfileutils.h"

#include "core/diag_p.h"
#include "core/environment_p.h"
#include "vyxdirs.h"

#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace {

constexpr size_t kMaxNameLength = 255;

bool isExecutable(const std::string& path)
{
    struct stat st;
    return stat(path.c_str(), &st) == 0 && !S_ISDIR(st.st_mode) && (st.st_mode & S_IXUSR);
}

// The name after "~" or "$": up to the next "/" or the end. A name longer
// than 255 bytes is reported and read as empty.
std::string leadingName(const char* text, const char** rest)
{
    const char* slash = std::strchr(text, '/');
    *rest = slash ? slash : text + std::strlen(text);
    size_t length = static_cast<size_t>(*rest - text);
    if (length > kMaxNameLength) {
        Vyx::detail::diag(nullptr, "Too long before delim: %s\n", text);
        return std::string();
    }
    return std::string(text, length);
}

std::string homeOfUser(const std::string& user, bool* found)
{
    *found = false;
    if (user.empty())
        return std::string();
    long size = sysconf(_SC_GETPW_R_SIZE_MAX);
    std::vector<char> buffer(size > 0 ? static_cast<size_t>(size) : 16384);
    passwd entry;
    passwd* result = nullptr;
    if (getpwnam_r(user.c_str(), &entry, buffer.data(), buffer.size(), &result) != 0 || !result)
        return std::string();
    *found = true;
    return Vyx::makeString(result->pw_dir);
}

}  // namespace

std::string FindFileInPATH(const char* name)
{
    if (!name || !*name)
        return std::string();
    if (name[0] == '/')
        return isExecutable(name) ? std::string(name) : std::string();

    const char* path = Vyx::detail::envValue("PATH");
    if (!path)
        path = "/sbin:/bin:/usr/sbin:/usr/bin:/usr/local/bin";
    std::string dir;
    for (const char* p = path;; ++p) {
        if (*p == ':' || (*p == '\0' && !dir.empty())) {
            // An empty element gives "/" + name, kept as it always was.
            std::string candidate = Vyx::concat(dir, '/', name);
            if (isExecutable(candidate))
                return candidate;
            dir.clear();
        } else if (*p) {
            dir += *p;
        }
        if (!*p)
            break;
    }
    std::string local = Vyx::concat("./", name);
    return isExecutable(local) ? local : std::string();
}

std::string ExtractPathName(const char* path)
{
    if (!path)
        return std::string();
    if (path[0] == '~' && (path[1] == '\0' || path[1] == '/')) {
        const char* home = Vyx::detail::envValue("HOME");
        if (!home) {
            Vyx::detail::diag(nullptr, "Undefined environment variable HOME\n");
            return std::string(path + 1);
        }
        return Vyx::concat(home, path + 1);
    }
    if (path[0] == '~') {
        const char* rest = nullptr;
        std::string user = leadingName(path + 1, &rest);
        bool found = false;
        std::string home = homeOfUser(user, &found);
        if (!found) {
            if (!user.empty())
                Vyx::detail::diag(nullptr, "No user %s or failed to get info\n", user.c_str());
            return std::string(path);
        }
        return home + rest;
    }
    if (path[0] == '$') {
        const char* rest = nullptr;
        std::string name = leadingName(path + 1, &rest);
        const char* value = name.empty() ? nullptr : Vyx::detail::envValue(name.c_str());
        if (!value) {
            if (!name.empty())
                Vyx::detail::diag(nullptr, "No environment variable %s\n", name.c_str());
            return std::string(rest);
        }
        return Vyx::concat(value, rest);
    }
    return std::string(path);
}

std::pair<std::string, int> MakeNewNumberedPath(const char* dir, const char* name, const char* ext, bool space,
                                                bool parentheses, int first, int end,
                                                Vyx::tagged_bool<DeleteAndReuseIfNotBusy_tag> deleteAndReuse)
{
    if (!dir || !name)
        return {std::string(), -1};
    const char* extension = ext ? ext : "";
    for (long counter = static_cast<long>(first) - 1; counter < end; ++counter) {
        std::string candidate = counter == static_cast<long>(first) - 1
                                    ? Vyx::concat(dir, '/', name, extension)
                                    : Vyx::concat(dir, '/', name, space ? " " : "", parentheses ? "(" : "", counter,
                                                  parentheses ? ")" : "", extension);
        if (!fileExists(candidate, false))
            return {candidate, static_cast<int>(counter)};
        if (deleteAndReuse && !isPathBusy(candidate.c_str()) && std::remove(candidate.c_str()) == 0)
            return {candidate, static_cast<int>(counter)};
    }
    return {std::string(), -1};
}

std::pair<std::string, int> MakeNewNumberedPath(const char* dir, const char* name, const char* ext,
                                                Vyx::tagged_bool<DeleteAndReuseIfNotBusy_tag> deleteAndReuse)
{
    return MakeNewNumberedPath(dir, name, ext, false, false, 0, 1024, deleteAndReuse);
}

std::string resolveSymLink(const char* path, Vyx::tagged_bool<CheckExists_tag> checkExists)
{
    if (!path || !*path)
        return std::string();
    std::string expanded = ExtractPathName(path);
    if (expanded.empty())
        return std::string();
    char resolved[PATH_MAX];
    if (!realpath(expanded.c_str(), resolved))
        return std::string();
    if (checkExists && !fileExists(resolved, false))
        return std::string();
    return resolved;
}

bool makeRelativeSymlink(const char* target, const char* link)
{
    std::string home = GetVyxDir(HomeDir);
    if (home.empty() || !target || !link)
        return false;
    if (home.back() != '/')
        home += '/';
    if (!Vyx::startsWith(target, home) || !Vyx::startsWith(link, home))
        return false;
    // One "../" for every directory level of the link below the home, so
    // that the link resolves to the target wherever the home is mounted.
    std::string text;
    for (const char* p = link + home.size(); *p; ++p) {
        if (*p == '/')
            text += "../";
    }
    text += target + home.size();
    return symlink(text.c_str(), link) == 0;
}
