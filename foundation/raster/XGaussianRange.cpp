#include "foundation/raster/XGaussianRange.h"

#include "foundation/base/XSentinels.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr int kBinCount = 256;

/// The place in bins below which `wanted` counts lie, each bin spread half a bin to either side.
double PlaceOf(double wanted, const long long* histogram)
{
    double below = 0.0;
    int last = 0; // full bins only: an empty one has no place of its own
    for (int i = 0; i < kBinCount; ++i) {
        const double count = static_cast<double>(std::max(histogram[i], 0LL));
        if (!(count > 0.0)) continue;
        last = i;
        if (below + count >= wanted) {
            const double from = i == 0 ? 0.0 : i - 0.5;
            const double to = i == kBinCount - 1 ? i : i + 0.5;
            return from + (to - from) * std::clamp((wanted - below) / count, 0.0, 1.0);
        }
        below += count;
    }
    return last;
}

void CalcRange(double min, double max, double mean, double stdDev, const long long* histogram,
               double tail, double deviations, double& low, double& high)
{
    if (XfnCalcHistogramRange(min, max, histogram, tail, 1.0 - tail, low, high)) return;
    low = mean - deviations * stdDev;
    high = mean + deviations * stdDev;
    if (std::isfinite(low) && std::isfinite(high)) return;
    low = min;
    high = max;
}

} // namespace

int XfnCalcHistogramRange(double min, double max, const long long* histogram, double lowFraction,
                          double highFraction, double& low, double& high)
{
    if (!histogram || !std::isfinite(min) || !std::isfinite(max)) return 0;
    double total = 0.0;
    for (int i = 0; i < kBinCount; ++i)
        total += static_cast<double>(std::max(histogram[i], 0LL));
    if (!(total > 0.0)) return 0;
    // lerp, since max - min may overflow
    low = std::lerp(min, max, PlaceOf(total * lowFraction, histogram) / 255.0);
    high = std::lerp(min, max, PlaceOf(total * highFraction, histogram) / 255.0);
    return 1;
}

void XfnCalcGaussianRange95(double min, double max, double mean, double stdDev,
                            const long long* histogram, double& low, double& high)
{
    CalcRange(min, max, mean, stdDev, histogram, 0.025, 1.96, low, high);
}

void XfnCalcGaussianRange98(double min, double max, double mean, double stdDev,
                            const long long* histogram, double& low, double& high)
{
    CalcRange(min, max, mean, stdDev, histogram, 0.01, 2.326, low, high);
}

int XfnCalcCutRange(int cutType, double min, double max, double mean, double stdDev,
                    const long long* histogram, double& low, double& high)
{
    if (!XfnIsSet(min) || !XfnIsSet(max)) return 0;
    low = min;
    high = max;
    if (cutType == 2) XfnCalcGaussianRange98(min, max, mean, stdDev, histogram, low, high);
    if (cutType == 3) XfnCalcGaussianRange95(min, max, mean, stdDev, histogram, low, high);
    return 1;
}
