#pragma once

#include "foundation/surface/XScanFill.h"

#include <QList>
#include <QPointF>

#include <cstddef>
#include <vector>

/// The outline of lines that are wider than a pixel, as rings that wind one way: filled by the
/// winding rule they give the line, each of its pixels once; smoothed, with sides that are as even at
/// ends and corners as between. Corners are round. Places are pixels.
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
    int CountSides(double angle) const;
    void AddArc(std::vector<QPointF>& ring, const QPointF& centre, double from,
                double angle) const; // without its ends
    void AddSegment(const QPointF& a, const QPointF& b, bool isEndA, bool isEndB);
    void AddCorner(const QPointF& before, const QPointF& corner, const QPointF& after);
    void AddPoint(const QPointF& centre);

    XScanFill& m_fill;
    double m_half;
    XCap m_cap;
    std::vector<QPointF> m_ring;     // for work
    std::vector<QPointF> m_distinct; // likewise
};

/// A place as the scan conversion takes it; far ones are held at its bounds.
tagXSubPixel XfnToSubPixel(const QPointF& point);
