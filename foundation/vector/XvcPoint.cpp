#include "foundation/vector/XvcPoint.h"

#include "foundation/base/XArchive.h"
#include "foundation/base/XFileException.h"
#include "foundation/base/XNumber.h"
#include "foundation/base/XPtrArray.h"
#include "foundation/base/XWarp2D.h"
#include "foundation/surface/XPointShape.h"
#include "foundation/surface/XVertBuffer.h"
#include "foundation/vector/XDrawAttrs.h"
#include "foundation/vector/XWkbReader.h"

#include <algorithm>
#include <cmath>
#include <numbers>

X_IMPLEMENT_CLASS(XvcPoint, XvcObj)

namespace {

constexpr int kMinPieSegs = 3;
constexpr int kMaxPieSegs = 360;
constexpr std::uint16_t kArchiveVersion = 1;

bool IsUsable(double value)
{
    return std::isfinite(value) && XfnIsSet(value);
}

// A step that would carry a coordinate beyond what a coordinate can be is not taken.
bool CanMove(const tagXVector3& vertex, double dx, double dy, double dz)
{
    return IsUsable(vertex.x + dx) && IsUsable(vertex.y + dy) && IsUsable(dz);
}

// What attributes are drawn with: those that stand in, else the object's own.
tagXDrawAttrs Resolve(const XvcObj& object, const tagXDrawAttrs* attrs)
{
    tagXDrawAttrs used = attrs ? *attrs : tagXDrawAttrs();
    if (!used.lineColor) used.lineColor = object.GetLineColor();
    if (!used.foreColor) used.foreColor = object.GetForeColor();
    if (!used.lineStyle) used.lineStyle = object.GetLineStyle();
    if (!used.thick) used.thick = object.GetThick();
    return used;
}

int ShapeToDraw(int type)
{
    return type >= kXPointDot && type <= kXPointCross ? type : static_cast<int>(kXPointDot);
}

} // namespace

void XvcPoint::SetNumPieSegs(int count)
{
    m_numPieSegs = std::clamp(count, kMinPieSegs, kMaxPieSegs);
}

void XvcPoint::SetWorldPerPixel(double length)
{
    if (length >= 0.0 && IsUsable(length)) m_worldPerPixel = length;
}

int XvcPoint::IsSet() const
{
    return IsUsable(m_vertex.x) && IsUsable(m_vertex.y) ? 1 : 0;
}

double XvcPoint::GetSize() const
{
    const double thick = GetThick();
    if (!IsUsable(thick)) return 0.0;
    if (thick > 0.0) return thick;
    const double pixels = thick == 0.0 ? kDefaultPixels : -thick;
    const double size = pixels * m_worldPerPixel;
    return IsUsable(size) ? size : 0.0;
}

void XvcPoint::Serialize(XArchive& archive)
{
    if (archive.IsStoring()) {
        XvcObj::Serialize(archive);
        archive << kArchiveVersion << m_vertex.x << m_vertex.y << m_vertex.z << m_type
                << m_numPieSegs << m_worldPerPixel;
        return;
    }
    XvcPoint loaded;
    loaded.SetWarpCoeff(GetWarpCeoff());
    loaded.XvcObj::Serialize(archive);
    std::uint16_t version = 0;
    archive >> version;
    if (version != kArchiveVersion) throw XFileException(XFileException::kInvalidFile);
    int segments = 0;
    double worldPerPixel = 0.0;
    archive >> loaded.m_vertex.x >> loaded.m_vertex.y >> loaded.m_vertex.z >> loaded.m_type >>
        segments >> worldPerPixel;
    loaded.SetNumPieSegs(segments);
    loaded.SetWorldPerPixel(worldPerPixel);
    loaded.m_drawListID = m_drawListID;
    *this = loaded;
}

void XvcPoint::CalcRange()
{
    m_range.Clear();
    if (!IsSet()) return;
    const double half = GetSize() / 2.0;
    const double z = IsUsable(m_vertex.z) ? m_vertex.z : 0.0;
    m_range.Add(m_vertex.x - half, m_vertex.y - half, z);
    m_range.Add(m_vertex.x + half, m_vertex.y + half, z);
}

void XvcPoint::CreateVertexBuffer(XVertBuffer* buffer, const XWarp2D* warp,
                                  const tagXDrawAttrs* attrs)
{
    if (!buffer || !IsSet()) return;
    const tagXDrawAttrs used = Resolve(*this, attrs);
    tagXVector3 at = m_vertex;
    double size = IsUsable(*used.thick) ? *used.thick : 0.0;
    if (const XWarp2D* map = ChooseWarp(warp)) {
        double edgeX = at.x + size;
        double edgeY = at.y;
        map->Warp(at.x, at.y);
        if (size > 0.0) {
            map->Warp(edgeX, edgeY);
            size = std::hypot(edgeX - at.x, edgeY - at.y);
        }
        if (!IsUsable(at.x) || !IsUsable(at.y) || !IsUsable(size)) return;
    }
    tagXVertPoint mark;
    mark.shape = ShapeToDraw(m_type);
    mark.size = size;
    mark.lineColour = used.lineStyle->IsNone() ? 0 : *used.lineColor;
    mark.fillColour = *used.foreColor;
    buffer->AddPoint(at, mark);
}

XvcObj* XvcPoint::HitTest(const tagXVector3& point, double toleranceX, double toleranceY,
                          tagXHitFlag& hitFlag)
{
    if (!IsSet() || !IsUsable(point.x) || !IsUsable(point.y)) return nullptr;
    // written so that a tolerance that is no number counts as 0
    const double tolerance =
        std::max(toleranceX > 0.0 ? toleranceX : 0.0, toleranceY > 0.0 ? toleranceY : 0.0);
    const double away = std::max(std::fabs(point.x - m_vertex.x), std::fabs(point.y - m_vertex.y));
    if (away <= tolerance) {
        hitFlag = {tagXHitFlag::kVertex, 0};
        return this;
    }
    if (away <= GetSize() / 2.0) {
        hitFlag = {tagXHitFlag::kBody, 0};
        return this;
    }
    return nullptr;
}

void XvcPoint::AddCtrlPoints(XPtrArray& array)
{
    array.Add(&m_vertex);
}

void XvcPoint::MoveObject(double dx, double dy, double dz)
{
    if (!IsSet() || !CanMove(m_vertex, dx, dy, dz)) return;
    m_vertex.x += dx;
    m_vertex.y += dy;
    if (IsUsable(m_vertex.z + dz)) m_vertex.z += dz; // a height that is not set stays so
}

tagXVector3* XvcPoint::MoveVertex(int hitIndex, double dx, double dy, double dz)
{
    if (hitIndex != 0) return nullptr;
    MoveObject(dx, dy, dz);
    return &m_vertex;
}

void XvcPoint::RotateObject(double x, double y, double angle)
{
    if (!IsSet() || !IsUsable(x) || !IsUsable(y) || !std::isfinite(angle)) return;
    const double angleRad = std::fmod(angle, 360.0) * std::numbers::pi / 180.0;
    const double cosine = std::cos(angleRad);
    const double sine = std::sin(angleRad);
    const double relX = m_vertex.x - x;
    const double relY = m_vertex.y - y;
    const double newX = x + relX * cosine - relY * sine;
    const double newY = y + relX * sine + relY * cosine;
    if (!IsUsable(newX) || !IsUsable(newY)) return;
    m_vertex.x = newX;
    m_vertex.y = newY;
}

void XvcPoint::Normalize(double minX, double minY, double maxX, double maxY)
{
    const double width = maxX - minX;
    const double height = maxY - minY;
    if (!IsSet() || !IsUsable(minX) || !IsUsable(minY) || !IsUsable(width) || !IsUsable(height)) {
        return;
    }
    m_vertex.x = width != 0.0 ? (m_vertex.x - minX) / width : 0.0;
    m_vertex.y = height != 0.0 ? (m_vertex.y - minY) / height : 0.0;
    if (width != 0.0 && GetThick() > 0.0) SetThick(GetThick() / std::fabs(width));
}

int XvcPoint::ImportFromWkb(const unsigned char* bytes, std::size_t& size, XString& error)
{
    XWkbReader reader(bytes, size);
    XWkbReader::Head head;
    if (!reader.ReadHead(head)) {
        error = "The geometry does not begin with a known byte order and type.";
        return 0;
    }
    if (head.kind != XWkbReader::kPoint) {
        error = "The geometry is not a point.";
        return 0;
    }
    tagXVector3 read;
    if (!reader.ReadPosition(head, read.x, read.y, read.z)) {
        error = "The geometry ends within its coordinates.";
        return 0;
    }
    if (std::isnan(read.x) && std::isnan(read.y)) {
        read = {kXNotSet, kXNotSet, 0.0}; // the binary form has no other way to say "empty"
    } else if (!IsUsable(read.x) || !IsUsable(read.y)) {
        error = "The point has a coordinate that is no number.";
        return 0;
    }
    if (!IsUsable(read.z)) read.z = 0.0;
    m_vertex = read;
    size = reader.GetUsed();
    return 1;
}

XString XvcPoint::ExportToWkt() const
{
    if (!IsSet()) return "POINT EMPTY";
    const bool hasZ = IsUsable(m_vertex.z) && m_vertex.z != 0.0;
    XString text(hasZ ? "POINT Z (" : "POINT (");
    text += XfnFormatShortest(m_vertex.x) + " " + XfnFormatShortest(m_vertex.y);
    if (hasZ) text += " " + XfnFormatShortest(m_vertex.z);
    return text + ")";
}
