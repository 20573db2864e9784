// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "vyxsystem.h"

#include "vyxstrings.h"

#include "core/dirwalker_p.h"
#include "core/readfile_p.h"

#include <cctype>
#include <cstdlib>
#include <iterator>
#include <mutex>
#include <sstream>
#include <unistd.h>
#include <utmpx.h>

namespace {

// A file of pid's /proc directory (the caller's for pid <= 0); empty when
// it cannot be read.
std::string readProcFile(int pid, const char* name)
{
    std::string path = pid > 0 ? Vyx::concat("/proc/", pid, '/', name) : Vyx::concat("/proc/self/", name);
    std::string content;
    Vyx::detail::readRegularFile(path.c_str(), content);
    return content;
}

// The name a process is known by: the file name of its first argument, or
// the kernel's name for it when it has no arguments.
std::string programName(int pid)
{
    std::string cmdline = readProcFile(pid, "cmdline");
    std::string first = cmdline.substr(0, cmdline.find('\0'));
    if (!first.empty()) {
        std::string::size_type slash = first.rfind('/');
        return slash == std::string::npos ? first : first.substr(slash + 1);
    }
    std::string comm = readProcFile(pid, "comm");
    if (!comm.empty() && comm.back() == '\n')
        comm.pop_back();
    return comm;
}

// The login records are read through a process-wide cursor.
std::mutex g_utmpMutex;

}  // namespace

int getPPid(int pid)
{
    if (pid <= 0)
        return static_cast<int>(getppid());
    std::string stat = readProcFile(pid, "stat");
    // "pid (comm) state ppid ...": comm may hold blanks and parentheses, so
    // the fields are counted from its last ")".
    std::string::size_type close = stat.rfind(')');
    if (close == std::string::npos)
        return -1;
    std::istringstream fields(stat.substr(close + 1));
    std::string state;
    int ppid = -1;
    if (!(fields >> state >> ppid))
        return -1;
    return ppid;
}

std::string getCmdLine(int pid)
{
    std::string cmdline = readProcFile(pid, "cmdline");
    while (!cmdline.empty() && cmdline.back() == '\0')
        cmdline.pop_back();
    for (char& c : cmdline) {
        if (c == '\0')
            c = ' ';
    }
    return cmdline;
}

int findInPS(const char* name)
{
    if (!name || !*name)
        return -1;
    Vyx::detail::DirWalker proc("/proc");
    if (!proc.isOpen())
        return -1;
    int self = static_cast<int>(getpid());
    int best = -1;
    while (const dirent* entry = proc.next()) {
        if (!std::isdigit(static_cast<unsigned char>(entry->d_name[0])))
            continue;
        int pid = std::atoi(entry->d_name);
        if (pid == self || (best != -1 && pid > best))
            continue;
        if (programName(pid) == name)
            best = pid;
    }
    return best;
}

int numWho()
{
    std::lock_guard<std::mutex> lock(g_utmpMutex);
    int sessions = 0;
    setutxent();
    while (utmpx* record = getutxent()) {
        if (record->ut_type == USER_PROCESS)
            ++sessions;
    }
    endutxent();
    return sessions;
}
