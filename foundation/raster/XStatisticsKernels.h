#pragma once

#include "foundation/raster/XBandStatistics.h"

#include <cstddef>

/// The inner loops of the statistics, one instance for each real data type. Samples equal to
/// `nullValue` are not counted when `hasNull` is set; of floating-point samples neither are NaN,
/// infinities and numbers beyond the sentinels.
template <class T>
struct XStatisticsKernels
{
    static void AddMoments(const T* samples, std::size_t count, bool hasNull, T nullValue,
                           tagXMoments& moments);
    static void AddHistogram(const T* samples, std::size_t count, bool hasNull, T nullValue,
                             double min, double max, long long* histogram);
};

/// Magnitudes of complex samples, `parts` holding re, im, re, im.
template <class T>
void XfnMagnitudes(const T* parts, std::size_t count, double* out);
