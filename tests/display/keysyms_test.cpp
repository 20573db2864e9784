// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

// Key symbols to Unicode. The pairs below come from the Unicode and X11
// keysym charts, not from the table the build writes, and are spread over
// the legacy blocks so that a table out of order or cut short is seen.

#include <gtest/gtest.h>  // before Xlib, whose None macro would clash with it

#include <vyxdisplay.h>

#include <X11/Xlib.h>

namespace {

TEST(KeySym2Ucs, LegacyBlocksFromTheHeader)
{
    // Named as Xlib knows them; topleftradical is an approximate match.
    const std::pair<const char*, long> pairs[] = {
        {"Aogonek", 0x0104},       {"cacute", 0x0107},      {"Hcircumflex", 0x0124},
        {"kra", 0x0138},           {"overline", 0x203e},    {"kana_A", 0x30a2},
        {"Arabic_alef", 0x0627},   {"Cyrillic_a", 0x0430},  {"Cyrillic_A", 0x0410},
        {"Greek_ALPHA", 0x0391},   {"Greek_alpha", 0x03b1}, {"topleftradical", 0x250c},
        {"lessthanequal", 0x2264}, {"emdash", 0x2014},      {"leftdoublequotemark", 0x201c},
        {"hebrew_aleph", 0x05d0},  {"Thai_kokai", 0x0e01},  {"OE", 0x0152},
        {"EuroSign", 0x20ac},      {"aogonek", 0x0105},     {"Greek_OMEGA", 0x03a9}};
    for (const auto& [name, ucs] : pairs) {
        ASSERT_NE(XStringToKeysym(name), NoSymbol) << name;
        EXPECT_EQ(KeySym2Ucs(XStringToKeysym(name)), ucs) << name;
    }
}

TEST(KeySym2Ucs, RulesForLatin1AndUnicodeKeysymsAndNothingElse)
{
    for (long same : {0x20, 0x41, 0xa0, 0xff})
        EXPECT_EQ(KeySym2Ucs(same), same);
    for (long ucs : {0x263a, 0x10ffff, 0xe9})
        EXPECT_EQ(KeySym2Ucs(0x01000000 + ucs), ucs);
    for (unsigned long none : {0x0ul, 0x1ful, 0x7ful, 0x9ful, 0xff08ul /* BackSpace */, 0xffe1ul /* Shift_L */,
                               0xffffful, 0x01000000ul, 0x01000085ul, 0x0100d800ul, 0x01110000ul, 0xffffffffffful})
        EXPECT_EQ(KeySym2Ucs(none), -1) << std::hex << none;
}

}  // namespace
