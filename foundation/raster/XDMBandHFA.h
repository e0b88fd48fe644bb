#pragma once

#include "foundation/raster/XDMBandGDAL.h"

/// A band of an ERDAS IMAGINE file. It behaves as its base does; the class name tells the format.
class XAPI XDMBandHFA : public XDMBandGDAL
{
    X_DECLARE_CLASS(XDMBandHFA)
public:
    using XDMBandGDAL::XDMBandGDAL;
};
