#include "foundation/raster/XDMBandSpatialFilter.h"
#include "tests/support/XBandSamples.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <functional>
#include <thread>

namespace {

constexpr int kWidth = 600;
constexpr int kHeight = 300;

double Zero(int, int)
{
    return 0.0;
}

// width x height samples of a type that count up from 1, complex ones with an imaginary part
struct tagSamples
{
    tagXArr2 block;
    tagSamples(int type, int width, int height)
    {
        auto band = XfnMakeBand(type, width, height,
                                [&](int x, int y) { return 1 + (x + y * width) % 90; });
        tagXArr2* out = &block;
        band->ReadSubset(out, 0, 0, width - 1, 0, height - 1, nullptr);
    }
};

struct tagForm
{
    const char* name;
    int x0, x1, y0, y1;
    std::function<int(XBand&, const tagXArr2&)> write;
};

const tagForm kForms[] = {
    {"row", 0, 599, 7, 7, [](XBand& b, auto& s) { return b.WriteLineH(s.base, 7, false, 0.0); }},
    {"part of a row", 250, 519, 7, 7,
     [](XBand& b, auto& s) { return b.WriteLineH(s.base, 7, 250, 270, false, 0.0); }},
    {"row block", 0, 599, 299, 299,
     [](XBand& b, auto& s) { return b.WriteLineH(&s, 299, false, 0.0); }},
    {"part of a row block", 599, 599, 0, 0,
     [](XBand& b, auto& s) { return b.WriteLineH(&s, 0, 599, 1, false, 0.0); }},
    {"column", 256, 256, 0, 299,
     [](XBand& b, auto& s) { return b.WriteLineV(s.base, 256, false, 0.0); }},
    {"part of a column", 255, 255, 250, 260,
     [](XBand& b, auto& s) { return b.WriteLineV(s.base, 255, 250, 11, false, 0.0); }},
    {"column block", 3, 3, 0, 299,
     [](XBand& b, auto& s) { return b.WriteLineV(&s, 3, false, 0.0); }},
    {"part of a column block", 3, 3, 299, 299,
     [](XBand& b, auto& s) { return b.WriteLineV(&s, 3, 299, 1, false, 0.0); }},
    {"pixel", 511, 511, 256, 256,
     [](XBand& b, auto& s) { return b.WritePixel(s.base, 511, 256, false, 0.0); }},
    {"pixel block", 512, 512, 255, 255,
     [](XBand& b, auto& s) { return b.WritePixel(&s, 512, 255, false, 0.0); }},
    {"window", 200, 530, 100, 290,
     [](XBand& b, auto& s) { return b.WriteSubset(s.base, 200, 530, 100, 290, false, 0.0); }},
    {"window block", 0, 1, 255, 257,
     [](XBand& b, auto& s) { return b.WriteSubset(&s, 0, 1, 255, 257, false, 0.0); }},
};

} // namespace

TEST(XDMBandWrite, EveryFormWritesItsWindowAndNothingElse)
{
    for (int type = kXUInt8; type <= kXDoubleComplex; ++type) {
        for (const tagForm& form : kForms) {
            SCOPED_TRACE(testing::Message() << form.name << " type " << type);
            const auto band = XfnMakeBand(type, kWidth, kHeight, Zero);
            XString message;
            ASSERT_TRUE(band->GetTile(0, 0, 0, nullptr, message)); // there is something to drop
            band->GetBandMax();
            const tagSamples samples(type, form.x1 - form.x0 + 1, form.y1 - form.y0 + 1);
            ASSERT_TRUE(form.write(*band, samples.block));
            tagXArr2 after;
            tagXArr2* block = &after;
            ASSERT_TRUE(band->ReadSubset(block, 0, 0, kWidth - 1, 0, kHeight - 1, nullptr));
            const std::size_t size = static_cast<std::size_t>(band->GetDataSize());
            const std::vector<unsigned char> zero(size);
            for (int y = 0; y < kHeight; ++y) {
                for (int x = 0; x < kWidth; ++x) {
                    const unsigned char* wanted = samples.block.At(x - form.x0, y - form.y0);
                    ASSERT_EQ(std::memcmp(after.At(x, y), wanted ? wanted : zero.data(), size), 0)
                        << x << "," << y;
                }
            }
            EXPECT_GT(band->GetBandMax(), 0.0);
        }
    }
}

TEST(XDMBandWrite, TheNumberIsLeftOut)
{
    struct tagCase
    {
        const char* name;
        int type;
        bool skip;
        double number;
        std::vector<double> data, wanted;
    };
    const double nan = std::nan("");
    const tagCase kCases[] = {
        {"at both ends", kXInt16, true, 0, {0, 5, 0, 0, 6, 0}, {9, 5, 9, 9, 6, 9}},
        {"nowhere", kXInt16, true, 7, {0, 5, 0, 0, 6, 0}, {0, 5, 0, 0, 6, 0}},
        {"everywhere", kXDouble, true, 4, {4, 4, 4, 4, 4, 4}, {9, 9, 9, 9, 9, 9}},
        {"only when asked", kXUInt8, false, 0, {0, 5, 0, 0, 6, 0}, {0, 5, 0, 0, 6, 0}},
        {"not in the type", kXUInt8, true, -1, {255, 5, 0, 0, 6, 0}, {255, 5, 0, 0, 6, 0}},
        {"NaN", kXFloat, true, nan, {nan, 5, nan, 1, 6, nan}, {9, 5, 9, 1, 6, 9}},
        {"complex zero", kXFloatComplex, true, 0, {0, 5, 0, 0, 6, 0}, {9, 5, 9, 9, 6, 9}},
        {"real part alone", kXFloatComplex, true, 5, {0, 5, 0, 0, 6, 0}, {0, 5, 0, 0, 6, 0}},
    };
    for (const tagCase& c : kCases) {
        const auto band = XfnMakeBand(c.type, 6, 1, [](int, int) { return 9.0; });
        const auto data = XfnMakeBand(
            c.type, 6, 1, [&](int x, int) { return c.data[static_cast<std::size_t>(x)]; });
        ASSERT_TRUE(band->WriteLineH(data->GetData(), 0, c.skip, c.number)) << c.name;
        tagXArr2 row;
        tagXArr2* block = &row;
        ASSERT_TRUE(band->ReadLineH(block, 0, 0));
        for (int x = 0; x < 6; ++x)
            EXPECT_EQ(row.GetValue(x, 0), c.wanted[static_cast<std::size_t>(x)])
                << c.name << " " << x;
    }
}

TEST(XDMBandWrite, WhatDoesNotFitIsRefused)
{
    const auto band = XfnMakeBand(kXUInt8, 10, 5, Zero);
    const tagSamples six(kXUInt8, 6, 1), other(kXInt8, 6, 1);
    const void* data = six.block.base;
    EXPECT_FALSE(band->WriteLineH(data, 0, 5, 6, false, 0));
    EXPECT_FALSE(band->WriteLineH(data, 0, -1, 6, false, 0));
    EXPECT_FALSE(band->WriteLineH(data, 5, 0, 6, false, 0));
    EXPECT_FALSE(band->WriteLineH(data, 0, 2147483647, 6, false, 0));
    EXPECT_FALSE(band->WriteLineH(&six.block, 0, false, 0)) << "a row has ten";
    EXPECT_FALSE(band->WriteLineH(&other.block, 0, 0, 6, false, 0));
    EXPECT_FALSE(band->WriteLineV(&six.block, 0, 0, 1, false, 0));
    EXPECT_FALSE(band->WriteSubset(data, 5, 4, 0, 0, false, 0));
    EXPECT_FALSE(band->WriteSubset(0, 10, 0, 4, false, 0));
    EXPECT_FALSE(band->WritePixel(static_cast<const void*>(nullptr), 0, 0, false, 0));
    EXPECT_FALSE(band->WritePixel(static_cast<const tagXArr2*>(nullptr), 0, 0, false, 0));
    EXPECT_FALSE(band->BuildLowerLevelsForTIP(0, 0, 9, 0, 5, false));
    EXPECT_EQ(band->GetBandMax(), 0.0);

    XDMBandSpatialFilter readOnly;
    ASSERT_TRUE(readOnly.Create(band.get(), kXFilterNone, 3));
    EXPECT_FALSE(readOnly.WriteLineH(data, 0, 0, 6, false, 0));
    EXPECT_FALSE(readOnly.WriteSubset(0, 9, 0, 4, false, 0));
    EXPECT_FALSE(readOnly.BuildLowerLevelsForTIP(0, 0, 9, 0, 4, false));
}

TEST(XDMBandWrite, OnlyTheTilesOfThePlaceAreDropped)
{
    const auto band = XfnMakeBand(kXUInt8, 1100, 600, Zero);
    XString message;
    for (int level = 0; level < band->GetNumOfLevels(); ++level) {
        int width, height;
        band->GetLevelSize(level, width, height);
        for (int ty = 0; ty * 256 < height; ++ty)
            for (int tx = 0; tx * 256 < width; ++tx)
                ASSERT_TRUE(band->GetTile(level, tx, ty, nullptr, message));
    }
    const unsigned char one = 1;
    ASSERT_TRUE(band->WritePixel(&one, 1030, 10, false, 0.0));
    for (int tx = 0; tx < 5; ++tx)
        EXPECT_EQ(band->FindTile(0, tx, 0) != nullptr, tx != 4);
    EXPECT_TRUE(band->FindTile(0, 4, 1));
    EXPECT_TRUE(band->FindTile(1, 0, 0));
    EXPECT_FALSE(band->FindTile(1, 2, 0));
    EXPECT_FALSE(band->FindTile(band->GetLevel(), 0, 0));
}

// Levels of a window that are made anew come out as those of the whole band.
TEST(XDMBandWrite, StoredLevelsFollow)
{
    struct tagCase
    {
        const char* name;
        int type;
        int bandType;
        bool skip;
    };
    const tagCase kCases[] = {{"averages", kXFloat, kXBandPanchromatic, false},
                              {"averages without null", kXUInt16, kXBandPanchromatic, true},
                              {"classes are picked", kXUInt8, kXBandClassMap, false}};
    for (const tagCase& c : kCases) {
        SCOPED_TRACE(c.name);
        const auto valueAt = [](int x, int y) { return (x * 7 + y * 31) % 200 / 3 * 3; };
        const auto after = [&](int x, int y) {
            return x >= 301 && x <= 777 && y >= 99 && y <= 513 ? (x * x + y) % 251 : valueAt(x, y);
        };
        const auto band = XfnMakeBand(c.type, 1030, 517, valueAt);
        const auto whole = XfnMakeBand(c.type, 1030, 517, after);
        const auto part =
            XfnMakeBand(c.type, 477, 415, [&](int x, int y) { return after(x + 301, y + 99); });
        band->SetBandType(c.bandType);
        whole->SetBandType(c.bandType);
        ASSERT_TRUE(band->StoreLevels(c.skip, 0.0));
        ASSERT_TRUE(whole->StoreLevels(c.skip, 0.0));
        tagXArr2 a, b;
        tagXArr2* const blocks[2] = {&a, &b};
        const auto differing = [&](int level) {
            int count = 0;
            for (int i = 0; i < 2; ++i) {
                tagXArr2* block = blocks[i];
                EXPECT_TRUE((i ? whole : band)->ReadSubset(block, level, 0, 1029, 0, 516, nullptr));
            }
            for (int y = 0; y < a.height; ++y)
                for (int x = 0; x < a.width; ++x)
                    count += a.GetValue(x, y) != b.GetValue(x, y);
            return count;
        };
        EXPECT_FALSE(band->IsVirtualLevel(3));
        ASSERT_TRUE(band->WriteSubset(part->GetData(), 301, 777, 99, 513, false, 0.0));
        EXPECT_EQ(differing(0), 0);
        EXPECT_GT(differing(2), 0) << "not before they are made anew";
        ASSERT_TRUE(band->BuildLowerLevelsForTIP(0.0, 301, 777, 99, 513, c.skip));
        for (int level = 1; level <= 3; ++level)
            EXPECT_EQ(differing(level), 0) << level;
        // the same for pixels that were changed in place
        const auto again = XfnMakeBand(c.type, 1030, 517, valueAt);
        std::memcpy(whole->GetData(), again->GetData(), 1030 * 517 * whole->GetDataSize());
        std::memcpy(band->GetData(), again->GetData(), 1030 * 517 * whole->GetDataSize());
        whole->Changed();
        ASSERT_TRUE(whole->StoreLevels(c.skip, 0.0));
        ASSERT_TRUE(band->WriteSubset(301, 777, 99, 513, c.skip, 0.0));
        for (int level = 0; level <= 3; ++level)
            EXPECT_EQ(differing(level), 0) << level;
    }
}

TEST(XDMBandWrite, ReadersNeverKeepWhatWasBefore)
{
    const auto band = XfnMakeBand(kXUInt16, 700, 300, Zero);
    std::atomic<int> isOver{0};
    std::atomic<int> wrong{0};
    std::vector<std::jthread> readers;
    std::atomic<int> newest{0}; // written in full
    for (int i = 0; i < 3; ++i) {
        readers.emplace_back([&, i] {
            tagXArr2 row;
            tagXArr2* block = &row;
            while (!isOver) {
                const int least = newest;
                if (!band->ReadLineH(block, i % 2, 20 + i)) ++wrong;
                for (int x = 0; x < row.width; ++x)
                    if (row.GetValue(x, 0) < least) ++wrong;
                band->GetBandMax();
            }
        });
    }
    std::vector<std::uint16_t> data(700 * 300);
    for (int round = 1; round <= 60; ++round) {
        std::fill(data.begin(), data.end(), static_cast<std::uint16_t>(round));
        EXPECT_TRUE(band->WriteSubset(data.data(), 0, 699, 0, 299, false, 0.0));
        newest = round;
    }
    isOver = 1;
    readers.clear(); // joins
    EXPECT_EQ(wrong, 0);
    EXPECT_EQ(band->GetBandMin(), 60.0);
}
