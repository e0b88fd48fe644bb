#include "foundation/vector/XvcMeasureArea.h"

#include "foundation/reference/XGeodesy.h"
#include "foundation/surface/XTextAlign.h"
#include "foundation/vector/XVertexMath.h"
#include "foundation/vector/XWkbGeometry.h"
#include "foundation/vector/XWkbReader.h"

#include <cmath>
#include <utility>

X_IMPLEMENT_CLASS(XvcMeasureArea, XvcMeasureObj)

double XvcMeasureArea::GetArea() const
{
    Path ring;
    GetUsable(ring);
    if (ring.size() < 3) return 0.0;
    if (IsGeodesic()) {
        const double unit = GetDegreesPerUnit();
        std::vector<double> lon, lat;
        for (const tagXVector3& vertex : ring) {
            lon.push_back(vertex.x * unit);
            lat.push_back(vertex.y * unit);
        }
        double area = 0.0, perimeter = 0.0;
        const int isGood =
            XfnGeodesicArea(lon.data(), lat.data(), static_cast<int>(lon.size()), area, perimeter,
                            GetSR().GetSemiMajor(), GetSR().GetFlattening());
        return isGood ? ToAreaUnit(std::fabs(area)) : kXNotSet;
    }
    // relative to the first vertex, so that map coordinates of 1e7 keep their digits
    const tagXVector3 origin = ring[0];
    double twice = 0.0;
    for (std::size_t i = 0; i < ring.size(); ++i) {
        const tagXVector3& next = ring[(i + 1) % ring.size()];
        const tagXVector3& last = ring[(i + ring.size() - 1) % ring.size()];
        twice += (next.x - last.x) * (ring[i].y - origin.y);
    }
    const double metres = HasGroundUnits() ? GetSR().GetLinearUnits() : 1.0;
    return ToAreaUnit(std::fabs(twice) / 2.0 * metres * metres);
}

double XvcMeasureArea::GetPerimeter() const
{
    Path ring;
    GetUsable(ring);
    if (!ring.empty()) ring.push_back(ring[0]);
    return ToLengthUnit(MeasurePath(ring));
}

XString XvcMeasureArea::GetLabel() const
{
    Path ring;
    GetUsable(ring);
    const XString area = FormatArea(GetArea());
    const XString perimeter = FormatLength(GetPerimeter());
    if (ring.size() < 3 || area.IsEmpty() || perimeter.IsEmpty()) return XString();
    return area + "\n" + perimeter;
}

int XvcMeasureArea::ImportFromWkb(const unsigned char* bytes, std::size_t& size, XString& error)
{
    Touch();
    XWkbGeometry read;
    std::size_t used = size;
    if (!read.Read(bytes, used, {XWkbReader::kPolygon}, "a polygon", error)) return 0;
    if (read.parts[0].size() > 1) {
        error = "The polygon has more than one ring.";
        return 0;
    }
    m_vertices = read.parts[0].empty() ? XVertexArray() : std::move(read.parts[0][0]);
    size = used;
    return 1;
}

XString XvcMeasureArea::ExportToWkt() const
{
    return XWktWriter::FromRing(m_vertices);
}

void XvcMeasureArea::GetDrawn(std::vector<tagDrawn>& drawn) const
{
    Path ring;
    GetUsable(ring);
    if (ring.size() >= 2) AddDrawn(drawn, Trace(ring, true));
}

bool XvcMeasureArea::GetLabelPlace(tagXVector3& place, int& align) const
{
    Path ring;
    GetUsable(ring);
    if (ring.size() < 3) return false;
    place = {};
    const auto share = 1.0 / static_cast<double>(ring.size());
    for (const tagXVector3& vertex : ring) {
        place.x += vertex.x * share;
        place.y += vertex.y * share;
    }
    align = kXTextCentre | kXTextMiddle;
    return XfnIsUsable(place);
}
