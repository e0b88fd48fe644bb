#include "foundation/vector/XNorthArrowShape.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <utility>

namespace {

using XRole = tagXNorthArrowPart::XRole;
using Path = std::vector<tagXVector3>;

constexpr const char* kNames[kXNorthArrowCount] = {
    "Plain arrow",      "Half-filled arrow", "Compass rose, 4 points", "Compass rose, 16 points",
    "Disc with N",      "Ornamental rose",   "Survey arrow",           "Compass needle",
    "Navigation arrow", "Meridian",
};

tagXVector3 GetPolar(double angleDeg, double radius)
{
    const double angle = angleDeg * std::numbers::pi / 180.0;
    return {radius * std::cos(angle), radius * std::sin(angle)};
}

// Gathers the parts of one arrow. North is 90 degrees.
class Builder
{
public:
    explicit Builder(int resolution) : m_resolution(resolution) {}

    void Add(XRole role, Path vertices) { m_parts.push_back({role, std::move(vertices)}); }

    // The same shape on both sides of the north line, each in its role.
    void AddMirrored(XRole left, XRole right, const Path& leftVertices)
    {
        Path mirrored = leftVertices;
        for (tagXVector3& vertex : mirrored)
            vertex.x = -vertex.x;
        Add(left, leftVertices);
        Add(right, std::move(mirrored));
    }

    // Points from `angleDeg` over `sweepDeg`, both ends included.
    Path MakeArc(const tagXVector3& center, double radiusX, double radiusY, double angleDeg,
                 double sweepDeg) const
    {
        const int chords =
            std::max(1, static_cast<int>(std::ceil(std::fabs(sweepDeg) * m_resolution / 360.0)));
        Path arc;
        for (int i = 0; i <= chords; ++i) {
            const tagXVector3 at = GetPolar(angleDeg + sweepDeg * i / chords, 1.0);
            arc.push_back({center.x + radiusX * at.x, center.y + radiusY * at.y});
        }
        return arc;
    }

    void AddCircle(XRole role, const tagXVector3& center, double radius)
    {
        Path circle = MakeArc(center, radius, radius, 0.0, 360.0);
        circle.pop_back();
        Add(role, std::move(circle));
    }

    // Spikes, each of a light and a dark half, so that the star looks folded.
    void AddStar(const tagXVector3& center, int points, double firstDeg, double outer, double inner)
    {
        const double halfDeg = 180.0 / points;
        for (int i = 0; i < points; ++i) {
            const double angleDeg = firstDeg + 2.0 * halfDeg * i;
            const tagXVector3 tip = center + GetPolar(angleDeg, outer);
            Add(XRole::Back, {center, tip, center + GetPolar(angleDeg - halfDeg, inner)});
            Add(XRole::Fore, {center, tip, center + GetPolar(angleDeg + halfDeg, inner)});
        }
    }

    // Marks across a ring.
    void AddGraduation(const tagXVector3& center, double inner, double outer, int count)
    {
        for (int i = 0; i < count; ++i) {
            const double angleDeg = 90.0 + 360.0 * i / count;
            Add(XRole::Stroke,
                {center + GetPolar(angleDeg, inner), center + GetPolar(angleDeg, outer)});
        }
    }

    void AddLetter(char letter, const tagXVector3& center, double height)
    {
        Path outline = MakeLetter(letter);
        double width = 0.0;
        for (const tagXVector3& vertex : outline)
            width = std::max(width, vertex.x);
        for (tagXVector3& vertex : outline) {
            vertex = {center.x + (vertex.x - width / 2.0) * height,
                      center.y + (vertex.y - 0.5) * height};
        }
        Add(XRole::Line, std::move(outline));
    }

    std::vector<tagXNorthArrowPart> Take() { return std::move(m_parts); }

private:
    // Letters of height 1 from (0, 0) on.
    Path MakeLetter(char letter) const
    {
        switch (letter) {
        case 'E':
            return {{0, 0},       {0, 1},       {0.58, 1},    {0.58, 0.84},
                    {0.18, 0.84}, {0.18, 0.59}, {0.52, 0.59}, {0.52, 0.43},
                    {0.18, 0.43}, {0.18, 0.16}, {0.58, 0.16}, {0.58, 0}};
        case 'W':
            return {{0, 1}, {0.17, 1}, {0.3, 0.33}, {0.42, 1},   {0.58, 1}, {0.7, 0.33}, {0.83, 1},
                    {1, 1}, {0.79, 0}, {0.61, 0},   {0.5, 0.58}, {0.39, 0}, {0.21, 0}};
        case 'S':
            return MakeS();
        default:
            return {{0, 0},    {0, 1},    {0.2, 1},  {0.61, 0.3}, {0.61, 1},
                    {0.78, 1}, {0.78, 0}, {0.58, 0}, {0.17, 0.7}, {0.17, 0}};
        }
    }

    // A band along two bows, the upper one open to the right and the lower one to the left.
    Path MakeS() const
    {
        constexpr double kHalf = 0.085, kRadiusX = 0.225, kRadiusY = 0.21, kMiddle = 0.31;
        const tagXVector3 upper(kMiddle, 1.0 - kHalf - kRadiusY), lower(kMiddle, kHalf + kRadiusY);
        Path band = MakeArc(upper, kRadiusX + kHalf, kRadiusY + kHalf, 20.0, 250.0);
        const Path lowerInner = MakeArc(lower, kRadiusX - kHalf, kRadiusY - kHalf, 90.0, -250.0);
        band.insert(band.end(), lowerInner.begin(), lowerInner.end());
        const Path lowerOuter = MakeArc(lower, kRadiusX + kHalf, kRadiusY + kHalf, -160.0, 250.0);
        band.insert(band.end(), lowerOuter.begin(), lowerOuter.end());
        const Path upperInner = MakeArc(upper, kRadiusX - kHalf, kRadiusY - kHalf, 270.0, -250.0);
        band.insert(band.end(), upperInner.begin(), upperInner.end());
        return band;
    }

    int m_resolution;
    std::vector<tagXNorthArrowPart> m_parts;
};

void AddPlain(Builder& b)
{
    b.Add(XRole::Fore, {{-0.065, -0.5},
                        {-0.065, -0.02},
                        {-0.2, -0.06},
                        {0, 0.24},
                        {0.2, -0.06},
                        {0.065, -0.02},
                        {0.065, -0.5}});
    b.AddLetter('N', {0, 0.395}, 0.21);
}

void AddHalves(Builder& b)
{
    b.AddMirrored(XRole::Fore, XRole::Back, {{0, 0.24}, {-0.25, -0.5}, {0, -0.34}});
    b.AddLetter('N', {0, 0.395}, 0.21);
}

void AddRose4(Builder& b)
{
    b.AddStar({0, -0.11}, 4, 90.0, 0.39, 0.12);
    b.AddLetter('N', {0, 0.405}, 0.19);
}

void AddRose16(Builder& b)
{
    b.AddCircle(XRole::Outline, {0, 0}, 0.275);
    b.AddCircle(XRole::Outline, {0, 0}, 0.25);
    b.AddStar({0, 0}, 8, 90.0 + 22.5, 0.23, 0.13);
    b.AddStar({0, 0}, 4, 90.0 + 45.0, 0.3, 0.11);
    b.AddStar({0, 0}, 4, 90.0, 0.37, 0.1);
    const char letters[] = {'E', 'N', 'W', 'S'};
    for (int i = 0; i < 4; ++i)
        b.AddLetter(letters[i], GetPolar(90.0 * i, 0.44), 0.11);
}

void AddDisc(Builder& b)
{
    const tagXVector3 center(0, -0.17);
    constexpr double kRadius = 0.33;
    Path pointer = b.MakeArc(center, kRadius, kRadius, 90.0 - 34.0, 68.0);
    pointer.push_back({0, 0.5});
    b.Add(XRole::Fore, std::move(pointer));
    b.AddCircle(XRole::Back, center, kRadius);
    b.AddLetter('N', center, 0.34);
}

void AddOrnament(Builder& b)
{
    const tagXVector3 center(0, -0.1);
    b.AddCircle(XRole::Back, center, 0.4);
    b.AddGraduation(center, 0.36, 0.4, 72);
    b.AddGraduation(center, 0.34, 0.4, 8);
    b.AddCircle(XRole::Outline, center, 0.36);
    b.AddStar(center, 4, 90.0 + 45.0, 0.26, 0.12);
    b.AddStar(center, 4, 90.0, 0.35, 0.13);
    b.AddCircle(XRole::Back, center, 0.085);
    b.AddLetter('N', center, 0.095);
    // the lily: a leaf upright, one bent to either side, a band around their feet
    const tagXVector3 foot(0, 0.305);
    Path side = b.MakeArc({-0.062, 0.375}, 0.045, 0.035, 200.0, -200.0);
    for (const tagXVector3& vertex : b.MakeArc({-0.062, 0.36}, 0.05, 0.095, 25.0, 65.0))
        side.push_back(vertex);
    for (const tagXVector3& vertex : b.MakeArc({-0.062, 0.37}, 0.085, 0.085, 90.0, 110.0))
        side.push_back(vertex);
    b.AddMirrored(XRole::Fore, XRole::Fore, side);
    Path leaf = b.MakeArc({-0.09, 0.4}, 0.14, 0.14, -43.0, 86.0);
    for (const tagXVector3& vertex : b.MakeArc({0.09, 0.4}, 0.14, 0.14, 137.0, 86.0))
        leaf.push_back(vertex);
    b.Add(XRole::Fore, std::move(leaf));
    b.Add(XRole::Fore, {{-0.055, foot.y + 0.012},
                        {0.055, foot.y + 0.012},
                        {0.055, foot.y + 0.037},
                        {-0.055, foot.y + 0.037}});
}

void AddSurvey(Builder& b)
{
    b.Add(XRole::Stroke, {{0, -0.5}, {0, 0.5}});
    b.Add(XRole::Line, {{0, 0.5}, {-0.11, 0.16}, {0, 0.21}});
    for (const double y : {-0.5, -0.46, -0.42})
        b.AddMirrored(XRole::Stroke, XRole::Stroke, {{0, y + 0.06}, {-0.055, y}});
    b.AddLetter('N', {0, -0.12}, 0.3);
}

void AddNeedle(Builder& b)
{
    const tagXVector3 center(0, -0.14);
    b.AddCircle(XRole::Back, center, 0.36);
    b.AddGraduation(center, 0.33, 0.36, 36);
    b.AddGraduation(center, 0.3, 0.36, 4);
    b.Add(XRole::Fore, {{0, 0.14}, {-0.085, center.y}, {0.085, center.y}});
    b.Add(XRole::Back, {{0, -0.42}, {-0.085, center.y}, {0.085, center.y}});
    b.AddCircle(XRole::Back, center, 0.028);
    b.AddLetter('N', {0, 0.38}, 0.22);
}

void AddNavigation(Builder& b)
{
    b.Add(XRole::Fore, {{0, 0.5}, {-0.31, -0.27}, {0, -0.11}, {0.31, -0.27}});
    b.AddLetter('N', {0, -0.4}, 0.2);
}

void AddMeridian(Builder& b)
{
    b.Add(XRole::Stroke, {{0, -0.16}, {0, 0.16}});
    b.Add(XRole::Stroke, {{-0.16, 0}, {0.16, 0}});
    b.Add(XRole::Fore, {{0, 0.33}, {-0.075, 0.11}, {0, 0.15}, {0.075, 0.11}});
    b.Add(XRole::Back, {{0, -0.33}, {-0.075, -0.11}, {0, -0.15}, {0.075, -0.11}});
    b.AddCircle(XRole::Back, {0, 0}, 0.035);
    b.AddLetter('N', {0, 0.425}, 0.15);
    b.AddLetter('S', {0, -0.425}, 0.15);
}

} // namespace

const char* XfnGetNorthArrowName(int style)
{
    return style >= 0 && style < kXNorthArrowCount ? kNames[style] : nullptr;
}

std::vector<tagXNorthArrowPart> XfnMakeNorthArrow(int style, int resolution)
{
    using Maker = void (*)(Builder&);
    constexpr Maker kMakers[kXNorthArrowCount] = {
        AddPlain,    AddHalves, AddRose4,  AddRose16,     AddDisc,
        AddOrnament, AddSurvey, AddNeedle, AddNavigation, AddMeridian,
    };
    if (style < 0 || style >= kXNorthArrowCount) return {};
    Builder builder(std::max(resolution, 4));
    kMakers[style](builder);
    return builder.Take();
}
