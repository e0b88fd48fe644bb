#include "foundation/vector/XvcPolygon.h"

#include "foundation/vector/XVectorPaint.h"
#include "foundation/vector/XWkbGeometry.h"
#include "foundation/vector/XWkbReader.h"

#include <utility>

X_IMPLEMENT_CLASS(XvcPolygon, XvcVertexObj)

void XvcPolygon::CreateVertexBuffer(XVertBuffer* buffer, const XWarp2D* warp,
                                    const tagXDrawAttrs* attrs)
{
    if (!buffer) return;
    XfnRecordPolygon(buffer, XfnGetWarpedVertices(m_vertices, ChooseWarp(warp)),
                     XVectorPaint(*this, attrs));
}

int XvcPolygon::ImportFromWkb(const unsigned char* bytes, std::size_t& size, XString& error)
{
    Touch();
    XWkbGeometry read;
    std::size_t used = size;
    if (!read.Read(bytes, used, {XWkbReader::kPolygon}, "a polygon", error)) return 0;
    if (read.parts[0].size() > 1) {
        error = "The polygon has holes, which this object has no room for.";
        return 0;
    }
    m_vertices = read.parts[0].empty() ? XVertexArray() : std::move(read.parts[0][0]);
    m_vertices.Shrink(); // the repeated vertex left room
    size = used;
    return 1;
}

XString XvcPolygon::ExportToWkt() const
{
    return XWktWriter::FromRing(m_vertices);
}
