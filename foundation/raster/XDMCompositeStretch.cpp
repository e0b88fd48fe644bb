#include "foundation/raster/XDMComposite.h"

#include "foundation/raster/XBandStatistics.h"
#include "foundation/raster/XDMBand.h"
#include "foundation/raster/XDrawMapping.h"
#include "foundation/raster/XDrawTables.h"
#include "foundation/raster/XGaussianRange.h"
#include "foundation/raster/XRasterTypes.h"
#include "foundation/raster/XReferenceWarp.h"
#include "foundation/raster/XStretchLUT.h"

#include <algorithm>
#include <cmath>
#include <memory>

namespace {

/// Fowler, Noll and Vo's hash over the bytes of the counts; never 0.
std::uint64_t HashOf(const long long* counts)
{
    std::uint64_t hash = 14695981039346656037u;
    for (int i = 0; i < 256; ++i) {
        for (int shift = 0; shift < 64; shift += 8) {
            hash ^= static_cast<std::uint64_t>(counts[i]) >> shift & 0xFFu;
            hash *= 1099511628211u;
        }
    }
    return hash | 1u;
}

bool IsRaised(const std::atomic<int>* abort)
{
    return abort && abort->load(std::memory_order_relaxed) != 0;
}

int NeedsHistogram(int stretchType)
{
    return stretchType == kXStretchEqualization || stretchType == kXStretchGaussian;
}

} // namespace

/// Gathers the numbers of the visible region. 0 when it holds no pixel with a value.
int XDMComposite::UpdateSubset(int ch, const std::atomic<int>* abort)
{
    // enough for percentiles that stand still, and little against drawing the region itself
    constexpr double kEnoughPixels = 640000.0;
    tagXCompositeChannel* channel = Channel(ch);
    if (!channel) return 0;
    XDMBand* band = channel->band;
    if (!band || !channel->warp.IsValid()) {
        channel->subset = tagXSubsetStatistics();
        return 0;
    }
    std::array<double, 4> range;
    GetDrawRange(range[0], range[1], range[2], range[3]);
    const std::uint64_t bandChange = band->GetChangeNumber();
    if (channel->subset.band == band && channel->subset.bandChange == bandChange &&
        channel->subset.range == range)
        return channel->subset.count > 0;

    tagXSubsetStatistics subset;
    subset.band = band;
    subset.bandChange = bandChange;
    subset.range = range;
    double box[4];
    std::array<double, 4> shown = range;
    if (channel->warp.GetPlaced()) { // far outside its extent a reference may not hold
        const auto& extent = channel->warp.GetPlaced()->GetBox();
        shown = {
            std::clamp(range[0], extent[0], extent[1]), std::clamp(range[1], extent[2], extent[3]),
            std::clamp(range[2], extent[0], extent[1]), std::clamp(range[3], extent[2], extent[3])};
    }
    const double lastX = band->GetXSize() - 1.0;
    const double lastY = band->GetYSize() - 1.0;
    if (!XfnCalcWarpedBox(channel->warp, shown[0], shown[1], shown[2], shown[3], box) ||
        box[1] < -0.5 || box[3] < -0.5 || box[0] >= lastX + 0.5 || box[2] >= lastY + 0.5) {
        channel->subset = subset;
        return 0;
    }
    // a pixel that only touches the border of the region, but for rounding errors, is not in it
    constexpr double kSlack = 1e-6;
    const auto firstOf = [](double at, double last) {
        return static_cast<int>(std::clamp(std::floor(at + 0.5 + kSlack), 0.0, last));
    };
    const auto lastOf = [](double at, int first, double last) {
        return static_cast<int>(std::clamp(std::ceil(at - 0.5 - kSlack), double(first), last));
    };
    const int x0 = firstOf(box[0], lastX), x1 = lastOf(box[1], x0, lastX);
    const int y0 = firstOf(box[2], lastY), y1 = lastOf(box[3], y0, lastY);
    double pixels = (x1 - x0 + 1.0) * (y1 - y0 + 1.0);
    int level = 0;
    for (; level + 1 < band->GetNumOfLevels() && pixels > kEnoughPixels; ++level)
        pixels /= 4.0;

    tagXArr2* block = nullptr;
    const int isRead = band->ReadSubset(block, level, x0, x1, y0, y1, abort);
    const std::unique_ptr<tagXArr2> owner(block);
    if (!isRead) return 0; // aborted or broken: the numbers of before stand
    const std::size_t count =
        static_cast<std::size_t>(block->width) * static_cast<std::size_t>(block->height);
    tagXMoments moments;
    XfnAddMoments(block->base, count, block->dataType, band->GetNullValue(), moments);
    if (moments.count > 0) {
        subset.count = moments.count;
        subset.min = moments.min;
        subset.max = moments.max;
        subset.mean = moments.mean;
        subset.stdDev = std::sqrt(moments.squares / static_cast<double>(moments.count));
        XfnAddHistogram(block->base, count, block->dataType, band->GetNullValue(), subset.min,
                        subset.max, subset.histogram.data());
    }
    channel->subset = subset;
    return subset.count > 0;
}

int XDMComposite::CalcSubsetStatistics(int ch)
{
    return UpdateSubset(ch, nullptr);
}

int XDMComposite::CalcSubsetHistogram(int ch)
{
    return UpdateSubset(ch, nullptr);
}

void XDMComposite::ResolveCutRange(int ch, const std::atomic<int>* abort)
{
    tagXCompositeChannel& channel = m_channels[ch];
    const int hasRule = channel.cutType >= 1 && channel.cutType <= 3;
    double low = 0.0, high = 0.0;
    if (channel.coverage == 1 && (hasRule || NeedsHistogram(channel.stretchType))) {
        const tagXSubsetStatistics& subset = channel.subset;
        // with nothing to see the range of before stands, so that the picture does not jump
        if (UpdateSubset(ch, abort) && hasRule &&
            XfnCalcCutRange(channel.cutType, subset.min, subset.max, subset.mean, subset.stdDev,
                            subset.histogram.data(), low, high)) {
            channel.cutMin = low;
            channel.cutMax = high;
            channel.isCutChosen = 2;
            channel.isCutPending = 0;
        }
        if (hasRule) return;
    }
    if (channel.coverage == 2) return; // regions of interest: whoever measured them set the range
    // a range that nobody chose: bytes are shown as they are, other types from minimum to maximum
    const int isNative = !channel.isCutChosen && !hasRule;
    if (!isNative && !(hasRule && channel.isCutPending)) return;
    if (isNative && (channel.band->GetDataType() == kXUInt8 || !channel.isCutPending)) return;
    const auto numbers = channel.band->GetStatistics(abort);
    if (IsRaised(abort)) return;
    if (XfnCalcCutRange(hasRule ? channel.cutType : 1, numbers->min, numbers->max, numbers->mean,
                        numbers->stdDev, numbers->histogram.data(), low, high)) {
        channel.cutMin = low;
        channel.cutMax = high;
    }
    channel.isCutPending = 0;
}

/// The histogram of the source in force, re-binned to the cut range. 0 without one.
int XDMComposite::GetAppliedHistogram(int ch, long long* applied,
                                      const std::atomic<int>* abort) const
{
    const tagXCompositeChannel& channel = m_channels[ch];
    if (!channel.band) return 0;
    if (channel.coverage == 1 && channel.subset.count > 0)
        return XfnApplyCutToHistogram(channel.subset.histogram.data(), channel.subset.min,
                                      channel.subset.max, channel.cutMin, channel.cutMax, applied);
    const auto numbers = channel.band->GetStatistics(abort);
    return XfnApplyCutToHistogram(numbers->histogram.data(), numbers->min, numbers->max,
                                  channel.cutMin, channel.cutMax, applied);
}

/// What a table made now would be made from, with the histogram for the stretches that use one.
tagXLutKey XDMComposite::MakeLutKey(int ch, long long* applied, int& hasApplied,
                                    const std::atomic<int>* abort) const
{
    const tagXCompositeChannel& channel = m_channels[ch];
    hasApplied =
        NeedsHistogram(channel.stretchType) && GetAppliedHistogram(ch, applied, abort) ? 1 : 0;
    tagXLutKey key;
    key.stretchType = channel.stretchType;
    key.intensity000 = channel.intensity000;
    key.intensity255 = channel.intensity255;
    key.cutMin = channel.cutMin;
    key.cutMax = channel.cutMax;
    key.points = channel.ListPoints();
    key.histogramHash = hasApplied ? HashOf(applied) : 0;
    return key;
}

void XDMComposite::SetLUT(const unsigned char* table, int ch)
{
    tagXCompositeChannel* channel = Channel(ch);
    if (!channel || !table) return;
    std::copy_n(table, 256, channel->lut.data());
    channel->NoteChange();
    channel->isLutSet = 1;
    long long applied[256];
    int has = 0;
    channel->lutKey = MakeLutKey(ch, applied, has, nullptr);
}

void XDMComposite::UpdateLUT(int ch)
{
    UpdateLUT(ch, nullptr);
}

/// Cut range and table for a drawing. What it changes itself, such as a range that was pending, does
/// not end a table that was set.
void XDMComposite::UpdateStretch(int ch, const std::atomic<int>* abort)
{
    tagXCompositeChannel& channel = m_channels[ch];
    long long applied[256];
    int has = 0;
    const bool isHeld = channel.isLutSet && MakeLutKey(ch, applied, has, abort) == channel.lutKey;
    ResolveCutRange(ch, abort);
    if (isHeld && !IsRaised(abort)) channel.lutKey = MakeLutKey(ch, applied, has, abort);
    UpdateLUT(ch, abort);
}

void XDMComposite::UpdateLUT(int ch, const std::atomic<int>* abort)
{
    tagXCompositeChannel* channel = Channel(ch);
    if (!channel) return;
    long long applied[256];
    int has = 0;
    tagXLutKey key = MakeLutKey(ch, applied, has, abort);
    if (key == channel->lutKey || IsRaised(abort)) return;
    channel->isLutSet = 0;
    XfnStretchLUT(channel->stretchType, channel->lut.data(), channel->intensity000,
                  channel->intensity255,
                  channel->stretchType == kXStretchPiecewise ? &channel->points : nullptr,
                  has ? applied : nullptr, nullptr);
    channel->lutKey = std::move(key);
}

void XDMComposite::TakeDrawResults(const XDMComposite* drawn)
{
    if (!drawn || drawn == this) return;
    std::copy_n(drawn->m_drawRange, 4, m_drawRange);
    m_drawMessage = drawn->m_drawMessage;
    for (int ch = 0; ch < 3; ++ch) {
        tagXCompositeChannel& own = m_channels[ch];
        const tagXCompositeChannel& other = drawn->m_channels[ch];
        if (own.band != other.band) continue;
        own.subset = other.subset;
        // settings that changed meanwhile win over what was worked out from the old ones; points
        // may also be changed in their list
        if (own.changes != other.changes || own.ListPoints() != other.ListPoints()) continue;
        own.cutMin = other.cutMin;
        own.cutMax = other.cutMax;
        own.isCutChosen = other.isCutChosen;
        own.isCutPending = other.isCutPending;
        own.lut = other.lut;
        own.lutKey = other.lutKey;
        own.isLutSet = other.isLutSet;
    }
    *m_tables = *drawn->m_tables;
    for (int ch = 0; ch < 3; ++ch)
        if (m_channels[ch].band == drawn->m_channels[ch].band)
            m_filtered[ch] = drawn->m_filtered[ch];
}
