#include "foundation/vector/XvcLine.h"

#include "foundation/base/XArchive.h"
#include "foundation/base/XSentinels.h"
#include "foundation/surface/XVertBuffer.h"
#include "foundation/vector/XVectorPaint.h"
#include "foundation/vector/XVertexMath.h"
#include "foundation/vector/XWkbGeometry.h"
#include "foundation/vector/XWkbReader.h"

#include <algorithm>
#include <cmath>
#include <utility>

X_IMPLEMENT_CLASS(XvcLine, XvcVertexObj)

XvcLine::XvcLine() : XvcLine({kXNotSet, kXNotSet, 0.0}, {kXNotSet, kXNotSet, 0.0}) {}

XvcLine::XvcLine(const tagXVector3& start, const tagXVector3& end)
{
    m_vertices.Reserve(2);
    Add(start);
    Add(end);
}

void XvcLine::SetVertices(const tagXVector3& start, const tagXVector3& end)
{
    Touch();
    SetStartVertex(start);
    SetEndVertex(end);
}

void XvcLine::SetVertices(double x0, double y0, double z0, double x1, double y1, double z1)
{
    SetVertices({x0, y0, z0}, {x1, y1, z1});
}

void XvcLine::GetVertices(tagXVector3& start, tagXVector3& end) const
{
    start = GetStartVertex();
    end = GetEndVertex();
}

void XvcLine::GetVertices(double& x0, double& y0, double& z0, double& x1, double& y1,
                          double& z1) const
{
    GetStartVertex(x0, y0, z0);
    GetEndVertex(x1, y1, z1);
}

void XvcLine::SetStartSize(double size)
{
    Touch();
    if (XfnIsSet(size)) m_startSize = size;
}

void XvcLine::SetEndSize(double size)
{
    Touch();
    if (XfnIsSet(size)) m_endSize = size;
}

void XvcLine::SetWorldPerPixel(double length)
{
    Touch();
    if (length >= 0.0 && XfnIsSet(length)) m_worldPerPixel = length;
}

double XvcLine::GetShapeSize(double size) const
{
    const tagXVector3 start = GetStartVertex();
    const tagXVector3 end = GetEndVertex();
    const double length = std::hypot(end.x - start.x, end.y - start.y);
    const double thick = XfnIsSet(GetThick()) ? GetThick() : 0.0;
    return XfnGetLineEndSize(size, thick, m_worldPerPixel, length);
}

std::vector<tagXLineEndPart> XvcLine::MakeEnds(tagXVector3& start, tagXVector3& end) const
{
    GetVertices(start, end);
    if (!XfnIsUsable(start) || !XfnIsUsable(end)) return {};
    double startInset = 0.0;
    double endInset = 0.0;
    auto parts = XfnMakeLineEnd(m_startShape, end, start, GetShapeSize(m_startSize), startInset);
    auto atEnd = XfnMakeLineEnd(m_endShape, start, end, GetShapeSize(m_endSize), endInset);
    std::move(atEnd.begin(), atEnd.end(), std::back_inserter(parts));
    const double length = std::hypot(end.x - start.x, end.y - start.y);
    if (startInset + endInset >= length) { // nothing of the line is left to be seen
        end = start;
        return parts;
    }
    const tagXVector3 step((end.x - start.x) / length, (end.y - start.y) / length, 0.0);
    start += step * startInset;
    end -= step * endInset;
    return parts;
}

void XvcLine::CalcRange()
{
    XvcVertexObj::CalcRange();
    tagXVector3 start, end;
    for (const auto& part : MakeEnds(start, end)) {
        for (const tagXVector3& vertex : part.vertices) {
            m_range.Add(vertex.x, vertex.y, XfnIsSet(vertex.z) ? vertex.z : 0.0);
        }
    }
}

void XvcLine::CreateVertexBuffer(XVertBuffer* buffer, const XWarp2D* warp,
                                 const tagXDrawAttrs* attrs)
{
    if (!buffer) return;
    const XVectorPaint paint(*this, attrs);
    const XWarp2D* map = ChooseWarp(warp);
    std::vector<tagXVector3> shaft(2);
    auto parts = MakeEnds(shaft[0], shaft[1]);
    if (parts.empty() || shaft[0] != shaft[1]) {
        XfnWarpVertices(shaft, map);
        buffer->AddPolyline(shaft.data(), shaft.size(), paint.line);
    }
    XfnRecordLineEnds(*buffer, std::move(parts), map, paint.line);
}

void XvcLine::Normalize(double minX, double minY, double maxX, double maxY)
{
    const tagXUnitMap map(minX, minY, maxX, maxY);
    XvcVertexObj::Normalize(minX, minY, maxX, maxY);
    if (!map.isValid || map.width == 0.0) return;
    const double factor = 1.0 / std::fabs(map.width);
    if (m_startSize > 0.0) SetStartSize(m_startSize * factor);
    if (m_endSize > 0.0) SetEndSize(m_endSize * factor);
    SetWorldPerPixel(m_worldPerPixel * factor);
}

int XvcLine::ImportFromWkb(const unsigned char* bytes, std::size_t& size, XString& error)
{
    Touch();
    XWkbGeometry read;
    std::size_t used = size;
    if (!read.Read(bytes, used, {XWkbReader::kLineString}, "a line string", error)) return 0;
    if (read.parts[0][0].GetSize() != 2) {
        error = "The line string is not one straight line between two positions.";
        return 0;
    }
    m_vertices = std::move(read.parts[0][0]);
    size = used;
    return 1;
}

XString XvcLine::ExportToWkt() const
{
    return XWktWriter::FromLine(m_vertices);
}

void XvcLine::StoreOwn(XArchive& archive) const
{
    archive << m_startShape << m_endShape << m_startSize << m_endSize << m_worldPerPixel;
}

void XvcLine::LoadOwn(XArchive& archive)
{
    int startShape = 0, endShape = 0;
    double startSize = 0.0, endSize = 0.0, worldPerPixel = 0.0;
    archive >> startShape >> endShape >> startSize >> endSize >> worldPerPixel;
    m_startShape = startShape;
    m_endShape = endShape;
    SetStartSize(startSize);
    SetEndSize(endSize);
    SetWorldPerPixel(worldPerPixel);
}
