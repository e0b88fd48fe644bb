#include "foundation/vector/XvcMeasureRange.h"

#include "foundation/reference/XGeodesy.h"
#include "foundation/surface/XTextAlign.h"
#include "foundation/vector/XVertexMath.h"

#include <cmath>
#include <numbers>

X_IMPLEMENT_CLASS(XvcMeasureRange, XvcMeasureObj)

namespace {

constexpr int kChords = 180; // a multiple of four: the extremes of a circle are vertices

} // namespace

double XvcMeasureRange::GetRadius() const
{
    Path vertices;
    GetUsable(vertices);
    return ToLengthUnit(MeasurePath(vertices));
}

double XvcMeasureRange::GetArea() const
{
    Path vertices;
    GetUsable(vertices);
    const double radius = MeasurePath(vertices);
    if (!XfnIsSet(radius)) return kXNotSet;
    if (!IsGeodesic() || radius == 0.0) return ToAreaUnit(std::numbers::pi * radius * radius);
    const double unit = GetDegreesPerUnit();
    const double semiMajor = GetSR().GetSemiMajor();
    const double flattening = GetSR().GetFlattening();
    double lon[kChords], lat[kChords];
    for (int i = 0; i < kChords; ++i) {
        if (!XfnGeodesicDirect(vertices[0].x * unit, vertices[0].y * unit, -360.0 * i / kChords,
                               radius, lon[i], lat[i], semiMajor, flattening)) {
            return kXNotSet;
        }
    }
    double area = 0.0, perimeter = 0.0;
    if (!XfnGeodesicArea(lon, lat, kChords, area, perimeter, semiMajor, flattening)) {
        return kXNotSet;
    }
    // what the chords cut off, as in the plane
    const double step = 2.0 * std::numbers::pi / kChords;
    return ToAreaUnit(std::fabs(area) * step / std::sin(step));
}

XString XvcMeasureRange::GetLabel() const
{
    Path vertices;
    GetUsable(vertices);
    const XString radius = FormatLength(GetRadius());
    const XString area = FormatArea(GetArea());
    if (vertices.size() < 2 || radius.IsEmpty() || area.IsEmpty()) return XString();
    return radius + "\n" + area;
}

bool XvcMeasureRange::GetCircle(Path& ring) const
{
    ring.clear();
    Path vertices;
    GetUsable(vertices);
    if (vertices.size() < 2) return false;
    const tagXVector3 center = vertices[0];
    if (!IsGeodesic()) {
        const double radius = std::hypot(vertices[1].x - center.x, vertices[1].y - center.y);
        for (int i = 0; i < kChords; ++i) {
            const tagXTurn turn(0.0, 0.0, 360.0 * i / kChords);
            ring.push_back({center.x + radius * turn.cosine, center.y + radius * turn.sine});
            if (!XfnIsUsable(ring.back())) return false;
        }
        return true;
    }
    const double unit = GetDegreesPerUnit();
    const double radius = MeasurePath(vertices);
    if (!XfnIsSet(radius)) return false;
    double besideDeg = center.x * unit;
    for (int i = 0; i <= kChords; ++i) { // the last is the first again, perhaps a turn away
        double lonDeg, latDeg;
        if (!XfnGeodesicDirect(center.x * unit, center.y * unit, 360.0 * i / kChords, radius,
                               lonDeg, latDeg, GetSR().GetSemiMajor(), GetSR().GetFlattening())) {
            return false;
        }
        besideDeg = lonDeg + 360.0 * std::round((besideDeg - lonDeg) / 360.0);
        ring.push_back({besideDeg / unit, latDeg / unit});
    }
    const double carriedDeg = (ring.back().x - ring.front().x) * unit;
    if (std::fabs(carriedDeg) < 180.0) {
        ring.pop_back();
        return true;
    }
    // around a pole the line runs from side to side of the map; the pole closes it
    const double poleLat = (center.y < 0.0 ? -90.0 : 90.0) / unit;
    ring.push_back({ring.back().x, poleLat});
    ring.push_back({ring.front().x, poleLat});
    return true;
}

void XvcMeasureRange::GetDrawn(std::vector<tagDrawn>& drawn) const
{
    tagDrawn circle;
    circle.isRing = true;
    if (!GetCircle(circle.path)) return;
    AddDrawn(drawn, circle);
    Path spoke;
    GetUsable(spoke);
    AddDrawn(drawn, Trace(spoke, false));
}

bool XvcMeasureRange::GetLabelPlace(tagXVector3& place, int& align) const
{
    Path vertices;
    GetUsable(vertices);
    if (vertices.size() < 2) return false;
    place = vertices[1];
    align = kXTextLeft | kXTextBottom;
    return true;
}
