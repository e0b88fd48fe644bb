#pragma once

#include "foundation/base/XApi.h"
#include "foundation/base/XColor.h"
#include "foundation/base/XSentinels.h"
#include "foundation/raster/XDMCompositeChannel.h"

#include <array>
#include <vector>

class XDMBand;
class XDMComposite;

/// Numbers of a band or of a part of it. 1.7e308 or -1.7e308 in one of the four: there is none.
struct tagXStretchSource
{
    double min = kXNotSet;
    double max = kXNotSet;
    double mean = kXNotSet;
    double stdDev = kXNotSet;
    std::array<long long, 256> histogram{}; ///< bin i stands for min + (max - min) * i / 255
};

/// A channel as a stretch dialog works on it; the composite learns of it when it is applied.
struct tagXStretchChannel
{
    tagXStretchSource source;
    std::array<long long, 256> applied{}; ///< the source, re-binned to the cut range
    std::array<long long, 256> output{};  ///< the applied one, sent through the table
    std::array<unsigned char, 256> lut{};
    int coverage = 0; ///< 0 whole band, 1 visible region, 2 regions of interest
    int hasNoBand = 0;
    double cutMin = kXNotSet; ///< band values
    double cutMax = kXNotSet;
    unsigned char intensity000 = 0;
    unsigned char intensity255 = 255;
    int stretchType = 1;
    std::vector<tagXHistPt> points; ///< of stretch type 2, by rising position
};

/// The stretch of one composite while it is edited: working copies of its three channels, the
/// engine that makes tables of them, and the sources of their numbers.
///
/// What is done concerns one channel, or all three when the composite itself is selected. Nothing
/// but the coverage reaches the composite before Apply. A channel that lacks a band or numbers, or
/// whose cut stands upside down, keeps the table that it had. A channel outside 0..2 reads as neutral
/// and writes nothing.
/// Ownership: the composite is lent. Threads: the user interface thread.
class XAPI XStretchModel
{
public:
    static constexpr int kChannels = 3;

    /// Copies settings and numbers of a composite and selects it; the numbers are those of its
    /// bands, or of the visible region where its coverage is 1. Null empties the model.
    void SetCurXDMComposite(XDMComposite* composite);
    XDMComposite* GetCurXDMComposite() const { return m_composite; }

    void SelectComposite(); ///< all channels; in a gray composite the same as its band
    void SelectChannel(int channel);
    /// What is done concerns the band that was selected last (the first of the composite before
    /// any), if it is still in one of the channels.
    void SelectNothing();
    int IsApplyAllBand() const { return m_selected == kAll; }
    /// The channel that is concerned, 0 when all are; -1 without a composite or such a channel.
    int GetCompositeBandIndex() const;
    int IsApplyNeeded() const { return m_isApplyNeeded; }
    void SetApplyNeededFlag(int flag) { m_isApplyNeeded = flag ? 1 : 0; }

    const tagXStretchChannel& GetChannel(int channel) const;

    // The numbers and arrays of a channel one by one; arrays have 256 entries and stay ours.
    double GetSubsetMin(int channel) const { return GetChannel(channel).source.min; }
    double GetSubsetMax(int channel) const { return GetChannel(channel).source.max; }
    double GetSubsetMean(int channel) const { return GetChannel(channel).source.mean; }
    double GetSubsetStdDev(int channel) const { return GetChannel(channel).source.stdDev; }
    const long long* GetSubsetHistogram(int channel) const;
    const long long* GetHistogramApplyed(int channel) const;
    const unsigned char* GetLUT(int channel) const;
    // Numbers from elsewhere, as they are; CalculateHistogram then makes the table from them.
    void SetSubsetMin(double value, int channel);
    void SetSubsetMax(double value, int channel);
    void SetSubsetMean(double value, int channel);
    void SetSubsetStdDev(double value, int channel);
    void SetSubsetHistogram(const long long* bins, int channel); ///< 256, copied; null: all 0

    /// Remakes applied histogram, table and output histogram of the channels selected. Runs after
    /// every change below by itself.
    void CalculateHistogram();

    /// Cut range from the source: 1 minimum to maximum, 2 Gaussian 98 %, 3 Gaussian 95 %.
    void ApplyCutType(int cutType);
    void SetCutMin(double value, int channel);
    void SetCutMax(double value, int channel);
    void SetStretchType(int type);
    void SetIntensities(unsigned char at000, unsigned char at255, int channel);
    /// In any order; of two at one position the later counts.
    void SetPoints(const std::vector<tagXHistPt>& points, int channel);

    /// Where the numbers come from; the composite learns of it at once. 0 takes the four numbers of
    /// the band and leaves the bins as they were, until the composite is set anew. 2 computes
    /// nothing: SetROIStatistics brings the numbers.
    void SetCoverage(int coverage);
    /// Numbers of regions, one source a channel; the cut range becomes their minimum and maximum.
    void SetROIStatistics(const std::array<tagXStretchSource, kChannels>& sources);

    /// Writes cut ranges, intensities, stretch types and points, with coverage 0 and cut type 0:
    /// by now the ranges are plain numbers. A range that is none, of a channel without numbers, is
    /// not written. @return 0 without a composite
    int Apply();

    /// The colour of a channel's curve; mode as XDMComposite.
    static tagXColor GetHistogramColor(int mode, int channel);

private:
    static constexpr int kAll = -1;
    static constexpr int kNothing = -2;

    template <class Change>
    void ForEachSelected(Change change);
    tagXStretchChannel* Find(int channel);
    void TakeBandNumbers(int channel);
    void TakeSubset(int channel);
    void Changed();

    XDMComposite* m_composite = nullptr;
    const XDMBand* m_currentBand = nullptr; // only compared
    int m_selected = kNothing;              // a channel, or one of the two above
    int m_isApplyNeeded = 0;
    std::array<tagXStretchChannel, kChannels> m_channels;
};
