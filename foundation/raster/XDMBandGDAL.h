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
class XAPI XDMBandGDAL : public XDMBand
{
    X_DECLARE_CLASS(XDMBandGDAL)
public:
    /// Made by XRSFileIO. Takes everything that describes the band from `dataset`, a handle of
    /// `source` that is used during the call only.
    /// @param bandNumber     from 1; of a data type that has a code
    /// @param useLevels      0 ignores overviews
    /// @param useStatistics  0 ignores stored statistics
    XDMBandGDAL(std::shared_ptr<XGdalSource> source, GDALDataset* dataset, int bandNumber,
                int useLevels, int useStatistics);
    ~XDMBandGDAL() override;

protected:
    std::shared_ptr<const XTile> ReadTile(int level, int tx, int ty, const std::atomic<int>* abort,
                                          XString& message) const override;
    int ReadStoredStatistics(tagXBandStatistics& statistics) const override;
    int GatherSample(std::vector<std::shared_ptr<const XTile>>& tiles) const override;

private:
    int GatherBlocks(const tagXGdalLevel& level,
                     std::vector<std::shared_ptr<const XTile>>& tiles) const;

    std::shared_ptr<XGdalSource> m_source;
    int m_bandNumber;
    int m_isInterleaved = 0; // a block of the file holds all bands
    int m_blockPixelBytes = 1;
    std::vector<tagXGdalLevel> m_gdalLevels;
    tagXBandStatistics m_stored;
    int m_hasStored = 0;
};
