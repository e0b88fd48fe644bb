// How fast the pyramid of a raster file is made, against GDAL's own making of overviews: with the
// same packing, and as it packs when nobody says how.
//
// usage: bench_pyramid [SCENE_DIR]
// S4_plain8.tif of the folder, 10,000 x 10,000 pixels in strips, is linked into a folder for
// temporary files; without it the program makes up as many pixels.

#include "bench/BenchScene.h"
#include "foundation/raster/XSaveControl.h"

#include <QGuiApplication>
#include <QTemporaryDir>

#include <cpl_conv.h>

#include <filesystem>
#include <random>
#include <thread>

namespace {

constexpr int kSide = 10000;
constexpr int kBuilds = 3;

/// A raster that nothing stands beside.
void PlaceScene(const std::string& from, const std::string& to)
{
    std::error_code failed;
    if (!from.empty()) std::filesystem::create_hard_link(from, to, failed);
    if (!from.empty() && failed) std::filesystem::copy_file(from, to, failed);
    if (!from.empty() && !failed) return;
    GDALDriver* driver = GetGDALDriverManager()->GetDriverByName("GTiff");
    GDALDataset* dataset = driver->Create(to.c_str(), kSide, kSide, 1, GDT_Byte, nullptr);
    std::mt19937 random(7);
    std::vector<std::uint8_t> row(kSide);
    for (int y = 0; dataset && y < kSide; ++y) {
        for (int x = 0; x < kSide; ++x)
            row[static_cast<std::size_t>(x)] =
                static_cast<std::uint8_t>(40 + (x / 16 ^ y / 64) % 80 + random() % 8);
        if (dataset->GetRasterBand(1)->RasterIO(GF_Write, 0, y, kSide, 1, row.data(), kSide, 1,
                                                GDT_Byte, 0, 0, nullptr))
            std::abort();
    }
    if (!dataset) std::abort();
    GDALClose(dataset);
}

void BuildOurs(const std::string& path)
{
    XString made, error;
    if (!XRSFileIO::BuildLevels(path.c_str(), XSidecarPlace::Beside, {}, made, error)) {
        std::fprintf(stderr, "%s\n", static_cast<const char*>(error));
        std::abort();
    }
}

void BuildTheirs(const std::string& path)
{
    auto* dataset = GDALDataset::Open(path.c_str(), GDAL_OF_RASTER); // not for writing: external
    int factors[] = {2, 4, 8, 16, 32, 64};
    const int side = dataset ? std::max(dataset->GetRasterXSize(), dataset->GetRasterYSize()) : 0;
    int count = 1;
    while (count < 6 && (side - 1) / factors[count - 1] >= 256)
        ++count;
    if (!dataset ||
        dataset->BuildOverviews("AVERAGE", count, factors, 0, nullptr, nullptr, nullptr))
        std::abort();
    GDALClose(dataset);
}

/// @param isPackedAlike  GDAL gets the packing and the threads that we use
void BenchBuild(XRows& rows, const char* name, const std::string& path, bool isPackedAlike)
{
    const std::string threads =
        std::to_string(std::max(static_cast<int>(std::thread::hardware_concurrency()) - 1, 1));
    const std::pair<const char*, const char*> options[] = {{"COMPRESS_OVERVIEW", "DEFLATE"},
                                                           {"PREDICTOR_OVERVIEW", "2"},
                                                           {"GDAL_TIFF_OVR_BLOCKSIZE", "256"},
                                                           {"GDAL_NUM_THREADS", threads.c_str()}};
    std::vector<double> ours, theirs;
    for (int run = 0; run < kBuilds; ++run) {
        EmptyCaches();
        ours.push_back(TimeMs([&] { BuildOurs(path); }));
        std::filesystem::remove(path + ".ovr");
        for (const auto& [key, value] : options)
            CPLSetThreadLocalConfigOption(key, isPackedAlike ? value : nullptr);
        EmptyCaches();
        theirs.push_back(TimeMs([&] { BuildTheirs(path); }));
        for (const auto& [key, value] : options)
            CPLSetThreadLocalConfigOption(key, nullptr);
        std::filesystem::remove(path + ".ovr");
    }
    rows.Add(name, MedianOf(ours), MedianOf(theirs), 0.0);
}

} // namespace

int main(int argc, char** argv)
{
    QGuiApplication app(argc, argv);
    GDALAllRegister();
    const QTemporaryDir folder;
    const std::string path = folder.filePath("scene.tif").toStdString();
    PlaceScene(argc > 1 ? std::string(argv[1]) + "/S4_plain8.tif" : std::string(), path);
    XRows rows;
    BenchBuild(rows, "pyramid.build.alike", path, true);
    BenchBuild(rows, "pyramid.build.default", path, false);
    return 0;
}
