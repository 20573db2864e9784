// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#ifndef VYXCORE_TESTS_RUN_PROGRAM_H
#define VYXCORE_TESTS_RUN_PROGRAM_H

// Runs a real program (searched in PATH) with an argument vector, no shell,
// in the test's environment, and collects what it printed.

#include <string>
#include <vector>

namespace vyxtest {

struct ProgramRun {
    int status = -1;  // exit status; -1 when it did not exit normally, 127 when it could not start
    std::string out;
    std::string err;
};

// With a time limit, a program still running after that many seconds is
// killed (SIGALRM, whose timer survives the exec) instead of hanging the test.
ProgramRun runProgram(const std::vector<std::string>& argv, unsigned timeLimit = 0);

#ifdef VYXCORE_TOOL
// The built vyxcore tool (VYXCORE_TOOL, set by the test target), run as a
// user would.
inline ProgramRun runTool(std::vector<std::string> args, unsigned timeLimit = 0)
{
    args.insert(args.begin(), VYXCORE_TOOL);
    return runProgram(args, timeLimit);
}
#endif

}  // namespace vyxtest

#endif
