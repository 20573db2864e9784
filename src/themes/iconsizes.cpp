// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "vyxicontheme.h"

namespace {

// The resolution step of icons and window frames.
int dpiStep(int dpi)
{
    return dpi < 130 ? 0 : dpi < 168 ? 1 : dpi < 240 ? 2 : dpi < 336 ? 3 : 4;
}

}  // namespace

int VyxIconTheme::GetStandardIconSize(int size)
{
    static const int kSizes[] = {256, 192, 128, 96, 64, 48, 32, 22};
    for (int standard : kSizes) {
        if (size >= standard)
            return standard;
    }
    return 16;
}

int VyxIconTheme::GetIconEmblemSize(int size)
{
    // Unlike the standard sizes, each bound belongs to the step below it.
    return size <= 31 ? 8 : size <= 48 ? 16 : size <= 64 ? 22 : size <= 96 ? 32 : size <= 128 ? 48 : 64;
}

int VyxIconTheme::GetIconSizeForDPI(int dpi, int step)
{
    static const int kSizes[] = {22, 32, 48, 64, 96, 128, 192};  // steps -1 to 5
    const long i = long(dpiStep(dpi)) + step;
    return i < -1 ? 16 : i > 5 ? 256 : kSizes[i + 1];
}

int VyxIconTheme::GetFrameTitleSizeForDPI(int dpi, int base)
{
    return base + 10 * dpiStep(dpi);
}

int VyxIconTheme::GetFrameBorderSizeForDPI(int dpi, int base)
{
    return base + 3 * dpiStep(dpi);
}
