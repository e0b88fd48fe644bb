#pragma once

#include "foundation/raster/XDMBandGDAL.h"

/// A band of a JPEG file. It behaves as its base does; the class name tells the format.
class XAPI XDMBandJPG : public XDMBandGDAL
{
    X_DECLARE_CLASS(XDMBandJPG)
public:
    using XDMBandGDAL::XDMBandGDAL;
};
