#include "view/tools/XToolHit.h"

#include "foundation/base/XObList.h"
#include "foundation/base/XVector3.h"
#include "foundation/vector/XvcBase.h"
#include "foundation/vector/XvcLayer.h"
#include "view/XViewMapping.h"

#include <algorithm>
#include <cmath>

XvcObj* XfnHitTestBases(const XObList& bases, double worldX, double worldY, double toleranceWorld,
                        tagXHitFlag& hit)
{
    const tagXVector3 point{worldX, worldY, 0.0};
    for (__POSITION* pos = bases.GetHeadPosition(); pos;) {
        auto* base = dynamic_cast<XvcBase*>(bases.GetNext(pos));
        tagXHitFlag found;
        XvcObj* object = base ? base->HitTest(point, toleranceWorld, found) : nullptr;
        if (!object) continue;
        hit = found;
        return object;
    }
    return nullptr;
}

XvcObj* XfnHitTestBases(const XObList& inner, const XObList& external, double worldX, double worldY,
                        double toleranceWorld, tagXHitFlag& hit)
{
    XvcObj* const object = XfnHitTestBases(inner, worldX, worldY, toleranceWorld, hit);
    return object ? object : XfnHitTestBases(external, worldX, worldY, toleranceWorld, hit);
}

double XfnHitTolerance(const XViewMapping& mapping)
{
    constexpr double kPixels = 3.0;
    double x = 0, y = 0;
    mapping.GetWorldPerPixel(x, y);
    return kPixels * std::max(x, y);
}

double XfnHitTolerance(const XViewMapping& mapping, const XvcObj& selected)
{
    const double thick = selected.GetThick();
    if (thick == 0.0) return XfnHitTolerance(mapping);
    if (thick > 0.0) return thick;
    double x = 0, y = 0;
    mapping.GetWorldPerPixel(x, y);
    return -thick * std::max(x, y);
}

void XfnObjInRect(XObList& result, const XObList& list, double minX, double minY, double maxX,
                  double maxY)
{
    for (__POSITION* pos = list.GetHeadPosition(); pos;) {
        XObject* const element = list.GetNext(pos);
        const XObList* below = nullptr;
        if (XfnIsExactly(element, "XvcBase")) {
            const auto* base = static_cast<const XvcBase*>(element);
            if (base->IsHidden()) continue;
            below = base;
        } else if (XfnIsExactly(element, "XvcLayer")) {
            const auto* layer = static_cast<const XvcLayer*>(element);
            if (layer->IsHidden()) continue;
            below = layer;
        } else if (XfnIsExactly(element, "XObList")) {
            below = static_cast<const XObList*>(element);
        }
        if (below) {
            XfnObjInRect(result, *below, minX, minY, maxX, maxY);
            continue;
        }
        auto* const object = dynamic_cast<XvcObj*>(element);
        if (!object || object->IsHidden()) continue;
        const tagXVectorRange& range = object->GetRange();
        if (range.IsEmpty()) continue;
        if (range.minX > minX && range.minY > minY && range.maxX < maxX && range.maxY < maxY)
            result.AddTail(object);
    }
}
