#include "foundation/raster/XTileCache.h"
#include "foundation/raster/XRasterTypes.h"

#include <gtest/gtest.h>

#include <random>
#include <thread>
#include <vector>

namespace {

std::shared_ptr<const XTile> MakeTile(int bytes)
{
    return std::make_shared<XTile>(kXUInt8, bytes, 1);
}

tagXTileKey Key(int n, std::uint64_t owner = 1)
{
    return {owner, 0, n, -n};
}

} // namespace

TEST(XTileCache, DropsTheLeastRecentlyUsedAcrossShards)
{
    XTileCache cache(100 * 50);
    for (int i = 0; i < 50; ++i)
        cache.Insert(Key(i), MakeTile(100));
    ASSERT_EQ(cache.GetByteSize(), 5000u);
    for (int i = 0; i < 10; ++i)
        ASSERT_TRUE(cache.Find(Key(i))); // the first ten are the newest now
    for (int i = 50; i < 70; ++i)
        cache.Insert(Key(i), MakeTile(100));
    EXPECT_EQ(cache.GetByteSize(), 5000u);
    for (int i = 0; i < 70; ++i)
        EXPECT_EQ(cache.Find(Key(i)) != nullptr, i < 10 || i >= 30) << i;
}

TEST(XTileCache, KeepsItsBudget)
{
    XTileCache cache(1000);
    const auto held = MakeTile(400);
    cache.Insert(Key(1), held);
    cache.Insert(Key(1), MakeTile(600)); // replaces, and is counted once
    EXPECT_EQ(cache.GetByteSize(), 600u);
    EXPECT_EQ(held->GetByteSize(), 400u);
    cache.Insert(Key(2), MakeTile(1001)); // larger than the budget
    EXPECT_FALSE(cache.Find(Key(2)));
    EXPECT_TRUE(cache.Find(Key(1)));
    cache.Insert(Key(3, 2), MakeTile(100));
    cache.RemoveOwner(1);
    EXPECT_FALSE(cache.Find(Key(1)));
    EXPECT_TRUE(cache.Find(Key(3, 2)));
    EXPECT_EQ(cache.GetByteSize(), 100u);
    cache.SetBudget(50);
    EXPECT_EQ(cache.GetByteSize(), 0u);
    cache.SetBudget(1000);
    cache.Insert(Key(4), MakeTile(10));
    cache.Clear();
    EXPECT_EQ(cache.GetByteSize(), 0u);
    EXPECT_FALSE(cache.Find(Key(4)));
}

TEST(XTileCache, CountsRightUnderThreads)
{
    XTileCache cache(20000);
    std::vector<std::jthread> threads;
    for (unsigned t = 0; t < 4; ++t) {
        threads.emplace_back([&cache, t] {
            std::mt19937 random(t);
            for (int i = 0; i < 4000; ++i) {
                const int n = static_cast<int>(random() % 300);
                if (const auto tile = cache.Find(Key(n, t % 2)))
                    ASSERT_EQ(tile->GetWidth(), 50 + n);
                else
                    cache.Insert(Key(n, t % 2), MakeTile(50 + n));
                if (i % 1000 == 999) cache.RemoveOwner(t % 2);
            }
        });
    }
    threads.clear(); // joins
    EXPECT_LE(cache.GetByteSize(), 20000u);
    cache.RemoveOwner(0);
    cache.RemoveOwner(1);
    EXPECT_EQ(cache.GetByteSize(), 0u);
}
