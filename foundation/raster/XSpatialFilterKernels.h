#pragma once

#include "foundation/raster/XSpatialFilter.h"

#include <cstddef>
#include <vector>

/// Filters reals, R being float or double, in which anything that is not finite is no data.
///
/// @param src  the sample of output (0, 0); the apron of r pixels on every side (r from
///             XfnGetFilterRadius) lies before and behind it, at the same stride
/// @param srcStride, dstStride  samples from one row to the next
/// @param dst  width x height results, NaN where the centre has no data; apart from src
/// @param scratch  working memory, kept by the caller so that the next block need not allocate
/// Throws std::bad_alloc. Threads: any; a scratch in one at a time.
template <class R>
void XfnFilterReals(const tagXSpatialFilter& filter, const R* src, std::ptrdiff_t srcStride,
                    int width, int height, R* dst, std::ptrdiff_t dstStride,
                    std::vector<R>& scratch);

/// `count` samples of a real type to reals; the null value and everything not finite become NaN.
/// @return 1 when a sample has no data
template <class T, class R>
int XfnLoadReals(const T* src, std::size_t count, double nullValue, R* out);
/// Back again, as XfnFilterBlock tells.
template <class T, class R>
void XfnStoreReals(const R* reals, std::size_t count, double nullValue, T* out);
