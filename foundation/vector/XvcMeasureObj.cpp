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

X_IMPLEMENT_CLASS(XvcMeasureObj, XvcVertexObj)

namespace {

constexpr std::uint8_t kArchiveVersion = 1;
constexpr int kPixelCoord = 1;
constexpr int kMapCoord = 3;
constexpr double kTurn = 360.0;
constexpr double kHalfTurn = 180.0;
constexpr double kStepMetres = 50000.0; // a chord of this length departs from its line by 50 m
constexpr int kMaxSteps = 256;

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
    if (label.align & kXTextLeft) { // a blank keeps each line off the mark that it stands beside
        label.text.Insert(0, " ");
        label.text.Replace("\n", "\n ");
    }
    const XMarkFont font{m_fontSize, m_textColor, m_textStyle};
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

XvcMeasureObj::Path XvcMeasureObj::TracePath(const Path& vertices, bool isRing) const
{
    if (!IsGeodesic() || vertices.size() < 2) return vertices;
    const double unit = GetDegreesPerUnit();
    const double semiMajor = m_reference.GetSemiMajor();
    const double flattening = m_reference.GetFlattening();
    Path traced{vertices[0]};
    double besideDeg = vertices[0].x * unit;
    const auto push = [&](double lonDeg, double latDeg) {
        besideDeg = CarryTo(besideDeg, lonDeg);
        traced.push_back({besideDeg / unit, latDeg / unit});
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
                push(lonDeg, latDeg);
            }
        }
        push(b.x * unit, b.y * unit);
    }
    return traced;
}

void XvcMeasureObj::RecordPath(XVertBuffer* buffer, const XWarp2D* warp, const XVectorPaint& paint,
                               const Path& traced, bool isRing) const
{
    const auto record = [&](double shift) {
        Path path = traced;
        for (tagXVector3& vertex : path)
            vertex.x += shift;
        XfnWarpVertices(path, warp);
        if (isRing) {
            XfnRecordPolygon(buffer, path, paint);
        } else {
            XfnRecordPolyline(buffer, path, paint);
        }
    };
    record(0.0);
    if (!IsGeodesic()) return;
    const double half = kHalfTurn / GetDegreesPerUnit();
    const auto isBeyond = [half](double x) { return x < -half ? -1 : x > half ? 1 : 0; };
    for (int i = 0; i < GetSize(); ++i) {
        if (isBeyond(GetAt(i).x)) return; // longitudes of another convention
    }
    int sides = 0;
    for (const tagXVector3& vertex : traced) {
        const int side = isBeyond(vertex.x);
        sides |= side < 0 ? 1 : side > 0 ? 2 : 0;
    }
    if (sides & 1) record(2.0 * half);
    if (sides & 2) record(-2.0 * half);
}
