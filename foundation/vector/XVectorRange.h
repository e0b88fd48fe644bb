#pragma once

#include "foundation/base/XApi.h"
#include "foundation/base/XSentinels.h"

/// A box in world coordinates. An empty one has minima at 1.7e308 and maxima at -1.7e308, so that
/// it takes part in comparisons with running minima and maxima without a test.
struct XAPI tagXVectorRange
{
    double minX = kXNotSet, minY = kXNotSet, minZ = kXNotSet;
    double maxX = kXNoData, maxY = kXNoData, maxZ = kXNoData;

    int IsEmpty() const { return !(minX <= maxX && minY <= maxY && minZ <= maxZ); }
    void Get(double& toMinX, double& toMinY, double& toMinZ, double& toMaxX, double& toMaxY,
             double& toMaxZ) const;
    void Clear() { *this = tagXVectorRange(); }

    /// Widens to hold a point; one with a coordinate that is not set or not finite is left out.
    void Add(double x, double y, double z);
    void Add(const tagXVectorRange& other); ///< an empty box changes nothing
};
