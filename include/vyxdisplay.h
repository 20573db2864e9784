#ifndef VYXCORE_DISPLAY_H
#define VYXCORE_DISPLAY_H

// Display and appearance: colour-palette helpers on "#RRGGBB" texts.

#include "vyxexport.h"

#include <string>

// The dark variant of the primary colour color ("#RRGGBB", hex digits of
// either case): the same hue and saturation at three quarters of the
// lightness, or at half of it when darker. "#RRGGBB" in upper case; empty
// when color is not of that form.
VYX_EXPORT std::string GetPrimaryDarkColor(const std::string& color, bool darker);

// The colour of text drawn on background ("#RRGGBB"): "#000000" when the
// background is light (relative luminance above 0.179, where black gives
// the higher contrast), else "#FFFFFF"; empty when background is not of
// that form.
VYX_EXPORT std::string textColorFor(const std::string& background);

#endif
