#pragma once

#include "foundation/base/XApi.h"
#include "foundation/base/XSentinels.h"
#include "foundation/raster/XTile.h"

#include <array>
#include <memory>
#include <vector>

/// Numbers of a band in band units. Pixels equal to the null value, NaN, infinities and numbers at or
/// beyond the sentinels are not counted. Of a complex band the magnitude of each pixel counts, but
/// for those whose real part is the null value and whose imaginary part is 0.
///
/// With no pixel counted (an image that is all no-data) every number stays kXNotSet and the
/// histogram is empty. A constant image has its value as minimum and maximum and all of its pixels
/// in bin 0.
struct tagXBandStatistics
{
    double min = kXNotSet;
    double max = kXNotSet;
    double mean = kXNotSet;
    double stdDev = kXNotSet; ///< of the population: divisor n
    long long count = 0;      ///< pixels behind the histogram, or behind the numbers without one
    int isEstimated = 0;      ///< min, max, mean, stdDev come from a part of the pixels
    int hasHistogram = 0;
    int isHistogramEstimated = 0;
    /// Bin i stands for min + (max - min) * i / 255; a pixel v counts in
    /// trunc((v - min) * 255 / (max - min)).
    std::array<long long, 256> histogram{};

    int IsSet() const { return XfnIsSet(min) && XfnIsSet(max); }
};

/// Sums of pixels, joined block by block.
///
/// Method: each block has its mean and its sum of squared deviations from it in two passes, blocks
/// are joined after Chan, Golub and LeVeque, The American Statistician 37(3), 1983. No digits go to
/// the cancellation that a plain sum of squares suffers when the mean is large against the spread.
struct tagXMoments
{
    long long count = 0;
    double min = kXNotSet;
    double max = kXNoData;
    double mean = 0.0;
    double squares = 0.0; ///< sum of (v - mean) squared

    XAPI void Merge(const tagXMoments& other);
};

/// Adds `count` samples without gaps to the moments.
/// @param nullValue  not counted; NaN and infinities never are; kXNotSet when there is none
/// @return 0 for a data type that is none
XAPI int XfnAddMoments(const void* data, std::size_t count, int dataType, double nullValue,
                       tagXMoments& moments);

/// Adds `count` samples without gaps to 256 bins over [min, max]; samples outside count in the
/// first or last bin. With min equal to max everything goes to bin 0.
/// @return 0 for a data type that is none or limits that are not numbers in order
XAPI int XfnAddHistogram(const void* data, std::size_t count, int dataType, double nullValue,
                         double min, double max, long long* histogram);

/// The numbers behind moments, without a histogram.
XAPI tagXBandStatistics XfnMakeStatistics(const tagXMoments& moments);

/// The statistics of a set of tiles of one data type.
/// @param isEstimate  becomes both marks
/// @param min, max    limits for the histogram; when not set, those of the tiles
XAPI tagXBandStatistics
XfnCalcTileStatistics(const std::vector<std::shared_ptr<const XTile>>& tiles, double nullValue,
                      int isEstimate, double min = kXNotSet, double max = kXNotSet);
