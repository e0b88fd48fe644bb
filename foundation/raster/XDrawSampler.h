#pragma once

#include "foundation/raster/XDrawJob.h"
#include "foundation/raster/XDrawTiles.h"

#include <cstdint>
#include <memory>
#include <vector>

/// Fetches one channel's samples for a row of the surface, through any mapping.
class XDrawSampler
{
public:
    virtual ~XDrawSampler() = default;

    /// The states of surface pixels (x0 .. x0 + n - 1, y); 0 outside the band and where tiles fail.
    virtual void Fill(int y, std::uint16_t* states) = 0;

    XDrawTiles& GetTiles() { return m_tiles; }

    /// @param x0, n  the columns of the surface, the same for every row
    static std::unique_ptr<XDrawSampler> Make(const tagXDrawChannel& channel,
                                              const std::atomic<int>* abort, int isBilinear, int x0,
                                              int n);

protected:
    XDrawSampler(const tagXDrawChannel& channel, const std::atomic<int>* abort, int x0, int n);

    const tagXDrawChannel& m_channel;
    XDrawTiles m_tiles;
    const int m_x0;
    const int m_count;
};
