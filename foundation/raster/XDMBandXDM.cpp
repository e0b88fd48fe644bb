#include "foundation/raster/XDMBandXDM.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>

X_IMPLEMENT_CLASS(XDMBandXDM, XDMBand)

XDMBandXDM::XDMBandXDM(std::shared_ptr<const XDMFileReader> reader, int bandIndex, int useLevels)
    : m_reader(std::move(reader)), m_bandIndex(bandIndex)
{
    const tagXDMFileBand& record = m_reader->GetInfo().bands[static_cast<std::size_t>(m_bandIndex)];
    std::vector<tagLevel> levels;
    for (const tagXDMFileLevel& level : record.levels) {
        if (!levels.empty() && !useLevels) break;
        levels.push_back({level.width, level.height, level.tileWidth, level.tileHeight, 0});
    }
    const std::vector<tagLevel> halves = MakeLevels(levels.back().width, levels.back().height);
    levels.insert(levels.end(), halves.begin() + 1, halves.end());
    SetLevels(record.dataType, std::move(levels));
}

std::vector<tagXDMFileLevel> XDMBandXDM::MakeFileLevels(int width, int height)
{
    std::vector<tagXDMFileLevel> levels;
    for (const tagLevel& level : MakeLevels(width, height))
        levels.push_back({level.width, level.height, level.tileWidth, level.tileHeight});
    return levels;
}

std::shared_ptr<const XTile> XDMBandXDM::ReadTile(int level, int tx, int ty,
                                                  const std::atomic<int>* abort,
                                                  XString& message) const
{
    if (IsVirtualLevel(level)) return ReadVirtualTile(level, tx, ty, abort, message);
    int levelWidth, levelHeight, tileWidth, tileHeight;
    GetLevelSize(level, levelWidth, levelHeight);
    GetTileSize(level, tileWidth, tileHeight);
    const int width = std::min(tileWidth, levelWidth - tx * tileWidth);
    const int height = std::min(tileHeight, levelHeight - ty * tileHeight);
    tagXDMFileView view;
    if (!m_reader->ViewTile(m_bandIndex, level, tx, ty, view, message)) return nullptr;
    // payloads are aligned to 16 in the file, so this holds for every sample
    if (view.samples && reinterpret_cast<std::uintptr_t>(view.samples) % 16 == 0)
        return std::make_shared<XTile>(GetDataType(), width, height, view.samples,
                                       std::move(view.map));
    auto tile = std::make_shared<XTile>(GetDataType(), width, height);
    if (!m_reader->ReadTile(m_bandIndex, level, tx, ty, tile->GetFillData(), tile->GetByteSize(),
                            message))
        return nullptr;
    return tile;
}

std::shared_ptr<const XTile> XDMBandXDM::ReadVirtualTile(int level, int tx, int ty,
                                                         const std::atomic<int>* abort,
                                                         XString& message) const
{
    int levelWidth, levelHeight, tileWidth, tileHeight;
    GetLevelSize(level, levelWidth, levelHeight);
    GetTileSize(level, tileWidth, tileHeight);
    int finerWidth, finerHeight, finerTileWidth, finerTileHeight;
    GetLevelSize(level - 1, finerWidth, finerHeight);
    GetTileSize(level - 1, finerTileWidth, finerTileHeight);
    const int x0 = tx * tileWidth;
    const int y0 = ty * tileHeight;
    auto tile = std::make_shared<XTile>(GetDataType(), std::min(tileWidth, levelWidth - x0),
                                        std::min(tileHeight, levelHeight - y0));
    const std::size_t size = static_cast<std::size_t>(GetDataSize());
    const auto column = [&](int x) { return XfnPickPixel(x0 + x, levelWidth, finerWidth); };
    const auto row = [&](int y) { return XfnPickPixel(y0 + y, levelHeight, finerHeight); };

    // one finer tile after the other, so that the cache sees each of them once
    for (int y = 0; y < tile->GetHeight();) {
        const int finerTy = row(y) / finerTileHeight;
        int endY = y;
        while (endY < tile->GetHeight() && row(endY) / finerTileHeight == finerTy)
            ++endY;
        for (int x = 0; x < tile->GetWidth();) {
            const int finerTx = column(x) / finerTileWidth;
            const auto finer = GetTile(level - 1, finerTx, finerTy, abort, message);
            if (!finer) return nullptr;
            int endX = x;
            for (; endX < tile->GetWidth() && column(endX) / finerTileWidth == finerTx; ++endX) {
                const std::size_t from =
                    size * static_cast<std::size_t>(column(endX) - finerTx * finerTileWidth);
                unsigned char* out = tile->GetFillData() + size * static_cast<std::size_t>(endX);
                for (int line = y; line < endY; ++line)
                    std::memcpy(out + tile->GetRowBytes() * static_cast<std::size_t>(line),
                                finer->GetRow(row(line) - finerTy * finerTileHeight) + from, size);
            }
            x = endX;
        }
        y = endY;
    }
    return IsIntact(message) ? tile : nullptr;
}

int XDMBandXDM::IsTileAtHand(int level, int tx, int ty) const
{
    return (!IsVirtualLevel(level) && m_reader->IsViewReady(m_bandIndex, level, tx, ty)) ||
           XDMBand::IsTileAtHand(level, tx, ty);
}

int XDMBandXDM::IsIntact(XString& message) const
{
    return m_reader->IsIntact(message);
}

int XDMBandXDM::IsAsInFile(XString& message) const
{
    const double own = m_reader->GetInfo().bands[static_cast<std::size_t>(m_bandIndex)].nullValue;
    const double null = GetNullValue();
    if (null == own || (std::isnan(null) && std::isnan(own))) return m_reader->IsCurrent(message);
    message = XfnFormat("The null value is not the one in the file: %s.", m_reader->GetFilePath());
    return 0;
}
