// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

// The size tables: bounds of each step, where off-by-one slips hide.

#include <vyxicontheme.h>

#include <gtest/gtest.h>

namespace {

TEST(IconSizes, StepsAndTheirBounds)
{
    // dpi -> icon size at step 0; the step changes at 130, 168, 240 and 336.
    const std::pair<int, int> icons[] = {{96, 32},  {129, 32}, {130, 48}, {167, 48},  {168, 64},
                                         {239, 64}, {240, 96}, {335, 96}, {336, 128}, {1000, 128}};
    for (auto [dpi, size] : icons)
        EXPECT_EQ(VyxIconTheme::GetIconSizeForDPI(dpi, 0), size) << dpi;
    EXPECT_EQ(VyxIconTheme::GetIconSizeForDPI(96, -1), 22);
    EXPECT_EQ(VyxIconTheme::GetIconSizeForDPI(96, -2), 16);
    EXPECT_EQ(VyxIconTheme::GetIconSizeForDPI(96, -1000), 16);
    EXPECT_EQ(VyxIconTheme::GetIconSizeForDPI(336, 1), 192);
    EXPECT_EQ(VyxIconTheme::GetIconSizeForDPI(336, 2), 256);
    EXPECT_EQ(VyxIconTheme::GetIconSizeForDPI(96, 2147483647), 256);
    EXPECT_EQ(VyxIconTheme::GetFrameTitleSizeForDPI(96, 20), 20);
    EXPECT_EQ(VyxIconTheme::GetFrameTitleSizeForDPI(240, 20), 50);
    EXPECT_EQ(VyxIconTheme::GetFrameBorderSizeForDPI(130, 4), 7);
    EXPECT_EQ(VyxIconTheme::GetFrameBorderSizeForDPI(400, 4), 16);

    const std::pair<int, int> standard[] = {{-5, 16}, {21, 16}, {22, 22}, {31, 22},   {32, 32},   {47, 32},
                                            {48, 48}, {95, 64}, {96, 96}, {191, 128}, {192, 192}, {300, 256}};
    for (auto [size, expected] : standard)
        EXPECT_EQ(VyxIconTheme::GetStandardIconSize(size), expected) << size;
    // Emblem bounds belong to the step below them.
    const std::pair<int, int> emblems[] = {{31, 8},  {32, 16}, {48, 16},  {49, 22}, {64, 22},
                                           {65, 32}, {96, 32}, {128, 48}, {129, 64}};
    for (auto [size, expected] : emblems)
        EXPECT_EQ(VyxIconTheme::GetIconEmblemSize(size), expected) << size;
}

}  // namespace
