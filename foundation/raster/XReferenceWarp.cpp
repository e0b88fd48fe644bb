#include "foundation/raster/XReferenceWarp.h"

#include "foundation/raster/XDMBand.h"
#include "foundation/raster/XExactWay.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr double kTolerance = 0.1; // pixels

/// Points that stand in both planes.
struct tagPlaces
{
    std::vector<double> worldX, worldY, pixelX, pixelY;
    bool isPartial = false; ///< pixels of the band have no place
};

/// A grid of pixels with its border, and a ring just outside so that half a pixel is in the extent.
tagPlaces SpreadPlaces(const XExactWay& way)
{
    constexpr int kCells = 32;
    const auto at = [](int i, int size) {
        if (i < 0) return -0.75;
        return i > kCells ? size - 0.25 : (size - 1.0) * i / kCells;
    };
    tagPlaces all;
    for (int j = -1; j <= kCells + 1; ++j) {
        for (int i = -1; i <= kCells + 1; ++i) {
            all.pixelX.push_back(at(i, way.GetWidth()));
            all.pixelY.push_back(at(j, way.GetHeight()));
        }
    }
    all.worldX = all.pixelX;
    all.worldY = all.pixelY;
    way.ToWorld(all.worldX.data(), all.worldY.data(), static_cast<int>(all.worldX.size()));
    tagPlaces places;
    for (std::size_t i = 0; i < all.worldX.size(); ++i) {
        if (!std::isfinite(all.worldX[i]) || !std::isfinite(all.worldY[i])) {
            const bool isInside = all.pixelX[i] >= 0.0 && all.pixelX[i] <= way.GetWidth() - 1 &&
                                  all.pixelY[i] >= 0.0 && all.pixelY[i] <= way.GetHeight() - 1;
            places.isPartial |= isInside;
            continue;
        }
        places.worldX.push_back(all.worldX[i]);
        places.worldY.push_back(all.worldY[i]);
        places.pixelX.push_back(all.pixelX[i]);
        places.pixelY.push_back(all.pixelY[i]);
    }
    return places;
}

XWarp2D FitBest(const std::vector<double>& fromX, const std::vector<double>& fromY,
                const std::vector<double>& toX, const std::vector<double>& toY)
{
    XWarp2D warp;
    for (int order = 3; order >= 1; --order)
        if (warp.Fit(fromX.data(), fromY.data(), toX.data(), toY.data(),
                     static_cast<int>(fromX.size()), order))
            break;
    return warp;
}

/// The box around points and a share of its sides beyond them: between two of the points the extent
/// may reach further than either, most so where a reference ceases to hold.
std::array<double, 4> BoxAround(const std::vector<double>& x, const std::vector<double>& y,
                                bool isPartial)
{
    const double margin = isPartial ? 0.25 : 0.05;
    const auto [left, right] = std::minmax_element(x.begin(), x.end());
    const auto [bottom, top] = std::minmax_element(y.begin(), y.end());
    const double aside = (*right - *left) * margin;
    const double above = (*top - *bottom) * margin;
    return {*left - aside, *right + aside, *bottom - above, *top + above};
}

} // namespace

XReferenceWarp::tagPair XReferenceWarp::Make(const XDMBand& band, const XSpatialReference& target)
{
    tagPair pair;
    if (band.GetXSize() < 1 || band.GetYSize() < 1) return pair;
    const auto exact = std::make_shared<const XExactWay>(band, target);
    if (!exact->IsValid()) return pair;
    const tagPlaces places = SpreadPlaces(*exact);
    const std::shared_ptr<XReferenceWarp> toPixel(new XReferenceWarp);
    const std::shared_ptr<XReferenceWarp> toWorld(new XReferenceWarp);
    toPixel->m_exact = toWorld->m_exact = exact;
    toWorld->m_isToPixel = 0;
    toPixel->m_polynomial = FitBest(places.worldX, places.worldY, places.pixelX, places.pixelY);
    toWorld->m_polynomial = FitBest(places.pixelX, places.pixelY, places.worldX, places.worldY);
    if (!toPixel->m_polynomial.IsValid() || !toWorld->m_polynomial.IsValid()) return pair;
    toPixel->m_box = BoxAround(places.worldX, places.worldY, places.isPartial);
    toWorld->m_box = BoxAround(places.pixelX, places.pixelY, false);
    const auto& world = toPixel->m_box;
    const double pixelLength =
        std::min((world[1] - world[0]) / band.GetXSize(), (world[3] - world[2]) / band.GetYSize());
    toPixel->Hold(1.0);
    toWorld->Hold(pixelLength);
    pair.toPixel = toPixel;
    pair.toWorld = toWorld;
    return pair;
}

int XReferenceWarp::IsFor(const XDMBand& band, const XSpatialReference& target) const
{
    return m_exact->IsFor(band, target);
}

/// @param pixel  the length of a band pixel in the plane that this leads to
void XReferenceWarp::Hold(double pixel)
{
    constexpr int kCoarsest = 16, kFinest = 64;
    for (int cells = kCoarsest; cells <= kFinest; cells *= 2) {
        const int rough = MakeGrid(cells, pixel * kTolerance);
        if (rough * 32 <= cells * cells) break;
    }
    m_miss /= pixel;
}

/// What the polynomial misses at `count` x `count` places, `step` cells apart.
std::vector<std::array<double, 2>> XReferenceWarp::ListMisses(int count, double step) const
{
    const std::size_t across = static_cast<std::size_t>(count);
    std::vector<double> x(across * across), y(across * across);
    for (std::size_t i = 0; i < x.size(); ++i) {
        x[i] = m_box[0] + static_cast<double>(i % across) * step / m_cellsX;
        y[i] = m_box[2] + static_cast<double>(i / across) * step / m_cellsY;
    }
    std::vector<double> nearX(x), nearY(y);
    const int total = static_cast<int>(x.size());
    m_polynomial.WarpPoints(nearX.data(), nearY.data(), total);
    if (m_isToPixel)
        m_exact->ToPixels(x.data(), y.data(), total);
    else
        m_exact->ToWorld(x.data(), y.data(), total);
    std::vector<std::array<double, 2>> misses(x.size());
    for (std::size_t i = 0; i < x.size(); ++i)
        misses[i] = {x[i] - nearX[i], y[i] - nearY[i]};
    return misses;
}

/// Fills nodes and cells. @return the number of cells that go the exact way
int XReferenceWarp::MakeGrid(int cells, double tolerance)
{
    m_cells = cells;
    m_cellsX = cells / (m_box[1] - m_box[0]);
    m_cellsY = cells / (m_box[3] - m_box[2]);
    m_miss = 0.0;
    const std::size_t n = static_cast<std::size_t>(cells);
    const std::size_t fineRow = 2 * n + 1;
    const auto fine = ListMisses(2 * cells + 1, 0.5);
    const auto lengthOf = [](double x, double y) { return std::hypot(x, y); };
    m_isRough.assign(n * n, 0);
    m_nodes.clear();
    if (std::all_of(fine.begin(), fine.end(), [&](const std::array<double, 2>& miss) {
            m_miss = std::max(m_miss, lengthOf(miss[0], miss[1]));
            return lengthOf(miss[0], miss[1]) <= tolerance; // not so for NaN
        }))
        return 0; // the polynomial serves alone
    for (std::size_t j = 0; j <= n; ++j)
        for (std::size_t i = 0; i <= n; ++i)
            m_nodes.push_back(fine[2 * j * fineRow + 2 * i]);
    m_miss = 0.0;
    int rough = 0;
    for (std::size_t j = 0; j < n; ++j) {
        for (std::size_t i = 0; i < n; ++i) {
            const auto* at = &fine[2 * j * fineRow + 2 * i]; // upper left corner of the cell
            double worst = 0.0;
            // the middle of the cell and those of its sides
            for (const auto& [right, down] :
                 {std::pair<int, int>{1, 1}, {1, 0}, {0, 1}, {2, 1}, {1, 2}}) {
                const double partX = right * 0.5, partY = down * 0.5;
                double left[2];
                for (const int axis : {0, 1}) {
                    const double above = at[0][axis] * (1 - partX) + at[2][axis] * partX;
                    const double below =
                        at[2 * fineRow][axis] * (1 - partX) + at[2 * fineRow + 2][axis] * partX;
                    left[axis] = at[static_cast<std::size_t>(down) * fineRow +
                                    static_cast<std::size_t>(right)][axis] -
                                 above * (1 - partY) - below * partY;
                }
                const double miss = lengthOf(left[0], left[1]);
                if (!(miss <= worst)) worst = miss; // NaN stays
                if (std::isnan(worst)) break;
            }
            const bool isRough = !(worst <= tolerance);
            m_isRough[j * n + i] = isRough;
            rough += isRough;
            if (!isRough) m_miss = std::max(m_miss, worst);
        }
    }
    return rough;
}

void XReferenceWarp::Warp(double& x, double& y) const
{
    const double u = (x - m_box[0]) * m_cellsX;
    const double v = (y - m_box[2]) * m_cellsY;
    const bool isInside = u >= 0.0 && v >= 0.0 && u <= m_cells && v <= m_cells; // not so for NaN
    const int i = isInside ? std::min(static_cast<int>(u), m_cells - 1) : 0;
    const int j = isInside ? std::min(static_cast<int>(v), m_cells - 1) : 0;
    if (!isInside || m_isRough[static_cast<std::size_t>(j * m_cells + i)]) {
        if (m_isToPixel)
            m_exact->ToPixels(&x, &y, 1);
        else
            m_exact->ToWorld(&x, &y, 1);
        return;
    }
    m_polynomial.Warp(x, y);
    if (m_nodes.empty()) return;
    const auto* upper = &m_nodes[static_cast<std::size_t>(j * (m_cells + 1) + i)];
    const auto* lower = upper + m_cells + 1;
    const double partX = u - i, partY = v - j;
    const auto mix = [&](int axis) {
        const double above = upper[0][axis] + (upper[1][axis] - upper[0][axis]) * partX;
        const double below = lower[0][axis] + (lower[1][axis] - lower[0][axis]) * partX;
        return above + (below - above) * partY;
    };
    x += mix(0);
    y += mix(1);
}
