// What a step of a drag over the ramp of the colour table costs until the picture shows it.
//
// usage: bench_palette [SCENE_DIR]
// A folder holds S1_rgb8.tif; without it nothing is measured. The yardstick is the warm draw of the
// same view, moved by a pixel; both take turns. A step turns the table, draws grid and ramp, applies,
// and draws the view.

#include "bench/BenchScene.h"
#include "enhance/XPaletteDlg.h"
#include "foundation/raster/XDMCompManager.h"
#include "view/XTQSpaceView.h"

#include <QApplication>

#include <filesystem>

namespace {

class XBenchView : public XTQSpaceView
{
public:
    ~XBenchView() override { OnDestroy(); }
};

/// One band of a file in a view, with a dialog over it.
struct tagColored
{
    XRSFile file;
    XBenchView view;
    XDMComposite* composite = nullptr;
    XPaletteDlg dialog;

    ~tagColored()
    {
        view.QueCancel();
        view.GetXDMCompManager()->RemoveXDMCompositeAll();
    }
    void Settle()
    {
        view.repaint();
        while (view.IsBusy())
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        view.repaint();
    }
    void Place(int step)
    {
        const XDMBand* band = file.GetBandAt(0);
        double x = band->GetXSize() / 2.0 + step % 16, y = band->GetYSize() / 2.0;
        band->ConvPixelToWorldCoord(x, y);
        view.SetWorldToCenter(x, y);
        view.SetWorldPerPixel(band->GetXPixelSize(), band->GetYPixelSize());
    }
};

int Open(tagColored& colored, const std::string& path, int isProgressive)
{
    XString error;
    if (!XRSFileIO::Open(path.c_str(), &colored.file, error)) {
        std::fprintf(stderr, "%s\n", static_cast<const char*>(error));
        return 0;
    }
    colored.view.SetProgressiveView(isProgressive);
    colored.view.SetAlwaysRefine(isProgressive);
    colored.view.resize(kWidth, kHeight);
    colored.view.show();
    colored.composite = colored.view.GetXDMCompManager()->NewXDMComposite(0);
    colored.composite->SetBand(colored.file.GetBandAt(0), 0);
    XfnDefaultStretch(colored.composite);
    colored.view.GetXDMCompManager()->AddXDMComposite(colored.composite);
    colored.dialog.SetXDMComposite(colored.composite);
    colored.dialog.Create(nullptr, colored.view.GetHWND());
    colored.dialog.Show();
    QCoreApplication::processEvents();
    return 1;
}

void Measure(XRows& rows, const char* name, const std::string& path, int isProgressive)
{
    tagColored colored;
    if (!Open(colored, path, isProgressive)) return;
    for (const int step : {0, 15}) {
        colored.Place(step);
        colored.view.InvalidateControl(1);
        colored.Settle();
    }
    std::vector<double> ours, theirs;
    for (int run = 0; run < kRuns; ++run) {
        colored.Place(run);
        theirs.push_back(TimeMs([&] {
            colored.view.InvalidateControl(1);
            colored.Settle();
        }));
        ours.push_back(TimeMs([&] {
            colored.dialog.RotateForward();
            QCoreApplication::sendPostedEvents(&colored.dialog, QEvent::UpdateRequest);
            colored.Settle();
        }));
    }
    rows.Add(name, MedianOf(ours), MedianOf(theirs), 1.3);
}

} // namespace

int main(int argc, char** argv)
{
    QApplication app(argc, argv);
    GDALAllRegister();
    namespace fs = std::filesystem;
    XRows rows;
    const std::string path = argc > 1 ? (fs::path(argv[1]) / "S1_rgb8.tif").string() : "";
    if (!fs::exists(path)) return 0;
    Measure(rows, "palette.drag.gray8", path, 0);
    Measure(rows, "palette.drag.gray8.progressive", path, 1);
    return 0;
}
