#pragma once

#include "foundation/raster/XBandStatistics.h"

#include <array>
#include <cstddef>
#include <vector>

class XArchive;

/// The numbers of one band under a region.
struct tagXRegionBand
{
    /// Of all pixels of the band under the region that have a value: count, minimum, maximum, mean
    /// and sum of squared deviations.
    tagXMoments moments;
    /// The limits behind the histogram: 0 and 255 for a band of unsigned bytes, whose bins are its
    /// values; else the minimum and maximum of the whole band, so that bins of a region and of its
    /// band lie on each other. Both kXNotSet when the histogram is empty.
    double histogramMin = kXNotSet;
    double histogramMax = kXNotSet;
    /// Bins as in tagXBandStatistics; values outside the limits count in the first or last bin.
    std::array<long long, 256> histogram{};

    /// Adds the pixels of another region. A histogram over other limits is moved, bin by bin, to
    /// where its values lie in this one.
    XAPI void Merge(const tagXRegionBand& other);
};

/// Means and co-moments of several bands over pixels that have a value in every band, joined block
/// by block without the cancellation of plain sums of products.
///
/// Method: deviations from the block's own means, blocks joined after Chan, Golub and LeVeque, The
/// American Statistician 37(3), 1983, whose update of the squares holds for products alike.
/// Divisor of a covariance: n - 1 (R. A. Johnson and D. W. Wichern, Applied Multivariate
/// Statistical Analysis, 6th ed., 2007, eq. 3-11), so that it belongs to a sample of a class.
struct tagXJointMoments
{
    long long count = 0;
    std::vector<double> means;     ///< [bands]
    std::vector<double> coMoments; ///< [bands x bands], row-major, symmetric, band units squared

    XAPI void Reset(int bands); ///< to `bands` bands and no pixel
    int GetNumBands() const { return static_cast<int>(means.size()); }
    /// @return 0 for another number of bands; this object is then as it was
    XAPI int Merge(const tagXJointMoments& other);
    /// 0 outside the bands and with fewer than two pixels.
    XAPI double GetCovariance(int i, int j) const;
    /// Covariance over the product of both deviations, within [-1, 1]. A band without variance
    /// correlates with nothing: 0, with itself too.
    XAPI double GetCorrelation(int i, int j) const;
};

/// Everything that was counted under one region.
struct tagXRegionStatistics
{
    long long pointCount = 0; ///< pixels of the first band under the region, with a value or not
    std::vector<tagXRegionBand> bands;
    /// Over the pixels of the first band under the region; a band of another grid gives the pixel
    /// that lies under the first band's pixel centre.
    tagXJointMoments joint;

    int GetNumBands() const { return static_cast<int>(bands.size()); }
    /// kXNotSet outside the bands and for a band without a pixel that has a value.
    XAPI double GetMin(int band) const;
    XAPI double GetMax(int band) const;
    XAPI double GetMean(int band) const;
    /// Divisor n - 1, as a sample of a class; 0 for a single pixel.
    XAPI double GetStd(int band) const;
    XAPI long long GetHistogram(int band, int bin) const; ///< 0 outside

    /// 1 when the parts fit each other and every number makes sense: as many bands in `joint`, no
    /// negative count, finite means and co-moments, a symmetric matrix without negative squares.
    XAPI int IsConsistent() const;
    /// Adds the pixels of another region; pixels in both count twice.
    /// @return 0 for another number of bands; this object is then as it was
    XAPI int Merge(const tagXRegionStatistics& other);
    /// Throws XFileException as the archive does, also for numbers that are not consistent.
    XAPI void Serialize(XArchive& archive);

private:
    const tagXRegionBand* FindBand(int band) const;
};
