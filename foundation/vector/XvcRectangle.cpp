#include "foundation/vector/XvcRectangle.h"

#include "foundation/vector/XVectorPaint.h"
#include "foundation/vector/XVertexMath.h"
#include "foundation/vector/XWkbGeometry.h"
#include "foundation/vector/XWkbReader.h"

#include <algorithm>
#include <cmath>

X_IMPLEMENT_CLASS(XvcRectangle, XvcRectObj)

namespace {

constexpr double kSquareness = 1e-6; // of the diagonal: coordinates come rounded

// The ring with its corners in their order, clockwise from the lower left; false if it is none.
bool OrderCorners(const XVertexArray& ring, XVertexArray& corners)
{
    constexpr int kCount = XvcRectObj::kCornerCount;
    if (ring.GetSize() != kCount) return false;
    const tagXVector3 gap = ring.GetAt(0) + ring.GetAt(2) - ring.GetAt(1) - ring.GetAt(3);
    const tagXVector3 first = ring.GetAt(2) - ring.GetAt(0);
    const tagXVector3 second = ring.GetAt(3) - ring.GetAt(1);
    const double diagonal = std::hypot(first.x, first.y);
    const double other = std::hypot(second.x, second.y);
    // a quadrangle whose diagonals halve each other and are as long is a rectangle
    const double allowed = kSquareness * std::max(diagonal, other);
    if (!(std::hypot(gap.x, gap.y) <= allowed) || !(std::fabs(diagonal - other) <= allowed)) {
        return false;
    }
    const int step = XfnGetSignedArea(ring) > 0.0 ? kCount - 1 : 1;
    const auto lowness = [&](int i) { return ring.GetX(i) + ring.GetY(i); };
    int start = 0;
    for (int i = 1; i < kCount; ++i)
        start = lowness(i) < lowness(start) ? i : start;
    for (int i = 0; i < kCount; ++i)
        corners.Add(ring.GetAt((start + i * step) % kCount));
    return true;
}

} // namespace

void XvcRectangle::CreateVertexBuffer(XVertBuffer* buffer, const XWarp2D* warp,
                                      const tagXDrawAttrs* attrs)
{
    if (!buffer || !IsSet()) return;
    XfnRecordPolygon(buffer, XfnGetWarpedVertices(m_vertices, ChooseWarp(warp)),
                     XVectorPaint(*this, attrs));
}

int XvcRectangle::ImportFromWkb(const unsigned char* bytes, std::size_t& size, XString& error)
{
    Touch();
    XWkbGeometry read;
    std::size_t used = size;
    if (!read.Read(bytes, used, {XWkbReader::kPolygon}, "a polygon", error)) return 0;
    XVertexArray corners;
    if (read.parts[0].size() != 1 || !OrderCorners(read.parts[0][0], corners)) {
        error = "The polygon is not one ring of four corners with right angles.";
        return 0;
    }
    m_vertices = corners;
    size = used;
    return 1;
}

XString XvcRectangle::ExportToWkt() const
{
    return XWktWriter::FromRing(m_vertices);
}
