#pragma once

#include "foundation/raster/XDMBand.h"

class GDALDataset;
class GDALRasterBand;
class XGdalSource;
struct tagXGdalLevel;

/// A band of an image file that GDAL reads; the class of formats that have none of their own.
///
/// Tiles are decoded in the calling thread, through one of a few handles of the file. Bands of a
/// pixel interleaved file fill each other's tiles, since a block holds them all. Overviews become
/// the levels whose size they have.
///
/// Statistics stored with the file are used when they are exact. Estimates of a raster without
/// overviews come from blocks spread evenly over it, at most about a hundred megabytes of them.
/// 64-bit integers are read as doubles, exact to 2^53.
///
/// The levels may come from a pyramid in a file of its own, also one that was made while the band is
/// in use. What cannot be read from a reduced picture is taken from full resolution.
class XAPI XDMBandGDAL : public XDMBand
{
    X_DECLARE_CLASS(XDMBandGDAL)
public:
    /// Made by XRSFileIO. Takes everything that describes the band from `dataset`, a handle of
    /// `source` that is used during the call only.
    /// @param bandNumber     from 1; of a data type that has a code
    /// @param useLevels      0 ignores overviews, and pyramids that come later
    /// @param useOverviews   0 ignores what GDAL takes for overviews
    /// @param useStatistics  0 ignores stored statistics
    XDMBandGDAL(std::shared_ptr<XGdalSource> source, GDALDataset* dataset, int bandNumber,
                int useLevels, int useOverviews, int useStatistics);
    ~XDMBandGDAL() override;

    /// For the sources of this folder: what the pixels come from.
    const std::shared_ptr<XGdalSource>& GetSource() const { return m_source; }
    int GetBandNumber() const { return m_bandNumber; } ///< in the file, from 1

    int IsVirtualLevel(int level) const override;
    int IsAsInFile(XString& message) const override;
    /// Width and height of all reduced pictures that the file or its pyramid holds, those below the
    /// coarsest level too.
    std::vector<std::pair<int, int>> GetStoredSizes() const { return GetTable()->stored; }
    /// Bytes of blocks that decoding all of a level takes, from wherever its pixels come; 0 for a level
    /// that is none. An upper bound: of a sparse file absent blocks are counted too.
    std::int64_t CalcLevelBytes(int level) const;

    /// For XRSFileIO: reads levels from a pyramid from now on. The layout of the levels stays.
    /// @param isNew  the band is not in use yet, so that its tiles may become those of the pyramid
    /// @return 0 when the pyramid does not fit, or the path names another file than the one that is
    ///         open; nothing changed then
    int TakeUpLevels(const std::shared_ptr<XGdalSource>& pyramid, int isNew);
    /// Drops what was cached of the levels, once all bands of the file have taken up theirs.
    void DropOldLevels();

protected:
    std::shared_ptr<const XTile> ReadTile(int level, int tx, int ty, const std::atomic<int>* abort,
                                          XString& message) const override;
    int ReadStoredStatistics(tagXBandStatistics& statistics) const override;
    int GatherSample(std::vector<std::shared_ptr<const XTile>>& tiles,
                     const std::atomic<int>* abort) const override;

private:
    /// Where the levels come from; never changed, but replaced.
    struct tagTable
    {
        std::vector<tagXGdalLevel> levels;
        std::vector<std::pair<int, int>> stored; // sizes of all reduced pictures
        std::shared_ptr<XGdalSource> pyramid;    // of the levels that say so
        XGdalSource& SourceOf(const tagXGdalLevel& level, const XDMBandGDAL& band) const;
    };
    std::shared_ptr<const tagTable> GetTable() const;
    void SetLayoutOf(tagTable made, int dataType);
    void SetTable(std::shared_ptr<const tagTable> table);
    int GatherBlocks(const tagTable& table, const tagXGdalLevel& level,
                     std::vector<std::shared_ptr<const XTile>>& tiles,
                     const std::atomic<int>* abort) const;

    std::shared_ptr<XGdalSource> m_source;
    int m_bandNumber;
    bool m_isOneStream = false; ///< by one handle, a whole row of tiles at a time
    int m_isInterleaved = 0;    // a block of the file holds all bands
    int m_blockPixelBytes = 1;
    int m_useLevels = 1;
    mutable std::mutex m_tableMutex;
    std::shared_ptr<const tagTable> m_table; // under the mutex
    double m_fileNull = kXNotSet;
    tagXBandStatistics m_stored;
    int m_hasStored = 0;
};
