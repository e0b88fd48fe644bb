#include "foundation/raster/XDMCompManager.h"

#include "foundation/base/XSentinels.h"
#include "foundation/raster/XDMVand.h"
#include "foundation/vector/XvcBase.h"
#include "tests/support/XBandSamples.h"

#include <gtest/gtest.h>

namespace {

/// Tells when it dies.
class XWatched : public XDMComposite
{
public:
    explicit XWatched(int& deaths) : m_deaths(deaths) {}
    ~XWatched() override { ++m_deaths; }

private:
    int& m_deaths;
};

TEST(XDMCompManager, TheFrontIsTheTop)
{
    XDMCompManager manager;
    XDMComposite* a = manager.NewXDMComposite(0);
    XDMComposite* b = manager.NewXDMComposite(1);
    XDMComposite* c = manager.NewXDMComposite(2);
    EXPECT_EQ(manager.GetNumberOfXDMComposite(), 0) << "made, but not in the list";
    EXPECT_TRUE(manager.AddXDMComposite(a));
    EXPECT_TRUE(manager.AddXDMComposite(b));
    EXPECT_TRUE(manager.AddXDMCompositeTail(c));
    EXPECT_FALSE(manager.AddXDMComposite(a)) << "twice";
    EXPECT_FALSE(manager.AddXDMComposite(nullptr));
    EXPECT_EQ(manager.GetXDMCompositeAt(0), b);
    EXPECT_EQ(manager.GetXDMCompositeAt(1), a);
    EXPECT_EQ(manager.GetXDMCompositeAt(2), c);
    EXPECT_EQ(manager.GetXDMCompositeAt(3), nullptr);
    EXPECT_EQ(manager.GetXDMCompositeAt(-1), nullptr);
    EXPECT_TRUE(manager.MoveXDMComposite(0, 2));
    EXPECT_EQ(manager.GetXDMCompositeAt(2), b);
    EXPECT_FALSE(manager.MoveXDMComposite(0, 3));
    a->UpdateCompleted();
    manager.UpdateNeeded();
    EXPECT_TRUE(a->IsUpdateNeeded());
    EXPECT_EQ(a->GetXDMCompManager(), &manager);
}

TEST(XDMCompManager, WhoDeletesWhat)
{
    for (const int isOwner : {0, 1}) {
        int deaths = 0;
        auto* kept = new XWatched(deaths);
        auto* taken = new XWatched(deaths);
        {
            XDMCompManager manager;
            manager.SetCompositeDeleteFlag(isOwner);
            manager.NewXDMComposite(0); // never added: dies with the manager
            manager.AddXDMComposite(kept);
            manager.AddXDMComposite(taken);
            EXPECT_TRUE(manager.RemoveXDMComposite(taken));
            EXPECT_FALSE(manager.RemoveXDMComposite(taken));
            EXPECT_EQ(deaths, 0);
            manager.RemoveXDMCompositeAll();
            EXPECT_EQ(deaths, isOwner);
            EXPECT_EQ(manager.GetNumberOfXDMComposite(), 0);
        }
        delete taken;
        if (!isOwner) delete kept;
        EXPECT_EQ(deaths, 2);
    }
}

TEST(XDMCompManager, ACompositeHasOneManager)
{
    int deaths = 0;
    XDMCompManager second;
    {
        XDMCompManager first;
        XDMComposite* loose = first.NewXDMComposite(0);
        auto* listed = new XWatched(deaths);
        first.AddXDMComposite(listed);
        EXPECT_TRUE(second.AddXDMComposite(loose));
        EXPECT_TRUE(second.AddXDMCompositeTail(listed));
        EXPECT_EQ(first.GetNumberOfXDMComposite(), 0);
        EXPECT_EQ(loose->GetXDMCompManager(), &second);
    }
    EXPECT_EQ(deaths, 0) << "the first one dies without what it let go";
    EXPECT_EQ(second.GetNumberOfXDMComposite(), 2);
    second.RemoveXDMCompositeAll();
    EXPECT_EQ(deaths, 1);
}

TEST(XDMCompManager, TheRangeIsTheUnionOfWhatHasOne)
{
    auto east = XfnMakeBand(kXUInt8, 11, 6, [](int, int) { return 0; });
    auto north = XfnMakeBand(kXUInt8, 5, 5, [](int, int) { return 0; });
    XBandGeometry geometry;
    geometry.SetNorthUp(100.0, 50.0, 2.0, 4.0);
    east->SetGeometry(geometry);
    geometry.SetNorthUp(90.0, 80.0, 1.0, 1.0);
    north->SetGeometry(geometry);
    XDMCompManager manager;
    double minX = -1, minY = -2, maxX = -3, maxY = -4;
    EXPECT_FALSE(manager.IsRangeValid());
    EXPECT_FALSE(manager.CalcTotalRange(minX, minY, maxX, maxY));
    EXPECT_EQ(minX, -1.0);
    EXPECT_EQ(maxY, -4.0);
    manager.AddXDMComposite(manager.NewXDMComposite(1)); // without bands it has no extent
    EXPECT_FALSE(manager.IsRangeValid());
    for (XDMBandMemory* band : {east.get(), north.get()}) {
        XDMComposite* composite = manager.NewXDMComposite(0);
        composite->SetBand(band, 0);
        manager.AddXDMComposite(composite);
    }
    EXPECT_TRUE(manager.IsRangeValid());
    ASSERT_TRUE(manager.CalcTotalRange(minX, minY, maxX, maxY));
    EXPECT_EQ(minX, 90.0);
    EXPECT_EQ(minY, 30.0);
    EXPECT_EQ(maxX, 120.0);
    EXPECT_EQ(maxY, 80.0);
    EXPECT_EQ(manager.GetULX(), 90.0);
    EXPECT_EQ(manager.GetULY(), 80.0);
    XSpatialReference reference;
    ASSERT_TRUE(reference.importFromEPSG(32652));
    manager.SetSR(&reference);
    EXPECT_TRUE(manager.GetSR()->IsSame(&reference));
    manager.SetSR(nullptr);
    EXPECT_TRUE(manager.GetSR()->IsEmpty());
}

TEST(XDMCompManager, AnEmptyVectorBaseHasNoRange)
{
    XvcBase base;
    base.CalcRange();
    XDMVand vand;
    vand.SetBase(&base);
    XDMCompManager manager;
    XDMComposite* composite = manager.NewXDMComposite(3);
    composite->SetVand(&vand);
    manager.AddXDMComposite(composite);
    EXPECT_FALSE(manager.IsRangeValid());
    XBackBuffer buffer = XfnMakeSurface(8, 8);
    EXPECT_TRUE(XfnDrawAll(*composite, buffer));
    composite->SetHideFlagVector(1);
    EXPECT_EQ(composite->GetHideFlagVector(), 1);
}

} // namespace
