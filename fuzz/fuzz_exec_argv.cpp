// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

// ExecToArgVectors with arbitrary Exec values and targets.
#include <vyxdesktopentry.h>

#include <fuzzer/FuzzedDataProvider.h>

#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    FuzzedDataProvider in(data, size);
    std::string exec = in.ConsumeRandomLengthString(200000);
    std::string icon = in.ConsumeRandomLengthString(64);
    std::string caption = in.ConsumeRandomLengthString(64);
    std::string location = in.ConsumeRandomLengthString(256);
    std::vector<std::string> targets;
    while (in.remaining_bytes() && targets.size() < 64)
        targets.push_back(in.ConsumeRandomLengthString(5000));

    std::string error;
    std::vector<std::vector<std::string>> commands =
        ExecToArgVectors(exec.c_str(), targets, icon.c_str(), caption.c_str(), location.c_str(), &error);
    // Either a refusal with its reason or programs to run, never both and
    // never a vector without a program.
    if (commands.empty() == error.empty())
        std::abort();
    for (const std::vector<std::string>& argv : commands) {
        if (argv.empty() || argv[0].empty())
            std::abort();
    }
    return 0;
}
