// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

// vyxcore keysym: the character a key symbol types.

#include "commands.h"

#include <vyxdisplay.h>

#include <X11/Xlib.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>

namespace tool {

namespace {

// "0x1a1" is a number; anything else is a name, since "1" is the keysym
// of the digit key and not keysym 1.
bool parseKeysym(const std::string& text, KeySym* keysym)
{
    if (text.size() > 2 && text[0] == '0' && (text[1] == 'x' || text[1] == 'X')) {
        // strtoul alone would take blanks and a sign.
        if (text.find_first_not_of("0123456789abcdefABCDEF", 2) != std::string::npos)
            return false;
        errno = 0;
        *keysym = std::strtoul(text.c_str() + 2, nullptr, 16);
        return errno == 0;
    }
    *keysym = XStringToKeysym(text.c_str());
    return *keysym != NoSymbol;
}

std::string utf8(long ucs)
{
    std::string out;
    if (ucs < 0x80) {
        out += char(ucs);
    } else if (ucs < 0x800) {
        out += char(0xc0 | ucs >> 6);
        out += char(0x80 | (ucs & 0x3f));
    } else if (ucs < 0x10000) {
        out += char(0xe0 | ucs >> 12);
        out += char(0x80 | (ucs >> 6 & 0x3f));
        out += char(0x80 | (ucs & 0x3f));
    } else {
        out += char(0xf0 | ucs >> 18);
        out += char(0x80 | (ucs >> 12 & 0x3f));
        out += char(0x80 | (ucs >> 6 & 0x3f));
        out += char(0x80 | (ucs & 0x3f));
    }
    return out;
}

}  // namespace

int runKeysym(const CommonOptions& options)
{
    const std::string& text = options.positional[0];
    KeySym keysym = NoSymbol;
    if (!parseKeysym(text, &keysym))
        return usageError("keysym", "'" + text + "' is neither a keysym name nor a number such as 0x1a1");
    const char* name = XKeysymToString(keysym);
    const long ucs = KeySym2Ucs(keysym);
    char hex[24], code[24] = "";
    std::snprintf(hex, sizeof hex, "0x%lx", keysym);
    if (ucs >= 0)
        std::snprintf(code, sizeof code, "U+%04lX", ucs);
    const std::string character = ucs >= 0 ? utf8(ucs) : std::string();
    if (options.json) {
        std::printf("%s\n", JsonObject()
                                .addString("keysym", hex)
                                .addString("name", name)
                                .addInt("ucs", ucs)
                                .addString("unicode", code)
                                .addString("character", character)
                                .str()
                                .c_str());
    } else {
        std::vector<std::pair<std::string, std::string>> rows = {
            {"keysym", name ? std::string(hex) + " (" + name + ")" : std::string(hex)},
            {"unicode", ucs >= 0 ? std::string(code) : "(none)"}};
        if (ucs >= 0)
            rows.emplace_back("character", character);
        printRows(rows);
    }
    return ucs >= 0 ? Done : notFound("keysym", "keysym " + text + " types no character");
}

}  // namespace tool
