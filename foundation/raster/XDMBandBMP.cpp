#include "foundation/raster/XDMBandBMP.h"

X_IMPLEMENT_CLASS(XDMBandBMP, XDMBandGDAL)
