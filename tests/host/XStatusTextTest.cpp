#include "host/XStatusText.h"

#include "foundation/base/XSentinels.h"
#include "host/XLayerReport.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInf = std::numeric_limits<double>::infinity();

TEST(XStatusTextTest, Samples)
{
    struct tagXRow
    {
        double value;
        const char* text;
    };
    const tagXRow rows[] = {
        {0, "0"},
        {255, "255"},
        {-32768, "-32768"},
        {0.1f, "0.1"},
        {1234567.125, "1234567"},
        {kXNoData, "no data"},
        {kNaN, "NaN"},
        {kInf, "Inf"},
        {-kInf, "-Inf"},
        {kXNotSet, "no data"},
        {4294967295.0, "4294967295"},
        {1e300, "1e+300"},
        {-0.0, "0"},
    };
    for (const tagXRow& row : rows)
        EXPECT_EQ(XfnSampleText(row.value), row.text) << row.value;
    const double values[3] = {1, 2.5, kXNoData};
    EXPECT_EQ(XfnSamplesText(values, true), "R 1  G 2.5  B no data");
    EXPECT_EQ(XfnSamplesText(values, false), "1");
}

TEST(XStatusTextTest, Positions)
{
    EXPECT_EQ(XfnPositionText(288776.254, 9110743.746, WorldUnit::Linear), "288776.25  9110743.75");
    EXPECT_EQ(XfnPositionText(-34.9, -8.04167, WorldUnit::Degree), "-34.900000  -8.041670");
    EXPECT_EQ(XfnPositionText(-0.001, 0.001, WorldUnit::Unknown), "0.00  0.00") << "no minus zero";
    EXPECT_EQ(XfnPositionText(kNaN, 0, WorldUnit::Linear), "");
    // pixel centres are whole numbers and rows run down
    EXPECT_EQ(XfnPositionText(12.4, -34.4, WorldUnit::Pixel), "column 12  row 34");
    EXPECT_EQ(XfnPositionText(-0.4, 0.4, WorldUnit::Pixel), "column 0  row 0");
}

TEST(XStatusTextTest, GeographicPositions)
{
    const QString degree(QChar(0xB0));
    EXPECT_EQ(XfnGeographicText(-8.04167, -34.9, GeoFormat::Decimal), "8.041670 S  34.900000 W");
    EXPECT_EQ(XfnGeographicText(37.5, 126.999999999, GeoFormat::Dms),
              QString("37%130'00.00\"N  127%100'00.00\"E").replace("%1", degree))
        << "seconds never read 60";
    EXPECT_EQ(XfnGeographicText(91, 0, GeoFormat::Decimal), "");
    EXPECT_EQ(XfnGeographicText(0, kInf, GeoFormat::Dms), "");
}

TEST(XStatusTextTest, Scales)
{
    const QString thin(QChar(0x2009));
    struct tagXRow
    {
        const char* name;
        double worldPerPixel, metres, rasterPixel;
        ZoomFormat format;
        QString text;
    };
    const tagXRow rows[] = {
        {"30 m pixels at 96 dpi", 30, 1, 30, ZoomFormat::Ratio, "1:113" + thin + "386"},
        {"feet", 30 / 0.3048, 0.3048, 30, ZoomFormat::Ratio, "1:113" + thin + "386"},
        {"enlarged beyond nature", 1e-4, 1, 30, ZoomFormat::Ratio, "1:0.38"},
        {"enlarged without end", 1e-6, 1, 30, ZoomFormat::Ratio, "1:0.0038"},
        {"no metres known", 0.5, 0, 1, ZoomFormat::Ratio, "200 %"},
        {"one to one", 28.5, 1, 28.5, ZoomFormat::Percent, "100 %"},
        {"small", 1000, 1, 30, ZoomFormat::Percent, "3.00 %"},
        {"nothing to compare with", 1, 0, 0, ZoomFormat::Percent, ""},
        {"no mapping", 0, 1, 1, ZoomFormat::Ratio, ""},
        {"not a number", kNaN, 1, 1, ZoomFormat::Percent, ""},
    };
    for (const tagXRow& row : rows)
        EXPECT_EQ(XfnZoomText(row.worldPerPixel, row.metres, row.rasterPixel, 96, row.format),
                  row.text)
            << row.name;
    EXPECT_NEAR(XfnMetresPerDegree(60), XfnMetresPerDegree(0) / 2, 1e-6);
    EXPECT_GT(XfnMetresPerDegree(90), 0);
}

TEST(XStatusTextTest, ACopiedPositionNamesItsSystem)
{
    EXPECT_EQ(XfnCoordinateForClipboard(288776.25, 9110743.75, WorldUnit::Linear, 31985, "SIRGAS"),
              "288776.2500 9110743.7500 EPSG:31985 (SIRGAS)");
    EXPECT_EQ(XfnCoordinateForClipboard(-34.9, -8.5, WorldUnit::Degree, 4326, "WGS 84"),
              "lat -8.50000000 lon -34.90000000 EPSG:4326 (WGS 84)");
    EXPECT_EQ(XfnCoordinateForClipboard(1, 2, WorldUnit::Unknown, 0, ""),
              "1.0000 2.0000 (unknown coordinate system)");
    EXPECT_EQ(XfnCoordinateForClipboard(12.5, -30.5, WorldUnit::Pixel, 0, ""),
              "column 12.5 row 30.5 (no coordinate system)");
    EXPECT_EQ(XfnCoordinateForClipboard(kNaN, 0, WorldUnit::Linear, 1, "x"), "");
}

TEST(XLayerReportTest, Sizes)
{
    EXPECT_EQ(XfnByteSizeText(0), "0 bytes");
    EXPECT_EQ(XfnByteSizeText(1023), "1023 bytes");
    EXPECT_EQ(XfnByteSizeText(1024), "1.0 KiB");
    EXPECT_EQ(XfnByteSizeText(798453), "779.7 KiB");
    EXPECT_EQ(XfnByteSizeText(1LL << 30), "1.0 GiB");
    EXPECT_EQ(XfnByteSizeText((1LL << 30) - 1), "1.0 GiB") << "never 1024.0 MiB";
}

} // namespace
