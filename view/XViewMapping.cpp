#include "view/XViewMapping.h"

#include "foundation/base/XSentinels.h"
#include "foundation/surface/XBackBuffer.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr tagXWorldBox kNoBox = {kXNotSet, kXNotSet, kXNotSet, kXNotSet};

// whole pixels toward zero; what is too far to be a place on a screen is no pan at all
int TruncatePixels(double distance)
{
    // a distance of 50 pixels may come as 49.9999, and would lose one at every step
    constexpr double kRoundingPixels = 1.0 / 64;
    if (!(std::fabs(distance) < 1e6)) return 0;
    return static_cast<int>(distance + std::copysign(kRoundingPixels, distance));
}

// The visible range of one axis. Half the size is taken in single precision: window sizes are exact
// in it.
struct Span
{
    double low;
    double high;
    bool Contains(double value, double slack) const
    {
        return value >= low - slack && value <= high + slack;
    }
};

Span VisibleSpan(double centre, int size, double length)
{
    const double low = centre - static_cast<double>(0.5f * static_cast<float>(size)) * length;
    return {low, size * length + low};
}

} // namespace

XViewMapping::XViewMapping(XBackBuffer& main, XBackBuffer& temporary)
    : m_main(main), m_temporary(temporary), m_visible(kNoBox)
{}

template <class Change>
void XViewMapping::Apply(Change change)
{
    change(m_main);
    change(m_temporary);
}

void XViewMapping::StartAlike(int width, int height)
{
    SetWorldToCenter(width / 2, height / 2);
    SetWorldPerPixel(1, 1);
}

void XViewMapping::Resize(int width, int height)
{
    if (width < 1 || height < 1) return;
    Apply([=](XBackBuffer& buffer) { buffer.Resize(nullptr, width, height); });
}

void XViewMapping::SetWorldToCenter(double x, double y)
{
    Apply([=](XBackBuffer& buffer) { buffer.SetWorldToCenter(x, y); });
}

void XViewMapping::SetWorldPerPixel(double x, double y)
{
    Apply([=](XBackBuffer& buffer) { buffer.SetWorldPerPixel(x, y); });
}

void XViewMapping::SetWorldPerPixelBase(double x, double y)
{
    Apply([=](XBackBuffer& buffer) { buffer.SetWorldPerPixelBase(x, y); });
}

void XViewMapping::ZoomFit(const tagXWorldBox& box)
{
    Apply([=](XBackBuffer& buffer) { buffer.ZoomFit(box.minX, box.minY, box.maxX, box.maxY); });
}

void XViewMapping::ZoomIn(double step)
{
    Apply([=](XBackBuffer& buffer) { buffer.ZoomIn(step); });
}

void XViewMapping::ZoomOut(double step)
{
    Apply([=](XBackBuffer& buffer) { buffer.ZoomOut(step); });
}

void XViewMapping::PanPixel(int dx, int dy)
{
    Apply([=](XBackBuffer& buffer) { buffer.PanPixel(dx, dy); });
}

void XViewMapping::ZoomAbout(double pixelX, double pixelY, double step)
{
    double x = pixelX, y = pixelY, lengthX = 0, lengthY = 0;
    PixelToWorld(x, y);
    m_main.GetWorldPerPixel(lengthX, lengthY);
    ZoomIn(step);
    double newX = 0, newY = 0, centreX = 0, centreY = 0;
    m_main.GetWorldPerPixel(newX, newY);
    m_main.GetWorldToCenter(centreX, centreY);
    // pixel to world is linear about the centre, under rotation too: offsets scale with the length
    SetWorldToCenter(x + (centreX - x) * (newX / lengthX), y + (centreY - y) * (newY / lengthY));
}

void XViewMapping::ZoomWheel(int pixelX, int pixelY, double step)
{
    double x = pixelX, y = pixelY;
    PixelToWorld(x, y);
    double centreX = 0, centreY = 0, lengthX = 0, lengthY = 0;
    m_main.GetWorldToCenter(centreX, centreY);
    m_main.GetWorldPerPixel(lengthX, lengthY);
    // far from the origin rounding may put the pixels at the very edge outside
    constexpr double kSlackPixels = 0.25;
    const bool isInside =
        VisibleSpan(centreX, GetWidth(), lengthX).Contains(x, kSlackPixels * lengthX) &&
        VisibleSpan(centreY, GetHeight(), lengthY).Contains(y, kSlackPixels * lengthY);
    if (step < 0)
        ZoomOut(-step);
    else
        ZoomIn(step);
    if (!isInside) return;
    WorldToPixel(x, y);
    PanPixel(TruncatePixels(pixelX - x), TruncatePixels(pixelY - y));
}

int XViewMapping::GetWidth() const
{
    return m_main.GetWidth();
}

int XViewMapping::GetHeight() const
{
    return m_main.GetHeight();
}

void XViewMapping::GetWorldPerPixel(double& x, double& y) const
{
    m_main.GetWorldPerPixel(x, y);
}

void XViewMapping::PixelToWorld(double& x, double& y) const
{
    m_main.ConvPixelToWorldCoord(x, y);
}

void XViewMapping::WorldToPixel(double& x, double& y) const
{
    m_main.ConvWorldToPixelCoord(x, y);
}

tagXWorldBox XViewMapping::GetBound() const
{
    const double width = GetWidth(), height = GetHeight();
    const double corners[4][2] = {{0, 0}, {0, height}, {width, height}, {width, 0}};
    tagXWorldBox box = {kXNotSet, kXNotSet, kXNoData, kXNoData};
    for (const auto& corner : corners) {
        double x = corner[0], y = corner[1];
        PixelToWorld(x, y);
        box.minX = std::min(box.minX, x);
        box.minY = std::min(box.minY, y);
        box.maxX = std::max(box.maxX, x);
        box.maxY = std::max(box.maxY, y);
    }
    return box;
}

tagXWorldBox XViewMapping::GetDiagonal() const
{
    tagXWorldBox box = {0, static_cast<double>(GetHeight()), static_cast<double>(GetWidth()), 0};
    PixelToWorld(box.minX, box.minY);
    PixelToWorld(box.maxX, box.maxY);
    return box;
}

int XViewMapping::HasVisibleBox() const
{
    return m_visible.minX != kXNotSet && m_visible.minY != kXNotSet && m_visible.maxX != kXNotSet &&
           m_visible.maxY != kXNotSet;
}
