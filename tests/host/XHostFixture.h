#pragma once

#include "foundation/reference/XSpatialReference.h"
#include "foundation/surface/XBackBuffer.h"
#include "host/XFileActions.h"
#include "host/XHostView.h"
#include "host/XJobRunner.h"
#include "host/XLayerStack.h"
#include "host/XMainActions.h"
#include "host/XMainWindow.h"
#include "host/XReadOutLabel.h"
#include "tests/support/XRawRaster.h"
#include "tests/support/XScriptedPrompts.h"

#include <QAction>
#include <QMouseEvent>
#include <QSettings>
#include <QTemporaryDir>
#include <QTest>

#include <gtest/gtest.h>

#include <memory>

/// A shown window over scripted prompts, with a folder for files and no settings of earlier tests.
class XHostFixture : public ::testing::Test
{
protected:
    XHostFixture()
    {
        QSettings().clear();
        Restart();
    }

    void Restart()
    {
        window.reset();
        window = std::make_unique<XMainWindow>("1.2.3");
        window->Place(QSize(1000, 700), QPoint(20, 20), true);
        window->show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(window.get()));
        Settle();
    }

    /// Until nothing waits any more and the view shows its last picture.
    void Settle()
    {
        EXPECT_TRUE(QTest::qWaitFor([this] { return !window || !window->GetLoads().IsBusy(); }));
        EXPECT_TRUE(QTest::qWaitFor([this] { return !window || !window->GetView().IsBusy(); }));
        for (int i = 0; i < 5; ++i)
            QCoreApplication::processEvents(QEventLoop::AllEvents, 50);
    }

    QString Path(const QString& name) const { return dir.filePath(name); }

    /// A north-up raster in UTM zone 25 south on WGS 84 whose sample is column + 10 * row + 100 * band.
    QString MakeRaster(const QString& name, int width, int height, int bands, double ulX = 300000,
                       double ulY = 9100000, double pixel = 30) const
    {
        std::vector<unsigned short> samples;
        for (int b = 0; b < bands; ++b)
            for (int y = 0; y < height; ++y)
                for (int x = 0; x < width; ++x)
                    samples.push_back(static_cast<unsigned short>(x + 10 * y + 100 * b));
        const QByteArray p = QByteArray::number(pixel);
        XSpatialReference utm;
        utm.importFromEPSG(32725);
        XString wkt;
        utm.exportToWkt(wkt);
        return XfnWriteRawRaster(Path(name),
                                 {width, height, bands,
                                  "map info = {UTM, 1, 1, " + QByteArray::number(ulX, 'f', 3) +
                                      ", " + QByteArray::number(ulY, 'f', 3) + ", " + p + ", " + p +
                                      ", 25, South, WGS-84, units=Meters}\n" +
                                      "coordinate system string = {" + wkt.GetString() + "}"},
                                 samples);
    }

    QString Sample() const { return QString(TQL_SAMPLE_DATA) + "/L7_ETMs.tif"; }

    int Open(const QStringList& paths)
    {
        const int opened = window->GetFiles().OpenFiles(paths);
        Settle();
        return opened;
    }

    QAction* Action(const char* id) { return window->GetActions().Get(id); }
    void Run(const char* id)
    {
        ASSERT_TRUE(Action(id)->isEnabled()) << id;
        Action(id)->trigger();
        Settle();
    }

    template <class T>
    T* Find(const char* name)
    {
        T* found = window->findChild<T*>(name);
        EXPECT_NE(found, nullptr) << name;
        return found;
    }

    /// @param devicePx  as the view counts them, whatever the scale of the screen
    void PointAt(const QPoint& devicePx)
    {
        Mouse(QEvent::MouseMove, devicePx, Qt::NoButton, Qt::NoButton);
    }
    void Mouse(QEvent::Type type, const QPoint& devicePx, Qt::MouseButton button,
               Qt::MouseButtons buttons, Qt::KeyboardModifiers keys = Qt::NoModifier)
    {
        XTQSpaceView& view = window->GetView();
        const QPointF pos = QPointF(devicePx) / view.devicePixelRatioF();
        QMouseEvent event(type, pos, view.mapToGlobal(pos), button, buttons, keys);
        QCoreApplication::sendEvent(&view, &event);
    }

    QString Text(const char* label)
    {
        const auto* readOut = dynamic_cast<XReadOutLabel*>(Find<QLabel>(label));
        return readOut ? readOut->GetFullText() : Find<QLabel>(label)->text();
    }

    struct tagXLook
    {
        double x, y, perX, perY;
        friend bool operator==(const tagXLook&, const tagXLook&) = default;
    };
    tagXLook Look()
    {
        tagXLook look{};
        XBackBuffer& buffer = *window->GetView().GetBackBuffer();
        buffer.GetWorldToCenter(look.x, look.y);
        buffer.GetWorldPerPixel(look.perX, look.perY);
        return look;
    }
    /// The picture of the view as the user sees it.
    QImage Grab()
    {
        return window->GetView().grab().toImage().convertToFormat(QImage::Format_RGB32);
    }

    XScriptedPrompts prompts;
    QTemporaryDir dir;
    std::unique_ptr<XMainWindow> window;
};
