// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

// isValidUtf8 must stop at the NUL whatever the byte structure.
#include <vyxstrings.h>

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    std::string text(reinterpret_cast<const char*>(data), size);
    text = text.c_str();  // up to the first NUL, as a C caller would pass it
    std::string twice = text + text;
    const auto* once = reinterpret_cast<const unsigned char*>(text.c_str());
    // A valid text ends with nothing pending, so a second copy parses alike;
    // an invalid one keeps its fault (a repeated byte-order mark is a valid
    // three-byte sequence).
    if (Vyx::isValidUtf8(once) != Vyx::isValidUtf8(reinterpret_cast<const unsigned char*>(twice.c_str())))
        abort();
    return 0;
}
