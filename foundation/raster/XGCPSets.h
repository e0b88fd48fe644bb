#pragma once

#include "foundation/raster/XBandGeometry.h"
#include "foundation/reference/XSpatialReference.h"

#include <vector>

/// A set of ground control points and the reference of their world coordinates.
struct tagGCPSets
{
    XString name;
    XString description;
    XSpatialReference sr;
    std::vector<tagXGCP> points;
};
