#pragma once

#include "foundation/base/XApi.h"
#include "foundation/base/XColor.h"

#include <QPoint>

class XDC;
struct tagXLineStyle;

/// Draws the outline of the rectangle between two corners by exclusive or, so that the second
/// identical call erases it. The corners come in any order; equal corners make one point.
///
/// The mask of the exclusive or leans to the colour but always flips the highest bit of each
/// channel, so every pixel of the band changes by 65 at least in red, green and blue: a band is
/// seen on mid grey too, and a black one is a band like any other.
/// @return 0 when the context has no image
XAPI int XfnDrawRubberBand(XDC& dc, const QPoint& from, const QPoint& to,
                           const tagXLineStyle& style, int widthPx, tagXColor colour);
