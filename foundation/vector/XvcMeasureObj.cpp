#include "foundation/vector/XvcMeasureObj.h"

#include "foundation/base/XArchive.h"
#include "foundation/base/XFileException.h"
#include "foundation/base/XNumber.h"
#include "foundation/base/XWarp2D.h"
#include "foundation/reference/XGeodesy.h"
#include "foundation/surface/XVertBuffer.h"
#include "foundation/vector/XMarkFont.h"
#include "foundation/vector/XMeasureUnits.h"
#include "foundation/vector/XVectorPaint.h"
#include "foundation/vector/XVertexMath.h"

#include <algorithm>
#include <climits>
#include <cmath>
#include <numbers>
#include <string>

X_IMPLEMENT_CLASS(XvcMeasureObj, XvcVertexObj)

namespace {

constexpr std::uint8_t kArchiveVersion = 1;
constexpr int kPixelCoord = 1;
constexpr int kMapCoord = 3;
constexpr double kTurn = 360.0;
constexpr double kHalfTurn = 180.0;
constexpr double kStepMetres = 50000.0; // a chord of this length departs from its line by 50 m
constexpr int kMaxSteps = 256;
constexpr double kMaxBlanks = 100.0;

bool IsLengthUnit(int unit)
{
    return unit >= 0 && unit < kXLengthUnitCount && unit != kXNoLengthUnit;
}

bool IsAreaUnit(int unit)
{
    return unit >= 0 && unit < kXAreaUnitCount;
}

// The longitude nearest to `beside` that means the same.
double CarryTo(double beside, double lon)
{
    return lon + kTurn * std::round((beside - lon) / kTurn);
}

} // namespace

int XvcMeasureObj::Add(double x, double y, double z)
{
    return GetSize() < GetMaxVertices() ? XvcVertexObj::Add(x, y, z) : -1;
}

int XvcMeasureObj::GetMaxVertices() const
{
    return INT_MAX;
}

void XvcMeasureObj::SetSR(const XSpatialReference* reference)
{
    Touch();
    m_reference = reference ? *reference : XSpatialReference();
}

int XvcMeasureObj::IsGeodesic() const
{
    return m_reference.GetCoordType() == kMapCoord && m_reference.IsGeographic() ? 1 : 0;
}

int XvcMeasureObj::HasGroundUnits() const
{
    if (m_reference.GetCoordType() != kMapCoord) return 0;
    return m_reference.IsGeographic() || m_reference.GetLinearUnits() > 0.0 ? 1 : 0;
}

void XvcMeasureObj::SetLengthUnit(int unit)
{
    Touch();
    if (IsLengthUnit(unit)) m_lengthUnit = unit;
}

void XvcMeasureObj::SetAreaUnit(int unit)
{
    Touch();
    if (IsAreaUnit(unit)) m_areaUnit = unit;
}

void XvcMeasureObj::SetDecimals(int decimals)
{
    Touch();
    m_decimals = std::clamp(decimals, 0, kMaxDecimals);
}

void XvcMeasureObj::SetFontSize(double height)
{
    Touch();
    if (height != 0.0 && XfnIsSet(height)) m_fontSize = height;
}

void XvcMeasureObj::CreateVertexBuffer(XVertBuffer* buffer, const XWarp2D* warp,
                                       const tagXDrawAttrs* attrs)
{
    if (!buffer) return;
    const XVectorPaint paint(*this, attrs);
    const XWarp2D* const map = ChooseWarp(warp);
    Record(buffer, map, paint);
    tagXVertText label;
    if (!m_labelFlag || !GetLabelPlace(label.position, label.align)) return;
    label.text = GetLabel();
    if (label.text.IsEmpty()) return;
    const XMarkFont font{m_fontSize, m_textColor, m_textStyle};
    if (label.align & kXTextLeft) { // a blank keeps each line off the mark that it stands beside
        const double blankPixels = font.GetWidth(" ") * -m_fontSize; // only where both are pixels
        const double more = blankPixels > 0.0 ? std::ceil(GetMarkPixels() / blankPixels) : 0.0;
        const std::string blanks(1 + static_cast<std::size_t>(std::min(more, kMaxBlanks)), ' ');
        label.text.Insert(0, blanks.c_str());
        label.text.Replace("\n", XString("\n") + blanks.c_str());
    }
    font.Record(*buffer, label, map, paint.line.colour);
}

void XvcMeasureObj::StoreOwn(XArchive& archive) const
{
    archive << kArchiveVersion;
    XfnStoreReference(archive, m_reference);
    archive << m_lengthUnit << m_areaUnit << m_decimals << m_labelFlag << m_fontSize << m_textColor;
    XfnStoreTextStyle(archive, m_textStyle);
}

void XvcMeasureObj::LoadOwn(XArchive& archive)
{
    std::uint8_t version = 0;
    archive >> version;
    if (version != kArchiveVersion) throw XFileException(XFileException::kInvalidFile);
    const XSpatialReference reference = XfnLoadReference(archive);
    int lengthUnit = 0, areaUnit = 0, decimals = 0, labelFlag = 0;
    double fontSize = 0.0;
    tagXColor textColor = 0;
    archive >> lengthUnit >> areaUnit >> decimals >> labelFlag >> fontSize >> textColor;
    const tagXTextStyle style = XfnLoadTextStyle(archive);
    if (!IsLengthUnit(lengthUnit) || !IsAreaUnit(areaUnit)) {
        throw XFileException(XFileException::kInvalidFile);
    }
    m_reference = reference;
    m_lengthUnit = lengthUnit;
    m_areaUnit = areaUnit;
    SetDecimals(decimals);
    SetLabelFlag(labelFlag);
    SetFontSize(fontSize);
    m_textColor = textColor;
    m_textStyle = style;
}

void XvcMeasureObj::GetUsable(Path& vertices) const
{
    vertices.clear();
    for (int i = 0; i < GetSize(); ++i) {
        if (XfnIsUsable(GetAt(i))) vertices.push_back(GetAt(i));
    }
}

double XvcMeasureObj::GetDegreesPerUnit() const
{
    const double degrees = m_reference.GetAngularUnits() * kHalfTurn / std::numbers::pi;
    // a degree in radians is rounded; undone it must be a degree again
    if (!(degrees > 0.0) || std::fabs(degrees - 1.0) < 1e-12) return 1.0;
    return degrees;
}

double XvcMeasureObj::MeasureLength(const tagXVector3& a, const tagXVector3& b) const
{
    if (IsGeodesic()) {
        const double unit = GetDegreesPerUnit();
        return XfnGeodesicDistance(a.x * unit, a.y * unit, b.x * unit, b.y * unit,
                                   m_reference.GetSemiMajor(), m_reference.GetFlattening());
    }
    const double metres = HasGroundUnits() ? m_reference.GetLinearUnits() : 1.0;
    const double length = std::hypot(b.x - a.x, b.y - a.y) * metres;
    return XfnIsSet(length) ? length : kXNotSet;
}

double XvcMeasureObj::MeasurePath(const Path& vertices) const
{
    double sum = 0.0;
    for (std::size_t i = 1; i < vertices.size(); ++i) {
        const double length = MeasureLength(vertices[i - 1], vertices[i]);
        if (!XfnIsSet(length)) return kXNotSet;
        sum += length;
    }
    return XfnIsSet(sum) ? sum : kXNotSet;
}

double XvcMeasureObj::ToLengthUnit(double length) const
{
    if (!XfnIsSet(length)) return kXNotSet;
    return HasGroundUnits() ? XfnConvertLength(length, m_lengthUnit) : length;
}

double XvcMeasureObj::ToAreaUnit(double area) const
{
    if (!XfnIsSet(area)) return kXNotSet;
    return HasGroundUnits() ? XfnConvertArea(area, m_areaUnit) : area;
}

XString XvcMeasureObj::FormatLength(double inUnit) const
{
    if (!XfnIsSet(inUnit)) return XString();
    XString text = XfnFormatNumber(inUnit, m_decimals);
    if (HasGroundUnits()) return text + " " + XfnGetLengthUnitSign(m_lengthUnit);
    return m_reference.GetCoordType() == kPixelCoord ? text + " px" : text;
}

XString XvcMeasureObj::FormatArea(double inUnit) const
{
    if (!XfnIsSet(inUnit)) return XString();
    XString text = XfnFormatNumber(inUnit, m_decimals);
    if (HasGroundUnits()) return text + " " + XfnGetAreaUnitSign(m_areaUnit);
    return m_reference.GetCoordType() == kPixelCoord ? text + XString(L" px\u00B2") : text;
}

XvcMeasureObj::tagDrawn XvcMeasureObj::Trace(const Path& vertices, bool isRing) const
{
    tagDrawn traced;
    traced.isRing = isRing;
    std::vector<int> indices; // of the edges: the vertices that they begin at
    for (int i = 0; i < GetSize(); ++i) {
        if (XfnIsUsable(GetAt(i))) indices.push_back(i);
    }
    if (!IsGeodesic() || vertices.size() < 2) {
        traced.path = vertices;
        traced.edges = indices; // the last leads to the first
        std::rotate(traced.edges.begin(), traced.edges.end() - !indices.empty(),
                    traced.edges.end());
        return traced;
    }
    const double unit = GetDegreesPerUnit();
    const double semiMajor = m_reference.GetSemiMajor();
    const double flattening = m_reference.GetFlattening();
    traced.path = {vertices[0]};
    traced.edges = {indices.back()};
    double besideDeg = vertices[0].x * unit;
    const auto push = [&](double lonDeg, double latDeg, std::size_t edge) {
        besideDeg = CarryTo(besideDeg, lonDeg);
        traced.path.push_back({besideDeg / unit, latDeg / unit});
        traced.edges.push_back(indices[edge]);
    };
    const std::size_t edges = isRing ? vertices.size() : vertices.size() - 1;
    for (std::size_t i = 0; i < edges; ++i) {
        const tagXVector3& a = vertices[i];
        const tagXVector3& b = vertices[(i + 1) % vertices.size()];
        double length, azimuth, endAzimuth;
        int steps = 1;
        if (XfnGeodesicInverse(a.x * unit, a.y * unit, b.x * unit, b.y * unit, length, azimuth,
                               endAzimuth, semiMajor, flattening)) {
            steps = static_cast<int>(
                std::clamp(std::ceil(length / kStepMetres), 1.0, double(kMaxSteps)));
        }
        for (int step = 1; step < steps; ++step) {
            double lonDeg, latDeg;
            if (XfnGeodesicDirect(a.x * unit, a.y * unit, azimuth, length * step / steps, lonDeg,
                                  latDeg, semiMajor, flattening)) {
                push(lonDeg, latDeg, i);
            }
        }
        push(b.x * unit, b.y * unit, i);
    }
    return traced;
}

void XvcMeasureObj::AddDrawn(std::vector<tagDrawn>& drawn, const tagDrawn& traced) const
{
    drawn.push_back(traced);
    if (!IsGeodesic()) return;
    const double half = kHalfTurn / GetDegreesPerUnit();
    const auto isBeyond = [half](double x) { return x < -half ? -1 : x > half ? 1 : 0; };
    for (int i = 0; i < GetSize(); ++i) {
        if (isBeyond(GetAt(i).x)) return; // longitudes of another convention
    }
    int sides = 0;
    for (const tagXVector3& vertex : traced.path) {
        const int side = isBeyond(vertex.x);
        sides |= side < 0 ? 1 : side > 0 ? 2 : 0;
    }
    const auto addTurned = [&](double shift) {
        drawn.push_back(traced);
        for (tagXVector3& vertex : drawn.back().path)
            vertex.x += shift;
    };
    if (sides & 1) addTurned(2.0 * half);
    if (sides & 2) addTurned(-2.0 * half);
}

void XvcMeasureObj::Record(XVertBuffer* buffer, const XWarp2D* warp,
                           const XVectorPaint& paint) const
{
    std::vector<tagDrawn> drawn;
    GetDrawn(drawn);
    for (tagDrawn& part : drawn) {
        XfnWarpVertices(part.path, warp);
        if (part.isRing) {
            XfnRecordPolygon(buffer, part.path, paint);
        } else {
            XfnRecordPolyline(buffer, part.path, paint);
        }
    }
}

void XvcMeasureObj::CalcRange()
{
    XvcVertexObj::CalcRange();
    std::vector<tagDrawn> drawn;
    GetDrawn(drawn);
    const double z = m_range.minZ;
    for (const tagDrawn& part : drawn) {
        for (const tagXVector3& vertex : part.path)
            m_range.Add(vertex.x, vertex.y, z);
    }
}

XvcObj* XvcMeasureObj::HitTest(const tagXVector3& point, double toleranceX, double toleranceY,
                               tagXHitFlag& hitFlag)
{
    const tagXHitPointer pointer = XfnMakeHitPointer(point, toleranceX, toleranceY);
    if (!pointer.isUsable) return nullptr;
    if (XfnHitVertices(pointer, m_vertices, XHitShape::Points, hitFlag)) return this;
    std::vector<tagDrawn> drawn;
    GetDrawn(drawn);
    double nearest = 1.0;
    int edge = -1;
    bool isBody = false;
    for (const tagDrawn& part : drawn) {
        const std::size_t count = part.path.size();
        for (std::size_t i = part.isRing ? 0 : 1; i < count; ++i) {
            const tagXVector3& a = part.path[i > 0 ? i - 1 : count - 1];
            const tagXVector3& b = part.path[i];
            const double distance = XfnHitDistanceSquared(pointer, a.x, a.y, b.x, b.y);
            if (!(distance <= 1.0)) continue;
            isBody = true;
            if (part.edges.empty() || distance > nearest) continue;
            nearest = distance;
            edge = part.edges[i];
        }
        isBody = isBody || (part.isRing && GetHitShape() == XHitShape::Ring &&
                            XfnIsInRing(point.x, point.y, part.path[0], 3, count));
    }
    if (!isBody) return nullptr;
    hitFlag =
        edge >= 0 ? tagXHitFlag{tagXHitFlag::kEdge, edge} : tagXHitFlag{tagXHitFlag::kBody, 0};
    return this;
}

void XvcMeasureObj::ScaleLengths(double factorX, double factorY)
{
    XvcVertexObj::ScaleLengths(factorX, factorY);
    if (m_fontSize > 0.0) SetFontSize(m_fontSize * factorY);
}
