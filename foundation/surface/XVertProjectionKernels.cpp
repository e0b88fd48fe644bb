#include "foundation/surface/XVertProjection.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr double kMaxSizePx = 20000.0;
constexpr double kMaxPixel = 1e150; // differences and squares of far pixels stay finite
constexpr double kMaxPlace = tagXSubPixel::kMax;
// Added to and taken from a number below 2^51 it leaves the nearest whole one.
constexpr double kRounder = 6755399441055744.0;

double Hold(double place)
{
    place = place > -kMaxPlace ? place : -kMaxPlace; // in this order for NaN
    return place < kMaxPlace ? place : kMaxPlace;
}

} // namespace

XVertProjection::XVertProjection(const XBufferMapping& mapping)
    : m_mapping(mapping), m_isAffine(mapping.GetWorldToPixel(m_map) != 0)
{}

QPointF XVertProjection::ToPixel(const double* vertex) const
{
    double x = vertex[0];
    double y = vertex[1];
    m_mapping.ConvWorldToPixelCoord(x, y);
    return {std::clamp(x, -kMaxPixel, kMaxPixel), std::clamp(y, -kMaxPixel, kMaxPixel)};
}

void XVertProjection::ToSubPixels(const double* vertices, std::size_t count,
                                  tagXSubPixel* places) const
{
    constexpr double kOne = tagXSubPixel::kOne;
    const double centreX = m_map[0], centreY = m_map[1];
    const double x0 = m_map[2] * kOne, xx = m_map[3] * kOne, xy = m_map[4] * kOne;
    const double y0 = m_map[5] * kOne, yx = m_map[6] * kOne, yy = m_map[7] * kOne;
    for (std::size_t i = 0; i < count; ++i) {
        const double u = vertices[2 * i] - centreX;
        const double v = vertices[2 * i + 1] - centreY;
        const double x = Hold(x0 + (u * xx + v * xy));
        const double y = Hold(y0 + (u * yx + v * yy));
        places[i].x = static_cast<std::int32_t>(x + kRounder - kRounder);
        places[i].y = static_cast<std::int32_t>(y + kRounder - kRounder);
    }
}

XVertProjection::tagPixelBox XVertProjection::ToPixels(const XVertRecording::tagBox& box) const
{
    const double u = (double{box.minX} + box.maxX) / 2.0 - m_map[0];
    const double v = (double{box.minY} + box.maxY) / 2.0 - m_map[1];
    const double halfU = (double{box.maxX} - box.minX) / 2.0;
    const double halfV = (double{box.maxY} - box.minY) / 2.0;
    const double x = m_map[2] + (u * m_map[3] + v * m_map[4]);
    const double y = m_map[5] + (u * m_map[6] + v * m_map[7]);
    const double halfX = halfU * std::fabs(m_map[3]) + halfV * std::fabs(m_map[4]);
    const double halfY = halfU * std::fabs(m_map[6]) + halfV * std::fabs(m_map[7]);
    return {x - halfX, y - halfY, x + halfX, y + halfY};
}

XVertRecording::tagBox XVertProjection::GetShownBox(double marginPx) const
{
    const double right = m_mapping.GetWidth() + marginPx;
    const double bottom = m_mapping.GetHeight() + marginPx;
    XVertRecording::tagBox box;
    for (const QPointF& corner : {QPointF(-marginPx, -marginPx), QPointF(right, -marginPx),
                                  QPointF(-marginPx, bottom), QPointF(right, bottom)}) {
        double x = corner.x();
        double y = corner.y();
        m_mapping.ConvPixelToWorldCoord(x, y);
        box.Add(x, y);
    }
    return box;
}

double XVertProjection::ToPixelSize(double size, double sizeOfZero) const
{
    const double pixels = size > 0.0   ? size / m_mapping.GetWorldPerPixel()
                          : size < 0.0 ? -size
                                       : sizeOfZero;
    return std::min(pixels, kMaxSizePx);
}
