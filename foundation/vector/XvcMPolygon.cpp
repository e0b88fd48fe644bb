#include "foundation/vector/XvcMPolygon.h"

#include "foundation/base/XArchive.h"
#include "foundation/base/XFileException.h"
#include "foundation/surface/XVertBuffer.h"
#include "foundation/vector/XRingNesting.h"
#include "foundation/vector/XVectorPaint.h"
#include "foundation/vector/XWkbGeometry.h"
#include "foundation/vector/XWkbReader.h"

#include <utility>

X_IMPLEMENT_CLASS(XvcMPolygon, XvcMultiObj)

int XvcMPolygon::AddPolygon(const XvcPolygon& polygon)
{
    return AddPart(std::make_unique<XvcPolygon>(polygon));
}

void XvcMPolygon::SetPolyFillMode(int mode)
{
    Touch();
    if (mode == kAlternate || mode == kWinding) m_fillMode = mode;
}

void XvcMPolygon::CreateVertexBuffer(XVertBuffer* buffer, const XWarp2D* warp,
                                     const tagXDrawAttrs* attrs)
{
    if (!buffer) return;
    std::vector<tagXVector3> vertices;
    std::vector<std::size_t> ringSizes;
    for (int i = 0; i < GetNumOfPolygons(); ++i) {
        const XvcPolygon& ring = *GetPolygonObjAt(i);
        if (ring.IsHidden()) continue;
        const auto& added = XfnGetWarpedVertices(ring.GetVertexArray(), ChooseWarp(warp));
        vertices.insert(vertices.end(), added.begin(), added.end());
        ringSizes.push_back(added.size());
    }
    const XVectorPaint paint(*this, attrs);
    buffer->AddPolygon(vertices.data(), ringSizes.data(), ringSizes.size(), &paint.line,
                       &paint.fill, m_fillMode == kWinding);
}

bool XvcMPolygon::IsInside(double x, double y) const
{
    int turns = 0;
    bool isOdd = false;
    for (int i = 0; i < GetNumOfPolygons(); ++i) {
        const XvcPolygon& ring = *GetPolygonObjAt(i);
        if (ring.IsHidden()) continue;
        if (m_fillMode == kWinding) {
            turns += XfnGetWindingNumber(x, y, ring.GetVertexArray());
        } else if (XfnIsInRing(x, y, ring.GetVertexArray())) {
            isOdd = !isOdd;
        }
    }
    return isOdd || turns != 0;
}

XvcObj* XvcMPolygon::HitTest(const tagXVector3& point, double toleranceX, double toleranceY,
                             tagXHitFlag& hitFlag)
{
    tagXHitFlag found;
    if (XvcMultiObj::HitTest(point, toleranceX, toleranceY, found) &&
        found.kind != tagXHitFlag::kBody) {
        hitFlag = found;
        return this;
    }
    if (!IsInside(point.x, point.y)) return nullptr;
    hitFlag = {tagXHitFlag::kBody, 0};
    return this;
}

int XvcMPolygon::ImportFromWkb(const unsigned char* bytes, std::size_t& size, XString& error)
{
    Touch();
    XWkbGeometry read;
    if (!read.Read(bytes, size, {XWkbReader::kPolygon, XWkbReader::kMultiPolygon},
                   "a polygon or several", error)) {
        return 0;
    }
    RemoveAll();
    for (auto& part : read.parts) {
        for (XVertexArray& ring : part) {
            AddNewPart<XvcPolygon>().GetVertexArray() = std::move(ring);
        }
    }
    m_fillMode = kAlternate;
    return 1;
}

XString XvcMPolygon::ExportToWkt() const
{
    std::vector<const XVertexArray*> rings;
    bool hasZ = false;
    for (int i = 0; i < GetNumOfPolygons(); ++i) {
        const XVertexArray& ring = GetPolygonObjAt(i)->GetVertexArray();
        if (XfnCountUsable(ring) < 3) continue;
        rings.push_back(&ring);
        hasZ = hasZ || XfnHasHeights(ring);
    }
    XWktWriter text("MULTIPOLYGON", hasZ);
    for (const tagXNestedRings& area : XfnNestRings(rings, m_fillMode == kWinding)) {
        text.Open();
        text.AddRing(*rings[area.outer]);
        for (const std::size_t hole : area.holes)
            text.AddRing(*rings[hole]);
        text.Close();
    }
    return text.Take();
}

bool XvcMPolygon::IsPartAllowed(const XvcObj& part) const
{
    return part.IsKindOf(XvcPolygon::GetRuntimeClassStatic()) != 0;
}

void XvcMPolygon::StoreOwn(XArchive& archive) const
{
    archive << m_fillMode;
}

void XvcMPolygon::LoadOwn(XArchive& archive)
{
    int mode = 0;
    archive >> mode;
    if (mode != kAlternate && mode != kWinding) {
        throw XFileException(XFileException::kInvalidFile);
    }
    m_fillMode = mode;
}
