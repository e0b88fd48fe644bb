#pragma once

#include "foundation/base/XString.h"
#include "foundation/reference/XSpatialReference.h"
#include "foundation/vector/XVectorRange.h"

#include <cstdint>
#include <vector>

/// What a layer of a vector file holds.
struct tagXVectorLayerInfo
{
    XString name;
    std::int64_t objects = 0; ///< -1: the format does not tell without reading all
    /// What kinds of geometry its objects may have; all 0 when the format does not say.
    int hasPoints = 0;
    int hasLines = 0;
    int hasAreas = 0;
    int hasOthers = 0; ///< text, pictures, collections and the like
    int hasHeights = 0;
    tagXVectorRange range; ///< empty when unknown or without geometry; z as far as it is known
    std::vector<XString> columns; ///< names of the attributes
};

/// What a vector file holds, as the XfnGet…Info functions of XVectorIO.h tell it.
struct tagXVectorFileInfo
{
    XString format; ///< "XVC", "ESRI Shapefile", "DXF", ...
    /// Coordinate type 3 with a system, 2 (unknown) without one.
    XSpatialReference reference;
    tagXVectorRange range;    ///< of all layers
    std::int64_t objects = 0; ///< -1 when a layer's number is unknown
    std::vector<tagXVectorLayerInfo> layers;
};
