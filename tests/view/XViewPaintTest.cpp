#include "foundation/vector/XvcLayer.h"
#include "foundation/vector/XvcPoint.h"
#include "tests/view/XViewFixture.h"

#include <QPainter>
#include <QProcess>

#include <set>

namespace {

class XViewPaintTest : public XViewFixture
{};

int s_painterWarnings = 0;

QRgb Gray(int value)
{
    return qRgb(value, value, value);
}

int CountColor(const QImage& image, QRgb color)
{
    int count = 0;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            count += image.pixel(x, y) == color;
    return count;
}

/// A picture whose rows and columns all differ.
int Pattern(int x, int y)
{
    return 1 + (x * 7 + y * 13) % 251;
}

/// Whether the window shows the whole picture once, pixel by pixel, with its first pixel at or just
/// before the place that the mapping gives.
bool IsShownOneToOne(const QImage& image, const XBackBuffer& buffer, double ulX, double ulY,
                     QSize size)
{
    buffer.ConvWorldToPixelCoord(ulX, ulY);
    for (int shift = 0; shift < 4; ++shift) {
        const QPoint first(static_cast<int>(ulX) - shift % 2, static_cast<int>(ulY) - shift / 2);
        int differences = 0;
        for (int y = -1; y <= size.height(); ++y)
            for (int x = -1; x <= size.width(); ++x) {
                const bool isInside = QRect(QPoint(0, 0), size).contains(x, y);
                const QRgb expected = Gray(isInside ? Pattern(x, y) : 0);
                differences += image.pixel(first + QPoint(x, y)) != expected;
            }
        if (differences == 0) return true;
    }
    return false;
}

TEST_F(XViewPaintTest, OneToOneShowsEachImagePixelOnce)
{
    // georeferenced with a pixel size that is no binary number, far from the origin
    const double ulX = 523456.7, ulY = 4123456.3, size = 0.3;
    XMemoryPicture picture(60, 40, ulX, ulY, size, size, Pattern);
    Show(picture);
    for (const QSize& window : {QSize(400, 200), QSize(401, 203), QSize(333, 202)}) {
        view.resize(window);
        QCoreApplication::processEvents();
        for (double part : {0.0, 0.25, 0.5, 0.999}) {
            view.ZoomFit();
            view.SetWorldToCenter(ulX + (20 + part) * size, ulY - (10 + part) * size);
            view.ZoomOneToOne();
            EXPECT_TRUE(IsShownOneToOne(Paint(), *view.GetBackBuffer(), ulX, ulY, QSize(60, 40)))
                << window.width() << " x " << window.height() << ", " << part;
        }
    }
}

TEST_F(XViewPaintTest, TheFirstCompositeLiesOnTopOfBackColour)
{
    XMemoryPicture wide(41, 21, 0, 20, 1, 1, [](int, int) { return 60; });
    XMemoryPicture small(11, 11, 10, 15, 1, 1, [](int, int) { return 200; });
    Show(wide);
    Show(small);
    view.ZoomFitRect(-20, -10, 60, 30);
    view.SetBackgroundColor(0xFF0000FFu); // red lowest
    const QImage image = Paint();
    EXPECT_EQ(image.pixel(5, 5), qRgb(255, 0, 0));
    EXPECT_EQ(image.pixel(110, 100), Gray(60));  // world 2, 10
    EXPECT_EQ(image.pixel(175, 100), Gray(200)); // world 15, 10
    EXPECT_EQ(view.GetXvcBackColor(), 0xFF0000FFu);
}

TEST_F(XViewPaintTest, TheBookmarkKeepsItsSizeAtAnyZoom)
{
    const QRgb color = qRgb(255, 0, 255);
    view.SetBookMark(50, 50, 0xFFFF00FFu);
    for (double length : {0.01, 1.0, 250.0}) {
        view.SetWorldToCenter(50, 50);
        view.SetWorldPerPixel(length, length);
        view.InvalidateControl(1);
        const QImage image = Paint();
        int width = 0, height = 0;
        for (int i = 0; i < kWidth; ++i)
            width += image.pixel(i, kHeight / 2) == color;
        for (int i = 0; i < kHeight; ++i)
            height += image.pixel(kWidth / 2, i) == color;
        EXPECT_NEAR(width, XViewBookMark::kSizePixels, 1) << length;
        EXPECT_NEAR(height, XViewBookMark::kSizePixels, 1) << length;
    }
    view.ZoomIn(); // raises what the mark's size hangs on
    EXPECT_NEAR(CountColor(Paint(), color), 2 * XViewBookMark::kSizePixels, 3);
    view.ClearBookMark();
    EXPECT_EQ(CountColor(Paint(), color), 0);
}

TEST_F(XViewPaintTest, ASelectedPointIsSeenOnAnyBackgroundAndLeavesTheMainPicture)
{
    auto* point = new XvcPoint(200, 100);
    point->SetType(0);
    point->SetThick(20);
    view.GetEditLayer()->AddTail(point);
    point->CalcRange();
    view.GetSelectedObj()->AddTail(point);
    view.SetWorldToCenter(200, 100);
    for (tagXColor back : {0xFF000000u, 0xFF808080u, 0xFFFFFFFFu, 0xFF00FF00u, 0xFF7F7F7Fu}) {
        view.SetBackgroundColor(back);
        view.InvalidateControl(1);
        const QImage shown = Paint();
        const QImage main = view.GetBackBuffer()->GetImage();
        const QRgb below = main.pixel(203, 98);
        const QRgb mark = shown.pixel(203, 98); // within the control square
        const int difference =
            std::max({std::abs(qRed(mark) - qRed(below)), std::abs(qGreen(mark) - qGreen(below)),
                      std::abs(qBlue(mark) - qBlue(below))});
        EXPECT_GE(difference, 96) << std::hex << back;
        EXPECT_EQ(main.pixel(2, 2), shown.pixel(2, 2));
        EXPECT_EQ(main.pixel(201, 99), shown.pixel(201, 99)) << "a control square has no fill";
        EXPECT_EQ(main.pixel(203, 98) & 0xFFFFFFu, back & 0xFFFFFFu) << "the overlay got into main";
    }
    view.SetMode(0); // empties the selection
    view.SetBackgroundColor(0xFF000000u);
    EXPECT_EQ(Paint().pixel(203, 98), Gray(0));
}

TEST_F(XViewPaintTest, HostsPaintUnderAndOverTheVectors)
{
    auto* point = new XvcPoint(200, 100);
    point->SetType(2);
    point->SetThick(40);
    point->SetForeColor(0xFFFFFFFFu);
    point->SetFillStyle(tagXFillStyle(tagXFillStyle::kSolid));
    point->CalcRange();
    view.GetEditLayer()->AddTail(point);
    view.SetWorldToCenter(200, 100);
    onReport = [this](unsigned code) {
        QPainter painter(&view.GetBackBuffer()->GetImage());
        if (code == 41061) painter.fillRect(0, 0, 400, 200, Qt::blue);
        if (code == 41062) painter.fillRect(200, 90, 5, 5, Qt::red);
    };
    view.InvalidateControl(1);
    const QImage image = Paint();
    EXPECT_EQ(image.pixel(20, 20), qRgb(0, 0, 255));
    EXPECT_EQ(image.pixel(190, 100), qRgb(255, 255, 255));
    EXPECT_EQ(image.pixel(202, 92), qRgb(255, 0, 0));
}

TEST_F(XViewPaintTest, APaintWithinAReportShowsTheLastWholePicture)
{
    view.SetBackgroundColor(0xFF00FF00u);
    Paint();
    QImage nested;
    int depth = 0;
    s_painterWarnings = 0;
    const auto previous =
        qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString& text) {
            s_painterWarnings += text.contains("QPainter") || text.contains("paintEngine");
        });
    onReport = [&](unsigned code) {
        if (code != 41061 || depth++) return;
        nested = view.grab().toImage().convertToFormat(QImage::Format_RGB32);
    };
    view.SetXvcBackColor(0xFFFF0000u);
    view.InvalidateControl(1);
    view.repaint();
    qInstallMessageHandler(previous);
    EXPECT_EQ(s_painterWarnings, 0) << "painted on after the nested paint";
    const QImage after = Paint();
    ASSERT_FALSE(nested.isNull());
    EXPECT_EQ(nested.pixel(100, 100), qRgb(0, 255, 0));
    EXPECT_EQ(after.pixel(100, 100), qRgb(0, 0, 255));
}

TEST_F(XViewPaintTest, WhatChangesWithinAReportIsDrawnAnew)
{
    XMemoryPicture picture(101, 51, 0, 50, 1, 1, [](int, int) { return 90; });
    Show(picture);
    view.ZoomFit();
    int reports = 0;
    onReport = [&](unsigned code) {
        if (code == 41061 && reports++ == 0) view.SetWorldToCenter(1000, 1000);
    };
    view.InvalidateControl(1);
    for (int i = 0; i < 3; ++i) {
        view.repaint();
        QCoreApplication::processEvents();
    }
    EXPECT_EQ(reports, 2);
    EXPECT_EQ(CountColor(Paint(), Gray(90)), 0);
    EXPECT_FALSE(view.GetBackBuffer()->IsUpdateNeeded());
}

TEST_F(XViewPaintTest, APanMovesThePictureByWholePixels)
{
    XMemoryPicture picture(301, 151, 0, 150, 1, 1, [](int x, int y) { return (x ^ y) & 255; });
    Show(picture);
    view.ZoomFitRect(0, 0, 300, 150);
    const QImage before = Paint();
    Drag(Qt::RightButton, {50, 50}, {67, 39});
    const QImage after = Paint();
    EXPECT_EQ(before.copy(0, 11, 383, 189), after.copy(17, 0, 383, 189));
}

// Run by the next test in a process of its own, at another scale of the display.
TEST_F(XViewPaintTest, AtAFractionalScale)
{
    const double ratio = view.devicePixelRatioF();
    if (ratio == 1.0) GTEST_SKIP() << "needs QT_SCALE_FACTOR";
    ASSERT_EQ(ratio, 1.5);
    ASSERT_EQ(view.GetBackBuffer()->GetWidth(), 600);
    ASSERT_EQ(view.GetBackBuffer()->GetHeight(), 300);
    XMemoryPicture picture(90, 70, 0, 69, 1, 1, Pattern);
    Show(picture);
    view.SetWorldToCenter(44.75, 34.75);
    view.ZoomOneToOne();
    const QImage image = Paint();
    ASSERT_EQ(image.size(), QSize(600, 300));
    EXPECT_TRUE(IsShownOneToOne(image, *view.GetBackBuffer(), 0, 69, QSize(90, 70)));

    double worldX = 200 * 1.5, worldY = 40 * 1.5;
    view.GetBackBuffer()->ConvPixelToWorldCoord(worldX, worldY);
    Wheel(200, 40, -120); // Qt units
    EXPECT_EQ(mouse.x, 300);
    EXPECT_EQ(mouse.y, 60);
    view.GetBackBuffer()->ConvWorldToPixelCoord(worldX, worldY);
    EXPECT_LT(std::abs(worldX - 300), 1.0);
    EXPECT_LT(std::abs(worldY - 60), 1.0);
    Mouse(QEvent::MouseMove, 399, 199, Qt::NoButton, Qt::NoButton);
    EXPECT_EQ(mouse.x, 598);
    EXPECT_EQ(mouse.y, 298);
}

TEST(XViewHighDpiTest, ClientPixelsAreDevicePixels)
{
    QProcess child;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("QT_SCALE_FACTOR", "1.5");
    child.setProcessEnvironment(environment);
    child.setProcessChannelMode(QProcess::MergedChannels);
    child.start(QCoreApplication::applicationFilePath(),
                {"--gtest_filter=XViewPaintTest.AtAFractionalScale"});
    ASSERT_TRUE(child.waitForFinished(60000));
    const QByteArray output = child.readAll();
    EXPECT_EQ(child.exitCode(), 0) << output.constData();
    EXPECT_TRUE(output.contains("[  PASSED  ] 1 test")) << output.constData();
}

} // namespace
