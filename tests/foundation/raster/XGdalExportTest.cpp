#include "foundation/raster/XGdalExport.h"
#include "foundation/raster/XDMFileSaver.h"
#include "foundation/raster/XRSFile.h"
#include "foundation/raster/XRSFileIO.h"
#include "tests/support/XBandPlaces.h"
#include "tests/support/XFileBytes.h"
#include "tests/support/XGdalSample.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QTemporaryDir>

#include <cmath>

namespace {

class XGdalExport : public ::testing::Test
{
protected:
    XString Path(const char* name) { return dir.filePath(name).toUtf8().constData(); }
    XString Export(XRSFile& file, const char* name, const tagXSaveControl& control = {})
    {
        XString error;
        if (!XfnExportRaster(file, Path(name), control, error) && error.IsEmpty())
            error = "stopped";
        return error;
    }
    QStringList Names()
    {
        return QDir(dir.path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    }

    QTemporaryDir dir;
};

/// Every sample as GDAL reads it, real and imaginary in turn.
std::vector<double> ReadAll(const XString& path, int band)
{
    GDALAllRegister();
    GDALDataset* dataset = GDALDataset::Open(path, GDAL_OF_RASTER);
    if (!dataset) return {};
    const int width = dataset->GetRasterXSize();
    const int height = dataset->GetRasterYSize();
    std::vector<double> samples(2 * static_cast<std::size_t>(width) *
                                static_cast<std::size_t>(height));
    if (dataset->GetRasterBand(band)->RasterIO(GF_Read, 0, 0, width, height, samples.data(), width,
                                               height, GDT_CFloat64, 0, 0, nullptr) != CE_None)
        samples.clear();
    GDALClose(dataset);
    return samples;
}

/// The first pixel.
double SampleOf(XDMBand& band)
{
    tagXArr2 block;
    tagXArr2* pixel = &block;
    return band.ReadPixel(pixel, 0, 0) ? block.GetValue(0, 0) : kXNoData;
}

TEST_F(XGdalExport, EveryTypeArrivesWithItsValues)
{
    for (int type = kXUInt8; type <= kXDoubleComplex; ++type) {
        SCOPED_TRACE(type);
        const bool isSigned = XfnGetPartType(type) % 2 == 0 || XfnGetPartType(type) == kXFloat;
        const auto value = [&](int x, int y) {
            return isSigned ? XfnPattern(x, y) % 200 - 100 : XfnPattern(x, y);
        };
        XRSFile file;
        file.AddBand(XfnMakeBand(type, 300, 270, value).release());
        XString error;
        ASSERT_TRUE(XDMFileSaver::Save(file, Path("a.xdm"), XDMCompression::Zstd, {}, error));
        XRSFile native;
        ASSERT_TRUE(native.LoadFileXDM(Path("a.xdm"), error, nullptr)) << error.GetString();
        ASSERT_STREQ(Export(native, "a.tif"), "");
        const std::vector<double> got = ReadAll(Path("a.tif"), 1);
        ASSERT_EQ(got.size(), 2u * 300 * 270);
        int wrong = 0;
        for (int y = 0; y < 270; ++y) {
            for (int x = 0; x < 300; ++x) {
                const double* sample = &got[2 * static_cast<std::size_t>(y * 300 + x)];
                double re, im;
                tagXArr2 block;
                tagXArr2* pixel = &block;
                if ((x + y) % 17) continue;
                ASSERT_TRUE(file.GetBandAt(0)->ReadPixel(pixel, x, y));
                XfnReadComplexSample(block.base, type, re, im);
                wrong += sample[0] != re || sample[1] != im;
            }
        }
        EXPECT_EQ(wrong, 0);
    }
}

TEST_F(XGdalExport, SignedBytesOfAGdalFileAreNotTakenForOthers)
{
    XRSFile file;
    XString error;
    ASSERT_TRUE(XRSFileIO::Open(XString(TQL_TEST_DATA) + "/raster/gtiff/int8.tif", &file, error));
    EXPECT_GE(Export(file, "a.png").Find("Int16"), 0);
    ASSERT_STREQ(Export(file, "a.jp2"), "");
    EXPECT_EQ(ReadAll(Path("a.jp2"), 1)[0], SampleOf(*file.GetBandAt(0)));
    ASSERT_STREQ(Export(file, "a.tif"), "");
    XRSFile back;
    ASSERT_TRUE(XRSFileIO::Open(Path("a.tif"), &back, error));
    EXPECT_EQ(back.GetBandAt(0)->GetDataType(), kXInt8);
}

TEST_F(XGdalExport, GeometryAndDescriptionArrive)
{
    for (const tagPlace& place : kPlaces) {
        SCOPED_TRACE(place.name);
        auto made = XfnMakeBand(kXInt16, 80, 50, XfnPattern);
        place.place(*made);
        made->SetBandName("first");
        made->SetNullValue(7);
        made->SetScale(0.5);
        made->SetOffset(-3);
        if (made->GetGeometry().IsGeoreferenced()) {
            ASSERT_TRUE(made->GetSR()->importFromEPSG(32652));
            made->GetSR()->SetCoordType(3);
        }
        XRSFile file;
        const XDMBand& from = *made;
        file.AddBand(made.release());
        file.AddBand(XfnMakeBand(kXFloat, 80, 50, XfnPattern).release());
        ASSERT_STREQ(Export(file, "a.tif"), "");
        XRSFile back;
        XString error;
        ASSERT_TRUE(XRSFileIO::Open(Path("a.tif"), &back, error)) << error.GetString();
        XDMBand& band = *back.GetBandAt(0);
        EXPECT_EQ(band.GetDataType(), kXFloat) << "the one type that holds both bands";
        EXPECT_STREQ(band.GetBandName(), "first");
        EXPECT_EQ(band.GetNullValue(), 7.0);
        EXPECT_EQ(band.GetScale(), 0.5);
        EXPECT_EQ(band.GetOffset(), -3.0);
        EXPECT_EQ(band.GetGeometry().IsGeoreferenced(), from.GetGeometry().IsGeoreferenced());
        for (const auto& [px, py] :
             {std::pair(0.0, 0.0), {79.0, 0.0}, {13.5, 49.0}, {40.0, 25.0}}) {
            double x = px, y = py, wx = px, wy = py;
            band.ConvPixelToWorldCoord(x, y);
            from.ConvPixelToWorldCoord(wx, wy);
            EXPECT_NEAR(x, wx, 1e-6);
            EXPECT_NEAR(y, wy, 1e-6);
        }
        if (!from.GetSR()->IsEmpty()) {
            EXPECT_TRUE(band.GetSR()->IsSame(from.GetSR()));
        }
    }
    XRSFile file;
    auto made = XfnMakeBand(kXUInt8, 20, 10, [](int x, int) { return x % 2; });
    made->SetGISTable({{10, 20, 30, 255, 0, "water"}, {40, 50, 60, 255, 0, "land"}}, 1);
    file.AddBand(made.release());
    ASSERT_STREQ(Export(file, "c.img"), "");
    XRSFile back;
    XString error;
    ASSERT_TRUE(XRSFileIO::Open(Path("c.img"), &back, error)) << error.GetString();
    ASSERT_TRUE(back.GetBandAt(0)->HasColorTable());
    EXPECT_EQ(back.GetBandAt(0)->GetGISAt(1)->green, 50);
    EXPECT_STREQ(back.GetBandAt(0)->GetGISAt(0)->name, "water");
}

TEST_F(XGdalExport, WhatWasChangedInTheModelArrives)
{
    const struct
    {
        const char* name;
        void (*change)(XRSFile&);
        bool (*isThere)(XRSFile&);
    } cases[] = {
        {"nothing", [](XRSFile&) {}, [](XRSFile& f) { return f.GetBandAt(0)->GetScale() == 2.0; }},
        {"the null value", [](XRSFile& f) { f.GetBandAt(0)->SetNullValue(9); },
         [](XRSFile& f) { return f.GetBandAt(0)->GetNullValue() == 9; }},
        {"a name", [](XRSFile& f) { f.GetBandAt(1)->SetBandName("red edge"); },
         [](XRSFile& f) { return f.GetBandAt(1)->GetBandName() == "red edge"; }},
        {"the place",
         [](XRSFile& f) { f.GetBandAt(0)->SetUpperLeft(7, 8), f.GetBandAt(1)->SetUpperLeft(7, 8); },
         [](XRSFile& f) { return f.GetBandAt(0)->GetULX() == 7; }},
        {"the reference", [](XRSFile& f) { f.GetBandAt(0)->GetSR()->importFromEPSG(32652); },
         [](XRSFile& f) {
             XSpatialReference wanted;
             return wanted.importFromEPSG(32652) && f.GetBandAt(0)->GetSR()->IsSame(&wanted);
         }},
        {"classes",
         [](XRSFile& f) {
             f.GetBandAt(0)->SetGISTable({{1, 2, 3, 255, 0, "sea"}, {4, 5, 6, 255, 0, "land"}}, 0);
         },
         [](XRSFile& f) { return f.GetBandAt(0)->GetNumOfGIS() == 2; }},
        {"another band",
         [](XRSFile& f) { f.AddBand(XfnMakeBand(kXUInt8, 40, 30, XfnPattern).release()); },
         [](XRSFile& f) { return f.GetNumOfBands() == 3; }},
    };
    tagXGdalSample sample{.width = 40, .height = 30, .bands = 2};
    sample.value = [](int x, int y, int) { return XfnPattern(x, y); };
    sample.prepare = [](GDALDataset& ds) {
        double t[6] = {100, 2, 0, 900, 0, -2};
        ds.SetGeoTransform(t);
        ds.GetRasterBand(1)->SetScale(2.0);
    };
    const XString path = XfnWriteGdalSample(dir.filePath("from.tif"), sample);
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        XRSFile file, back;
        XString error;
        ASSERT_TRUE(XRSFileIO::Open(path, &file, error)) << error.GetString();
        c.change(file);
        ASSERT_STREQ(Export(file, "to.tif"), "");
        ASSERT_TRUE(XRSFileIO::Open(Path("to.tif"), &back, error)) << error.GetString();
        EXPECT_TRUE(c.isThere(back));
        EXPECT_EQ(SampleOf(*back.GetBandAt(1)), XfnPattern(0, 0));
    }
    XRSFile file;
    XString error;
    ASSERT_TRUE(XRSFileIO::Open(path, &file, error));
    XfnWriteBytes(path.GetString(), "x", QIODevice::Append);
    EXPECT_GE(Export(file, "to.tif").Find("was changed after it was opened"), 0);
}

TEST_F(XGdalExport, EveryFileOfAFormatComesAndAStopLeavesNothing)
{
    XRSFile file;
    file.AddBand(XfnMakeBand(kXUInt16, 900, 700, XfnPattern).release());
    ASSERT_STREQ(Export(file, "a.bil"), "");
    EXPECT_TRUE(Names().contains("a.hdr"));
    // a part of an older file would be taken for one of the new; that of another image stays
    const std::pair<const char*, const char*> kAside[] = {{"b.tif.aux.xml", "<PAMDataset/>"},
                                                          {"b.tfw", "10\n0\n0\n-10\n500\n900\n"},
                                                          {"b.wld", "10\n0\n0\n-10\n500\n900\n"}};
    for (const auto& [name, text] : kAside)
        XfnWriteBytes(dir.filePath(name), text);
    ASSERT_STREQ(Export(file, "b.tif"), "");
    EXPECT_FALSE(Names().contains("b.tif.aux.xml"));
    EXPECT_FALSE(Names().contains("b.tfw"));
    EXPECT_TRUE(Names().contains("b.wld"));
    ASSERT_STREQ(Export(file, "b.tif"), "");
    EXPECT_FALSE(Names().contains("b.wld")) << "it placed the image that is replaced";

    const QStringList before = Names();
    std::atomic<int> abort{0};
    tagXSaveControl control;
    control.abort = &abort;
    control.progress = [&](int) { abort = 1; };
    EXPECT_STREQ(Export(file, "c.tif", control), "stopped");
    EXPECT_STREQ(Export(file, "b.tif", control), "stopped");
    file.AddBand(XfnMakeBand(kXUInt16, 90, 70, XfnPattern).release());
    EXPECT_GE(Export(file, "b.tif").Find("another size"), 0);
    EXPECT_EQ(Names(), before);
    EXPECT_EQ(ReadAll(Path("b.tif"), 1).size(), 2u * 900 * 700) << "the older file survives";
}

} // namespace
