// What the library writes is what a reader sees that was written from docs/formats/xdm.md alone:
// tests/formats/xdm_reader.py prints a file as JSON, and that text is compared with the one made
// here of the records and pixels that went into the file.

#include "foundation/base/XObArray.h"
#include "foundation/raster/XDMFileModel.h"
#include "foundation/raster/XDMFileSaver.h"
#include "foundation/raster/XDMFileTile.h"
#include "foundation/raster/XROI.h"
#include "foundation/raster/XRSFile.h"
#include "foundation/raster/XRSSIG.h"
#include "tests/foundation/raster/TestXDMFileSamples.h"
#include "tests/support/XBandPlaces.h"

#include <gtest/gtest.h>

#include <QProcess>

#include <charconv>
#include <cmath>
#include <functional>
#include <limits>
#include <sstream>

namespace {

constexpr const char* kPython = TQL_PYTHON3; // empty when there is none

using TileSource = std::function<XDMFileBytes(int band, int level, int tx, int ty)>;

/// JSON as the script prints it.
struct XScriptText
{
    static std::string Json(std::integral auto value) { return std::to_string(value); }
    static std::string Json(XDMFileStatisticsKind kind) { return Json(static_cast<int>(kind)); }
    /// The shortest digits that give the same real, a point or an exponent always among them.
    static std::string Json(double value)
    {
        if (std::isnan(value)) return "\"nan\"";
        if (std::isinf(value)) return value < 0 ? "\"-inf\"" : "\"inf\"";
        const double size = std::fabs(value);
        const bool isFixed = size == 0.0 || (size >= 1e-4 && size < 1e16);
        char text[64];
        const auto format = isFixed ? std::chars_format::fixed : std::chars_format::scientific;
        std::string out(text, std::to_chars(text, text + sizeof text, value, format).ptr);
        return out.find_first_of(".e") == std::string::npos ? out + ".0" : out;
    }
    static std::string Json(const char* text)
    {
        std::string out = "\"";
        for (; *text; ++text) {
            if (*text == '"' || *text == '\\') out += '\\';
            out += *text == '\n' ? "\\n" : std::string(1, *text);
        }
        return out + '"';
    }
    static std::string Json(const XString& text) { return Json(text.GetString()); }
    static std::string Json(const std::string& made) { return made; } ///< is JSON already
    static std::string Json(const XDMFileBytes& bytes)
    {
        std::string out;
        for (const unsigned char byte : bytes)
            out += XfnFormat("%02x", int(byte)).GetString();
        return '"' + out + '"';
    }
    template <class T>
    static std::string Json(const std::vector<T>& list)
    {
        std::string out;
        for (const T& value : list)
            out += (out.empty() ? "" : ", ") + Json(value);
        return '[' + out + ']';
    }
    template <std::size_t N>
    static std::string Json(const std::array<double, N>& list)
    {
        return Json(std::vector<double>(list.begin(), list.end()));
    }
    /// @param keys  as many as values, with a blank between
    template <class... T>
    static std::string Object(const char* keys, const T&... values)
    {
        std::istringstream names(keys);
        std::string out, name;
        const auto add = [&](const std::string& value) {
            names >> name;
            out += (out.empty() ? "\"" : ", \"") + name + "\": " + value;
        };
        (add(Json(values)), ...);
        return '{' + out + '}';
    }

    static std::string Json(const tagXDMFileWarp& w)
    {
        return Object("terms centreX centreY scaleX scaleY x y", w.terms, w.centerX, w.centerY,
                      w.scaleX, w.scaleY, w.xCoeff, w.yCoeff);
    }
    static std::string Json(const tagXDMFileReference& r)
    {
        return Object("coordinates wkt ulX ulY xSize ySize normalised sensorModel worldToPixel "
                      "pixelToWorld georeferenced",
                      r.coordType, r.wkt, r.ulX, r.ulY, r.xPixelSize, r.yPixelSize,
                      r.normalizedWorld, r.useSensorModel, r.worldToPixel, r.pixelToWorld,
                      r.georeferenced);
    }
    static std::string Json(const tagXDMFileStatistics& s)
    {
        return Object("kind minimum maximum mean deviation pixels histogramKind low high histogram",
                      s.kind, s.min, s.max, s.mean, s.stdDev, s.pixelCount, s.histogramKind,
                      s.histogramLow, s.histogramHigh, s.histogram);
    }
    static std::string Json(const tagXDMFileClass& c)
    {
        return Object("red green blue alpha pixels name", c.red, c.green, c.blue, c.alpha,
                      c.pixelCount, c.name);
    }
    static std::string Json(const tagXDMFileAcquisition& a)
    {
        return Object("date sensorNumber sensorName centreX centreY cellSize gain bias sunAzimuth "
                      "sunElevation incidenceAngle focalLength altitude orientation wavelength "
                      "bandwidth originCorner offset scale referencePoint",
                      a.date, a.sensor, a.sensorName, a.centerX, a.centerY, a.cellSize, a.gain,
                      a.bias, a.sunAzimuth, a.sunElevation, a.incidenceAngle, a.focalLength,
                      a.altitude, a.sceneOrient, a.waveLength, a.bandWidth, a.originCorner,
                      a.offset, a.scale, a.referencePoint);
    }
    static std::string Json(const tagXDMFileObject& o)
    {
        return Object("className data", o.className, o.bytes);
    }
    static std::string Json(const tagXDMFileRadar& r)
    {
        return Object("beam parameters subset orbit scanner wavelength pulseRepetitionFrequency "
                      "samplingFrequency carrierFrequency chirpBandwidth chirpDuration "
                      "apertureTime antennaLength squintAngle chirp",
                      r.beam, r.sarParam, r.sarSubset, r.orbitInterpolater, r.scanSensorParam,
                      r.lambda, r.prf, r.samplingFrequency, r.carrierFrequency, r.chirpBandWidth,
                      r.chirpDuration, r.apertureTime, r.antennaLength, r.squintAngle,
                      r.chirpDirection);
    }
    static std::string Json(const tagXDMFileGCP& p)
    {
        return Object("name pixelX pixelY x y z used", p.name, p.imageX, p.imageY, p.refX, p.refY,
                      p.refZ, p.use);
    }
    static std::string Json(const tagXDMFileGCPSet& set)
    {
        return Object("name description coordinates wkt points", set.name, set.description,
                      set.coordType, set.wkt, set.points);
    }
    static std::string Json(const tagXDMFileSample& s)
    {
        return Object("pixels minimum maximum mean squares low high histogram", s.pixelCount, s.min,
                      s.max, s.mean, s.squares, s.histogramLow, s.histogramHigh, s.histogram);
    }
    static std::string Json(const tagXDMFileRegion& r)
    {
        return Object("name comment type color nullValue vertices computed pixels bands "
                      "commonPixels means coMoments",
                      r.name, r.comment, r.type, r.color, r.nullValue, r.vertices, r.calculated,
                      r.pixelCount, r.bands, r.jointCount, r.jointMeans, r.coMoments);
    }
    static std::string Json(const tagXDMFileSignature& s)
    {
        return Object("name comment color members ownRegions", s.name, s.comment, s.color,
                      s.regions, s.own);
    }
};

/// As zlib counts it.
std::uint32_t GetCrc32(const XDMFileBytes& bytes)
{
    std::uint32_t crc = ~0u;
    for (const unsigned char byte : bytes) {
        crc ^= byte;
        for (int bit = 0; bit < 8; ++bit)
            crc = (crc >> 1) ^ (crc & 1 ? 0xEDB88320u : 0u);
    }
    return ~crc;
}

/// A level as the script must find it.
/// @param features  gets the bits that its tiles need
std::string DescribeLevel(const tagXDMFileInfo& info, int b, int l, const TileSource& source,
                          std::uint64_t& features)
{
    const tagXDMFileBand& band = info.bands[static_cast<std::size_t>(b)];
    const tagXDMFileLevel& level = band.levels[static_cast<std::size_t>(l)];
    const auto fill = XfnGetXDMFileFill(band.dataType, band.nullValue);
    const std::size_t sample = static_cast<std::size_t>(XfnGetXDMFileSampleSize(band.dataType));
    const std::size_t rowBytes = sample * static_cast<std::size_t>(level.width);
    XDMFileBytes pixels(rowBytes * static_cast<std::size_t>(level.height));
    std::vector<int> tiles(4); // empty, and by encoding
    for (int ty = 0; ty < level.GetTileRows(); ++ty) {
        for (int tx = 0; tx < level.GetTileColumns(); ++tx) {
            const XDMFileBytes tile = source(b, l, tx, ty);
            tagXDMFileTileShape shape;
            shape.dataType = band.dataType;
            XfnGetXDMFileTileSize(level, tx, ty, shape.width, shape.height);
            const std::size_t piece = sample * static_cast<std::size_t>(shape.width);
            for (int y = 0; y < shape.height; ++y)
                std::memcpy(&pixels[rowBytes * static_cast<std::size_t>(ty * level.tileHeight + y) +
                                    sample * static_cast<std::size_t>(tx * level.tileWidth)],
                            &tile[piece * static_cast<std::size_t>(y)], piece);
            XDMFileBytes packed;
            const bool isEmpty =
                XfnIsXDMFileTileEmpty(tile.data(), tile.size(), fill.data(), sample);
            const int encoding = isEmpty ? 0
                                         : static_cast<int>(XfnEncodeXDMFileTile(
                                               tile.data(), shape, band.compression, packed));
            ++tiles[static_cast<std::size_t>(isEmpty ? 0 : 1 + encoding)];
            features |= encoding == 2 ? 3u : static_cast<unsigned>(encoding);
        }
    }
    return XScriptText::Object("width height tileWidth tileHeight tiles crc32", level.width,
                               level.height, level.tileWidth, level.tileHeight, tiles,
                               GetCrc32(pixels));
}

/// Where a record stands: a block of the band, one for all bands, or nowhere.
template <class T>
std::string DescribeSource(const tagXDMFileInfo& info, std::size_t b, T tagXDMFileBand::*record)
{
    const auto& own = info.bands[b].*record;
    if (own == T()) return XScriptText::Json("default");
    constexpr bool kMayBeShared =
        std::is_same_v<T, tagXDMFileReference> || std::is_same_v<T, tagXDMFileAcquisition>;
    const bool isShared =
        kMayBeShared && info.bands.size() > 1 &&
        std::all_of(info.bands.begin(), info.bands.end(),
                    [&](const tagXDMFileBand& other) { return other.*record == own; });
    return XScriptText::Json(isShared ? "file" : "band");
}

std::string DescribeBand(const tagXDMFileInfo& info, std::size_t b, const TileSource& source,
                         std::uint64_t& features)
{
    static const char* const kNames[] = {"uint8",  "int8",  "uint16",  "int16",
                                         "uint32", "int32", "float32", "float64"};
    const tagXDMFileBand& band = info.bands[b];
    const auto fill = XfnGetXDMFileFill(band.dataType, band.nullValue);
    const bool isComplex = band.dataType > 8;
    std::vector<std::string> levels;
    for (std::size_t l = 0; l < band.levels.size(); ++l)
        levels.push_back(
            DescribeLevel(info, static_cast<int>(b), static_cast<int>(l), source, features));
    const bool hasClasses = !band.classes.empty() || band.isColorTable;
    const std::string sources = XScriptText::Object(
        "spatialReference statistics classTable acquisition radar",
        DescribeSource(info, b, &tagXDMFileBand::reference),
        DescribeSource(info, b, &tagXDMFileBand::statistics), hasClasses ? "band" : "default",
        DescribeSource(info, b, &tagXDMFileBand::acquisition),
        DescribeSource(info, b, &tagXDMFileBand::radar));
    return XScriptText::Object(
        "name description number dataType bandType color nullValue compression fill typeName "
        "levels sources spatialReference statistics classTable acquisition radar",
        band.name, band.description, band.id, band.dataType, band.bandType,
        band.colorInterpretation, band.nullValue, band.compression,
        XDMFileBytes(fill.begin(), fill.begin() + XfnGetXDMFileSampleSize(band.dataType)),
        XString(isComplex ? "complex_" : "") + kNames[(band.dataType - 1) % 8], levels, sources,
        band.reference, band.statistics,
        XScriptText::Object("classes showColors", band.classes, band.isColorTable),
        band.acquisition, band.radar);
}

std::string DescribeFile(const tagXDMFileInfo& info, std::uintmax_t bytes, const TileSource& source)
{
    std::uint64_t features = 0;
    std::vector<std::string> bands;
    for (std::size_t b = 0; b < info.bands.size(); ++b)
        bands.push_back(DescribeBand(info, b, source, features));
    return XScriptText::Object(
        "version fileBytes requiredFeatures optionalFeatures file bands controlPointSets regions "
        "signatures matrices radarScene",
        std::vector<int>{1, 0}, bytes, features, 0,
        XScriptText::Object("name description dataVersion threshold validation rgb", info.name,
                            info.description, info.version, info.threshold1,
                            info.cryptoValidationInfo, info.headerBands),
        bands, info.gcpSets, info.regions, info.signatures,
        XScriptText::Object("correlation covariance", info.correlation, info.covariance),
        XScriptText::Object("object", info.radarScene));
}

/// Runs the script on the file; what it prints must be `expected`.
void ExpectScriptSees(const std::string& path, const std::string& expected)
{
    QProcess script;
    script.start(kPython, {TQL_SOURCE_DIR "/tests/formats/xdm_reader.py", path.c_str()});
    ASSERT_TRUE(script.waitForFinished(120000)) << qPrintable(script.errorString());
    EXPECT_EQ(script.exitCode(), 0) << script.readAllStandardError().constData();
    const std::string seen = script.readAllStandardOutput().toStdString();
    if (seen == expected + "\n") return;
    const std::size_t at = static_cast<std::size_t>(
        std::mismatch(seen.begin(), seen.end(), expected.begin(), expected.end()).first -
        seen.begin());
    const std::size_t begin = at < 80 ? 0 : at - 80;
    ADD_FAILURE() << "seen:     " << seen.substr(begin, 160)
                  << "\nexpected: " << expected.substr(begin, 160);
}

// ---- what goes into the files ----

/// All types, each with a null value that an empty tile repeats.
tagXDMFileInfo MakeTypes(int compression)
{
    tagXDMFileInfo info;
    for (int type = 1; type <= 16; ++type) {
        info.bands.push_back(MakeBand(type, compression));
        if (type % 2) info.bands.back().nullValue = type;
    }
    return info;
}

tagXDMFileInfo MakeOddReals()
{
    tagXDMFileInfo info;
    for (const double odd : {-0.0, std::numeric_limits<double>::quiet_NaN(), kXNoData,
                             -std::numeric_limits<double>::infinity(), 5e-324, 0.1, 1e16, 1e-5}) {
        info.bands.push_back(MakeBand(8));
        info.bands.back().nullValue = odd;
        info.bands.back().statistics.mean = odd;
    }
    return info;
}

/// References that all bands share, and only some.
tagXDMFileInfo MakeShared(bool isOneApart)
{
    tagXDMFileInfo info;
    for (int band = 0; band < 3; ++band) {
        info.bands.push_back(MakeBand(1));
        info.bands.back().reference.wkt = "LOCAL_CS[\"shared\"]";
        if (band != 1 || !isOneApart) info.bands.back().acquisition.gain = 2.5;
    }
    return info;
}

/// A file as a host builds it, regions over its bands counted.
void FillModel(XRSFile& file)
{
    XObArray bands;
    for (const int type : {kXUInt8, kXFloat, kXInt16}) {
        auto band = XfnMakeBand(type, 301, 270, XfnPattern);
        if (type == kXFloat) XfnPlaceOnPoints(*band);
        if (type == kXInt16) { // nothing but empty tiles
            band = XfnMakeBand(type, 301, 270, [](int, int) { return -9999; });
            band->SetNullValue(-9999);
        }
        bands.Add(band.get());
        file.AddBand(band.release());
    }
    auto region = std::make_unique<XROI>();
    for (const double x : {3.0, 90.0, 40.0})
        region->Add(x, -x * x / 60.0 - 2.0);
    region->SetColor(0xFF102030u);
    ASSERT_TRUE(region->CalcStatistics(&bands, nullptr));
    auto signature = std::make_unique<XRSSIG>();
    signature->Add(region.get());
    file.AddROISet(region.release());
    file.AddSIGSet(signature.release());
    auto points = std::make_unique<tagGCPSets>(); // on the ground of no reference
    points->points = {{"p", 1.5, 2.5, 3.5, 4.5, 5.5, 0}};
    file.AddGCPSet(points.release());
}

} // namespace

// The library reads it too, whether there is a script or not.
TEST(XDMReaderScript, SeesWhatTheLibraryWrites)
{
    const struct
    {
        const char* name;
        tagXDMFileInfo info;
        bool hasNaN = false; // which no record equals
    } cases[] = {
        {"all types, plain", MakeTypes(0)},
        {"all types, packed", MakeTypes(1)},
        {"all types, predicted", MakeTypes(2)},
        {"something in every field", MakeFullInfo()},
        {"nothing in any field", MakeInfo({MakeBand(1)})},
        {"reals that are easily lost", MakeOddReals(), true},
        {"a reference of all bands", MakeShared(false)},
        {"attributes of some bands", MakeShared(true)},
    };
    const XDMFileFolder folder;
    const std::string path = folder / "case.xdm";
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        WriteSample(path, c.info);
        XDMFileReader reader;
        XString message;
        ASSERT_TRUE(reader.Open(path.c_str(), message)) << message.GetString();
        EXPECT_TRUE(reader.GetInfo() == c.info || c.hasNaN);
        EXPECT_TRUE(HasSampleTiles(reader, message)) << message.GetString();
        EXPECT_TRUE(reader.CheckAll(nullptr, message)) << message.GetString();
        if (!*kPython) continue;
        ExpectScriptSees(path, DescribeFile(c.info, std::filesystem::file_size(path),
                                            [&](int b, int l, int tx, int ty) {
                                                return MakeTile(GetTileBytes(c.info, b, l, tx, ty),
                                                                b, l, tx, ty);
                                            }));
    }
}

TEST(XDMReaderScript, SeesWhatAHostSaves)
{
    if (!*kPython) GTEST_SKIP() << "no python3 was found when this was configured";
    XRSFile file;
    FillModel(file);
    const XDMFileFolder folder;
    const std::string path = folder / "model.xdm";
    XString message;
    ASSERT_TRUE(XDMFileSaver::Save(file, path.c_str(), XDMCompression::PredictedZstd, {}, message));
    XDMFileReader reader;
    ASSERT_TRUE(reader.Open(path.c_str(), message)) << message.GetString();
    tagXDMFileInfo info;
    ASSERT_TRUE(XfnDescribeToXDM(file, info, message));
    for (int b = 0; b < file.GetNumOfBands(); ++b) {
        tagXDMFileBand& band = info.bands.emplace_back();
        ASSERT_TRUE(XfnDescribeToXDM(*file.GetBandAt(b), band, message));
        band.compression = 2;
        band.levels = reader.GetInfo().bands[static_cast<std::size_t>(b)].levels;
    }
    const auto getTile = [&](int b, int l, int tx, int ty) {
        XDMFileBytes tile(reader.GetTileBytes(b, l, tx, ty));
        EXPECT_TRUE(reader.ReadTile(b, l, tx, ty, tile.data(), tile.size(), message));
        if (l > 0) return tile;
        // full resolution comes from the model itself
        const tagXDMFileLevel& level = info.bands[static_cast<std::size_t>(b)].levels[0];
        const auto* pixels = static_cast<const unsigned char*>(
            static_cast<XDMBandMemory*>(file.GetBandAt(b))->GetData());
        int width, height;
        XfnGetXDMFileTileSize(level, tx, ty, width, height);
        const int size = file.GetBandAt(b)->GetDataSize();
        for (int y = 0; y < height; ++y)
            std::memcpy(
                &tile[static_cast<std::size_t>(y * width * size)],
                pixels + ((ty * level.tileHeight + y) * level.width + tx * level.tileWidth) * size,
                static_cast<std::size_t>(width * size));
        return tile;
    };
    ExpectScriptSees(path, DescribeFile(info, std::filesystem::file_size(path), getTile));
}
