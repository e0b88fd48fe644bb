#pragma once

#include "foundation/base/XApi.h"
#include "foundation/base/XSentinels.h"
#include "foundation/base/XVector3.h"

/// Moves of vertices that never make a coordinate of what is none, and none of what is one.

/// x and y are coordinates: finite and neither of the sentinels.
constexpr bool XfnIsUsable(const tagXVector3& vertex)
{
    return XfnIsSet(vertex.x) && XfnIsSet(vertex.y);
}

/// A step. A vertex that is not usable stays; so does a height that is not set.
struct XAPI tagXShift
{
    double dx = 0.0, dy = 0.0, dz = 0.0;
    /// Whether the vertex stays one after the step. Objects move whole or not at all.
    bool CanApply(const tagXVector3& vertex) const;
    void Apply(tagXVector3& vertex) const;
};

/// A turn about (x, y), counter-clockwise with y upwards.
struct XAPI tagXTurn
{
    tagXTurn(double x, double y, double angleDeg);
    bool isValid; ///< centre and angle are numbers; else nothing turns
    double x, y, cosine, sine;
    bool CanApply(const tagXVector3& vertex) const;
    void Apply(tagXVector3& vertex) const;
};

/// The map of the box from (minX, minY) to (maxX, maxY) onto the unit square; a side without
/// length maps to 0.
struct XAPI tagXUnitMap
{
    tagXUnitMap(double minX, double minY, double maxX, double maxY);
    bool isValid; ///< all four and the sides are finite; else nothing moves
    double minX, minY, width, height;
    bool CanApply(const tagXVector3& vertex) const;
    void Apply(tagXVector3& vertex) const;
    double GetScaleX() const { return width != 0.0 ? 1.0 / width : 0.0; }
    double GetScaleY() const { return height != 0.0 ? 1.0 / height : 0.0; }
};
