#include "foundation/vector/XvcPolyline.h"

#include "foundation/vector/XVectorPaint.h"
#include "foundation/vector/XWkbGeometry.h"
#include "foundation/vector/XWkbReader.h"

#include <utility>

X_IMPLEMENT_CLASS(XvcPolyline, XvcVertexObj)

void XvcPolyline::CreateVertexBuffer(XVertBuffer* buffer, const XWarp2D* warp,
                                     const tagXDrawAttrs* attrs)
{
    if (!buffer) return;
    XfnRecordPolyline(buffer, XfnGetWarpedVertices(m_vertices, ChooseWarp(warp)),
                      XVectorPaint(*this, attrs));
}

int XvcPolyline::ImportFromWkb(const unsigned char* bytes, std::size_t& size, XString& error)
{
    Touch();
    XWkbGeometry read;
    if (!read.Read(bytes, size, {XWkbReader::kLineString}, "a line string", error)) return 0;
    m_vertices = std::move(read.parts[0][0]);
    return 1;
}

XString XvcPolyline::ExportToWkt() const
{
    return XWktWriter::FromLine(m_vertices);
}
