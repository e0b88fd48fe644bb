#pragma once

#include "foundation/base/XObList.h"
#include "foundation/vector/XvcObj.h"

/// Visits the objects of a base, a layer or a plain list, and of the lists in it, the rearmost first.
/// @param visit  bool(XvcObj&); false ends the visits
/// @return whether all were visited
template <class Visit>
bool XfnVisitObjects(const XObList& list, const Visit& visit)
{
    for (__POSITION* pos = list.GetHeadPosition(); pos;) {
        XObject* child = list.GetNext(pos);
        if (const auto* inner = dynamic_cast<const XObList*>(child)) {
            if (!XfnVisitObjects(*inner, visit)) return false;
        } else if (auto* object = dynamic_cast<XvcObj*>(child)) {
            if (!visit(*object)) return false;
        }
    }
    return true;
}
