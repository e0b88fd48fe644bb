#include "foundation/raster/XDMBandMemory.h"

#include "foundation/raster/XRasterTypes.h"

#include <algorithm>
#include <cstring>
#include <mutex>
#include <new>

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
    m_stored.clear();
    SetLevels(dataType, MakeLevels(width, height));
    DropPixels();
    return 1;
}

int XDMBandMemory::StoreLevels(bool skip, double nullValue)
{
    if (!m_pixels.base) return 0;
    std::vector<tagLevel> levels = MakeLevels(m_pixels.width, m_pixels.height);
    try {
        m_stored = std::vector<tagXArr2>(levels.size() - 1);
    } catch (const std::bad_alloc&) {
        return 0;
    }
    int isDone = 1;
    for (std::size_t level = 1; isDone && level < levels.size(); ++level) {
        levels[level].isVirtual = 0;
        isDone =
            m_stored[level - 1].Create(GetDataType(), levels[level].width, levels[level].height);
    }
    if (isDone) {
        SetLevels(GetDataType(), std::move(levels));
        isDone = BuildLowerLevelsForTIP(nullValue, 0, GetXSize() - 1, 0, GetYSize() - 1, skip);
    }
    if (isDone) return 1;
    m_stored.clear();
    SetLevels(GetDataType(), MakeLevels(m_pixels.width, m_pixels.height));
    DropPixels();
    return 0;
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
    const bool isStored = level == 0 || !m_stored.empty();
    const tagXArr2& from =
        level == 0 || !isStored ? m_pixels : m_stored[static_cast<std::size_t>(level) - 1];
    unsigned char* out = tile->GetFillData();
    const std::shared_lock lock(m_dataMutex);
    for (int y = 0; y < height; ++y) {
        if (isStored) {
            std::memcpy(out, from.At(x0, y0 + y), tile->GetRowBytes());
        } else {
            const int row = XfnPickPixel(y0 + y, levelHeight, from.height);
            for (int x = 0; x < width; ++x)
                std::memcpy(out + size * static_cast<std::size_t>(x),
                            from.At(XfnPickPixel(x0 + x, levelWidth, from.width), row), size);
        }
        out += tile->GetRowBytes();
    }
    return tile;
}

int XDMBandMemory::WriteTile(int level, int tx, int ty, const tagXTilePiece& piece, XString&)
{
    int tileWidth, tileHeight;
    GetTileSize(level, tileWidth, tileHeight);
    tagXArr2& to = level == 0 ? m_pixels : m_stored[static_cast<std::size_t>(level) - 1];
    const std::size_t size = static_cast<std::size_t>(GetDataSize());
    const std::size_t rowBytes = size * static_cast<std::size_t>(to.width);
    const std::size_t bytes = size * static_cast<std::size_t>(piece.width);
    unsigned char* out = to.base + rowBytes * static_cast<std::size_t>(ty * tileHeight + piece.y) +
                         size * static_cast<std::size_t>(tx * tileWidth + piece.x);
    const unsigned char* in = piece.samples;
    const std::unique_lock lock(m_dataMutex);
    for (int y = 0; y < piece.height; ++y, out += rowBytes, in += piece.rowBytes)
        std::memcpy(out, in, bytes);
    return 1;
}
