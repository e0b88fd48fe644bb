#pragma once

#include "foundation/base/XSentinels.h"
#include "foundation/base/XString.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

/// What a native raster file (.xdm) says about one band, as plain records; XDMFileInfo.h holds the
/// rest and says what goes for all of them.

/// One resolution of a band. Tiles start at the upper left; those at the right and bottom edge
/// hold only the pixels that exist.
struct tagXDMFileLevel
{
    int width = 0; ///< pixels
    int height = 0;
    int tileWidth = 256; ///< pixels, 1..32768; a whole tile takes at most kXDMFileMaxTileBytes
    int tileHeight = 256;

    long long GetTileColumns() const { return (width + 0LL + tileWidth - 1) / tileWidth; }
    long long GetTileRows() const { return (height + 0LL + tileHeight - 1) / tileHeight; }
    bool operator==(const tagXDMFileLevel&) const = default;
};

inline constexpr std::size_t kXDMFileMaxTileBytes = std::size_t(1) << 26;

/// A polynomial map of the plane: with u = (x - centerX) * scaleX and v = (y - centerY) * scaleY,
/// x' is the sum of xCoeff[i] * term i over the first `terms` of
/// 1, u, v, uv, uu, vv, uuu, uuv, uvv, vvv, and y' likewise with yCoeff.
struct tagXDMFileWarp
{
    int terms = 0; ///< 3, 4, 6 or 10; 0 for no warp
    double centerX = 0.0;
    double centerY = 0.0;
    double scaleX = 1.0;
    double scaleY = 1.0;
    std::array<double, 10> xCoeff{};
    std::array<double, 10> yCoeff{};

    bool operator==(const tagXDMFileWarp&) const = default;
};

/// Where a band lies in the world.
struct tagXDMFileReference
{
    int coordType = 1; ///< 1 pixel oriented, 2 unknown, 3 map oriented
    XString wkt;       ///< the spatial reference; empty when there is none
    double ulX = 0.0;  ///< centre of the upper left pixel
    double ulY = 0.0;
    double xPixelSize = 1.0; ///< above 0
    double yPixelSize = 1.0;
    int georeferenced = 0; ///< 0: the numbers are those of pixels
    int normalizedWorld = 0;
    int useSensorModel = 0;
    /// When upper left and pixel sizes do not say it all. Pixel (0.0, 0.0) is the centre of the
    /// upper left pixel.
    tagXDMFileWarp worldToPixel;
    tagXDMFileWarp pixelToWorld;

    bool operator==(const tagXDMFileReference&) const = default;
};

/// How much a statistic is worth.
enum class XDMFileStatisticsKind { None = 0, Estimated = 1, Exact = 2 };

/// Statistics of the valid pixels of a band, at level 0; of magnitudes when the band is complex.
struct tagXDMFileStatistics
{
    XDMFileStatisticsKind kind = XDMFileStatisticsKind::None; ///< of the next four
    double min = kXNotSet;
    double max = kXNotSet;
    double mean = kXNotSet;
    double stdDev = kXNotSet;
    long long pixelCount = 0; ///< pixels that took part
    /// Bin i counts the values v with trunc((v - low) * 255 / (high - low)) = i.
    XDMFileStatisticsKind histogramKind = XDMFileStatisticsKind::None;
    double histogramLow = kXNotSet;
    double histogramHigh = kXNotSet;
    std::vector<long long> histogram; ///< 256 counts; empty with histogramKind None

    bool operator==(const tagXDMFileStatistics&) const = default;
};

/// One class of a thematic band, or one color of a palette.
struct tagXDMFileClass
{
    std::uint8_t red = 0;
    std::uint8_t green = 0;
    std::uint8_t blue = 0;
    std::uint8_t alpha = 255;
    long long pixelCount = 0;
    XString name;

    bool operator==(const tagXDMFileClass&) const = default;
};

/// How and when a band was taken. Unknown numbers are kXNotSet.
struct tagXDMFileAcquisition
{
    XString date;
    int sensor = 0;
    XString sensorName;
    double centerX = kXUnsetCentre;
    double centerY = kXUnsetCentre;
    double cellSize = kXNotSet;
    double gain = kXNotSet;
    double bias = kXNotSet;
    double sunAzimuth = kXNotSet; ///< degrees, as the other angles
    double sunElevation = kXNotSet;
    double incidenceAngle = kXNotSet;
    double focalLength = kXNotSet;
    double altitude = kXNotSet;
    double sceneOrient = kXNotSet;
    double waveLength = kXNotSet; ///< centre, nanometres
    double bandWidth = kXNotSet;  ///< full width at half maximum, nanometres
    int originCorner = 0;
    double offset = 0.0; ///< physical value = pixel * scale + offset
    double scale = 1.0;
    std::array<double, 3> referencePoint{};

    bool operator==(const tagXDMFileAcquisition&) const = default;
};

/// An object of a class that the codec does not know, as it stores itself in an archive.
struct tagXDMFileObject
{
    XString className; ///< run-time class name; empty for no object
    std::vector<unsigned char> bytes;

    bool operator==(const tagXDMFileObject&) const = default;
};

/// How a radar band was taken; SI units, angles in degrees. Unknown numbers are kXNotSet.
struct tagXDMFileRadar
{
    XString beam;
    tagXDMFileObject sarParam;
    tagXDMFileObject sarSubset;
    tagXDMFileObject orbitInterpolater;
    tagXDMFileObject scanSensorParam;
    double lambda = kXNotSet;
    double prf = kXNotSet;
    double samplingFrequency = kXNotSet;
    double carrierFrequency = kXNotSet;
    double chirpBandWidth = kXNotSet;
    double chirpDuration = kXNotSet;
    double apertureTime = kXNotSet;
    double antennaLength = kXNotSet;
    double squintAngle = kXNotSet;
    int chirpDirection = 0; ///< 1 up, -1 down, 0 unknown

    bool operator==(const tagXDMFileRadar&) const = default;
};

/// A band. The layout (dataType, nullValue, compression, levels) is fixed once tiles are written.
struct tagXDMFileBand
{
    XString name;
    XString description;
    int id = 0;
    int dataType = 1; ///< 1..16 as in XBand::GetDataType
    int bandType = 0;
    int colorInterpretation = 0; ///< 0 unknown, 1 gray, 2 palette, 3 red, 4 green, 5 blue, 6 alpha
    double nullValue = kXNotSet;
    /// Wish of the writer: 0 none, 1 zstd, 2 zstd of predicted values. A tile that gains nothing
    /// is stored plain whatever is asked.
    int compression = 0;
    std::vector<tagXDMFileLevel> levels; ///< [0] is full resolution; each smaller than the last
    tagXDMFileReference reference;
    tagXDMFileStatistics statistics;
    std::vector<tagXDMFileClass> classes;
    int isColorTable = 0; ///< the colors of `classes` are those of pixel values
    tagXDMFileAcquisition acquisition;
    tagXDMFileRadar radar;

    bool operator==(const tagXDMFileBand&) const = default;
};
