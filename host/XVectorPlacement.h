#pragma once

#include "foundation/raster/XSaveControl.h"

class XSpatialReference;
class XvcBase;
struct tagXVectorRange;

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

/// Where a file belongs that tells no coordinate system.
///
///     its numbers can be degrees       in a projected view they are taken for longitudes and
///                                      latitudes on WGS 84 and carried over; in a geographic one
///                                      they are its own longitudes and latitudes
///     others, and all of a drawing     the view's own coordinates, at the numbers of the file
///     no system in the view either     at the numbers of the file, until the view has one
///
/// Nothing else counts, so the order in which files are opened does not matter. Drawings (DXF, DGN)
/// are left out since plans begin near 0.
///
/// Numbers can be degrees when the whole range is within -180 to 180 and -90 to 90 (or 0 to 360
/// eastward), and is no point at 0.
bool XfnCanBeDegrees(const tagXVectorRange& range);
/// The system of a file without one that is taken for degrees in the view; empty when it is left at
/// its numbers.
XSpatialReference XfnGuessReference(bool canBeDegrees, const XSpatialReference& world);
