#include "foundation/vector/XOgrGeometry.h"

#include "foundation/vector/XvcGroup2.h"
#include "foundation/vector/XvcMPolygon.h"
#include "foundation/vector/XvcMPolyline.h"
#include "foundation/vector/XvcPoint.h"
#include "foundation/vector/XvcPolypoint.h"

#include <ogr_geometry.h>

#include <utility>

namespace {

constexpr int kMaxDepth = 16;
constexpr int kPointShape = 5;

XVertexArray ToVertices(const OGRSimpleCurve& curve, bool isRing)
{
    XVertexArray vertices;
    int count = curve.getNumPoints();
    const bool hasZ = curve.Is3D();
    const auto z = [&](int i) { return hasZ ? curve.getZ(i) : 0.0; };
    // rings close by themselves here
    const bool isClosed = isRing && count > 1 && curve.getX(0) == curve.getX(count - 1) &&
                          curve.getY(0) == curve.getY(count - 1) && z(0) == z(count - 1);
    if (isClosed) --count;
    vertices.Reserve(count);
    for (int i = 0; i < count; ++i)
        vertices.Add(curve.getX(i), curve.getY(i), z(i));
    vertices.Shrink();
    return vertices;
}

std::unique_ptr<XvcPolyline> MakeLine(const OGRSimpleCurve& curve)
{
    if (curve.getNumPoints() == 0) return nullptr;
    auto line = std::make_unique<XvcPolyline>();
    line->GetVertexArray() = ToVertices(curve, false);
    return line;
}

/// Rings are added to `rings` as polygons of their own.
void AddRings(const OGRPolygon& polygon, std::vector<std::unique_ptr<XvcPolygon>>& rings)
{
    for (int i = 0; i <= polygon.getNumInteriorRings(); ++i) {
        const OGRLinearRing* ring =
            i == 0 ? polygon.getExteriorRing() : polygon.getInteriorRing(i - 1);
        if (!ring || ring->getNumPoints() == 0) continue;
        rings.push_back(std::make_unique<XvcPolygon>());
        rings.back()->GetVertexArray() = ToVertices(*ring, true);
    }
}

std::unique_ptr<XvcObj> MakeArea(std::vector<std::unique_ptr<XvcPolygon>> rings, bool isSurface)
{
    if (rings.empty()) return nullptr;
    if (rings.size() == 1) return std::move(rings[0]);
    auto area = std::make_unique<XvcMPolygon>();
    for (auto& ring : rings)
        area->AddPolygon(std::move(ring));
    if (isSurface) area->SetPolyFillMode(XvcMPolygon::kWinding);
    return area;
}

std::unique_ptr<XvcObj> Make(const OGRGeometry& geometry, int depth);

std::unique_ptr<XvcObj> MakePoints(const OGRMultiPoint& points)
{
    auto made = std::make_unique<XvcPolypoint>();
    for (const OGRPoint* point : points)
        if (!point->IsEmpty()) made->Add(point->getX(), point->getY(), point->getZ());
    if (made->GetSize() == 0) return nullptr;
    made->GetVertexArray().Shrink();
    made->SetType(kPointShape);
    return made;
}

std::unique_ptr<XvcObj> MakeLines(const OGRMultiLineString& lines)
{
    std::vector<std::unique_ptr<XvcPolyline>> parts;
    for (const OGRLineString* line : lines)
        if (auto made = MakeLine(*line)) parts.push_back(std::move(made));
    if (parts.empty()) return nullptr;
    if (parts.size() == 1) return std::move(parts[0]);
    auto whole = std::make_unique<XvcMPolyline>();
    for (auto& part : parts)
        whole->AddPolyline(std::move(part));
    return whole;
}

std::unique_ptr<XvcObj> MakeGroup(const OGRGeometryCollection& collection, int depth)
{
    if (depth >= kMaxDepth) return nullptr;
    auto group = std::make_unique<XvcGroup2>();
    for (const OGRGeometry* member : collection)
        if (auto made = Make(*member, depth + 1)) group->AddObj(std::move(made));
    if (group->GetNumOfObjs() == 0) return nullptr;
    if (group->GetNumOfObjs() == 1) return group->ReleaseObjAt(0);
    return group;
}

std::unique_ptr<XvcObj> Make(const OGRGeometry& geometry, int depth)
{
    std::vector<std::unique_ptr<XvcPolygon>> rings;
    switch (wkbFlatten(geometry.getGeometryType())) {
    case wkbPoint: {
        const OGRPoint& at = *geometry.toPoint();
        if (at.IsEmpty()) return nullptr;
        auto point = std::make_unique<XvcPoint>(at.getX(), at.getY(), at.getZ());
        point->SetType(kPointShape);
        return point;
    }
    case wkbLineString:
        return MakeLine(*geometry.toLineString());
    case wkbPolygon:
    case wkbTriangle:
        AddRings(*geometry.toPolygon(), rings);
        return MakeArea(std::move(rings), false);
    case wkbMultiPoint:
        return MakePoints(*geometry.toMultiPoint());
    case wkbMultiLineString:
        return MakeLines(*geometry.toMultiLineString());
    case wkbMultiPolygon:
        for (const OGRPolygon* part : *geometry.toMultiPolygon())
            AddRings(*part, rings);
        return MakeArea(std::move(rings), false);
    case wkbPolyhedralSurface:
    case wkbTIN:
        for (const OGRPolygon* face : *geometry.toPolyhedralSurface())
            AddRings(*face, rings);
        return MakeArea(std::move(rings), true);
    case wkbGeometryCollection:
        return MakeGroup(*geometry.toGeometryCollection(), depth);
    default:
        break;
    }
    // curves and what is made of them
    if (!geometry.hasCurveGeometry()) return nullptr;
    const std::unique_ptr<OGRGeometry> straight(geometry.getLinearGeometry());
    if (!straight || straight->hasCurveGeometry()) return nullptr;
    return Make(*straight, depth + 1);
}

} // namespace

std::unique_ptr<XvcObj> XfnMakeFromOgr(const OGRGeometry& geometry)
{
    return Make(geometry, 0);
}
