// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

// The "user-dirs.dirs" reader on arbitrary file contents.
#include "core/userdirs_p.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    static const char* const types[] = {"DESKTOP",  "DOCUMENTS",   "DOWNLOAD",  "MUSIC",
                                        "PICTURES", "PUBLICSHARE", "TEMPLATES", "VIDEOS"};
    if (size < 1)
        return 0;
    const char* type = types[data[0] % 8];
    std::string content(reinterpret_cast<const char*>(data + 1), size - 1);
    FILE* file = fmemopen(content.empty() ? nullptr : &content[0], content.size(), "r");
    if (!file)
        return 0;
    bool outOfMemory = false;
    char* value = Vyx::detail::readUserDirs(file, type, "/home/fuzz", &outOfMemory);
    std::fclose(file);
    if (value) {
        if (value[0] != '/')
            abort();  // only absolute values come out
        std::free(value);
    }
    return 0;
}
