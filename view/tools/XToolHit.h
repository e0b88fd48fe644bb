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

/// The same in the first list that has one: a view's own bases, then the host's.
XAPI XvcObj* XfnHitTestBases(const XObList& inner, const XObList& external, double worldX,
                             double worldY, double toleranceWorld, tagXHitFlag& hit);

/// The tolerance of a hit test: the larger of 3 pixels' world lengths on both axes.
XAPI double XfnHitTolerance(const XViewMapping& mapping);

/// That of a selected object: its thickness, in pixels when it is negative; that of others when it
/// has none.
XAPI double XfnHitTolerance(const XViewMapping& mapping, const XvcObj& selected);

/// Adds the objects whose range lies strictly inside a box at the tail of `result`: those of `list`
/// and of the bases, layers and lists below it. Nothing below what is hidden.
XAPI void XfnObjInRect(XObList& result, const XObList& list, double minX, double minY, double maxX,
                       double maxY);
