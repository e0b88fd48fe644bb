#include "foundation/vector/XvcBalloon.h"

#include "foundation/base/XArchive.h"
#include "foundation/base/XFileException.h"
#include "foundation/base/XPtrArray.h"
#include "foundation/surface/XVertBuffer.h"
#include "foundation/vector/XHitGeometry.h"
#include "foundation/vector/XVectorPaint.h"
#include "foundation/vector/XVertexMath.h"

#include <algorithm>
#include <cmath>
#include <vector>

X_IMPLEMENT_CLASS(XvcBalloon, XvcTextBox)

namespace {

constexpr std::uint8_t kArchiveVersion = 1;
constexpr double kRootShare = 0.2;   // of the side that the pointer leaves, at its root
constexpr double kFirstAlong = 0.25; // where the first pointer ends, in shares of the box
constexpr double kFirstBelow = 0.5;

// How far outside of low to high a coordinate lies, negative below.
double GetExcess(double value, double low, double high)
{
    return value < low ? value - low : value > high ? value - high : 0.0;
}

} // namespace

XvcBalloon::XvcBalloon(XHWND parent) : XvcTextBox(parent), m_point(kXNotSet, kXNotSet)
{
    SetDrawBorder(1);
}

void XvcBalloon::GetPointPosition(double& x, double& y, double& z) const
{
    x = m_point.x;
    y = m_point.y;
    z = m_point.z;
}

void XvcBalloon::SetPointPosition(const tagXVector3& position)
{
    Touch();
    m_point = position;
}

void XvcBalloon::CalcBound(double width, double height)
{
    XvcTextBox::CalcBound(width, height);
    if (XfnIsUsable(m_point) || !IsSet()) return;
    double left, top, right, bottom;
    GetBound(left, top, right, bottom);
    SetPointPosition(left + (right - left) * kFirstAlong, bottom - (top - bottom) * kFirstBelow,
                     GetZ());
}

// The corners in the order of their kinds, lower left first, and the pointer in the side that it
// leaves: that beyond which the position lies farthest, measured by the box.
int XvcBalloon::GetOutline(tagXVector3 (&ring)[kCornerCount + 3]) const
{
    double left, top, right, bottom;
    GetBound(left, top, right, bottom);
    const tagXVector3 corners[kCornerCount] = {
        {left, bottom}, {left, top}, {right, top}, {right, bottom}};
    const double width = right - left, height = top - bottom;
    double beyondX = 0.0, beyondY = 0.0;
    if (XfnIsUsable(m_point) && width > 0.0 && height > 0.0) {
        beyondX = GetExcess(m_point.x, left, right) / width;
        beyondY = GetExcess(m_point.y, bottom, top) / height;
    }
    int side = -1; // from the corner of this index to the next
    if (std::max(std::fabs(beyondX), std::fabs(beyondY)) > 0.0) {
        if (std::fabs(beyondX) > std::fabs(beyondY)) {
            side = beyondX < 0.0 ? 0 : 2;
        } else {
            side = beyondY > 0.0 ? 1 : 3;
        }
    }
    int count = 0;
    for (int i = 0; i < kCornerCount; ++i) {
        ring[count++] = corners[i];
        if (i != side) continue;
        const tagXVector3& next = corners[(i + 1) % kCornerCount];
        const auto at = [&](double share) {
            return tagXVector3(corners[i].x + (next.x - corners[i].x) * share,
                               corners[i].y + (next.y - corners[i].y) * share);
        };
        const bool isUpright = side == 0 || side == 2;
        const double nearest = isUpright ? (m_point.y - corners[i].y) / (next.y - corners[i].y)
                                         : (m_point.x - corners[i].x) / (next.x - corners[i].x);
        const double middle = std::clamp(nearest, kRootShare / 2.0, 1.0 - kRootShare / 2.0);
        ring[count++] = at(middle - kRootShare / 2.0);
        ring[count++] = m_point;
        ring[count++] = at(middle + kRootShare / 2.0);
    }
    return count;
}

void XvcBalloon::RecordFrame(XVertBuffer& buffer, const tagXVector3 (&)[kCornerCount],
                             const XWarp2D* warp, const XVectorPaint& paint) const
{
    tagXVector3 ring[kCornerCount + 3];
    const int count = GetOutline(ring);
    std::vector<tagXVector3> vertices(ring, ring + count);
    XfnWarpVertices(vertices, warp);
    buffer.AddPolygon(vertices.data(), vertices.size(), GetDrawBorder() ? paint.GetLine() : nullptr,
                      paint.GetFill());
}

tagXVectorRange XvcBalloon::GetDrawnExtent() const
{
    tagXVectorRange extent = m_range;
    if (!extent.IsEmpty()) extent.Add(m_point.x, m_point.y, extent.minZ);
    return extent;
}

XvcObj* XvcBalloon::HitTest(const tagXVector3& point, double toleranceX, double toleranceY,
                            tagXHitFlag& hitFlag)
{
    const tagXHitPointer pointer = XfnMakeHitPointer(point, toleranceX, toleranceY);
    if (!pointer.isUsable || !IsSet()) return nullptr;
    if (XfnIsUsable(m_point) && XfnHitDistanceSquared(pointer, m_point.x, m_point.y) <= 1.0) {
        hitFlag = {tagXHitFlag::kVertex, 0};
        return this;
    }
    if (XvcObj* const hit = XvcTextBox::HitTest(point, toleranceX, toleranceY, hitFlag)) {
        return hit;
    }
    tagXVector3 ring[kCornerCount + 3];
    const int count = GetOutline(ring);
    double coords[2 * (kCornerCount + 3)];
    for (int i = 0; i < count; ++i) {
        coords[2 * i] = ring[i].x;
        coords[2 * i + 1] = ring[i].y;
    }
    if (!XfnIsInRing(point.x, point.y, coords, 2, static_cast<std::size_t>(count))) return nullptr;
    hitFlag = {tagXHitFlag::kBody, 0};
    return this;
}

void XvcBalloon::AddCtrlPoints(XPtrArray& array)
{
    XvcTextBox::AddCtrlPoints(array);
    array.Add(&m_point);
}

void XvcBalloon::MoveObject(double dx, double dy, double dz)
{
    const tagXShift shift{dx, dy, dz};
    const bool hasPoint = XfnIsUsable(m_point);
    if (hasPoint && !shift.CanApply(m_point)) return; // whole or not at all
    const tagXVector3 before = GetLeftTop();
    XvcTextBox::MoveObject(dx, dy, dz);
    const tagXVector3& after = GetLeftTop();
    const bool isMoved = after.x != before.x || after.y != before.y || after.z != before.z;
    if (hasPoint && isMoved) shift.Apply(m_point);
}

tagXVector3* XvcBalloon::MoveVertex(int hitIndex, double dx, double dy, double dz)
{
    if (hitIndex != 0) return XvcTextBox::MoveVertex(hitIndex, dx, dy, dz);
    Touch();
    const tagXShift shift{dx, dy, dz};
    if (shift.CanApply(m_point)) shift.Apply(m_point);
    return &m_point;
}

void XvcBalloon::RotateObject(double x, double y, double angle)
{
    const tagXTurn turn(x, y, angle);
    if (XfnIsUsable(m_point) && !turn.CanApply(m_point)) return;
    XvcTextBox::RotateObject(x, y, angle);
    if (XfnIsUsable(m_point) && turn.isValid) turn.Apply(m_point);
}

void XvcBalloon::Normalize(double minX, double minY, double maxX, double maxY)
{
    const tagXUnitMap map(minX, minY, maxX, maxY);
    if (XfnIsUsable(m_point) && !map.CanApply(m_point)) return;
    XvcTextBox::Normalize(minX, minY, maxX, maxY);
    if (XfnIsUsable(m_point) && map.isValid) map.Apply(m_point);
}

void XvcBalloon::StoreOwn(XArchive& archive) const
{
    XvcTextBox::StoreOwn(archive);
    archive << kArchiveVersion << m_point.x << m_point.y << m_point.z;
}

void XvcBalloon::LoadOwn(XArchive& archive)
{
    XvcBalloon loaded; // takes nothing over before all of it was read
    loaded.XvcTextBox::LoadOwn(archive);
    std::uint8_t version = 0;
    tagXVector3 point;
    archive >> version >> point.x >> point.y >> point.z;
    if (version != kArchiveVersion) throw XFileException(XFileException::kInvalidFile);
    TakeOwn(loaded);
    m_point = point;
}
