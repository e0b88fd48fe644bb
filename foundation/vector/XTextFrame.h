#pragma once

#include "foundation/base/XApi.h"
#include "foundation/base/XVector3.h"

class XVertBuffer;
class XWarp2D;
struct tagXVertText;

/// A plane in which texts are laid out: an origin, and where a unit to the right and a unit down lead
/// in the world.
struct XAPI XTextFrame
{
    tagXVector3 origin;
    tagXVector3 across{1.0, 0.0, 0.0};
    tagXVector3 down{0.0, -1.0, 0.0};
    bool isUsable = false; ///< all are numbers, and the steps lead somewhere

    /// A plane of units of `unit` world lengths, turned counter-clockwise about its origin and carried
    /// through the warp, which may be null.
    XTextFrame(const tagXVector3& at, double unit, double angleDeg, const XWarp2D* warp);

    /// The place of (x, y), y down, in the world.
    tagXVector3 ToWorld(double x, double y) const;

    double GetAngleDeg() const; ///< of the way across, counter-clockwise

    /// Records a text whose position, height and width are those of the plane. Where the plane is not
    /// square the letters keep to its lines. The font size flag of the recording does not count:
    /// letters of pixels would leave the places that are laid out for them.
    void Record(XVertBuffer& buffer, tagXVertText text) const;
};
