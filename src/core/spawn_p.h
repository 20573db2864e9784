// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

// Internal interface of core, open to every folder of the library.

#ifndef VYXCORE_SPAWN_P_H
#define VYXCORE_SPAWN_P_H

// The one way the library runs an external program: with an argument
// vector, never through a shell, so that no path or value from a file can
// become a command.

#include <cstddef>
#include <string>
#include <vector>

namespace Vyx::detail {

struct ProgramResult {
    bool started = false;  // the program could be started
    int exitStatus = -1;  // its exit status; -1 when killed by a signal
    std::string output;  // standard output, at most the asked number of bytes
};

// Runs argv[0] (a path; PATH is not searched) with standard input and
// standard error on /dev/null, and collects up to maxOutput bytes of its
// standard output (the rest is read and dropped so the program never blocks).
ProgramResult runProgram(const std::vector<std::string>& argv, size_t maxOutput);

// Starts argv[0] (searched in PATH when it has no "/") and returns at once
// with its process id, which the caller reaps. Standard input is /dev/null,
// the other streams are inherited; workingDir, when not empty, is the
// child's working directory. -1 when it could not be started, with the
// reason (strerror of the failure) in *error when error is not null.
int startProgram(const std::vector<std::string>& argv, const std::string& workingDir, std::string* error);

}  // namespace Vyx::detail

#endif
