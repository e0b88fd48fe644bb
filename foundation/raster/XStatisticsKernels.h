#pragma once

#include "foundation/raster/XBandStatistics.h"

#include <cstddef>
#include <cstdint>

/// The inner loops of the statistics that know the type of a sample, one instance for each real data
/// type; everything behind them works on blocks of doubles (XBlockKernels.h). Samples equal to
/// `nullValue` are not counted when `hasNull` is set; of floating-point samples neither are NaN,
/// infinities and numbers beyond the sentinels.
template <class T>
struct XStatisticsKernels
{
    static void AddMoments(const T* samples, std::size_t count, bool hasNull, T nullValue,
                           tagXMoments& moments);
    static void AddHistogram(const T* samples, std::size_t count, bool hasNull, T nullValue,
                             double min, double max, long long* histogram);

    /// `count` samples, every step-th from the first, as doubles; at most a block.
    /// @param valid  1 for each sample that counts, else 0; written only when some do not
    /// @return how many count
    static std::size_t Convert(const T* samples, std::size_t count, std::size_t step, bool hasNull,
                               T nullValue, double* out, unsigned char* valid);

    /// Samples as doubles, kXNoData for null values and NaN. Infinities stay.
    static void ReadValues(const T* samples, std::size_t count, bool hasNull, T nullValue,
                           double* out);
};

/// Samples of one or two bytes counted by value, which tells minimum, maximum, mean, deviation and
/// any histogram exactly after a single pass.
template <class T>
struct XValueCountKernels
{
    static_assert(sizeof(T) <= 2);
    static constexpr std::size_t kValues = std::size_t{1} << (8 * sizeof(T));
    /// Tables side by side: an increment must not wait for the one before it, which often has the
    /// same place. Two tables of 16-bit values and eight of bytes stay in the second cache.
    static constexpr std::size_t kTables = sizeof(T) == 1 ? 8 : 2;

    /// @param counts  kTables times kValues; a signed value stands at the place of its bits
    static void Add(const T* samples, std::size_t count, std::uint32_t* counts);
};

/// Magnitudes of complex samples, `parts` holding re, im, re, im; NaN where the real part is
/// `nullValue` (with `hasNull` set) and the imaginary part 0.
template <class T>
void XfnMagnitudes(const T* parts, std::size_t count, bool hasNull, T nullValue, double* out);
