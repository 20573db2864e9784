// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

// decodedUrl must never read past the NUL, and must undo encodedUrl.
#include <vyxstrings.h>

#include <cstdint>
#include <cstdlib>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    std::string text(reinterpret_cast<const char*>(data), size);
    text = text.c_str();  // up to the first NUL, as a C caller would pass it
    std::string decoded = Vyx::decodedUrl(text.c_str());
    if (decoded.size() > text.size())
        abort();
    if (Vyx::decodedUrl(Vyx::encodedUrl(text)) != text)
        abort();
    return 0;
}
