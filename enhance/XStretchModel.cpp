#include "enhance/XStretchModel.h"

#include "foundation/raster/XDMBand.h"
#include "foundation/raster/XDMComposite.h"
#include "foundation/raster/XGaussianRange.h"
#include "foundation/raster/XStretchLUT.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr int kPiecewise = 2;

bool IsChannel(int channel)
{
    return channel >= 0 && channel < XStretchModel::kChannels;
}

void CopyBins(const long long* bins, std::array<long long, 256>& to)
{
    if (bins) {
        std::copy_n(bins, to.size(), to.begin());
    } else {
        to.fill(0);
    }
}

} // namespace

template <class Change>
void XStretchModel::ForEachSelected(Change change)
{
    if (!m_composite) return;
    for (int channel = 0; channel < kChannels; ++channel) {
        if (m_selected == kAll || m_selected == channel)
            change(m_channels[static_cast<std::size_t>(channel)], channel);
    }
}

const tagXStretchChannel& XStretchModel::GetChannel(int channel) const
{
    static const tagXStretchChannel none;
    return IsChannel(channel) ? m_channels[static_cast<std::size_t>(channel)] : none;
}

tagXStretchChannel* XStretchModel::Find(int channel)
{
    return IsChannel(channel) ? &m_channels[static_cast<std::size_t>(channel)] : nullptr;
}

const long long* XStretchModel::GetSubsetHistogram(int channel) const
{
    return GetChannel(channel).source.histogram.data();
}

const long long* XStretchModel::GetHistogramApplyed(int channel) const
{
    return GetChannel(channel).applied.data();
}

const unsigned char* XStretchModel::GetLUT(int channel) const
{
    return GetChannel(channel).lut.data();
}

void XStretchModel::SetSubsetMin(double value, int channel)
{
    if (tagXStretchChannel* working = Find(channel)) working->source.min = value;
}

void XStretchModel::SetSubsetMax(double value, int channel)
{
    if (tagXStretchChannel* working = Find(channel)) working->source.max = value;
}

void XStretchModel::SetSubsetMean(double value, int channel)
{
    if (tagXStretchChannel* working = Find(channel)) working->source.mean = value;
}

void XStretchModel::SetSubsetStdDev(double value, int channel)
{
    if (tagXStretchChannel* working = Find(channel)) working->source.stdDev = value;
}

void XStretchModel::SetSubsetHistogram(const long long* bins, int channel)
{
    if (tagXStretchChannel* working = Find(channel)) CopyBins(bins, working->source.histogram);
}

int XStretchModel::GetCompositeBandIndex() const
{
    if (!m_composite || m_selected == kNothing) return -1;
    return m_selected == kAll ? 0 : m_selected;
}

void XStretchModel::SelectComposite()
{
    m_selected = m_composite && m_composite->GetMode() == 0 ? 0 : kAll;
}

void XStretchModel::SelectChannel(int channel)
{
    if (!m_composite || !IsChannel(channel)) return SelectNothing();
    m_selected = channel;
    m_currentBand = m_composite->GetBand(channel);
}

void XStretchModel::SelectNothing()
{
    m_selected = kNothing;
    for (int channel = kChannels - 1; m_composite && m_currentBand && channel >= 0; --channel)
        if (m_composite->GetBand(channel) == m_currentBand) m_selected = channel;
}

void XStretchModel::TakeBandNumbers(int channel)
{
    tagXStretchChannel& working = m_channels[static_cast<std::size_t>(channel)];
    const XDMBand* band = m_composite->GetBand(channel);
    working.hasNoBand = band ? 0 : 1;
    if (band) {
        working.source.min = band->GetBandMin();
        working.source.max = band->GetBandMax();
        working.source.mean = band->GetBandMean();
        working.source.stdDev = band->GetBandStdDev();
    } else {
        working.source = {};
        working.source.histogram.fill(1);
    }
}

void XStretchModel::TakeSubset(int channel)
{
    tagXStretchSource& source = m_channels[static_cast<std::size_t>(channel)].source;
    m_composite->CalcSubsetStatistics(channel);
    m_composite->CalcSubsetHistogram(channel);
    source.min = m_composite->GetSubsetMin(channel);
    source.max = m_composite->GetSubsetMax(channel);
    source.mean = m_composite->GetSubsetMean(channel);
    source.stdDev = m_composite->GetSubsetStd(channel);
    CopyBins(m_composite->GetSubsetHistogram(channel), source.histogram);
}

void XStretchModel::SetCurXDMComposite(XDMComposite* composite)
{
    m_composite = composite;
    m_isApplyNeeded = 0;
    m_channels = {};
    m_selected = kNothing;
    m_currentBand = composite ? composite->GetFirstBand() : nullptr;
    if (!composite) return;
    for (int channel = 0; channel < kChannels; ++channel) {
        tagXStretchChannel& working = m_channels[static_cast<std::size_t>(channel)];
        working.cutMin = composite->GetCutMin(channel);
        working.cutMax = composite->GetCutMax(channel);
        working.intensity000 = composite->GetIntensity000(channel);
        working.intensity255 = composite->GetIntensity255(channel);
        working.stretchType = composite->GetStretchType(channel);
        working.coverage = composite->GetStretchCoverage(channel);
        working.points = composite->GetChannel(channel).ListPoints();
        std::copy_n(composite->GetLUT(channel), working.lut.size(), working.lut.begin());
        TakeBandNumbers(channel);
        if (working.hasNoBand) continue;
        if (working.coverage == 1) {
            TakeSubset(channel);
        } else {
            CopyBins(composite->GetBand(channel)->GetHistogram(), working.source.histogram);
        }
    }
    m_selected = kAll;
    CalculateHistogram();
    SelectComposite();
}

void XStretchModel::CalculateHistogram()
{
    ForEachSelected([](tagXStretchChannel& working, int) {
        const tagXStretchSource& source = working.source;
        if (!XfnApplyCutToHistogram(source.histogram.data(), source.min, source.max, working.cutMin,
                                    working.cutMax, working.applied.data()))
            return;
        XPtrList points;
        if (working.stretchType == kPiecewise) {
            for (tagXHistPt& point : working.points)
                points.AddTail(&point);
        }
        XfnStretchLUT(working.stretchType, working.lut.data(), working.intensity000,
                      working.intensity255, &points, working.applied.data(), working.output.data());
    });
}

void XStretchModel::Changed()
{
    m_isApplyNeeded = 1;
    CalculateHistogram();
}

void XStretchModel::ApplyCutType(int cutType)
{
    ForEachSelected([&](tagXStretchChannel& working, int) {
        const tagXStretchSource& source = working.source;
        double low = source.min;
        double high = source.max;
        XfnCalcCutRange(cutType, source.min, source.max, source.mean, source.stdDev,
                        source.histogram.data(), low, high);
        working.cutMin = low;
        working.cutMax = high;
    });
    Changed();
}

void XStretchModel::SetCutMin(double value, int channel)
{
    tagXStretchChannel* working = Find(channel);
    if (!working) return;
    working->cutMin = value;
    Changed();
}

void XStretchModel::SetCutMax(double value, int channel)
{
    tagXStretchChannel* working = Find(channel);
    if (!working) return;
    working->cutMax = value;
    Changed();
}

void XStretchModel::SetStretchType(int type)
{
    ForEachSelected([&](tagXStretchChannel& working, int) { working.stretchType = type; });
    Changed();
}

void XStretchModel::SetIntensities(unsigned char at000, unsigned char at255, int channel)
{
    tagXStretchChannel* working = Find(channel);
    if (!working) return;
    working->intensity000 = at000;
    working->intensity255 = at255;
    Changed();
}

void XStretchModel::SetPoints(const std::vector<tagXHistPt>& points, int channel)
{
    tagXStretchChannel* working = Find(channel);
    if (!working) return;
    // as a composite keeps them: by position, the later of two at one position
    std::vector<tagXHistPt> ordered(points.rbegin(), points.rend());
    std::ranges::stable_sort(ordered, {}, &tagXHistPt::position);
    const auto rest = std::ranges::unique(ordered, {}, &tagXHistPt::position);
    ordered.erase(rest.begin(), rest.end());
    working->points = std::move(ordered);
    Changed();
}

void XStretchModel::SetCoverage(int coverage)
{
    ForEachSelected([&](tagXStretchChannel& working, int channel) {
        working.coverage = coverage;
        m_composite->SetStretchCoverage(coverage, channel);
        if (coverage == 0) {
            TakeBandNumbers(channel);
        } else if (coverage == 1 && m_composite->GetBand(channel)) {
            TakeSubset(channel);
        }
    });
    if (coverage != 2) CalculateHistogram();
}

void XStretchModel::SetROIStatistics(const std::array<tagXStretchSource, kChannels>& sources)
{
    ForEachSelected([&](tagXStretchChannel& working, int channel) {
        working.source = sources[static_cast<std::size_t>(channel)];
        working.cutMin = working.source.min;
        working.cutMax = working.source.max;
    });
    Changed();
}

int XStretchModel::Apply()
{
    if (!m_composite) return 0;
    for (int channel = 0; channel < kChannels; ++channel) {
        tagXStretchChannel& working = m_channels[static_cast<std::size_t>(channel)];
        if (XfnIsSet(working.cutMin) && XfnIsSet(working.cutMax))
            m_composite->SetCutRange(working.cutMin, working.cutMax, channel);
        m_composite->SetIntensity000(working.intensity000, channel);
        m_composite->SetIntensity255(working.intensity255, channel);
        m_composite->SetStretchType(working.stretchType, channel);
        m_composite->SetCutType(0, channel);
        m_composite->SetStretchCoverage(0, channel);
        if (working.stretchType != kPiecewise) continue;
        m_composite->RemoveAllHistPts(channel);
        for (const tagXHistPt& point : working.points)
            m_composite->AddHistPt(channel, point.value, point.position);
    }
    m_isApplyNeeded = 0;
    return 1;
}

tagXColor XStretchModel::GetHistogramColor(int mode, int channel)
{
    constexpr tagXColor kColors[2][kChannels] = {{0xFFFF3232u, 0xFF00FF00u, 0xFF0000FFu},
                                                 {0xFF008080u, 0xFF808000u, 0xFF800080u}};
    if ((mode != 1 && mode != 2) || !IsChannel(channel)) return 0xFFC0C0C0u;
    return kColors[mode - 1][channel];
}
