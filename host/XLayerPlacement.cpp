#include "host/XLayerPlacement.h"

#include <cmath>

QString XfnPlacementText(double miss)
{
    if (miss < 0) return "Not placed: nothing joins its coordinate system and the view's";
    if (miss <= 1) return QString();
    return QString("Placed within %1 pixels").arg(std::ceil(miss), 0, 'f', 0);
}
