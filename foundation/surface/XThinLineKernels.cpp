#include "foundation/surface/XThinLine.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <utility>

namespace {

// Hands visit(x, y) the pixels behind that of `from` up to that of `to`, or up to the one before it.
template <class Visit>
void ForEachPixel(const tagXSubPixel& from, const tagXSubPixel& to, bool withLast, Visit visit)
{
    const int x0 = from.x >> 8, y0 = from.y >> 8;
    const int x1 = to.x >> 8, y1 = to.y >> 8;
    const int columns = std::abs(x1 - x0), rows = std::abs(y1 - y0);
    if (columns > 1 || rows > 1) {
        const bool isAcross = std::abs(to.x - from.x) >= std::abs(to.y - from.y);
        // along the longer way, from centre to centre; 16 more bits than the places have
        const std::int64_t alongFrom = isAcross ? from.x : from.y;
        const std::int64_t alongTo = isAcross ? to.x : to.y;
        const std::int64_t otherFrom = isAcross ? from.y : from.x;
        const std::int64_t otherTo = isAcross ? to.y : to.x;
        const int direction = alongTo >= alongFrom ? 1 : -1;
        const double slope =
            static_cast<double>(otherTo - otherFrom) / static_cast<double>(alongTo - alongFrom);
        int at = static_cast<int>(alongFrom >> 8) + direction;
        const int end = static_cast<int>(alongTo >> 8);
        const double toCentre =
            static_cast<double>(at) * 256.0 + 128.0 - static_cast<double>(alongFrom);
        auto other = static_cast<std::int64_t>((static_cast<double>(otherFrom) + toCentre * slope) *
                                               65536.0);
        const auto step = static_cast<std::int64_t>(slope * (direction * 256.0 * 65536.0));
        for (; at != end; at += direction, other += step) {
            const int across = std::max(static_cast<int>(other >> 24), 0); // digits lost
            if (isAcross) {
                visit(at, across);
            } else {
                visit(across, at);
            }
        }
    }
    if (withLast) visit(x1, y1);
}

template <class Plot>
void DrawWith(const tagXSubPixel* points, std::size_t count, bool isRing, Plot plot)
{
    plot(points[0].x >> 8, points[0].y >> 8);
    const auto isSame = [](const tagXSubPixel& a, const tagXSubPixel& b) {
        return (a.x >> 8) == (b.x >> 8) && (a.y >> 8) == (b.y >> 8);
    };
    std::size_t last = 0;
    for (std::size_t i = 1; i < count; ++i) {
        if (isSame(points[i], points[last])) continue;
        const bool isClosing = isRing && i + 1 == count && isSame(points[i], points[0]);
        ForEachPixel(points[last], points[i], !isClosing, plot);
        last = i;
    }
    if (isRing && !isSame(points[last], points[0])) {
        ForEachPixel(points[last], points[0], false, plot);
    }
}

} // namespace

void XThinLine::Draw(const tagXSubPixel* points, std::size_t count, bool isRing,
                     const tagXPixelPaint& paint)
{
    if (count == 0) return;
    const std::uint32_t word = paint.fore;
    if (paint.kind == tagXPixelPaint::XKind::Opaque) {
        DrawWith(points, count, isRing, [&](int x, int y) { m_pixels.Row(y)[x] = word; });
    } else {
        DrawWith(points, count, isRing, [&](int x, int y) {
            std::uint32_t& pixel = m_pixels.Row(y)[x];
            pixel = tagXPixelPaint::Over(word, pixel);
        });
    }
}

void XThinLine::Lay(int x, int y, unsigned share, const tagXPixelPaint& paint)
{
    if (share == 0 || x < 0 || y < 0 || x >= m_pixels.width || y >= m_pixels.height) return;
    std::uint32_t& pixel = m_pixels.Row(y)[x];
    pixel = tagXPixelPaint::Over(tagXPixelPaint::Thin(paint.fore, share), pixel);
}

void XThinLine::DrawSmooth(tagXSubPixel from, tagXSubPixel to, bool isAcross,
                           const tagXPixelPaint& paint)
{
    if (!isAcross) {
        std::swap(from.x, from.y);
        std::swap(to.x, to.y);
    }
    if (from.x > to.x) std::swap(from, to);
    // columns whose centres lie on the line; the next line goes on with the next
    const int begin = std::max((from.x + 127) >> 8, 0);
    const int end = std::min((to.x + 127) >> 8, isAcross ? m_pixels.width : m_pixels.height);
    if (begin >= end) return;
    const double slope = static_cast<double>(to.y - from.y) / (to.x - from.x);
    auto y = static_cast<std::int64_t>((from.y - 128 + (begin * 256.0 + 128.0 - from.x) * slope) *
                                       65536.0);
    const auto step = static_cast<std::int64_t>(slope * (256.0 * 65536.0));
    for (int x = begin; x < end; ++x, y += step) {
        const int row = static_cast<int>(y >> 24);
        const auto below = static_cast<unsigned>(y >> 16 & 255);
        if (isAcross) {
            Lay(x, row, 255 - below, paint);
            Lay(x, row + 1, below, paint);
        } else {
            Lay(row, x, 255 - below, paint);
            Lay(row + 1, x, below, paint);
        }
    }
}

void XThinLine::DrawSmooth(const tagXSubPixel* points, std::size_t count, bool isRing,
                           const tagXPixelPaint& paint)
{
    bool wasAcross = false, isFirst = true;
    for (std::size_t i = isRing ? 0 : 1; i < count; ++i) {
        const tagXSubPixel& from = points[i > 0 ? i - 1 : count - 1];
        const tagXSubPixel& to = points[i];
        if (from.x == to.x && from.y == to.y) continue;
        const bool isAcross = std::abs(to.x - from.x) >= std::abs(to.y - from.y);
        DrawSmooth(from, to, isAcross, paint);
        // where columns give way to rows neither may reach the corner
        if (!isFirst && isAcross != wasAcross) Lay(from.x >> 8, from.y >> 8, 128, paint);
        wasAcross = isAcross;
        isFirst = false;
    }
}

void XThinLine::DrawDashes(const tagXSubPixel& from, const tagXSubPixel& to, std::uint16_t pattern,
                           double start, bool withFirst, const tagXPixelPaint& paint)
{
    const double dx = to.x - from.x;
    const double dy = to.y - from.y;
    const double length = std::sqrt(dx * dx + dy * dy);
    if (length == 0.0) return;
    const bool isAcross = std::fabs(dx) >= std::fabs(dy);
    const double along = isAcross ? dx : dy;
    const double perPixel = length / along;
    const double begin = isAcross ? from.x / 256.0 : from.y / 256.0;
    const auto plot = [&](int x, int y) {
        const double way = start + ((isAcross ? x : y) + 0.5 - begin) * perPixel;
        const auto unit = static_cast<std::int64_t>(std::floor(way)) & 15;
        if (!(pattern >> (15 - unit) & 1)) return;
        std::uint32_t& pixel = m_pixels.Row(y)[x];
        pixel = tagXPixelPaint::Over(paint.fore, pixel);
    };
    if (withFirst) plot(from.x >> 8, from.y >> 8);
    if ((from.x >> 8) != (to.x >> 8) || (from.y >> 8) != (to.y >> 8))
        ForEachPixel(from, to, true, plot);
}
