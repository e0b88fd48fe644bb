#include "foundation/raster/XDMBandHFA.h"

X_IMPLEMENT_CLASS(XDMBandHFA, XDMBandGDAL)
