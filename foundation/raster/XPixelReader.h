#pragma once

#include "foundation/base/XSentinels.h"
#include "foundation/raster/XDMBand.h"
#include "foundation/raster/XNullSample.h"

#include <atomic>
#include <cmath>
#include <memory>

/// Reads single pixels of a band of a real data type at full resolution. Keeps the tile of the last
/// one, so that neighbours cost no look-up. Threads: one object a thread.
class XPixelReader
{
public:
    /// @param abort  polled when a tile is read; may be null
    explicit XPixelReader(const XDMBand* band, const std::atomic<int>* abort = nullptr)
        : m_band(band),
          m_abort(abort),
          m_null(XfnNullNumber(band->GetNullValue(), band->GetDataType()))
    {
        band->GetLevelSize(0, m_width, m_height);
        band->GetTileSize(0, m_tileWidth, m_tileHeight);
    }

    /// kXNoData outside, without data and where the tile cannot be read. Infinities are values.
    double Get(int column, int row)
    {
        if (column < 0 || row < 0 || column >= m_width || row >= m_height) return kXNoData;
        const int tx = column / m_tileWidth;
        const int ty = row / m_tileHeight;
        if (tx != m_tx || ty != m_ty) Take(tx, ty);
        if (!m_tile) return kXNoData;
        const int x = column - tx * m_tileWidth;
        const int y = row - ty * m_tileHeight;
        if (x >= m_tile->GetWidth() || y >= m_tile->GetHeight()) return kXNoData;
        const std::size_t offset = static_cast<std::size_t>(x) * m_tile->GetSampleSize();
        const double value = XfnReadSample(m_tile->GetRow(y) + offset, m_tile->GetDataType());
        return std::isnan(value) || value == m_null ? kXNoData : value;
    }

    /// The pixel under a position in pixels, centre based.
    double GetAt(double x, double y)
    {
        const double column = std::floor(x + 0.5);
        const double row = std::floor(y + 0.5);
        if (!(column >= 0.0 && column < m_width && row >= 0.0 && row < m_height)) return kXNoData;
        return Get(static_cast<int>(column), static_cast<int>(row));
    }

    int HasFailed() const { return m_failedTiles > 0; }
    int HasSucceeded() const { return m_goodTiles > 0; }
    const XString& GetMessage() const { return m_message; } ///< of the last tile that failed

private:
    void Take(int tx, int ty)
    {
        XString message;
        m_tile = m_band->GetTile(0, tx, ty, m_abort, message);
        m_tx = tx;
        m_ty = ty;
        (m_tile ? m_goodTiles : m_failedTiles)++;
        if (!m_tile) m_message = message;
    }

    const XDMBand* m_band;
    const std::atomic<int>* m_abort;
    double m_null;
    int m_width = 0, m_height = 0;
    int m_tileWidth = 1, m_tileHeight = 1;
    int m_tx = -1, m_ty = -1;
    std::shared_ptr<const XTile> m_tile;
    int m_goodTiles = 0, m_failedTiles = 0;
    XString m_message;
};
