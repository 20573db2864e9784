// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "vyxsystem.h"

#include "core/diag_p.h"
#include "core/environment_p.h"
#include "vyxstrings.h"

#include <cstdio>
#include <grp.h>
#include <map>
#include <memory>
#include <mutex>
#include <new>
#include <pwd.h>
#include <unistd.h>
#include <vector>

namespace {

const char kAdminGroup[] = "orvel-admin";
constexpr int kMaxGroups = 256;

// Process-wide and, as documented, not locked.
// The remembered answers, and the C library's user and group lookups, whose
// answers live in storage shared by every thread, are taken under one lock.
// It is recursive because the three forms of isUserInGroup call each other.
std::recursive_mutex g_usersMutex;
std::string g_userName;  // guarded by g_usersMutex
std::multimap<std::string, std::string> g_members;  // guarded by g_usersMutex; group -> user, positive answers
std::multimap<std::string, long long> g_uidAnswers;  // guarded by g_usersMutex; group -> uid (yes) or -uid (no)

// The real user's password entry field, through the re-entrant lookup.
template <typename Field> std::string ownEntryField(Field field)
{
    long size = sysconf(_SC_GETPW_R_SIZE_MAX);
    std::vector<char> buffer(size > 0 ? static_cast<size_t>(size) : 16384);
    passwd entry;
    passwd* result = nullptr;
    if (getpwuid_r(getuid(), &entry, buffer.data(), buffer.size(), &result) != 0 || !result)
        return std::string();
    return Vyx::makeString(field(*result));
}

}  // namespace

bool isUserRoot()
{
    return getuid() == 0;
}

std::string getUserName()
{
    std::lock_guard<std::recursive_mutex> lock(g_usersMutex);
    if (g_userName.empty()) {
        g_userName = ownEntryField([](const passwd& p) { return p.pw_name; });
        if (g_userName.empty())
            g_userName = Vyx::detail::envString("LOGNAME");
        if (g_userName.empty())
            g_userName = Vyx::detail::envString("USER");
    }
    return g_userName;
}

std::string getUserFullName()
{
    std::string gecos = ownEntryField([](const passwd& p) { return p.pw_gecos; });
    return gecos.substr(0, gecos.find(','));
}

bool isUserInGroup(const char* group)
{
    if (!group)
        return false;
    std::lock_guard<std::recursive_mutex> lock(g_usersMutex);
    std::string user = getUserName();
    if (user.empty()) {
        Vyx::detail::diag(Vyx::detail::kLibraryPrefix, "isUserInGroup() can't get user name\n");
        return false;
    }
    if (Vyx::equal(group, kAdminGroup) && (user == "root" || getuid() == 0))
        return true;
    return isUserInGroup(group, user.c_str());
}

bool isUserInGroup(const char* group, const char* user)
{
    if (!group || !user)
        return false;
    std::lock_guard<std::recursive_mutex> lock(g_usersMutex);
    if (Vyx::equal(group, kAdminGroup) && Vyx::equal(user, "root"))
        return true;
    auto range = g_members.equal_range(group);
    for (auto it = range.first; it != range.second; ++it) {
        if (it->second == user)
            return true;
    }

    passwd* entry = getpwnam(user);
    if (!entry) {
        Vyx::detail::diag(Vyx::detail::kLibraryPrefix, "getpwnam(%s) failed\n", user);
        return false;
    }
    std::unique_ptr<gid_t[]> groups(new (std::nothrow) gid_t[kMaxGroups]);
    if (!groups) {
        Vyx::detail::diag(Vyx::detail::kLibraryPrefix, "isUserInGroup() memory allocation error\n");
        return false;
    }
    int count = kMaxGroups;
    // Deliberately not retried with a larger list: a user in more than 256
    // groups is answered false.
    if (getgrouplist(user, entry->pw_gid, groups.get(), &count) == -1) {
        Vyx::detail::diag(Vyx::detail::kLibraryPrefix, "getgrouplist(%s,...) returned -1; ngroups = %d\n", user, count);
        return false;
    }
    for (int i = 0; i < count; ++i) {
        if (const struct group* g = getgrgid(groups[i]); g && Vyx::equal(g->gr_name, group)) {
            g_members.emplace(group, user);
            return true;
        }
    }
    return false;
}

bool isUserInGroup(const char* group, unsigned uid)
{
    if (!group)
        return false;
    const long long yes = uid, no = -static_cast<long long>(uid);
    std::lock_guard<std::recursive_mutex> lock(g_usersMutex);
    auto range = g_uidAnswers.equal_range(group);
    for (auto it = range.first; it != range.second; ++it) {
        if (it->second == yes)
            return true;
        if (it->second == no)
            return false;
    }
    passwd* entry = getpwuid(uid);
    if (!entry)
        return false;
    if (Vyx::equal(group, kAdminGroup) && Vyx::equal(entry->pw_name, "root"))
        return true;
    std::string name = entry->pw_name;  // the entry's storage is reused by the next lookup
    bool member = isUserInGroup(group, name.c_str());
    g_uidAnswers.emplace(group, member ? yes : no);
    return member;
}
