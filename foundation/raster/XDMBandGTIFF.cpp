#include "foundation/raster/XDMBandGTIFF.h"

X_IMPLEMENT_CLASS(XDMBandGTIFF, XDMBandGDAL)
