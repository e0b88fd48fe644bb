#pragma once

#include <QPolygonF>
#include <QRectF>

#include <vector>

/// Clipping of figures to a box, in pixels, so that the painter never sees the coordinates of far
/// away vertices. Vertices must be finite. Internal to this folder.

/// A part of a line that lies in the box.
struct tagXLineRun
{
    QPolygonF points;
    double start = 0.0; ///< length of the line before the first point, for dashes
};

/// The parts of an open line within the box, in order.
std::vector<tagXLineRun> XfnClipLine(const QPolygonF& line, const QRectF& box);

/// A closed ring cut to the box: inside the box the same area under either fill rule.
QPolygonF XfnClipRing(const QPolygonF& ring, const QRectF& box);
