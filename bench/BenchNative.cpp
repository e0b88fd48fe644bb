// How fast a raster of the native format is drawn from a warm page cache and written, against tiles
// in memory and a plain copy to a file.
//
// usage: bench_native [SCENE_DIR]
// The middle of S1_rgb8.tif of the folder, 8000 x 8000 pixels, is written as .xdm into a folder for
// temporary files; without it the program makes up as many pixels.

#include "bench/BenchScene.h"
#include "foundation/raster/XDMBandMemory.h"
#include "foundation/raster/XDMFileSaver.h"
#include "foundation/raster/XRasterTypes.h"
#include "foundation/raster/XTileCache.h"

#include <QGuiApplication>
#include <QTemporaryDir>

#include <fcntl.h>
#include <unistd.h>

#include <filesystem>
#include <random>

namespace {

constexpr int kSide = 8000;
constexpr int kWriteRuns = 3;

/// Three bands of bytes in memory.
void FillScene(XRSFile& file, const std::string& path)
{
    GDALDataset* dataset =
        std::filesystem::exists(path) ? GDALDataset::Open(path.c_str(), GDAL_OF_RASTER) : nullptr;
    std::mt19937 random(7);
    for (int band = 1; band <= 3; ++band) {
        auto made = std::make_unique<XDMBandMemory>();
        if (!made->Create(kXUInt8, kSide, kSide)) std::abort();
        auto* pixels = static_cast<std::uint8_t*>(made->GetData());
        if (dataset) {
            const int left = (dataset->GetRasterXSize() - kSide) / 2;
            const int top = (dataset->GetRasterYSize() - kSide) / 2;
            if (dataset->GetRasterBand(band)->RasterIO(GF_Read, left, top, kSide, kSide, pixels,
                                                       kSide, kSide, GDT_Byte, 0, 0, nullptr))
                std::abort();
        } else {
            for (int y = 0; y < kSide; ++y)
                for (int x = 0; x < kSide; ++x)
                    *pixels++ = static_cast<std::uint8_t>(40 * band + (x / 16 ^ y / 64) % 80 +
                                                          random() % 8);
        }
        made->Changed();
        file.AddBand(made.release());
    }
    if (dataset) GDALClose(dataset);
}

/// The pixels of the bands one after the other into a new file, down to the disk.
void CopyToFile(XRSFile& file, const std::string& path)
{
    const int out = open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
    for (int band = 0; band < 3; ++band) {
        const auto* pixels =
            static_cast<const char*>(static_cast<XDMBandMemory*>(file.GetBandAt(band))->GetData());
        constexpr std::size_t kBytes = std::size_t{kSide} * kSide;
        for (std::size_t done = 0; done < kBytes;) {
            const ssize_t put =
                write(out, pixels + done, std::min(kBytes - done, std::size_t{1} << 20));
            if (put <= 0) std::abort();
            done += static_cast<std::size_t>(put);
        }
    }
    if (fsync(out) != 0 || close(out) != 0) std::abort();
}

void BenchWrite(XRows& rows, const char* name, XRSFile& file, const std::string& path,
                XDMCompression compression)
{
    const std::string copy = path + ".copy";
    std::vector<double> ours, theirs;
    for (int run = 0; run < kWriteRuns; ++run) {
        theirs.push_back(TimeMs([&] { CopyToFile(file, copy); }));
        std::filesystem::remove(copy);
        XTileCache::Get().Clear();
        ours.push_back(TimeMs([&] {
            XString error;
            if (!XDMFileSaver::Save(file, path.c_str(), compression, {}, error)) std::abort();
        }));
    }
    rows.Add(name, MedianOf(ours), MedianOf(theirs), 0.0);
}

/// A frame whose tiles are not in the cache, against the same view from tiles in memory.
void BenchFrames(XRows& rows, const std::string& name, const std::string& path, double limit)
{
    const auto scene = OpenScene(path, 1);
    if (!scene) std::abort();
    const XDMBand& band = *scene->file.GetBandAt(0);
    for (int level = 0; level < band.GetNumOfLevels(); ++level) {
        const double perPixel = 1 << level;
        // the 16 pixels that the view moves by stay inside
        if ((kWidth + 32) * perPixel > band.GetXSize()) break;
        std::vector<double> ours, theirs;
        for (int run = 0; run < kRuns; ++run) {
            for (int corner : {0, 15, 240, 255}) { // all tiles that any run touches
                Place(*scene, perPixel, corner);
                Draw(*scene);
            }
            Place(*scene, perPixel, 2 * run);
            theirs.push_back(TimeMs([&] { Draw(*scene); }));
            XTileCache::Get().Clear();
            Place(*scene, perPixel, 2 * run + 1);
            ours.push_back(TimeMs([&] { Draw(*scene); }));
        }
        rows.Add((name + ".level" + std::to_string(level)).c_str(), MedianOf(ours),
                 MedianOf(theirs), limit);
    }
}

/// The first frame of a file just opened: checksums of its tiles are verified.
void BenchFirstFrame(XRows& rows, const char* name, const std::string& path)
{
    std::vector<double> ours, theirs;
    for (int run = 0; run < kRuns; ++run) {
        const auto scene = OpenScene(path, 1);
        if (!scene) std::abort();
        XTileCache::Get().Clear();
        Place(*scene, 1.0, 2 * run);
        ours.push_back(TimeMs([&] { Draw(*scene); }));
        for (int corner : {0, 15, 240, 255}) {
            Place(*scene, 1.0, corner);
            Draw(*scene);
        }
        Place(*scene, 1.0, 2 * run + 1);
        theirs.push_back(TimeMs([&] { Draw(*scene); }));
    }
    rows.Add(name, MedianOf(ours), MedianOf(theirs), 0.0);
}

} // namespace

int main(int argc, char** argv)
{
    QGuiApplication app(argc, argv);
    GDALAllRegister();
    const QTemporaryDir folder;
    const std::string plain = folder.filePath("plain.xdm").toStdString();
    const std::string packed = folder.filePath("packed.xdm").toStdString();
    XRows rows;
    {
        XRSFile file;
        FillScene(file, argc > 1 ? std::string(argv[1]) + "/S1_rgb8.tif" : std::string());
        BenchWrite(rows, "native.write.plain", file, plain, XDMCompression::None);
        BenchWrite(rows, "native.write.zstd", file, packed, XDMCompression::PredictedZstd);
    }
    BenchFrames(rows, "native.frame.plain", plain, 1.2);
    BenchFirstFrame(rows, "native.frame.plain.first", plain);
    BenchFrames(rows, "native.frame.zstd", packed, 0.0);
    return 0;
}
