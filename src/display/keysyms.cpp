// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "vyxdisplay.h"

#include <algorithm>
#include <cstdint>
#include <iterator>

namespace {

struct KeysymChar {
    uint32_t keysym;
    uint32_t ucs;
};

// The legacy keysyms (0x100 to 0x20ff and a few beyond) with the character
// keysymdef.h gives them, sorted by keysym; written at build time.
constexpr KeysymChar kTable[] = {
#include "keysymtable.inc"
};

}  // namespace

long KeySym2Ucs(KeySym keysym)
{
    if ((keysym >= 0x20 && keysym <= 0x7e) || (keysym >= 0xa0 && keysym <= 0xff))
        return long(keysym);
    // Keysyms made from code points; the C1 controls and surrogates among
    // them name no character that a key could type.
    if (keysym >= 0x01000000 && keysym <= 0x0110ffff) {
        const unsigned long ucs = keysym - 0x01000000;
        if (ucs < 0x20 || (ucs >= 0x7f && ucs <= 0x9f) || (ucs >= 0xd800 && ucs <= 0xdfff))
            return -1;
        return long(ucs);
    }
    if (keysym > 0xffffffff)
        return -1;
    const auto found = std::lower_bound(std::begin(kTable), std::end(kTable), keysym,
                                        [](const KeysymChar& entry, KeySym wanted) { return entry.keysym < wanted; });
    return found != std::end(kTable) && found->keysym == keysym ? long(found->ucs) : -1;
}
