#pragma once

#include <cstddef>

/// What makes samples easier to compress: the difference to the left neighbour, then all lowest
/// bytes of the tile, all second bytes and so on.
///
/// A row holds `valuesPerRow` values of `valueSize` bytes (1, 2, 4 or 8, aligned so), `step` of
/// which make a sample (2 for complex). Values are taken as unsigned integers whatever they mean;
/// differences wrap, so every bit pattern comes back. The first sample of a row is kept.
/// @param planes  valueSize planes of rows * valuesPerRow bytes, lowest byte first; apart from
///                `values`
void XfnPredictXDMFileTile(const void* values, unsigned char* planes, int valueSize, int step,
                           std::size_t valuesPerRow, std::size_t rows);

/// The inverse.
void XfnUnpredictXDMFileTile(const unsigned char* planes, void* values, int valueSize, int step,
                             std::size_t valuesPerRow, std::size_t rows);
