#include "foundation/surface/XRubberBand.h"

#include "foundation/surface/XDC.h"
#include "foundation/surface/XPen.h"

#include <algorithm>

namespace {
constexpr unsigned MaskOf(unsigned channel)
{
    return 0x80u | channel >> 2;
}
} // namespace

int XfnDrawRubberBand(XDC& dc, const QPoint& from, const QPoint& to, const tagXLineStyle& style,
                      int widthPx, tagXColor colour)
{
    XPen pen;
    XfnCreatePen(pen, style, widthPx,
                 XfnMakeColor(MaskOf(XfnGetRed(colour)), MaskOf(XfnGetGreen(colour)),
                              MaskOf(XfnGetBlue(colour))));
    XDC band(dc.GetImage());
    band.SetDrawMode(XDC::XMode::ExclusiveOr);
    const QPoint upperLeft(std::min(from.x(), to.x()), std::min(from.y(), to.y()));
    const QPoint lowerRight(std::max(from.x(), to.x()), std::max(from.y(), to.y()));
    return band.DrawRectangle(QRect(upperLeft, lowerRight), pen);
}
