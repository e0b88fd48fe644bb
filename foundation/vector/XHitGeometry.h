#pragma once

#include "foundation/base/XApi.h"
#include "foundation/vector/XHitFlag.h"

#include <cstddef>

class XVertexArray;
struct tagXVector3;

/// What a pointer is near to, with a tolerance of its own on each axis.
///
/// "Near" is within an ellipse with the tolerances as its half axes: pixels need not be square in
/// the world. A tolerance that is negative or no number counts as 0, and one of 0 takes the very
/// place only, up to rounding. Vertices that are not set or not finite are never near: a line has a
/// gap there, a ring joins their neighbours. What is so far away that the difference is not finite
/// is not near either.
/// Threads: any.
struct tagXHitPointer
{
    double x, y;
    double toleranceX, toleranceY; ///< 0 or more
    bool isUsable;                 ///< x and y are coordinates
};

/// The pointer with its tolerances made good.
XAPI tagXHitPointer XfnMakeHitPointer(const tagXVector3& point, double toleranceX,
                                      double toleranceY);

/// Square of the distance to a vertex or to the segment from (ax, ay) to (bx, by), where 1 is the
/// tolerance; infinity when there is no such distance.
XAPI double XfnHitDistanceSquared(const tagXHitPointer& pointer, double x, double y);
XAPI double XfnHitDistanceSquared(const tagXHitPointer& pointer, double ax, double ay, double bx,
                                  double by);

/// Whether a place lies inside a ring, by the even-odd rule. Vertices that are not usable are
/// skipped; fewer than three have no inside. A place on the ring may be called either.
/// @param coords  x, y and what else a stride above 2 makes room for, `count` times
XAPI bool XfnIsInRing(double x, double y, const double* coords, int stride, std::size_t count);
XAPI bool XfnIsInRing(double x, double y, const XVertexArray& ring);
/// How often the ring runs around the place, counter-clockwise positive (y upwards).
XAPI int XfnGetWindingNumber(double x, double y, const XVertexArray& ring);
/// The area within a ring that does not cross itself, positive for a counter-clockwise one.
XAPI double XfnGetSignedArea(const XVertexArray& ring);

/// What of a shape may be hit besides its vertices.
enum class XHitShape {
    Points, ///< nothing
    Line,   ///< its edges
    Loop,   ///< its edges, the closing one too
    Ring,   ///< the same, and the inside
};

/// The nearest vertex within the tolerances, else the nearest edge, else the inside.
///
/// Writes kinds 1 (kVertex), 2 (kEdge) and 0 (kBody, index 0); the closing edge of a ring has the
/// index of the last vertex.
/// @return false when nothing is hit; then `flag` is as it was
XAPI bool XfnHitVertices(const tagXHitPointer& pointer, const XVertexArray& vertices,
                         XHitShape shape, tagXHitFlag& flag);
