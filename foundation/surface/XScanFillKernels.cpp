#include "foundation/surface/XScanFill.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace {

constexpr int kHalf = tagXSubPixel::kOne / 2;
constexpr std::int64_t kBandItems = 1 << 18;
constexpr std::size_t kFewItems = 24;
constexpr int kAreaShift = 9; // an area counts twice, so a whole pixel is 2 * 256 * 256

bool IsRaised(const std::atomic<int>* abort)
{
    return abort && abort->load(std::memory_order_relaxed);
}

// The first row whose centre lies at y or below, and the first column likewise.
int FirstCentre(std::int32_t place)
{
    return (place + kHalf - 1) >> 8;
}

template <class Item, class Less>
void SortFew(Item* items, std::size_t count, Less less)
{
    if (count > kFewItems) {
        std::sort(items, items + count, less);
        return;
    }
    for (std::size_t i = 1; i < count; ++i) {
        const Item item = items[i];
        std::size_t at = i;
        for (; at > 0 && less(item, items[at - 1]); --at)
            items[at] = items[at - 1];
        items[at] = item;
    }
}

} // namespace

void XScanFill::AddEdge(const tagXSubPixel& from, const tagXSubPixel& to)
{
    if (from.y == to.y) return;
    const bool isDown = from.y < to.y;
    const tagEdge edge = {isDown ? from : to, isDown ? to : from, isDown ? 1 : -1};
    int begin = 0, end = 0;
    GetRows(edge, begin, end);
    if (begin >= end) return;
    if (m_edges.empty()) {
        m_top = begin;
        m_bottom = end;
    } else {
        m_top = std::min(m_top, begin);
        m_bottom = std::max(m_bottom, end);
    }
    m_edges.push_back(edge);
}

void XScanFill::AddRing(const tagXSubPixel* points, std::size_t count)
{
    if (count < 2) return;
    // of small figures most edges pass no centre
    std::size_t from = count - 1;
    int before = FirstCentre(points[from].y);
    for (std::size_t i = 0; i < count; from = i++) {
        const int row = FirstCentre(points[i].y);
        if (row != before || m_isSmooth) AddEdge(points[from], points[i]);
        before = row;
    }
}

void XScanFill::Clear()
{
    m_edges.clear();
}

// Rows of the surface that have a centre (smoothed: any part) between the ends of the edge.
void XScanFill::GetRows(const tagEdge& edge, int& begin, int& end) const
{
    begin = m_isSmooth ? edge.from.y >> 8 : FirstCentre(edge.from.y);
    end = m_isSmooth ? ((edge.to.y - 1) >> 8) + 1 : FirstCentre(edge.to.y);
    begin = std::max(begin, 0);
    end = std::min(end, m_pixels.height);
}

// At most how many items the edge has in a row of its own.
int XScanFill::GetRowWeight(const tagEdge& edge, int rows) const
{
    if (!m_isSmooth) return 1;
    const int columns = std::abs((edge.to.x >> 8) - (edge.from.x >> 8));
    return std::min(columns / rows + 3, m_pixels.width + 3);
}

template <class Emit>
void XScanFill::ForEachCrossing(const tagEdge& edge, int begin, int end, Emit emit) const
{
    int first = 0, last = 0;
    GetRows(edge, first, last);
    first = std::max(first, begin);
    last = std::min(last, end);
    if (first >= last) return;
    const double slope = static_cast<double>(edge.to.x - edge.from.x) / (edge.to.y - edge.from.y);
    const double down = static_cast<double>(first) * tagXSubPixel::kOne + kHalf - edge.from.y;
    // 16 more bits than the places have
    auto x = static_cast<std::int64_t>((edge.from.x + down * slope) * 65536.0);
    const auto step = static_cast<std::int64_t>(slope * (tagXSubPixel::kOne * 65536.0));
    const std::int64_t width = m_pixels.width;
    for (int row = first; row < last; ++row, x += step) {
        const std::int64_t column = (x + (std::int64_t{kHalf} << 16) - 1) >> 24;
        const auto held = static_cast<std::int32_t>(std::clamp<std::int64_t>(column, 0, width));
        emit(row, held * 2 + (edge.sign > 0));
    }
}

// The part of an edge within one row, from xa to xb going down by `height`, cut at the columns.
void XScanFill::EmitCells(int row, int xa, int xb, int height, int sign)
{
    const int right = m_pixels.width * tagXSubPixel::kOne;
    xa = std::clamp(xa, 0, right);
    xb = std::clamp(xb, 0, right);
    if (xa == right && xb == right) return;
    if (xa > xb) std::swap(xa, xb); // what is left of it counts, not its direction
    const int last = xb >> 8;
    if (xa >> 8 == last && last < m_pixels.width) { // as most are
        const int base = last << 8;
        m_emitted.push_back({row, last, sign * height, sign * height * (xa - base + xb - base)});
        return;
    }
    int left = 0; // of the height, above what is left of xa
    for (int column = xa >> 8; column <= last; ++column) {
        const int begin = std::max(xa, column << 8);
        const int end = std::min(xb, (column + 1) << 8);
        const int until = column == last
                              ? height
                              : static_cast<int>(std::int64_t{height} * (end - xa) / (xb - xa));
        const int part = until - left;
        left = until;
        if (part == 0 || column >= m_pixels.width) continue;
        const int base = column << 8;
        m_emitted.push_back({row, column, sign * part, sign * part * (begin - base + end - base)});
    }
}

void XScanFill::EmitCells(const tagEdge& edge, int begin, int end)
{
    int first = 0, last = 0;
    GetRows(edge, first, last);
    first = std::max(first, begin);
    last = std::min(last, end);
    if (edge.from.y >> 8 == (edge.to.y - 1) >> 8) {
        if (first < last)
            EmitCells(first, edge.from.x, edge.to.x, edge.to.y - edge.from.y, edge.sign);
        return;
    }
    const double slope = static_cast<double>(edge.to.x - edge.from.x) / (edge.to.y - edge.from.y);
    const auto place = [&](int y) {
        return y == edge.to.y
                   ? edge.to.x
                   : edge.from.x + static_cast<int>(std::floor((y - edge.from.y) * slope + 0.5));
    };
    for (int row = first; row < last; ++row) {
        const int above = std::max(edge.from.y, row << 8);
        const int below = std::min(edge.to.y, (row + 1) << 8);
        EmitCells(row, place(above), place(below), below - above, edge.sign);
    }
}

bool XScanFill::Fill(const tagXPixelPaint& paint, bool isWinding, const std::atomic<int>* abort)
{
    m_hasPainted = false;
    if (m_edges.empty()) return true;
    const bool isDone = m_isSmooth ? FillBands(m_cells, paint, isWinding, abort)
                                   : FillBands(m_crossings, paint, isWinding, abort);
    m_edges.clear();
    return isDone;
}

template <class Item>
bool XScanFill::FillBands(std::vector<Item>& items, const tagXPixelPaint& paint, bool isWinding,
                          const std::atomic<int>* abort)
{
    std::int64_t most = 0; // items there can be
    for (const tagEdge& edge : m_edges) {
        int begin = 0, end = 0;
        GetRows(edge, begin, end);
        most += std::int64_t{end - begin} * GetRowWeight(edge, end - begin);
    }
    const std::int64_t bands = most / kBandItems + 1;
    const int rows = m_bottom - m_top;
    const int bandRows =
        static_cast<int>(std::clamp<std::int64_t>((rows + bands - 1) / bands, 1, rows));
    for (int begin = m_top; begin < m_bottom; begin += bandRows) {
        if (IsRaised(abort)) return false;
        FillBand(items, begin, std::min(begin + bandRows, m_bottom), paint, isWinding);
    }
    return true;
}

// Collecting leaves in m_starts where the items of each row begin, one place further on; so what is
// filled in row by row ends with the starts themselves.
void XScanFill::SumStarts()
{
    for (std::size_t row = 2; row < m_starts.size(); ++row)
        m_starts[row] += m_starts[row - 1];
}

void XScanFill::Collect(std::vector<std::int32_t>& crossings, int begin, int end)
{
    for (const tagEdge& edge : m_edges) {
        int first = 0, last = 0;
        GetRows(edge, first, last);
        for (int row = std::max(first, begin); row < std::min(last, end); ++row)
            ++m_starts[static_cast<std::size_t>(row - begin) + 2];
    }
    SumStarts();
    crossings.resize(m_starts.back());
    for (const tagEdge& edge : m_edges) {
        ForEachCrossing(edge, begin, end, [&](int row, std::int32_t crossing) {
            crossings[m_starts[static_cast<std::size_t>(row - begin) + 1]++] = crossing;
        });
    }
}

void XScanFill::Collect(std::vector<tagCell>& cells, int begin, int end)
{
    m_emitted.clear();
    for (const tagEdge& edge : m_edges)
        EmitCells(edge, begin, end);
    for (const tagCell& cell : m_emitted)
        ++m_starts[static_cast<std::size_t>(cell.row - begin) + 2];
    SumStarts();
    cells.resize(m_starts.back());
    for (const tagCell& cell : m_emitted)
        cells[m_starts[static_cast<std::size_t>(cell.row - begin) + 1]++] = cell;
}

template <class Item>
void XScanFill::FillBand(std::vector<Item>& items, int begin, int end, const tagXPixelPaint& paint,
                         bool isWinding)
{
    const auto rows = static_cast<std::size_t>(end - begin);
    m_starts.assign(rows + 2, 0);
    Collect(items, begin, end);
    for (std::size_t row = 0; row < rows; ++row) {
        PaintRow(items.data() + m_starts[row], m_starts[row + 1] - m_starts[row],
                 begin + static_cast<int>(row), paint, isWinding);
    }
}

void XScanFill::PaintRow(std::int32_t* crossings, std::size_t count, int y,
                         const tagXPixelPaint& paint, bool isWinding)
{
    if (count < 2) return;
    SortFew(crossings, count, std::less<>());
    std::uint32_t* row = m_pixels.Row(y);
    const auto paintSpan = [&](int begin, int end) {
        if (begin >= end) return;
        m_hasPainted = true;
        if (paint.kind == tagXPixelPaint::XKind::Opaque && end - begin < 8) {
            for (int x = begin; x < end; ++x)
                row[x] = paint.fore;
        } else if (paint.kind == tagXPixelPaint::XKind::Blend && end - begin < 8) {
            for (int x = begin; x < end; ++x)
                row[x] = tagXPixelPaint::Over(paint.fore, row[x]);
        } else {
            XfnPaintSpan(paint, row, y, begin, end);
        }
    };
    if (!isWinding) {
        for (std::size_t i = 0; i + 1 < count; i += 2)
            paintSpan(crossings[i] >> 1, crossings[i + 1] >> 1);
        return;
    }
    int winding = 0, begin = 0;
    for (std::size_t i = 0; i < count; ++i) {
        if (winding == 0) begin = crossings[i] >> 1;
        winding += crossings[i] & 1 ? 1 : -1;
        if (winding == 0) paintSpan(begin, crossings[i] >> 1);
    }
}

void XScanFill::PaintRow(tagCell* cells, std::size_t count, int y, const tagXPixelPaint& paint,
                         bool isWinding)
{
    SortFew(cells, count, [](const tagCell& a, const tagCell& b) { return a.x < b.x; });
    std::uint32_t* row = m_pixels.Row(y);
    const auto shareOf = [isWinding](int area) {
        int share = std::abs(area) >> kAreaShift;
        if (!isWinding) {
            share &= 511;
            if (share > 256) share = 512 - share;
        }
        return static_cast<std::uint32_t>(std::min(share, 255));
    };
    const auto paintSpan = [&](int begin, int end, std::uint32_t share) {
        if (begin >= end || share == 0) return;
        m_hasPainted = true;
        XfnPaintSpan(paint, row, y, begin, end, share);
    };
    int cover = 0;
    for (std::size_t i = 0; i < count;) {
        const int x = cells[i].x;
        int area = 0;
        for (; i < count && cells[i].x == x; ++i) {
            area += cells[i].area;
            cover += cells[i].cover;
        }
        paintSpan(x, x + 1, shareOf((cover << kAreaShift) - area));
        const int next = i < count ? cells[i].x : m_pixels.width;
        paintSpan(x + 1, next, shareOf(cover << kAreaShift));
    }
}
