#pragma once

#include <cstddef>

/// The median of (2 radius + 1)^2 samples about each of width x height samples, as XSpatialFilter.h
/// defines it; R is float or double, what is not finite is no data. NaN where the centre has none.
///
/// Method: 3 x 3 without gaps by a network of exchanges, a row at once. Otherwise by a histogram that
/// slides along the row (T. S. Huang, G. J. Yang and G. Y. Tang, IEEE Trans. ASSP 27(1), 1979), over
/// the ranks of the samples within blocks of the image, so that it is exact for any type; bits tell
/// which ranks occur, so that the median moves without counting through the gaps.
///
/// @param radius   1..5
/// @param hasGaps  0 when every sample, the apron of `radius` too, is known to be finite
/// Throws std::bad_alloc. Threads: any.
template <class R>
void XfnMedianReals(int radius, bool hasGaps, const R* src, std::ptrdiff_t srcStride, int width,
                    int height, R* dst, std::ptrdiff_t dstStride);
