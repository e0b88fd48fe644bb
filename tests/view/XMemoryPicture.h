#pragma once

#include "foundation/raster/XDMBandMemory.h"

#include <vector>

/// A byte band in memory whose pixels a function gives.
class XMemoryPicture
{
public:
    /// @param ulX,ulY  world place of the centre of the upper-left pixel
    template <class Value>
    XMemoryPicture(int width, int height, double ulX, double ulY, double sizeX, double sizeY,
                   Value value)
    {
        std::vector<unsigned char> pixels;
        for (int y = 0; y < height; ++y)
            for (int x = 0; x < width; ++x)
                pixels.push_back(static_cast<unsigned char>(value(x, y)));
        m_band.Create(1, width, height, pixels.data());
        m_band.SetUpperLeft(ulX, ulY);
        m_band.SetPixelSize(sizeX, sizeY);
    }

    XDMBand* GetBand() { return &m_band; }

private:
    XDMBandMemory m_band;
};
