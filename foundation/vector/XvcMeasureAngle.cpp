#include "foundation/vector/XvcMeasureAngle.h"

#include "foundation/base/XNumber.h"
#include "foundation/reference/XGeodesy.h"
#include "foundation/surface/XTextAlign.h"
#include "foundation/vector/XVertexMath.h"

#include <algorithm>
#include <cmath>
#include <numbers>

X_IMPLEMENT_CLASS(XvcMeasureAngle, XvcMeasureObj)

namespace {

constexpr double kRadPerDeg = std::numbers::pi / 180.0;
constexpr double kArcShare = 0.25; // of the shorter leg
constexpr double kLabelStretch = 1.9;
constexpr int kArcChords = 24;

} // namespace

double XvcMeasureAngle::GetAngle() const
{
    const tagXVector3 a = GetAt(0);
    const tagXVector3 corner = GetAt(1);
    const tagXVector3 b = GetAt(2);
    if (!XfnIsUsable(a) || !XfnIsUsable(corner) || !XfnIsUsable(b)) return kXNotSet;
    if (IsGeodesic()) {
        const double unit = GetDegreesPerUnit();
        const auto getAzimuth = [&](const tagXVector3& end, double& azimuth) {
            double length = 0.0, endAzimuth = 0.0;
            return XfnGeodesicInverse(corner.x * unit, corner.y * unit, end.x * unit, end.y * unit,
                                      length, azimuth, endAzimuth, GetSR().GetSemiMajor(),
                                      GetSR().GetFlattening()) &&
                   length > 0.0;
        };
        double toA = 0.0, toB = 0.0;
        if (!getAzimuth(a, toA) || !getAzimuth(b, toB)) return kXNotSet;
        return std::fabs(std::remainder(toB - toA, 360.0));
    }
    // scaled, so that no product leaves the range of numbers
    const double lengthA = std::hypot(a.x - corner.x, a.y - corner.y);
    const double lengthB = std::hypot(b.x - corner.x, b.y - corner.y);
    if (!(lengthA > 0.0) || !(lengthB > 0.0) || !XfnIsSet(lengthA) || !XfnIsSet(lengthB)) {
        return kXNotSet;
    }
    const double ax = (a.x - corner.x) / lengthA, ay = (a.y - corner.y) / lengthA;
    const double bx = (b.x - corner.x) / lengthB, by = (b.y - corner.y) / lengthB;
    return std::atan2(std::fabs(ax * by - ay * bx), ax * bx + ay * by) / kRadPerDeg;
}

XString XvcMeasureAngle::GetLabel() const
{
    const double angle = GetAngle();
    if (!XfnIsSet(angle)) return XString();
    return XfnFormatNumber(angle, GetDecimals()) + XString(L"\u00B0");
}

bool XvcMeasureAngle::GetArcPoint(double share, double stretch, tagXVector3& point) const
{
    if (!XfnIsSet(GetAngle())) return false;
    const tagXVector3 corner = GetAt(1);
    tagXVector3 legA = GetAt(0) - corner;
    tagXVector3 legB = GetAt(2) - corner;
    if (IsGeodesic()) { // the way that the leg is drawn
        const double turn = 360.0 / GetDegreesPerUnit();
        legA.x = std::remainder(legA.x, turn);
        legB.x = std::remainder(legB.x, turn);
    }
    const double begin = std::atan2(legA.y, legA.x);
    const double sweep = std::remainder(std::atan2(legB.y, legB.x) - begin, 2.0 * std::numbers::pi);
    const double radius =
        kArcShare * stretch * std::min(std::hypot(legA.x, legA.y), std::hypot(legB.x, legB.y));
    point = {corner.x + radius * std::cos(begin + sweep * share),
             corner.y + radius * std::sin(begin + sweep * share)};
    return XfnIsUsable(point);
}

void XvcMeasureAngle::GetDrawn(std::vector<tagDrawn>& drawn) const
{
    Path vertices;
    GetUsable(vertices);
    if (vertices.size() < 2) return;
    AddDrawn(drawn, Trace(vertices, false));
    tagDrawn arc;
    arc.path.resize(kArcChords + 1);
    for (int i = 0; i <= kArcChords; ++i) {
        if (!GetArcPoint(double(i) / kArcChords, 1.0, arc.path[static_cast<std::size_t>(i)]))
            return;
    }
    drawn.push_back(arc);
}

bool XvcMeasureAngle::GetLabelPlace(tagXVector3& place, int& align) const
{
    align = kXTextCentre | kXTextMiddle;
    return GetArcPoint(0.5, kLabelStretch, place);
}
