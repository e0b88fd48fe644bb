#pragma once

#include "host/XVectorStack.h"

class XvcLayer;

/// Which of several objects of the open vector files a click means, and what lies in locked layers.
/// Tolerances are world lengths. What is hidden is never hit.

/// Where a click asks.
struct tagXClickPlace
{
    double x = 0, y = 0; ///< world
    double toleranceX = 0, toleranceY = 0;
};

/// The frontmost object in the layers of `preferred`, else in any; null where there is none.
/// @param hit  where it was hit
XvcObj* XfnHitPreferred(const XVectorStack& vectors, tagXVectorPlace preferred,
                        const tagXClickPlace& place, tagXHitFlag& hit);
/// The next one below `object`, which is hit there too; the frontmost one below the last. Null when
/// `object`, which is compared only, is not hit or is alone.
XvcObj* XfnHitBelow(const XVectorStack& vectors, const XvcObj* object, const tagXClickPlace& place);
/// Whether an object, which is compared only, is hit there.
bool XfnIsHit(const XVectorStack& vectors, const XvcObj* object, const tagXClickPlace& place);
/// The front locked layer that has an object there; file -1 for none.
/// @param object  that object, else left alone
tagXVectorPlace XfnHitLocked(const XVectorStack& vectors, const tagXClickPlace& place,
                             XvcObj*& object);

/// The object that is drawn after or before another in its layer, round about its ends, with what
/// is hidden left out; the first or last one for null. Null for a layer with nothing to show.
XvcObj* XfnNextInLayer(const XvcLayer& layer, const XvcObj* object, bool isForward);
