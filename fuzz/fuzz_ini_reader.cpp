// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

// The reader against the writer's document on arbitrary bytes: any
// difference in what they read is a finding.
#include "ini_difference.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const std::string difference = Vyx::detail::iniDifference(reinterpret_cast<const char*>(data), size);
    if (!difference.empty()) {
        std::fprintf(stderr, "reader and document differ: %s\n", difference.c_str());
        std::abort();
    }
    return 0;
}
