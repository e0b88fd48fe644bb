#pragma once

#include "foundation/base/XApi.h"

#include <cstddef>
#include <vector>

/// A run of pixels in one row, columns [x0, x1).
struct tagXRowSpan
{
    int y = 0;
    int x0 = 0;
    int x1 = 0;

    bool operator==(const tagXRowSpan&) const = default;
};

/// The pixels of a raster that lie under a polygon or a polyline, as runs in rows.
///
/// Positions are in pixels of the raster, centre based: (0.0, 0.0) is the centre of the upper-left
/// pixel. Runs rise by row, then by column, and do not touch each other.
/// A plain value. Threads: reading from any thread.
class XAPI XRegionMask
{
public:
    /// The pixels whose centre lies inside a ring that closes itself, by the even-odd rule. Of two
    /// polygons that share an edge exactly one holds a centre that lies on it.
    /// Method: scan lines over a table of edges sorted by their first row (J. D. Foley and others,
    /// Computer Graphics, 2nd ed., 1990, 3.6); each crossing is computed from the vertices, so that
    /// no error grows down an edge. Cost: edges times their rows.
    /// @param width, height  size of the raster; the polygon may reach beyond it
    /// @return 0 for a position that is not finite or beyond 1e15; the mask is then empty
    int SetPolygon(const double* xs, const double* ys, int n, int width, int height);

    /// The pixels that a polyline steps through: of each segment one pixel a column, or a row when
    /// it is steeper, from the first end to the last. A single vertex is one pixel.
    int SetPolyline(const double* xs, const double* ys, int n, int width, int height);

    const std::vector<tagXRowSpan>& GetSpans() const { return m_spans; }
    int IsEmpty() const { return m_spans.empty(); }
    long long GetPixelCount() const { return m_pixelCount; }
    /// The runs inside columns [x0, x1) and rows [y0, y1), cut to them.
    void ListSpans(int x0, int y0, int x1, int y1, std::vector<tagXRowSpan>& spans) const;
    /// The smallest box around the pixels, rows [y0, y1); all 0 when there are none.
    void GetBox(int& x0, int& y0, int& x1, int& y1) const;

private:
    void AddSpan(int y, int x0, int x1);

    std::vector<tagXRowSpan> m_spans;
    long long m_pixelCount = 0;
};
