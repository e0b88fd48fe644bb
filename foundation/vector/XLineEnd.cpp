#include "foundation/vector/XLineEnd.h"

#include "foundation/base/XSentinels.h"
#include "foundation/surface/XVertBuffer.h"
#include "foundation/vector/XVectorPaint.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <utility>

namespace {

constexpr int kCircleSides = 32;
constexpr double kSizeInThicknesses = 4.0;
constexpr double kSizeInLengths = 0.1;

struct Place
{
    double back;  // from the tip towards the line, in sizes
    double aside; // to the left of the line's direction, in sizes
};

// The shapes of straight edges; the circles are made.
struct Shape
{
    const char* name;
    double inset; // in sizes
    bool isFilled;
    std::vector<std::vector<Place>> parts;
};

std::vector<Place> MakeCircle()
{
    std::vector<Place> circle;
    for (int i = 0; i < kCircleSides; ++i) {
        const double angle = 2.0 * std::numbers::pi * i / kCircleSides;
        circle.push_back({0.5 * std::cos(angle), 0.5 * std::sin(angle)});
    }
    return circle;
}

std::vector<Place> MakeClosedCircle()
{
    std::vector<Place> circle = MakeCircle();
    circle.push_back(circle.front());
    return circle;
}

const Shape& GetShape(int shape)
{
    static const Shape shapes[kXLineEndCount] = {
        {"None", 0.0, false, {}},
        {"Filled arrow", 0.9, true, {{{0, 0}, {1, 0.4}, {1, -0.4}}}},
        {"Open arrow", 0.0, false, {{{1, 0.4}, {0, 0}, {1, -0.4}}}},
        {"Barbed arrow", 0.7, true, {{{0, 0}, {1, 0.4}, {0.75, 0}, {1, -0.4}}}},
        {"Diamond", 0.0, true, {{{-0.5, 0}, {0, 0.5}, {0.5, 0}, {0, -0.5}}}},
        {"Filled circle", 0.0, true, {MakeCircle()}},
        {"Circle", 0.5, false, {MakeClosedCircle()}},
        {"Square", 0.0, true, {{{-0.5, 0.5}, {0.5, 0.5}, {0.5, -0.5}, {-0.5, -0.5}}}},
        {"Bar", 0.0, false, {{{0, 0.5}, {0, -0.5}}}},
        {"Double arrow",
         0.9,
         true,
         {{{0, 0}, {0.5, 0.3}, {0.5, -0.3}}, {{0.5, 0}, {1, 0.3}, {1, -0.3}}}},
        {"Slash", 0.0, false, {{{0.5, 0.5}, {-0.5, -0.5}}}},
    };
    return shapes[shape > 0 && shape < kXLineEndCount ? shape : 0];
}

} // namespace

const char* XfnGetLineEndName(int shape)
{
    return shape >= 0 && shape < kXLineEndCount ? GetShape(shape).name : nullptr;
}

std::vector<tagXLineEndPart> XfnMakeLineEnd(int shape, const tagXVector3& from,
                                            const tagXVector3& tip, double size, double& inset)
{
    inset = 0.0;
    std::vector<tagXLineEndPart> made;
    const double lengthX = from.x - tip.x;
    const double lengthY = from.y - tip.y;
    const double length = std::hypot(lengthX, lengthY);
    if (!(size > 0.0) || !XfnIsSet(size) || !(length > 0.0) || !XfnIsSet(length)) return made;
    const double backX = lengthX / length;
    const double backY = lengthY / length;
    const Shape& used = GetShape(shape);
    inset = used.inset * size;
    for (const auto& part : used.parts) {
        tagXLineEndPart added{{}, used.isFilled};
        for (const Place& place : part) {
            // seen along the line, left is the back direction turned clockwise
            added.vertices.emplace_back(tip.x + size * (place.back * backX + place.aside * backY),
                                        tip.y + size * (place.back * backY - place.aside * backX),
                                        tip.z);
        }
        made.push_back(std::move(added));
    }
    return made;
}

double XfnGetLineEndSize(double size, double thick, double worldPerPixel, double lineLength)
{
    double wanted = size;
    if (size == 0.0 && thick > 0.0) {
        wanted = kSizeInThicknesses * thick;
    } else if (size <= 0.0) {
        const double pixels =
            size < 0.0 ? -size : std::max(kXLineEndPixels, -thick * kSizeInThicknesses);
        wanted = worldPerPixel > 0.0 ? pixels * worldPerPixel : kSizeInLengths * lineLength;
    }
    return std::min(wanted, lineLength);
}

void XfnRecordLineEnds(XVertBuffer& buffer, std::vector<tagXLineEndPart> parts, const XWarp2D* warp,
                       const tagXVertLine& line)
{
    if (line.style.IsNone()) return;
    tagXVertLine stroke = line;
    stroke.style = tagXLineStyle(tagXLineStyle::kSolid); // a dashed outline is no shape any more
    tagXVertFill fill;
    fill.foreColour = stroke.colour;
    for (auto& part : parts) {
        XfnWarpVertices(part.vertices, warp);
        if (part.isFilled) {
            buffer.AddPolygon(part.vertices.data(), part.vertices.size(), nullptr, &fill);
        } else {
            buffer.AddPolyline(part.vertices.data(), part.vertices.size(), stroke);
        }
    }
}
