// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#ifndef VYXCORE_SYSTEM_H
#define VYXCORE_SYSTEM_H

/// \file
/// Facts about the user, the machine, its processes and the installed
/// edition. Answers that cannot be found are false, 0, -1 or empty.
///
/// Threads: most answers are computed on each call or once under a once-only
/// guard (memory and processor figures) and may be asked from several threads
/// at once; numWho reads the login records under a lock of its own, and
/// getUserName with the three isUserInGroup keep their answers and make their
/// user and group lookups under another. GetSystemLocale's answer belongs to
/// the environment.

#include "vyxexport.h"

#include <string>
#include <vector>

// --- the user ---

/// True when the real user id of the process is 0.
VYX_EXPORT bool isUserRoot();
/// The login name of the real user (password database, else LOGNAME, else
/// USER); empty when none is known. A found name is kept for the process.
/// Safe from any thread.
VYX_EXPORT std::string getUserName();
/// The user's full name: the GECOS field of the password entry up to its
/// first ","; empty when there is none.
VYX_EXPORT std::string getUserFullName();
/// Whether the current user belongs to group ("orvel-admin" is granted to
/// root at once). False for a null group; "libvyxcore: isUserInGroup() can't
/// get user name" when the user is unknown.
VYX_EXPORT bool isUserInGroup(const char* group);
/// Whether user belongs to group, by the user's group list of at most 256
/// groups (a user in more groups is answered false, with a message). False
/// for a null group or user and for an unknown user ("libvyxcore:
/// getpwnam(USER) failed"). Positive answers are remembered for the process.
/// Safe from any thread: the three forms and getUserName keep their answers
/// and use the C library's shared user and group lookups under one lock. A
/// program that calls getpwnam, getpwuid or getgrgid itself on another thread
/// meanwhile still shares their storage with the library.
VYX_EXPORT bool isUserInGroup(const char* group, const char* user);
/// Whether the user with id uid belongs to group; answers, yes and no, are
/// remembered for the process. False for an unknown uid.
VYX_EXPORT bool isUserInGroup(const char* group, unsigned uid);

// --- the machine ---

/// Total memory in kB from "/proc/meminfo", read once per process; 0 when unknown.
VYX_EXPORT unsigned GetMemTotal();
/// Clock rate in MHz of the first processor in "/proc/cpuinfo", read once per
/// process; 0 when unknown.
VYX_EXPORT unsigned GetCPUMhz();
/// True on a light platform: a known clock rate of at most 999 MHz, or a known
/// memory total below 253680 kB.
VYX_EXPORT bool lightPlatform();
/// True when the first line of "/proc/asound/cards" exists and does not say
/// "no sound".
VYX_EXPORT bool isAlsaActive();
/// LC_ALL, else LANG, else "" (set-but-empty counts as unset). The pointer
/// belongs to the environment.
VYX_EXPORT const char* GetSystemLocale();
///@{
/// The numeric IPv4 (IPv6) addresses of the machine's interfaces, loopback
/// left out, in interface order; empty when there are none.
VYX_EXPORT std::vector<std::string> getIPv4Addresses();
VYX_EXPORT std::vector<std::string> getIPv6Addresses();
///@}

// --- the installed edition ---
//
// "/etc/vyx/edition" holds "key=value" lines ("#" starts a comment, blanks
// around keys and values are ignored):
//     edition=SE
//     mode=2
// A missing or unreadable file, or a missing or malformed value, means not
// SE and mode 0.

/// True when the edition is "SE" (any case).
VYX_EXPORT bool isOrvelSE();
/// The edition's mode number; 0 when unknown.
VYX_EXPORT int getOrvelMode();

// --- processes ---

/// The parent process id of pid (of the caller when pid <= 0); -1 when pid
/// does not exist.
VYX_EXPORT int getPPid(int pid);
/// The command line of pid (of the caller when pid <= 0), its arguments
/// joined by single blanks; empty when it cannot be read (or for kernel
/// threads).
VYX_EXPORT std::string getCmdLine(int pid);
/// The lowest pid other than the caller's whose program name (the last "/"
/// section of its first argument, or its kernel name when it has none) is
/// name; -1 when none is.
VYX_EXPORT int findInPS(const char* name);
/// The number of logged-in user sessions in the login records; 0 when none.
/// The records are walked under a library lock; a program that walks them
/// itself (getutxent) must not do so on another thread meanwhile.
VYX_EXPORT int numWho();

#endif
