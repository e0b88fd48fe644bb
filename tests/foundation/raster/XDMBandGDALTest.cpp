#include "foundation/raster/XDMBandGDAL.h"
#include "foundation/raster/XDMComposite.h"
#include "foundation/raster/XRasterTypes.h"
#include "foundation/surface/XBackBuffer.h"
#include "tests/support/XFileBytes.h"
#include "tests/support/XGdalSample.h"
#include "tests/support/XRasterFiles.h"

#include <QDir>
#include <QTemporaryDir>

#include <atomic>
#include <cmath>
#include <complex>
#include <random>
#include <sstream>
#include <thread>

namespace {

/// Sample files by the type of their bands.
const std::pair<int, const char*> kSamples[] = {
    {kXUInt8, "gtiff/byte.tif gtiff/contig_tiled.tif gtiff/separate_tiled.tif "
              "gtiff/nodata_byte.tif gtiff/oddsize1bit.tif gtiff/rgba.tif "
              "hfa/i8u_c_i.img hfa/small_ov.img bmp-jpg/1bit.bmp "
              "bmp-jpg/8bit_pal.bmp bmp-jpg/byte_rle8.bmp "
              "bmp-jpg/rgbsmall_rgb.jpg envi/envi_rgbsmall_bil.img "
              "envi/envi_rgbsmall_bip.img envi/envi_rgbsmall_bsq.img lc.tif"},
    {kXInt8, "gtiff/int8.tif"},
    {kXUInt16, "gtiff/uint16.tif envi/uint16_envi_bigendian.dat"},
    {kXInt16, "gtiff/int16.tif gtiff/int16_big_endian.tif dted/n43.dt0"},
    {kXUInt32, "gtiff/uint32.tif hfa/uint32.img"},
    {kXInt32, "gtiff/int32.tif"},
    {kXDouble, "gtiff/int64.tif gtiff/float64.tif hfa/float64.img"},
    {kXFloat, "gtiff/float32.tif gtiff/nan32_nodata.tif"},
    {kXInt16Complex, "gtiff/cint16.tif"},
    {kXInt32Complex, "gtiff/cint32.tif"},
    {kXFloatComplex, "gtiff/cfloat32.tif"},
    {kXDoubleComplex, "gtiff/cfloat64.tif"},
};

double ValueAt(int x, int y, int band)
{
    return (x * 3 + y * 5 + band * 77) % 251;
}

/// Every pixel of a level, in rows; empty after a failure.
std::vector<double> ReadLevel(XDMBand* band, int level)
{
    tagXArr2* block = nullptr;
    std::vector<double> values;
    if (band->ReadSubset(block, level, 0, band->GetXSize() - 1, 0, band->GetYSize() - 1, nullptr))
        for (int y = 0; y < block->height; ++y)
            for (int x = 0; x < block->width; ++x)
                values.push_back(block->GetValue(x, y));
    delete block;
    return values;
}

} // namespace

TEST(XDMBandGDAL, ReadsEveryKindOfSampleAsGdalDoes)
{
    std::vector<std::pair<int, std::string>> rows;
    for (const auto& [type, paths] : kSamples) {
        std::istringstream names(paths);
        for (std::string path; names >> path;)
            rows.emplace_back(type, path);
    }
    for (const auto& [type, name] : rows) {
        SCOPED_TRACE(name);
        const char* const path = name.c_str();
        const auto file = OpenFile(SamplePath(path));
        ASSERT_TRUE(file);
        auto* reference = static_cast<GDALDataset*>(
            GDALOpenEx(SamplePath(path), GDAL_OF_RASTER, nullptr, nullptr, nullptr));
        ASSERT_TRUE(reference);
        ASSERT_EQ(file->GetNumOfBands(), reference->GetRasterCount());
        for (int i = 0; i < file->GetNumOfBands(); ++i) {
            XDMBand* band = file->GetBandAt(i);
            EXPECT_EQ(band->GetDataType(), type);
            const int width = band->GetXSize();
            const int height = band->GetYSize();
            std::vector<std::complex<double>> expected(static_cast<std::size_t>(width) * height);
            ASSERT_EQ(reference->GetRasterBand(i + 1)->RasterIO(GF_Read, 0, 0, width, height,
                                                                expected.data(), width, height,
                                                                GDT_CFloat64, 0, 0, nullptr),
                      CE_None);
            tagXArr2* block = nullptr;
            XString message;
            ASSERT_TRUE(band->ReadSubset(block, 0, 0, width - 1, 0, height - 1, nullptr, &message))
                << message.GetString();
            long long count = 0;
            double min = kXNotSet, max = kXNoData, sum = 0.0;
            for (int n = 0; n < width * height; ++n) {
                double re, im;
                ASSERT_TRUE(XfnReadComplexSample(block->At(n % width, n / width), type, re, im));
                double wanted = expected[n].real();
                if (type == kXInt8 && wanted > 127) wanted -= 256; // it reads them unsigned
                if (std::isnan(wanted)) {
                    ASSERT_TRUE(std::isnan(re));
                    continue;
                }
                ASSERT_EQ(re, wanted) << n;
                ASSERT_EQ(im, expected[n].imag()) << n;
                const double v = XfnIsComplexType(type) ? std::hypot(re, im) : re;
                if (v == band->GetNullValue()) continue;
                min = std::min(min, v);
                max = std::max(max, v);
                sum += v;
                ++count;
            }
            delete block;
            band->DropStatistics();
            ASSERT_TRUE(band->CalcExactStatistics(nullptr, nullptr, message))
                << message.GetString();
            EXPECT_EQ(band->GetStatistics()->count, count);
            EXPECT_EQ(band->GetBandMin(), count ? min : kXNotSet);
            EXPECT_EQ(band->GetBandMax(), count ? max : kXNotSet);
            EXPECT_NEAR(count ? band->GetBandMean() : 0.0,
                        sum / static_cast<double>(std::max(count, 1ll)), 1e-9 * std::fabs(sum));
        }
        GDALClose(reference);
    }
}

TEST(XDMBandGDAL, NumbersOfKnownScenes)
{
    const double means[] = {79.14771913, 67.57464509, 64.35885810,
                            59.23541287, 83.18266476, 59.97520513};
    const auto scene = OpenFile(XfnFormat("%s/L7_ETMs.tif", TQL_SAMPLE_DATA));
    ASSERT_TRUE(scene);
    for (int i = 0; i < 6; ++i) {
        EXPECT_NEAR(scene->GetBandAt(i)->GetBandMean(), means[i], 1e-8);
        EXPECT_FALSE(scene->GetBandAt(i)->HasEstimatedStatistics());
    }
    EXPECT_EQ(scene->GetBandAt(0)->GetBandType(), kXBandMultispectral);
    EXPECT_EQ(scene->GetSR()->GetCoordType(), 3);
    const auto cell = OpenFile(SamplePath("dted/n43.dt0"));
    ASSERT_TRUE(cell);
    EXPECT_EQ(cell->GetBandAt(0)->GetBandMin(), 75);
    EXPECT_EQ(cell->GetBandAt(0)->GetBandMax(), 460);
    EXPECT_NEAR(cell->GetBandAt(0)->GetBandMean(), 161.8618946793, 1e-9);
    EXPECT_EQ(cell->GetBandAt(0)->GetBandType(), kXBandElevation);
    EXPECT_STREQ(cell->GetBandAt(0)->GetRuntimeClass()->m_lpszClassName, "XDMBandDTED");
}

TEST(XDMBandGDAL, LevelsComeFromFittingOverviewsElseFromPicking)
{
    QTemporaryDir dir;
    const struct
    {
        const char* name;
        const char* options;
        std::vector<int> overviews;
        GDALDataType type;
        int bands;
        std::array<int, 3> isVirtual;
        int oddFactor = 0; // the overview that fits no level; the last ones are picked from it
    } cases[] = {
        {"tiles, none", "TILED=YES BLOCKXSIZE=64 BLOCKYSIZE=32", {}, GDT_UInt16, 1, {0, 1, 1}},
        {"interleaved tiles", "TILED=YES COMPRESS=DEFLATE", {}, GDT_Byte, 3, {0, 1, 1}},
        {"lines", "", {}, GDT_Float64, 1, {0, 1, 1}},
        {"packed strips of 37 lines",
         "BLOCKYSIZE=37 COMPRESS=DEFLATE INTERLEAVE=PIXEL",
         {},
         GDT_Int16,
         3,
         {0, 1, 1}},
        {"one strip for all", "BLOCKYSIZE=600", {}, GDT_CFloat64, 2, {0, 1, 1}},
        {"planar strips", "INTERLEAVE=BAND BLOCKYSIZE=5", {}, GDT_UInt32, 3, {0, 1, 1}},
        {"overviews for all", "TILED=YES", {2, 4}, GDT_Byte, 3, {0, 0, 0}},
        {"a level between is picked from the finer", "TILED=YES", {4}, GDT_Byte, 1, {0, 1, 0}},
        {"a factor of three fits none", "TILED=YES", {3}, GDT_Byte, 1, {0, 1, 1}, 3},
    };
    int number = 0;
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        const int width = 901, height = 601;
        const XString path = XfnWriteGdalSample(dir.filePath(QString::number(++number) + ".tif"),
                                                {.type = c.type,
                                                 .width = width,
                                                 .height = height,
                                                 .bands = c.bands,
                                                 .options = c.options,
                                                 .overviews = c.overviews,
                                                 .value = ValueAt});
        ASSERT_FALSE(path.IsEmpty());
        const auto file = OpenFile(path);
        ASSERT_TRUE(file);
        ASSERT_EQ(file->GetBandAt(0)->GetNumOfLevels(), 3);
        int stored = 1;
        for (int level = 2; level >= 0; --level) { // the coarse ones first, as a view asks
            int levelWidth, levelHeight;
            file->GetBandAt(0)->GetLevelSize(level, levelWidth, levelHeight);
            EXPECT_EQ(file->GetBandAt(0)->IsVirtualLevel(level), c.isVirtual[level]);
            stored &= !c.isVirtual[level];
            for (int i = 0; i < c.bands; ++i) {
                const std::vector<double> got = ReadLevel(file->GetBandAt(i), level);
                ASSERT_EQ(got.size(), static_cast<std::size_t>(levelWidth) * levelHeight);
                if (!c.isVirtual[level] && level > 0) {
                    auto* ds = static_cast<GDALDataset*>(GDALOpen(path, GA_ReadOnly));
                    GDALRasterBand* overview = ds->GetRasterBand(i + 1)->GetOverview(
                        level == 2 ? static_cast<int>(c.overviews.size()) - 1 : 0);
                    std::vector<double> expected(got.size());
                    ASSERT_EQ(overview->RasterIO(GF_Read, 0, 0, levelWidth, levelHeight,
                                                 expected.data(), levelWidth, levelHeight,
                                                 GDT_Float64, 0, 0, nullptr),
                              CE_None);
                    EXPECT_EQ(got, expected);
                    GDALClose(ds);
                } else if (!(c.oddFactor && level == 2)) {
                    for (std::size_t n = 0; n < got.size(); ++n) {
                        const int x =
                            XfnPickPixel(static_cast<int>(n) % levelWidth, levelWidth, width);
                        const int y =
                            XfnPickPixel(static_cast<int>(n) / levelWidth, levelHeight, height);
                        ASSERT_EQ(got[n], ValueAt(x, y, i)) << x << " " << y;
                    }
                } else {
                    // an overview of a third is larger than this level of a quarter
                    for (const double v : got)
                        ASSERT_LT(v, 251);
                }
            }
        }
        EXPECT_EQ(XfnIsValidXDMLevelData(file.get()), !c.overviews.empty() && c.oddFactor == 0);
    }
}

TEST(XDMBandGDAL, InterleavedBandsFillEachOther)
{
    QTemporaryDir dir;
    const auto siblings = [&](const char* options, int bands) {
        const auto file = OpenFile(XfnWriteGdalSample(dir.filePath(QString("%1.tif").arg(bands)),
                                                      500, 300, ValueAt, bands, options));
        XString message;
        EXPECT_TRUE(file->GetBandAt(1)->GetTile(0, 1, 0, nullptr, message));
        int filled = 0;
        for (int i = 0; i < bands; ++i)
            filled += file->GetBandAt(i)->FindTile(0, 1, 0) != nullptr;
        return filled;
    };
    EXPECT_EQ(siblings("TILED=YES INTERLEAVE=PIXEL", 3), 3);
    EXPECT_EQ(siblings("TILED=YES INTERLEAVE=BAND", 3), 1);
    EXPECT_EQ(siblings("TILED=YES INTERLEAVE=PIXEL", 30), 1); // nobody asked for the others
}

TEST(XDMBandGDAL, ManyThreadsReadOneFile)
{
    QTemporaryDir dir;
    XTileCache& cache = XTileCache::Get();
    const std::size_t budget = cache.GetBudget();
    for (const char* options : {"TILED=YES COMPRESS=DEFLATE BLOCKXSIZE=128 BLOCKYSIZE=128",
                                "COMPRESS=DEFLATE BLOCKYSIZE=16 INTERLEAVE=PIXEL"}) {
        SCOPED_TRACE(options);
        const int width = 1100, height = 700;
        const auto file =
            OpenFile(XfnWriteGdalSample(dir.filePath("a.tif"), width, height, ValueAt, 3, options));
        ASSERT_TRUE(file);
        cache.SetBudget(600000); // far less than the image: tiles come and go
        std::atomic<int> wrong{0};
        std::vector<std::jthread> threads;
        for (unsigned t = 0; t < 5; ++t) {
            threads.emplace_back([&, t] {
                std::mt19937 random(t);
                for (int i = 0; i < 60; ++i) {
                    const int number = static_cast<int>(random() % 3);
                    XDMBand* band = file->GetBandAt(number);
                    const int level = static_cast<int>(random() % 4) == 0 ? 1 : 0;
                    int levelWidth, levelHeight, tileWidth, tileHeight;
                    band->GetLevelSize(level, levelWidth, levelHeight);
                    band->GetTileSize(level, tileWidth, tileHeight);
                    const int tx = static_cast<int>(random() % ((levelWidth - 1) / tileWidth + 1));
                    const int ty =
                        static_cast<int>(random() % ((levelHeight - 1) / tileHeight + 1));
                    XString message;
                    const auto tile = band->GetTile(level, tx, ty, nullptr, message);
                    if (!tile) {
                        ++wrong;
                        continue;
                    }
                    for (int y = 0; y < tile->GetHeight(); ++y)
                        for (int x = 0; x < tile->GetWidth(); ++x)
                            wrong += tile->GetRow(y)[x] !=
                                     ValueAt(XfnPickPixel(tx * tileWidth + x, levelWidth, width),
                                             XfnPickPixel(ty * tileHeight + y, levelHeight, height),
                                             number);
                    if (i % 20 == 7 && band->GetBandMax() != 250.0) ++wrong;
                }
            });
        }
        threads.clear(); // joins
        cache.SetBudget(budget);
        EXPECT_EQ(wrong, 0);
    }
}

TEST(XDMBandGDAL, StoredStatisticsCountWhenExact)
{
    QTemporaryDir dir;
    const struct
    {
        const char* name;
        const char* extra; // an item beside the four, or null
        const char* min;
        int isUsed;
    } cases[] = {
        {"exact", nullptr, "10", 1},
        {"approximate", "STATISTICS_APPROXIMATE", "10", 0},
        {"not a number", nullptr, "nan", 0},
        {"beyond the type", nullptr, "-5", 0},
        {"above the mean", nullptr, "99", 0},
        {"every tenth pixel", "STATISTICS_SKIPFACTORX", "10", 0},
        {"a deviation beyond the range", "STATISTICS_STDDEV", "10", 0},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        const XString path = XfnWriteGdalSample(
            dir.filePath(QString(c.name) + ".tif"),
            {.width = 50, .height = 40, .value = ValueAt, .prepare = [&](GDALDataset& ds) {
                 GDALRasterBand* band = ds.GetRasterBand(1);
                 band->SetMetadataItem("STATISTICS_MINIMUM", c.min);
                 band->SetMetadataItem("STATISTICS_MAXIMUM", "90");
                 band->SetMetadataItem("STATISTICS_MEAN", "50");
                 band->SetMetadataItem("STATISTICS_STDDEV", "3");
                 if (c.extra) band->SetMetadataItem(c.extra, "57");
             }});
        const auto file = OpenFile(path);
        ASSERT_TRUE(file);
        const XDMBand* band = file->GetBandAt(0);
        EXPECT_EQ(band->GetBandMax(), c.isUsed ? 90 : 250);
        EXPECT_EQ(band->GetBandMean() == 50, c.isUsed);
        long long count = 0;
        for (int i = 0; i < 256; ++i)
            count += band->GetHistogram()[i];
        EXPECT_EQ(count, 50 * 40);
        EXPECT_EQ(band->GetBandMax(), c.isUsed ? 90 : 250); // the histogram leaves the numbers
        XRSFile plain;
        XString error;
        ASSERT_TRUE(XRSFileIO::LoadFileTIF(&plain, path, error, 0, 0, nullptr));
        EXPECT_EQ(plain.GetBandAt(0)->GetBandMax(), 250);
    }
}

TEST(XDMBandGDAL, EstimatesSaySoAndSurviveNoData)
{
    QTemporaryDir dir;
    // one block in 25 has data, and one pixel is extreme: whole blocks are seen or not
    const int side = 5000;
    const XString path = XfnWriteGdalSample(
        dir.filePath("holes.tif"),
        {.type = GDT_UInt16,
         .width = side,
         .height = side,
         .options = "TILED=YES COMPRESS=DEFLATE ZLEVEL=1 BLOCKXSIZE=512 BLOCKYSIZE=512",
         .value =
             [](int x, int y, int) {
                 if (x == 4999 && y == 4999) return 60000.0;
                 return (x / 512 + 3 * (y / 512)) % 5 == 2 && x > 600 ? 100.0 + x % 50 : 7.0;
             },
         .prepare = [](GDALDataset& ds) { ds.GetRasterBand(1)->SetNoDataValue(7); }});
    const auto file = OpenFile(path);
    ASSERT_TRUE(file);
    XDMBand* band = file->GetBandAt(0);
    EXPECT_EQ(band->GetBandMin(), 100);
    EXPECT_LE(band->GetBandMax(), 60000);
    EXPECT_NEAR(band->GetBandMean(), 124.5, 1);
    EXPECT_TRUE(band->HasEstimatedStatistics());
    XString message;
    ASSERT_TRUE(band->CalcExactStatistics(nullptr, nullptr, message)) << message.GetString();
    EXPECT_EQ(band->GetBandMax(), 60000);
    EXPECT_FALSE(band->HasEstimatedStatistics());
    std::atomic<int> abort{1};
    XTileCache::Get().Clear();
    EXPECT_FALSE(band->CalcExactStatistics(&abort, nullptr, message));
    EXPECT_TRUE(message.IsEmpty());
    EXPECT_EQ(band->GetBandMax(), 60000);
}

TEST(XDMBandGDAL, AHugeSparseImageIsQuick)
{
    QTemporaryDir dir;
    const XString path = XfnWriteGdalSample(
        dir.filePath("sparse.tif"),
        {.width = 100000,
         .height = 100000,
         .options = "TILED=YES SPARSE_OK=TRUE",
         .prepare = [](GDALDataset& ds) {
             ds.GetRasterBand(1)->SetNoDataValue(9);
             const std::vector<unsigned char> block(256 * 256, 42);
             EXPECT_EQ(ds.GetRasterBand(1)->RasterIO(GF_Write, 256 * 300, 256 * 7, 256, 256,
                                                     const_cast<unsigned char*>(block.data()), 256,
                                                     256, GDT_Byte, 0, 0, nullptr),
                       CE_None);
         }});
    const auto file = OpenFile(path);
    ASSERT_TRUE(file);
    XDMBand* band = file->GetBandAt(0);
    EXPECT_EQ(band->GetBandMax(), 42); // the only block that exists is found
    EXPECT_TRUE(band->HasEstimatedStatistics());
    XString message;
    const auto tile = band->GetTile(band->GetLevel(), 0, 0, nullptr, message);
    ASSERT_TRUE(tile);
    EXPECT_EQ(tile->GetRow(0)[0], 9);
    const auto fine = band->GetTile(0, 300, 7, nullptr, message);
    ASSERT_TRUE(fine);
    EXPECT_EQ(fine->GetRow(255)[255], 42);
}

TEST(XDMBandGDAL, ATruncatedFileFailsWhereDataAreMissing)
{
    QTemporaryDir dir;
    const QString name = dir.filePath("cut.tif");
    const XString path = XfnWriteGdalSample(name, 1024, 1024, ValueAt, 1, "TILED=YES");
    QFile whole(name);
    ASSERT_TRUE(whole.resize(whole.size() / 2));
    const auto file = OpenFile(path);
    if (!file) return;
    XDMBand* band = file->GetBandAt(0);
    XString message;
    int failed = 0;
    for (int ty = 0; ty < 4; ++ty) {
        for (int tx = 0; tx < 4; ++tx) {
            if (const auto tile = band->GetTile(0, tx, ty, nullptr, message)) {
                EXPECT_EQ(tile->GetRow(1)[1], ValueAt(tx * 256 + 1, ty * 256 + 1, 0));
                continue;
            }
            ++failed;
            EXPECT_GE(message.Find("cut.tif"), 0) << message.GetString();
        }
    }
    EXPECT_GT(failed, 0);
    EXPECT_LT(failed, 16);
    EXPECT_EQ(band->GetBandMax(), 250);
    EXPECT_TRUE(band->HasEstimatedStatistics());
    EXPECT_FALSE(band->CalcExactStatistics(nullptr, nullptr, message));
    EXPECT_GE(message.Find("cut.tif"), 0);
    tagXArr2* block = nullptr;
    EXPECT_FALSE(band->ReadSubset(block, 0, 0, 1023, 0, 1023, nullptr, &message));
    EXPECT_GE(message.Find("cut.tif"), 0);
    delete block;
}

TEST(XDMBandGDAL, FilesThatChangeUnderAnOpenImage)
{
    QTemporaryDir dir;
    const auto write = [&](const char* name, double value) {
        return XfnWriteGdalSample(
            dir.filePath(name), 600, 600, [value](int, int, int) { return value; }, 1, "TILED=YES");
    };
    XString message;
    for (const bool isReplaced : {false, true}) { // what was open stands, as it was
        const XString path = write("a.tif", 5);
        write("new.tif", 7);
        const auto open = OpenFile(path);
        ASSERT_TRUE(isReplaced ? rename(dir.filePath("new.tif").toUtf8(), path) == 0
                               : QFile::remove(dir.filePath("a.tif")));
        const auto tile = open->GetBandAt(0)->GetTile(0, 0, 0, nullptr, message);
        ASSERT_TRUE(tile) << message.GetString();
        EXPECT_EQ(tile->GetRow(0)[0], 5);
    }

    const auto file = OpenFile(write("changed.tif", 8));
    XfnWriteBytes(dir.filePath("changed.tif"), "x", QIODevice::Append);
    EXPECT_FALSE(file->GetBandAt(0)->GetTile(0, 0, 0, nullptr, message));
    EXPECT_GE(message.Find("changed.tif"), 0);
}

TEST(XDMBandGDAL, NothingIsWrittenBesideTheImage)
{
    QTemporaryDir dir;
    const XString path = XfnWriteGdalSample(dir.filePath("scene.tif"), 700, 500, ValueAt, 3);
    XfnWriteBytes(dir.filePath("scene.tif.aux.xml"),
                  "<PAMDataset><PAMRasterBand band=\"1\"><Description>from aside</Description>"
                  "</PAMRasterBand></PAMDataset>");
    const auto state = [&] {
        QStringList list;
        for (const QFileInfo& info : QDir(dir.path()).entryInfoList(QDir::Files))
            list << info.fileName() + QString::number(info.size()) +
                        info.lastModified().toString(Qt::ISODateWithMs);
        return list;
    };
    const QStringList before = state();
    {
        const auto file = OpenFile(path);
        ASSERT_TRUE(file);
        EXPECT_EQ(file->GetBandAt(0)->GetBandName(), "from aside"); // but it is read
        EXPECT_EQ(file->GetBandAt(1)->GetBandName(), "Band 2");
        XString message;
        for (int i = 0; i < 3; ++i)
            EXPECT_TRUE(file->GetBandAt(i)->CalcExactStatistics(nullptr, nullptr, message));
        ReadLevel(file->GetBandAt(0), 1);
    }
    EXPECT_EQ(state(), before);
}

/// A picture of noise in one stream, cut off behind `part` of its bytes.
static XString WriteStream(const QString& path, double part)
{
    const auto noise = [](int x, int y, int band) {
        return ((x * 7919u + y * 104729u + band * 31u) * 2654435761u >> 13) & 255u;
    };
    const XString plain = XfnWriteGdalSample(path + ".tif", 700, 600, noise, 3);
    auto* from = static_cast<GDALDataset*>(GDALOpen(plain, GA_ReadOnly));
    GDALDriver* driver = GetGDALDriverManager()->GetDriverByName("PNG");
    const QByteArray name = path.toUtf8();
    GDALClose(driver->CreateCopy(name, from, 0, nullptr, nullptr, nullptr));
    GDALClose(from);
    QFile file(path);
    file.resize(static_cast<qint64>(static_cast<double>(file.size()) * part));
    return XString(name.constData());
}

TEST(XDMBandGDAL, ADrawTellsWhyAPartIsMissing)
{
    QTemporaryDir dir;
    for (const double part : {1.0, 0.5}) {
        const auto file = OpenFile(WriteStream(dir.filePath("b.png"), part));
        ASSERT_TRUE(file);
        XDMComposite composite;
        composite.SetBand(file->GetBandAt(0), 0);
        composite.SetCutRange(0, 255, 0);
        composite.SetPixelBaseMode(1);
        XBackBuffer buffer;
        buffer.Resize(nullptr, 700, 600);
        buffer.SetWorldToCenter(350, -300);
        buffer.SetWorldPerPixel(1, 1);
        const int isWhole = composite.Draw(&buffer, -9e3, -9e3, 9e3, 9e3, 1, nullptr, nullptr);
        EXPECT_EQ(isWhole, part == 1.0);
        EXPECT_EQ(composite.GetDrawMessage().IsEmpty(), part == 1.0);
        XDMComposite own;
        own.TakeDrawResults(&composite);
        EXPECT_EQ(own.GetDrawMessage().Find("b.png") >= 0, part != 1.0)
            << own.GetDrawMessage().GetString();
        EXPECT_LT(own.GetDrawMessage().Find("libpng"), 0);
        std::atomic<int> abort{1};
        composite.Draw(&buffer, -9e3, -9e3, 9e3, 9e3, 1, nullptr, &abort);
        EXPECT_TRUE(composite.GetDrawMessage().IsEmpty());
    }
}
