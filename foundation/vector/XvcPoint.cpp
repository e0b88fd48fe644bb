#include "foundation/vector/XvcPoint.h"

#include "foundation/base/XArchive.h"
#include "foundation/base/XFileException.h"
#include "foundation/base/XNumber.h"
#include "foundation/base/XPtrArray.h"
#include "foundation/base/XSentinels.h"
#include "foundation/base/XWarp2D.h"
#include "foundation/surface/XPointShape.h"
#include "foundation/surface/XVertBuffer.h"
#include "foundation/vector/XVectorPaint.h"
#include "foundation/vector/XVertexMath.h"
#include "foundation/vector/XWkbReader.h"

#include <algorithm>
#include <cmath>

X_IMPLEMENT_CLASS(XvcPoint, XvcObj)

namespace {

constexpr int kMinPieSegs = 3;
constexpr int kMaxPieSegs = 360;
constexpr std::uint16_t kArchiveVersion = 1;

int ShapeToDraw(int type)
{
    return type >= kXPointDot && type <= kXPointCross ? type : static_cast<int>(kXPointDot);
}

} // namespace

void XvcPoint::SetNumPieSegs(int count)
{
    Touch();
    m_numPieSegs = std::clamp(count, kMinPieSegs, kMaxPieSegs);
}

void XvcPoint::SetWorldPerPixel(double length)
{
    Touch();
    if (length >= 0.0 && XfnIsSet(length)) m_worldPerPixel = length;
}

int XvcPoint::IsSet() const
{
    return XfnIsUsable(m_vertex) ? 1 : 0;
}

double XvcPoint::GetSize() const
{
    const double thick = GetThick();
    if (!XfnIsSet(thick)) return 0.0;
    if (thick > 0.0) return thick;
    const double pixels = thick == 0.0 ? kDefaultPixels : -thick;
    const double size = pixels * m_worldPerPixel;
    return XfnIsSet(size) ? size : 0.0;
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
    const double z = XfnIsSet(m_vertex.z) ? m_vertex.z : 0.0;
    m_range.Add(m_vertex.x - half, m_vertex.y - half, z);
    m_range.Add(m_vertex.x + half, m_vertex.y + half, z);
}

void XvcPoint::Record(XVertBuffer& buffer, const tagXVector3& vertex, int shape,
                      const XVectorPaint& paint, const XWarp2D* warp)
{
    if (!XfnIsUsable(vertex)) return;
    tagXVector3 at = vertex;
    double size = paint.line.thick;
    if (warp) {
        tagXVector3 edge(at.x + size, at.y);
        warp->Warp(at.x, at.y);
        if (size > 0.0) {
            warp->Warp(edge.x, edge.y);
            size = std::hypot(edge.x - at.x, edge.y - at.y);
        }
        if (!XfnIsUsable(at) || !XfnIsSet(size)) return;
    }
    tagXVertPoint mark;
    mark.shape = ShapeToDraw(shape);
    mark.size = size;
    mark.lineColour = paint.line.style.IsNone() ? 0 : paint.line.colour;
    mark.fillColour = paint.fill.foreColour;
    buffer.AddPoint(at, mark);
}

void XvcPoint::CreateVertexBuffer(XVertBuffer* buffer, const XWarp2D* warp,
                                  const tagXDrawAttrs* attrs)
{
    if (!buffer || !IsSet()) return;
    Record(*buffer, m_vertex, m_type, XVectorPaint(*this, attrs), ChooseWarp(warp));
}

XvcObj* XvcPoint::HitTest(const tagXVector3& point, double toleranceX, double toleranceY,
                          tagXHitFlag& hitFlag)
{
    if (!IsSet() || !XfnIsUsable(point)) return nullptr;
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
    Touch();
    const tagXShift shift{dx, dy, dz};
    if (shift.CanApply(m_vertex)) shift.Apply(m_vertex);
}

tagXVector3* XvcPoint::MoveVertex(int hitIndex, double dx, double dy, double dz)
{
    Touch();
    if (hitIndex != 0) return nullptr;
    MoveObject(dx, dy, dz);
    return &m_vertex;
}

void XvcPoint::RotateObject(double x, double y, double angle)
{
    Touch();
    const tagXTurn turn(x, y, angle);
    if (turn.CanApply(m_vertex)) turn.Apply(m_vertex);
}

void XvcPoint::Normalize(double minX, double minY, double maxX, double maxY)
{
    Touch();
    const tagXUnitMap map(minX, minY, maxX, maxY);
    if (!IsSet() || !map.CanApply(m_vertex)) return;
    map.Apply(m_vertex);
    if (map.width != 0.0 && GetThick() > 0.0) SetThick(GetThick() / std::fabs(map.width));
}

int XvcPoint::ImportFromWkb(const unsigned char* bytes, std::size_t& size, XString& error)
{
    Touch();
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
    } else if (!XfnIsUsable(read)) {
        error = "The point has a coordinate that is no number.";
        return 0;
    }
    if (!XfnIsSet(read.z)) read.z = 0.0;
    m_vertex = read;
    size = reader.GetUsed();
    return 1;
}

XString XvcPoint::ExportToWkt() const
{
    if (!IsSet()) return "POINT EMPTY";
    const bool hasZ = XfnIsSet(m_vertex.z) && m_vertex.z != 0.0;
    XString text(hasZ ? "POINT Z (" : "POINT (");
    text += XfnFormatShortest(m_vertex.x) + " " + XfnFormatShortest(m_vertex.y);
    if (hasZ) text += " " + XfnFormatShortest(m_vertex.z);
    return text + ")";
}
