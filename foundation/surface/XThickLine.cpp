#include "foundation/surface/XThickLine.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <vector>

namespace {

constexpr double kMaxDiscError = 0.1; // of a pixel, between a disc and its polygon
constexpr int kMaxDiscSides = 256;

double Length(const QPointF& v)
{
    return std::hypot(v.x(), v.y());
}

} // namespace

tagXSubPixel XfnToSubPixel(const QPointF& point)
{
    constexpr double kMax = tagXSubPixel::kMax;
    const double x = std::clamp(point.x() * tagXSubPixel::kOne, -kMax, kMax);
    const double y = std::clamp(point.y() * tagXSubPixel::kOne, -kMax, kMax);
    return {static_cast<std::int32_t>(std::lrint(x)), static_cast<std::int32_t>(std::lrint(y))};
}

void XThickLine::AddRing(const QPointF* points, std::size_t count)
{
    tagXSubPixel first = XfnToSubPixel(points[count - 1]);
    for (std::size_t i = 0; i < count; ++i) {
        const tagXSubPixel next = XfnToSubPixel(points[i]);
        m_fill.AddEdge(first, next);
        first = next;
    }
}

void XThickLine::AddSegment(const QPointF& a, const QPointF& b, bool isLongerA, bool isLongerB)
{
    const double length = Length(b - a);
    if (length == 0.0) return;
    const QPointF along = (b - a) * (m_half / length);
    const QPointF across(-along.y(), along.x());
    const QPointF from = isLongerA ? a - along : a;
    const QPointF to = isLongerB ? b + along : b;
    const QPointF ring[] = {from - across, to - across, to + across, from + across};
    AddRing(ring, std::size(ring));
}

void XThickLine::AddDisc(const QPointF& centre)
{
    const double angle = 2.0 * std::acos(std::max(0.0, 1.0 - kMaxDiscError / m_half));
    const int sides =
        std::clamp(static_cast<int>(std::ceil(2.0 * std::numbers::pi / angle)), 6, kMaxDiscSides);
    QPointF ring[kMaxDiscSides];
    for (int i = 0; i < sides; ++i) { // the way the segments wind
        const double at = 2.0 * std::numbers::pi * i / sides;
        ring[i] = centre + QPointF(std::cos(at), std::sin(at)) * m_half;
    }
    AddRing(ring, static_cast<std::size_t>(sides));
}

void XThickLine::AddLine(const QPointF* points, std::size_t count, bool isRing)
{
    // a corner so flat that its gap is not seen needs no disc
    const auto needsDisc = [&](const QPointF& before, const QPointF& corner, const QPointF& after) {
        const QPointF in = corner - before;
        const QPointF out = after - corner;
        const double scale = Length(in) * Length(out);
        if (m_half < 1.0) return false; // far less than a pixel would be missing
        if (scale == 0.0) return true;
        const double turn = std::fabs(in.x() * out.y() - in.y() * out.x()) / scale;
        const bool isBack = in.x() * out.x() + in.y() * out.y() < 0.0;
        return isBack || turn * m_half > 0.25;
    };
    if (count == 0) return;
    const std::size_t segments = isRing ? count : count - 1;
    for (std::size_t i = 0; i < segments; ++i) {
        const bool isFirst = !isRing && i == 0;
        const bool isLast = !isRing && i + 1 == segments;
        const QPointF& a = points[i];
        const QPointF& b = points[(i + 1) % count];
        AddSegment(a, b, isFirst && m_cap == XCap::Square, isLast && m_cap == XCap::Square);
        if (!isLast && needsDisc(a, b, points[(i + 2) % count])) AddDisc(b);
    }
    if (isRing) return;
    const bool isPoint =
        std::all_of(points, points + count, [&](const QPointF& p) { return p == points[0]; });
    if (m_cap == XCap::Round) {
        AddDisc(points[0]);
        if (!isPoint) AddDisc(points[count - 1]);
    } else if (m_cap == XCap::Square && isPoint) {
        const QPointF step(m_half, 0.0);
        AddSegment(points[0] - step, points[0] + step, false, false);
    }
}

void XThickLine::AddDashes(const QPointF* points, std::size_t count, const QList<qreal>& lengths,
                           double offset)
{
    qsizetype part = 0;
    while (offset >= lengths[part]) {
        offset -= lengths[part];
        part = (part + 1) % lengths.size();
    }
    double left = lengths[part] - offset;
    std::vector<QPointF> dash;
    const auto endDash = [&] {
        if (dash.size() > 1) AddLine(dash.data(), dash.size(), false);
        dash.clear();
    };
    for (std::size_t i = 0; i + 1 < count; ++i) {
        const QPointF& a = points[i];
        const QPointF step = points[i + 1] - a;
        const double length = Length(step);
        const auto at = [&](double way) { return length > 0.0 ? a + step * (way / length) : a; };
        double way = 0.0;
        while (length - way > left) {
            if (part % 2 == 0) {
                if (dash.empty()) dash.push_back(at(way));
                dash.push_back(at(way + left));
                endDash();
            }
            way += left;
            part = (part + 1) % lengths.size();
            left = lengths[part];
        }
        left -= length - way;
        if (part % 2 == 0) {
            if (dash.empty()) dash.push_back(at(way));
            dash.push_back(points[i + 1]);
        }
    }
    endDash();
}
