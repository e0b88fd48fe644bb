#include "dialogs/XFilePreviewModel.h"
#include "dialogs/XPreviewLoader.h"
#include "dialogs/XThumbnail.h"
#include "foundation/platform/XFileFilter.h"
#include "foundation/platform/XQtText.h"
#include "foundation/raster/XRSFile.h"
#include "foundation/raster/XRSFileIO.h"
#include "foundation/reference/XSpatialReference.h"
#include "tests/support/XGdalSample.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <gtest/gtest.h>

#include <sys/stat.h>

namespace {

class XFilePreviewTest : public ::testing::Test
{
protected:
    XString Make(const QString& name, tagXGdalSample sample, int epsg = 0, double pixel = 30.0,
                 double ulX = 300000.0, double ulY = 4000000.0)
    {
        sample.prepare = [=](GDALDataset& dataset) {
            if (epsg == 0) return;
            XSpatialReference sr;
            XString wkt;
            sr.importFromEPSG(epsg);
            sr.exportToWkt(wkt);
            dataset.SetProjection(wkt);
            double transform[6] = {ulX, pixel, 0, ulY, 0, -pixel};
            dataset.SetGeoTransform(transform);
        };
        if (!sample.value) sample.value = [](int x, int y, int band) { return x + 20 * y + band; };
        const XString path = XfnWriteGdalSample(dir.filePath(name), sample);
        EXPECT_FALSE(path.IsEmpty()) << name.toStdString();
        return path;
    }
    std::string Report(const XString& path)
    {
        XString error;
        const auto file = XFilePreviewModel::Load(path, 2, nullptr, error);
        EXPECT_NE(file, nullptr) << error;
        return file ? std::string(XFilePreviewModel::MakeReport(*file, 2048)) : std::string();
    }

    QTemporaryDir dir;
};

TEST_F(XFilePreviewTest, ReportsTellImageAndPlace)
{
    const tagXGdalSample byte{.width = 30, .height = 20, .bands = 3};
    EXPECT_EQ(
        Report(Make("utm.tif", byte, 32652)),
        "Image Info.\r\nImage Size : 30 x 20\r\nData Type : Unsigned char(1 byte)\r\n"
        "# of band(s) : 3\r\n# of GCP Set(s) : 0\r\n# of ROI(s) : 0\r\n# of Class(s) : 0\r\n"
        "File Size : 2 KB (2048 bytes)\r\n"
        "Map Info.\r\nCoordinate Type : Map oriented\r\nProjection : WGS 84 / UTM zone 52N\r\n"
        "Datum : World Geodetic System 1984\r\nLower Left : 300015.0000, 3999415.0000\r\n"
        "Upper Right : 300885.0000, 3999985.0000\r\nPixel size : 30.0000 x 30.0000\r\n");
    const std::string west = Report(Make("west.tif", byte, 4326, 0.5, -7.0, 5.0));
    EXPECT_NE(west.find("\r\nLower Left : 6.75000000 W, 4.75000000 S\r\n"
                        "Upper Right : 7.75000000 E, 4.75000000 N\r\n"
                        "Pixel size : 0.500000000000 x 0.500000000000\r\n"),
              std::string::npos)
        << west;
    const std::string plain =
        Report(Make("plain.tif", {.type = GDT_CInt16, .width = 9, .height = 4}));
    for (const char* line :
         {"Data Type : Signed short complex(4 bytes)\r\n", "Coordinate Type : Pixel oriented\r\n",
          "Projection : \r\n", "Lower Left : 0.00, -3.00\r\nUpper Right : 8.00, 0.00\r\n",
          "Pixel size : 1.00 x 1.00\r\n"})
        EXPECT_NE(plain.find(line), std::string::npos) << line << plain;
}

TEST_F(XFilePreviewTest, SizesAreRoundedDownInTheUnitOfTheirMagnitude)
{
    constexpr std::int64_t kMega = 1 << 20;
    const std::pair<std::int64_t, const char*> rows[] = {
        {0, "0 KB (0 bytes)"},
        {10 * kMega - 1, "10239 KB (10485759 bytes)"},
        {10 * kMega, "10 MB (10485760 bytes)"},
        {10240 * kMega - 1, "10239 MB (10737418239 bytes)"},
        {10240 * kMega, "10 GB (10737418240 bytes)"}};
    for (const auto& [bytes, text] : rows)
        EXPECT_STREQ(XFilePreviewModel::MakeSizeText(bytes), text);
}

TEST_F(XFilePreviewTest, ReadersFollowTheExtensionThenTheContent)
{
    const XFileFilter full(XFilePreviewModel::GetFilter(1)),
        reduced(XFilePreviewModel::GetFilter(0));
    EXPECT_EQ(full.GetCount(), 8);
    EXPECT_EQ(reduced.GetCount(), 3);
    EXPECT_STREQ(full.GetAt(6).label, "DTED files(*.dt0, *.dt1, *.dt2)");
    EXPECT_STREQ(XFilePreviewModel::GetExtension("/a.b/c.Tiff"), "TIFF");

    const XString tif = Make("a.tif", {.width = 9, .height = 4});
    for (const char* name : {"really.img", "none", "\xED\x95\x9C\xEA\xB5\xAD\nb.jpg"}) {
        const QString other = dir.filePath(QString::fromUtf8(name));
        ASSERT_TRUE(QFile::copy(XfnToQString(tif), other));
        EXPECT_NE(Report(XfnFromQString(other)).find("9 x 4"), std::string::npos) << name;
    }
    for (const char* name :
         {"x.PBI", "x.pei", "zero.tif", "cut.tif", "missing.tif", "fifo.tif", "."}) {
        const QString path = dir.filePath(name);
        const QString file(name);
        if (file.endsWith("I") || file.endsWith("i") || file.startsWith("zero")) {
            QFile made(path);
            ASSERT_TRUE(made.open(QIODevice::WriteOnly));
            if (!file.startsWith("zero")) made.write("something");
        } else if (file.startsWith("cut")) {
            QFile::copy(XfnToQString(tif), path);
            QFile::resize(path, 30);
        } else if (file.startsWith("fifo")) {
            ::mkfifo(QFile::encodeName(path), 0600);
        }
        XString error;
        EXPECT_EQ(XFilePreviewModel::Load(XfnFromQString(path), 2, nullptr, error), nullptr)
            << name;
        EXPECT_FALSE(error.IsEmpty()) << name;
    }
}

TEST_F(XFilePreviewTest, ThumbnailsShowTheWholeRasterInItsShape)
{
    const auto draw = [this](const XString& path, std::int64_t budget, XString& message) {
        XString error;
        const auto file = XFilePreviewModel::Load(path, 2, nullptr, error);
        EXPECT_NE(file, nullptr) << error;
        QImage picture;
        XfnDrawThumbnail(*file, 64, budget, nullptr, picture, message);
        return picture;
    };
    XString message;
    const auto halves = [](int x, int, int) { return x < 20 ? 100.0 : 3000.0; };
    for (const GDALDataType type : {GDT_UInt16, GDT_Float64, GDT_CFloat32}) {
        const QString name = QString("halves%1.tif").arg(static_cast<int>(type));
        const QImage picture =
            draw(Make(name, {.type = type, .width = 40, .height = 20, .value = halves}), 1 << 20,
                 message);
        ASSERT_EQ(picture.size(), QSize(64, 32)) << message;
        EXPECT_EQ(picture.pixel(5, 16), qRgb(0, 0, 0));
        EXPECT_EQ(picture.pixel(60, 16), qRgb(255, 255, 255));
        EXPECT_STREQ(message, "");
    }
    // a file of 20 GB, most of which was never written
    tagXGdalSample sparse{.width = 150000, .height = 140000};
    sparse.options = "TILED=YES SPARSE_OK=TRUE BIGTIFF=YES";
    const XString huge = XfnWriteGdalSample(dir.filePath("huge.tif"), sparse);
    EXPECT_TRUE(draw(huge, kXThumbnailBytes, message).isNull());
    EXPECT_STREQ(message, "No quick preview: the file is large and has no reduced levels.");
}

TEST_F(XFilePreviewTest, TheNewestRequestWinsAndOldOnesTouchNothing)
{
    const XString first = Make("first.tif", {.width = 900, .height = 900});
    const XString last = Make("last.tif", {.type = GDT_CFloat32, .width = 8, .height = 8});
    std::vector<XString> told;
    tagXFilePreview shown;
    {
        XPreviewLoader loader;
        loader.SetChanged([&](const tagXFilePreview& preview) {
            told.push_back(preview.path);
            shown = preview;
        });
        for (int i = 0; i < 40; ++i)
            loader.Request(i % 2 ? first : XfnFromQString(dir.filePath("missing")), 64);
        loader.Request(last, 64);
        ASSERT_TRUE(QTest::qWaitFor([&] { return shown.isDone; }));
        EXPECT_TRUE(shown.isComplex);
        EXPECT_EQ(shown.picture.size(), QSize(64, 64)) << shown.message;
        for (const XString& path : told)
            EXPECT_STREQ(path, last);
        QFile::remove(XfnToQString(last));
        shown = {};
        loader.Request(last, 64);
        ASSERT_TRUE(QTest::qWaitFor([&] { return shown.isDone; }));
        EXPECT_FALSE(shown.isOpened);
        EXPECT_FALSE(shown.message.IsEmpty());
        told.clear();
        loader.Request(first, 64);
    } // with a request under way
    QTest::qWait(20);
    EXPECT_TRUE(told.empty());
}

} // namespace
