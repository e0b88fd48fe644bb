#pragma once

#include "foundation/raster/XDMFileLayout.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

/// The shape of the samples of one tile.
struct tagXDMFileTileShape
{
    int width = 0; ///< pixels
    int height = 0;
    int dataType = 1; ///< 1..16

    std::size_t GetBytes() const
    {
        return static_cast<std::size_t>(width) * static_cast<std::size_t>(height) *
               static_cast<std::size_t>(XfnGetXDMFileSampleSize(dataType));
    }
};

/// The bytes of one sample that stands for "no value": the null value in the data type; the nearest
/// float for a float; 0 where there is no null value or the type cannot hold it. A complex sample
/// has an imaginary part of 0.
std::array<unsigned char, 16> XfnGetXDMFileFill(int dataType, double nullValue);

/// 1 when `bytes` is `sample` (of `sampleSize` bytes) over and over, bit by bit.
int XfnIsXDMFileTileEmpty(const void* bytes, std::size_t count, const unsigned char* sample,
                          std::size_t sampleSize);
/// Writes `sample` over and over.
void XfnFillXDMFileTile(void* bytes, std::size_t count, const unsigned char* sample,
                        std::size_t sampleSize);

/// Compresses a tile as `wish` says (0 none, 1 zstd, 2 zstd of predicted values).
/// @param out  the payload when the encoding is not Plain; a Plain payload is `samples` itself
/// @return the encoding; Plain also when the other gains nothing or memory runs out.
XDMFileEncoding XfnEncodeXDMFileTile(const void* samples, const tagXDMFileTileShape& shape,
                                     int wish, std::vector<unsigned char>& out);

/// Undoes it for an encoding that is not Plain.
/// @param out  shape.GetBytes() bytes, aligned for the samples
/// @return 0 when the payload does not hold exactly such a tile.
int XfnDecodeXDMFileTile(XDMFileEncoding encoding, const unsigned char* payload, std::size_t count,
                         const tagXDMFileTileShape& shape, void* out);
