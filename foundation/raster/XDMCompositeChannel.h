#pragma once

#include "foundation/base/XPtrList.h"
#include "foundation/base/XSentinels.h"
#include "foundation/base/XWarp2D.h"

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
    int isCutChosen = 0;  ///< the cut range was set; else the band's own range is taken
    int isCutPending = 1; ///< cut type, coverage or band changed after the cut range was set
    int changes = 0;      ///< counts the changes that were made to the stretch from outside
    int stretchType = 0;
    unsigned char intensity000 = 0;
    unsigned char intensity255 = 255;
    XPtrList points; ///< of tagXHistPt*, owned
    std::array<unsigned char, 256> lut;
    tagXLutKey lutKey;
    std::array<unsigned char, 256> clt;
    XWarp2D warp;    ///< world to band pixel
    XWarp2D warpInv; ///< band pixel to world
    unsigned char defValue = 0;
    double transparent = kXNotSet;
    tagXSubsetStatistics subset;
};
