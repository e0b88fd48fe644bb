#include "foundation/surface/XLineClip.h"

#include <algorithm>
#include <cmath>

namespace {

// Liang and Barsky, ACM Transactions on Graphics 3(1), 1984: narrows [begin, end] of the segment's
// parameter by one side of the box.
bool CutParameter(double slope, double distance, double& begin, double& end)
{
    if (slope == 0.0) return distance >= 0.0;
    const double t = distance / slope;
    if (slope < 0.0) {
        begin = std::max(begin, t);
    } else {
        end = std::min(end, t);
    }
    return begin <= end;
}

bool ClipSegment(const QPointF& a, const QPointF& b, const QRectF& box, double& begin, double& end)
{
    begin = 0.0;
    end = 1.0;
    const double dx = b.x() - a.x();
    const double dy = b.y() - a.y();
    return CutParameter(-dx, a.x() - box.left(), begin, end) &&
           CutParameter(dx, box.right() - a.x(), begin, end) &&
           CutParameter(-dy, a.y() - box.top(), begin, end) &&
           CutParameter(dy, box.bottom() - a.y(), begin, end);
}

// Far vertices leave few digits for the cut; it lies in the box all the same.
QPointF PointAt(const QPointF& a, const QPointF& b, double t, const QRectF& box)
{
    const QPointF p = t < 1.0 ? a + (b - a) * t : b;
    return {std::clamp(p.x(), box.left(), box.right()), std::clamp(p.y(), box.top(), box.bottom())};
}

enum class XSide { Left, Right, Top, Bottom };

// Sutherland and Hodgman, Communications of the ACM 17(1), 1974: one side of the box.
QPolygonF CutSide(const QPolygonF& ring, XSide side, double limit)
{
    const bool isAcross = side == XSide::Left || side == XSide::Right;
    const double sign = side == XSide::Left || side == XSide::Top ? 1.0 : -1.0;
    const auto depth = [&](const QPointF& p) {
        return sign * ((isAcross ? p.x() : p.y()) - limit);
    };
    QPolygonF cut;
    cut.reserve(ring.size() + 4);
    for (qsizetype i = 0; i < ring.size(); ++i) {
        const QPointF& a = ring[i > 0 ? i - 1 : ring.size() - 1];
        const QPointF& b = ring[i];
        const double depthA = depth(a);
        const double depthB = depth(b);
        if ((depthA >= 0.0) != (depthB >= 0.0)) {
            const QPointF p = a + (b - a) * (depthA / (depthA - depthB));
            // exactly on the side, whatever digits far vertices leave
            cut.push_back(isAcross ? QPointF(limit, p.y()) : QPointF(p.x(), limit));
        }
        if (depthB >= 0.0) cut.push_back(b);
    }
    return cut;
}

} // namespace

std::vector<tagXLineRun> XfnClipLine(const QPolygonF& line, const QRectF& box)
{
    std::vector<tagXLineRun> runs;
    bool isOpen = false; // the last run goes on to the next segment
    double length = 0.0;
    for (qsizetype i = 0; i + 1 < line.size(); ++i) {
        const QPointF& a = line[i];
        const QPointF& b = line[i + 1];
        const double step = std::hypot(b.x() - a.x(), b.y() - a.y());
        double begin = 0.0;
        double end = 1.0;
        if (!ClipSegment(a, b, box, begin, end)) {
            isOpen = false;
        } else {
            if (!isOpen) runs.push_back({{PointAt(a, b, begin, box)}, length + step * begin});
            runs.back().points.push_back(PointAt(a, b, end, box));
            isOpen = end >= 1.0;
        }
        length += step;
    }
    return runs;
}

QPolygonF XfnClipRing(const QPolygonF& ring, const QRectF& box)
{
    QPolygonF cut = CutSide(ring, XSide::Left, box.left());
    cut = CutSide(cut, XSide::Right, box.right());
    cut = CutSide(cut, XSide::Top, box.top());
    return CutSide(cut, XSide::Bottom, box.bottom());
}
