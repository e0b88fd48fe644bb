#include "foundation/raster/XDMBandImageSharpen.h"

#include <cmath>

X_IMPLEMENT_CLASS(XDMBandImageSharpen, XDMBandSpatialFilter)

int XDMBandImageSharpen::Create(XDMBand* inner, int kernelSize, double amount)
{
    const tagXSpatialFilter filter = XfnMakeSpatialFilter(kXFilterSharpen, kernelSize, amount);
    if (filter.kernelSize != kernelSize || !std::isfinite(amount)) return 0;
    return SetFilter(inner, filter);
}
