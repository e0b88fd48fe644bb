#include "view/tools/XToolGeometry.h"

#include "view/XViewMapping.h"

#include <algorithm>
#include <cmath>
#include <numbers>

tagXVector3 XfnConstrainToAxis(const tagXVector3& anchor, const tagXVector3& pointer)
{
    tagXVector3 point = pointer;
    if (std::fabs(anchor.x - pointer.x) <= std::fabs(anchor.y - pointer.y))
        point.x = anchor.x;
    else
        point.y = anchor.y;
    return point;
}

tagXVector3 XfnConstrainToSquare(const XViewMapping& mapping, const tagXVector3& anchor,
                                 const tagXVector3& pointer)
{
    double worldX = 1.0, worldY = 1.0;
    mapping.GetWorldPerPixel(worldX, worldY);
    const double pixels = std::max(std::fabs(pointer.x - anchor.x) / worldX,
                                   std::fabs(pointer.y - anchor.y) / worldY);
    const auto along = [pixels](double from, double to, double worldPerPixel) {
        return to < from ? from - pixels * worldPerPixel : from + pixels * worldPerPixel;
    };
    return {along(anchor.x, pointer.x, worldX), along(anchor.y, pointer.y, worldY), pointer.z};
}

double XfnDirectionDeg(double x, double y)
{
    if (x == 0.0 && y == 0.0) return 0.0;
    const double angle = std::atan2(y, x) * 180.0 / std::numbers::pi;
    return angle > 0.0 ? angle : angle + 360.0;
}
