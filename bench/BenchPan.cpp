// How fast a view moves over large scenes and what that costs in memory, against GDAL's reads of
// the same windows.
//
// usage: bench_pan [SCENE_DIR]
// A folder holds S1_rgb8.tif (20,000 x 20,000, deflated tiles with overviews) and S4_plain8.tif
// (10,000 x 10,000, plain strips without); without it the program writes scenes of a quarter of the
// side. Yardstick and drawing take turns; the caches are emptied before each sequence.

#include "bench/BenchDrawKernels.h"
#include "bench/BenchScene.h"
#include "foundation/raster/XTileCache.h"

#include <QGuiApplication>
#include <QTemporaryDir>

#include <cmath>
#include <cstring>
#include <filesystem>
#include <fstream>

namespace {

constexpr int kFrames = 20;
constexpr int kStep = 100; // screen pixels
constexpr int kSequences = 5;

/// Bands 1 to 3 of a file, read by GDAL alone into memory that is there already.
class XGdalWindow
{
public:
    explicit XGdalWindow(const std::string& path)
        : m_dataset(GDALDataset::Open(path.c_str(), GDAL_OF_RASTER)), m_pixels(3 * kPixels)
    {
        if (!m_dataset) std::abort();
        for (int band = 0; band < 3; ++band)
            planes[band] = m_pixels.data() + kPixels * static_cast<std::size_t>(band);
    }
    ~XGdalWindow() { GDALClose(m_dataset); }
    XGdalWindow(const XGdalWindow&) = delete;
    XGdalWindow& operator=(const XGdalWindow&) = delete;

    /// The part of the view around a pixel that the scene covers, nearest neighbour.
    void Read(double column, double row, double perPixel)
    {
        const double width = m_dataset->GetRasterXSize(), height = m_dataset->GetRasterYSize();
        const double x0 = std::max(0.0, column - kWidth * perPixel / 2);
        const double x1 = std::min(width, column + kWidth * perPixel / 2);
        const double y0 = std::max(0.0, row - kHeight * perPixel / 2);
        const double y1 = std::min(height, row + kHeight * perPixel / 2);
        const int left = static_cast<int>(x0), top = static_cast<int>(y0);
        int list[3] = {1, 2, 3};
        if (m_dataset->RasterIO(GF_Read, left, top, static_cast<int>(std::lround(x1)) - left,
                                static_cast<int>(std::lround(y1)) - top, m_pixels.data(),
                                static_cast<int>(std::lround((x1 - x0) / perPixel)),
                                static_cast<int>(std::lround((y1 - y0) / perPixel)), GDT_Byte, 3,
                                list, 0, 0, static_cast<GSpacing>(kPixels), nullptr))
            std::abort();
    }

    const std::uint8_t* planes[3];

private:
    GDALDataset* m_dataset;
    std::vector<std::uint8_t> m_pixels;
};

/// The mean frame of sequences of moves to the right, each somewhere else, from empty caches (first)
/// and once more over the same windows (second).
void BenchPan(XRows& rows, const char* name, const std::string& path, double perPixel,
              bool isLooped, double firstLimit, double secondLimit)
{
    const auto scene = OpenScene(path, 1);
    if (!scene) return;
    XGdalWindow gdal(path);
    const tagTables tables;
    std::vector<std::uint32_t> out(kPixels);
    std::vector<double> ours[2], theirs[2];
    const double step = kStep * perPixel;
    const double room = scene->centreX * 2.0 - (kWidth * perPixel + step * kFrames);
    for (int sequence = -1; sequence < kSequences; ++sequence) {
        const double x = kWidth * perPixel / 2 + room / 4;
        const double y = scene->centreY * (0.4 + 0.2 * (sequence + 1));
        const auto addMeans = [&](std::vector<double>(&means)[2],
                                  const std::function<void(int)>& frame) {
            EmptyCaches();
            for (std::vector<double>& mean : means) {
                frame(0);
                const double time = TimeMs([&] {
                    for (int i = 1; i <= kFrames; ++i)
                        frame(i);
                });
                if (sequence >= 0) mean.push_back(time / kFrames); // the first touches the file
            }
        };
        addMeans(theirs, [&](int i) {
            gdal.Read(x + i * step, y, perPixel);
            if (isLooped) XfnPlainRgb8(gdal.planes, tables.rows, kPixels, out.data());
        });
        addMeans(ours, [&](int i) {
            Centre(*scene, perPixel, x + i * step, y);
            Draw(*scene);
        });
    }
    const double limits[] = {firstLimit, secondLimit};
    for (const int pass : {0, 1})
        rows.Add((std::string(name) + (pass ? ".second" : ".first")).c_str(), MedianOf(ours[pass]),
                 MedianOf(theirs[pass]), limits[pass]);
}

/// The whole scene in the view, from empty caches and from full ones.
void BenchWhole(XRows& rows, const std::string& path)
{
    constexpr int kPasses = 9;
    const auto scene = OpenScene(path, 1);
    if (!scene) return;
    XGdalWindow gdal(path);
    const double perPixel = scene->centreY * 2.0 / kHeight;
    for (const bool isFirst : {true, false}) {
        std::vector<double> ours, theirs;
        for (int pass = -1; pass < kPasses; ++pass) {
            const double aside = pass * perPixel;
            if (isFirst) EmptyCaches();
            const double theirTime =
                TimeMs([&] { gdal.Read(scene->centreX, scene->centreY, perPixel); });
            if (isFirst) EmptyCaches();
            Centre(*scene, perPixel, scene->centreX + aside, scene->centreY);
            const double ourTime = TimeMs([&] { Draw(*scene); });
            if (pass < 0) continue;
            theirs.push_back(theirTime);
            ours.push_back(ourTime);
        }
        rows.Add(isFirst ? "pan.strips.whole.first" : "pan.strips.whole.second", MedianOf(ours),
                 MedianOf(theirs), 1.2);
    }
}

double GetAnonymousMiB()
{
    std::ifstream status("/proc/self/status");
    std::string line;
    while (std::getline(status, line))
        if (line.starts_with("RssAnon:"))
            return std::strtoll(line.c_str() + 8, nullptr, 10) / 1024.0;
    return 0.0;
}

/// 100 gigapixels of which nothing is stored but a diagonal of tiles.
std::string WriteSparse(const std::string& folder)
{
    constexpr int kSide = 316672; // squared, just above 1e11
    constexpr int kTile = 256;
    const std::string path = folder + "/sparse.tif";
    char** options = nullptr;
    for (const char* option :
         {"TILED=YES", "SPARSE_OK=TRUE", "BIGTIFF=YES", "INTERLEAVE=PIXEL", "COMPRESS=DEFLATE"})
        options = CSLAddString(options, option);
    GDALDataset* dataset = GetGDALDriverManager()->GetDriverByName("GTiff")->Create(
        path.c_str(), kSide, kSide, 3, GDT_Byte, options);
    CSLDestroy(options);
    if (!dataset) return std::string();
    std::vector<std::uint8_t> tile(3 * kTile * kTile);
    for (std::size_t i = 0; i < tile.size(); ++i)
        tile[i] = static_cast<std::uint8_t>(i * 7 % 251 + 1);
    for (int i = 0; i < kSide / kTile; i += 4)
        if (dataset->RasterIO(GF_Write, i * kTile, i * kTile, kTile, kTile, tile.data(), kTile,
                              kTile, GDT_Byte, 3, nullptr, 0, 0, 0, nullptr))
            std::abort();
    GDALClose(dataset);
    return path;
}

/// How much anonymous memory grows while the view crosses 100 gigapixels at several scales; the
/// yardstick is what it may.
void BenchMemory(XRows& rows, const std::string& folder)
{
    constexpr std::size_t kBudget = std::size_t{256} << 20;
    constexpr double kAllowance = 150.0; // MiB beside the tiles
    const std::string path = WriteSparse(folder);
    if (path.empty()) return;
    XTileCache::Get().Clear();
    XTileCache::Get().SetBudget(kBudget);
    const double before = GetAnonymousMiB();
    const auto scene = OpenScene(path, 1);
    if (!scene) return;
    double most = before;
    for (const double perPixel : {1.0, 1.7, 4.0, 16.0}) {
        const double length = scene->centreX * 2.0;
        for (int i = 0; i < 60; ++i) {
            const double at = length * (0.02 + 0.96 * i / 59);
            for (int part = 0; part < 5; ++part) {
                Centre(*scene, perPixel, at + part * 400 * perPixel, at);
                Draw(*scene);
            }
            most = std::max(most, GetAnonymousMiB());
        }
    }
    rows.Add("pan.gigapixels.memory_growth", most - before, kBudget / 1048576.0 + kAllowance, 1.0,
             "MiB");
}

/// Scenes like the large ones, of 5,000 pixels a side.
void WriteScenes(const std::string& tiled, const std::string& strips)
{
    constexpr int kSide = 5000;
    GDALDriver* driver = GetGDALDriverManager()->GetDriverByName("GTiff");
    for (const bool isTiled : {true, false}) {
        char** options = CSLAddString(nullptr, "INTERLEAVE=PIXEL");
        if (isTiled)
            for (const char* option : {"TILED=YES", "COMPRESS=DEFLATE", "PREDICTOR=2"})
                options = CSLAddString(options, option);
        GDALDataset* dataset =
            driver->Create((isTiled ? tiled : strips).c_str(), kSide, kSide, 3, GDT_Byte, options);
        CSLDestroy(options);
        if (!dataset) std::abort();
        std::vector<std::uint8_t> row(3 * kSide);
        std::uint32_t noise = 1;
        for (int y = 0; y < kSide; ++y) {
            for (int x = 0; x < 3 * kSide; ++x) {
                noise = noise * 1664525u + 1013904223u;
                row[static_cast<std::size_t>(x)] = static_cast<std::uint8_t>(
                    100 + (x / 96 * 13 + y / 32 * 29) % 64 + (noise >> 28));
            }
            if (dataset->RasterIO(GF_Write, 0, y, kSide, 1, row.data(), kSide, 1, GDT_Byte, 3,
                                  nullptr, 3, 0, 1, nullptr))
                std::abort();
        }
        int levels[] = {2, 4, 8, 16};
        if (isTiled && dataset->BuildOverviews("AVERAGE", 4, levels, 0, nullptr, nullptr, nullptr))
            std::abort();
        GDALClose(dataset);
    }
}

} // namespace

int main(int argc, char** argv)
{
    QGuiApplication app(argc, argv);
    GDALAllRegister();
    namespace fs = std::filesystem;
    const QTemporaryDir own;
    const std::string folder = own.path().toStdString();
    const bool isGiven = argc > 1 && fs::is_directory(argv[1]);
    const std::string tiled =
        isGiven ? (fs::path(argv[1]) / "S1_rgb8.tif").string() : folder + "/tiled.tif";
    const std::string strips =
        isGiven ? (fs::path(argv[1]) / "S4_plain8.tif").string() : folder + "/strips.tif";
    if (!isGiven) WriteScenes(tiled, strips);
    XRows rows;
    BenchMemory(rows, folder); // first, before anything else has grown
    if (fs::exists(tiled)) {
        BenchPan(rows, "pan.rgb8.1to1", tiled, 1.0, true, 1.0, 0.0);
        BenchPan(rows, "pan.rgb8.1to1.7", tiled, 1.7, false, 0.0, 1.0 / 3.0);
    }
    if (fs::exists(strips)) BenchWhole(rows, strips);
    return 0;
}
