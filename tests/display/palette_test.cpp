// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

// The colour-palette helpers. Expected dark variants were computed apart
// from this code, in Python with exact fractions (HSL, lightness scaled,
// channels rounded half up); colorsys in floating point agrees except at
// exact halves, which it tips either way.

#include <vyxdisplay.h>

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

TEST(Palette, DarkVariantsKeepHueAndSaturation)
{
    EXPECT_EQ(GetPrimaryDarkColor("#ff0000", true), "#800000");
    EXPECT_EQ(GetPrimaryDarkColor("#FFFFFF", false), "#BFBFBF");
    // Exact halves: grey 16.5, and a red channel of 0.5.
    EXPECT_EQ(GetPrimaryDarkColor("#161616", false), "#111111");
    EXPECT_EQ(GetPrimaryDarkColor("#012012", true), "#011009");
    for (const char* bad : {"", "#FFF", "5682a3", "#5682g3", "#5682a3 ", "#+12345", "#-12345", "#5682a3ff"}) {
        EXPECT_EQ(GetPrimaryDarkColor(bad, true), "") << bad;
        EXPECT_EQ(textColorFor(bad), "") << bad;
    }
}

TEST(Palette, TextIsBlackOnLightAndWhiteOnDark)
{
    // Yellow is light, blue dark; #777777 has a luminance of 0.184, just above the bound, #757575 0.178.
    for (const char* light : {"#FFFFFF", "#ffff00", "#777777"})
        EXPECT_EQ(textColorFor(light), "#000000") << light;
    for (const char* dark : {"#000000", "#2b4152", "#0000ff", "#757575"})
        EXPECT_EQ(textColorFor(dark), "#FFFFFF") << dark;
}

TEST(Palette, ShadesRunFromTheColourTowardsBlackThroughTheDarkVariants)
{
    // The dark variants (red 64.5 and green 97.5 in the first: exact halves),
    // then a quarter of the lightness, computed as the cases above.
    EXPECT_EQ(CreateShadeColors("#5682a3", 4), (std::vector<std::string> {"#5682A3", "#41627A", "#2B4152", "#162129"}));
    EXPECT_EQ(CreateShadeColors("#808080", 2), (std::vector<std::string> {"#808080", "#404040"}));
    EXPECT_EQ(CreateShadeColors("#123456", 100000).size(), 256u);
    EXPECT_TRUE(CreateShadeColors("#123456", 0).empty());
    EXPECT_TRUE(CreateShadeColors("#12345", 3).empty());
}

}  // namespace
