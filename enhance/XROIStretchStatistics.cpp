#include "enhance/XROIStretchStatistics.h"

#include "foundation/platform/XThread.h"
#include "foundation/raster/XDMCompManager.h"
#include "foundation/raster/XDMComposite.h"
#include "foundation/raster/XSaveControl.h"
#include "foundation/raster/XSubsetStatElem.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <new>
#include <stdexcept>

namespace {

constexpr int kDoubles = 8; // data type code
constexpr int kLowest = std::numeric_limits<int>::min();
constexpr int kHighest = std::numeric_limits<int>::max();

// The running numbers of one channel.
struct Sums
{
    double sum = 0.0;
    double sumOfSquares = 0.0;
    double min = kXNotSet;
    double max = kXNoData;
    double previousMin = kXNotSet;
    double previousMax = kXNoData;
    long long count = 0;
    std::array<long long, 256> histogram{};

    int Add(const std::vector<double>& block, int width, int height)
    {
        if (!XfnGetSubsetStatElem1(block.data(), width, height, kDoubles, sum, sumOfSquares, min,
                                   max, count, kLowest, kHighest, kLowest, kHighest, kXNoData))
            return 0;
        if (!XfnGetSubsetStatElem3(block.data(), width, height, kDoubles, previousMin, previousMax,
                                   min, max, histogram.data(), kLowest, kHighest, kLowest, kHighest,
                                   kXNoData))
            return 0;
        previousMin = min;
        previousMax = max;
        return 1;
    }

    tagXStretchSource Finish() const
    {
        tagXStretchSource source;
        source.min = min;
        source.max = max;
        const auto n = static_cast<double>(count);
        source.mean = count > 0 ? sum / n : 0.0;
        const double squares = sumOfSquares - source.mean * source.mean * n;
        source.stdDev = count < 2 ? 0.0 : std::sqrt(std::max(squares, 0.0) / (n - 1.0));
        source.histogram = histogram;
        return source;
    }
};

int AddPolygon(const XDMComposite& composite, int channel, const tagXROIPolygon& polygon,
               const tagXSaveControl& stop, Sums& sums)
{
    const int count = static_cast<int>(polygon.x.size());
    int width = 0;
    int height = 0;
    composite.CalcROISizeMax(channel, polygon.x.data(), polygon.y.data(), count, width, height);
    if (width <= 0 || height <= 0) return 0;
    try {
        std::vector<double> block(static_cast<std::size_t>(width) *
                                  static_cast<std::size_t>(height));
        return composite.ReadROI(channel, polygon.x.data(), polygon.y.data(), count, block.data(),
                                 width, height, stop) &&
               sums.Add(block, width, height);
    } catch (const std::bad_alloc&) {
        return 0;
    } catch (const std::length_error&) { // more than any memory
        return 0;
    }
}

} // namespace

int XfnCalcROIStretchStatistics(const XDMCompManager& manager,
                                const std::vector<tagXROIPolygon>& polygons, XThread* thread,
                                std::array<tagXStretchSource, XStretchModel::kChannels>& sources)
{
    int channels = 1;
    for (int i = 0; i < manager.GetNumberOfXDMComposite(); ++i) {
        const int mode = manager.GetXDMCompositeAt(i)->GetMode();
        if (mode != 0 && mode != 3) channels = XStretchModel::kChannels;
    }
    const double total = static_cast<double>(channels) * manager.GetNumberOfXDMComposite() *
                         static_cast<double>(polygons.size());
    double progress = 1.0;
    tagXSaveControl stop;
    if (thread) stop.abort = thread->GetStopFlag();
    std::array<tagXStretchSource, XStretchModel::kChannels> found;
    for (int channel = 0; channel < channels; ++channel) {
        Sums sums;
        for (int i = 0; i < manager.GetNumberOfXDMComposite(); ++i) {
            const XDMComposite& composite = *manager.GetXDMCompositeAt(i);
            if (!composite.GetBand(channel)) continue;
            for (const tagXROIPolygon& polygon : polygons) {
                if (thread && thread->IsStopRequested()) return 0;
                if (!AddPolygon(composite, channel, polygon, stop, sums)) continue;
                if (thread) thread->CallbackPercent(static_cast<int>(progress * 100.0 / total));
                progress += 1.0;
            }
        }
        found[static_cast<std::size_t>(channel)] = sums.Finish();
    }
    if (thread && thread->IsStopRequested()) return 0;
    sources = found;
    return 1;
}
