// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

// The colour helpers take panel and palette colours from settings files:
// whatever the text, the answer is empty or a well-formed colour, and
// textColorFor is black or white.
#include <vyxdisplay.h>

#include <cctype>
#include <cstdint>
#include <cstdlib>
#include <string>

namespace {

bool wellFormed(const std::string& color)
{
    if (color.size() != 7 || color[0] != '#')
        return false;
    for (size_t i = 1; i < 7; ++i) {
        if (!std::isdigit(static_cast<unsigned char>(color[i])) && (color[i] < 'A' || color[i] > 'F'))
            return false;
    }
    return true;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const std::string text(reinterpret_cast<const char*>(data), size);
    const std::string onIt = textColorFor(text);
    const std::string dark = GetPrimaryDarkColor(text, false), darker = GetPrimaryDarkColor(text, true);
    // One parser behind both: they accept the same texts.
    if (dark.empty() != onIt.empty() || darker.empty() != onIt.empty())
        abort();
    if (onIt.empty())
        return 0;
    if (onIt != "#000000" && onIt != "#FFFFFF")
        abort();
    if (!wellFormed(dark) || !wellFormed(darker))
        abort();
    // The darker variant is nowhere lighter: where the dark one takes white
    // text, so does it.
    if (textColorFor(dark) == "#FFFFFF" && textColorFor(darker) != "#FFFFFF")
        abort();
    return 0;
}
