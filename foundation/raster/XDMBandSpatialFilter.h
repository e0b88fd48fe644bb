#pragma once

#include "foundation/raster/XDMBandDerived.h"
#include "foundation/raster/XSpatialFilter.h"

/// A real band seen through a spatial filter; XSpatialFilter.h tells what each filter does and how
/// it treats no data and the rim of the image.
///
/// Each level is the filter over the inner band's level, so that the filter looks alike at every
/// magnification. The data type is the inner band's; float or double for Sobel and Laplacian, whose
/// null value then is NaN. A complex band is wrapped in an XDMBandComplex first.
///
///     XDMBandSpatialFilter* band = new XDMBandSpatialFilter;
///     if (!band->Create(inner, kXFilterMedian, 5)) ...
class XAPI XDMBandSpatialFilter : public XDMBandDerived
{
    X_DECLARE_CLASS(XDMBandSpatialFilter)
public:
    XDMBandSpatialFilter() = default;

    /// @param type        XSpatialFilterType; kXFilterNone gives the pixels as they are
    /// @param kernelSize  3, 5, 7, 9 or 11
    /// @return 0 for a band that is not real, a type or a size that is none; all is then as it was
    int Create(XDMBand* inner, int type, int kernelSize);
    int GetFilterType() const { return m_filter.type; }
    int GetKernelSize() const { return m_filter.kernelSize; }

protected:
    int SetFilter(XDMBand* inner, const tagXSpatialFilter& filter);
    const tagXSpatialFilter& GetFilter() const { return m_filter; }
    void OnSourceNullValue(double value) override;
    std::shared_ptr<const XTile> ReadTile(int level, int tx, int ty, const std::atomic<int>* abort,
                                          XString& message) const override;

private:
    tagXSpatialFilter m_filter;
};
