#pragma once

#include "foundation/base/XPtrList.h"
#include "foundation/base/XSentinels.h"
#include "foundation/raster/XChannelWarp.h"

#include <array>
#include <cstdint>
#include <vector>

class XDMBand;

/// One point of a piecewise linear stretch; both parts on the 0..255 scale.
struct tagXHistPt
{
    unsigned char position = 0; ///< level that enters the table
    unsigned char value = 0;    ///< intensity that leaves it

    friend bool operator==(const tagXHistPt&, const tagXHistPt&) = default;
};

/// What a look-up table was made from. A table is stale when the key of the moment differs.
struct tagXLutKey
{
    int stretchType = -1;
    unsigned char intensity000 = 0;
    unsigned char intensity255 = 255;
    double cutMin = 0.0;
    double cutMax = 0.0;
    std::vector<tagXHistPt> points;
    std::uint64_t histogramHash = 0; ///< 0 for the stretches that use no histogram

    friend bool operator==(const tagXLutKey&, const tagXLutKey&) = default;
};

/// The numbers of the part of a band that a view shows.
struct tagXSubsetStatistics
{
    double min = kXNotSet; ///< kXNotSet when there is no pixel with a value
    double max = kXNoData;
    double mean = kXNotSet;
    double stdDev = kXNotSet;
    long long count = 0;
    std::array<long long, 256> histogram{}; ///< bin i stands for min + (max - min) * i / 255

    /// What the numbers were gathered from, so that an unchanged view gathers nothing anew.
    const XDMBand* band = nullptr;
    std::uint64_t bandChange = 0; ///< XBand::GetChangeNumber
    std::array<double, 4> range{kXNotSet, kXNotSet, kXNotSet, kXNotSet};
};

/// The settings of one channel of a composite: which band it shows and how. Lists of piecewise
/// points own their records. Plain data for XDMComposite, which keeps three of them.
struct tagXCompositeChannel
{
    tagXCompositeChannel();
    ~tagXCompositeChannel();
    tagXCompositeChannel(const tagXCompositeChannel& other);
    tagXCompositeChannel& operator=(const tagXCompositeChannel& other);

    /// Takes the stretch, tables, transparency and display flags of `other`, and leaves the band
    /// and its geometry alone.
    void CopyDisplay(const tagXCompositeChannel& other);

    /// Gives the channel a number of changes that no other ever had.
    void NoteChange();
    /// Takes back a range that nobody chose, so that the next band gets its own.
    void ForgetRange();

    void RemovePoints();
    void InsertPoint(tagXHistPt point); ///< by rising position; one at the same place is replaced
    std::vector<tagXHistPt> ListPoints() const;

    XDMBand* band = nullptr; ///< not owned
    int hide = 0;
    double matchA = 1.0; ///< histogram matching: a * value + b
    double matchB = 0.0;
    int coverage = 0;
    int cutType = 0;
    double cutMin = 0.0;
    double cutMax = 255.0;
    int isCutChosen = 0;  ///< 1: the cut range was set, 2: taken from a visible region; else the
                          ///< band's own range is taken
    int isCutPending = 1; ///< cut type, coverage or band changed after the cut range was set
    std::uint64_t changes = 0; ///< another number after each change of the stretch from outside
    int stretchType = 0;
    unsigned char intensity000 = 0;
    unsigned char intensity255 = 255;
    XPtrList points; ///< of tagXHistPt*, owned
    std::array<unsigned char, 256> lut;
    tagXLutKey lutKey;
    int isLutSet = 0; ///< the table was set, and not made from the stretch
    std::array<unsigned char, 256> clt;
    XChannelWarp warp;    ///< world to band pixel
    XChannelWarp warpInv; ///< band pixel to world
    int isWarpChosen = 0; ///< the warp was set; else the band's or the reference's way is taken
    XWarp2D chosenWarp;   ///< as it was set, while pixel base mode puts it aside
    XWarp2D chosenInv;
    unsigned char defValue = 0;
    double transparent = kXNotSet;
    tagXSubsetStatistics subset;
};
