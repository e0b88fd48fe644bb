#pragma once

#include "foundation/raster/XDMBandSpatialFilter.h"

/// A real band with its detail raised: unsharp masking, v + amount (v - G), G being the band smoothed
/// by a Gaussian of n x n pixels. Integers are held inside their type.
///
///     XDMBandImageSharpen* band = new XDMBandImageSharpen;
///     if (!band->Create(inner, 5, 1.5)) ...
class XAPI XDMBandImageSharpen : public XDMBandSpatialFilter
{
    X_DECLARE_CLASS(XDMBandImageSharpen)
public:
    XDMBandImageSharpen() = default;

    /// @param kernelSize  n: 3, 5, 7, 9 or 11; the larger, the coarser the detail that is raised
    /// @param amount      0 leaves the image as it is, 1 doubles the detail, -1 leaves the smoothed
    /// @return 0 for a band that is not real, a size that is none, or an amount that is not finite;
    ///         all is then as it was
    int Create(XDMBand* inner, int kernelSize = 3, double amount = 1.0);
    double GetAmount() const { return GetFilter().amount; }
};
