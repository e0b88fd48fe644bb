#include "foundation/vector/XvcGroup.h"

#include "foundation/vector/XHitGeometry.h"
#include "foundation/vector/XVertexMath.h"
#include "foundation/vector/XWkbReader.h"
#include "foundation/vector/XvcMPoint.h"
#include "foundation/vector/XvcMPolygon.h"
#include "foundation/vector/XvcMPolyline.h"

#include <string>
#include <utility>

X_IMPLEMENT_CLASS(XvcGroup, XvcPartsObj)

namespace {

constexpr std::size_t kMinGeometryBytes = 5;

// The class for the geometry that begins here; null for a collection. The head was read.
std::unique_ptr<XvcObj> NewForKind(std::uint32_t kind, XWkbReader& reader)
{
    std::uint32_t rings = 0;
    switch (kind) {
    case XWkbReader::kPoint:
        return std::make_unique<XvcPoint>();
    case XWkbReader::kLineString:
        return std::make_unique<XvcPolyline>();
    case XWkbReader::kPolygon:
        if (reader.ReadU32(rings) && rings > 1) return std::make_unique<XvcMPolygon>();
        return std::make_unique<XvcPolygon>();
    case XWkbReader::kMultiPoint:
        return std::make_unique<XvcMPoint>();
    case XWkbReader::kMultiLineString:
        return std::make_unique<XvcMPolyline>();
    case XWkbReader::kMultiPolygon:
        return std::make_unique<XvcMPolygon>();
    default:
        return nullptr;
    }
}

} // namespace

std::unique_ptr<XvcObj> XvcGroup::ReleaseObjAt(int index)
{
    Touch();
    if (!GetPartAt(index)) return nullptr;
    auto released = std::move(m_parts[static_cast<std::size_t>(index)]);
    m_parts.erase(m_parts.begin() + index);
    released->SetParentLayer(nullptr);
    return released;
}

XvcObj* XvcGroup::HitTest(const tagXVector3& point, double toleranceX, double toleranceY,
                          tagXHitFlag& hitFlag)
{
    tagXHitFlag ofMember;
    if (!HitTestMembers(point, toleranceX, toleranceY, ofMember)) return nullptr;
    hitFlag = {tagXHitFlag::kBody, 0};
    return this;
}

XvcObj* XvcGroup::HitTestMembers(const tagXVector3& point, double toleranceX, double toleranceY,
                                 tagXHitFlag& hitFlag)
{
    for (auto part = m_parts.rbegin(); part != m_parts.rend(); ++part) {
        if ((*part)->IsHidden()) continue;
        if (XvcObj* hit = (*part)->HitTest(point, toleranceX, toleranceY, hitFlag)) return hit;
    }
    return nullptr;
}

tagXVector3* XvcGroup::MoveVertex(int hitIndex, double dx, double dy, double dz)
{
    Touch();
    const int corner = hitIndex - tagXHitFlag::kFirstCorner;
    if (corner < 0 || corner > 3 || m_range.IsEmpty()) return nullptr;
    const tagXVectorRange box = m_range;
    const bool isLeft = corner < 2;
    const bool isLower = corner == 0 || corner == 3;
    m_corner = {isLeft ? box.minX : box.maxX, isLower ? box.minY : box.maxY, box.minZ};
    const tagXVector3 fixed(isLeft ? box.maxX : box.minX, isLower ? box.maxY : box.minY);
    const tagXShift shift{dx, dy, dz};
    if (!shift.CanApply(m_corner)) return &m_corner;
    const tagXVector3 before = m_corner;
    shift.Apply(m_corner);
    const double factorX = (m_corner.x - fixed.x) / (before.x - fixed.x);
    const double factorY = (m_corner.y - fixed.y) / (before.y - fixed.y);
    const bool hasX = XfnIsSet(factorX) && factorX != 0.0; // false where a side has no length
    const bool hasY = XfnIsSet(factorY) && factorY != 0.0;
    // scaling about the origin, where a box from 0 to 1 / factor onto the unit square is just that
    MoveObject(-fixed.x, -fixed.y, 0.0);
    Normalize(0.0, 0.0, hasX ? 1.0 / factorX : 1.0, hasY ? 1.0 / factorY : 1.0);
    MoveObject(fixed.x, fixed.y, dz);
    return &m_corner;
}

int XvcGroup::ImportMembers(const unsigned char* bytes, std::size_t& size, int depth,
                            XString& error)
{
    XWkbReader reader(bytes, bytes ? size : 0);
    XWkbReader::Head head;
    if (!reader.ReadHead(head)) {
        error = "The geometry does not begin with a known byte order and type.";
        return 0;
    }
    std::uint32_t count = 1;
    std::size_t used = 0;
    if (head.kind == XWkbReader::kGeometryCollection) {
        if (depth >= kMaxDepth) {
            error = "The geometry holds collections in each other too deep.";
            return 0;
        }
        if (!reader.ReadCount(kMinGeometryBytes, count)) {
            error = "The geometry ends within its count of members.";
            return 0;
        }
        used = reader.GetUsed();
    }
    for (std::uint32_t i = 0; i < count; ++i) {
        XWkbReader member(bytes + used, size - used);
        if (!member.ReadHead(head)) {
            error = "The geometry ends within its members.";
            return 0;
        }
        std::size_t left = size - used;
        if (auto object = NewForKind(head.kind, member)) {
            GiveAttributes(*object);
            if (!object->ImportFromWkb(bytes + used, left, error)) return 0;
            AddPart(std::move(object));
        } else {
            auto group = std::make_unique<XvcGroup>();
            GiveAttributes(*group);
            if (!group->ImportMembers(bytes + used, left, depth + 1, error)) return 0;
            AddPart(std::move(group));
        }
        used += left;
    }
    size = used;
    return 1;
}

int XvcGroup::ImportFromWkb(const unsigned char* bytes, std::size_t& size, XString& error)
{
    Touch();
    XvcGroup read;
    GiveAttributes(read);
    std::size_t used = size;
    if (!read.ImportMembers(bytes, used, 1, error)) return 0;
    m_parts.clear();
    for (auto& part : read.m_parts)
        AddPart(std::move(part));
    size = used;
    return 1;
}

XString XvcGroup::ExportToWkt() const
{
    std::string text;
    for (const auto& part : m_parts) {
        const XString member = part->ExportToWkt();
        if (member.IsEmpty()) continue;
        text += text.empty() ? "GEOMETRYCOLLECTION (" : ", ";
        text += member.View();
    }
    return text.empty() ? XString("GEOMETRYCOLLECTION EMPTY") : XString(text + ")");
}
