#include "foundation/raster/XDMBandMemory.h"

#include "foundation/raster/XRasterTypes.h"

#include <algorithm>
#include <cstring>

X_IMPLEMENT_CLASS(XDMBandMemory, XDMBand)

int XDMBandMemory::Create(int dataType, int width, int height, const void* data)
{
    tagXArr2 made;
    if (!made.Create(dataType, width, height)) return 0;
    if (data)
        std::memcpy(made.base, data, made.GetByteSize());
    else
        std::memset(made.base, 0, made.GetByteSize());
    m_pixels.Swap(made);
    SetLevels(dataType, MakeLevels(width, height));
    DropPixels();
    return 1;
}

std::shared_ptr<const XTile> XDMBandMemory::ReadTile(int level, int tx, int ty,
                                                     const std::atomic<int>*, XString&) const
{
    int levelWidth, levelHeight, tileWidth, tileHeight;
    GetLevelSize(level, levelWidth, levelHeight);
    GetTileSize(level, tileWidth, tileHeight);
    const int x0 = tx * tileWidth;
    const int y0 = ty * tileHeight;
    const int width = std::min(tileWidth, levelWidth - x0);
    const int height = std::min(tileHeight, levelHeight - y0);
    const auto tile = std::make_shared<XTile>(GetDataType(), width, height);
    const std::size_t size = static_cast<std::size_t>(GetDataSize());
    unsigned char* out = tile->GetFillData();
    for (int y = 0; y < height; ++y) {
        const int row = XfnPickPixel(y0 + y, levelHeight, m_pixels.height);
        if (level == 0) {
            std::memcpy(out, m_pixels.At(x0, row), tile->GetRowBytes());
        } else {
            for (int x = 0; x < width; ++x)
                std::memcpy(out + size * static_cast<std::size_t>(x),
                            m_pixels.At(XfnPickPixel(x0 + x, levelWidth, m_pixels.width), row),
                            size);
        }
        out += tile->GetRowBytes();
    }
    return tile;
}
