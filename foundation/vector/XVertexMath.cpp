#include "foundation/vector/XVertexMath.h"

#include <cmath>
#include <numbers>

bool tagXShift::CanApply(const tagXVector3& vertex) const
{
    if (!XfnIsSet(dx) || !XfnIsSet(dy) || !XfnIsSet(dz)) return false;
    return !XfnIsUsable(vertex) || (XfnIsSet(vertex.x + dx) && XfnIsSet(vertex.y + dy));
}

void tagXShift::Apply(tagXVector3& vertex) const
{
    if (!XfnIsUsable(vertex)) return;
    vertex.x += dx;
    vertex.y += dy;
    if (XfnIsSet(vertex.z) && XfnIsSet(vertex.z + dz)) vertex.z += dz;
}

tagXTurn::tagXTurn(double centerX, double centerY, double angleDeg)
    : isValid(XfnIsSet(centerX) && XfnIsSet(centerY) && std::isfinite(angleDeg)),
      x(centerX),
      y(centerY),
      cosine(1.0),
      sine(0.0)
{
    if (!isValid) return;
    const double turn = std::fmod(angleDeg, 360.0);
    // quarter turns are exact, so that what is level stays level
    if (std::fmod(turn, 90.0) == 0.0) {
        const int quarters = (static_cast<int>(turn / 90.0) + 4) % 4;
        cosine = quarters == 0 ? 1.0 : quarters == 2 ? -1.0 : 0.0;
        sine = quarters == 1 ? 1.0 : quarters == 3 ? -1.0 : 0.0;
        return;
    }
    const double turnRad = turn * std::numbers::pi / 180.0;
    cosine = std::cos(turnRad);
    sine = std::sin(turnRad);
}

bool tagXTurn::CanApply(const tagXVector3& vertex) const
{
    if (!isValid) return false;
    if (!XfnIsUsable(vertex)) return true;
    const double relX = vertex.x - x;
    const double relY = vertex.y - y;
    return XfnIsSet(x + (relX * cosine - relY * sine)) &&
           XfnIsSet(y + (relX * sine + relY * cosine));
}

void tagXTurn::Apply(tagXVector3& vertex) const
{
    if (!isValid || !XfnIsUsable(vertex)) return;
    const double relX = vertex.x - x;
    const double relY = vertex.y - y;
    vertex.x = x + (relX * cosine - relY * sine);
    vertex.y = y + (relX * sine + relY * cosine);
}

tagXUnitMap::tagXUnitMap(double fromX, double fromY, double toX, double toY)
    : isValid(XfnIsSet(fromX) && XfnIsSet(fromY) && XfnIsSet(toX - fromX) && XfnIsSet(toY - fromY)),
      minX(fromX),
      minY(fromY),
      width(toX - fromX),
      height(toY - fromY)
{}

bool tagXUnitMap::CanApply(const tagXVector3& vertex) const
{
    if (!isValid) return false;
    if (!XfnIsUsable(vertex)) return true;
    return (width == 0.0 || XfnIsSet((vertex.x - minX) / width)) &&
           (height == 0.0 || XfnIsSet((vertex.y - minY) / height));
}

void tagXUnitMap::Apply(tagXVector3& vertex) const
{
    if (!isValid || !XfnIsUsable(vertex)) return;
    vertex.x = width != 0.0 ? (vertex.x - minX) / width : 0.0;
    vertex.y = height != 0.0 ? (vertex.y - minY) / height : 0.0;
}
