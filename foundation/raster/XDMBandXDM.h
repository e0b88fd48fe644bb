#pragma once

#include "foundation/raster/XDMBand.h"
#include "foundation/raster/XDMFileReader.h"

/// A band of a file of the native format.
///
/// Its levels are those of the file. Where the file stops before both sides are at most 256 pixels,
/// virtual levels go on, each made of the pixels of the one before. Tiles have the file's size.
/// Shares the open file with the other bands; the last one closes it.
class XAPI XDMBandXDM : public XDMBand
{
    X_DECLARE_CLASS(XDMBandXDM)
public:
    /// @param bandIndex  from 0, a band of the open file
    /// @param useLevels  0 reads nothing but full resolution
    XDMBandXDM(std::shared_ptr<const XDMFileReader> reader, int bandIndex, int useLevels);

    const XDMFileReader& GetReader() const { return *m_reader; }
    int GetBandIndex() const { return m_bandIndex; } ///< in the file

    /// The levels that a new file of this size has, full resolution first.
    static std::vector<tagXDMFileLevel> MakeFileLevels(int width, int height);

    int IsTileAtHand(int level, int tx, int ty) const override;
    int IsIntact(XString& message) const override;
    int IsAsInFile(XString& message) const override;

protected:
    std::shared_ptr<const XTile> ReadTile(int level, int tx, int ty, const std::atomic<int>* abort,
                                          XString& message) const override;

private:
    std::shared_ptr<const XTile> ReadVirtualTile(int level, int tx, int ty,
                                                 const std::atomic<int>* abort,
                                                 XString& message) const;

    std::shared_ptr<const XDMFileReader> m_reader;
    int m_bandIndex;
};
