// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

// split never yields an empty field or one holding a delimiter.
#include <vyxstrings.h>

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    if (size < 1)
        return 0;
    size_t delimiterCount = data[0] % 4 + 1;
    if (size < 1 + delimiterCount)
        return 0;
    std::string delimiters(reinterpret_cast<const char*>(data + 1), delimiterCount);
    delimiters = delimiters.c_str();
    std::string text(reinterpret_cast<const char*>(data + 1 + delimiterCount), size - 1 - delimiterCount);
    text = text.c_str();
    for (const std::string& field : Vyx::split(text.c_str(), delimiters.c_str())) {
        if (field.empty() || (!delimiters.empty() && field.find_first_of(delimiters) != std::string::npos))
            abort();
    }
    return 0;
}
