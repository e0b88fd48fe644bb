#pragma once

#include "foundation/base/XWarp2D.h"
#include "foundation/reference/XCoordinateTransformation.h"
#include "foundation/reference/XSpatialReference.h"

#include <mutex>

class XDMBand;

/// The exact way between the world of a target reference and the pixels of a band in its own:
/// through the coordinate library and the band's geometry.
///
/// Points without a place in the other plane become NaN. Longitudes are turned to within half a turn
/// of the band's middle, on either side.
/// Threads: any; one at a time is served.
class XExactWay
{
public:
    XExactWay(const XDMBand& band, const XSpatialReference& target);

    int IsValid() const { return m_toTarget.IsValid() && m_toOwn.IsValid(); }
    int IsFor(const XDMBand& band, const XSpatialReference& target) const;
    int GetWidth() const { return m_width; }
    int GetHeight() const { return m_height; }

    void ToPixels(double* x, double* y, int n) const;
    /// A pixel whose world point does not come back to it, within half a pixel, has no place.
    void ToWorld(double* x, double* y, int n) const;

private:
    void ToPixelsLocked(double* x, double* y, int n) const;
    void FindTargetMiddle();

    const int m_width, m_height;
    const XWarp2D m_worldToPixel, m_pixelToWorld; // in the band's own reference
    const XSpatialReference m_own, m_target;
    const double m_ownTurn, m_targetTurn; // 0: no longitudes
    double m_ownMiddle = 0.0, m_targetMiddle = 0.0;
    mutable std::mutex m_mutex;
    mutable XCoordinateTransformation m_toTarget, m_toOwn;
};
