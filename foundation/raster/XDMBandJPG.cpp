#include "foundation/raster/XDMBandJPG.h"

X_IMPLEMENT_CLASS(XDMBandJPG, XDMBandGDAL)
