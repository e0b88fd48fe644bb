#pragma once

#include "foundation/surface/XPixelPaint.h"

#include <atomic>
#include <cstdint>
#include <vector>

/// A place in 1/256 of a pixel; (0, 0) is the upper left corner of the surface.
struct tagXSubPixel
{
    static constexpr int kOne = 256;
    static constexpr int kMax = 1 << 29; ///< beyond is not to be given

    std::int32_t x, y;
};

/// Fills the inside of rings, row by row.
///
/// A pixel belongs to the inside when its centre does; one exactly on an edge belongs to what lies
/// right of it or below, so areas that share an edge neither overlap nor leave a gap. Smoothed, a
/// pixel gets the share of it that lies inside.
/// Method: crossings of edges and rows, sorted by row and column; smoothed, the sums of signed areas
/// in cells. The time is that of the edges and the pixels painted, the memory bounded: figures with
/// very many crossings are done in bands.
/// Threads: one object a thread.
class XScanFill
{
public:
    explicit XScanFill(const tagXPixels& pixels) : m_pixels(pixels) {}

    void SetSmooth(bool isSmooth) { m_isSmooth = isSmooth; }

    /// Adds a closed ring. Rings stay until Fill or Clear.
    void AddRing(const tagXSubPixel* points, std::size_t count);
    void AddEdge(const tagXSubPixel& from, const tagXSubPixel& to);
    void Clear();

    /// Paints what is inside of all rings, and forgets them.
    /// @param isWinding  by the winding rule; otherwise even-odd
    /// @return false when `abort` rose meanwhile; it may be null
    bool Fill(const tagXPixelPaint& paint, bool isWinding, const std::atomic<int>* abort);
    bool HasPainted() const { return m_hasPainted; } ///< the last Fill painted a pixel

private:
    struct tagEdge // downwards
    {
        tagXSubPixel from, to;
        int sign; // 1 when it was added so
    };
    struct tagCell
    {
        std::int32_t row;
        std::int32_t x;
        std::int32_t cover;
        std::int32_t area;
    };

    void GetRows(const tagEdge& edge, int& begin, int& end) const;
    int GetRowWeight(const tagEdge& edge, int rows) const;
    template <class Item>
    bool FillBands(std::vector<Item>& items, const tagXPixelPaint& paint, bool isWinding,
                   const std::atomic<int>* abort);
    template <class Item>
    void FillBand(std::vector<Item>& items, int begin, int end, const tagXPixelPaint& paint,
                  bool isWinding);
    void Collect(std::vector<std::int32_t>& crossings, int begin, int end);
    void Collect(std::vector<tagCell>& cells, int begin, int end);
    void SumStarts();
    template <class Emit>
    void ForEachCrossing(const tagEdge& edge, int begin, int end, Emit emit) const;
    void EmitCells(const tagEdge& edge, int begin, int end);
    void EmitCells(int row, int xa, int xb, int height, int sign);
    void PaintRow(std::int32_t* crossings, std::size_t count, int y, const tagXPixelPaint& paint,
                  bool isWinding);
    void PaintRow(tagCell* cells, std::size_t count, int y, const tagXPixelPaint& paint,
                  bool isWinding);

    tagXPixels m_pixels;
    bool m_isSmooth = false;
    bool m_hasPainted = false;
    int m_top = 0, m_bottom = 0; // rows that edges touch
    std::vector<tagEdge> m_edges;
    std::vector<std::uint32_t> m_starts;   // of each row in the items
    std::vector<std::int32_t> m_crossings; // column times 2, plus 1 for an edge added downwards
    std::vector<tagCell> m_cells;
    std::vector<tagCell> m_emitted; // cells as edges gave them
};
