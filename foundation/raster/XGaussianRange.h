#pragma once

#include "foundation/base/XApi.h"

/// The central part of a histogram: the values below which `lowFraction` and `highFraction` of its
/// mass lie.
///
/// Bin i stands for min + (max - min) * i / 255 and its mass is spread evenly from half a bin below
/// to half a bin above (bins 0 and 255 only inward), so the result is interpolated inside a bin and
/// stays within [min, max]. The error against the true quantiles of the samples is at most one bin
/// width. Negative counts are taken as 0.
/// @param histogram  256 counts; may be null
/// @return 0 when the histogram is empty or min and max are not finite; then low and high stay
XAPI int XfnCalcHistogramRange(double min, double max, const long long* histogram,
                               double lowFraction, double highFraction, double& low, double& high);

/// The range that holds the central 95 per cent of the histogram (2.5 % to 97.5 %).
///
/// On an empty histogram it is mean plus and minus 1.96 standard deviations, the same share of a
/// normal distribution. When those are not finite either, the range is [min, max]. The result is
/// not held inside the band's range. Units: those of the band; histogram as XfnCalcHistogramRange.
XAPI void XfnCalcGaussianRange95(double min, double max, double mean, double stdDev,
                                 const long long* histogram, double& low, double& high);

/// The same for the central 98 per cent (1 % to 99 %), 2.326 deviations on an empty histogram.
XAPI void XfnCalcGaussianRange98(double min, double max, double mean, double stdDev,
                                 const long long* histogram, double& low, double& high);

/// The range of a cut type: 2 the central 98 per cent, 3 the central 95, any other [min, max].
/// @return 0 when min or max is not set; then low and high stay
XAPI int XfnCalcCutRange(int cutType, double min, double max, double mean, double stdDev,
                         const long long* histogram, double& low, double& high);
