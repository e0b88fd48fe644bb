#include "foundation/raster/XPaletteShapes.h"

#include "foundation/raster/XPaletteTables.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace {

XRgbBytes FromLch(double lightness, double chroma, double hueDegrees)
{
    const double angle = hueDegrees * std::numbers::pi / 180.0;
    return XfnLabToRgb({lightness, chroma * std::cos(angle), chroma * std::sin(angle)});
}

double Wave(double turns) // 0 to 1, 0 at whole turns
{
    return 0.5 - 0.5 * std::cos(2.0 * std::numbers::pi * turns);
}

unsigned char ToByte(double share)
{
    return static_cast<unsigned char>(std::lround(255.0 * std::clamp(share, 0.0, 1.0)));
}

} // namespace

XRgbBytes XfnPaletteBandedLevels(int, int entry)
{
    constexpr XRgbBytes kLevels[] = {
        {0, 84, 0},  {0, 168, 0},     {0, 255, 0},     {0, 255, 84},   {0, 255, 168}, {0, 255, 255},
        {0, 0, 255}, {128, 0, 255},   {255, 0, 220},   {255, 0, 180},  {255, 0, 128}, {255, 0, 64},
        {255, 0, 0}, {220, 190, 190}, {220, 220, 220}, {255, 255, 255}};
    if (entry == 0) return {0, 0, 0};
    XRgbBytes rgb = kLevels[entry / 16];
    if (entry / 16 == 13) rgb[0] = static_cast<unsigned char>(220 + entry % 16 / 4);
    return rgb;
}

XRgbBytes XfnPaletteSteps(int, int entry)
{
    constexpr double kHues[] = {300, 265, 220, 180, 130, 95, 60, 25};
    return FromLch(32.0 + 50.0 * (entry % 32) / 31.0, 70.0, kHues[entry / 32]);
}

XRgbBytes XfnPaletteEvenSteps(int, int entry)
{
    const double step = entry / 16 / 15.0;
    return FromLch(18.0 + 76.0 * step, 55.0, 285.0 - 185.0 * step);
}

XRgbBytes XfnPaletteFramedRainbow(int palette, int entry)
{
    constexpr int kFrame = 24; // entries between the frame's colour and the rainbow
    const bool isAtEnd = palette == 7 || palette == 9;
    const bool isWhite = palette == 8 || palette == 9;
    const int fromFrame = isAtEnd ? 255 - entry : entry;
    const double place = std::clamp((entry - (isAtEnd ? 0 : kFrame)) / (255.0 - kFrame), 0.0, 1.0);
    const XRgbBytes rainbow = XfnHsvToRgb(275.0 * (1.0 - place), 1.0, 1.0);
    const double share = std::min(1.0, static_cast<double>(fromFrame) / kFrame);
    XRgbBytes rgb{};
    for (std::size_t i = 0; i < 3; ++i)
        rgb[i] = ToByte((share * rainbow[i] + (isWhite ? (1.0 - share) * 255.0 : 0.0)) / 255.0);
    return rgb;
}

XRgbBytes XfnPalettePrism(int, int entry)
{
    // the six colours of a prism over and over, so that small differences jump
    constexpr double kHues[] = {0, 30, 60, 120, 230, 280};
    return XfnHsvToRgb(kHues[entry % 6], 1.0, 1.0);
}

XRgbBytes XfnPalettePastels(int, int entry)
{
    return FromLch(82.0, 34.0, 320.0 - 300.0 * entry / 255.0);
}

XRgbBytes XfnPaletteHueSweep(int palette, int entry)
{
    const double place = entry / 255.0;
    switch (palette) {
    case 31: // hue, saturation, lightness: saturated, darker to lighter
        return FromLch(15.0 + 75.0 * place, 60.0, 300.0 - 220.0 * place);
    case 32:
        return FromLch(90.0 - 70.0 * place, 45.0, 100.0 - 260.0 * place);
    case 33: // hue, saturation, value
        return XfnHsvToRgb(240.0 * (1.0 - place), 1.0, 0.35 + 0.65 * place);
    case 34:
        return XfnHsvToRgb(300.0 * place, 1.0 - 0.75 * place, 1.0);
    case 37:
        return XfnHsvToRgb(290.0 * (1.0 - place), 0.85, 0.95);
    case 40:
        return XfnHsvToRgb(270.0 * (1.0 - place), 1.0, std::min(0.6, 0.05 + 1.4 * place));
    default: // the full circle of hues
        return XfnHsvToRgb(360.0 * entry / 256.0, 1.0, 1.0);
    }
}

XRgbBytes XfnPaletteStripes(int, int entry)
{
    const double place = entry / 255.0;
    return FromLch(entry / 8 % 2 == 0 ? 38.0 : 66.0, 75.0, 310.0 + 85.0 * place);
}

XRgbBytes XfnPaletteHardCandy(int, int entry)
{
    const double place = entry / 255.0;
    return FromLch(62.0 + 16.0 * std::cos(2.0 * std::numbers::pi * 9.0 * place), 78.0,
                   350.0 + 360.0 * 3.0 * place);
}

XRgbBytes XfnPalettePeppermint(int, int entry)
{
    switch (entry / 4 % 4) {
    case 0:
        return {235, 28, 45};
    case 2:
        return {24, 168, 108};
    default:
        return {250, 250, 248};
    }
}

XRgbBytes XfnPaletteWaves(int palette, int entry)
{
    const double place = entry / 255.0;
    if (palette == 48) return FromLch(22.0 + 66.0 * Wave(4.0 * place), 42.0, 265.0);
    return FromLch(30.0 + 58.0 * Wave(3.0 * place), 46.0, 230.0 - 100.0 * Wave(1.5 * place));
}

XRgbBytes XfnPaletteCycle(int palette, int entry)
{
    const double turn = entry / 256.0;
    if (palette == 49) return FromLch(68.0, 52.0, 30.0 + 360.0 * turn);
    // north light, south dark, east and west apart in hue
    return FromLch(55.0 + 30.0 * std::cos(2.0 * std::numbers::pi * turn), 50.0,
                   turn < 0.5 ? 60.0 : 260.0);
}

XRgbBytes XfnPaletteContour(int, int entry)
{
    if (entry % 16 == 15) return {40, 30, 20};
    const double place = entry / 255.0;
    return FromLch(62.0 + 34.0 * place, 40.0 - 28.0 * place, 150.0 - 85.0 * place);
}

XRgbBytes XfnPaletteBlocks(int, int entry)
{
    XRgbBytes rgb{};
    const int block = std::min(entry / 85, 2);
    rgb[static_cast<std::size_t>(block)] = ToByte((entry - 85 * block + 1) / 86.0);
    return rgb;
}

XRgbBytes XfnPaletteCube(int, int entry)
{
    return {ToByte((entry >> 5) / 7.0), ToByte((entry >> 2 & 7) / 7.0), ToByte((entry & 3) / 3.0)};
}

XRgbBytes XfnPaletteShade(int, int entry)
{
    const double lightness = 100.0 * entry / 255.0;
    const double root = (lightness + 16.0) / 116.0;
    const double luminance = lightness > 8.0 ? root * root * root : lightness / 903.3;
    const unsigned char gray =
        ToByte(luminance <= 0.0031308 ? 12.92 * luminance
                                      : 1.055 * std::pow(luminance, 1.0 / 2.4) - 0.055);
    return {gray, gray, gray};
}

XRgbBytes XfnPaletteSaw(int, int entry)
{
    const unsigned char gray = ToByte(entry % 64 / 63.0);
    return {gray, gray, gray};
}

XRgbBytes XfnPaletteUnique(int, int entry)
{
    // neighbours lie a golden angle apart in hue, and in one of four lightnesses
    if (entry == 0) return {0, 0, 0};
    constexpr double kLightness[] = {45, 75, 60, 88};
    return FromLch(kLightness[entry % 4] + entry / 64, 30.0 + 14.0 * (entry / 4 % 4),
                   137.50776405 * entry);
}
