#include "foundation/raster/XRSFileIO.h"
#include "foundation/base/XFile.h"
#include "foundation/platform/XThread.h"
#include "foundation/raster/XRasterTypes.h"
#include "tests/support/XFileBytes.h"
#include "tests/support/XRasterFiles.h"
#include "tests/support/XRawRaster.h"

#include <QTemporaryDir>

#include <cmath>
#include <limits>
#include <sys/stat.h>
#include <unistd.h>

TEST(XRSFileIO, ExtensionsHaveTheirNumbers)
{
    const std::pair<const char*, int> cases[] = {
        {"XDM", 101},  {"PBI", 102},  {"PEI", 102},      {"BMP", 103},  {"JPG", 104},
        {"TIF", 105},  {"TIFF", 105}, {"tif", 105},      {"IMG", 106},  {"DT0", 107},
        {"DT1", 108},  {"DT2", 109},  {"PNG", 110},      {"XVC", 1001}, {"DXF", 1002},
        {"SHP", 1003}, {"DGN", 1004}, {"GEOJSON", 1005}, {"", 0},       {"NOSUCH", 0}};
    for (const auto& [extension, id] : cases)
        EXPECT_EQ(XRSFileIO::GetIDFromExt(extension), id) << extension;
}

TEST(XRSFileIO, EachFormatHasItsBands)
{
    const std::pair<const char*, const char*> cases[] = {
        {"gtiff/byte.tif", "XDMBandGTIFF"},     {"hfa/small_ov.img", "XDMBandHFA"},
        {"bmp-jpg/8bit_pal.bmp", "XDMBandBMP"}, {"bmp-jpg/rgbsmall_rgb.jpg", "XDMBandJPG"},
        {"dted/n43.dt0", "XDMBandDTED"},        {"envi/envi_rgbsmall_bip.img", "XDMBandGDAL"},
    };
    for (const auto& [path, bandClass] : cases) {
        XRSFile file;
        XString error;
        ASSERT_TRUE(XRSFileIO::Open(SamplePath(path), &file, error)) << error.GetString();
        EXPECT_STREQ(file.GetBandAt(0)->GetRuntimeClass()->m_lpszClassName, bandClass);
        EXPECT_EQ(file.GetFilePath(), SamplePath(path));
        EXPECT_EQ(file.GetBandAt(0)->GetXRSFile(), &file);
        ASSERT_NE(file.GetFilePtr(), nullptr);
        EXPECT_TRUE(file.GetFilePtr()->IsOpen());
        EXPECT_EQ(file.GetAttatchFlag(), 1);
        file.SetFilePath("/elsewhere/b.tif");
        EXPECT_STREQ(file.GetFileName(), "b.tif");
    }
    XRSFile file;
    XString error;
    ASSERT_TRUE(
        XRSFileIO::Open(XString("GTIFF_DIR:1:") + SamplePath("gtiff/byte.tif"), &file, error))
        << error.GetString();
    EXPECT_EQ(file.GetFilePtr(), nullptr) << "a part of a file";
    EXPECT_GE(file.GetFilePath().Find("GTIFF_DIR"), 0);
    EXPECT_FALSE(XRSFileIO::LoadFileBMP(&file, SamplePath("gtiff/byte.tif"), error, 1, 1, nullptr));
    EXPECT_GE(error.Find("byte.tif"), 0);
    EXPECT_TRUE(XRSFileIO::LoadFileDTED(&file, SamplePath("dted/n43.dt0"), error, 1, 1, nullptr));
}

TEST(XRSFileIO, RefusesBadInputWithASentence)
{
    QTemporaryDir dir;
    const QByteArray tif = XfnReadBytes(SamplePath("gtiff/byte.tif").GetString());
    ASSERT_EQ(tif.size(), 736);
    const XString fifo = dir.filePath("fifo.tif").toUtf8().constData();
    ASSERT_EQ(mkfifo(fifo, 0600), 0);
    XfnWriteBytes(dir.filePath("lines.dbf"), "");
    const struct
    {
        const char* name;
        XString path;
        const char* says;
    } cases[] = {
        {"no name", "", "no file name"},
        {"missing", dir.filePath("none.tif").toUtf8().constData(), "does not exist"},
        {"a name that is a folder", dir.path().toUtf8().constData(), "folder"},
        {"below a file", XfnFormat("%s/x.tif", SamplePath("gtiff/byte.tif")), "cannot be opened"},
        {"empty", XfnWriteBytes(dir.filePath("empty.tif"), ""), "empty"},
        {"a pipe", fifo, "pipe"},
        {"text named .tif", XfnWriteBytes(dir.filePath("text.tif"), "good morning\n"), "text.tif"},
        {"text named .xyzzy", XfnWriteBytes(dir.filePath("text.xyzzy"), "good morning\n"),
         "text.xyzzy"},
        {"a header cut short", XfnWriteBytes(dir.filePath("short.tif"), tif.left(6)), "short.tif"},
        {"a directory cut short",
         XfnWriteBytes(dir.filePath("half.tif"), tif.left(tif.size() - 300)), "half.tif"},
        {"a header cell", SamplePath("dted/w118n033_trunc.dt1"), ""},
        {"vectors",
         XfnWriteBytes(
             dir.filePath("a.geojson"),
             R"({"type":"FeatureCollection","features":[{"type":"Feature","properties":{},"geometry":{"type":"Point","coordinates":[1,2]}}]})"),
         "vector"},
        {"the native format", XfnWriteBytes(dir.filePath("a.xdm"), "x"), "a.xdm"},
        {"a format without description", XfnWriteBytes(dir.filePath("a.pbi"), "x"), "a.pbi"},
    };
    XRSFile file;
    XString error;
    ASSERT_TRUE(XRSFileIO::Open(SamplePath("gtiff/rgba.tif"), &file, error)) << error.GetString();
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        const int isOpen = XRSFileIO::Open(c.path, &file, error);
        if (isOpen && !*c.says) { // the header opens; its cells must fail politely
            XString message;
            EXPECT_FALSE(file.GetBandAt(0)->GetTile(0, 0, 0, nullptr, message) &&
                         message.IsEmpty());
            ASSERT_TRUE(XRSFileIO::Open(SamplePath("gtiff/rgba.tif"), &file, error));
            continue;
        }
        EXPECT_FALSE(isOpen);
        EXPECT_GE(error.Find(c.says), 0) << error.GetString();
        EXPECT_EQ(error.IsEmpty(), 0);
        EXPECT_EQ(file.GetNumOfBands(), 4); // what was open stays open
    }
    EXPECT_FALSE(XRSFileIO::Open(SamplePath("gtiff/byte.tif"), nullptr, error));
    EXPECT_FALSE(
        XRSFileIO::LoadFileRaster(&file, 999, SamplePath("gtiff/byte.tif"), error, 1, 1, nullptr));
    EXPECT_GE(error.Find("999"), 0);
}

TEST(XRSFileIO, UnreadableFilesAreRefused)
{
    QTemporaryDir dir;
    const XString path = XfnWriteBytes(dir.filePath("locked.tif"), "II*");
    ASSERT_EQ(chmod(dir.path().toUtf8(), 0755), 0);
    ASSERT_EQ(chmod(path, 0), 0);
    const uid_t user = geteuid();
    ASSERT_TRUE(user != 0 || seteuid(65534) == 0); // nothing is locked for the superuser
    XRSFile file;
    XString error;
    EXPECT_FALSE(XRSFileIO::Open(path, &file, error));
    ASSERT_EQ(seteuid(user), 0);
    EXPECT_GE(error.Find("permission"), 0) << error.GetString();
}

TEST(XRSFileIO, AContainerOfImagesIsNoImage)
{
    // classic netCDF: two dimensions, two byte variables "a" and "b" of 2 x 3 over both
    QByteArray bytes("CDF\1", 4);
    const auto put = [&bytes](std::initializer_list<unsigned> words) {
        for (const unsigned word : words)
            for (int shift = 24; shift >= 0; shift -= 8)
                bytes.append(static_cast<char>(word >> shift));
    };
    const auto name = [](char letter) { return static_cast<unsigned>(letter) << 24; };
    put({0, 10, 2, 1, name('y'), 2, 1, name('x'), 3, 0, 0, 11, 2});
    put({1, name('a'), 2, 0, 1, 0, 0, 1, 8, 136});
    put({1, name('b'), 2, 0, 1, 0, 0, 1, 8, 144});
    ASSERT_EQ(bytes.size(), 136);
    bytes.append(16, 1);
    QTemporaryDir dir;
    XRSFile file;
    XString error;
    EXPECT_FALSE(XRSFileIO::Open(XfnWriteBytes(dir.filePath("two.nc"), bytes), &file, error));
    EXPECT_GE(error.Find("2 images inside"), 0) << error.GetString();
    EXPECT_GE(error.Find("two.nc"), 0);
    const auto parts = XRSFileIO::GetParts(dir.filePath("two.nc").toUtf8().constData());
    ASSERT_EQ(parts.size(), 2u);
    EXPECT_GE(error.Find(parts[1].name), 0) << error.GetString();
    ASSERT_TRUE(XRSFileIO::Open(parts[1].name, &file, error)) << error.GetString();
    EXPECT_EQ(file.GetBandAt(0)->GetXSize(), 3);
    EXPECT_FALSE(XRSFileIO::IsPlainPath(parts[1].name));
    EXPECT_TRUE(XRSFileIO::GetParts(SamplePath("gtiff/byte.tif")).empty());
}

TEST(XRSFileIO, AStoppedThreadEndsTheLoad)
{
    XThread thread;
    thread.Terminate();
    XRSFile file;
    XString error = "left over";
    EXPECT_FALSE(XRSFileIO::Open(SamplePath("gtiff/byte.tif"), &file, error, &thread));
    EXPECT_TRUE(error.IsEmpty());
    EXPECT_EQ(file.GetNumOfBands(), 0);
}

TEST(XRSFileIO, PlacesImagesInTheWorld)
{
    const struct
    {
        const char* path;
        int coordType, isNorthUp;
        double ulX, ulY; // of pixel (0, 0)
    } cases[] = {
        {"gtiff/byte.tif", 3, 1, 440750, 3751290},
        {"gtiff/byte_point.tif", 3, 1, 440720, 3751320}, // the file names pixel centres
        {"geomatrix.tif", 3, 0, 1841000, 1144000},
        {"gcp/byte_gcp_pixelispoint.tif", 3, 0, -180, 90},
        {"gcp/byte_gcp.tif", 1, 1, 0, 0}, // two points are too few
        {"gtiff/int16_big_endian.tif", 3, 1, 440750, 3751290},
        {"bmp-jpg/8bit_pal.bmp", 1, 1, 0, 0},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.path);
        const auto open = OpenFile(SamplePath(c.path));
        ASSERT_TRUE(open);
        const XDMBand* band = open->GetBandAt(0);
        EXPECT_EQ(band->GetSR()->GetCoordType(), c.coordType);
        EXPECT_EQ(band->GetGeometry().IsNorthUp(), c.isNorthUp);
        double x = 0, y = 0;
        band->ConvPixelToWorldCoord(x, y);
        EXPECT_NEAR(x, c.ulX, 1e-6);
        EXPECT_NEAR(y, c.ulY, 1e-6);
        EXPECT_TRUE(!c.isNorthUp || band->GetULY() == y);
    }
    XRSFile file;
    XString error;
    ASSERT_TRUE(XRSFileIO::Open(SamplePath("gcp/byte_gcp.tif"), &file, error));
    EXPECT_FALSE(file.GetNotes().IsEmpty());
    EXPECT_EQ(file.GetNumOfGCPSet(), 1);
    EXPECT_EQ(file.GetGCPSetAt(0)->points.size(), 2u);
    ASSERT_TRUE(XRSFileIO::Open(SamplePath("gcp/arcgis93_geodataxform_gcp.tif"), &file, error));
    ASSERT_EQ(file.GetGCPSetAt(0)->points.size(), 16u);
    for (const tagXGCP& p : file.GetGCPSetAt(0)->points) {
        double x = p.worldX, y = p.worldY; // a map sheet: bent by less than a pixel or two
        file.GetBandAt(0)->ConvWorldToPixelCoord(x, y);
        EXPECT_NEAR(x, p.pixelX, 8);
        EXPECT_NEAR(y, p.pixelY, 8);
    }
}

TEST(XRSFileIO, AGeoreferenceWithoutSenseIsNoted)
{
    QTemporaryDir dir;
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double cases[][6] = {{10, nan, 0, 20, 0, -1}, {10, 0, 0, 20, 0, 0}};
    for (const auto& t : cases) {
        // the bytes of a VRT, since writers refuse such numbers or mend them
        const XString path = XfnWriteBytes(
            dir.filePath("bad.vrt"),
            QByteArray("<VRTDataset rasterXSize=\"5\" rasterYSize=\"5\"><GeoTransform>10,") +
                (std::isnan(t[1]) ? "nan" : "0") + ",0,20,0," + (t[5] == 0 ? "0" : "-1") +
                "</GeoTransform><VRTRasterBand dataType=\"Byte\" band=\"1\"/></VRTDataset>");
        XRSFile file;
        XString error;
        ASSERT_TRUE(XRSFileIO::Open(path, &file, error)) << error.GetString();
        EXPECT_GE(file.GetNotes().Find("bad.vrt"), 0);
        EXPECT_EQ(file.GetSR()->GetCoordType(), 1);
        EXPECT_EQ(file.GetXPixelSize(), 1.0);
    }
}

TEST(XRSFileIO, ClassesAndColours)
{
    XRSFile file;
    XString error;
    ASSERT_TRUE(XRSFileIO::Open(SamplePath("lc.tif"), &file, error)) << error.GetString();
    const XDMBand* cover = file.GetBandAt(0);
    EXPECT_EQ(cover->GetBandType(), kXBandClassMap);
    ASSERT_TRUE(cover->HasColorTable());
    ASSERT_EQ(cover->GetNumOfGIS(), 256);
    EXPECT_EQ(cover->GetColorTable()[11] & 0xFFFFFFu, cover->GetGISAt(11)->red |
                                                          cover->GetGISAt(11)->green << 8 |
                                                          cover->GetGISAt(11)->blue << 16);
    EXPECT_NE(cover->GetColorTable()[11], cover->GetColorTable()[21]);
    ASSERT_TRUE(XRSFileIO::Open(SamplePath("envi/testenviclasses"), &file, error))
        << error.GetString();
    EXPECT_EQ(file.GetBandAt(0)->GetNumOfGIS(), 2);
    EXPECT_FALSE(file.GetBandAt(0)->GetGISAt(1)->name.IsEmpty());
    ASSERT_TRUE(XRSFileIO::Open(SamplePath("hfa/i8u_c_i.img"), &file, error)) << error.GetString();
    EXPECT_TRUE(file.GetBandAt(0)->HasColorTable());
    ASSERT_TRUE(XRSFileIO::Open(SamplePath("gtiff/rgba.tif"), &file, error)) << error.GetString();
    const int roles[] = {3, 4, 5, 6};
    for (int i = 0; i < 4; ++i)
        EXPECT_EQ(file.GetBandAt(i)->GetColorInterpretation(), roles[i]);
    EXPECT_EQ(file.GetBandAt(3)->GetBandType(), kXBandMask);
    EXPECT_EQ(file.GetBandAt(0)->GetColorTable(), nullptr);
}

TEST(XRSFileIO, WaveLengthsInNanometresWhateverTheHeaderSays)
{
    QTemporaryDir dir;
    const std::pair<const char*, double> cases[] = {
        {"wavelength units = Nanometers\nwavelength = {480, 560.5, 660}", 560.5},
        {"wavelength units = Micrometers\nwavelength = {0.48, 0.5605, 0.66}", 560.5},
        {"wavelength = {0.48, 0.5605, 0.66}", 560.5},
        {"wavelength = {480, 560.5, 660}", 560.5},
        {"", kXNotSet},
    };
    for (const auto& [header, wave] : cases) {
        SCOPED_TRACE(header);
        const QString path = XfnWriteRawRaster(
            dir.filePath("w.dat"),
            {.width = 2,
             .height = 1,
             .bands = 3,
             .extraHeader = QByteArray(header) +
                            "\nband names = {blue, green, red}\ndefault bands = {3, 2, 1}"},
            std::vector<short>{1, 2, 3, 4, 5, 6});
        ASSERT_FALSE(path.isEmpty());
        const auto file = OpenFile(path.toUtf8().constData());
        ASSERT_TRUE(file);
        EXPECT_DOUBLE_EQ(file->GetBandAt(1)->GetWaveLength(), wave);
        EXPECT_GE(file->GetBandAt(1)->GetBandName().Find("green"), 0);
        int rgb[3] = {};
        ASSERT_TRUE(file->GetHeaderBands(rgb));
        EXPECT_EQ(rgb[0], 2);
        EXPECT_EQ(rgb[2], 0);
    }
}
