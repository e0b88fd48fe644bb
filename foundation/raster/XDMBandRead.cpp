#include "foundation/base/XMemory.h"
#include "foundation/raster/XDMBand.h"
#include "foundation/raster/XRasterTypes.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <new>

// The read operations of XDMBand, all on one way to fill a window of a level from its tiles.

int XDMBand::FillLevelWindow(unsigned char* out, int level, int x0, int y0, int width, int height,
                             const std::atomic<int>* abort, XString* message) const
{
    const tagLevel& l = m_levels[static_cast<std::size_t>(level)];
    const std::size_t size = static_cast<std::size_t>(GetDataSize());
    const std::size_t outRow = static_cast<std::size_t>(width) * size;
    XString why;
    for (int ty = y0 / l.tileHeight; ty <= (y0 + height - 1) / l.tileHeight; ++ty) {
        for (int tx = x0 / l.tileWidth; tx <= (x0 + width - 1) / l.tileWidth; ++tx) {
            const std::shared_ptr<const XTile> tile = GetTile(level, tx, ty, abort, why);
            if (!tile) {
                if (message) *message = why;
                return 0;
            }
            const int left = tx * l.tileWidth;
            const int top = ty * l.tileHeight;
            const int firstX = std::max(x0, left);
            const int endX = std::min(x0 + width, left + tile->GetWidth());
            const int firstY = std::max(y0, top);
            const int endY = std::min(y0 + height, top + tile->GetHeight());
            if (firstX >= endX) continue;
            for (int y = firstY; y < endY; ++y)
                std::memcpy(out + outRow * static_cast<std::size_t>(y - y0) +
                                size * static_cast<std::size_t>(firstX - x0),
                            tile->GetRow(y - top) + size * static_cast<std::size_t>(firstX - left),
                            size * static_cast<std::size_t>(endX - firstX));
            if (tile->IsLost() && !IsIntact(why)) {
                if (message) *message = why;
                return 0;
            }
        }
    }
    return 1;
}

int XDMBand::ReadLevelWindow(tagXArr2*& block, int level, int x0, int y0, int width, int height,
                             const std::atomic<int>* abort, XString* message) const
{
    int levelWidth = 0;
    int levelHeight = 0;
    GetLevelSize(level, levelWidth, levelHeight);
    if (message) message->Empty();
    if (x0 < 0 || y0 < 0 || width < 1 || height < 1 || x0 > levelWidth - width ||
        y0 > levelHeight - height) {
        if (message) *message = "The part asked for does not lie within the image.";
        return 0;
    }
    if (!block) block = new (std::nothrow) tagXArr2;
    if (!block || !block->Create(GetDataType(), width, height)) {
        if (message) *message = "There is not enough memory for this part of the image.";
        return 0;
    }
    return FillLevelWindow(block->base, level, x0, y0, width, height, abort, message);
}

int XDMBand::ReadLineH(tagXArr2*& block, int level, int row, int start, int count)
{
    return ReadLevelWindow(block, level, start, row, count, 1, nullptr, nullptr);
}

int XDMBand::ReadLineH(tagXArr2*& block, int level, int row)
{
    int width = 0;
    int height = 0;
    GetLevelSize(level, width, height);
    return ReadLineH(block, level, row, 0, width);
}

int XDMBand::ReadLineV(tagXArr2*& block, int level, int column, int start, int count)
{
    return ReadLevelWindow(block, level, column, start, 1, count, nullptr, nullptr);
}

int XDMBand::ReadLineV(tagXArr2*& block, int level, int column)
{
    int width = 0;
    int height = 0;
    GetLevelSize(level, width, height);
    return ReadLineV(block, level, column, 0, height);
}

int XDMBand::ReadPixel(tagXArr2*& block, int x, int y)
{
    return ReadLevelWindow(block, 0, x, y, 1, 1, nullptr, nullptr);
}

int XDMBand::ReadPixelAtWorld(tagXArr2*& block, double worldX, double worldY)
{
    ConvWorldToPixelCoord(worldX, worldY);
    // the comparison comes first: converting NaN or a far coordinate to int is undefined
    if (!(worldX >= -0.5 && worldX < GetXSize() - 0.5 && worldY >= -0.5 &&
          worldY < GetYSize() - 0.5))
        return 0;
    return ReadPixel(block, static_cast<int>(worldX + 0.5), static_cast<int>(worldY + 0.5));
}

int XDMBand::ReadSubset(tagXArr2*& block, int level, int x0, int x1, int y0, int y1,
                        const std::atomic<int>* abort, XString* message)
{
    if (x0 < 0 || y0 < 0 || x0 > x1 || y0 > y1 || x1 >= GetXSize() || y1 >= GetYSize() ||
        level < 0 || level >= GetNumOfLevels()) {
        if (message) *message = "The part asked for does not lie within the image.";
        return 0;
    }
    int left, right, top, bottom;
    GetSubsetPos(level, x0, x1, y0, y1, left, right, top, bottom);
    return ReadLevelWindow(block, level, left, top, right - left + 1, bottom - top + 1, abort,
                           message);
}

int XDMBand::ReadSubset(void*& data, int& width, int& height, int level, int x0, int x1, int y0,
                        int y1, const std::atomic<int>* abort)
{
    data = nullptr;
    width = height = 0;
    if (x0 < 0 || y0 < 0 || x0 > x1 || y0 > y1 || x1 >= GetXSize() || y1 >= GetYSize() ||
        level < 0 || level >= GetNumOfLevels())
        return 0;
    int left, right, top, bottom;
    GetSubsetPos(level, x0, x1, y0, y1, left, right, top, bottom);
    const std::size_t columns = static_cast<std::size_t>(right - left) + 1;
    const std::size_t rows = static_cast<std::size_t>(bottom - top) + 1;
    const std::size_t size = static_cast<std::size_t>(GetDataSize());
    if (columns * size > (SIZE_MAX / 2) / rows) return 0;
    void* made = nullptr;
    try {
        made = XMemory::Alloc(columns * rows * size, 0);
    } catch (const std::bad_alloc&) {
        return 0;
    }
    if (!FillLevelWindow(static_cast<unsigned char*>(made), level, left, top,
                         static_cast<int>(columns), static_cast<int>(rows), abort, nullptr)) {
        XMemory::Free(made);
        return 0;
    }
    data = made;
    width = static_cast<int>(columns);
    height = static_cast<int>(rows);
    return 1;
}
