#include "foundation/vector/XvcEllipseObj.h"

#include "foundation/base/XArchive.h"
#include "foundation/base/XPtrArray.h"
#include "foundation/vector/XObjAttributes.h"
#include "foundation/vector/XVectorPaint.h"
#include "foundation/vector/XVertexArray.h"
#include "foundation/vector/XVertexMath.h"
#include "foundation/vector/XWkbGeometry.h"

#include <algorithm>
#include <cmath>
#include <numbers>

X_IMPLEMENT_CLASS(XvcEllipseObj, XvcObj)

namespace {

constexpr std::uint8_t kArchiveVersion = 1;
constexpr double kWholeTurnDeg = 360.0;
const tagXVector3 kNowhere(kXNotSet, kXNotSet, 0.0);

// Cosine and sine, exact at quarter turns: then an ellipse is exactly as wide as its axis says.
struct Angle
{
    explicit Angle(double angleDeg)
    {
        const tagXTurn turn(0.0, 0.0, angleDeg);
        cosine = turn.cosine;
        sine = turn.sine;
    }
    double cosine;
    double sine;
};

} // namespace

void XvcEllipseObj::GetCenter(double& x, double& y, double& z) const
{
    x = m_center.x;
    y = m_center.y;
    z = m_center.z;
}

void XvcEllipseObj::GetAxis(double& axisX, double& axisY) const
{
    axisX = m_axisX;
    axisY = m_axisY;
}

void XvcEllipseObj::SetAxis(double axisX, double axisY)
{
    Touch();
    m_axisX = axisX;
    m_axisY = axisY;
}

void XvcEllipseObj::SetRotate(double angleDeg)
{
    Touch();
    if (std::isfinite(angleDeg)) m_rotateDeg = angleDeg;
}

void XvcEllipseObj::SetResolution(int chords)
{
    Touch();
    m_resolution = std::clamp(chords, kMinResolution, kMaxResolution);
}

void XvcEllipseObj::SetPtStart(const tagXVector3& corner)
{
    Touch();
    m_ptStart = corner;
    if (XfnIsUsable(m_ptStart) && XfnIsUsable(m_ptEnd)) DefineByPoints();
}

void XvcEllipseObj::SetPtEnd(const tagXVector3& corner)
{
    Touch();
    m_ptEnd = corner;
    if (XfnIsUsable(m_ptStart) && XfnIsUsable(m_ptEnd)) DefineByPoints();
}

void XvcEllipseObj::DefineByPoints()
{
    Touch();
    m_center = 0.5 * m_ptStart + 0.5 * m_ptEnd;
    m_axisX = std::fabs(0.5 * m_ptEnd.x - 0.5 * m_ptStart.x);
    m_axisY = std::fabs(0.5 * m_ptEnd.y - 0.5 * m_ptStart.y);
    m_rotateDeg = 0.0;
}

void XvcEllipseObj::ForgetPoints()
{
    Touch();
    m_ptStart = kNowhere;
    m_ptEnd = kNowhere;
}

int XvcEllipseObj::IsSet() const
{
    return XfnIsUsable(m_center) && XfnIsSet(m_axisX) && XfnIsSet(m_axisY) ? 1 : 0;
}

void XvcEllipseObj::GetSweep(double& startDeg, double& sweepDeg) const
{
    startDeg = 0.0;
    sweepDeg = kWholeTurnDeg;
}

tagXVector3 XvcEllipseObj::GetPointAt(double angleDeg) const
{
    const Angle on(angleDeg);
    const Angle turn(m_rotateDeg);
    const double x = m_axisX * on.cosine;
    const double y = m_axisY * on.sine;
    return {m_center.x + (x * turn.cosine - y * turn.sine),
            m_center.y + (x * turn.sine + y * turn.cosine), m_center.z};
}

void XvcEllipseObj::GetOutline(std::vector<tagXVector3>& outline) const
{
    outline.clear();
    if (!IsSet()) return;
    double startDeg = 0.0, sweepDeg = 0.0;
    GetSweep(startDeg, sweepDeg);
    const bool isWhole = sweepDeg >= kWholeTurnDeg;
    const double endDeg = startDeg + sweepDeg;
    const double stepDeg = kWholeTurnDeg / m_resolution;
    outline.reserve(static_cast<std::size_t>(m_resolution) + 3);
    outline.push_back(GetPointAt(startDeg));
    // an arc bends where the whole ellipse does, so the two lie on each other
    for (double k = std::floor(startDeg / stepDeg) + 1.0; k * stepDeg < endDeg; k += 1.0) {
        outline.push_back(GetPointAt(k * stepDeg));
    }
    if (!isWhole || !IsClosed()) outline.push_back(GetPointAt(endDeg));
    if (IsPie() && !isWhole) outline.push_back(m_center);
}

void XvcEllipseObj::Serialize(XArchive& archive)
{
    if (archive.IsStoring()) {
        archive << kArchiveVersion;
        XvcObj::Serialize(archive);
        for (const tagXVector3* vertex : {&m_center, &m_ptStart, &m_ptEnd}) {
            archive << vertex->x << vertex->y << vertex->z;
        }
        archive << m_axisX << m_axisY << m_rotateDeg << m_resolution;
        StoreOwn(archive);
        return;
    }
    const XvcObj attributes = XfnLoadAttributes(*this, kArchiveVersion, archive);
    tagXVector3 center, ptStart, ptEnd;
    for (tagXVector3* vertex : {&center, &ptStart, &ptEnd}) {
        archive >> vertex->x >> vertex->y >> vertex->z;
    }
    double axisX = 0.0, axisY = 0.0, rotateDeg = 0.0;
    int resolution = 0;
    archive >> axisX >> axisY >> rotateDeg >> resolution;
    LoadOwn(archive);
    XvcObj::operator=(attributes);
    m_center = center;
    m_ptStart = ptStart;
    m_ptEnd = ptEnd;
    SetAxis(axisX, axisY);
    SetRotate(rotateDeg);
    SetResolution(resolution);
}

void XvcEllipseObj::StoreOwn(XArchive&) const {}

void XvcEllipseObj::LoadOwn(XArchive&) {}

void XvcEllipseObj::CalcRange()
{
    std::vector<tagXVector3> outline;
    GetOutline(outline);
    m_range.Clear();
    const double z = XfnIsSet(m_center.z) ? m_center.z : 0.0;
    for (const tagXVector3& vertex : outline)
        m_range.Add(vertex.x, vertex.y, z);
}

tagXVectorRange XvcEllipseObj::GetHitExtent() const
{
    tagXVectorRange extent = m_range;
    for (const double angleDeg : {0.0, 90.0}) {
        const tagXVector3 end = GetPointAt(angleDeg);
        if (!extent.IsEmpty()) extent.Add(end.x, end.y, extent.minZ);
    }
    return extent;
}

void XvcEllipseObj::CreateVertexBuffer(XVertBuffer* buffer, const XWarp2D* warp,
                                       const tagXDrawAttrs* attrs)
{
    if (!buffer) return;
    std::vector<tagXVector3> outline;
    GetOutline(outline);
    XfnWarpVertices(outline, ChooseWarp(warp));
    const XVectorPaint paint(*this, attrs);
    if (IsClosed()) {
        XfnRecordPolygon(buffer, outline, paint);
    } else {
        XfnRecordPolyline(buffer, outline, paint);
    }
}

XvcObj* XvcEllipseObj::HitTest(const tagXVector3& point, double toleranceX, double toleranceY,
                               tagXHitFlag& hitFlag)
{
    const tagXHitPointer pointer = XfnMakeHitPointer(point, toleranceX, toleranceY);
    if (!IsSet() || !pointer.isUsable) return nullptr;
    const tagXVector3 ends[] = {GetPointAt(0.0), GetPointAt(90.0)};
    for (int i = 0; i < 2; ++i) {
        if (XfnHitDistanceSquared(pointer, ends[i].x, ends[i].y) > 1.0) continue;
        hitFlag = {tagXHitFlag::kVertex, i};
        return this;
    }
    std::vector<tagXVector3> outline;
    GetOutline(outline);
    const bool isClosed = IsClosed();
    const std::size_t count = outline.size();
    bool isHit = isClosed && XfnIsInRing(point.x, point.y, outline[0], 3, count);
    for (std::size_t i = isClosed ? 0 : 1; i < count && !isHit; ++i) {
        const tagXVector3& a = outline[i > 0 ? i - 1 : count - 1];
        isHit = XfnHitDistanceSquared(pointer, a.x, a.y, outline[i].x, outline[i].y) <= 1.0;
    }
    if (!isHit) return nullptr;
    hitFlag = {tagXHitFlag::kBody, 0};
    return this;
}

void XvcEllipseObj::AddCtrlPoints(XPtrArray& array)
{
    array.Add(&m_center);
}

void XvcEllipseObj::MoveObject(double dx, double dy, double dz)
{
    Touch();
    const tagXShift shift{dx, dy, dz};
    if (!shift.CanApply(m_center)) return;
    shift.Apply(m_center);
    ForgetPoints();
}

tagXVector3* XvcEllipseObj::MoveVertex(int hitIndex, double dx, double dy, double)
{
    Touch();
    if (hitIndex != 0 && hitIndex != 1) return nullptr;
    const Angle turn(m_rotateDeg + 90.0 * hitIndex);
    double& axis = hitIndex == 0 ? m_axisX : m_axisY;
    const double half = 0.5 * (dx * turn.cosine + dy * turn.sine);
    const tagXShift shift{half * turn.cosine, half * turn.sine, 0.0};
    if (IsSet() && XfnIsSet(half) && XfnIsSet(axis + half) && shift.CanApply(m_center)) {
        axis += half;
        shift.Apply(m_center);
        ForgetPoints();
    }
    return &m_center;
}

void XvcEllipseObj::RotateObject(double x, double y, double angle)
{
    Touch();
    const tagXTurn turn(x, y, angle);
    if (!XfnIsUsable(m_center) || !turn.CanApply(m_center)) return;
    turn.Apply(m_center);
    m_rotateDeg = std::fmod(m_rotateDeg + std::fmod(angle, kWholeTurnDeg), kWholeTurnDeg);
    ForgetPoints();
}

void XvcEllipseObj::RotateObject(double angle)
{
    Touch();
    RotateObject(m_center.x, m_center.y, angle);
}

void XvcEllipseObj::Normalize(double minX, double minY, double maxX, double maxY)
{
    Touch();
    const tagXUnitMap map(minX, minY, maxX, maxY);
    if (!IsSet() || !map.CanApply(m_center)) return;
    map.Apply(m_center);
    const Angle turn(m_rotateDeg);
    const double scaleX = map.GetScaleX();
    const double scaleY = map.GetScaleY();
    m_axisX *= std::hypot(turn.cosine * scaleX, turn.sine * scaleY);
    m_axisY *= std::hypot(turn.sine * scaleX, turn.cosine * scaleY);
    if (turn.cosine * turn.sine != 0.0) {
        m_rotateDeg =
            std::atan2(turn.sine * scaleY, turn.cosine * scaleX) * 180.0 / std::numbers::pi;
    }
    if (scaleX != 0.0 && GetThick() > 0.0) SetThick(GetThick() * std::fabs(scaleX));
    ForgetPoints();
}

XString XvcEllipseObj::ExportToWkt() const
{
    std::vector<tagXVector3> outline;
    GetOutline(outline);
    XVertexArray vertices;
    for (const tagXVector3& vertex : outline)
        vertices.Add(vertex);
    return IsClosed() ? XWktWriter::FromRing(vertices) : XWktWriter::FromLine(vertices);
}
