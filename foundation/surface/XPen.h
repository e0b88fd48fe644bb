#pragma once

#include "foundation/base/XColor.h"
#include "foundation/base/XLineStyle.h"

#include <QPen>

/// How a line is drawn on a device context: dash pattern, width in pixels, colour. Always opaque;
/// with the line style kNone nothing is drawn.
struct XAPI XPen
{
    tagXLineStyle style;
    double widthPx = 1.0;
    tagXColor colour = 0;

    QPen ToQPen() const;
};

/// Fills a pen. A width that is not above 1 is 1 pixel, one above 1000 is 1000.
/// @return non-zero always
XAPI int XfnCreatePen(XPen& pen, const tagXLineStyle& style, int widthPx, tagXColor colour);

/// The 16-bit dash pattern of a line style as Qt wants it: alternating dash and gap lengths in
/// units of the pen width, beginning with a dash. The pattern's highest bit comes first.
/// @param offset  receives where in that sequence the pattern's first bit stands
/// @return empty for a solid line, which is also what a pattern without any bit gives
XAPI QList<qreal> XfnGetDashLengths(const tagXLineStyle& style, qreal& offset);
