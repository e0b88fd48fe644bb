#pragma once

#include "foundation/raster/XDMFileBand.h"

#include <vector>

/// What a native raster file (.xdm) says about itself, as plain records.
///
/// They carry everything between the codec (XDMFileReader, XDMFileWriter) and the model, and know
/// nothing of either. A record as it is constructed means "nothing known"; such parts take no
/// bytes in a file. Reals pass through a file bit by bit, so NaN and the sentinels of XSentinels.h
/// survive. Texts are narrow text in memory and UTF-8 in the file.
/// docs/formats/xdm.md gives the bytes.

/// One ground control point.
struct tagXDMFileGCP
{
    XString name;
    double imageX = 0.0; ///< pixel position, centre based
    double imageY = 0.0;
    double refX = 0.0; ///< in the reference of its set
    double refY = 0.0;
    double refZ = 0.0;
    int use = 1; ///< 0 takes it out of the model

    bool operator==(const tagXDMFileGCP&) const = default;
};

struct tagXDMFileGCPSet
{
    XString name;
    XString description;
    int coordType = 2;
    XString wkt; ///< reference of refX, refY
    std::vector<tagXDMFileGCP> points;

    bool operator==(const tagXDMFileGCPSet&) const = default;
};

/// Numbers of one band over the pixels of a region that have a value in it.
struct tagXDMFileSample
{
    long long pixelCount = 0;
    double min = kXNotSet;
    double max = kXNotSet;
    double mean = kXNotSet;
    double squares = 0.0;           ///< sum of squared deviations from the mean
    double histogramLow = kXNotSet; ///< bins as in tagXDMFileStatistics
    double histogramHigh = kXNotSet;
    std::vector<long long> histogram; ///< 256 counts, or none

    bool operator==(const tagXDMFileSample&) const = default;
};

/// A region of interest.
struct tagXDMFileRegion
{
    XString name;
    XString comment;
    int type = 3;                   ///< 2 polyline, 3 polygon
    std::uint32_t color = 0xFFFFFF; ///< red lowest
    double nullValue = kXNotSet;
    std::vector<double> vertices; ///< x, y, z of each vertex, world
    int calculated = 0;           ///< 1 when the fields below hold
    long long pixelCount = 0;     ///< of the first band, with a value or not
    std::vector<tagXDMFileSample> bands;
    long long jointCount = 0;       ///< pixels that have a value in every band
    std::vector<double> jointMeans; ///< of those, [bands]
    std::vector<double> coMoments;  ///< sums of products of deviations, bands x bands, row-major

    bool operator==(const tagXDMFileRegion&) const = default;
};

/// A signature: a class made of regions. Its numbers follow from theirs.
struct tagXDMFileSignature
{
    XString name;
    XString comment;
    std::uint32_t color = 0xFFFFFF;
    /// In order: indices into tagXDMFileInfo::regions, or -1 for the next of `own`.
    std::vector<long long> regions;
    std::vector<tagXDMFileRegion> own; ///< members that are not in the list of the file

    bool operator==(const tagXDMFileSignature&) const = default;
};

/// A whole file but for its pixels.
struct tagXDMFileInfo
{
    XString name;
    XString description;
    int version = 0; ///< of the data, not of the format
    double threshold1 = kXNotSet;
    XString cryptoValidationInfo;
    std::vector<tagXDMFileBand> bands;
    std::vector<tagXDMFileGCPSet> gcpSets;
    std::vector<tagXDMFileRegion> regions;
    std::vector<tagXDMFileSignature> signatures;
    std::vector<double> correlation; ///< bands x bands, row-major, or none
    std::vector<double> covariance;
    tagXDMFileObject radarScene;
    std::vector<long long> headerBands; ///< for red, green, blue, from 0, -1 for none; or empty

    bool operator==(const tagXDMFileInfo&) const = default;
};

/// Bytes a sample of `dataType` takes; 0 for a code outside 1..16. Any thread.
XAPI int XfnGetXDMFileSampleSize(int dataType);

/// 1 when the records keep the rules of the format: what passes can be written, and every file that
/// opens passes. Any thread.
/// @return 0 with a sentence without its full stop in `reason` ("Band 2 has no pixels"); bands,
///         regions and the like are counted from 1 there, levels and tiles from 0.
XAPI int XfnCheckXDMFileInfo(const tagXDMFileInfo& info, XString& reason);
