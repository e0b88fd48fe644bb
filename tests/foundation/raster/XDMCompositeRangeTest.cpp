#include "foundation/raster/XDMComposite.h"

#include "tests/support/XBandPlaces.h"
#include "tests/support/XPixelGrid.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <limits>

namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInf = std::numeric_limits<double>::infinity();
constexpr std::uint32_t kBelow = 0xFF204060u;

TEST(XDMCompositeRange, OnlyTheRangeAskedForIsDrawn)
{
    auto band = XfnMakeBand(kXUInt8, 6, 4, [](int, int) { return 255; });
    XDMComposite composite;
    composite.SetBand(band.get(), 0);
    XBackBuffer buffer = XfnMakeSurface(6, 4);
    // the centres of columns 1 to 3 and rows 1 and 2; the corners come in any order
    EXPECT_TRUE(composite.Draw(&buffer, 3.4, -0.6, 0.6, -2.4, 1, nullptr, nullptr));
    EXPECT_EQ(XfnPixelGrid(buffer.GetImage()), XfnRows({"......", ".WWW..", ".WWW..", "......"}));
    double x0, y0, x1, y1;
    composite.GetDrawRange(x0, y0, x1, y1);
    EXPECT_EQ(x0, 0.6);
    EXPECT_EQ(y1, -0.6);
}

TEST(XDMCompositeRange, ExtremeMappingsAndRangesNeitherCrashNorOverflow)
{
    auto byte = XfnMakeBand(kXUInt8, 300, 200, XfnPattern);
    auto bent = XfnMakeBand(kXFloat, 300, 200, XfnPattern);
    XfnPlaceOnPoints(*bent);
    for (XDMBandMemory* band : {byte.get(), bent.get()}) {
        for (const double perPixel : {1e-150, 1e-12, 1e-3, 1e12, 1e100}) {
            for (const double centre : {0.0, 150.0, -1e18, 1e290}) {
                for (const double angle : {0.0, 12.5}) {
                    for (const int isSmooth : {0, 1}) {
                        XDMComposite composite;
                        composite.SetBand(band, 0);
                        composite.SetInterpolatePixel(isSmooth);
                        XBackBuffer buffer = XfnMakeSurface(40, 30);
                        buffer.SetWorldPerPixel(perPixel, perPixel);
                        buffer.SetWorldToCenter(centre, -centre);
                        buffer.SetRotationAngle(angle);
                        composite.Draw(&buffer, -1e300, -1e300, 1e300, 1e300, 1, nullptr, nullptr);
                        XfnDrawAll(composite, buffer);
                        composite.GetHighestLevelForTarget(&buffer, -1e300, 0, 1e300, 1);
                    }
                }
            }
        }
        XDMComposite composite;
        composite.SetBand(band, 0);
        XBackBuffer buffer = XfnMakeSurface(40, 30);
        EXPECT_FALSE(composite.Draw(&buffer, kNaN, 0, 10, 10, 1, nullptr, nullptr));
        EXPECT_FALSE(composite.Draw(&buffer, 0, -kInf, 10, 10, 1, nullptr, nullptr));
        XBackBuffer empty;
        EXPECT_FALSE(composite.Draw(&empty, 0, 0, 10, 10, 1, nullptr, nullptr));
        EXPECT_EQ(composite.GetHighestLevelForTarget(nullptr, 0, 0, 1, 1), 0);
        EXPECT_EQ(composite.GetHighestLevelForTarget(&empty, kNaN, 0, 1, 1), 0);
    }
    // one pixel of the raster fills a surface deep inside it
    XDMComposite composite;
    composite.SetBand(byte.get(), 0);
    XBackBuffer buffer = XfnMakeSurface(40, 30);
    buffer.SetWorldPerPixel(1e-12, 1e-12);
    buffer.SetWorldToCenter(17.2, -31.3);
    EXPECT_TRUE(XfnDrawAll(composite, buffer));
    for (const int x : {0, 39})
        EXPECT_EQ(buffer.GetRow(29)[x] & 0xFFu, unsigned(XfnPattern(17, 31)));
}

/// A band of which some tiles cannot be read, and which can raise an abort word while it is read.
class XFrailBand : public XDMBandMemory
{
public:
    int failTx = -1;
    std::atomic<int>* raised = nullptr;
    mutable std::atomic<int> tiles{0};

protected:
    std::shared_ptr<const XTile> ReadTile(int level, int tx, int ty, const std::atomic<int>* abort,
                                          XString& message) const override
    {
        ++tiles;
        if (raised) *raised = 1;
        if (tx == failTx) {
            message = "The tile is damaged.";
            return nullptr;
        }
        return XDMBandMemory::ReadTile(level, tx, ty, abort, message);
    }
};

TEST(XDMCompositeRange, ATileThatFailsLeavesItsAreaAndTheRestIsDrawn)
{
    for (const int isSmooth : {0, 1}) {
        for (const double angle : {0.0, 180.0}) {
            XFrailBand band;
            std::vector<unsigned char> white(700 * 10, 255);
            ASSERT_TRUE(band.Create(kXUInt8, 700, 10, white.data()));
            band.failTx = 1;
            XDMComposite composite;
            composite.SetBand(&band, 0);
            composite.SetInterpolatePixel(isSmooth);
            XBackBuffer buffer = XfnMakeSurface(700, 10, kBelow);
            buffer.SetRotationAngle(angle);
            EXPECT_FALSE(XfnDrawAll(composite, buffer)) << "a hole is not everything";
            for (int x = 0; x < 700; ++x) {
                const std::uint32_t word = buffer.GetRow(5)[angle == 0.0 ? x : 699 - x];
                ASSERT_EQ(word, x / 256 == 1 ? kBelow : 0xFFFFFFFFu) << x << " " << isSmooth;
            }
        }
    }
}

TEST(XDMCompositeRange, AnAbortEndsTheDrawingWhereverItRises)
{
    for (const int isSmooth : {0, 1}) {
        XFrailBand band;
        std::atomic<int> abort{0};
        ASSERT_TRUE(band.Create(kXUInt8, 700, 300));
        band.raised = &abort;
        XDMComposite composite;
        composite.SetBand(&band, 0);
        composite.SetInterpolatePixel(isSmooth);
        XBackBuffer buffer = XfnMakeSurface(700, 300, kBelow);
        EXPECT_FALSE(XfnDrawAll(composite, buffer, &abort));
        EXPECT_EQ(buffer.GetRow(299)[699], kBelow) << "the far corner comes last";
        abort = 1;
        band.raised = nullptr;
        XBackBuffer untouched = XfnMakeSurface(700, 300, kBelow);
        EXPECT_FALSE(XfnDrawAll(composite, untouched, &abort));
        EXPECT_EQ(untouched.GetImage(), XfnMakeSurface(700, 300, kBelow).GetImage());
    }
}

TEST(XDMCompositeRange, AnAbortEndsTheSearchForARangeToo)
{
    for (const int stretch : {1, 5}) {
        XFrailBand band;
        std::atomic<int> abort{0};
        ASSERT_TRUE(band.Create(kXUInt16, 2100, 600));
        static_cast<std::uint16_t*>(band.GetData())[2100 * 600 - 1] = 700;
        band.raised = &abort;
        XDMComposite composite;
        composite.SetBand(&band, 0);
        composite.SetStretchType(stretch, 0);
        XBackBuffer buffer = XfnMakeSurface(700, 300, kBelow);
        EXPECT_FALSE(XfnDrawAll(composite, buffer, &abort));
        EXPECT_EQ(band.tiles, 1);
        EXPECT_FALSE(band.HasStatistics());
        abort = 0;
        band.raised = nullptr;
        EXPECT_TRUE(XfnDrawAll(composite, buffer, &abort));
        EXPECT_EQ(composite.GetCutMax(0), 700.0);
    }
}

TEST(XDMCompositeRange, ImagesKeepTheirPlaceOnEveryLevel)
{
    // white in the left upper quarter: on each level the quarter must fill the same part of the
    // surface
    for (const tagPlace& place : kPlaces) {
        auto band = XfnMakeBand(kXUInt8, 1023, 801,
                                [](int x, int y) { return x < 512 && y < 401 ? 255 : 100; });
        place.place(*band);
        ASSERT_GE(band->GetNumOfLevels(), 3);
        XDMComposite composite;
        composite.SetBand(band.get(), 0);
        const auto [left, right, bottom, top] = XfnBoundsOf(composite);
        std::vector<int> whiteCounts, grayCounts;
        for (int level = 0; level < band->GetNumOfLevels(); ++level) {
            XBackBuffer buffer = XfnMakeSurface(200, 150);
            buffer.ZoomFit(left, bottom, right, top);
            composite.SetDrawLevel(level);
            ASSERT_TRUE(XfnDrawAll(composite, buffer));
            int white = 0, gray = 0;
            for (int y = 0; y < 150; ++y)
                for (int x = 0; x < 200; ++x) {
                    const unsigned value = buffer.GetRow(y)[x] & 0xFFu;
                    white += value == 255;
                    gray += value == 100;
                }
            whiteCounts.push_back(white);
            grayCounts.push_back(gray);
        }
        for (std::size_t k = 1; k < whiteCounts.size(); ++k) {
            EXPECT_NEAR(whiteCounts[k], whiteCounts[0], 160) << place.name << " level " << k;
            EXPECT_NEAR(grayCounts[k], grayCounts[0], 260) << place.name << " level " << k;
        }
        EXPECT_GT(whiteCounts[0], 2000) << place.name;
    }
}

TEST(XDMCompositeRange, LevelsAreTheOnesJustFinerThanTheView)
{
    auto band = XfnMakeBand(kXUInt8, 4000, 3000, [](int, int) { return 1; });
    XDMComposite composite;
    composite.SetBand(band.get(), 0);
    EXPECT_EQ(composite.GetMaxLevel(), band->GetNumOfLevels() - 1);
    const std::pair<double, int> kCases[] = {{0.25, 0}, {1.0, 0}, {1.9, 0},   {2.0, 1},
                                             {3.9, 1},  {4.0, 2}, {1000.0, 4}};
    for (const auto& [perPixel, level] : kCases) {
        for (const double angle : {0.0, 30.0}) {
            XBackBuffer buffer = XfnMakeSurface(300, 200, kBelow, perPixel);
            buffer.SetRotationAngle(angle);
            const auto box = XfnBoxOf(buffer);
            EXPECT_EQ(composite.GetHighestLevelForTarget(&buffer, box[0], box[1], box[2], box[3]),
                      level)
                << perPixel << " " << angle;
        }
    }
    // half the range needs a level finer
    XBackBuffer buffer = XfnMakeSurface(300, 200, kBelow, 4.0);
    EXPECT_EQ(composite.GetHighestLevelForTarget(&buffer, 0, -400, 600, 0), 1);
}

TEST(XDMCompositeRange, TheOwnBufferTheBoundaryAndPixelBase)
{
    auto band = XfnMakeBand(kXUInt8, 4, 3, [](int, int) { return 0; });
    XBandGeometry geometry;
    geometry.SetNorthUp(5000.0, 7000.0, 10.0, 10.0);
    band->SetGeometry(geometry);
    XDMComposite composite;
    composite.SetBand(band.get(), 0);
    composite.SetPixelBaseMode(1);
    composite.SetBackColor(0x0000FF); // red lowest
    composite.SetDrawBoundaryFlag(1);
    composite.SetBoundaryColor(0xFF00FF00);
    XBackBuffer* own = composite.GetBackBuffer();
    *own = XfnMakeSurface(8, 7);
    own->SetWorldToCenter(1.5, -1.0);
    ASSERT_TRUE(XfnDrawAll(composite, *own)); // as a lent buffer it is not cleared
    EXPECT_EQ(own->GetRow(0)[0], 0xFF000000u);
    ASSERT_TRUE(composite.Draw(nullptr, -100, -100, 100, 100, 1, nullptr, nullptr));
    EXPECT_EQ(own->GetRow(0)[0], 0xFFFF0000u);
    EXPECT_EQ(own->GetRow(3)[4], 0xFF000000u);
    EXPECT_EQ(XfnPixelGrid(own->GetImage()).substr(3 * 9, 9), "RRG...GR\n")
        << "left and right edge, each on the pixel right of it";
    tagBITMAPINFO info;
    EXPECT_TRUE(composite.GetDIBits(info));
    EXPECT_EQ(info.bmiHeader.biWidth, 8);
    composite.SetPixelBaseMode(0);
    EXPECT_EQ(XfnBoundsOf(composite), (XBounds{5000, 5030, 6980, 7000}));
}

TEST(XDMCompositeRange, ALateChangeOfTheStretchReachesTheTables)
{
    // the tables of 16-bit types are kept between drawings
    auto band = XfnMakeBand(kXUInt16, {{0, 1000, 2000}});
    XDMComposite composite;
    composite.SetBand(band.get(), 0);
    composite.SetCutRange(0, 2000, 0);
    XBackBuffer buffer = XfnMakeSurface(3, 1);
    ASSERT_TRUE(XfnDrawAll(composite, buffer));
    EXPECT_EQ(XfnPixelGrid(buffer.GetImage()), XfnRows({".#W"}));
    composite.SetCutRange(0, 1000, 0);
    ASSERT_TRUE(XfnDrawAll(composite, buffer));
    EXPECT_EQ(XfnPixelGrid(buffer.GetImage()), XfnRows({".WW"}));
    unsigned char table[256] = {};
    table[255] = 255;
    table[0] = 128;
    composite.SetLUT(table, 0);
    ASSERT_TRUE(XfnDrawAll(composite, buffer));
    EXPECT_EQ(XfnPixelGrid(buffer.GetImage()), XfnRows({"#WW"}));
    XDMComposite clone;
    clone.CloneXDMComposite(&composite);
    XBackBuffer copy = XfnMakeSurface(3, 1);
    ASSERT_TRUE(XfnDrawAll(clone, copy));
    EXPECT_EQ(copy.GetImage(), buffer.GetImage());
}

} // namespace
