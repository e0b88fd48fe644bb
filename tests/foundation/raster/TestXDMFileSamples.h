#pragma once

#include "foundation/base/XMemFile.h"
#include "foundation/raster/XDMFileReader.h"
#include "foundation/raster/XDMFileWriter.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <memory>
#include <random>
#include <string>
#include <vector>

/// A folder of the test's own that goes with it.
class XDMFileFolder
{
public:
    XDMFileFolder()
    {
        std::string name = (std::filesystem::temp_directory_path() / "xdm-XXXXXX").string();
        m_path = mkdtemp(name.data());
    }
    ~XDMFileFolder() { std::filesystem::remove_all(m_path); }

    std::string operator/(const char* name) const { return (m_path / name).string(); }
    int CountFiles() const
    {
        return static_cast<int>(std::distance(std::filesystem::directory_iterator(m_path),
                                              std::filesystem::directory_iterator()));
    }

private:
    std::filesystem::path m_path;
};

using XDMFileBytes = std::vector<unsigned char>;

inline XDMFileBytes LoadBytes(const std::string& path)
{
    std::ifstream in(path, std::ios::binary);
    return XDMFileBytes(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

/// A file that is exactly these bytes; they must outlive the reader.
inline std::unique_ptr<XMemFile> ShowBytes(const XDMFileBytes& bytes)
{
    auto file = std::make_unique<XMemFile>();
    file->Attach(bytes.data(), bytes.size());
    return file;
}

/// A band of two levels whose tiles do not divide the picture.
inline tagXDMFileBand MakeBand(int dataType, int compression = 0)
{
    tagXDMFileBand band;
    band.name = "band";
    band.dataType = dataType;
    band.compression = compression;
    band.levels = {{37, 21, 16, 8}, {19, 11, 7, 16}};
    return band;
}

inline tagXDMFileInfo MakeInfo(const std::vector<tagXDMFileBand>& bands)
{
    tagXDMFileInfo info;
    info.bands = bands;
    return info;
}

/// Samples of a tile that tells which tile it is: a slope with some noise, or nothing for every
/// third tile.
inline XDMFileBytes MakeTile(std::size_t bytes, int band, int level, int tx, int ty)
{
    XDMFileBytes tile(bytes);
    if ((band + level + tx + ty) % 3 == 2) return tile;
    std::minstd_rand noise(static_cast<unsigned>(1 + band * 1000 + level * 100 + ty * 10 + tx));
    for (std::size_t i = 0; i < bytes; ++i) {
        tile[i] = static_cast<unsigned char>(i / 4 + noise() % 3 + static_cast<unsigned>(tx));
    }
    return tile;
}

/// Calls `visit(band, level, tx, ty)` for every tile.
template <class Visit>
void ForEachTile(const tagXDMFileInfo& info, Visit visit)
{
    for (int b = 0; b < static_cast<int>(info.bands.size()); ++b) {
        const auto& levels = info.bands[static_cast<std::size_t>(b)].levels;
        for (int l = 0; l < static_cast<int>(levels.size()); ++l) {
            const tagXDMFileLevel& level = levels[static_cast<std::size_t>(l)];
            for (int ty = 0; ty < level.GetTileRows(); ++ty) {
                for (int tx = 0; tx < level.GetTileColumns(); ++tx)
                    visit(b, l, tx, ty);
            }
        }
    }
}

inline std::size_t GetTileBytes(const tagXDMFileInfo& info, int b, int l, int tx, int ty)
{
    const tagXDMFileBand& band = info.bands[static_cast<std::size_t>(b)];
    const tagXDMFileLevel& level = band.levels[static_cast<std::size_t>(l)];
    const int width = std::min(level.tileWidth, level.width - tx * level.tileWidth);
    const int height = std::min(level.tileHeight, level.height - ty * level.tileHeight);
    return static_cast<std::size_t>(width * height * XfnGetXDMFileSampleSize(band.dataType));
}

/// Writes all tiles of MakeTile and the records.
inline void WriteSample(const std::string& path, const tagXDMFileInfo& info)
{
    XDMFileWriter writer;
    XString message;
    ASSERT_TRUE(writer.Create(path.c_str(), info, message)) << message.GetString();
    ForEachTile(info, [&](int b, int l, int tx, int ty) {
        const XDMFileBytes tile = MakeTile(GetTileBytes(info, b, l, tx, ty), b, l, tx, ty);
        ASSERT_TRUE(writer.WriteTile(b, l, tx, ty, tile.data(), tile.size(), message))
            << message.GetString();
    });
    ASSERT_TRUE(writer.Commit(message)) << message.GetString();
}

inline XDMFileBytes MakeSample(const tagXDMFileInfo& info)
{
    const XDMFileFolder folder;
    WriteSample(folder / "sample.xdm", info);
    return LoadBytes(folder / "sample.xdm");
}

/// Such a file in memory, open.
struct tagOpenSample
{
    explicit tagOpenSample(const tagXDMFileInfo& info) : bytes(MakeSample(info))
    {
        EXPECT_TRUE(reader.Open(ShowBytes(bytes), "a.xdm", message)) << message.GetString();
    }
    const XDMFileBytes bytes;
    XDMFileReader reader;
    XString message;
};

/// A file that is being written.
struct tagWriting
{
    explicit tagWriting(const tagXDMFileInfo& info, const char* name = "a.xdm")
        : path(folder / name)
    {
        EXPECT_TRUE(writer.Create(path.c_str(), info, message)) << message.GetString();
    }
    const XDMFileFolder folder;
    const std::string path;
    XDMFileWriter writer;
    XString message;
};

/// 1 when every tile is as WriteSample wrote it.
inline bool HasSampleTiles(const XDMFileReader& reader, XString& message)
{
    bool isSame = true;
    ForEachTile(reader.GetInfo(), [&](int b, int l, int tx, int ty) {
        XDMFileBytes tile(reader.GetTileBytes(b, l, tx, ty));
        isSame = isSame && reader.ReadTile(b, l, tx, ty, tile.data(), tile.size(), message) &&
                 tile == MakeTile(tile.size(), b, l, tx, ty);
    });
    return isSame;
}

/// Records with something in every field, no two values alike where it matters.
inline tagXDMFileInfo MakeFullInfo()
{
    tagXDMFileInfo info;
    info.name = "Bucheon \xEB\xB6\x80\xEC\xB2\x9C";
    info.description = "line one\nline two";
    info.version = 21;
    info.threshold1 = 0.1;
    info.cryptoValidationInfo = "seal";
    info.bands = {MakeBand(3, 2), MakeBand(7, 1)};
    double next = 0.25;
    const auto number = [&] { return next += 1.0 / 3.0; };
    const auto histogram = [](long long start) {
        std::vector<long long> counts(256);
        for (std::size_t i = 0; i < 256; ++i)
            counts[i] = start + static_cast<long long>(i * i);
        return counts;
    };
    for (int b = 0; b < 2; ++b) {
        tagXDMFileBand& band = info.bands[static_cast<std::size_t>(b)];
        band.name = b ? "near infrared" : "red";
        band.description = "calibrated";
        band.id = 40 + b;
        band.bandType = 2;
        band.colorInterpretation = 3 + b;
        band.nullValue = b ? kXNotSet : 65535.0;
        band.reference.coordType = 3;
        band.reference.wkt = "LOCAL_CS[\"plan\"]";
        band.reference.ulX = 200000.123456789;
        band.reference.ulY = -0.0;
        band.reference.xPixelSize = 0.3;
        band.reference.yPixelSize = 0.7;
        band.reference.georeferenced = 1;
        band.reference.normalizedWorld = 1;
        band.reference.useSensorModel = 1;
        band.reference.worldToPixel = {10,
                                       1,
                                       2,
                                       0.5,
                                       0.25,
                                       {1, 2, 3, 4, 5, 6, 7, 8, 9, 10},
                                       {11, 12, 13, 14, 15, 16, 17, 18, 19, 20}};
        band.reference.pixelToWorld = {3, 4, 5, 6, 7, {0.1, 0.2, 0.3}, {0.4, 0.5, 0.6}};
        tagXDMFileStatistics& statistics = band.statistics;
        statistics.kind = b ? XDMFileStatisticsKind::Exact : XDMFileStatisticsKind::Estimated;
        statistics.histogramKind =
            b ? XDMFileStatisticsKind::Estimated : XDMFileStatisticsKind::Exact;
        for (double* value :
             {&statistics.min, &statistics.max, &statistics.mean, &statistics.stdDev,
              &statistics.histogramLow, &statistics.histogramHigh}) {
            *value = number();
        }
        statistics.pixelCount = 777;
        statistics.histogram = histogram(b);
        band.classes = {{1, 2, 3, 4, (1LL << 40) + b, "water"}, {255, 254, 253, 0, 0, ""}};
        band.isColorTable = 1;
        band.acquisition = {
            "2021-07-01", 7,        "frame",  number(), number(),
            number(),     number(), number(), number(), number(),
            number(),     number(), number(), number(), number(),
            number(),     3,        number(), number(), {number(), number(), number()}};
        tagXDMFileRadar& radar = band.radar;
        radar.beam = "F4";
        radar.sarParam = {"XSarParam", {1, 0, 255}};
        radar.sarSubset = {"XSarSubset", {}};
        radar.orbitInterpolater = {"XOrbit", {7}};
        radar.scanSensorParam = {"XScan", {8, 9}};
        for (double* value : {&radar.lambda, &radar.prf, &radar.samplingFrequency,
                              &radar.carrierFrequency, &radar.chirpBandWidth, &radar.chirpDuration,
                              &radar.apertureTime, &radar.antennaLength, &radar.squintAngle}) {
            *value = number();
        }
        radar.chirpDirection = -1;
    }
    info.gcpSets = {{"first",
                     "paper map",
                     3,
                     "LOCAL_CS[\"ground\"]",
                     {{"p1", 1.5, 2.5, number(), number(), number(), 1},
                      {"", 3.5, 4.5, number(), number(), number(), 0}}},
                    {"none", "", 1, "", {}}};
    const tagXDMFileSample sample = {40,       number(), number(), number(),
                                     number(), number(), number(), histogram(3)};
    info.regions = {{"ROI_1",
                     "field",
                     3,
                     0xFF0000FF,
                     -9999.0,
                     {0, 0, 0, 10, 0, 0, 10, 20, 5},
                     1,
                     99,
                     {sample, {}},
                     38,
                     {number(), number()},
                     {1, 2, 2, 4}},
                    {"ROI_2", "", 2, 0xFFFFFF, kXNotSet, {1, 2, 3}, 0, 0, {}, 0, {}, {}}};
    info.signatures = {{"crop", "three fields", 0xFF00FF00, {1, -1, 0}, {info.regions[0]}}};
    info.correlation = {1, 0.25, 0.25, 1};
    info.covariance = {9, 8, 8, 7};
    info.radarScene = {"XRadarScene", {1, 2, 3}};
    info.headerBands = {1, 0, -1};
    return info;
}
