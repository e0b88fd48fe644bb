#include "foundation/surface/XThickLine.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <vector>

namespace {

constexpr double kMaxDiscError = 0.1; // of a pixel, between a disc and its polygon
constexpr int kMaxDiscSides = 256;
constexpr double kMaxGap = 1.0 / 32.0; // of a pixel, at the outer side of a corner

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

int XThickLine::CountSides(double angle) const
{
    const double step = 2.0 * std::acos(std::max(0.0, 1.0 - kMaxDiscError / m_half));
    return std::clamp(static_cast<int>(std::ceil(angle / step)), 1, kMaxDiscSides);
}

void XThickLine::AddArc(std::vector<QPointF>& ring, const QPointF& centre, double from,
                        double angle) const
{
    const int sides = CountSides(angle);
    for (int i = 1; i < sides; ++i) {
        const double at = from + angle * i / sides;
        ring.push_back(centre + QPointF(std::cos(at), std::sin(at)) * m_half);
    }
}

void XThickLine::AddSegment(const QPointF& a, const QPointF& b, bool isEndA, bool isEndB)
{
    const QPointF along = (b - a) * (m_half / Length(b - a));
    const QPointF across(-along.y(), along.x());
    const QPointF from = isEndA && m_cap == XCap::Square ? a - along : a;
    const QPointF to = isEndB && m_cap == XCap::Square ? b + along : b;
    const double rightWay = std::atan2(-across.y(), -across.x());
    m_ring.assign({from - across, to - across});
    if (isEndB && m_cap == XCap::Round) AddArc(m_ring, b, rightWay, std::numbers::pi);
    m_ring.push_back(to + across);
    m_ring.push_back(from + across);
    if (isEndA && m_cap == XCap::Round)
        AddArc(m_ring, a, rightWay + std::numbers::pi, std::numbers::pi);
    AddRing(m_ring.data(), m_ring.size());
}

// The wedge that two segments leave open at the outer side of their corner. It ends within them: what
// lies on their sides is covered once, so that smoothed sides are even along the line.
void XThickLine::AddCorner(const QPointF& before, const QPointF& corner, const QPointF& after)
{
    if (m_half < 1.0) return; // far less than a pixel would be missing
    const QPointF in = (corner - before) / Length(corner - before);
    const QPointF out = (after - corner) / Length(after - corner);
    const double cross = in.x() * out.y() - in.y() * out.x();
    const double dot = QPointF::dotProduct(in, out);
    if (dot >= 0.0 && std::fabs(cross) * m_half <= kMaxGap) return;
    const double turn = std::atan2(std::fabs(cross), dot);
    const double side = cross < 0.0 ? 1.0 : -1.0; // the outer one
    const QPointF first = QPointF(-in.y(), in.x()) * side;
    const QPointF last = QPointF(-out.y(), out.x()) * side;
    const QPointF begin = cross < 0.0 ? last : first; // the way the segments wind
    const QPointF end = cross < 0.0 ? first : last;
    QPointF inward = out - in;
    inward = inward * (1.0 / Length(inward));
    m_ring.assign({corner + inward, corner + begin * m_half});
    AddArc(m_ring, corner, std::atan2(begin.y(), begin.x()), turn);
    m_ring.push_back(corner + end * m_half);
    AddRing(m_ring.data(), m_ring.size());
}

void XThickLine::AddPoint(const QPointF& centre)
{
    if (m_cap == XCap::Flat) return;
    const QPointF step(m_half, 0.0);
    if (m_cap == XCap::Square) {
        m_ring = {centre - step - step.transposed(), centre + step - step.transposed(),
                  centre + step + step.transposed(), centre - step + step.transposed()};
    } else {
        m_ring.assign({centre + step});
        AddArc(m_ring, centre, 0.0, 2.0 * std::numbers::pi);
    }
    AddRing(m_ring.data(), m_ring.size());
}

void XThickLine::AddLine(const QPointF* points, std::size_t count, bool isRing)
{
    if (count == 0) return;
    // places that repeat have no direction
    if (std::adjacent_find(points, points + count) != points + count) {
        m_distinct.resize(count);
        count = static_cast<std::size_t>(
            std::unique_copy(points, points + count, m_distinct.begin()) - m_distinct.begin());
        points = m_distinct.data();
    }
    while (isRing && count > 1 && points[count - 1] == points[0])
        --count;
    if (count == 1) return AddPoint(points[0]);
    const std::size_t segments = isRing ? count : count - 1;
    for (std::size_t i = 0; i < segments; ++i) {
        const QPointF& a = points[i];
        const QPointF& b = points[(i + 1) % count];
        const bool isLast = !isRing && i + 1 == segments;
        AddSegment(a, b, !isRing && i == 0, isLast);
        if (!isLast) AddCorner(a, b, points[(i + 2) % count]);
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
