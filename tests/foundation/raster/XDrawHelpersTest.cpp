#include "foundation/raster/XDrawHelpers.h"

#include "foundation/platform/XEvent.h"
#include "foundation/raster/XDMBandMemory.h"
#include "foundation/raster/XDMComposite.h"
#include "foundation/surface/XBackBuffer.h"

#include <gtest/gtest.h>

namespace {

/// Its helpers come no further than their first tile until they are let, and its drawing is stopped
/// as soon as one has come there.
class XHeldBand : public XDMBandMemory
{
public:
    XHeldBand()
    {
        const std::vector<unsigned char> pixels(2048 * 1024, 7);
        Create(1, 2048, 1024, pixels.data());
    }
    std::shared_ptr<const XTile> ReadTile(int level, int tx, int ty, const std::atomic<int>* abort,
                                          XString& message) const override
    {
        if (std::this_thread::get_id() == drawing) {
            entered.Wait(60000);
            stop = 1;
        } else {
            ++inHand;
            entered.Set();
            let.Wait(60000);
            --inHand;
        }
        return XDMBandMemory::ReadTile(level, tx, ty, abort, message);
    }

    const std::thread::id drawing = std::this_thread::get_id();
    mutable XEvent entered{XEvent::XReset::Manual}, let{XEvent::XReset::Manual};
    mutable std::atomic<int> stop{0}, inHand{0};
};

TEST(XDrawHelpersTest, AStoppedDrawingLeavesThemTheTileInHandAndNoMore)
{
    if (XDrawHelpers::GetMostHelpers() < 1) GTEST_SKIP() << "one core";
    XHeldBand band;
    XBackBuffer surface;
    surface.Resize(nullptr, 2048, 1024);
    surface.SetWorldToCenter(1024, -512);
    XDrawHelpers helpers;
    XDMComposite composite(0);
    composite.SetBand(&band, 0);
    composite.SetCutRange(0, 255, 0);
    composite.SetDrawHelpers(&helpers);
    EXPECT_EQ(composite.Draw(&surface, 0, -1024, 2048, 0, 1, nullptr, &band.stop), 0);
    EXPECT_GE(band.inHand, 1) << "the drawing waited for a helper";
    const auto countTiles = [&] {
        int count = 0;
        for (int i = 0; i < 32; ++i)
            count += band.IsTileAtHand(0, i % 8, i / 8);
        return count;
    };
    const int had = countTiles(), held = band.inHand;
    band.stop = 0; // as for the next drawing
    band.let.Set();
    helpers.Wait();
    EXPECT_EQ(band.inHand, 0);
    EXPECT_EQ(countTiles(), had + held) << "what they had in hand is not lost";
}

} // namespace
