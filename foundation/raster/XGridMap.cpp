#include "foundation/raster/XGridMap.h"

#include "foundation/raster/XBlockKernels.h"

#include <cmath>

int XfnNeedsTransform(const XDMBand& from, const XDMBand& to)
{
    const XSpatialReference* a = from.GetSR();
    const XSpatialReference* b = to.GetSR();
    return !a->IsEmpty() && !b->IsEmpty() && !a->IsSame(b);
}

int XfnShareGrid(const XDMBand& a, const XDMBand& b)
{
    if (&a == &b) return 1;
    if (a.GetXSize() != b.GetXSize() || a.GetYSize() != b.GetYSize()) return 0;
    if (XfnNeedsTransform(a, b)) return 0;
    const XWarp2D& first = a.GetPixelToWorld();
    const XWarp2D& second = b.GetPixelToWorld();
    if (!first.IsAffine() || !second.IsAffine())
        return first.GetPolynomial() == second.GetPolynomial();
    // affine maps that agree in three corners agree everywhere
    const double right = a.GetXSize() - 1, bottom = a.GetYSize() - 1;
    for (const auto& [column, row] : {std::pair{0.0, 0.0}, {right, 0.0}, {0.0, bottom}}) {
        double x = column, y = row;
        first.Warp(x, y);
        b.GetWorldToPixel().Warp(x, y);
        if (!(std::fabs(x - column) < 1e-3 && std::fabs(y - row) < 1e-3)) return 0;
    }
    return 1;
}

XWorldMap::XWorldMap(const XDMBand& from, const XDMBand& to)
    : m_to(to), m_isTransformed(XfnNeedsTransform(from, to))
{
    if (m_isTransformed) m_transformation = XfnCreateCoordTrans(from.GetSR(), to.GetSR());
}

int XWorldMap::IsValid() const
{
    return !m_isTransformed || m_transformation != nullptr;
}

void XWorldMap::MapWorld(int count, double* x, double* y)
{
    if (m_transformation) m_transformation->Transform(count, x, y);
    m_to.GetWorldToPixel().WarpPoints(x, y, count);
}

XMappedReader::XMappedReader(const XDMBand& grid, const XDMBand& band,
                             const std::atomic<int>* abort)
    : m_grid(grid), m_map(grid, band), m_reader(&band, abort)
{}

int XMappedReader::Read(int y, int x0, int step, int count, double* out)
{
    double xs[kXBlock], ys[kXBlock];
    for (int i = 0; i < count; ++i) {
        xs[i] = x0 + static_cast<double>(i) * step;
        ys[i] = y;
    }
    m_grid.GetPixelToWorld().WarpPoints(xs, ys, count);
    m_map.MapWorld(count, xs, ys);
    for (int i = 0; i < count; ++i)
        out[i] = m_reader.GetAt(xs[i], ys[i]);
    return !m_reader.HasFailed();
}
