#include "foundation/vector/XvcBoxObj.h"

#include "foundation/base/XArchive.h"
#include "foundation/base/XPtrArray.h"
#include "foundation/base/XWarp2D.h"
#include "foundation/vector/XHitGeometry.h"
#include "foundation/vector/XObjAttributes.h"
#include "foundation/vector/XVertexMath.h"

#include <algorithm>
#include <utility>

X_IMPLEMENT_CLASS(XvcBoxObj, XvcObj)

namespace {

constexpr std::uint8_t kArchiveVersion = 1;

// Moves one side. Sides that were set in the other order are put right first, but not those that
// this drag itself carried past each other: the pointer still holds the side it began with.
void MoveSide(double& low, double& high, bool isHigh, double step, bool& isCrossed)
{
    if (!isCrossed && low > high) std::swap(low, high);
    (isHigh ? high : low) += step;
    isCrossed = low > high;
}

} // namespace

void XvcBoxObj::SetLeftTop(const tagXVector3& vertex)
{
    Touch();
    m_leftTop = vertex;
    m_isCrossedX = m_isCrossedY = false;
}

void XvcBoxObj::SetRightBottom(const tagXVector3& vertex)
{
    Touch();
    m_rightBottom = vertex;
    m_isCrossedX = m_isCrossedY = false;
}

void XvcBoxObj::GetBound(double& left, double& top, double& right, double& bottom) const
{
    if (!IsSet()) {
        left = top = right = bottom = kXNotSet;
        return;
    }
    left = std::min(m_leftTop.x, m_rightBottom.x);
    right = std::max(m_leftTop.x, m_rightBottom.x);
    bottom = std::min(m_leftTop.y, m_rightBottom.y);
    top = std::max(m_leftTop.y, m_rightBottom.y);
}

void XvcBoxObj::SetBound(double left, double top, double right, double bottom)
{
    Touch();
    SetLeftTop({left, top, m_leftTop.z});
    SetRightBottom({right, bottom, m_rightBottom.z});
}

tagXVector3 XvcBoxObj::GetPosition() const
{
    double left, top, right, bottom;
    GetBound(left, top, right, bottom);
    return {left, top, m_leftTop.z};
}

void XvcBoxObj::SetPosition(const tagXVector3& position)
{
    Touch();
    double left, top, right, bottom;
    GetBound(left, top, right, bottom);
    const bool hadBox = IsSet() && XfnIsUsable(position);
    const double width = hadBox ? right - left : 0.0;
    const double height = hadBox ? top - bottom : 0.0;
    SetLeftTop(position);
    SetRightBottom({position.x + width, position.y - height, position.z});
}

void XvcBoxObj::SetZ(double z)
{
    Touch();
    m_leftTop.z = z;
    m_rightBottom.z = z;
}

int XvcBoxObj::IsSet() const
{
    return XfnIsUsable(m_leftTop) && XfnIsUsable(m_rightBottom) ? 1 : 0;
}

void XvcBoxObj::Serialize(XArchive& archive)
{
    if (archive.IsStoring()) {
        archive << kArchiveVersion;
        XvcObj::Serialize(archive);
        for (const tagXVector3* vertex : {&m_leftTop, &m_rightBottom}) {
            archive << vertex->x << vertex->y << vertex->z;
        }
        StoreOwn(archive);
        return;
    }
    const XvcObj attributes = XfnLoadAttributes(*this, kArchiveVersion, archive);
    tagXVector3 leftTop, rightBottom;
    for (tagXVector3* vertex : {&leftTop, &rightBottom}) {
        archive >> vertex->x >> vertex->y >> vertex->z;
    }
    LoadOwn(archive);
    XvcObj::operator=(attributes);
    SetLeftTop(leftTop);
    SetRightBottom(rightBottom);
}

void XvcBoxObj::StoreOwn(XArchive&) const {}

void XvcBoxObj::LoadOwn(XArchive&) {}

void XvcBoxObj::CalcRange()
{
    m_range.Clear();
    if (!IsSet()) return;
    for (const tagXVector3* vertex : {&m_leftTop, &m_rightBottom}) {
        m_range.Add(vertex->x, vertex->y, XfnIsSet(vertex->z) ? vertex->z : 0.0);
    }
}

XvcObj* XvcBoxObj::HitTest(const tagXVector3& point, double toleranceX, double toleranceY,
                           tagXHitFlag& hitFlag)
{
    const tagXHitPointer pointer = XfnMakeHitPointer(point, toleranceX, toleranceY);
    if (!IsSet() || !pointer.isUsable) return nullptr;
    m_isCrossedX = m_isCrossedY = false; // a press begins a new drag
    double left, top, right, bottom;
    GetBound(left, top, right, bottom);
    const double corners[kCornerCount][2] = {
        {left, bottom}, {left, top}, {right, top}, {right, bottom}};
    double nearest = 1.0; // where the tolerance is 1
    int corner = -1;
    for (int i = 0; i < kCornerCount; ++i) {
        const double distance = XfnHitDistanceSquared(pointer, corners[i][0], corners[i][1]);
        if (distance > nearest || (corner >= 0 && distance == nearest)) continue;
        nearest = distance;
        corner = i;
    }
    if (corner >= 0) {
        hitFlag = {tagXHitFlag::kFirstCorner + corner, corner};
        return this;
    }
    if (point.x < left || point.x > right || point.y < bottom || point.y > top) return nullptr;
    hitFlag = {tagXHitFlag::kBody, 0};
    return this;
}

void XvcBoxObj::AddCtrlPoints(XPtrArray& array)
{
    array.Add(&m_leftTop);
    array.Add(&m_rightBottom);
}

void XvcBoxObj::MoveObject(double dx, double dy, double dz)
{
    Touch();
    const tagXShift shift{dx, dy, dz};
    if (!IsSet() || !shift.CanApply(m_leftTop) || !shift.CanApply(m_rightBottom)) return;
    shift.Apply(m_leftTop);
    shift.Apply(m_rightBottom);
}

tagXVector3* XvcBoxObj::MoveVertex(int hitIndex, double dx, double dy, double dz)
{
    Touch();
    if (hitIndex < kLowerLeft || hitIndex > kLowerRight || !IsSet()) return nullptr;
    const bool isRight = hitIndex == kUpperRight || hitIndex == kLowerRight;
    const bool isTop = hitIndex == kUpperLeft || hitIndex == kUpperRight;
    tagXVector3* const moved = isRight ? &m_rightBottom : &m_leftTop;
    const tagXShift shift{dx, dy, dz};
    if (!shift.CanApply(m_leftTop) || !shift.CanApply(m_rightBottom)) return moved;
    MoveSide(m_leftTop.x, m_rightBottom.x, isRight, dx, m_isCrossedX);
    MoveSide(m_rightBottom.y, m_leftTop.y, isTop, dy, m_isCrossedY);
    const tagXShift lift{0.0, 0.0, dz};
    lift.Apply(m_leftTop);
    lift.Apply(m_rightBottom);
    return moved;
}

void XvcBoxObj::RotateObject(double x, double y, double angle)
{
    Touch();
    const tagXTurn turn(x, y, angle);
    if (!IsSet() || !turn.isValid) return;
    tagXVector3 centre{m_leftTop.x / 2.0 + m_rightBottom.x / 2.0,
                       m_leftTop.y / 2.0 + m_rightBottom.y / 2.0};
    if (!turn.CanApply(centre)) return;
    const tagXVector3 before = centre;
    turn.Apply(centre);
    MoveObject(centre.x - before.x, centre.y - before.y, 0.0);
}

void XvcBoxObj::Normalize(double minX, double minY, double maxX, double maxY)
{
    Touch();
    const tagXUnitMap map(minX, minY, maxX, maxY);
    if (!IsSet() || !map.isValid || !map.CanApply(m_leftTop) || !map.CanApply(m_rightBottom)) {
        return;
    }
    map.Apply(m_leftTop);
    map.Apply(m_rightBottom);
}

int XvcBoxObj::GetCorners(const XWarp2D* warp, tagXVector3 (&corners)[kCornerCount]) const
{
    if (!IsSet()) return 0;
    double left, top, right, bottom;
    GetBound(left, top, right, bottom);
    corners[0] = {left, bottom};
    corners[1] = {left, top};
    corners[2] = {right, top};
    corners[3] = {right, bottom};
    const XWarp2D* const map = ChooseWarp(warp);
    for (tagXVector3& corner : corners) {
        if (map) map->Warp(corner.x, corner.y);
        if (!XfnIsUsable(corner)) return 0;
    }
    return 1;
}
