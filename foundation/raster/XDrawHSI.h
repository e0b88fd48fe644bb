#pragma once

#include "foundation/base/XApi.h"

#include <cstdint>

/// Hue, saturation and intensity to red, green and blue and back.
///
/// Method: the arccos form of Gonzalez and Woods, Digital Image Processing, 4th ed., section 6.2.
/// Each number is a byte: hue 0..255 stands for 0..360 degrees (0 and 255 are both red), saturation
/// and intensity for 0..1. Colours outside the RGB cube are held at its faces. Singular cases: the
/// hue of a gray and the saturation of black are 0. A colour that goes to HSI and back changes by a
/// few levels, since a byte of hue is 1.4 degrees.

/// @return 0x00RRGGBB
XAPI std::uint32_t XfnHsiToRgb(std::uint8_t hue, std::uint8_t saturation, std::uint8_t intensity);
XAPI void XfnRgbToHsi(std::uint8_t red, std::uint8_t green, std::uint8_t blue, std::uint8_t& hue,
                      std::uint8_t& saturation, std::uint8_t& intensity);

/// The part of the conversion that depends on the hue alone, for the drawing loop.
struct tagXHsiTable
{
    float ratio[256];            ///< cos H / cos(60 - H) within the sector of the hue
    std::uint8_t shiftLow[256];  ///< place in the word of the component I (1 - S)
    std::uint8_t shiftHigh[256]; ///< of I (1 + S * ratio)
    std::uint8_t shiftRest[256]; ///< of the third
};
const tagXHsiTable& XfnGetHsiTable();

/// The conversion itself, with the table at hand.
inline std::uint32_t XfnHsiWord(const tagXHsiTable& table, std::uint8_t hue,
                                std::uint8_t saturation, std::uint8_t intensity)
{
    const float i = intensity;
    const float s = saturation * (1.0f / 255.0f);
    const float low = i - i * s;
    const float high = i + i * s * table.ratio[hue];
    const float rest = 3.0f * i - low - high;
    const auto held = [](float v) {
        v = v + 0.5f > 0.0f ? v + 0.5f : 0.0f;
        return static_cast<std::uint32_t>(v < 255.0f ? v : 255.0f);
    };
    return held(low) << table.shiftLow[hue] | held(high) << table.shiftHigh[hue] |
           held(rest) << table.shiftRest[hue];
}
