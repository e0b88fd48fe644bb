#include "foundation/vector/XvcPolypoint.h"

#include "foundation/base/XArchive.h"
#include "foundation/surface/XVertBuffer.h"
#include "foundation/vector/XVectorPaint.h"
#include "foundation/vector/XVertexMath.h"
#include "foundation/vector/XWkbGeometry.h"
#include "foundation/vector/XWkbReader.h"
#include "foundation/vector/XvcPoint.h"

#include <utility>

X_IMPLEMENT_CLASS(XvcPolypoint, XvcVertexObj)

void XvcPolypoint::CreateVertexBuffer(XVertBuffer* buffer, const XWarp2D* warp,
                                      const tagXDrawAttrs* attrs)
{
    if (!buffer) return;
    const XVectorPaint paint(*this, attrs);
    for (int i = 0; i < GetSize(); ++i) {
        XvcPoint::Record(*buffer, GetAt(i), m_type, paint, ChooseWarp(warp));
    }
}

int XvcPolypoint::ImportFromWkb(const unsigned char* bytes, std::size_t& size, XString& error)
{
    Touch();
    XWkbGeometry read;
    if (!read.Read(bytes, size, {XWkbReader::kPoint, XWkbReader::kMultiPoint}, "a point or several",
                   error)) {
        return 0;
    }
    XVertexArray vertices;
    vertices.Reserve(static_cast<int>(read.parts.size()));
    for (const auto& part : read.parts)
        vertices.Add(part[0].GetAt(0));
    m_vertices = std::move(vertices);
    return 1;
}

XString XvcPolypoint::ExportToWkt() const
{
    return XWktWriter::FromPoints(m_vertices);
}

void XvcPolypoint::StoreOwn(XArchive& archive) const
{
    archive << m_type;
}

void XvcPolypoint::LoadOwn(XArchive& archive)
{
    archive >> m_type;
}
