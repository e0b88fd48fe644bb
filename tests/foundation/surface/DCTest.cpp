#include "foundation/surface/XDC.h"

#include "foundation/base/XString.h"
#include "foundation/base/XTextStyle.h"
#include "foundation/surface/XPen.h"
#include "foundation/surface/XQtColor.h"
#include "foundation/surface/XRubberBand.h"
#include "tests/support/XPixelGrid.h"

#include <gmock/gmock.h>

#include <climits>
#include <cstdlib>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(QtColor, RedIsLowest)
{
    EXPECT_EQ(XfnToQRgb(0x00332211u), 0xFF112233u);
    EXPECT_EQ(XfnFromQRgb(0x00112233u), 0xFF332211u);
    EXPECT_EQ(XfnToQColor(0x80332211u).rgba(), 0x80112233u);
}

TEST(DC, BitBltIsClippedToBothSides)
{
    const QImage source = XfnMakePicture({"RGB", "CMY"});
    const struct
    {
        const char* name;
        int x, y, width, height, sourceX, sourceY;
        std::string result;
    } cases[] = {
        {"inside", 1, 1, 2, 1, 1, 1, XfnRows({"....", ".MY.", "...."})},
        {"over the target's edges", -1, -1, 3, 2, 0, 0, XfnRows({"MY..", "....", "...."})},
        {"over the source's edges", 0, 0, 9, 9, 1, 0, XfnRows({"GB..", "MY..", "...."})},
        {"source starts before its edge", 0, 0, 4, 3, -1, -1, XfnRows({"....", ".RGB", ".CMY"})},
        {"far away", INT_MAX, INT_MIN, INT_MAX, INT_MAX, INT_MIN, INT_MAX,
         XfnRows({"....", "....", "...."})},
        {"negative size", 1, 1, -2, 1, 0, 0, XfnRows({"....", "....", "...."})},
    };
    for (const auto& row : cases) {
        QImage from = source;
        QImage to = XfnMakePicture({"....", "....", "...."});
        XDC dc(&to);
        EXPECT_EQ(dc.BitBlt(row.x, row.y, row.width, row.height, XDC(&from), row.sourceX,
                            row.sourceY, kXCopy),
                  1);
        EXPECT_EQ(XfnPixelGrid(to), row.result) << row.name;
    }
}

TEST(DC, OverlappingBlocksOfOneImage)
{
    for (const auto& [dx, dy, result] : {std::tuple{1, 1, XfnRows({"RGB", "CRG", "WCM"})},
                                         std::tuple{-1, -1, XfnRows({"MYB", "KWY", "WKW"})}}) {
        QImage image = XfnMakePicture({"RGB", "CMY", "W.W"});
        XDC dc(&image);
        dc.BitBlt(dx, dy, 3, 3, dc, 0, 0, kXCopy);
        std::string expected = result;
        for (char& ch : expected)
            ch = ch == 'K' ? '.' : ch;
        EXPECT_EQ(XfnPixelGrid(image), expected);
    }
}

TEST(DC, InvertTwiceRestoresAndKeepsTheTopByte)
{
    QImage picture = XfnMakePicture({"R#W", "G.B"});
    picture.setPixel(1, 1, 0xFF123456u);
    const QImage before = picture;
    QImage overlay = XfnMakePicture({".YM", "CW#"});
    XDC dc(&picture);
    ASSERT_TRUE(dc.BitBlt(0, 0, 3, 2, XDC(&overlay), 0, 0, kXInvert));
    EXPECT_EQ(picture.pixel(1, 0), 0xFF7F7F80u);
    EXPECT_EQ(picture.pixel(0, 0), before.pixel(0, 0)) << "black leaves the picture alone";
    dc.BitBlt(0, 0, 3, 2, XDC(&overlay), 0, 0, kXInvert);
    EXPECT_TRUE(picture == before);
}

TEST(DC, UnusableDevicesAndOperationsAreRefused)
{
    QImage picture = XfnMakePicture({"RG"});
    QImage null;
    QImage indexed(4, 4, QImage::Format_Indexed8);
    XDC dc(&picture);
    const XPen pen;
    for (QImage* image : {static_cast<QImage*>(nullptr), &null, &indexed}) {
        XDC nothing(image);
        EXPECT_EQ(nothing.GetWidth(), 0);
        EXPECT_FALSE(nothing.FillRect({0, 0, 1, 1}, 0));
        EXPECT_FALSE(nothing.DrawLine({0, 0}, {3, 3}, pen));
        EXPECT_FALSE(nothing.BitBlt(0, 0, 1, 1, dc, 0, 0, kXCopy));
        EXPECT_FALSE(dc.BitBlt(0, 0, 1, 1, nothing, 0, 0, kXCopy));
        EXPECT_FALSE(XfnDrawRubberBand(nothing, {0, 0}, {1, 1}, tagXLineStyle(1), 1, 65280));
    }
    EXPECT_FALSE(dc.BitBlt(0, 0, 1, 1, dc, 1, 0, 0x00BB0226u));
    EXPECT_EQ(XfnPixelGrid(picture), "RG\n");
}

TEST(DC, StretchTakesTheNearestPixel)
{
    QImage source = XfnMakePicture({"RG", "BY"});
    QImage target = XfnMakePicture({"......", "......", "......"});
    XDC dc(&target);
    EXPECT_TRUE(dc.StretchBlt(1, 0, 4, 2, XDC(&source), 0, 0, 2, 2, kXCopy));
    EXPECT_EQ(XfnPixelGrid(target), XfnRows({".RRGG.", ".BBYY.", "......"}));
    // the source block reaches beyond its image: nothing is invented there
    target.fill(0xFF000000u);
    EXPECT_TRUE(dc.StretchBlt(0, 0, 6, 3, XDC(&source), -1, 0, 3, 2, kXCopy));
    EXPECT_EQ(XfnPixelGrid(target), XfnRows({"..RRGG", "..BBYY", "..BBYY"}));
    for (const double bad : {0.0, -1.0, std::nan(""), HUGE_VAL}) {
        EXPECT_FALSE(dc.StretchBlt(0, 0, bad, 2, XDC(&source), 0, 0, 2, 2, kXCopy)) << bad;
        EXPECT_FALSE(dc.StretchBlt(0, 0, 2, 2, XDC(&source), 0, 0, 2, bad, kXCopy)) << bad;
    }
    EXPECT_TRUE(
        dc.StretchBlt(1e18, -1e18, 1e300, 1e-300, XDC(&source), 1e18, 0, 1e-300, 2, kXCopy));
    EXPECT_FALSE(dc.StretchBlt(0, 0, 1, 1, dc, 0, 0, 1, 1, kXCopy)) << "onto itself";
}

TEST(RubberBand, DrawnTwiceIsGoneAndOnceIsSeen)
{
    // corners in each order, lines and points, every style and several widths, on several greys
    const QPoint corners[][2] = {{{2, 3}, {20, 14}},  {{20, 14}, {2, 3}}, {{20, 3}, {19, 14}},
                                 {{5, 5}, {5, 15}},   {{5, 5}, {18, 5}},  {{9, 9}, {9, 9}},
                                 {{-30, -9}, {12, 8}}};
    for (const unsigned grey : {0x000000u, 0x808080u, 0x7F7F7Fu, 0xFFFFFFu}) {
        for (const tagXColor colour : {65280u, 0u, 0xFFFFFFu, 0xFF00FF00u}) {
            for (const auto& corner : corners) {
                for (const int width : {1, 3}) {
                    QImage image(24, 18, QImage::Format_RGB32);
                    image.fill(grey | 0xFF000000u);
                    const QImage before = image;
                    XDC dc(&image);
                    const auto draw = [&] {
                        XfnDrawRubberBand(dc, corner[0], corner[1], tagXLineStyle(1), width,
                                          colour);
                    };
                    draw();
                    int changed = 0;
                    for (int y = 0; y < image.height(); ++y) {
                        for (int x = 0; x < image.width(); ++x) {
                            const int step =
                                std::abs(qGreen(image.pixel(x, y)) - qGreen(before.pixel(x, y)));
                            changed += step > 0;
                            EXPECT_TRUE(step == 0 || step > 64);
                        }
                    }
                    EXPECT_GT(changed, 0) << grey << ' ' << colour << ' ' << corner[1].x();
                    draw();
                    EXPECT_TRUE(image == before);
                }
            }
        }
    }
}

TEST(RubberBand, OutlineGoesThroughBothCorners)
{
    QImage image(6, 5, QImage::Format_RGB32);
    image.fill(0xFF000000u);
    XDC dc(&image);
    XfnDrawRubberBand(dc, {4, 3}, {1, 1}, tagXLineStyle(0), 1, 0xFFFFFFu);
    EXPECT_EQ(XfnPixelGrid(image), XfnRows({"......", ".????.", ".?..?.", ".????.", "......"}));
}

TEST(Pen, DashLengths)
{
    const auto lengths = [](unsigned short pattern, double& offset) {
        tagXLineStyle style;
        style.SetStyle(pattern, 99);
        return XfnGetDashLengths(style, offset);
    };
    double offset = 1.0;
    EXPECT_THAT(lengths(0xFFFF, offset), IsEmpty());
    EXPECT_THAT(lengths(0x0000, offset), IsEmpty());
    EXPECT_EQ(offset, 0.0);
    EXPECT_THAT(lengths(0xFF00, offset), ElementsAre(8.0, 8.0));
    EXPECT_EQ(offset, 0.0);
    EXPECT_THAT(lengths(0x00FF, offset), ElementsAre(8.0, 8.0));
    EXPECT_EQ(offset, 8.0) << "begins with the gap";
    EXPECT_THAT(lengths(0xC003, offset), ElementsAre(4.0, 12.0));
    EXPECT_EQ(offset, 2.0) << "begins in the middle of a dash";
    EXPECT_THAT(lengths(0xF0C0, offset), ElementsAre(4.0, 4.0, 2.0, 6.0));
    EXPECT_THAT(lengths(0x8000, offset), ElementsAre(1.0, 15.0));
    EXPECT_THAT(lengths(0x5555, offset).size(), 16);
}

TEST(Pen, WidthsAreHeldAndTheColourIsOpaque)
{
    XPen pen;
    for (const auto& [width, held] : {std::pair{-5, 1.0}, {0, 1.0}, {3, 3.0}, {INT_MAX, 1000.0}}) {
        EXPECT_TRUE(XfnCreatePen(pen, tagXLineStyle(0), width, 0x000000FFu));
        EXPECT_EQ(pen.ToQPen().widthF(), held);
        EXPECT_EQ(pen.ToQPen().color().rgba(), 0xFFFF0000u);
    }
    EXPECT_TRUE(XfnCreatePen(pen, tagXLineStyle(5), 3, 0xFFu));
    EXPECT_EQ(pen.ToQPen().style(), Qt::NoPen) << "the code of no line";
}

TEST(DC, FiguresStandOnTheirPixels)
{
    QImage image(7, 5, QImage::Format_RGB32);
    XDC dc(&image);
    XPen pen;
    XfnCreatePen(pen, tagXLineStyle(0), 1, 0xFFFFFFu);
    image.fill(0xFF000000u);
    dc.DrawLine({1, 1}, {5, 1}, pen);
    dc.FillRect(QRect(2, 3, 99, 1), 0x0000FFu);
    EXPECT_EQ(XfnPixelGrid(image),
              XfnRows({".......", ".WWWWW.", ".......", "..RRRRR", "......."}));
    image.fill(0xFF000000u);
    dc.DrawRectangle(QRect(0, 0, 7, 5), pen);
    EXPECT_EQ(XfnPixelGrid(image),
              XfnRows({"WWWWWWW", "W.....W", "W.....W", "W.....W", "WWWWWWW"}));
    image.fill(0xFF000000u);
    dc.DrawEllipse(QRect(0, 0, 7, 5), pen);
    EXPECT_EQ(image.pixel(0, 0), 0xFF000000u);
    EXPECT_EQ(image.pixel(3, 0), 0xFFFFFFFFu);
    EXPECT_EQ(image.pixel(3, 4), 0xFFFFFFFFu);
    EXPECT_EQ(image.pixel(0, 2), 0xFFFFFFFFu);
    EXPECT_EQ(image.pixel(6, 2), 0xFFFFFFFFu);
    EXPECT_FALSE(dc.DrawRectangle(QRect(), pen));
}

TEST(DC, TextMeasuresAndPaintsInsideItsExtent)
{
    tagXTextStyle style;
    style.font.SetFaceName("DejaVu Sans");
    XDC measure;
    for (const double height : {12.0, 40.0, 700.0}) {
        EXPECT_EQ(measure.GetTextExtent("one line", style, height).height(),
                  static_cast<int>(height));
        EXPECT_EQ(measure.GetTextExtent("a\r\nb\nc", style, height).height(),
                  3 * static_cast<int>(height));
    }
    const QSize one = measure.GetTextExtent("Wide 영상", style, 20.0);
    const QSize two = measure.GetTextExtent("Wide 영상", style, 40.0);
    EXPECT_NEAR(two.width(), 2 * one.width(), 0.1 * two.width());
    EXPECT_GT(measure.GetAverageCharWidth(style, 20.0), 4);

    QImage image(one.width() + 40, 60, QImage::Format_RGB32);
    image.fill(0xFF000000u);
    XDC dc(&image);
    dc.DrawText(20, 20, "Wide 영상", style, 0xFFFFFFu, 20.0);
    int inside = 0;
    int outside = 0;
    const QRect box(18, 20, one.width() + 4, one.height()); // slanting letters reach over a little
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (image.pixel(x, y) != 0xFF000000u) ++(box.contains(x, y) ? inside : outside);
        }
    }
    EXPECT_GT(inside, 50);
    EXPECT_EQ(outside, 0);
}

} // namespace
