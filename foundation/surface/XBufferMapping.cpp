#include "foundation/surface/XBufferMapping.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr double kRadPerDeg = 3.14159265358979323846 / 180.0;

bool IsLength(double value)
{
    return value >= XBufferMapping::kMinLength && value <= XBufferMapping::kMaxLength;
}

bool IsCoordinate(double value)
{
    return std::fabs(value) <= XBufferMapping::kMaxCentre; // false for NaN
}

// A growing box.
struct tagBounds
{
    double minX = 0.0, minY = 0.0, maxX = 0.0, maxY = 0.0;
    bool isEmpty = true;

    void Add(double x, double y)
    {
        minX = isEmpty ? x : std::min(minX, x);
        maxX = isEmpty ? x : std::max(maxX, x);
        minY = isEmpty ? y : std::min(minY, y);
        maxY = isEmpty ? y : std::max(maxY, y);
        isEmpty = false;
    }
};

} // namespace

int XBufferMapping::SetSize(int widthPx, int heightPx)
{
    if (widthPx < 0 || heightPx < 0 || widthPx > kMaxSide || heightPx > kMaxSide) return 0;
    m_width = widthPx;
    m_height = heightPx;
    return 1;
}

int XBufferMapping::SetWorldToCenter(double x, double y)
{
    if (!IsCoordinate(x) || !IsCoordinate(y)) return 0;
    m_centreX = x;
    m_centreY = y;
    UpdatePlaneCentre();
    return 1;
}

void XBufferMapping::UpdatePlaneCentre()
{
    m_planeX = m_centreX;
    m_planeY = m_centreY;
    if (m_isBent) m_worldToPlane.Warp(m_planeX, m_planeY);
}

void XBufferMapping::GetWorldToCenter(double& x, double& y) const
{
    x = m_centreX;
    y = m_centreY;
}

int XBufferMapping::SetWorldPerPixel(double x, double y)
{
    if (!IsLength(x) || !IsLength(y)) return 0;
    m_lengthX = x;
    m_lengthY = y;
    return 1;
}

void XBufferMapping::GetWorldPerPixel(double& x, double& y) const
{
    x = m_lengthX;
    y = m_lengthY;
}

int XBufferMapping::SetWorldPerPixelBase(double x, double y)
{
    if (!IsLength(x) || !IsLength(y)) return 0;
    m_baseX = x;
    m_baseY = y;
    return 1;
}

void XBufferMapping::GetWorldPerPixelBase(double& x, double& y) const
{
    x = m_baseX;
    y = m_baseY;
}

void XBufferMapping::GetZoomFactor(double& x, double& y) const
{
    x = m_lengthX / m_baseX;
    y = m_lengthY / m_baseY;
}

int XBufferMapping::SetRotationAngle(double degrees)
{
    if (!std::isfinite(degrees)) return 0;
    m_angle = degrees;
    const double turn = std::remainder(degrees, 360.0);
    m_cos = std::cos(turn * kRadPerDeg);
    m_sin = std::sin(turn * kRadPerDeg);
    // quarter turns are exact, so that a turned picture stays on whole pixels
    if (std::remainder(turn, 90.0) == 0.0) {
        m_cos = std::round(m_cos);
        m_sin = std::round(m_sin);
    }
    return 1;
}

void XBufferMapping::SetWarpCoeff(const XWarp2D& worldToPixel, const XWarp2D& pixelToWorld)
{
    m_isBent = worldToPixel.IsValid() && pixelToWorld.IsValid();
    m_worldToPlane = m_isBent ? worldToPixel : XWarp2D();
    m_planeToWorld = m_isBent ? pixelToWorld : XWarp2D();
    UpdatePlaneCentre();
}

void XBufferMapping::PixelToPlane(double& x, double& y) const
{
    const double right = x - m_width / 2.0;
    const double down = y - m_height / 2.0;
    x = m_planeX + (right * m_cos - down * m_sin) * m_lengthX;
    y = m_planeY - (right * m_sin + down * m_cos) * m_lengthY;
}

void XBufferMapping::ConvPixelToWorldCoord(double& x, double& y) const
{
    PixelToPlane(x, y);
    if (m_isBent) m_planeToWorld.Warp(x, y);
}

void XBufferMapping::ConvWorldToPixelCoord(double& x, double& y) const
{
    if (m_isBent) m_worldToPlane.Warp(x, y);
    const double right = (x - m_planeX) / m_lengthX;
    const double down = (m_planeY - y) / m_lengthY;
    x = m_width / 2.0 + (right * m_cos + down * m_sin);
    y = m_height / 2.0 + (down * m_cos - right * m_sin);
}

int XBufferMapping::GetWorldToPixel(double (&a)[8]) const
{
    if (m_isBent) return 0;
    a[0] = m_planeX;
    a[1] = m_planeY;
    a[2] = m_width / 2.0;
    a[3] = m_cos / m_lengthX;
    a[4] = -m_sin / m_lengthY;
    a[5] = m_height / 2.0;
    a[6] = -m_sin / m_lengthX;
    a[7] = -m_cos / m_lengthY;
    return 1;
}

void XBufferMapping::ConvPixelToWorldLength(double& x, double& y) const
{
    x *= m_lengthX;
    y *= m_lengthY;
}

void XBufferMapping::ConvWorldToPixelLength(double& x, double& y) const
{
    x /= m_lengthX;
    y /= m_lengthY;
}

int XBufferMapping::ZoomFit(double minX, double minY, double maxX, double maxY)
{
    if (!IsCoordinate(minX) || !IsCoordinate(minY) || !IsCoordinate(maxX) || !IsCoordinate(maxY)) {
        return 0;
    }
    if (maxX < minX || maxY < minY || m_width == 0 || m_height == 0) return 0;

    XBufferMapping fitted = *this;
    if (!fitted.SetWorldToCenter(minX + (maxX - minX) / 2.0, minY + (maxY - minY) / 2.0)) return 0;

    // the edge of the box in pixels of the base length, about the centre
    tagBounds bounds;
    const int partCount = m_isBent ? 16 : 1; // bent edges reach beyond their ends
    for (int i = 0; i <= partCount; ++i) {
        const double t = static_cast<double>(i) / partCount;
        const double alongX = minX + (maxX - minX) * t;
        const double alongY = minY + (maxY - minY) * t;
        const double edge[4][2] = {{alongX, minY}, {alongX, maxY}, {minX, alongY}, {maxX, alongY}};
        for (const double(&point)[2] : edge) {
            double x = point[0];
            double y = point[1];
            if (m_isBent) m_worldToPlane.Warp(x, y);
            const double right = (x - fitted.m_planeX) / m_baseX;
            const double down = (fitted.m_planeY - y) / m_baseY;
            bounds.Add(right * m_cos + down * m_sin, down * m_cos - right * m_sin);
        }
    }
    if (m_isBent) {
        // what shows the bent box in the middle is the middle of its bounds
        double x = m_width / 2.0 + (bounds.minX + bounds.maxX) / 2.0;
        double y = m_height / 2.0 + (bounds.minY + bounds.maxY) / 2.0;
        fitted.SetWorldPerPixel(m_baseX, m_baseY);
        fitted.ConvPixelToWorldCoord(x, y);
        if (!fitted.SetWorldToCenter(x, y)) return 0;
    }
    const double scale =
        std::max((bounds.maxX - bounds.minX) / m_width, (bounds.maxY - bounds.minY) / m_height);
    if (scale == 0.0) {
        fitted.m_lengthX = m_lengthX;
        fitted.m_lengthY = m_lengthY;
    } else if (!fitted.SetWorldPerPixel(m_baseX * scale, m_baseY * scale)) {
        return 0;
    }
    *this = fitted;
    return 1;
}

int XBufferMapping::ZoomIn(double step)
{
    const double factor = std::exp2(-step);
    return SetWorldPerPixel(m_lengthX * factor, m_lengthY * factor);
}

int XBufferMapping::ZoomOut(double step)
{
    const double factor = std::exp2(step);
    return SetWorldPerPixel(m_lengthX * factor, m_lengthY * factor);
}

int XBufferMapping::PanPixel(int dx, int dy)
{
    double x = m_width / 2.0 - dx;
    double y = m_height / 2.0 - dy;
    ConvPixelToWorldCoord(x, y);
    return SetWorldToCenter(x, y);
}

bool operator==(const XBufferMapping& a, const XBufferMapping& b)
{
    return a.m_width == b.m_width && a.m_height == b.m_height && a.m_centreX == b.m_centreX &&
           a.m_centreY == b.m_centreY && a.m_planeX == b.m_planeX && a.m_planeY == b.m_planeY &&
           a.m_lengthX == b.m_lengthX && a.m_lengthY == b.m_lengthY && a.m_baseX == b.m_baseX &&
           a.m_baseY == b.m_baseY && a.m_angle == b.m_angle && a.m_isBent == b.m_isBent &&
           a.m_isLatLongRounding == b.m_isLatLongRounding;
}
