#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <unordered_map>

class XDMBand;
class XString;
class XTile;

/// The tiles of one level of a band during one drawing.
///
/// Holds what was asked for since the last Trim but one, so that neighbouring rows do not go to the
/// shared cache again. A tile that failed is not asked for twice. Threads: one.
class XDrawTiles
{
public:
    XDrawTiles(XDMBand* band, int level, const std::atomic<int>* abort);
    /// Receives why the first tile that failed did, unless it holds a text already; may be null.
    void SetMessage(XString* message) { m_message = message; }

    int GetTileWidth() const { return m_tileWidth; }
    int GetTileHeight() const { return m_tileHeight; }

    int GetWidth() const { return m_width; } ///< of the level
    int GetHeight() const { return m_height; }
    int GetDataType() const { return m_dataType; }

    /// Null when the tile cannot be read or the abort word rose; good until the next but one Trim.
    /// A tile has the size that its place in the level asks for and the band's data type.
    const XTile* Get(int tx, int ty);
    int HasFailed() const { return m_hasFailed; }

    void Trim(); ///< drops what was not asked for since the last call

private:
    void NoteFailure(const XString& why);

    struct tagEntry
    {
        std::shared_ptr<const XTile> tile;
        int round = 0;
    };

    XDMBand* m_band;
    int m_level;
    const std::atomic<int>* m_abort;
    XString* m_message = nullptr;
    int m_dataType = 0;
    int m_width = 0;
    int m_height = 0;
    int m_tileWidth = 1;
    int m_tileHeight = 1;
    int m_round = 0;
    int m_hasFailed = 0;
    std::unordered_map<std::uint64_t, tagEntry> m_tiles;
};
