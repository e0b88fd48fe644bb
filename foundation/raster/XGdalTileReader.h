#pragma once

#include "foundation/base/XString.h"
#include "foundation/raster/XTile.h"

#include <atomic>
#include <memory>
#include <utility>
#include <vector>

class GDALDataset;
class GDALRasterBand;

/// For the sources of this folder only: where the pixels of one level come from.
struct tagXGdalLevel
{
    int width = 0;
    int height = 0;
    int tileWidth = 256;
    int tileHeight = 256;
    int overview = -1;   ///< index of the overview that is read, -1 for the band itself
    int sourceWidth = 0; ///< size of what is read; that of the level unless it is virtual
    int sourceHeight = 0;
    int blockWidth = 0; ///< as the file stores it
    int blockHeight = 0;
    int isSidecar = 0; ///< read from the pyramid that stands in a file of its own
    int isVirtual = 0;
    int isStrip = 0; ///< a block is as wide as the image
};

/// One band to read: its number from 1 and the tiles to fill, all of the same place, or side by side
/// along a whole row of tiles.
struct tagXGdalTarget
{
    int bandNumber = 0;
    std::vector<std::shared_ptr<XTile>> tiles;
};

/// The levels of a band: halves of full resolution, taken from overviews of fitting size where there
/// are such, else virtual and read from the smallest overview that is larger.
/// @param pixelBytes  bytes that decoding one pixel makes, all bands that share a block together
/// @param halves      width and height of each level, full resolution first
/// @param sidecar     the same band of a pyramid in a file of its own, which goes first; may be null
std::vector<tagXGdalLevel> XfnMakeGdalLevels(GDALRasterBand* band, int useOverviews, int pixelBytes,
                                             const std::vector<std::pair<int, int>>& halves,
                                             GDALRasterBand* sidecar = nullptr);

/// The same level read from full resolution, past the overviews.
tagXGdalLevel XfnMakeDirectLevel(const tagXGdalLevel& level, const tagXGdalLevel& full);

/// Decodes the tiles at (tx, ty) of every target, or for a target with several tiles those from tx
/// on. Several targets must share their blocks (pixel interleaved): the bands stand inside the loop
/// over rows or blocks, so that such a block is decoded once.
/// @param damage  when given, receives what a decoder said that went on all the same, in a sentence:
///                of a cut JPEG the rest is gray
/// @return 0 with a sentence without the file's name in `message`, which is empty after an abort
int XfnReadGdalTiles(GDALDataset* dataset, const tagXGdalLevel& level, int dataType, int tx, int ty,
                     std::vector<tagXGdalTarget>& targets, const std::atomic<int>* abort,
                     XString& message, XString* damage = nullptr);

/// The band or its overview.
GDALRasterBand* XfnGetGdalLevelBand(GDALDataset* dataset, int bandNumber, int overview);

/// The GDAL type that holds samples of our type code, and the type code of a band.
int XfnToGdalType(int dataType);
int XfnFromGdalBand(GDALRasterBand* band);
