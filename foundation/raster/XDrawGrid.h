#pragma once

#include "foundation/raster/XDrawJob.h"

#include <cstddef>
#include <vector>

/// Where the surface's columns (or rows) lie on one axis of a channel's level.
struct tagXDrawAxis
{
    std::vector<int> tile;   ///< tile number, -1 outside the level; empty without a band
    std::vector<int> within; ///< sample inside that tile

    bool operator==(const tagXDrawAxis&) const = default;
};

/// Surface columns (or rows), counted from the first one drawn: [begin, end).
struct tagXDrawSpan
{
    std::size_t begin, end;
};

/// The surface cut into cells within which every channel stays in one tile. For separable mappings.
/// Threads: read from any number of threads once it is made.
class XDrawGrid
{
public:
    explicit XDrawGrid(const tagXDrawJob& job);

    const tagXDrawAxis& GetColumns(int ch) const { return m_columns[ch]; }
    const tagXDrawAxis& GetRows(int ch) const { return m_rows[ch]; }
    const std::vector<tagXDrawSpan>& GetColumnSpans() const { return m_columnSpans; }
    const std::vector<tagXDrawSpan>& GetRowSpans() const { return m_rowSpans; }
    int IsShared() const { return m_isShared; } ///< all channels have the same axes

    /// Cells are counted row by row.
    int GetNumOfCells() const { return static_cast<int>(m_columnSpans.size() * m_rowSpans.size()); }
    /// The tile of channel `ch` under a cell. 0 when the channel does not reach there.
    int GetTileOf(int cell, int ch, int& tx, int& ty) const;

private:
    std::vector<tagXDrawSpan> ListSpans(const tagXDrawAxis (&axes)[3], int count) const;

    tagXDrawAxis m_columns[3];
    tagXDrawAxis m_rows[3];
    std::vector<tagXDrawSpan> m_columnSpans;
    std::vector<tagXDrawSpan> m_rowSpans;
    int m_isShared = 1;
};
