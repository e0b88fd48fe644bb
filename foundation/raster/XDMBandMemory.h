#pragma once

#include "foundation/raster/XDMBand.h"

/// A band over a block in memory, of any data type. Its reduced levels are all virtual.
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

    /// The pixels, to be written while no other thread reads the band; Changed must follow.
    void* GetData() { return m_pixels.base; }
    const void* GetData() const { return m_pixels.base; }
    /// Drops what was derived from the pixels: tiles and statistics.
    void Changed() { DropPixels(); }

protected:
    std::shared_ptr<const XTile> ReadTile(int level, int tx, int ty, const std::atomic<int>* abort,
                                          XString& message) const override;

private:
    tagXArr2 m_pixels;
};
