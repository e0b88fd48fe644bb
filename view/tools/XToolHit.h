#pragma once

#include "foundation/base/XApi.h"
#include "foundation/vector/XHitFlag.h"

class XObList;
class XViewMapping;
class XvcObj;

/// The frontmost object under a point in the first base of a list that has one there.
/// @param hit  set when there is one; else as it was
/// @return null when there is none
XAPI XvcObj* XfnHitTestBases(const XObList& bases, double worldX, double worldY,
                             double toleranceWorld, tagXHitFlag& hit);

/// The tolerance of a hit test: the larger of 3 pixels' world lengths on both axes.
XAPI double XfnHitTolerance(const XViewMapping& mapping);
