#pragma once

#include "foundation/raster/XSaveControl.h"

class XSpatialReference;
class XvcBase;

/// How the carrying over of a vector file went.
struct tagXPlacement
{
    bool isPlaced = false;  ///< the coordinates are those of the other reference now
    bool isStopped = false; ///< half done: the base is of no use any more
    long long lost = 0;     ///< vertices that the other reference has no place for; not drawn
    long long vertices = 0; ///< of all
};

/// Carries every vertex of a base into another coordinate system, as exactly as the library can;
/// sizes in world units are scaled as the place that they are at. Edges stay straight between their
/// ends. Calculates the ranges.
/// Nothing is changed when either is no map or nothing joins the two; between two that are the same
/// there is nothing to do, and that is done.
/// Threads: any; the base by one at a time.
tagXPlacement XfnPlaceVector(XvcBase& base, const XSpatialReference& from,
                             const XSpatialReference& to, const tagXSaveControl& control);
