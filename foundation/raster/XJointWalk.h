#pragma once

#include "foundation/raster/XBlockRun.h"
#include "foundation/raster/XRegionMask.h"
#include "foundation/raster/XRegionStatistics.h"

#include <cstdint>
#include <vector>

class XDMBand;

/// Counts several bands over the same pixels, tile by tile of the first band at full resolution.
///
/// Every band's own numbers rest on all its pixels that have a value, the joint ones on the pixels
/// that have a value in every band. A band of another grid gives the pixel under the first band's.
class XJointWalk
{
public:
    /// Bands of a real data type, at least one; they outlive the walk.
    explicit XJointWalk(std::vector<XDMBand*> bands);

    /// The pixels that count, of the first band's grid; null is all. Lent.
    void SetMask(const XRegionMask* mask) { m_mask = mask; }
    /// Every step-th row and column counts, from the first; for a walk without a mask.
    void SetStep(int step) { m_step = step; }
    /// Left out in every band, besides its own null value; kXNotSet when there is none.
    void SetNullValue(double value) { m_nullValue = value; }
    /// Histograms of all bands, over 0..255 for a band of unsigned bytes, else over the limits of the
    /// whole band; a band that has none gets no histogram.
    void SetHistograms() { m_hasHistograms = true; }

    /// @return 0 after a stop or a failure; `numbers` is then as it was
    int Run(XBlockRun& run, tagXRegionStatistics& numbers, XString& message);

private:
    struct tagBand
    {
        XDMBand* band;
        bool sharesGrid;
        bool sharesTiles;
        double histogramMin;
        double histogramMax;
        std::vector<std::uint8_t> binTable; // by the bits of a sample; may be empty
    };
    struct tagPiece
    {
        int tx, ty;
    };
    class XWorker;

    std::vector<tagPiece> ListPieces() const;
    void SetUpHistogram(tagBand& band) const;

    std::vector<tagBand> m_bands;
    const XRegionMask* m_mask = nullptr;
    int m_step = 1;
    double m_nullValue = kXNotSet;
    bool m_hasHistograms = false;
};
