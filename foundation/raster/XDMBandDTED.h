#pragma once

#include "foundation/raster/XDMBandGDAL.h"

/// A band of a DTED elevation cell. It behaves as its base does; the class name tells the format.
class XAPI XDMBandDTED : public XDMBandGDAL
{
    X_DECLARE_CLASS(XDMBandDTED)
public:
    using XDMBandGDAL::XDMBandGDAL;
};
