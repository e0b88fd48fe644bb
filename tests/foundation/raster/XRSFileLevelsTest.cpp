#include "foundation/raster/XDMBandGDAL.h"
#include "foundation/raster/XDMBandSpatialFilter.h"
#include "foundation/raster/XDMFileSaver.h"
#include "foundation/raster/XRasterTypes.h"
#include "foundation/raster/XSaveControl.h"
#include "tests/support/XFileBytes.h"
#include "tests/support/XFullDisk.h"
#include "tests/support/XGdalSample.h"
#include "tests/support/XRasterFiles.h"

#include <gmock/gmock.h>

#include <QDir>
#include <QTemporaryDir>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cmath>
#include <ctime>
#include <limits>
#include <random>
#include <thread>

namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

double PixelOf(const XDMBand& band, int level, int x, int y)
{
    int width = 0;
    int height = 0;
    band.GetTileSize(level, width, height);
    XString message;
    const auto tile = band.GetTile(level, x / width, y / height, nullptr, message);
    EXPECT_TRUE(tile) << message.GetString();
    double re = 0;
    double im = 0;
    if (tile)
        XfnReadComplexSample(tile->GetRow(y % height) + tile->GetSampleSize() * (x % width),
                             band.GetDataType(), re, im);
    return XfnIsComplexType(band.GetDataType()) ? std::hypot(re, im) : re;
}

int HasRealLevels(const XRSFile& file)
{
    for (int i = 0; i < file.GetNumOfBands(); ++i)
        for (int level = 1; level < file.GetBandAt(i)->GetNumOfLevels(); ++level)
            if (file.GetBandAt(i)->IsVirtualLevel(level)) return 0;
    return 1;
}

/// A folder for rasters and a cache of its own.
class XRSFileLevels : public ::testing::Test
{
protected:
    XRSFileLevels()
    {
        qputenv("XDG_CACHE_HOME", dir.filePath("cache").toUtf8());
        QDir(dir.path()).mkdir("data");
        chmod(dir.path().toUtf8(), 0755);
    }
    ~XRSFileLevels() override { qunsetenv("XDG_CACHE_HOME"); }

    QString Path(const QString& name) const { return dir.filePath("data/" + name); }
    /// All files, hidden ones too.
    QStringList Files(const QString& folder) const
    {
        return QDir(dir.filePath(folder))
            .entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    }
    int Build(const XString& path, XSidecarPlace place = XSidecarPlace::Any)
    {
        return XRSFileIO::BuildLevels(path, place, control, made, error);
    }

    QTemporaryDir dir;
    tagXSaveControl control;
    XString made;
    XString error;
};

} // namespace

TEST_F(XRSFileLevels, SamplesAreJoinedAsTheirKindAsks)
{
    const auto palette = [](GDALDataset& dataset) {
        GDALColorTable colors;
        for (int i = 0; i < 4; ++i) {
            const GDALColorEntry entry = {short(i * 60), 0, 0, 255};
            colors.SetColorEntry(i, &entry);
        }
        dataset.GetRasterBand(1)->SetColorTable(&colors);
    };
    const auto null = [](GDALDataset& dataset) { dataset.GetRasterBand(1)->SetNoDataValue(9); };
    constexpr double kBig = 1000000006, kFine = 500000.123456789;
    struct tagCase
    {
        const char* name;
        GDALDataType type;
        std::array<double, 4> block; ///< of 2 x 2 pixels, repeated
        double wanted;
        std::function<void(GDALDataset&)> prepare{};
        const char* options = "";
        int bands = 1; ///< the fourth is an opacity, 0 on the left
    };
    const tagCase cases[] = {
        {"digits of a whole number", GDT_Int32, {kBig, kBig, kBig + 2, kBig + 2}, kBig + 1},
        {"digits without no data", GDT_Float64, {9, kFine, kNaN, 9}, kFine, null},
        {"opacity is a band like any",
         GDT_Byte,
         {200, 200, 200, 200},
         200,
         {},
         "PHOTOMETRIC=RGB ALPHA=YES",
         4},
        {"digits of 64 bits", GDT_Int64, {9e15, 9e15, 9e15 - 2, 9e15 - 2}, 9e15 - 1},
        {"mean", GDT_UInt16, {100, 200, 300, 400}, 250},
        {"mean without no data", GDT_Int16, {9, -20, 9, -40}, -30, null},
        {"no data alone", GDT_Int32, {9, 9, 9, 9}, 9, null},
        {"NaN is no data", GDT_Float32, {kNaN, 2, 4, kNaN}, 3},
        {"NaN beside a value of no data", GDT_Float64, {kNaN, 2, 4, 9}, 3, null},
        {"large numbers", GDT_Int32, {2e9, 2e9, -1e9, -1e9}, 5e8},
        {"class", GDT_Byte, {3, 1, 3, 2}, 3, palette},
        {"signed byte", GDT_Byte, {250, 250, 250, 250}, -6, {}, "PIXELTYPE=SIGNEDBYTE"},
        {"magnitude", GDT_CFloat32, {3, 5, 3, 5}, 4},
        {"complex integers", GDT_CInt16, {3, 5, 3, 5}, 4},
    };
    for (const tagCase& c : cases) {
        SCOPED_TRACE(c.name);
        const XString path = XfnWriteGdalSample(
            Path(QString("%1.tif").arg(c.name)),
            {.type = c.type,
             .width = 700,
             .height = 530,
             .bands = c.bands,
             .options = c.options,
             .value =
                 [&](int x, int y, int b) {
                     return b == 3 ? (x < 350 ? 0 : 255)
                                   : c.block[static_cast<std::size_t>(x % 2 + y % 2 * 2)];
                 },
             .prepare = c.prepare});
        const auto open = OpenFile(path);
        ASSERT_TRUE(open);
        ASSERT_FALSE(HasRealLevels(*open));
        ASSERT_TRUE(Build(path)) << error.GetString();
        EXPECT_EQ(made, path + ".ovr");
        ASSERT_TRUE(XRSFileIO::TakeUpLevels(open.get()));
        const auto later = OpenFile(path);
        for (XRSFile* file : {open.get(), later.get()}) {
            EXPECT_TRUE(HasRealLevels(*file));
            EXPECT_TRUE(XfnIsValidXDMLevelData(file));
            const XDMBand& band = *file->GetBandAt(0);
            EXPECT_EQ(PixelOf(band, 0, 1, 0), c.wanted == -6 ? -6 : c.block[1]);
            const double slack =
                std::fabs(c.wanted) * (GDALDataTypeIsComplex(c.type) ? 1e-6 : 1e-15);
            const int levels = band.GetNumOfLevels();
            for (int level = 1; level < levels; ++level) {
                int width = 0;
                int height = 0;
                band.GetLevelSize(level, width, height);
                EXPECT_NEAR(PixelOf(band, level, 0, 0), c.wanted, slack);
                EXPECT_NEAR(PixelOf(band, level, width / 2, height / 2), c.wanted, slack);
            }
        }
    }
}

TEST_F(XRSFileLevels, WhatCannotStandBesideGoesToTheCacheAndFollowsTheFile)
{
    const auto write = [this](double first) {
        return XfnWriteGdalSample(Path("scene.tif"), 600, 300,
                                  [first](int, int, int) { return first; });
    };
    XString path = write(10);
    ASSERT_EQ(chmod(Path("").toUtf8(), 0555), 0);
    QDir(dir.path()).mkdir("cache");
    ASSERT_EQ(chmod(dir.filePath("cache").toUtf8(), 0777), 0);
    const uid_t user = geteuid();
    ASSERT_TRUE(user != 0 || seteuid(65534) == 0); // every folder is open to the superuser
    const int isBuilt = Build(path);
    EXPECT_FALSE(Build(path, XSidecarPlace::Beside));
    EXPECT_GE(error.Find("cannot be written"), 0) << error.GetString();
    ASSERT_EQ(seteuid(user), 0);
    ASSERT_EQ(chmod(Path("").toUtf8(), 0755), 0);
    ASSERT_TRUE(isBuilt) << error.GetString();
    EXPECT_EQ(Files("data"), QStringList{"scene.tif"});
    EXPECT_EQ(Files("cache/tql/sidecars").size(), 1);
    EXPECT_TRUE(HasRealLevels(*OpenFile(path)));

    // the file was made anew: its old levels are neither used nor kept
    QFile::remove(Path("scene.tif"));
    path = write(20);
    struct timespec times[2] = {{0, UTIME_OMIT}, {1000, 5}};
    ASSERT_EQ(utimensat(AT_FDCWD, path, times, 0), 0);
    EXPECT_FALSE(HasRealLevels(*OpenFile(path)));
    ASSERT_TRUE(Build(path, XSidecarPlace::Cache)) << error.GetString();
    EXPECT_EQ(Files("cache/tql/sidecars").size(), 1);
    const auto file = OpenFile(path);
    EXPECT_TRUE(HasRealLevels(*file));
    EXPECT_EQ(PixelOf(*file->GetBandAt(0), 1, 5, 5), 20);
}

TEST_F(XRSFileLevels, AStopAndAFullDiskLeaveNothing)
{
    std::mt19937 random;
    const auto noise = [&](int, int, int) { return static_cast<double>(random() % 256); };
    const XString path =
        XfnWriteGdalSample(Path("noise.tif"), 1500, 1500, noise, 3, "INTERLEAVE=PIXEL");
    std::atomic<int> stop{0};
    control.abort = &stop;
    control.progress = [&](int percent) { stop = percent > 20; };
    EXPECT_FALSE(Build(path));
    EXPECT_TRUE(error.IsEmpty()) << error.GetString();
    EXPECT_EQ(Files("data"), QStringList{"noise.tif"});

    control = tagXSaveControl();
    {
        const XFullDisk disk(200000);
        EXPECT_FALSE(Build(path));
    }
    EXPECT_GE(error.Find("noise.tif"), 0) << error.GetString();
    EXPECT_LT(error.Find(".tql-"), 0) << error.GetString();
    EXPECT_EQ(Files("data"), QStringList{"noise.tif"});
}

TEST_F(XRSFileLevels, ReadersInOtherThreadsMeetTheOldLevelsOrTheNew)
{
    // picked, a level is 0; averaged, it is 100
    const auto checks = [](int x, int y, int) { return x % 2 && y % 2 ? 0.0 : 400.0 / 3; };
    const XString path =
        XfnWriteGdalSample(Path("checks.tif"), 2048, 1024, checks, 3, "TILED=YES INTERLEAVE=PIXEL");
    const auto file = OpenFile(path);
    ASSERT_TRUE(Build(path)) << error.GetString();
    const auto all = [&](XDMBand& band, int wanted) {
        int others = 0;
        for (int y = 0; y < 512; y += 16)
            for (int x = 0; x < 1024; x += 16)
                others += std::fabs(PixelOf(band, 1, x, y) - wanted) > 1;
        return others;
    };
    ASSERT_EQ(all(*file->GetBandAt(0), 0), 0);
    XDMBandSpatialFilter derived; // it follows
    ASSERT_TRUE(derived.Create(file->GetBandAt(0), kXFilterNone, 3));
    ASSERT_EQ(all(derived, 0), 0);
    std::atomic<int> isOver{0};
    std::vector<std::jthread> readers;
    for (int i = 0; i < 3; ++i)
        readers.emplace_back([&, i] {
            while (!isOver) {
                file->GetBandAt(i)->IsVirtualLevel(1);
                for (const int x : {0, 300, 600, 900}) {
                    const double v = PixelOf(*file->GetBandAt(i), 1, x, x / 2);
                    EXPECT_TRUE(v == 0 || std::fabs(v - 100) < 1) << v;
                }
                XTileCache::Get().Clear();
            }
        });
    EXPECT_TRUE(XRSFileIO::TakeUpLevels(file.get()));
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    isOver = 1;
    readers.clear(); // joins
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(all(*file->GetBandAt(i), 100), 0) << i;
    EXPECT_EQ(all(derived, 100), 0);
    EXPECT_FALSE(derived.IsVirtualLevel(1));
}

TEST_F(XRSFileLevels, ADamagedPyramidKeepsNothingFromBeingSeen)
{
    const XString path = XfnWriteGdalSample(Path("scene.tif"), 1500, 1500,
                                            [](int x, int y, int) { return x * y % 251; });
    ASSERT_TRUE(Build(path)) << error.GetString();
    ASSERT_TRUE(QFile::resize(Path("scene.tif.ovr"), QFile(Path("scene.tif.ovr")).size() / 4));
    const auto file = OpenFile(path);
    EXPECT_FALSE(file->GetBandAt(0)->IsVirtualLevel(1)) << "not seen when it is opened";
    for (int y = 0; y < 750; y += 50)
        for (int x = 0; x < 750; x += 50)
            PixelOf(*file->GetBandAt(0), 1, x, y);
}

TEST_F(XRSFileLevels, NothingOfAnOtherStateOfTheFileIsKept)
{
    const auto write = [this](const char* name, double value) {
        const XString tif = XfnWriteGdalSample(Path("made.tif"), 600, 300,
                                               [value](int, int, int) { return value; });
        const QString target = Path(name);
        QFile::remove(target);
        const bool isNative = target.endsWith(".xdm");
        return isNative ? XDMFileSaver::Save(*OpenFile(tif), target.toUtf8().constData(),
                                             XDMCompression::None, {}, error)
                        : static_cast<int>(QFile::rename(tif.GetString(), target));
    };
    for (const char* name : {"scene.tif", "scene.xdm"}) {
        for (const bool isReplaced : {true, false}) {
            SCOPED_TRACE(testing::Message() << name << isReplaced);
            const XString path = Path(name).toUtf8().constData();
            ASSERT_TRUE(write(name, 10));
            const auto open = OpenFile(path);
            XDMBand& band = *open->GetBandAt(0);
            if (isReplaced)
                ASSERT_TRUE(write(name, 200));
            else
                band.SetNullValue(3);
            ASSERT_TRUE(band.CalcExactStatistics(control, error)) << error.GetString();
            EXPECT_FALSE(XRSFileIO::SaveStatistics({&band}, XSidecarPlace::Any, made, error));
            EXPECT_GE(error.Find(name), 0) << error.GetString();
            EXPECT_EQ(OpenFile(path)->GetBandAt(0)->GetBandMean(), isReplaced ? 200 : 10);
            if (Build(path)) {
                EXPECT_EQ(XRSFileIO::TakeUpLevels(open.get()), isReplaced ? 0 : 1);
                EXPECT_EQ(PixelOf(band, 1, 0, 0), 10);
            }
            QFile::remove(Path("scene.tif.ovr"));
        }
    }
}

TEST_F(XRSFileLevels, WhatIsOlderThanTheFileIsLeftWithANote)
{
    for (const char* driver : {"GTiff", "ENVI"}) {
        SCOPED_TRACE(driver);
        const QString name = Path(driver);
        double value = 10;
        const auto write = [&] {
            return XfnWriteGdalSample(
                name, {.driver = driver, .width = 600, .height = 300, .value = [&](int, int, int) {
                           return value;
                       }});
        };
        const XString path = write();
        XDMBand* band = nullptr;
        auto file = OpenFile(path);
        ASSERT_TRUE(file->GetBandAt(0)->CalcExactStatistics(control, error));
        ASSERT_TRUE(Build(path) && XRSFileIO::SaveStatistics({file->GetBandAt(0)},
                                                             XSidecarPlace::Any, made, error));
        file = OpenFile(path);
        EXPECT_TRUE(HasRealLevels(*file) && file->GetNotes().IsEmpty())
            << file->GetNotes().GetString();
        const QByteArray stale[] = {XfnReadBytes(name + ".ovr"), XfnReadBytes(name + ".aux.xml")};

        value = 200;
        write();
        for (const int i : {0, 1}) {
            ASSERT_FALSE(XfnWriteBytes(name + (i ? ".aux.xml" : ".ovr"), stale[i]).IsEmpty());
        }
        const struct timespec times[2] = {{0, UTIME_OMIT}, {std::time(nullptr) + 5, 0}};
        ASSERT_EQ(utimensat(AT_FDCWD, path, times, 0), 0);
        file = OpenFile(path);
        band = file->GetBandAt(0);
        EXPECT_FALSE(HasRealLevels(*file));
        EXPECT_EQ(PixelOf(*band, 1, 0, 0), 200);
        EXPECT_EQ(band->GetBandMean(), 200);
        EXPECT_GE(file->GetNotes().Find("pyramid is older"), 0);
        EXPECT_GE(file->GetNotes().Find("statistics beside it are older"), 0);
        // what is made now counts, though the file seems to come from tomorrow
        ASSERT_TRUE(Build(path)) << error.GetString();
        EXPECT_TRUE(XRSFileIO::TakeUpLevels(file.get()));
        EXPECT_TRUE(HasRealLevels(*OpenFile(path)));
    }
}

TEST_F(XRSFileLevels, ExactStatisticsAreFoundAgain)
{
    struct tagCase
    {
        const char* driver;
        const char* name;
        GDALDataType type;
        XSidecarPlace place;
    };
    const tagCase cases[] = {
        {"GTiff", "beside.tif", GDT_UInt16, XSidecarPlace::Any},
        {"GTiff", "cached.tif", GDT_Float32, XSidecarPlace::Cache},
        {"GTiff", "complex.tif", GDT_CFloat32, XSidecarPlace::Any},
        {"HFA", "other.img", GDT_Int16, XSidecarPlace::Any},
        {"ENVI", "plain.dat", GDT_Float64, XSidecarPlace::Any},
    };
    for (const tagCase& c : cases) {
        SCOPED_TRACE(c.name);
        const XString path =
            XfnWriteGdalSample(Path(c.name), {.driver = c.driver,
                                              .type = c.type,
                                              .width = 1300,
                                              .height = 900,
                                              .bands = 2,
                                              // the picked levels miss the largest
                                              .value = [](int x, int y, int b) {
                                                  return x == 700 && y == 500
                                                             ? 900.0 + b
                                                             : (x * 3 + y) % 100 + 0.5 * b;
                                              }});
        const QByteArray before = XfnReadBytes(Path(c.name));
        const QString side = Path(QString(c.name) + ".aux.xml");
        XfnWriteBytes(
            side, "<PAMDataset><PAMRasterBand band=\"2\"><Description>kept</Description><Metadata>"
                  "<MDI key=\"STATISTICS_VALID_PERCENT\">7</MDI></Metadata></PAMRasterBand>"
                  "</PAMDataset>");
        const auto file = OpenFile(path);
        std::vector<const XDMBand*> bands;
        for (int i = 0; i < 2; ++i) {
            ASSERT_TRUE(file->GetBandAt(i)->CalcExactStatistics(control, error));
            bands.push_back(file->GetBandAt(i));
        }
        ASSERT_TRUE(XRSFileIO::SaveStatistics(bands, c.place, made, error)) << error.GetString();
        const auto later = OpenFile(path);
        for (int i = 0; i < 2; ++i) {
            const auto numbers = [](const tagXBandStatistics& of) {
                return std::tuple(of.max, of.mean, of.stdDev, of.histogram, of.isEstimated,
                                  of.isHistogramEstimated);
            };
            EXPECT_EQ(numbers(*later->GetBandAt(i)->GetStatistics()),
                      numbers(*bands[static_cast<std::size_t>(i)]->GetStatistics()));
            EXPECT_FALSE(later->GetBandAt(i)->HasEstimatedStatistics());
        }
        const QByteArray beside = XfnReadBytes(side);
        EXPECT_TRUE(beside.contains("<Description>kept<"));
        EXPECT_EQ(beside.contains("VALID_PERCENT"), made != side.toUtf8().constData());
        EXPECT_EQ(XfnReadBytes(Path(c.name)), before);
    }
}

TEST_F(XRSFileLevels, OnlyLargeImagesWantOne)
{
    const struct
    {
        const char* name;
        int width, height;
        std::vector<int> overviews;
        int isWanted;
    } cases[] = {{"two.tif", 16384, 20, {}, 1},
                 {"least.tif", 8192, 20, {}, 1},
                 {"less.tif", 8190, 20, {}, 0},
                 {"coarse.tif", 16384, 20, {4, 16, 64}, 0},
                 {"has.tif", 16384, 20, {2, 4, 8, 16, 32, 64}, 0}};
    for (const auto& c : cases) {
        const XString path =
            XfnWriteGdalSample(Path(c.name), {.width = c.width,
                                              .height = c.height,
                                              .overviews = c.overviews,
                                              .value = [](int x, int, int) { return x % 200; }});
        EXPECT_EQ(XRSFileIO::NeedsLevels(OpenFile(path).get()), c.isWanted) << c.name;
    }
    for (const char* type : {"Byte", "UInt16"}) { // a pyramid has one type
        QString text = "<VRTDataset rasterXSize='16384' rasterYSize='20'>";
        for (const char* own : {"Byte", type})
            text += QString("<VRTRasterBand dataType='%1'><SimpleSource><SourceFilename "
                            "relativeToVRT='1'>two.tif</SourceFilename></SimpleSource>"
                            "</VRTRasterBand>")
                        .arg(own);
        const XString path = XfnWriteBytes(Path("mixed.vrt"), (text + "</VRTDataset>").toUtf8());
        const int isWanted = XRSFileIO::NeedsLevels(OpenFile(path).get());
        EXPECT_EQ(isWanted, QString(type) == "Byte");
        EXPECT_EQ(Build(path), isWanted);
    }
}
