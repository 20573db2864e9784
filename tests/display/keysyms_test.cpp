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
    const unsigned long pairs[][2] = {
        {0x01a1, 0x0104} /* Aogonek */,
        {0x01e6, 0x0107} /* cacute */,
        {0x02a6, 0x0124} /* Hcircumflex */,
        {0x03a2, 0x0138} /* kra */,
        {0x047e, 0x203e} /* overline */,
        {0x04b1, 0x30a2} /* kana_A */,
        {0x05c7, 0x0627} /* Arabic_alef */,
        {0x06c1, 0x0430} /* Cyrillic_a */,
        {0x06e1, 0x0410} /* Cyrillic_A */,
        {0x07c1, 0x0391} /* Greek_ALPHA */,
        {0x07e1, 0x03b1} /* Greek_alpha */,
        {0x08a2, 0x250c} /* topleftradical, an approximate match in parentheses */,
        {0x08bc, 0x2264} /* lessthanequal */,
        {0x0aa9, 0x2014} /* emdash */,
        {0x0ad2, 0x201c} /* leftdoublequotemark */,
        {0x0ce0, 0x05d0} /* hebrew_aleph */,
        {0x0da1, 0x0e01} /* Thai_kokai */,
        {0x13bc, 0x0152} /* OE */,
        {0x20ac, 0x20ac} /* EuroSign */,
    };
    for (const auto& pair : pairs)
        EXPECT_EQ(KeySym2Ucs(pair[0]), long(pair[1])) << std::hex << pair[0];
    EXPECT_EQ(KeySym2Ucs(XStringToKeysym("aogonek")), 0x0105);
    EXPECT_EQ(KeySym2Ucs(XStringToKeysym("Greek_OMEGA")), 0x03a9);
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
