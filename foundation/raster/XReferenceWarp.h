#pragma once

#include "foundation/base/XApi.h"
#include "foundation/base/XWarp2D.h"

#include <array>
#include <cstdint>
#include <memory>
#include <vector>

class XDMBand;
class XExactWay;
class XSpatialReference;

/// The way between the world in one spatial reference and the pixels of a band in another, in one
/// direction, made fast over the band.
///
/// Method: a cubic polynomial fitted by least squares to points spread over the band, which the
/// coordinate library carries over. Where it misses by more than a tenth of a pixel, a grid of
/// corrections over the band's extent, exact at its nodes and bilinear between them; it is made
/// finer, from 16 to 64 cells a side, while more than one cell in thirty-two misses by more than
/// that in its middle or in those of its sides. Points in the cells that still do (at the date line, around a pole, along the
/// edge of a projection's domain) and points outside the extent go the exact way, one by one.
///
/// A point has no place (NaN) where a reference does not hold, and where the way there does not come
/// back to it. Longitudes run on past 180 degrees around the middle of the band.
///
/// Cost: a point some 20 ns over the extent, 2 us on the exact way; making both ways 5 to 100 ms.
/// Threads: never changed once made; the exact way is used by one thread at a time.
class XAPI XReferenceWarp
{
public:
    struct tagPair
    {
        std::shared_ptr<const XReferenceWarp> toPixel; ///< world of the target to band pixel
        std::shared_ptr<const XReferenceWarp> toWorld;
    };

    /// Both ways of a band. Null both when nothing joins the references or no pixel of the band has
    /// a place in the target.
    static tagPair Make(const XDMBand& band, const XSpatialReference& target);
    /// Whether this was made for a band like that and for that target.
    int IsFor(const XDMBand& band, const XSpatialReference& target) const;

    void Warp(double& x, double& y) const;
    const XWarp2D& GetPolynomial() const { return m_polynomial; }
    /// Around all points that lead to the band (or from it): left, right, bottom, top.
    const std::array<double, 4>& GetBox() const { return m_box; }
    /// The largest miss measured between the nodes where points do not go the exact way, in pixels
    /// of the band.
    double GetMiss() const { return m_miss; }

private:
    XReferenceWarp() = default;
    std::vector<std::array<double, 2>> ListMisses(int count, double step) const;
    int MakeGrid(int cells, double tolerance);
    void Hold(double pixel);

    std::shared_ptr<const XExactWay> m_exact;
    int m_isToPixel = 1;
    XWarp2D m_polynomial;
    std::array<double, 4> m_box{};
    double m_miss = 0.0;
    int m_cells = 1;
    double m_cellsX = 0.0, m_cellsY = 0.0;      // cells a unit of the box
    std::vector<std::array<double, 2>> m_nodes; // corrections; empty when none are needed
    std::vector<std::uint8_t> m_isRough;        // cells that go the exact way
};
