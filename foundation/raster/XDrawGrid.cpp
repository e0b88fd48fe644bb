#include "foundation/raster/XDrawGrid.h"

#include "foundation/raster/XDMBand.h"

#include <algorithm>

namespace {

template <class Position>
tagXDrawAxis MakeAxis(int begin, int end, int levelSize, int tileSize, Position position)
{
    tagXDrawAxis axis;
    const std::size_t count = static_cast<std::size_t>(end - begin);
    axis.tile.assign(count, -1);
    axis.within.assign(count, 0);
    for (std::size_t i = 0; i < count; ++i) {
        const double at = position(begin + static_cast<int>(i));
        if (!(at >= 0.0 && at < levelSize)) continue; // NaN too
        const int sample = static_cast<int>(at);
        axis.tile[i] = sample / tileSize;
        axis.within[i] = sample % tileSize;
    }
    return axis;
}

} // namespace

XDrawGrid::XDrawGrid(const tagXDrawJob& job)
{
    int first = -1;
    for (int ch = 0; ch < 3; ++ch) {
        const tagXDrawChannel& channel = job.channels[ch];
        if (!channel.band) continue;
        int tileWidth = 1, tileHeight = 1;
        channel.band->GetTileSize(channel.level, tileWidth, tileHeight);
        m_columns[ch] = MakeAxis(job.x0, job.x1, channel.levelWidth, std::max(tileWidth, 1),
                                 [&](int x) { return channel.mapping.GetColumnAt(x); });
        m_rows[ch] = MakeAxis(job.y0, job.y1, channel.levelHeight, std::max(tileHeight, 1),
                              [&](int y) { return channel.mapping.GetRowAt(y); });
        if (first < 0) first = ch;
        if (m_columns[ch] != m_columns[first] || m_rows[ch] != m_rows[first]) m_isShared = 0;
    }
    if (first < 0) return;
    m_columnSpans = ListSpans(m_columns, job.x1 - job.x0);
    m_rowSpans = ListSpans(m_rows, job.y1 - job.y0);
}

/// The longest runs in which no channel changes its tile.
std::vector<tagXDrawSpan> XDrawGrid::ListSpans(const tagXDrawAxis (&axes)[3], int count) const
{
    std::vector<tagXDrawSpan> spans;
    std::size_t begin = 0;
    for (std::size_t i = 1; i <= static_cast<std::size_t>(count); ++i) {
        const bool isEnd = i == static_cast<std::size_t>(count) ||
                           std::any_of(axes, axes + 3, [i](const tagXDrawAxis& axis) {
                               return !axis.tile.empty() && axis.tile[i] != axis.tile[i - 1];
                           });
        if (!isEnd) continue;
        spans.push_back({begin, i});
        begin = i;
    }
    return spans;
}

int XDrawGrid::GetTileOf(int cell, int ch, int& tx, int& ty) const
{
    if (m_columns[ch].tile.empty()) return 0;
    const std::size_t across = m_columnSpans.size();
    const std::size_t number = static_cast<std::size_t>(cell);
    tx = m_columns[ch].tile[m_columnSpans[number % across].begin];
    ty = m_rows[ch].tile[m_rowSpans[number / across].begin];
    return tx >= 0 && ty >= 0;
}
