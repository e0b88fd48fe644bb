#pragma once

#include "foundation/raster/XDMBand.h"

#include <shared_mutex>
#include <vector>

/// A band over a block in memory, of any data type, that can be written. Its reduced levels are
/// virtual, or stored as averages after StoreLevels.
///
///     XDMBandMemory* band = new XDMBandMemory;
///     if (!band->Create(kXUInt16, 300, 200, pixels)) ...
///     file.AddBand(band);
class XAPI XDMBandMemory : public XDMBand
{
    X_DECLARE_CLASS(XDMBandMemory)
public:
    XDMBandMemory() = default;

    /// Copies `data`, rows without gaps from the top; null makes a block of zeros.
    /// @return 0 when a size is below 1, the type is none, or memory does not suffice; the band is
    ///         then as it was.
    int Create(int dataType, int width, int height, const void* data = nullptr);

    /// Makes the reduced levels from the pixels, as BuildLowerLevelsForTIP does, and keeps them; a
    /// third more memory. Before others see the band. Create makes them virtual again.
    /// @param nullValue  no data where `skip` is set
    /// @return 0 for a band without pixels or when memory does not suffice; the levels are then
    ///         virtual
    int StoreLevels(bool skip, double nullValue);

    /// The pixels, to be written while no other thread reads the band; Changed must follow, or
    /// WriteSubset for the window that changed.
    void* GetData() { return m_pixels.base; }
    const void* GetData() const { return m_pixels.base; }
    /// Drops what was derived from the pixels: tiles and statistics.
    void Changed() { DropPixels(); }
    int IsWritable() const override { return m_pixels.base != nullptr; }

protected:
    std::shared_ptr<const XTile> ReadTile(int level, int tx, int ty, const std::atomic<int>* abort,
                                          XString& message) const override;
    int WriteTile(int level, int tx, int ty, const tagXTilePiece& piece, XString& message) override;

private:
    tagXArr2 m_pixels;
    std::vector<tagXArr2> m_stored;        // level 1 and so on; empty when they are virtual
    mutable std::shared_mutex m_dataMutex; // the samples of both
};
