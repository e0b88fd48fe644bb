#pragma once

#include "foundation/base/XObList.h"
#include "foundation/vector/XvcLayer.h"
#include "foundation/vector/XvcObj.h"

/// For the sources of this folder only: the objects below a list, through lists inside it.

/// Hands every object to `visit(XvcObj&)`, the rearmost first.
template <class Visit>
void XfnVisitObjects(XObList& list, const Visit& visit)
{
    for (__POSITION* position = list.GetHeadPosition(); position;) {
        XObject* element = list.GetNext(position);
        if (auto* object = dynamic_cast<XvcObj*>(element)) {
            visit(*object);
        } else if (auto* inner = dynamic_cast<XObList*>(element)) {
            XfnVisitObjects(*inner, visit);
        }
    }
}

/// Asks `test(XvcObj&)` of every object, the frontmost first, until one answers an object.
template <class Test>
XvcObj* XfnFindObject(XObList& list, const Test& test)
{
    for (__POSITION* position = list.GetTailPosition(); position;) {
        XObject* element = list.GetPrev(position);
        XvcObj* found = nullptr;
        if (auto* object = dynamic_cast<XvcObj*>(element)) {
            found = test(*object);
        } else if (auto* inner = dynamic_cast<XObList*>(element)) {
            found = XfnFindObject(*inner, test);
        }
        if (found) return found;
    }
    return nullptr;
}

/// Destroys the objects below a list and the lists inside it, and empties it.
void XfnDestroyElements(XObList& list);
