#include "foundation/raster/XBandStatistics.h"

#include "foundation/raster/XNullSample.h"
#include "foundation/raster/XRasterTypes.h"
#include "foundation/raster/XStatisticsKernels.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <type_traits>

namespace {

/// Calls f(samples, count) with real samples: those of the block, or the magnitudes of complex ones
/// piece by piece, with NaN for those without data.
template <class F>
int WithRealSamples(const void* data, std::size_t count, int dataType, double nullValue, F&& f)
{
    if (XfnIsRealType(dataType)) {
        return XfnDispatchRealType<int>(dataType, [&]<class T>(const T*) {
            bool hasNull = false;
            const T null = XfnNullSample<T>(nullValue, hasNull);
            f(static_cast<const T*>(data), count, hasNull, null);
            return 1;
        });
    }
    return XfnDispatchRealType<int>(XfnGetPartType(dataType), [&]<class T>(const T*) {
        constexpr std::size_t kPiece = 2048;
        double magnitudes[kPiece];
        const T* parts = static_cast<const T*>(data);
        bool hasNull = false;
        const T null = XfnNullSample<T>(nullValue, hasNull);
        for (std::size_t start = 0; start < count; start += kPiece) {
            const std::size_t n = std::min(kPiece, count - start);
            XfnMagnitudes(parts + 2 * start, n, hasNull, null, magnitudes);
            f(static_cast<const double*>(magnitudes), n, false, 0.0);
        }
        return 1;
    });
}

} // namespace

void tagXMoments::Merge(const tagXMoments& other)
{
    if (other.count == 0) return;
    if (count == 0) {
        *this = other;
        return;
    }
    min = std::min(min, other.min);
    max = std::max(max, other.max);
    const double n = static_cast<double>(count) + static_cast<double>(other.count);
    const double delta = other.mean - mean;
    const double share = static_cast<double>(other.count) / n;
    mean += delta * share;
    squares += other.squares + delta * delta * (static_cast<double>(count) * share);
    count += other.count;
}

int XfnAddMoments(const void* data, std::size_t count, int dataType, double nullValue,
                  tagXMoments& moments)
{
    return WithRealSamples(data, count, dataType, nullValue,
                           [&]<class T>(const T* samples, std::size_t n, bool hasNull, T null) {
                               XStatisticsKernels<T>::AddMoments(samples, n, hasNull, null,
                                                                 moments);
                           });
}

int XfnAddHistogram(const void* data, std::size_t count, int dataType, double nullValue, double min,
                    double max, long long* histogram)
{
    if (!XfnIsSet(min) || !XfnIsSet(max) || min > max) return 0;
    return WithRealSamples(data, count, dataType, nullValue,
                           [&]<class T>(const T* samples, std::size_t n, bool hasNull, T null) {
                               XStatisticsKernels<T>::AddHistogram(samples, n, hasNull, null, min,
                                                                   max, histogram);
                           });
}

tagXBandStatistics XfnMakeStatistics(const tagXMoments& moments)
{
    tagXBandStatistics statistics;
    statistics.count = moments.count;
    if (moments.count == 0) return statistics;
    statistics.min = moments.min;
    statistics.max = moments.max;
    statistics.mean = std::clamp(moments.mean, moments.min, moments.max);
    const double deviation = std::sqrt(moments.squares / static_cast<double>(moments.count));
    statistics.stdDev = XfnIsSet(deviation) ? deviation : kXNotSet;
    return statistics;
}

tagXBandStatistics XfnCalcTileStatistics(const std::vector<std::shared_ptr<const XTile>>& tiles,
                                         double nullValue, int isEstimate, double min, double max)
{
    const auto countOf = [](const XTile& tile) {
        return static_cast<std::size_t>(tile.GetWidth()) *
               static_cast<std::size_t>(tile.GetHeight());
    };
    tagXMoments moments;
    for (const auto& tile : tiles)
        XfnAddMoments(tile->GetData(), countOf(*tile), tile->GetDataType(), nullValue, moments);
    tagXBandStatistics statistics = XfnMakeStatistics(moments);
    statistics.isEstimated = statistics.isHistogramEstimated = isEstimate;
    statistics.hasHistogram = 1;
    if (!XfnIsSet(min) || !XfnIsSet(max)) {
        min = statistics.min;
        max = statistics.max;
    }
    if (XfnIsSet(min) && XfnIsSet(max))
        for (const auto& tile : tiles)
            XfnAddHistogram(tile->GetData(), countOf(*tile), tile->GetDataType(), nullValue, min,
                            max, statistics.histogram.data());
    return statistics;
}
