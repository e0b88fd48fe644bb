#include "tests/support/XDrawn.h"
#include "tests/support/XPixelGrid.h"

#include <gtest/gtest.h>

#include <QPainterPath>

#include <algorithm>
#include <cmath>
#include <random>

namespace {

constexpr tagXColor kWhite = 0xFFFFFFFFu;
constexpr tagXColor kHalfWhite = 0x80FFFFFFu;

tagXVertFill Fill(tagXColor colour)
{
    tagXVertFill fill;
    fill.foreColour = colour;
    return fill;
}

TEST(VertReplay, AreasThatShareEdgesNeitherOverlapNorLeaveGaps)
{
    // a net of triangles with vertices anywhere, each area half opaque
    constexpr int kCells = 14;
    std::mt19937 random(5);
    std::uniform_real_distribution<double> jitter(-0.9, 0.9);
    tagXVector3 net[kCells + 1][kCells + 1];
    for (int i = 0; i <= kCells; ++i) {
        for (int j = 0; j <= kCells; ++j)
            net[i][j] = {4.0 * i + jitter(random), 4.0 * j + jitter(random)};
    }
    const tagXVertFill fill = Fill(kHalfWhite);
    const auto addNet = [&](XVertBuffer& buffer) {
        for (int i = 0; i < kCells; ++i) {
            for (int j = 0; j < kCells; ++j) {
                const tagXVector3 lower[] = {net[i][j], net[i + 1][j], net[i][j + 1]};
                const tagXVector3 upper[] = {net[i + 1][j], net[i + 1][j + 1], net[i][j + 1]};
                buffer.AddPolygon(lower, 3, nullptr, &fill);
                buffer.AddPolygon(upper, 3, nullptr, &fill);
            }
        }
    };
    for (const double turn : {0.0, 33.0}) {
        XBackBuffer surface = MakeSurface(52, 52);
        surface.SetRotationAngle(turn);
        surface = Drawn(surface, addNet);
        for (int y = 14; y < 38; ++y) {
            for (int x = 14; x < 38; ++x)
                ASSERT_EQ(surface.GetRow(y)[x], 0xFF808080u) << x << ", " << y << " at " << turn;
        }
    }
}

TEST(VertReplay, AnyAreaHoldsThePixelsWhoseCentresLieInIt)
{
    std::mt19937 random(9);
    std::uniform_real_distribution<double> place(-8.0, 40.0);
    for (int run = 0; run < 60; ++run) {
        const bool isWinding = run % 2 != 0;
        tagXVector3 ring[9];
        QPainterPath path;
        path.setFillRule(isWinding ? Qt::WindingFill : Qt::OddEvenFill);
        for (int i = 0; i < 9; ++i) {
            ring[i] = {place(random), place(random)};
            const QPointF at(ring[i].x, 32.0 - ring[i].y);
            i == 0 ? path.moveTo(at) : path.lineTo(at);
        }
        path.closeSubpath();
        const tagXVertFill fill = Fill(kWhite);
        const std::size_t size = 9;
        XBackBuffer surface = Drawn(MakeSurface(32, 32), [&](XVertBuffer& b) {
            b.AddPolygon(ring, &size, 1, nullptr, &fill, isWinding);
        });
        int differing = 0; // centres within a hair of an edge may fall on either side
        for (int i = 0; i < 1024; ++i) {
            const bool isIn = path.contains(QPointF(i % 32 + 0.5, i / 32 + 0.5));
            differing += isIn != (surface.GetRow(i / 32)[i % 32] == 0xFFFFFFFFu);
        }
        EXPECT_LE(differing, 6) << run;
    }
}

TEST(VertReplay, SmoothedPixelsGetTheShareThatIsCovered)
{
    struct tagCase
    {
        std::vector<tagXVector3> ring;
        int x, y; // pixel
        int level;
    };
    const tagCase cases[] = {
        {{{1.5, 1}, {3, 1}, {3, 3}, {1.5, 3}}, 1, 1, 128},             // left half
        {{{1, 1}, {3, 1}, {3, 2.25}, {1, 2.25}}, 2, 1, 64},            // lowest quarter
        {{{1, 1}, {3, 3}, {1, 3}}, 1, 2, 128},                         // above the diagonal
        {{{-50, 1.5}, {50, 1.5}, {50, 3}, {-50, 3}}, 0, 2, 128},       // beyond both sides
        {{{0, 0}, {1, 0}, {1, 1}, {0, 1}}, 3, 0, 0},                   // elsewhere
        {{{0, 0}, {4, 0}, {4, 4}, {0, 4}}, 2, 2, 255},                 // inside
        {{{0, 0}, {2, 0}, {2, 4}, {4, 4}, {4, 0}, {0, 4}}, 3, 3, 128}, // crosses itself
    };
    for (const tagCase& row : cases) {
        const tagXVertFill fill = Fill(kWhite);
        const auto add = [&](XVertBuffer& b) {
            b.AddPolygon(row.ring.data(), row.ring.size(), nullptr, &fill);
        };
        XBackBuffer surface = Drawn(MakeSurface(4, 4), add, 1);
        EXPECT_NEAR(static_cast<int>(surface.GetRow(row.y)[row.x] & 0xFFu), row.level, 2)
            << row.x << ", " << row.y;
    }
}

TEST(VertReplay, SmoothedLinesHaveEvenSides)
{
    // level, with places within a width of each other
    const tagXVector3 path[] = {{10, 16.3}, {12, 16.3}, {30, 16.3}, {50, 16.3}};
    for (const std::size_t count : {2u, 4u}) {
        const auto add = [&](XVertBuffer& b) { b.AddPolyline(path, count, {kWhite, -7.0, {}}); };
        XBackBuffer surface = Drawn(MakeSurface(64, 32), add, 1);
        for (int x = 10; x < (count == 2 ? 12 : 50); ++x) {
            EXPECT_NEAR(static_cast<int>(surface.GetRow(12)[x] & 0xFFu), 204, 2) << x; // 0.8
            EXPECT_NEAR(static_cast<int>(surface.GetRow(19)[x] & 0xFFu), 51, 2) << x;
        }
    }
}

TEST(VertReplay, ThickLinesHaveNoHoles)
{
    std::mt19937 random(3);
    std::uniform_real_distribution<double> step(-2.0, 2.0);
    for (int run = 0; run < 150; ++run) {
        std::vector<tagXVector3> path = {{32, 32}};
        while (path.size() < 60)
            path.push_back({path.back().x + step(random), path.back().y + step(random)});
        const double width = 3 + run % 13;
        XBackBuffer surface = Drawn(MakeSurface(64, 64), [&](XVertBuffer& b) {
            b.AddPolyline(path.data(), path.size(), {kWhite, -width, {}});
        });
        for (int i = 0; i < 64 * 64; ++i) {
            const double x = i % 64 + 0.5, y = 64 - (i / 64 + 0.5);
            const bool isWithin = std::ranges::any_of(path, [&](const tagXVector3& at) {
                return std::hypot(at.x - x, at.y - y) < width / 2 - 0.35;
            });
            const bool isPainted = (surface.GetRow(i / 64)[i % 64] & 0xFFu) != 0;
            EXPECT_TRUE(isPainted || !isWithin) << run << ": " << x << ", " << y;
        }
    }
}

TEST(VertReplay, OutlinesPaintEachPixelOnce)
{
    // half opaque: what is painted twice comes out brighter
    const tagXVector3 ring[] = {{3.2, 3.7}, {28.1, 5.0}, {25.5, 26.3}, {14.0, 28.8}, {5.4, 20.1}};
    for (const double thick : {0.0, -2.0, -7.0}) {
        const tagXVertLine line{kHalfWhite, thick, {}};
        XBackBuffer surface = Drawn(MakeSurface(32, 32),
                                    [&](XVertBuffer& b) { b.AddPolygon(ring, 5, &line, nullptr); });
        int painted = 0;
        for (int i = 0; i < 1024; ++i) {
            const std::uint32_t pixel = surface.GetRow(i / 32)[i % 32] & 0xFFu;
            EXPECT_TRUE(pixel == 0 || pixel == 0x80u) << i << " at " << thick;
            painted += pixel != 0;
        }
        EXPECT_GT(painted, thick == 0.0 ? 70 : -thick * 80) << thick;
    }
}

TEST(VertReplay, WhatIsSmallerThanAPixelIsOne)
{
    const auto draw = [](tagXColor line, tagXColor fill, double x, double size) {
        const tagXVertLine outline{line, 0.0, {}};
        const tagXVertFill area = Fill(fill);
        const tagXVector3 box[] = {
            {x, 0.1}, {x + size, 0.1}, {x + size, 0.1 + size}, {x, 0.1 + size}};
        const auto add = [&](XVertBuffer& b) { b.AddPolygon(box, 4, &outline, &area); };
        return XfnPixelGrid(Drawn(MakeSurface(4, 1), add).GetImage());
    };
    EXPECT_EQ(draw(kWhite, 0xFF0000FFu, 1.2, 0.3), ".W..\n");
    EXPECT_EQ(draw(0, 0xFF0000FFu, 1.6, 0.3), ".R..\n") << "no centre within";
    EXPECT_EQ(draw(0, 0xFF0000FFu, 3.9, 0.05), "...R\n");
    EXPECT_EQ(draw(kWhite, kWhite, 4.1, 0.3), "....\n");
}

TEST(VertReplay, PartsAndBoxesChangeNoPixel)
{
    // figures of every kind, flat and in parts, seen from near and far: what is left out is not seen
    std::mt19937 random(3);
    std::uniform_real_distribution<double> place(0.0, 400.0), size(0.0, 30.0);
    XVertBuffer flat, parts;
    flat.Start();
    parts.Start();
    for (int i = 0; i < 400; ++i) {
        XVertBuffer part;
        part.Start();
        const tagXVector3 at(place(random), place(random));
        const tagXVector3 line[] = {at, at + tagXVector3(size(random), size(random)),
                                    at + tagXVector3(size(random), -size(random))};
        const tagXVertLine pen{0xFF000000u | static_cast<unsigned>(random() & 0xFFFFFFu),
                               i % 3 == 0   ? size(random) / 3.0
                               : i % 3 == 1 ? -3.0
                                            : 0.0,
                               tagXLineStyle(i % 2 ? 0 : 3)};
        const tagXVertFill fill = Fill(0x60000000u | static_cast<unsigned>(random() & 0xFFFFFFu));
        for (XVertBuffer* buffer : {&flat, &part}) {
            if (i % 4 == 0) buffer->AddPolyline(line, 3, pen);
            if (i % 4 == 1) buffer->AddPolygon(line, 3, &pen, &fill);
            if (i % 4 == 2) buffer->AddPoint(at, {i % 6, i % 8 ? -12.0 : 25.0, kWhite, kXOpaque});
            if (i % 4 == 3) buffer->AddText({.position = at, .text = "Aj", .height = 12.0});
        }
        part.End();
        parts.AddPart(part.GetRecording());
    }
    flat.End();
    parts.End();
    for (const double perPixel : {0.1, 1.0, 7.0, 300.0}) {
        for (const double turn : {0.0, 45.0}) {
            XBackBuffer surfaces[3] = {MakeSurface(90, 60), MakeSurface(90, 60),
                                       MakeSurface(270, 180)};
            for (XBackBuffer& surface : surfaces) {
                surface.SetWorldToCenter(200.0, 200.0);
                surface.SetWorldPerPixel(perPixel, perPixel);
                surface.SetRotationAngle(turn);
            }
            flat.Draw(&surfaces[0]);
            parts.Draw(&surfaces[1]);
            flat.Draw(&surfaces[2]);
            EXPECT_EQ(surfaces[0].GetImage(), surfaces[1].GetImage()) << perPixel;
            // the middle of a larger picture, but for lines that are clipped elsewhere
            const QImage middle = surfaces[2].GetImage().copy(90, 60, 90, 60);
            int differing = 0;
            for (int i = 0; i < 90 * 60; ++i)
                differing += middle.pixel(i % 90, i / 90) != surfaces[0].GetRow(i / 90)[i % 90];
            EXPECT_LE(differing, 60) << perPixel << " turned by " << turn;
        }
    }
}

} // namespace
