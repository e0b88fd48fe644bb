#pragma once

#include <cstddef>
#include <cstdint>

/// The header of a device independent bitmap, byte for byte as it stands in files and clipboards.
struct tagBITMAPINFOHEADER
{
    std::uint32_t biSize = 40;
    std::int32_t biWidth = 0;
    std::int32_t biHeight = 0; ///< positive: bottom row first; negative: top row first
    std::uint16_t biPlanes = 1;
    std::uint16_t biBitCount = 0;
    std::uint32_t biCompression = 0; ///< 0: none
    std::uint32_t biSizeImage = 0;
    std::int32_t biXPelsPerMeter = 0;
    std::int32_t biYPelsPerMeter = 0;
    std::uint32_t biClrUsed = 0; ///< palette entries; 0: all that the bit count allows
    std::uint32_t biClrImportant = 0;
};

struct tagRGBQUAD
{
    std::uint8_t rgbBlue = 0;
    std::uint8_t rgbGreen = 0;
    std::uint8_t rgbRed = 0;
    std::uint8_t rgbReserved = 0;
};

/// Header and palette. The palette has room for every bit count that uses one, so that the record
/// can be kept by value; rows are padded to four bytes.
struct tagBITMAPINFO
{
    tagBITMAPINFOHEADER bmiHeader;
    tagRGBQUAD bmiColors[256];
};

static_assert(sizeof(tagBITMAPINFOHEADER) == 40 && sizeof(tagRGBQUAD) == 4);
static_assert(offsetof(tagBITMAPINFO, bmiColors) == 40);

/// Bytes of one padded row; 0 for sizes below 1.
constexpr std::size_t XfnGetDibRowBytes(std::int32_t width, int bitCount)
{
    if (width < 1 || bitCount < 1) return 0;
    return (static_cast<std::size_t>(width) * static_cast<std::size_t>(bitCount) + 31) / 32 * 4;
}
