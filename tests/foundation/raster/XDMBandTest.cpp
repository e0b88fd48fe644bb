#include "foundation/base/XMemory.h"
#include "foundation/raster/XDMBandMemory.h"
#include "foundation/raster/XDMVand.h"
#include "foundation/raster/XRSFile.h"
#include "foundation/raster/XRasterTypes.h"
#include "foundation/vector/XvcBase.h"
#include "tests/support/XBandSamples.h"

#include <gtest/gtest.h>

#include <climits>
#include <memory>

namespace {

constexpr int kWidth = 1030;
constexpr int kHeight = 517;

double ValueAt(int x, int y)
{
    return (x * 7 + y * 31) % 60000;
}

struct tagBlock
{
    tagXArr2* block = nullptr;
    ~tagBlock() { delete block; }
};

} // namespace

TEST(XDMBand, LevelsHalveDownTo256)
{
    const auto band = XfnMakeBand(kXUInt16, kWidth, kHeight, ValueAt);
    const int sizes[][2] = {{1030, 517}, {515, 259}, {258, 130}, {129, 65}};
    ASSERT_EQ(band->GetNumOfLevels(), 4);
    EXPECT_EQ(band->GetLevel(), 3);
    for (int level = 0; level < 4; ++level) {
        int width, height;
        band->GetLevelSize(level, width, height);
        EXPECT_EQ(width, sizes[level][0]);
        EXPECT_EQ(height, sizes[level][1]);
        EXPECT_EQ(band->IsVirtualLevel(level), level > 0);
    }
    EXPECT_EQ(XfnMakeBand(kXUInt8, 256, 256, ValueAt)->GetNumOfLevels(), 1);
    EXPECT_EQ(XfnMakeBand(kXUInt8, 257, 1, ValueAt)->GetNumOfLevels(), 2);
    EXPECT_EQ(band->CalcProcessWidthBytes(), kWidth * 2 * 10);
}

TEST(XDMBand, EveryReadGivesTheSamePixels)
{
    for (const int type : {kXUInt16, kXDouble, kXDoubleComplex}) {
        const auto band = XfnMakeBand(type, kWidth, kHeight, ValueAt);
        tagBlock b;
        ASSERT_TRUE(band->ReadSubset(b.block, 0, 200, 900, 100, 516, nullptr));
        ASSERT_EQ(b.block->width, 701);
        ASSERT_EQ(b.block->height, 417);
        for (int y = 0; y < 417; y += 13)
            for (int x = 0; x < 701; ++x)
                ASSERT_EQ(b.block->GetValue(x, y), ValueAt(200 + x, 100 + y));
        ASSERT_TRUE(band->ReadLineH(b.block, 0, 300));
        EXPECT_EQ(b.block->GetValue(1029, 0), ValueAt(1029, 300));
        ASSERT_TRUE(band->ReadLineH(b.block, 0, 300, 250, 20));
        EXPECT_EQ(b.block->width, 20);
        EXPECT_EQ(b.block->GetValue(19, 0), ValueAt(269, 300));
        ASSERT_TRUE(band->ReadLineV(b.block, 0, 511));
        EXPECT_EQ(b.block->height, kHeight);
        EXPECT_EQ(b.block->GetValue(0, 516), ValueAt(511, 516));
        ASSERT_TRUE(band->ReadLineV(b.block, 1, 5, 250, 9));
        EXPECT_EQ(b.block->GetValue(0, 8), ValueAt(11, XfnPickPixel(258, 259, kHeight)));
        ASSERT_TRUE(band->ReadPixel(b.block, 1029, 0));
        EXPECT_EQ(b.block->GetValue(0, 0), ValueAt(1029, 0));
        void* data = nullptr;
        int width, height;
        ASSERT_TRUE(
            band->ReadSubset(data, width, height, 2, 0, kWidth - 1, 0, kHeight - 1, nullptr));
        EXPECT_EQ(width, 258);
        EXPECT_EQ(height, 130);
        EXPECT_EQ(XfnReadSample(static_cast<char*>(data) + band->GetDataSize() * 258, type),
                  ValueAt(XfnPickPixel(0, 258, kWidth), XfnPickPixel(1, 130, kHeight)));
        XMemory::Free(data);
    }
}

TEST(XDMBand, RefusesWhatLiesOutside)
{
    const auto band = XfnMakeBand(kXUInt8, 20, 10, ValueAt);
    const int windows[][5] = {
        // level x0 x1 y0 y1
        {0, -1, 5, 0, 5}, {0, 0, 20, 0, 5}, {0, 0, 5, 0, 10}, {0, 6, 5, 0, 5},
        {1, 0, 5, 0, 5},  {-1, 0, 5, 0, 5}, {0, 0, 5, 3, 2},
    };
    tagBlock b;
    XString message;
    void* data = nullptr;
    int width, height;
    for (const auto& w : windows) {
        EXPECT_FALSE(band->ReadSubset(b.block, w[0], w[1], w[2], w[3], w[4], nullptr, &message));
        EXPECT_FALSE(message.IsEmpty());
        EXPECT_FALSE(band->ReadSubset(data, width, height, w[0], w[1], w[2], w[3], w[4], nullptr));
        EXPECT_EQ(data, nullptr);
    }
    EXPECT_FALSE(band->ReadLineH(b.block, 0, 10));
    EXPECT_FALSE(band->ReadLineH(b.block, 0, 0, 2147483647, 2147483647));
    EXPECT_FALSE(band->ReadLineV(b.block, 0, 0, 5, 6));
    EXPECT_FALSE(band->ReadPixel(b.block, 20, 0));
    EXPECT_FALSE(band->ReadPixelAtWorld(b.block, 1e300, 0));
    EXPECT_FALSE(band->ReadPixelAtWorld(b.block, -0.51, 0));
    EXPECT_TRUE(band->ReadPixelAtWorld(b.block, 19.49, -9.49));
    EXPECT_FALSE(band->GetTile(0, 1, 0, nullptr, message));
    std::atomic<int> abort{1};
    XTileCache::Get().Clear();
    EXPECT_FALSE(band->ReadSubset(b.block, 0, 0, 5, 0, 5, &abort, &message));
    EXPECT_TRUE(message.IsEmpty());
}

TEST(XDMBand, ChoosesTheCoarsestLevelThatFills)
{
    const auto band = XfnMakeBand(kXUInt8, 1024, 512, ValueAt); // 1024, 512, 256
    const struct
    {
        int x0, x1, y0, y1, width, height, level;
    } cases[] = {
        {0, 1023, 0, 511, 1024, 512, 0}, {0, 1023, 0, 511, 512, 256, 1},
        {0, 1023, 0, 511, 513, 256, 0},  {0, 1023, 0, 511, 256, 128, 2},
        {0, 1023, 0, 511, 256, 129, 1},  {0, 511, 0, 255, 256, 100, 1},
        {0, 1023, 0, 511, 10, 10, 2},    {5, 5, 5, 5, 100, 100, 0},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(band->GetHighestLevelForTarget(c.x0, c.x1, c.y0, c.y1, c.width, c.height),
                  c.level);
        const double left = c.x0 - 0.5, right = c.x1 + 0.5, top = 0.5 - c.y0, bottom = -0.5 - c.y1;
        EXPECT_EQ(band->GetHighestLevelForTarget(left, top, right, top, right, bottom, left, bottom,
                                                 c.width, c.height),
                  c.level);
    }
    const double nan = std::numeric_limits<double>::quiet_NaN();
    EXPECT_EQ(band->GetHighestLevelForTarget(nan, 0, 1, 0, 1, 1, 0, 1, 10, 10), 0);
}

TEST(XDMBand, SubsetPositionsStayInTheLevel)
{
    const auto band = XfnMakeBand(kXUInt8, kWidth, kHeight, ValueAt);
    std::array<int, 4> at{};
    band->GetSubsetPos(1, 0, 1029, 0, 516, at[0], at[1], at[2], at[3]);
    EXPECT_EQ(at, (std::array{0, 514, 0, 258}));
    band->GetSubsetPos(3, 1029, 1029, 516, 516, at[0], at[1], at[2], at[3]);
    EXPECT_EQ(at, (std::array{128, 128, 64, 64}));
    band->GetSubsetInfo(0, 255, 512, 0, 255, at[0], at[1], at[2], at[3]);
    EXPECT_EQ(at, (std::array{0, 2, 0, 0}));
}

TEST(XDMBand, WorldRangesFollowTheGeometry)
{
    const auto band = XfnMakeBand(kXUInt8, 100, 50, ValueAt);
    band->SetPixelSize(10, 5);
    band->SetUpperLeft(1000, 2000);
    band->SetPixelSize(-1, 5); // makes no sense: nothing changes
    EXPECT_EQ(XfnBoundsOf(*band), (XBounds{1000, 1990, 2000 - 5 * 49, 2000}));
    double x0 = 20, y0 = 10, x1 = 30, y1 = 25; // pixels 20..29 and 10..24
    band->ConvPixelToWorldCoord(x0, y0);
    band->ConvPixelToWorldCoord(x1, y1);
    std::array<int, 4> p{};
    XBounds w{};
    band->ConvWorldToPixelRange(x0, x1, y1, y0, p[0], p[1], p[2], p[3]);
    EXPECT_EQ(p, (std::array{20, 30, 10, 25}));
    band->ConvPixelToWorldRange(20, 30, 10, 25, w[0], w[1], w[2], w[3]);
    EXPECT_EQ(w, (XBounds{x0, x1, y1, y0}));
    band->ConvWorldToPixelRange(-1e30, 1e30, -1e30, 1e30, p[0], p[1], p[2], p[3]);
    EXPECT_EQ(p, (std::array{INT_MIN, INT_MAX, INT_MIN, INT_MAX}));
}

TEST(XDMBand, CloneTakesTheDescriptionOnly)
{
    const auto source = XfnMakeBand(kXUInt8, 30, 20, ValueAt);
    source->SetBandName("near infrared");
    source->SetNullValue(7);
    source->SetWaveLength(840);
    source->SetUpChirp();
    source->SetUpperLeft(5, 6);
    source->SetBandType(kXBandClassMap);
    source->SetGISTable({{1, 2, 3, 255, 0, "water"}, {4, 5, 6, 128, 0, "land"}}, 1);
    source->GetBandMin();
    const auto clone = XfnMakeBand(kXDouble, 8, 9, ValueAt);
    ASSERT_TRUE(clone->CloneBand(source.get()));
    EXPECT_EQ(clone->GetBandName(), "near infrared");
    EXPECT_EQ(clone->GetWaveLength(), 840);
    EXPECT_TRUE(clone->IsUpChirp());
    EXPECT_EQ(clone->GetULY(), 6);
    EXPECT_EQ(clone->GetGISAt(1)->name, "land");
    EXPECT_EQ(clone->GetGISAt(2), nullptr);
    ASSERT_NE(clone->GetColorTable(), nullptr);
    EXPECT_EQ(clone->GetColorTable()[1], 0x80060504u); // red in the lowest byte
    EXPECT_EQ(clone->GetColorTable()[2], 0u);
    EXPECT_EQ(clone->GetXSize(), 8);
    EXPECT_EQ(clone->GetDataType(), kXDouble);
    EXPECT_EQ(clone->GetXRSFile(), nullptr);
    EXPECT_FALSE(clone->CloneBand(nullptr));
}

TEST(XDMBandMemory, ChangedPixelsAreReadAnew)
{
    const auto band = XfnMakeBand(kXUInt8, 300, 300, [](int, int) { return 9; });
    EXPECT_EQ(band->GetBandMax(), 9);
    static_cast<unsigned char*>(band->GetData())[0] = 200;
    band->Changed();
    tagBlock b;
    ASSERT_TRUE(band->ReadPixel(b.block, 0, 0));
    EXPECT_EQ(b.block->GetValue(0, 0), 200);
    EXPECT_EQ(band->GetBandMax(), 200);
    EXPECT_FALSE(band->Create(kXUInt8, 0, 5));
    EXPECT_FALSE(band->Create(17, 5, 5));
    EXPECT_FALSE(band->Create(kXDoubleComplex, 2147483647, 2147483647));
    EXPECT_EQ(band->GetXSize(), 300);
}

TEST(XRSFile, OwnsItsBands)
{
    auto file = std::make_unique<XRSFile>();
    XDMBand* first = XfnMakeBand(kXUInt8, 4, 3, ValueAt).release();
    XDMBand* second = XfnMakeBand(kXUInt8, 4, 3, ValueAt).release();
    second->SetUpperLeft(10, 5);
    EXPECT_TRUE(file->AddBand(first));
    EXPECT_FALSE(file->AddBand(first));
    EXPECT_FALSE(file->AddBand(nullptr));
    EXPECT_TRUE(file->AddBand(second));
    EXPECT_EQ(second->GetXRSFile(), file.get());
    EXPECT_EQ(XfnBoundsOf(*file), (XBounds{0, 13, -2, 5}));
    EXPECT_FALSE(file->HasValidStatistics());
    double matrix[4] = {kXNotSet, 0, 0, 1};
    file->SetCorrelationMatrix(matrix);
    EXPECT_FALSE(file->HasValidStatistics());
    matrix[0] = 1;
    file->SetCorrelationMatrix(matrix);
    EXPECT_TRUE(file->HasValidStatistics());
    first->SetNullValue(5);
    EXPECT_FALSE(file->HasValidStatistics()) << "of other samples";
    file->SetFilePath("/images/scene.v2.tif");
    EXPECT_EQ(file->GetFileName(), "scene.v2.tif");
    EXPECT_EQ(file->GetFileTitle(), "scene.v2");
    auto* vand = new XDMVand;
    vand->SetDeleteBaseFlag(1);
    vand->SetBase(new XvcBase);
    EXPECT_TRUE(file->AddVand(vand));
    XRSFile other;
    other.Swap(*file);
    EXPECT_EQ(first->GetXRSFile(), &other);
    EXPECT_EQ(vand->GetXRSFile(), &other);
    EXPECT_EQ(file->GetNumOfBands(), 0);
    EXPECT_EQ(file->GetXPixelSize(), 1.0);
    XDMVand empty;
    double range[6] = {1, 2, 3, 4, 5, 6};
    empty.GetRange(range[0], range[1], range[2], range[3], range[4], range[5]);
    EXPECT_EQ(range[0], 1);
    EXPECT_EQ(empty.GetHideFlag(), 0);
}
