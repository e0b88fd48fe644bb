#pragma once

#include "foundation/base/XApi.h"

class XvcObj;

/// How lengths and coordinates of an object are written for reading.
struct tagXObjectUnit
{
    const char* sign = "";              ///< stands behind a size: "m"; empty: not known
    const char* plural = "world units"; ///< of a list of units
    int places = 3;                     ///< digits behind the point that mean something
};

/// By the spatial reference of the base that the object is in; without one by the size of its
/// coordinates: 3 places, 9 where they may be degrees (a tenth of a millimetre on the ground).
XAPI tagXObjectUnit XfnGetObjectUnit(const XvcObj& object);
