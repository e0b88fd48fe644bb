#pragma once

#include "foundation/raster/XDMBandGDAL.h"

/// A band of a TIFF or GeoTIFF file. It behaves as its base does; the class name tells the format.
class XAPI XDMBandGTIFF : public XDMBandGDAL
{
    X_DECLARE_CLASS(XDMBandGTIFF)
public:
    using XDMBandGDAL::XDMBandGDAL;
};
