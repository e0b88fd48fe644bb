#include "foundation/vector/XvcSymbol.h"

#include "foundation/base/XArchive.h"
#include "foundation/base/XFileException.h"
#include "foundation/vector/XSymbolSet.h"
#include "foundation/vector/XVectorPaint.h"
#include "foundation/vector/XVertexMath.h"
#include "foundation/vector/XvcPoint.h"
#include "foundation/vector/XvcSymbolDef.h"

#include <cmath>

X_IMPLEMENT_CLASS(XvcSymbol, XvcVertexObj)

namespace {

constexpr std::uint8_t kArchiveVersion = 1;
constexpr double kCorners[4][2] = {{-0.5, -0.5}, {-0.5, 0.5}, {0.5, 0.5}, {0.5, -0.5}};
constexpr double kHalfSide = 0.5 + 1e-9; // what rounding takes away at the edge

const XvcSymbolDef* ToDefinition(const XvcObj* found)
{
    if (!found || !found->IsKindOf(XvcSymbolDef::GetRuntimeClassStatic())) return nullptr;
    return static_cast<const XvcSymbolDef*>(found);
}

const XSymbolOutline& GetPlaceholder()
{
    static const XSymbolOutline outline = [] {
        XSymbolOutline made;
        XString error;
        made.Set(XfnGetPlaceholderOutline(), error);
        return made;
    }();
    return outline;
}

} // namespace

XvcSymbol::XvcSymbol() : XvcSymbol(1) {}

XvcSymbol::XvcSymbol(int id, double x, double y, double z) : m_id(id)
{
    Add(x, y, z);
    m_vertices.Shrink();
}

const XvcSymbolDef* XvcSymbol::GetDefinition() const
{
    const XvcSymbolDef* const found = GetOwnDefinition();
    return found ? found : ToDefinition(XfnGetStandardSymbols().Find(m_id));
}

const XvcSymbolDef* XvcSymbol::GetOwnDefinition() const
{
    return m_shared ? ToDefinition(m_shared->Find(m_id)) : nullptr;
}

void XvcSymbol::SetRotate(double angleDeg)
{
    Touch();
    if (std::isfinite(angleDeg)) m_angleDeg = angleDeg;
}

void XvcSymbol::SetScale(double scale)
{
    SetScale(scale, scale);
}

void XvcSymbol::SetScale(double scaleX, double scaleY)
{
    Touch();
    SetScaleX(scaleX);
    SetScaleY(scaleY);
}

void XvcSymbol::SetScaleX(double scale)
{
    Touch();
    if (XfnIsSet(scale)) m_scaleX = scale;
}

void XvcSymbol::SetScaleY(double scale)
{
    Touch();
    if (XfnIsSet(scale)) m_scaleY = scale;
}

XWarp2D XvcSymbol::CalcWarpCoeff(int flag) const
{
    const tagXVector3 center = GetCenter();
    const tagXTurn turn(0.0, 0.0, m_angleDeg);
    XWarp2D place;
    if (!XfnIsUsable(center)) return place;
    place.SetAffine(center.x, turn.cosine * m_scaleX, -turn.sine * m_scaleY, center.y,
                    turn.sine * m_scaleX, turn.cosine * m_scaleY);
    return flag == 0 ? place : place.InverseAffine();
}

void XvcSymbol::CalcRange()
{
    m_range.Clear();
    const XWarp2D place = CalcWarpCoeff(0);
    if (!place.IsValid()) return;
    const double z = GetCenter().z;
    for (const auto& corner : kCorners) {
        double x = corner[0];
        double y = corner[1];
        place.Warp(x, y);
        m_range.Add(x, y, XfnIsSet(z) ? z : 0.0);
    }
}

void XvcSymbol::CreateVertexBuffer(XVertBuffer* buffer, const XWarp2D* warp,
                                   const tagXDrawAttrs* attrs)
{
    const XWarp2D place = CalcWarpCoeff(0);
    if (!buffer || !place.IsValid()) return;
    const XvcSymbolDef* const definition = GetDefinition();
    const XSymbolOutline& outline = definition ? definition->GetOutline() : GetPlaceholder();
    outline.Record(buffer, place, ChooseWarp(warp), XVectorPaint(*this, attrs));
}

XvcObj* XvcSymbol::HitTest(const tagXVector3& point, double toleranceX, double toleranceY,
                           tagXHitFlag& hitFlag)
{
    if (XvcVertexObj::HitTest(point, toleranceX, toleranceY, hitFlag)) return this;
    const XWarp2D toSquare = CalcWarpCoeff(1);
    if (!toSquare.IsValid() || !XfnIsUsable(point)) return nullptr;
    double x = point.x;
    double y = point.y;
    toSquare.Warp(x, y);
    if (!(std::fabs(x) <= kHalfSide) || !(std::fabs(y) <= kHalfSide)) return nullptr;
    hitFlag = {tagXHitFlag::kBody, 0};
    return this;
}

void XvcSymbol::RotateObject(double x, double y, double angle)
{
    const tagXTurn turn(x, y, angle);
    if (!turn.isValid || !XfnIsUsable(GetCenter()) || !turn.CanApply(GetCenter())) return;
    XvcVertexObj::RotateObject(x, y, angle);
    RotateObject(angle);
}

void XvcSymbol::RotateObject(double angle)
{
    Touch();
    if (std::isfinite(angle)) SetRotate(std::fmod(m_angleDeg + std::fmod(angle, 360.0), 360.0));
}

void XvcSymbol::Normalize(double minX, double minY, double maxX, double maxY)
{
    const tagXUnitMap map(minX, minY, maxX, maxY);
    if (!map.isValid || !map.CanApply(GetCenter())) return;
    XvcVertexObj::Normalize(minX, minY, maxX, maxY);
    SetScale(m_scaleX * map.GetScaleX(), m_scaleY * map.GetScaleY());
}

int XvcSymbol::ImportFromWkb(const unsigned char* bytes, std::size_t& size, XString& error)
{
    Touch();
    XvcPoint read;
    if (!read.ImportFromWkb(bytes, size, error)) return 0;
    SetCenter(read.GetVertex());
    return 1;
}

XString XvcSymbol::ExportToWkt() const
{
    const tagXVector3 center = GetCenter();
    return XvcPoint(center.x, center.y, center.z).ExportToWkt();
}

void XvcSymbol::StoreOwn(XArchive& archive) const
{
    archive << kArchiveVersion << m_id << m_angleDeg << m_scaleX << m_scaleY;
}

void XvcSymbol::LoadOwn(XArchive& archive)
{
    std::uint8_t version = 0;
    archive >> version;
    if (version != kArchiveVersion) throw XFileException(XFileException::kInvalidFile);
    int id = 0;
    double angleDeg = 0.0, scaleX = 0.0, scaleY = 0.0;
    archive >> id >> angleDeg >> scaleX >> scaleY;
    m_id = id;
    m_angleDeg = 0.0;
    m_scaleX = m_scaleY = 1.0;
    SetRotate(angleDeg);
    SetScale(scaleX, scaleY);
}
