#pragma once

#include "foundation/raster/XDMBandGDAL.h"

/// A band of a Windows bitmap. It behaves as its base does; the class name tells the format.
class XAPI XDMBandBMP : public XDMBandGDAL
{
    X_DECLARE_CLASS(XDMBandBMP)
public:
    using XDMBandGDAL::XDMBandGDAL;
};
