#pragma once

#include "foundation/base/XApi.h"
#include "foundation/base/XWarp2D.h"

class XSpatialReference;

/// A polynomial that carries a box of coordinates from one spatial reference into another.
///
/// Fitted by least squares (XWarp2D::Fit) to columns x rows points spread evenly over the box, its
/// border included, each carried over by the coordinate library. Points outside the domain of
/// either reference are left out; where the rest do not determine the order, the next lower one is
/// taken, down to 1. Longitudes that come out run on past 180 degrees rather than jump within the
/// box. Between projections of one scene an order of 3 stays well below a pixel; over a continent it
/// may not, which `miss` tells.
///
/// @param order     1, 2 or 3
/// @param minX,maxX,minY,maxY  the box, in `from`. A side without length is widened, so that points
///                  and lines along an axis have a warp as well.
/// @param isInverse 0: the warp leads from `from` to `to`; else back, fitted to the same points
/// @param columns,rows  at least 2 each; raised to order + 1, held at 1025
/// @param miss      when given, receives the largest distance by which the warp misses, in units of
///                  what it leads to, at the points between those of the fit; kXNotSet when there is
///                  no warp
/// @return not valid (so that it leaves points as they are) when a reference is null, empty or not a
///         map, nothing joins the two, a number is not finite, or too few points come through.
///         The identity between two that are the same.
XAPI XWarp2D XfnCalcWarpCoeffInterProj(int order, double minX, double minY, double maxX,
                                       double maxY, const XSpatialReference* from,
                                       const XSpatialReference* to, int isInverse = 0,
                                       int columns = 4, int rows = 4, double* miss = nullptr);

/// The whole turn of a geographic reference in its own unit, 360 for degrees; 0 for any other.
XAPI double XfnGetWholeTurn(const XSpatialReference& reference);

/// A longitude moved by whole turns to within half a turn of `centre`; as it is when `turn` is 0.
XAPI double XfnTurnTowards(double longitude, double centre, double turn);
