#include "foundation/vector/XVectorWalk.h"

#include "foundation/base/XObList.h"
#include "foundation/vector/XvcBase.h"
#include "foundation/vector/XvcLayer.h"
#include "foundation/vector/XvcObj.h"

#include <type_traits>

namespace {

enum class Order { RearToFront, FrontToRear };

template <class Visit>
XvcObj* Walk(XObList& list, Order order, const Visit& visit);

// Hands an element to `visit` as an XvcObj&, XvcLayer& or XvcBase&; those of a plain list each.
template <class Visit>
XvcObj* Show(XObject* element, Order order, const Visit& visit)
{
    if (auto* object = dynamic_cast<XvcObj*>(element)) return visit(*object);
    if (XfnIsExactly(element, "XvcLayer")) return visit(static_cast<XvcLayer&>(*element));
    if (XfnIsExactly(element, "XvcBase")) return visit(static_cast<XvcBase&>(*element));
    if (XfnIsExactly(element, "XObList"))
        return Walk(static_cast<XObList&>(*element), order, visit);
    return nullptr;
}

// Shows every element until one answers an object.
template <class Visit>
XvcObj* Walk(XObList& list, Order order, const Visit& visit)
{
    const bool isForward = order == Order::RearToFront;
    for (__POSITION* pos = isForward ? list.GetHeadPosition() : list.GetTailPosition(); pos;) {
        XObject* element = isForward ? list.GetNext(pos) : list.GetPrev(pos);
        if (XvcObj* found = Show(element, order, visit)) return found;
    }
    return nullptr;
}

} // namespace

tagXVectorRange XfnCalcElementRange(XObject* element)
{
    tagXVectorRange range;
    Show(element, Order::RearToFront, [&](auto& shown) -> XvcObj* {
        if constexpr (std::is_same_v<decltype(shown), XvcObj&>) {
            shown.Refresh();
            range.Add(shown.GetDrawnExtent());
        } else {
            shown.CalcRange();
            range.Add(shown.GetRange());
        }
        return nullptr;
    });
    return range;
}

tagXVectorRange XfnCalcElementRanges(XObList& list)
{
    tagXVectorRange range;
    for (__POSITION* pos = list.GetHeadPosition(); pos;)
        range.Add(XfnCalcElementRange(list.GetNext(pos)));
    return range;
}

void XfnRecordElement(XObject* element, XVertBuffer* buffer, const XWarp2D* warp,
                      const tagXDrawAttrs* attrs)
{
    Show(element, Order::RearToFront, [&](auto& shown) -> XvcObj* {
        if (!shown.IsHidden()) shown.CreateVertexBuffer(buffer, warp, attrs);
        return nullptr;
    });
}

void XfnRecordElements(XObList& list, XVertBuffer* buffer, const XWarp2D* warp,
                       const tagXDrawAttrs* attrs)
{
    for (__POSITION* pos = list.GetHeadPosition(); pos;)
        XfnRecordElement(list.GetNext(pos), buffer, warp, attrs);
}

XvcObj* XfnHitTestElement(XObject* element, const tagXVector3& point, double toleranceX,
                          double toleranceY, tagXHitFlag& hitFlag)
{
    return Show(element, Order::FrontToRear, [&](auto& shown) -> XvcObj* {
        if (shown.IsHidden()) return nullptr;
        return shown.HitTest(point, toleranceX, toleranceY, hitFlag);
    });
}

XvcObj* XfnHitTestElements(XObList& list, const tagXVector3& point, double toleranceX,
                           double toleranceY, tagXHitFlag& hitFlag)
{
    for (__POSITION* pos = list.GetTailPosition(); pos;) {
        if (XvcObj* hit =
                XfnHitTestElement(list.GetPrev(pos), point, toleranceX, toleranceY, hitFlag)) {
            return hit;
        }
    }
    return nullptr;
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
