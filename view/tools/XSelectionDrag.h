#pragma once

#include "foundation/base/XApi.h"

#include <vector>

class XCommandManager;
class XObList;
class XvcObj;
struct tagXHitFlag;

/// The vector objects of a list, in its order.
XAPI std::vector<XvcObj*> XfnListObjects(const XObList& list);

/// Moves what is selected by one step of a drag.
///
/// Several objects move as a whole. One alone moves as its hit says: a vertex (kind 1) by itself,
/// save that of a point; a corner (kinds 4 to 7) of a picture, text box or balloon by itself, while
/// other boxes stay where they are; any other hit the whole object.
XAPI void XfnDragSelection(const XObList& selection, const tagXHitFlag& hit, double dx, double dy);

/// Enters a drag that has ended into the open modification of a command manager: the objects as
/// they are, and as they were before, which is a copy moved back by (backX, backY). Only a vertex
/// goes back by itself: a box whose corner was dragged comes back in its new size. An object that
/// has no copy is left out.
XAPI void XfnRecordDrag(XCommandManager& commands, const XObList& selection, const tagXHitFlag& hit,
                        double backX, double backY);
