#include "foundation/vector/XvcRectObj.h"

#include "foundation/base/XSentinels.h"
#include "foundation/vector/XVertexMath.h"

#include <algorithm>
#include <cmath>
#include <numbers>

X_IMPLEMENT_CLASS(XvcRectObj, XvcVertexObj)

namespace {

// The directions of the sides, exact for a rectangle along the axes. A side without length is at
// right angles to the other.
struct Frame
{
    explicit Frame(const XvcRectObj& object)
    {
        const tagXVector3 origin = object.GetAt(0);
        const tagXVector3 lower = object.GetAt(3) - origin;
        const tagXVector3 left = object.GetAt(1) - origin;
        const double width = std::hypot(lower.x, lower.y);
        const double height = std::hypot(left.x, left.y);
        if (width > 0.0) {
            x = {lower.x / width, lower.y / width};
        } else if (height > 0.0) {
            x = {left.y / height, -left.x / height};
        }
        y = {-x.y, x.x};
    }
    tagXVector3 x{1.0, 0.0};
    tagXVector3 y{0.0, 1.0};
};

double Dot(const tagXVector3& a, const tagXVector3& b)
{
    return a.x * b.x + a.y * b.y;
}

double Distance(const tagXVector3& a, const tagXVector3& b)
{
    return std::hypot(a.x - b.x, a.y - b.y);
}

} // namespace

XvcRectObj::XvcRectObj()
{
    m_vertices.Reserve(kCornerCount);
    for (int i = 0; i < kCornerCount; ++i)
        Add(kXNotSet, kXNotSet);
}

void XvcRectObj::Set(double x0, double y0, double z0, double x1, double y1, double z1)
{
    if (!XfnIsUsable({x0, y0}) || !XfnIsUsable({x1, y1})) {
        for (int i = 0; i < kCornerCount; ++i)
            SetAt(i, kXNotSet, kXNotSet);
        return;
    }
    const bool isUpsideDown = y1 < y0;
    const double left = std::min(x0, x1), right = std::max(x0, x1);
    const double bottom = std::min(y0, y1), top = std::max(y0, y1);
    const double lowZ = isUpsideDown ? z1 : z0;
    const double highZ = isUpsideDown ? z0 : z1;
    SetAt(0, left, bottom, lowZ);
    SetAt(1, left, top, highZ);
    SetAt(2, right, top, highZ);
    SetAt(3, right, bottom, lowZ);
}

int XvcRectObj::IsSet() const
{
    for (int i = 0; i < kCornerCount; ++i) {
        if (!XfnIsUsable(GetAt(i))) return 0;
    }
    return 1;
}

double XvcRectObj::GetBoxWidth() const
{
    return IsSet() ? Distance(GetAt(0), GetAt(3)) : 0.0;
}

double XvcRectObj::GetBoxHeight() const
{
    return IsSet() ? Distance(GetAt(0), GetAt(1)) : 0.0;
}

double XvcRectObj::GetBoxAngleDeg() const
{
    if (!IsSet()) return 0.0;
    const Frame frame(*this);
    return std::atan2(frame.x.y, frame.x.x) * 180.0 / std::numbers::pi;
}

tagXVector3* XvcRectObj::MoveVertex(int hitIndex, double dx, double dy, double dz)
{
    Touch();
    const int corner =
        hitIndex >= tagXHitFlag::kFirstCorner ? hitIndex - tagXHitFlag::kFirstCorner : hitIndex;
    if (corner < 0 || corner >= kCornerCount) return nullptr;
    const int sameRow = kCornerCount - 1 - corner; // the other one of the lower or upper side
    const int sameColumn = corner ^ 1;             // the other one of the left or right side
    tagXVector3 moved = GetAt(corner);
    const tagXShift shift{dx, dy, dz};
    if (IsSet() && shift.CanApply(moved)) {
        const tagXVector3 fixed = GetAt((corner + 2) % kCornerCount);
        const Frame frame(*this);
        shift.Apply(moved);
        const tagXVector3 diagonal(moved.x - fixed.x, moved.y - fixed.y);
        tagXVector3 inRow = fixed + frame.y * Dot(diagonal, frame.y);
        tagXVector3 inColumn = fixed + frame.x * Dot(diagonal, frame.x);
        if (frame.x.y == 0.0) { // exactly, without the rounding of the difference
            inRow = {fixed.x, moved.y};
            inColumn = {moved.x, fixed.y};
        } else if (frame.x.x == 0.0) {
            inRow = {moved.x, fixed.y};
            inColumn = {fixed.x, moved.y};
        }
        if (XfnIsUsable(inRow) && XfnIsUsable(inColumn)) {
            SetAt(corner, moved);
            SetAt(sameRow, inRow.x, inRow.y, moved.z);
            SetAt(sameColumn, inColumn.x, inColumn.y, fixed.z);
        }
    }
    return m_vertices.GetDataAt(corner);
}
