#include "foundation/vector/XvcNorthArrow.h"

#include "foundation/base/XArchive.h"
#include "foundation/base/XFileException.h"
#include "foundation/surface/XVertBuffer.h"
#include "foundation/vector/XVectorPaint.h"
#include "foundation/vector/XVectorRange.h"
#include "foundation/vector/XVertexMath.h"

#include <algorithm>
#include <cmath>

X_IMPLEMENT_CLASS(XvcNorthArrow, XvcRectObj)

namespace {

constexpr std::uint8_t kArchiveVersion = 1;
constexpr double kMaxLineShare = 0.25; // of a side that the outline may take

} // namespace

void XvcNorthArrow::SetAngle(double angleDeg)
{
    Touch();
    if (XfnIsSet(angleDeg)) m_angleDeg = angleDeg;
}

void XvcNorthArrow::SetStyle(int style)
{
    Touch();
    if (XfnGetNorthArrowName(style)) m_style = style;
}

void XvcNorthArrow::SetResolution(int chords)
{
    Touch();
    m_resolution = std::clamp(chords, kMinResolution, kMaxResolution);
}

void XvcNorthArrow::SetWorldPerPixel(double length)
{
    Touch();
    if (length >= 0.0 && XfnIsSet(length)) m_worldPerPixel = length;
}

void XvcNorthArrow::CreateVertexBuffer(XVertBuffer* buffer, const XWarp2D* warp,
                                       const tagXDrawAttrs* attrs)
{
    if (!buffer || !IsSet()) return;
    const XVectorPaint paint(*this, attrs);
    const double thick =
        paint.line.thick < 0.0 ? -paint.line.thick * m_worldPerPixel : paint.line.thick;
    const double width = GetBoxWidth() - std::min(thick, kMaxLineShare * GetBoxWidth());
    const double height = GetBoxHeight() - std::min(thick, kMaxLineShare * GetBoxHeight());
    if (!(width > 0.0) || !(height > 0.0) || !XfnIsSet(width) || !XfnIsSet(height)) return;

    auto parts = XfnMakeNorthArrow(m_style, m_resolution);
    const tagXTurn turn(0.0, 0.0, std::remainder(m_angleDeg, 360.0));
    tagXVectorRange extent;
    for (auto& part : parts) {
        for (tagXVector3& vertex : part.vertices) {
            turn.Apply(vertex);
            extent.Add(vertex.x, vertex.y, 0.0);
        }
    }
    if (extent.IsEmpty()) return;
    const double scale =
        std::min(width / (extent.maxX - extent.minX), height / (extent.maxY - extent.minY));
    const tagXVector3 origin = GetAt(0), lower = GetAt(3), left = GetAt(1);
    const tagXVector3 alongX = (lower - origin) * (1.0 / GetBoxWidth());
    const tagXVector3 alongY = (left - origin) * (1.0 / GetBoxHeight());
    const tagXVector3 middle = lower * 0.5 + left * 0.5;
    const tagXVector3 offset((extent.minX + extent.maxX) / 2.0, (extent.minY + extent.maxY) / 2.0);

    tagXVertFill inLine;
    inLine.foreColour = paint.line.colour;
    tagXVertFill inBack;
    inBack.foreColour = paint.fill.backColour;
    using XRole = tagXNorthArrowPart::XRole;
    for (auto& part : parts) {
        for (tagXVector3& vertex : part.vertices) {
            const double x = (vertex.x - offset.x) * scale, y = (vertex.y - offset.y) * scale;
            vertex = {middle.x + alongX.x * x + alongY.x * y,
                      middle.y + alongX.y * x + alongY.y * y};
        }
        XfnWarpVertices(part.vertices, ChooseWarp(warp));
        const tagXVector3* const from = part.vertices.data();
        const std::size_t count = part.vertices.size();
        switch (part.role) {
        case XRole::Stroke:
            if (paint.GetLine()) buffer->AddPolyline(from, count, paint.line);
            break;
        case XRole::Outline:
            buffer->AddPolygon(from, count, paint.GetLine(), nullptr);
            break;
        case XRole::Fore:
            buffer->AddPolygon(from, count, paint.GetLine(), paint.GetFill());
            break;
        case XRole::Back:
            buffer->AddPolygon(from, count, paint.GetLine(), paint.GetFill() ? &inBack : nullptr);
            break;
        case XRole::Line: // letters: they stay where there are no lines
            buffer->AddPolygon(from, count, nullptr, &inLine);
            break;
        }
    }
}

void XvcNorthArrow::StoreOwn(XArchive& archive) const
{
    archive << kArchiveVersion << m_style << m_resolution << m_angleDeg << m_worldPerPixel;
}

void XvcNorthArrow::LoadOwn(XArchive& archive)
{
    std::uint8_t version = 0;
    int style = 0, resolution = 0;
    double angleDeg = 0.0, worldPerPixel = 0.0;
    archive >> version;
    if (version != kArchiveVersion) throw XFileException(XFileException::kInvalidFile);
    archive >> style >> resolution >> angleDeg >> worldPerPixel;
    if (!XfnGetNorthArrowName(style) || !XfnIsSet(angleDeg)) {
        throw XFileException(XFileException::kInvalidFile);
    }
    m_style = style;
    m_angleDeg = angleDeg;
    SetResolution(resolution);
    SetWorldPerPixel(worldPerPixel);
}
