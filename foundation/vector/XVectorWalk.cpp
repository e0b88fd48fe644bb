#include "foundation/vector/XVectorWalk.h"

#include "foundation/base/XObList.h"
#include "foundation/vector/XvcBase.h"
#include "foundation/vector/XvcLayer.h"
#include "foundation/vector/XvcObj.h"

namespace {

enum class Order { RearToFront, FrontToRear };

// Hands every element to `visit` as an XvcObj&, XvcLayer& or XvcBase&, until one answers an object.
template <class Visit>
XvcObj* Walk(XObList& list, Order order, const Visit& visit)
{
    const bool isForward = order == Order::RearToFront;
    for (__POSITION* pos = isForward ? list.GetHeadPosition() : list.GetTailPosition(); pos;) {
        XObject* element = isForward ? list.GetNext(pos) : list.GetPrev(pos);
        XvcObj* found = nullptr;
        if (auto* object = dynamic_cast<XvcObj*>(element)) {
            found = visit(*object);
        } else if (XfnIsExactly(element, "XvcLayer")) {
            found = visit(static_cast<XvcLayer&>(*element));
        } else if (XfnIsExactly(element, "XvcBase")) {
            found = visit(static_cast<XvcBase&>(*element));
        } else if (XfnIsExactly(element, "XObList")) {
            found = Walk(static_cast<XObList&>(*element), order, visit);
        }
        if (found) return found;
    }
    return nullptr;
}

} // namespace

tagXVectorRange XfnCalcElementRanges(XObList& list)
{
    tagXVectorRange range;
    Walk(list, Order::RearToFront, [&](auto& element) -> XvcObj* {
        element.CalcRange();
        range.Add(element.GetRange());
        return nullptr;
    });
    return range;
}

void XfnRecordElements(XObList& list, XVertBuffer* buffer, const XWarp2D* warp,
                       const tagXDrawAttrs* attrs)
{
    Walk(list, Order::RearToFront, [&](auto& element) -> XvcObj* {
        if (!element.IsHidden()) element.CreateVertexBuffer(buffer, warp, attrs);
        return nullptr;
    });
}

XvcObj* XfnHitTestElements(XObList& list, const tagXVector3& point, double toleranceX,
                           double toleranceY, tagXHitFlag& hitFlag)
{
    return Walk(list, Order::FrontToRear, [&](auto& element) -> XvcObj* {
        if (element.IsHidden()) return nullptr;
        return element.HitTest(point, toleranceX, toleranceY, hitFlag);
    });
}

void XfnDestroyElements(XObList& list)
{
    for (__POSITION* pos = list.GetHeadPosition(); pos;) {
        XObject* element = list.GetNext(pos);
        // a layer or base destroys what it owns by itself; a plain list owns nothing
        if (XfnIsExactly(element, "XObList")) XfnDestroyElements(static_cast<XObList&>(*element));
        delete element;
    }
    list.RemoveAll();
}
