#include "view/XViewBookMark.h"

#include "foundation/base/XSentinels.h"
#include "foundation/surface/XBackBuffer.h"
#include "foundation/surface/XPointShape.h"
#include "foundation/surface/XVertBuffer.h"

XViewBookMark::XViewBookMark() : m_point(kXNotSet, kXNotSet)
{
    m_point.SetType(kXPointPlus);
}

void XViewBookMark::Set(double x, double y, tagXColor color)
{
    m_point.SetVertex(x, y, 0.0);
    m_point.CalcRange();
    m_point.SetLineColor(color);
}

void XViewBookMark::Clear()
{
    m_point.SetVertex(kXNotSet, kXNotSet, 0.0);
    m_point.CalcRange();
}

void XViewBookMark::Record(XVertBuffer& buffer, const XBackBuffer& target)
{
    double sizeX = kSizePixels, sizeY = kSizePixels;
    target.ConvPixelToWorldLength(sizeX, sizeY);
    m_point.SetThick(sizeX);
    m_point.CalcRange();
    if (m_point.IsSet()) m_point.CreateVertexBuffer(&buffer, nullptr, nullptr);
}
