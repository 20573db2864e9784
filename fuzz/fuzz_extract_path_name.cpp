// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

// ExtractPathName on any path, with long user and variable names.
#include <vyxfileutils.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    static bool prepared = [] {
        setenv("HOME", "/home/fuzz", 1);
        setenv("FUZZVAR", std::string(5000, 'v').c_str(), 1);
        // The messages are expected: send the library's stderr stream to
        // /dev/null but leave descriptor 2, where the fuzzer and the
        // sanitizers report findings, alone.
        if (FILE* devNull = std::fopen("/dev/null", "w"))
            stderr = devNull;
        return true;
    }();
    (void)prepared;
    std::string path(reinterpret_cast<const char*>(data), size);
    ExtractPathName(path.c_str());
    return 0;
}
