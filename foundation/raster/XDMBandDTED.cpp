#include "foundation/raster/XDMBandDTED.h"

X_IMPLEMENT_CLASS(XDMBandDTED, XDMBandGDAL)
