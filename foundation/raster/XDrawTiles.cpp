#include "foundation/raster/XDrawTiles.h"

#include "foundation/base/XString.h"
#include "foundation/raster/XDMBand.h"
#include "foundation/raster/XRSFile.h"
#include "foundation/raster/XTile.h"

#include <algorithm>

XDrawTiles::XDrawTiles(XDMBand* band, int level, const std::atomic<int>* abort)
    : m_band(band), m_level(level), m_abort(abort)
{
    if (!band) return;
    m_dataType = band->GetDataType();
    band->GetLevelSize(level, m_width, m_height);
    band->GetTileSize(level, m_tileWidth, m_tileHeight);
    m_tileWidth = std::max(m_tileWidth, 1);
    m_tileHeight = std::max(m_tileHeight, 1);
}

const XTile* XDrawTiles::Get(int tx, int ty)
{
    const std::uint64_t key = static_cast<std::uint64_t>(static_cast<std::uint32_t>(ty)) << 32 |
                              static_cast<std::uint32_t>(tx);
    const auto [place, isNew] = m_tiles.try_emplace(key);
    tagEntry& entry = place->second;
    entry.round = m_round;
    if (!isNew) return entry.tile.get();
    XString message;
    entry.tile = m_band->GetTile(m_level, tx, ty, m_abort, message);
    // the loops trust sizes and type, so a tile of another shape counts as one that cannot be read
    if (entry.tile &&
        (entry.tile->GetWidth() != std::min(m_tileWidth, m_width - tx * m_tileWidth) ||
         entry.tile->GetHeight() != std::min(m_tileHeight, m_height - ty * m_tileHeight) ||
         entry.tile->GetDataType() != m_dataType))
        entry.tile.reset();
    if (!entry.tile) NoteFailure(message);
    return entry.tile.get();
}

void XDrawTiles::NoteFailure(const XString& why)
{
    m_hasFailed = 1;
    const bool isAborted = m_abort && m_abort->load(std::memory_order_relaxed);
    if (isAborted || !m_message || !m_message->IsEmpty()) return;
    *m_message = why.IsEmpty() ? XString("A part of the image cannot be read.") : why;
    const XRSFile* file = m_band->GetXRSFile();
    if (file && !file->GetFilePath().IsEmpty() && m_message->Find(file->GetFilePath()) < 0)
        *m_message = XfnFormat("\"%s\": %s", file->GetFilePath(), *m_message);
}

void XDrawTiles::Trim()
{
    std::erase_if(m_tiles, [this](const auto& item) {
        return item.second.tile && item.second.round != m_round; // failures are remembered
    });
    ++m_round;
}
