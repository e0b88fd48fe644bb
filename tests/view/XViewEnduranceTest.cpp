#include "foundation/raster/XRSFile.h"
#include "foundation/raster/XRSFileIO.h"
#include "tests/support/XGdalSample.h"
#include "tests/view/XProgressiveFixture.h"

#include <QFile>
#include <QTemporaryDir>

#include <random>

namespace {

using XViewEnduranceTest = XProgressiveFixture;

TEST(XViewClosingTest, AtRandomMomentsOfASweep)
{
    const int all = XfnCountRuns(1000);
    std::mt19937 random(4);
    XMessageRecorder host;
    XSlowBand band(2048, 2048);
    band.delayUs = 2000;
    int running = 0;
    for (int i = 0; i < all; ++i) {
        XTileCache::Get().Clear();
        auto view = std::make_unique<XTQSpaceView>();
        view->SetAlwaysRefine(1);
        view->SetProgressiveView(1);
        view->resize(600, 600);
        view->Create();
        view->Initialize(i % 2 ? host.GetHWND() : 0, 1);
        XDMComposite* composite = view->GetXDMCompManager()->NewXDMComposite(0);
        composite->SetBand(&band, 0);
        composite->SetInterpolatePixel(i % 3 == 0);
        view->GetXDMCompManager()->AddXDMComposite(composite);
        if (i % 4 == 0) view->show();
        view->ZoomFit();
        view->SetWorldPerPixel(1.9, 1.9);
        view->InvalidateControl(1);
        while (!view->IsDrawing()) {
            QCoreApplication::processEvents();
            if (!view->IsBusy()) view->InvalidateControl(1); // came too late to see it
        }
        const auto end =
            std::chrono::steady_clock::now() +
            std::chrono::microseconds(std::uniform_int_distribution<int>(0, 12000)(random));
        while (std::chrono::steady_clock::now() < end)
            if (i % 5) QCoreApplication::processEvents();
        running += view->IsDrawing();
        view.reset();
    }
    EXPECT_EQ(XTQSpaceView::GetViewCount(), 0);
    EXPECT_GE(running, all * 9 / 10) << "of " << all;
    XfnRunPending(); // what was posted to them goes nowhere
}

TEST_F(XViewEnduranceTest, AFileIsDeletedOrCutShortWhileShown)
{
    QTemporaryDir dir;
    for (const bool isCut : {false, true}) {
        const QString path = dir.filePath(isCut ? "cut.tif" : "deleted.tif");
        tagXGdalSample sample;
        sample.width = sample.height = 1500;
        sample.bands = 3;
        sample.options = "TILED=YES COMPRESS=DEFLATE";
        sample.overviews = {2, 4, 8};
        sample.value = [](int x, int y, int band) { return (x * 3 + y * 5 + band * 40) & 255; };
        const XString written = XfnWriteGdalSample(path, sample);
        XRSFile file;
        XString error;
        ASSERT_TRUE(XRSFileIO::Open(written, &file, error)) << static_cast<const char*>(error);
        XDMComposite* composite = view.GetXDMCompManager()->NewXDMComposite(1);
        for (int ch = 0; ch < 3; ++ch)
            composite->SetBand(file.GetBandAt(2 - ch), ch);
        view.GetXDMCompManager()->AddXDMComposite(composite);
        view.ZoomFit();
        Settle();
        EXPECT_EQ(composite->GetDrawMessage().GetLength(), 0);
        view.ZoomOneToOne(); // its tiles were not read yet
        if (isCut)
            QFile::resize(path, 4000);
        else
            QFile::remove(path);
        bool isTold = false;
        for (int i = 0; i < 8; ++i) {
            Drag(Qt::RightButton, {350, 150}, {50, 20});
            Wheel(100, 100, i % 2 ? -120 : 120);
            if (i % 2) Settle();
            isTold = isTold || composite->GetDrawMessage().GetLength() > 0;
        }
        Settle();
        // the system keeps a deleted file for those who have it open; one cut short is told of
        EXPECT_EQ(isTold, isCut);
        view.QueCancel();
        view.GetXDMCompManager()->RemoveXDMCompositeAll();
        view.InvalidateControl(1);
    }
    Settle();
}

} // namespace
