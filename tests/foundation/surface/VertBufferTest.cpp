#include "foundation/surface/XVertBuffer.h"

#include "foundation/surface/XPointShape.h"
#include "tests/support/XDrawn.h"
#include "tests/support/XPixelGrid.h"

#include <gtest/gtest.h>

#include <limits>
#include <thread>

namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr tagXColor kWhite = 0xFFFFFFFFu;
constexpr tagXColor kRed = 0xFF0000FFu;

template <class Add>
std::string Draw(int width, int height, Add add)
{
    return XfnPixelGrid(Drawn(MakeSurface(width, height), add).GetImage());
}

tagXVertLine Line(double thick = 0.0, int style = 0, tagXColor colour = kWhite)
{
    return {colour, thick, tagXLineStyle(style)};
}

TEST(VertBuffer, LinesStandOnTheirPixels)
{
    const std::string cross = Draw(5, 4, [](XVertBuffer& b) {
        const tagXVector3 level[] = {{0.5, 1.5}, {4.5, 1.5}};
        const tagXVector3 upright[] = {{2.5, 3.5}, {2.5, 0.5}};
        b.AddPolyline(level, 2, Line());
        b.AddPolyline(upright, 2, Line(0.0, 0, kRed));
    });
    EXPECT_EQ(cross, XfnRows({"..R..", "..R..", "WWRWW", "..R.."}));

    const std::string none = Draw(5, 4, [](XVertBuffer& b) {
        const tagXVector3 box[] = {{0.5, 0.5}, {4.5, 0.5}, {4.5, 3.5}, {0.5, 3.5}};
        const tagXVertLine line = Line(2.0, 5); // the code of "no line"
        const tagXVertFill fill{tagXFillStyle(1), kRed, kRed};
        b.AddPolyline(box, 4, line);
        b.AddPolygon(box, 4, &line, &fill);
        EXPECT_TRUE(b.IsEmpty());
    });
    EXPECT_EQ(none, XfnRows({".....", ".....", ".....", "....."}));
}

TEST(VertBuffer, ThicknessIsWorldUnitsOrPixels)
{
    const auto rows = [](double thick, double worldPerPixel) {
        const tagXVector3 line[] = {{-100.0, 8.0}, {100.0, 8.0}};
        XBackBuffer surface = MakeSurface(16, 16);
        surface.SetWorldPerPixel(worldPerPixel, worldPerPixel);
        surface = Drawn(surface, [&](XVertBuffer& b) { b.AddPolyline(line, 2, Line(thick)); });
        int count = 0;
        for (int y = 0; y < 16; ++y)
            count += surface.GetImage().pixel(8, y) == 0xFFFFFFFFu;
        return count;
    };
    EXPECT_EQ(rows(4.0, 1.0), 4);
    EXPECT_EQ(rows(4.0, 0.5), 8) << "a world length grows with the zoom";
    EXPECT_EQ(rows(-4.0, 0.5), 4) << "pixels do not";
    EXPECT_EQ(rows(0.0, 0.01), 1);
    EXPECT_EQ(rows(4.0, 100.0), 1) << "never thinner than a pixel";
}

TEST(VertBuffer, DashesKeepTheirPlaceWhenTheLineIsClipped)
{
    // the same line seen whole and seen from a window far along it
    const tagXVector3 line[] = {{0.0, 0.5}, {5000.0, 0.5}};
    tagXVertLine dashed = Line();
    dashed.style.SetStyle(0xF0F0, 99);
    const auto add = [&](XVertBuffer& b) { b.AddPolyline(line, 2, dashed); };
    const std::string pattern = Draw(48, 1, add);
    EXPECT_EQ(pattern.substr(8, 16), "WWWW....WWWW....") << "four on, four off";
    XBackBuffer far = MakeSurface(48, 1);
    far.SetWorldToCenter(24.0 + 4000.0, 0.5);
    EXPECT_EQ(XfnPixelGrid(Drawn(far, add).GetImage()).substr(8, 32), pattern.substr(8, 32));
}

TEST(VertBuffer, PolygonFillRulesAndRings)
{
    const tagXVector3 rings[] = {{0, 0}, {6, 0}, {6, 6}, {0, 6}, {2, 2}, {4, 2}, {4, 4}, {2, 4}};
    const std::size_t sizes[] = {4, 4};
    tagXVertFill fill;
    fill.style.SetStyle(tagXFillStyle::kSolid);
    fill.foreColour = kRed;
    const auto draw = [&](bool isWinding) {
        return Draw(6, 6, [&](XVertBuffer& b) {
            b.AddPolygon(rings, sizes, 2, nullptr, &fill, isWinding);
        });
    };
    EXPECT_EQ(draw(false), XfnRows({"RRRRRR", "RRRRRR", "RR..RR", "RR..RR", "RRRRRR", "RRRRRR"}));
    EXPECT_EQ(draw(true), XfnRows({"RRRRRR", "RRRRRR", "RRRRRR", "RRRRRR", "RRRRRR", "RRRRRR"}));
}

TEST(VertBuffer, FillPatternsAndTransparency)
{
    const tagXVector3 box[] = {{0, 0}, {4, 0}, {4, 4}, {0, 4}};
    const auto draw = [&](int style, tagXColor fore, tagXColor back) {
        tagXVertFill fill;
        fill.style.SetStyle(style);
        fill.foreColour = fore;
        fill.backColour = back;
        return Draw(4, 4, [&](XVertBuffer& b) { b.AddPolygon(box, 4, nullptr, &fill); });
    };
    const std::string empty = XfnRows({"....", "....", "....", "...."});
    EXPECT_EQ(draw(1, kRed, kRed), empty) << "no fill";
    EXPECT_EQ(draw(0, 0x00FFFFFFu, kRed), empty) << "no colour chosen";
    EXPECT_EQ(draw(0, kRed, 0), XfnRows({"RRRR", "RRRR", "RRRR", "RRRR"})) << "solid";
    tagXFillStyle custom;
    unsigned char pattern[128] = {};
    for (int y = 0; y < 32; ++y)
        pattern[y * 4] = y % 2 ? 0x00 : 0xFF;
    custom.SetStyle(pattern);
    tagXVertFill fill{custom, kRed, 0};
    const auto hatch = [&] {
        return Draw(4, 4, [&](XVertBuffer& b) { b.AddPolygon(box, 4, nullptr, &fill); });
    };
    EXPECT_EQ(hatch(), XfnRows({"RRRR", "....", "RRRR", "...."}));
    fill.backColour = kWhite;
    EXPECT_EQ(hatch(), XfnRows({"RRRR", "WWWW", "RRRR", "WWWW"}));
}

TEST(VertBuffer, EveryFillIsItsPattern)
{
    for (int code = 0; code < tagXFillStyle::kPredefinedCount; ++code) {
        const tagXFillStyle style(code);
        const std::string picture = Draw(32, 32, [&](XVertBuffer& b) {
            const tagXVector3 box[] = {{0, 0}, {32, 0}, {32, 32}, {0, 32}};
            const tagXVertFill fill{style, kRed, 0};
            b.AddPolygon(box, 4, nullptr, &fill);
        });
        for (int i = 0; i < 1024; ++i) {
            ASSERT_EQ(picture[static_cast<std::size_t>(i / 32 * 33 + i % 32)],
                      style.IsSet(i % 32, i / 32) ? 'R' : '.')
                << code << " at " << i;
        }
    }
}

TEST(VertBuffer, PatternMovesWithThePicture)
{
    tagXVertFill fill;
    fill.style.SetStyle(tagXFillStyle::kForwardDiagonal);
    fill.foreColour = kRed;
    const tagXVector3 box[] = {{-500, -500}, {500, -500}, {500, 500}, {-500, 500}};
    const auto add = [&](XVertBuffer& b) { b.AddPolygon(box, 4, nullptr, &fill); };
    XBackBuffer moved = MakeSurface(40, 30);
    moved.PanPixel(5, -3);
    EXPECT_EQ(Drawn(MakeSurface(40, 30), add).GetImage().copy(0, 3, 35, 27),
              Drawn(moved, add).GetImage().copy(5, 0, 35, 27));
}

TEST(VertBuffer, PointShapes)
{
    const auto draw = [](int shape, double size, tagXColor line, tagXColor fill) {
        return Draw(7, 7, [&](XVertBuffer& b) {
            b.AddPoint({3.5, 3.5}, {shape, size, line, fill});
        });
    };
    const struct
    {
        int shape;
        double size;
        std::initializer_list<const char*> rows; // between the first and the last, which are black
    } kCases[] = {
        {kXPointPlus, 5.0, {"...W...", "...W...", ".WWWWW.", "...W...", "...W..."}},
        {kXPointCross, -5.0, {".W...W.", "..W.W..", "...W...", "..W.W..", ".W...W."}},
        {kXPointSquare, 5.0, {".WWWWW.", ".WRRRW.", ".WRRRW.", ".WRRRW.", ".WWWWW."}},
        {kXPointDot, 5.0, {".......", ".......", "...W...", ".......", "......."}},
        {kXPointCircle, 5.0, {"..WWW..", ".WRRRW.", ".WRRRW.", ".WRRRW.", "..WWW.."}},
    };
    for (const auto& row : kCases) {
        EXPECT_EQ(draw(row.shape, row.size, kWhite, kRed),
                  XfnRows({"......."}) + XfnRows(row.rows) + XfnRows({"......."}))
            << row.shape;
    }
    EXPECT_EQ(draw(kXPointSquare, 5.0, 0x00FFFFFFu, 0).find_first_not_of(".\n"), std::string::npos);
    const std::string triangle = draw(kXPointTriangle, 5.0, kWhite, kRed);
    EXPECT_EQ(triangle.find_first_not_of(".\n"), 8u + 3u) << triangle;
    EXPECT_EQ(triangle.substr(5 * 8, 7), ".WWWWW.") << triangle;
    EXPECT_EQ(triangle[4 * 8 + 3], 'R') << triangle;
}

TEST(VertBuffer, WhatIsNotFiniteIsDropped)
{
    tagXVertFill fill;
    fill.style.SetStyle(tagXFillStyle::kSolid);
    const tagXVertLine line = Line();
    for (const double bad : {kNaN, HUGE_VAL, -HUGE_VAL, 1.7e308, -1.7e308}) {
        const std::string picture = Draw(5, 1, [&](XVertBuffer& b) {
            const tagXVector3 broken[] = {
                {0.5, 0.5}, {1.5, 0.5}, {bad, 0.5}, {3.5, 0.5}, {4.5, 0.5}};
            b.AddPolyline(broken, 5, line);
            b.AddPoint({bad, bad}, {});
            b.AddText({.position = {0.0, bad}, .text = "x", .height = 9.0});
            b.AddPolygon(broken + 2, 1, &line, &fill);
        });
        EXPECT_EQ(picture, "WW.WW\n") << "the line is cut where the vertex is missing: " << bad;
    }
    XVertBuffer buffer;
    buffer.Start();
    const tagXVector3 one[] = {{1, 1}};
    buffer.AddPolyline(one, 1, line);
    buffer.AddPolyline(nullptr, 5, line);
    buffer.AddPolyline(one, 1, Line(kNaN));
    buffer.AddPolygon(one, nullptr, 1, &line, &fill);
    buffer.AddText({.text = "", .height = 5.0});
    buffer.AddText({.text = "x", .height = kNaN});
    buffer.AddText({.text = "x", .height = -1.0});
    buffer.AddImage(QImage(), {0, 0}, {1, 0}, {0, 1});
    buffer.End();
    EXPECT_TRUE(buffer.IsEmpty());
}

TEST(VertBuffer, FarVerticesAreClippedNotWrapped)
{
    // each figure covers the window wholly or crosses it, with vertices far beyond 16 or 32 bits
    tagXVertFill fill;
    fill.style.SetStyle(tagXFillStyle::kSolid);
    fill.foreColour = kRed;
    const std::string picture = Draw(4, 3, [&](XVertBuffer& b) {
        const tagXVector3 huge[] = {{-1e12, -1e12}, {1e12, -1e12}, {1e12, 1e12}, {-1e12, 1e12}};
        const tagXVector3 level[] = {{-3e9, 1.5}, {5e9, 1.5}};
        const tagXVector3 far[] = {{1e15, 1e15}, {2e15, 1e15}};
        const tagXVertLine line = Line();
        b.AddPolygon(huge, 4, &line, &fill);
        b.AddPolyline(level, 2, line);
        b.AddPolyline(far, 2, line);
        b.AddPoint({1e15, 0}, {});
    });
    EXPECT_EQ(picture, XfnRows({"RRRR", "WWWW", "RRRR"}));
    // and at the finest zoom a mapping allows
    const tagXVector3 box[] = {{-1, -1}, {1, -1}, {1, 1}, {-1, 1}};
    const tagXVertLine thick = Line(0.5);
    XBackBuffer surface = MakeSurface(8, 8);
    surface.SetWorldToCenter(0.0, 0.0);
    surface.SetWorldPerPixel(1e-150, 1e-150);
    surface = Drawn(surface, [&](XVertBuffer& b) {
        b.AddPolygon(box, 4, &thick, &fill);
        b.AddText({.position = {0, 0}, .text = "x", .height = 1.0});
    });
    EXPECT_EQ(surface.GetImage().pixel(4, 4), 0xFFFF0000u);
}

TEST(VertBuffer, TextIsAnchoredTurnedAndScaled)
{
    const auto bounds = [](tagXVertText text, double worldPerPixel, int fontSizeFlag, double turn) {
        text.style.font.SetFaceName("DejaVu Sans");
        text.text = "HHHH";
        text.colour = 0;
        text.backColour = kRed;
        XBackBuffer surface = MakeSurface(200, 200);
        surface.SetWorldToCenter(0.0, 0.0);
        surface.SetWorldPerPixel(worldPerPixel, worldPerPixel);
        surface.SetRotationAngle(turn);
        surface = Drawn(surface, [&](XVertBuffer& b) {
            b.SetFontSizeFlag(fontSizeFlag);
            b.AddText(text);
        });
        QRect box;
        for (int y = 0; y < 200; ++y) {
            for (int x = 0; x < 200; ++x) {
                if (surface.GetImage().pixel(x, y) == 0xFFFF0000u) box |= QRect(x, y, 1, 1);
            }
        }
        return box;
    };
    const QRect base = bounds({.height = 20.0}, 1.0, 0, 0.0);
    EXPECT_EQ(base.topLeft(), QPoint(100, 100));
    EXPECT_EQ(base.height(), 20);
    EXPECT_NEAR(bounds({.height = 20.0}, 0.5, 0, 0.0).height(), 40, 1);
    EXPECT_NEAR(bounds({.height = 20.0}, 0.5, 1, 0.0).height(), 20, 1) << "pixels with the flag";
    const QRect middle =
        bounds({.height = 20.0, .align = kXTextCentre | kXTextMiddle}, 1.0, 0, 0.0);
    EXPECT_NEAR(middle.center().x(), 100, 1);
    EXPECT_NEAR(middle.center().y(), 100, 1);
    const QRect corner = bounds({.height = 20.0, .align = kXTextRight | kXTextBottom}, 1.0, 0, 0.0);
    EXPECT_NEAR(corner.right(), 99, 1);
    EXPECT_NEAR(corner.bottom(), 99, 1);
    // a quarter turn counterclockwise: the text runs upwards, its top to the left
    for (const QRect& turned : {bounds({.height = 20.0, .angleDeg = 90.0}, 1.0, 0, 0.0),
                                bounds({.height = 20.0}, 1.0, 0, 90.0)}) {
        EXPECT_NEAR(turned.left(), 100, 1);
        EXPECT_NEAR(turned.bottom(), 99, 1);
        EXPECT_NEAR(turned.width(), base.height(), 1);
        EXPECT_NEAR(turned.height(), base.width(), 1);
    }
}

TEST(VertBuffer, EachTextKeepsTheFontSizeFlagOfItsTime)
{
    XVertBuffer buffer;
    buffer.Start();
    const tagXVertText text{
        .position = {0.0, 20.0}, .text = "H", .height = 10.0, .colour = 0, .backColour = kRed};
    buffer.SetFontSizeFlag(1);
    buffer.AddText(text);
    buffer.SetFontSizeFlag(0);
    tagXVertText right = text;
    right.position.x = 10.0;
    right.backColour = kWhite;
    buffer.AddText(right);
    buffer.End();
    XBackBuffer surface = MakeSurface(40, 40);
    surface.SetWorldToCenter(10.0, 10.0);
    surface.SetWorldPerPixel(0.5, 0.5);
    for (const int flagAfterwards : {0, 1}) {
        buffer.SetFontSizeFlag(flagAfterwards);
        surface.Clear(kXOpaque);
        buffer.Draw(&surface);
        EXPECT_EQ(surface.GetImage().pixel(1, 8), 0xFFFF0000u);
        EXPECT_EQ(surface.GetImage().pixel(1, 15), 0xFF000000u) << "10 pixels high";
        EXPECT_EQ(surface.GetImage().pixel(21, 15), 0xFFFFFFFFu) << "10 units are 20 pixels";
    }
}

TEST(VertBuffer, ImagesLieBetweenTheirCorners)
{
    const auto draw = [](int width, int height, const tagXVector3& upperLeft,
                         const tagXVector3& upperRight, const tagXVector3& lowerLeft) {
        return Draw(width, height, [&](XVertBuffer& b) {
            b.AddImage(XfnMakePicture({"RG", "BY"}), upperLeft, upperRight, lowerLeft);
        });
    };
    EXPECT_EQ(draw(6, 4, {1, 4}, {5, 4}, {1, 0}),
              XfnRows({".RRGG.", ".RRGG.", ".BBYY.", ".BBYY."}));
    EXPECT_EQ(draw(2, 2, {0, 0}, {0, 2}, {2, 0}), XfnRows({"GY", "RB"})) << "laid on its side";
    const std::string giant = draw(2, 1, {-1e9, 1e9}, {1e9, 1e9}, {-1e9, -1e9 + 1});
    EXPECT_EQ(giant.find('.'), std::string::npos) << "covers all";
    const std::string half = Draw(1, 1, [&](XVertBuffer& b) {
        b.AddImage(XfnMakePicture({"W"}), {0, 1}, {1, 1}, {0, 0}, 0.5);
    });
    EXPECT_TRUE(half == "?\n" || half == "#\n") << half;
}

TEST(VertBuffer, RecordingStaysUntilEndAndIsShared)
{
    XVertBuffer buffer;
    const tagXVector3 line[] = {{0.5, 0.5}, {2.5, 0.5}};
    buffer.AddPolyline(line, 2, Line()); // outside Start and End
    EXPECT_TRUE(buffer.IsEmpty());
    buffer.Start();
    buffer.AddPolyline(line, 2, Line());
    EXPECT_TRUE(buffer.IsEmpty()) << "unfinished";
    buffer.End();
    const auto recording = buffer.GetRecording();
    buffer.Start();
    EXPECT_FALSE(buffer.IsEmpty()) << "the old one until the new one stands";
    buffer.End();
    EXPECT_TRUE(buffer.IsEmpty());
    EXPECT_EQ(recording->GetCommands().size(), 1u);

    // replayed by two threads, each on a surface of its own
    XBackBuffer surfaces[2] = {MakeSurface(3, 1), MakeSurface(3, 1)};
    std::thread threads[2];
    for (int i = 0; i < 2; ++i) {
        threads[i] = std::thread([&, i] {
            XVertBuffer replay;
            replay.SetRecording(recording);
            replay.Draw(&surfaces[i]);
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    for (XBackBuffer& surface : surfaces)
        EXPECT_EQ(XfnPixelGrid(surface.GetImage()), "WWW\n");
}

TEST(VertBuffer, AbortEndsTheReplay)
{
    const XVertBuffer buffer = Recorded([](XVertBuffer& b) {
        b.AddPoint({1.5, 0.5}, {kXPointDot, 0.0, kWhite, 0});
    });
    XBackBuffer surface = MakeSurface(3, 1);
    std::atomic<int> abort{1};
    EXPECT_FALSE(buffer.Draw(&surface, &abort));
    EXPECT_EQ(XfnPixelGrid(surface.GetImage()), "...\n");
    abort = 0;
    EXPECT_TRUE(buffer.Draw(&surface, &abort));
    EXPECT_FALSE(buffer.Draw(nullptr));
    XBackBuffer empty;
    EXPECT_FALSE(buffer.Draw(&empty));
}

} // namespace
