#pragma once

#include "foundation/raster/XDMFileLayout.h"

#include <array>
#include <atomic>
#include <cstdint>
#include <memory>
#include <mutex>
#include <vector>

class XFile;

/// Reads `count` bytes at `offset`.
/// @return 0 with a sentence without its full stop in `reason`, also when the file ends before.
int XfnReadXDMFileBytes(const XFile& file, std::uint64_t offset, void* out, std::size_t count,
                        XString& reason);

/// Where everything lies in a native raster file: what XDMFileReader knows beyond the records.
///
/// Read takes header, directory and metadata; a tile table is read when a tile of it is first
/// asked for. Nothing is believed before it was checked: pieces lie within the file, on their
/// alignment and apart from each other, and every table has exactly the entries of its level. There
/// is no pointer from one piece to the next, so nothing can run in a circle.
/// Threads: Read in one; then GetTile and GetFill in any.
class XDMFileCatalogue
{
public:
    /// @param info  filled with the checked records
    /// @return 0 with a sentence without its full stop in `reason`.
    int Read(const XFile& file, tagXDMFileInfo& info, XString& reason);

    /// The entry of a tile that is in the level; null with a reason when its table is bad. A table
    /// that failed is not read again.
    const tagXDMFileTileEntry* GetTile(const XFile& file, const tagXDMFileInfo& info, int band,
                                       int level, int tx, int ty, XString& reason) const;

    /// Whether the checksum of a tile that is in the level was verified before; MarkVerified says
    /// so of a tile that GetTile gave.
    bool IsVerified(const tagXDMFileInfo& info, int band, int level, int tx, int ty) const;
    void MarkVerified(const tagXDMFileInfo& info, int band, int level, int tx, int ty) const;

    std::uint64_t GetFileBytes() const { return m_fileBytes; }

    /// The sample that empty tiles of the band consist of.
    const unsigned char* GetFill(int band) const
    {
        return m_fills[static_cast<std::size_t>(band)].data();
    }

    /// 1 when no two tiles of the tables read so far claim the same bytes. In one thread.
    int AreTilesApart(XString& reason) const;

private:
    /// [begin, end) in the file
    struct tagRange
    {
        std::uint64_t begin;
        std::uint64_t end;
        bool operator<(const tagRange& other) const { return begin < other.begin; }
    };
    struct tagTable
    {
        tagXDMFileDirectoryEntry place;
        std::vector<tagXDMFileTileEntry> entries;
        std::unique_ptr<std::atomic<std::uint64_t>[]> verified; // a bit a tile
        XString failure;
        std::atomic<int> state{0}; // 0 not read, 1 entries are good, -1 failure is told
    };

    int ReadHeader(const XFile& file, tagXDMFileHeader& header, XString& reason);
    int ReadDirectory(const XFile& file, const tagXDMFileHeader& header, XString& reason);
    int CheckPlaces(XString& reason);
    int ReadBlock(const XFile& file, const tagXDMFileDirectoryEntry& entry,
                  std::vector<unsigned char>& bytes, XString& reason) const;
    int CountBands(tagXDMFileInfo& info, XString& reason);
    int ReadBandBlock(const XFile& file, const tagXDMFileDirectoryEntry& entry,
                      tagXDMFileInfo& info, XString& reason);
    int ReadRecords(const XFile& file, tagXDMFileInfo& info, XString& reason);
    int PlaceTables(const tagXDMFileInfo& info, XString& reason);
    int ReadTable(const XFile& file, const tagXDMFileInfo& info, int band, int level,
                  tagTable& table, XString& reason) const;
    int CheckTable(const tagXDMFileBand& band, int level,
                   const std::vector<tagXDMFileTileEntry>& entries, XString& reason) const;
    bool IsInPieces(const tagRange& range) const;
    tagTable& TableOf(int band, int level) const
    {
        return m_tables[m_firstTable[static_cast<std::size_t>(band)] +
                        static_cast<std::size_t>(level)];
    }

    std::uint64_t m_fileBytes = 0;
    std::vector<tagXDMFileDirectoryEntry> m_directory;
    std::vector<tagRange> m_pieces;                     // header, directory, blocks; sorted, apart
    std::vector<std::array<unsigned char, 16>> m_fills; // [band]
    std::vector<std::size_t> m_firstTable;              // of each band
    std::size_t m_tableCount = 0;
    std::unique_ptr<tagTable[]> m_tables;
    mutable std::mutex m_tableMutex; // while a table is read
};
