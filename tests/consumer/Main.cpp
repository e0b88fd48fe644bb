#include <foundation/raster/XDMCompManager.h>
#include <foundation/raster/XDMComposite.h>
#include <foundation/raster/XDefaultDisplay.h>
#include <foundation/raster/XRSFile.h>
#include <foundation/raster/XRSFileIO.h>
#include <view/XTQSpaceView.h>

#include <QApplication>

#include <cstdio>

int main(int argc, char** argv)
{
    QApplication app(argc, argv);
    XRSFile file; // outlives the view: composites only point at its bands
    XString message;
    if (!XRSFileIO::Open(argc > 1 ? argv[1] : "", &file, message)) {
        std::fprintf(stderr, "%s\n", static_cast<const char*>(message));
        return 1;
    }
    XTQSpaceView view;
    view.resize(800, 600);
    view.show(); // creates the composite manager and the buffers

    XDMCompManager* manager = view.GetXDMCompManager();
    XDMComposite* picture = manager->NewXDMComposite(1);
    for (int channel = 0; channel < 3; ++channel)
        picture->SetBand(file.GetBandAt(2 - channel), channel); // 0 is blue, 2 is red
    XfnDefaultStretch(picture);
    manager->AddXDMComposite(picture);
    manager->SetSR(file.GetSR());
    view.UpdateComposites();
    return argc > 2 ? !view.grab().save(argv[2]) : app.exec();
}
