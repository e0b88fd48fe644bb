#pragma once

#include <cstdint>

/// A colour word: red in the lowest byte, then green, then blue. Plot and overlay colours carry
/// 0xFF in the top byte, others 0.
using tagXColor = std::uint32_t;

/// The colour of a region or class for which none was chosen.
inline constexpr tagXColor kXNoColor = 0x00FFFFFFu;

/// The top byte of plot and overlay colours.
inline constexpr tagXColor kXOpaque = 0xFF000000u;

/// A colour word from its parts, each 0..255; higher bits of a part are ignored.
constexpr tagXColor XfnMakeColor(unsigned red, unsigned green, unsigned blue, unsigned alpha = 0)
{
    return (red & 0xFFu) | (green & 0xFFu) << 8 | (blue & 0xFFu) << 16 | (alpha & 0xFFu) << 24;
}

constexpr unsigned XfnGetRed(tagXColor color)
{
    return color & 0xFFu;
}

constexpr unsigned XfnGetGreen(tagXColor color)
{
    return color >> 8 & 0xFFu;
}

constexpr unsigned XfnGetBlue(tagXColor color)
{
    return color >> 16 & 0xFFu;
}

constexpr unsigned XfnGetAlpha(tagXColor color)
{
    return color >> 24;
}
