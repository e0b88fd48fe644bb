#include "foundation/raster/XRegionMask.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace {

constexpr double kFarthest = 1e15; // beyond it a double does not know single pixels

bool ArePlaces(const double* xs, const double* ys, int n)
{
    if (!xs || !ys || n < 1) return false;
    for (int i = 0; i < n; ++i)
        if (!(std::fabs(xs[i]) <= kFarthest && std::fabs(ys[i]) <= kFarthest)) return false;
    return true;
}

int Limit(double value, int low, int high)
{
    return static_cast<int>(std::clamp(value, static_cast<double>(low), static_cast<double>(high)));
}

/// One edge of a ring and the rows of pixel centres that it crosses, [begin, end).
struct tagEdge
{
    double x0, y0, x1, y1;
    int begin, end;

    double GetCrossing(double row) const { return x0 + (row - y0) / (y1 - y0) * (x1 - x0); }
};

std::vector<tagEdge> ListEdges(const double* xs, const double* ys, int n, int height)
{
    std::vector<tagEdge> edges;
    for (int i = 0, j = n - 1; i < n; j = i++) {
        // a row is crossed when one end lies at or above it and the other below
        const int begin = Limit(std::ceil(std::min(ys[i], ys[j])), 0, height);
        const int end = Limit(std::ceil(std::max(ys[i], ys[j])), 0, height);
        if (begin >= end) continue;
        // neighbours run along their common edge in opposite directions and must round alike
        const int top = ys[i] < ys[j] ? i : j;
        const int bottom = i + j - top;
        edges.push_back({xs[top], ys[top], xs[bottom], ys[bottom], begin, end});
    }
    std::sort(edges.begin(), edges.end(),
              [](const tagEdge& a, const tagEdge& b) { return a.begin < b.begin; });
    return edges;
}

/// Calls take(major, minor) for the pixels of a segment, `major` along the axis on which it is
/// longer, within [0, size) of that axis.
template <class F>
void StepAlong(double major0, double minor0, double major1, double minor1, int size, F&& take)
{
    if (major0 > major1) {
        std::swap(major0, major1);
        std::swap(minor0, minor1);
    }
    const double length = major1 - major0;
    const double first = std::max(std::floor(major0 + 0.5), 0.0);
    const double last = std::min(std::floor(major1 + 0.5), size - 1.0);
    for (double at = first; at <= last; at += 1.0) {
        const double part = length > 0.0 ? std::clamp((at - major0) / length, 0.0, 1.0) : 0.0;
        take(static_cast<int>(at), std::floor(minor0 + part * (minor1 - minor0) + 0.5));
    }
}

} // namespace

void XRegionMask::AddSpan(int y, int x0, int x1)
{
    if (x0 >= x1) return;
    m_pixelCount += x1 - x0;
    if (!m_spans.empty() && m_spans.back().y == y && m_spans.back().x1 == x0)
        m_spans.back().x1 = x1;
    else
        m_spans.push_back({y, x0, x1});
}

int XRegionMask::SetPolygon(const double* xs, const double* ys, int n, int width, int height)
{
    *this = {};
    if (!ArePlaces(xs, ys, n)) return 0;
    const std::vector<tagEdge> edges = ListEdges(xs, ys, n, height);
    std::vector<const tagEdge*> active;
    std::vector<double> crossings;
    auto next = edges.begin();
    for (int row = edges.empty() ? height : edges.front().begin; row < height; ++row) {
        std::erase_if(active, [row](const tagEdge* edge) { return edge->end <= row; });
        for (; next != edges.end() && next->begin == row; ++next)
            active.push_back(&*next);
        if (active.empty()) {
            if (next == edges.end()) break;
            row = next->begin - 1;
            continue;
        }
        crossings.clear();
        for (const tagEdge* edge : active)
            crossings.push_back(edge->GetCrossing(row));
        std::sort(crossings.begin(), crossings.end());
        for (std::size_t i = 0; i + 1 < crossings.size(); i += 2)
            AddSpan(row, Limit(std::ceil(crossings[i]), 0, width),
                    Limit(std::ceil(crossings[i + 1]), 0, width));
    }
    return 1;
}

int XRegionMask::SetPolyline(const double* xs, const double* ys, int n, int width, int height)
{
    *this = {};
    if (!ArePlaces(xs, ys, n)) return 0;
    std::vector<std::uint64_t> pixels; // row and column in one word, which sorts by row
    std::size_t tidyAt = std::size_t{1} << 20;
    const auto tidy = [&pixels] {
        std::sort(pixels.begin(), pixels.end());
        pixels.erase(std::unique(pixels.begin(), pixels.end()), pixels.end());
    };
    const auto take = [&](double x, double y) {
        if (x >= 0.0 && x < width && y >= 0.0 && y < height)
            pixels.push_back(static_cast<std::uint64_t>(y) << 32 | static_cast<std::uint32_t>(x));
    };
    for (int i = std::min(1, n - 1); i < n; ++i) {
        const int from = std::max(i - 1, 0);
        if (std::fabs(xs[i] - xs[from]) >= std::fabs(ys[i] - ys[from]))
            StepAlong(xs[from], ys[from], xs[i], ys[i], width, take);
        else
            StepAlong(ys[from], xs[from], ys[i], xs[i], height,
                      [&](int y, double x) { take(x, y); });
        if (pixels.size() > tidyAt) { // a line that runs to and fro must not fill the memory
            tidy();
            tidyAt = std::max(tidyAt, 2 * pixels.size());
        }
    }
    tidy();
    for (const std::uint64_t pixel : pixels) {
        const int x = static_cast<int>(pixel & 0xFFFFFFFFu);
        AddSpan(static_cast<int>(pixel >> 32), x, x + 1);
    }
    return 1;
}

void XRegionMask::ListSpans(int x0, int y0, int x1, int y1, std::vector<tagXRowSpan>& spans) const
{
    spans.clear();
    const auto isAbove = [](const tagXRowSpan& span, int row) { return span.y < row; };
    for (auto it = std::lower_bound(m_spans.begin(), m_spans.end(), y0, isAbove);
         it != m_spans.end() && it->y < y1; ++it) {
        const tagXRowSpan cut{it->y, std::max(it->x0, x0), std::min(it->x1, x1)};
        if (cut.x0 < cut.x1) spans.push_back(cut);
    }
}

void XRegionMask::GetBox(int& x0, int& y0, int& x1, int& y1) const
{
    x0 = y0 = x1 = y1 = 0;
    if (m_spans.empty()) return;
    x0 = m_spans.front().x0;
    y0 = m_spans.front().y;
    y1 = m_spans.back().y + 1;
    for (const tagXRowSpan& span : m_spans) {
        x0 = std::min(x0, span.x0);
        x1 = std::max(x1, span.x1);
    }
}
