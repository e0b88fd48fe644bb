#include "foundation/vector/XVectorRange.h"

#include <algorithm>

void tagXVectorRange::Get(double& toMinX, double& toMinY, double& toMinZ, double& toMaxX,
                          double& toMaxY, double& toMaxZ) const
{
    toMinX = minX;
    toMinY = minY;
    toMinZ = minZ;
    toMaxX = maxX;
    toMaxY = maxY;
    toMaxZ = maxZ;
}

void tagXVectorRange::Add(double x, double y, double z)
{
    if (!XfnIsSet(x) || !XfnIsSet(y) || !XfnIsSet(z)) return;
    minX = std::min(minX, x);
    minY = std::min(minY, y);
    minZ = std::min(minZ, z);
    maxX = std::max(maxX, x);
    maxY = std::max(maxY, y);
    maxZ = std::max(maxZ, z);
}

void tagXVectorRange::Add(const tagXVectorRange& other)
{
    if (other.IsEmpty()) return;
    Add(other.minX, other.minY, other.minZ);
    Add(other.maxX, other.maxY, other.maxZ);
}
