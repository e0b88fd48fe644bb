#pragma once

#include "foundation/raster/XTileCache.h"
#include "tests/view/XViewFixture.h"

#include <chrono>
#include <cstdlib>
#include <thread>

/// Runs of the tests of endurance: a tenth, unless the environment asks for all of them.
inline int XfnCountRuns(int all)
{
    return std::getenv("TQL_TEST_ALL_RUNS") ? all : all / 10;
}

/// A byte band whose tiles come from a slow disk.
class XSlowBand : public XDMBandMemory
{
public:
    XSlowBand(int width, int height)
    {
        std::vector<unsigned char> pixels(static_cast<std::size_t>(width) * height);
        for (std::size_t i = 0; i < pixels.size(); ++i)
            pixels[i] = static_cast<unsigned char>((i * 7 + i / 97) & 255);
        Create(1, width, height, pixels.data());
    }

    std::atomic<int> delayUs{0};
    mutable std::atomic<int> readCount{0}, inHand{0};

protected:
    std::shared_ptr<const XTile> ReadTile(int level, int tx, int ty, const std::atomic<int>* abort,
                                          XString& message) const override
    {
        ++readCount;
        ++inHand;
        if (delayUs) std::this_thread::sleep_for(std::chrono::microseconds(delayUs));
        --inHand;
        return XDMBandMemory::ReadTile(level, tx, ty, abort, message);
    }
};

/// A shown progressive view that refines to the end.
class XProgressiveFixture : public XViewFixture
{
protected:
    XProgressiveFixture()
    {
        view.SetAlwaysRefine(1);
        view.SetProgressiveView(1);
        Settle();
    }

    /// Runs the event loop until the newest picture is there.
    void Settle()
    {
        XfnRunUntil([this] { return !view.IsBusy(); });
        QCoreApplication::processEvents();
    }
    XDMComposite* ShowBand(XDMBand* band)
    {
        XDMComposite* composite = view.GetXDMCompManager()->NewXDMComposite(0);
        composite->SetBand(band, 0);
        composite->SetCutRange(0, 255, 0);
        view.GetXDMCompManager()->AddXDMComposite(composite);
        return composite;
    }
    QImage Shown() { return view.grab().toImage().convertToFormat(QImage::Format_RGB32); }
    long Count(XWPARAM code) const
    {
        const auto codes = host.GetFirstParameters();
        return std::count(codes.begin(), codes.end(), code);
    }
};
