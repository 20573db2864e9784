// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

// Starting an application for files or URLs: the argument vectors of its
// Exec, run directly with no shell in between.

#include "vyxdesktopentry.h"

#include "core/diag_p.h"
#include "core/spawn_p.h"

namespace {

int refuse(std::string* error, const std::string& reason)
{
    if (error)
        *error = reason;
    else
        Vyx::detail::diag(Vyx::detail::kLibraryPrefix, "%s\n", reason.c_str());
    return -1;
}

// The terminal that Terminal=true entries run in: the system's chosen one.
const char kTerminal[] = "x-terminal-emulator";

}  // namespace

int LaunchDesktopEntry(const VyxDesktopEntry& entry, const std::vector<std::string>& targets, std::string* error,
                       std::vector<int>* pids)
{
    if (pids)
        pids->clear();
    const std::string& file = entry.filePath();
    if (file.empty() || !entry.isLoaded())
        return refuse(error, "cannot launch " + file + ": not installed");
    if (entry.type() != "Application")
        return refuse(error, "cannot launch " + file + ": not an application");
    VyxDesktopEntry::SuitableCode code = VyxDesktopEntry::Suitable;
    if (!entry.isSuitable(&code))
        return refuse(error, "cannot launch " + file + ": not runnable here (reason " + std::to_string(code) + ")");
    std::string why;
    std::vector<std::vector<std::string>> commands = ExecArgVectors(entry, targets, &why);
    if (commands.empty())
        return refuse(error, "cannot launch " + file + ": invalid Exec: " + why);

    int first = -1;
    for (std::vector<std::string>& argv : commands) {
        if (entry.terminal())
            argv.insert(argv.begin(), {kTerminal, "-e"});
        int pid = Vyx::detail::startProgram(argv, entry.path(), &why);
        if (pid < 0) {
            std::string program = argv[0] == kTerminal ? std::string(kTerminal) + " (for Terminal=true)" : argv[0];
            return refuse(error, "cannot launch " + file + ": cannot start " + program + ": " + why);
        }
        if (first < 0)
            first = pid;
        if (pids)
            pids->push_back(pid);
    }
    return first;
}
