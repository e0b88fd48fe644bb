#include "view/tools/XToolHit.h"

#include "foundation/base/XObList.h"
#include "foundation/base/XVector3.h"
#include "foundation/vector/XvcBase.h"
#include "view/XViewMapping.h"

#include <algorithm>

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

double XfnHitTolerance(const XViewMapping& mapping)
{
    constexpr double kPixels = 3.0;
    double x = 0, y = 0;
    mapping.GetWorldPerPixel(x, y);
    return kPixels * std::max(x, y);
}
