#pragma once

#include "foundation/base/XApi.h"
#include "foundation/base/XVector3.h"

class XViewMapping;

/// A point on the level or upright line through the anchor, whichever is nearer; an exact diagonal
/// goes upright. The height is the pointer's.
XAPI tagXVector3 XfnConstrainToAxis(const tagXVector3& anchor, const tagXVector3& pointer);

/// The corner of a square on the screen, whatever the world lengths of a pixel are: on each axis as
/// far from the anchor as the farther one, on the pointer's side; on the plus side where both are
/// equal.
XAPI tagXVector3 XfnConstrainToSquare(const XViewMapping& mapping, const tagXVector3& anchor,
                                      const tagXVector3& pointer);

/// The direction of a vector in degrees, counter-clockwise with y upwards, above 0 up to 360: along
/// the positive x axis it is 360. 0 for a vector without a length.
XAPI double XfnDirectionDeg(double x, double y);
