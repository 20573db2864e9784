// SPDX-FileCopyrightText: 2026 The libvyxcore developers
//
// SPDX-License-Identifier: LGPL-2.1-or-later

#include "vyxdisplay.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <vector>

namespace {

struct Rgb {
    double r, g, b;  // 0 to 1
};

// "#RRGGBB", hex digits of either case, and nothing else: no sign, blanks or
// short forms, which strtol alone would let through.
bool parse(const std::string& text, Rgb* out)
{
    if (text.size() != 7 || text[0] != '#')
        return false;
    for (size_t i = 1; i < 7; ++i) {
        if (!std::isxdigit(static_cast<unsigned char>(text[i])))
            return false;
    }
    long value = std::strtol(text.c_str() + 1, nullptr, 16);
    out->r = double(value >> 16 & 0xFF) / 255.0;
    out->g = double(value >> 8 & 0xFF) / 255.0;
    out->b = double(value & 0xFF) / 255.0;
    return true;
}

// Channels are rounded half up. Many results are exact halves (grey 0x16 at
// three quarters is 16.5) that the floating-point steps leave a hair either
// side of .5; every other result lies at least 1/1000 away from a half, so a
// nudge of 1e-6 rounds all the halves up and nothing else differently.
std::string format(const Rgb& c)
{
    auto byte = [](double v) { return int(std::floor(std::clamp(v, 0.0, 1.0) * 255.0 + 0.5 + 1e-6)); };
    char text[8];
    std::snprintf(text, sizeof text, "#%02X%02X%02X", byte(c.r), byte(c.g), byte(c.b));
    return text;
}

// One channel of an HSL colour, from the two lightness bounds p and q and the
// channel's hue offset t.
double hueToChannel(double p, double q, double t)
{
    if (t < 0)
        t += 1;
    if (t > 1)
        t -= 1;
    if (t < 1.0 / 6)
        return p + (q - p) * 6 * t;
    if (t < 0.5)
        return q;
    if (t < 2.0 / 3)
        return p + (q - p) * (2.0 / 3 - t) * 6;
    return p;
}

// An sRGB channel in linear light.
double linear(double channel)
{
    return channel <= 0.04045 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
}

// A colour as hue (0 to 1, a full turn), saturation and lightness.
struct Hsl {
    double h = 0, s = 0, l = 0;
};

Hsl toHsl(const Rgb& c)
{
    const double high = std::max({c.r, c.g, c.b}), low = std::min({c.r, c.g, c.b});
    Hsl out;
    out.l = (high + low) / 2;
    if (high != low) {
        const double delta = high - low;
        out.s = out.l > 0.5 ? delta / (2 - high - low) : delta / (high + low);
        if (high == c.r)
            out.h = (c.g - c.b) / delta + (c.g < c.b ? 6 : 0);
        else if (high == c.g)
            out.h = (c.b - c.r) / delta + 2;
        else
            out.h = (c.r - c.g) / delta + 4;
        out.h /= 6;
    }
    return out;
}

// The colour of the same hue and saturation at factor times its lightness.
// The dark variants and the shade lists both come from here, so a shade at
// three quarters or half is exactly the matching dark variant.
std::string withLightnessScaled(const Hsl& color, double factor)
{
    const double lightness = color.l * factor;
    if (color.s == 0)
        return format({lightness, lightness, lightness});
    const double q = lightness < 0.5 ? lightness * (1 + color.s) : lightness + color.s - lightness * color.s;
    const double p = 2 * lightness - q;
    return format(
        {hueToChannel(p, q, color.h + 1.0 / 3), hueToChannel(p, q, color.h), hueToChannel(p, q, color.h - 1.0 / 3)});
}

}  // namespace

std::string GetPrimaryDarkColor(const std::string& color, bool darker)
{
    Rgb c;
    if (!parse(color, &c))
        return std::string();
    return withLightnessScaled(toHsl(c), darker ? 0.5 : 0.75);
}

std::vector<std::string> CreateShadeColors(const std::string& color, int count)
{
    Rgb c;
    if (count < 1 || !parse(color, &c))
        return {};
    // More shades than this could not differ from their neighbours in 8-bit
    // channels anyway; the bound keeps a wild count from allocating without end.
    count = std::min(count, 256);
    const Hsl hsl = toHsl(c);
    std::vector<std::string> shades;
    shades.reserve(size_t(count));
    for (int i = 0; i < count; ++i)
        shades.push_back(withLightnessScaled(hsl, double(count - i) / count));
    return shades;
}

std::string textColorFor(const std::string& background)
{
    Rgb c;
    if (!parse(background, &c))
        return std::string();
    const double luminance = 0.2126 * linear(c.r) + 0.7152 * linear(c.g) + 0.0722 * linear(c.b);
    return luminance > 0.179 ? "#000000" : "#FFFFFF";
}
