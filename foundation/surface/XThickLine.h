#pragma once

#include "foundation/surface/XScanFill.h"

#include <QList>
#include <QPointF>

#include <cstddef>

/// The outline of lines that are wider than a pixel, as rings that wind one way: filled by the
/// winding rule they give the line, each of its pixels once. Corners are round. Places are pixels.
class XThickLine
{
public:
    enum class XCap { Flat, Square, Round };

    /// @param width  in pixels, above 0
    XThickLine(XScanFill& fill, double width, XCap cap)
        : m_fill(fill), m_half(width / 2.0), m_cap(cap)
    {}

    void AddLine(const QPointF* points, std::size_t count, bool isRing);
    /// @param lengths  of dashes and gaps by turns, in pixels, the sum above 0
    /// @param offset   where in them the first point stands
    void AddDashes(const QPointF* points, std::size_t count, const QList<qreal>& lengths,
                   double offset);

private:
    void AddRing(const QPointF* points, std::size_t count);
    void AddSegment(const QPointF& a, const QPointF& b, bool isLongerA, bool isLongerB);
    void AddDisc(const QPointF& centre);

    XScanFill& m_fill;
    double m_half;
    XCap m_cap;
};

/// A place as the scan conversion takes it; far ones are held at its bounds.
tagXSubPixel XfnToSubPixel(const QPointF& point);
