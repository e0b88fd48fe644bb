#pragma once

#include "foundation/raster/XDMCompManager.h"
#include "foundation/raster/XDMComposite.h"
#include "tests/support/XMessageRecorder.h"
#include "tests/view/XMemoryPicture.h"
#include "view/XTQSpaceView.h"

#include <QApplication>
#include <QImage>
#include <QInputDevice>
#include <QKeyEvent>
#include <QPointingDevice>
#include <QTest>
#include <QWheelEvent>

#include <gtest/gtest.h>

#include <ostream>
#include <string>
#include <vector>

inline std::ostream& operator<<(std::ostream& out, const tagXWorldBox& box)
{
    return out << "x " << box.minX << " to " << box.maxX << ", y " << box.minY << " to "
               << box.maxY;
}

/// A shown view of 400 x 200 pixels with a recording host.
class XViewFixture : public ::testing::Test
{
protected:
    static constexpr unsigned kHostMessage = 41024;
    static constexpr int kWidth = 400;
    static constexpr int kHeight = 200;

    XViewFixture()
    {
        view.Create();
        view.resize(kWidth, kHeight);
        view.Initialize(host.GetHWND(), kHostMessage);
        host.handler = [this](const XMessageRecorder::tagMessage& message) {
            const auto code = static_cast<unsigned>(message.wParam);
            if (code >= 41066 && code <= 41076)
                mouse = *reinterpret_cast<const tagXMouseReport*>(message.lParam);
            if (code == 41064 || code == 41065)
                key = *reinterpret_cast<const tagXKeyReport*>(message.lParam);
            if (onReport) onReport(code);
            return XLRESULT{0};
        };
        view.show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&view));
    }

    /// Lends the picture to a gray composite on top.
    XDMComposite* Show(XMemoryPicture& picture)
    {
        XDMComposite* composite = view.GetXDMCompManager()->NewXDMComposite(0);
        composite->SetBand(picture.GetBand(), 0);
        composite->SetCutRange(0, 255, 0);
        view.GetXDMCompManager()->AddXDMComposite(composite);
        return composite;
    }

    tagXWorldBox Bound() const
    {
        tagXWorldBox box;
        view.GetBound(box.minX, box.maxX, box.minY, box.maxY);
        return box;
    }

    /// The codes reported since the last Forget, but for those of painting.
    std::vector<XWPARAM> Reports() const
    {
        auto codes = host.GetFirstParameters();
        std::erase_if(codes, [](XWPARAM code) { return code == 41061 || code == 41062; });
        return codes;
    }

    /// The last two digits of each of them, but for those of input.
    std::string Edits() const
    {
        std::string text;
        for (const XWPARAM code : Reports())
            if (code < 41064 || code > 41076)
                text += (text.empty() ? "" : " ") + std::to_string(code % 100);
        return text;
    }

    QImage Paint()
    {
        view.repaint();
        return view.grab().toImage().convertToFormat(QImage::Format_RGB32);
    }

    void Wheel(int x, int y, int angle, Qt::KeyboardModifiers keys = Qt::NoModifier,
               Qt::MouseButtons buttons = Qt::NoButton)
    {
        const QPointF at(x, y);
        QWheelEvent event(at, view.mapToGlobal(at), QPoint(), QPoint(0, angle), buttons, keys,
                          Qt::NoScrollPhase, false);
        QApplication::sendEvent(&view, &event);
    }

    void TwoFingers(int dx, int dy)
    {
        const QPointF at(50, 50);
        QWheelEvent event(at, view.mapToGlobal(at), QPoint(dx, dy), QPoint(dx * 2, dy * 2),
                          Qt::NoButton, Qt::NoModifier, Qt::ScrollUpdate, false);
        QApplication::sendEvent(&view, &event);
    }

    void Pinch(int x, int y, double value)
    {
        const QPointF at(x, y);
        QNativeGestureEvent event(Qt::ZoomNativeGesture, QPointingDevice::primaryPointingDevice(),
                                  2, at, at, view.mapToGlobal(at), value, QPointF());
        QApplication::sendEvent(&view, &event);
    }

    void Mouse(QEvent::Type type, int x, int y, Qt::MouseButton button, Qt::MouseButtons buttons,
               Qt::KeyboardModifiers keys = Qt::NoModifier)
    {
        const QPointF at(x, y);
        QMouseEvent event(type, at, view.mapToGlobal(at), button, buttons, keys);
        QApplication::sendEvent(&view, &event);
    }

    void Key(QEvent::Type type, int code, Qt::KeyboardModifiers keys = Qt::NoModifier)
    {
        QKeyEvent event(type, code, keys);
        QApplication::sendEvent(&view, &event);
    }

    void Drag(Qt::MouseButton button, QPoint from, QPoint to)
    {
        Mouse(QEvent::MouseButtonPress, from.x(), from.y(), button, button);
        Mouse(QEvent::MouseMove, to.x(), to.y(), Qt::NoButton, button);
        Mouse(QEvent::MouseButtonRelease, to.x(), to.y(), button, Qt::NoButton);
    }

    XMessageRecorder host;
    tagXMouseReport mouse = {};
    tagXKeyReport key = {};
    std::function<void(unsigned)> onReport;
    XTQSpaceView view;
};

inline void ExpectBox(const tagXWorldBox& got, const tagXWorldBox& expected, double tolerance)
{
    EXPECT_NEAR(got.minX, expected.minX, tolerance) << got;
    EXPECT_NEAR(got.minY, expected.minY, tolerance) << got;
    EXPECT_NEAR(got.maxX, expected.maxX, tolerance) << got;
    EXPECT_NEAR(got.maxY, expected.maxY, tolerance) << got;
}
