// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

// The tool's JSON strings: any bytes (file names may hold any) come out as
// strictly valid UTF-8 with no raw control character, and a value that is
// not UTF-8 keeps its bytes in the "_raw" twin.
#include "output.h"

#include <cstdint>
#include <cstdlib>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const std::string text(reinterpret_cast<const char*>(data), size);
    const std::string quoted = tool::jsonString(text);
    if (!tool::isUtf8(quoted) || quoted.size() < 2 || quoted.front() != '"' || quoted.back() != '"')
        abort();
    for (unsigned char c : quoted) {
        if (c < 0x20)
            abort();
    }
    const std::string object = tool::JsonObject().addString("v", text).str();
    if ((object.find("\"v_raw\": [") != std::string::npos) == tool::isUtf8(text))
        abort();
    return 0;
}
