#include "foundation/vector/XvcMeasurePoint.h"

#include "foundation/base/XArchive.h"
#include "foundation/base/XNumber.h"
#include "foundation/surface/XTextAlign.h"
#include "foundation/vector/XVectorPaint.h"
#include "foundation/vector/XVertexMath.h"
#include "foundation/vector/XvcPoint.h"

#include <algorithm>
#include <cmath>

X_IMPLEMENT_CLASS(XvcMeasurePoint, XvcMeasureObj)

namespace {

constexpr int kMoreDecimals = 3; // for degrees: five give a metre

XString FormatDegrees(double degrees, int decimals, const char* positive, const char* negative)
{
    return XfnFormatNumber(std::fabs(degrees), decimals) + (degrees < 0.0 ? negative : positive);
}

} // namespace

void XvcMeasurePoint::SetVertex(double x, double y, double z)
{
    Touch();
    if (!SetAt(0, x, y, z)) Add(x, y, z);
}

XString XvcMeasurePoint::GetLabel() const
{
    const tagXVector3 at = GetVertex();
    if (!XfnIsUsable(at)) return XString();
    if (!IsGeodesic()) {
        return XfnFormatNumber(at.x, GetDecimals()) + ", " + XfnFormatNumber(at.y, GetDecimals());
    }
    const double unit = GetDegreesPerUnit();
    const int decimals = GetDecimals() + kMoreDecimals;
    return FormatDegrees(at.y * unit, decimals, "N", "S") + " " +
           FormatDegrees(at.x * unit, decimals, "E", "W");
}

int XvcMeasurePoint::ImportFromWkb(const unsigned char* bytes, std::size_t& size, XString& error)
{
    Touch();
    XvcPoint read;
    if (!read.ImportFromWkb(bytes, size, error)) return 0;
    SetVertex(read.GetX(), read.GetY(), read.GetZ());
    return 1;
}

XString XvcMeasurePoint::ExportToWkt() const
{
    const tagXVector3 at = GetVertex();
    return XvcPoint(at.x, at.y, at.z).ExportToWkt();
}

void XvcMeasurePoint::StoreOwn(XArchive& archive) const
{
    archive << m_type;
    XvcMeasureObj::StoreOwn(archive);
}

void XvcMeasurePoint::LoadOwn(XArchive& archive)
{
    int type = 0;
    archive >> type;
    XvcMeasureObj::LoadOwn(archive);
    m_type = type;
}

void XvcMeasurePoint::Record(XVertBuffer* buffer, const XWarp2D* warp,
                             const XVectorPaint& paint) const
{
    XvcPoint::Record(*buffer, GetVertex(), m_type, paint, warp);
}

double XvcMeasurePoint::GetMarkPixels() const
{
    const double thick = GetThick();
    return XfnIsSet(thick) && thick <= 0.0 ? (thick < 0.0 ? -thick : XvcPoint::kDefaultPixels) / 2.0
                                           : 0.0;
}

bool XvcMeasurePoint::GetLabelPlace(tagXVector3& place, int& align) const
{
    place = GetVertex();
    if (GetThick() > 0.0) place.x += GetThick() / 2.0; // beside the mark
    align = kXTextLeft | kXTextBottom;
    return XfnIsUsable(place);
}
