#include "foundation/surface/XBackBuffer.h"

#include "tests/support/XPixelGrid.h"

#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <cstring>

namespace {

XBackBuffer MakeBuffer(std::initializer_list<const char*> rows)
{
    QImage picture = XfnMakePicture(rows);
    XDC dc(&picture);
    XBackBuffer buffer;
    buffer.Create(&dc, 2);
    buffer.GetDC()->BitBlt(0, 0, picture.width(), picture.height(), dc, 0, 0, kXCopy);
    return buffer;
}

TEST(BackBuffer, SizeKindAndDib)
{
    QImage window(5, 3, QImage::Format_RGB32);
    XDC dc(&window);
    XBackBuffer buffer;
    EXPECT_EQ(buffer.GetRow(0), nullptr);
    ASSERT_TRUE(buffer.Create(&dc, 2));
    EXPECT_EQ(buffer.GetType(), 2);
    EXPECT_EQ(buffer.GetWidth(), 5);
    EXPECT_EQ(buffer.GetHeight(), 3);
    EXPECT_EQ(buffer.GetBitsPixel(), 32);
    EXPECT_EQ(buffer.GetDIBWidthBytes(), 20);
    buffer.Clear(0x00332211u);
    tagBITMAPINFO info;
    const std::uint8_t* bits = buffer.GetDIBits(info);
    ASSERT_NE(bits, nullptr);
    const std::uint8_t bgr[] = {0x33, 0x22, 0x11};
    EXPECT_EQ(std::memcmp(bits, bgr, 3), 0);
    std::uint8_t header[40];
    std::memcpy(header, &info.bmiHeader, 40);
    const std::uint8_t expected[40] = {40,   0, 0, 0,  5, 0, 0, 0, 0xFD, 0xFF, 0xFF,
                                       0xFF, 1, 0, 32, 0, 0, 0, 0, 0,    60};
    EXPECT_EQ(std::memcmp(header, expected, 40), 0);
    EXPECT_EQ(XfnGetDibRowBytes(5, 24), 16u);
    EXPECT_EQ(XfnGetDibRowBytes(33, 1), 8u);
    EXPECT_EQ(XfnGetDibRowBytes(-1, 24), 0u);
}

TEST(BackBuffer, ResizeKeepsTheMappingAndRefusesTheAbsurd)
{
    XBackBuffer buffer = MakeBuffer({"RG", "BY"});
    buffer.SetWorldToCenter(100.0, 50.0);
    buffer.SetWorldPerPixel(2.0, 3.0);
    const std::string before = XfnPixelGrid(buffer.GetImage());
    const int bad[][2] = {{-1, 5}, {5, -1}, {INT_MAX, INT_MAX}, {32768, 1}, {32767, 32767}};
    for (const auto& size : bad) {
        EXPECT_FALSE(buffer.Resize(nullptr, size[0], size[1])) << size[0];
        EXPECT_EQ(XfnPixelGrid(buffer.GetImage()), before);
    }
    EXPECT_TRUE(buffer.Resize(nullptr, 2, 2));
    EXPECT_EQ(XfnPixelGrid(buffer.GetImage()), before) << "the same size loses nothing";

    ASSERT_TRUE(buffer.Resize(nullptr, 0, 0));
    EXPECT_EQ(buffer.GetRow(0), nullptr);
    EXPECT_EQ(buffer.GetBits(), nullptr);
    buffer.Clear(0xFFu);
    buffer.Clear(0xFFu, QRect(0, 0, 5, 5));
    QImage window(3, 3, QImage::Format_RGB32);
    XDC dc(&window);
    EXPECT_FALSE(buffer.Swap(&dc, kXCopy));
    EXPECT_FALSE(buffer.SwapPanCopy(&dc, 1, 1, 0, kXCopy));
    EXPECT_FALSE(buffer.SwapZoomIn(&dc, 1.0, 0, kXCopy));
    EXPECT_FALSE(buffer.ZoomFit(0, 0, 1, 1));

    ASSERT_TRUE(buffer.Resize(nullptr, 4, 6));
    double x = 2.0;
    double y = 3.0;
    buffer.ConvPixelToWorldCoord(x, y);
    EXPECT_EQ(x, 100.0) << "the centre moved";
    EXPECT_EQ(y, 50.0);
    EXPECT_EQ(buffer.GetImage().pixel(3, 5), 0xFF000000u);
    EXPECT_EQ(buffer.GetRow(6), nullptr);
    EXPECT_EQ(buffer.GetRow(-1), nullptr);
    EXPECT_EQ(buffer.GetRow(1), buffer.GetBits() + buffer.GetStride());
}

TEST(BackBuffer, ClearIsOpaqueAndClipped)
{
    XBackBuffer buffer = MakeBuffer({"....", "....", "...."});
    buffer.Clear(0x00FFFFFFu);
    buffer.Clear(0x000000FFu, QRect(2, 1, 50, 50));
    buffer.Clear(0x0000FF00u, QRect(-9, -9, 10, 10));
    buffer.Clear(0u, QRect(9, 9, 2, 2));
    buffer.Clear(0u, QRect());
    EXPECT_EQ(XfnPixelGrid(buffer.GetImage()), XfnRows({"GWWW", "WWRR", "WWRR"}));
}

struct tagSwapCase
{
    const char* name;
    int (*swap)(XBackBuffer&, XDC*);
    std::string shown;
};

TEST(BackBuffer, SwapsShowMovedAndScaledPictures)
{
    const tagSwapCase cases[] = {
        {"copy", [](XBackBuffer& b, XDC* dc) { return b.Swap(dc, kXCopy); },
         XfnRows({"RGBY", "CMWR", "GBYC", "MWRG"})},
        {"right and down",
         [](XBackBuffer& b, XDC* dc) { return b.SwapPan(dc, 1, 2, 0xFF808080u, kXCopy); },
         XfnRows({"####", "####", "#RGB", "#CMW"})},
        {"left and up",
         [](XBackBuffer& b, XDC* dc) { return b.SwapPan(dc, -3, -1, 0xFF808080u, kXCopy); },
         XfnRows({"R###", "C###", "G###", "####"})},
        {"moved out", [](XBackBuffer& b, XDC* dc) { return b.SwapPan(dc, INT_MIN, 7, 0, kXCopy); },
         XfnRows({"....", "....", "....", "...."})},
        {"twice as large about the middle",
         [](XBackBuffer& b, XDC* dc) { return b.SwapZoomIn(dc, 1.0, 0, kXCopy); },
         XfnRows({"MMWW", "MMWW", "BBYY", "BBYY"})},
        {"half as large",
         [](XBackBuffer& b, XDC* dc) { return b.SwapZoomOut(dc, 1.0, 0xFF808080u, kXCopy); },
         XfnRows({"####", "#MR#", "#WG#", "####"})},
        {"gone in the distance",
         [](XBackBuffer& b, XDC* dc) { return b.SwapZoomOut(dc, 60.0, 0, kXCopy); },
         XfnRows({"....", "....", "....", "...."})},
    };
    for (const tagSwapCase& row : cases) {
        XBackBuffer buffer = MakeBuffer({"RGBY", "CMWR", "GBYC", "MWRG"});
        const std::string before = XfnPixelGrid(buffer.GetImage());
        QImage window(4, 4, QImage::Format_RGB32);
        window.fill(0xFFFFFFFFu);
        XDC dc(&window);
        EXPECT_TRUE(row.swap(buffer, &dc)) << row.name;
        EXPECT_EQ(XfnPixelGrid(window), row.shown) << row.name;
        EXPECT_EQ(XfnPixelGrid(buffer.GetImage()), before) << row.name << " changed the buffer";
        EXPECT_FALSE(row.swap(buffer, nullptr)) << row.name;
    }
}

TEST(BackBuffer, CopyFormsKeepWhatTheyShow)
{
    XBackBuffer buffer = MakeBuffer({"RG", "BY"});
    const XBufferMapping mapping = buffer.GetMapping();
    QImage window(2, 2, QImage::Format_RGB32);
    XDC dc(&window);
    EXPECT_TRUE(buffer.SwapPanCopy(&dc, 1, 0, 0, kXCopy));
    EXPECT_EQ(XfnPixelGrid(window), XfnRows({".R", ".B"}));
    EXPECT_EQ(XfnPixelGrid(buffer.GetImage()), XfnRows({".R", ".B"}));
    EXPECT_FALSE(buffer.SwapPanCopy(&dc, 1, 0, 0, 12345u)) << "unknown raster operation";
    EXPECT_EQ(XfnPixelGrid(buffer.GetImage()), XfnRows({".R", ".B"}));
    EXPECT_TRUE(buffer.SwapZoomInCopy(nullptr, 1.0, 0, kXCopy));
    EXPECT_TRUE(buffer.SwapZoomOutCopy(nullptr, 0.0, 0, kXCopy));
    EXPECT_EQ(XfnPixelGrid(buffer.GetImage()), XfnRows({".R", ".B"}));
    for (const double step : {std::nan(""), HUGE_VAL, -HUGE_VAL, 5000.0}) {
        EXPECT_FALSE(buffer.SwapZoomInCopy(&dc, step, 0, kXCopy)) << step;
    }
    EXPECT_TRUE(buffer.GetMapping() == mapping) << "only PanPixel and the zooms move the mapping";
}

TEST(BackBuffer, OverlayShownTwiceIsGone)
{
    XBackBuffer overlay = MakeBuffer({".W", "#R"});
    QImage window = XfnMakePicture({"RG", "#Y"});
    const QImage before = window;
    XDC dc(&window);
    overlay.Swap(&dc, kXInvert);
    EXPECT_FALSE(window == before);
    overlay.Swap(&dc, kXInvert);
    EXPECT_TRUE(window == before);
}

TEST(BackBuffer, CopiesAreIndependent)
{
    XBackBuffer buffer = MakeBuffer({"RG"});
    buffer.SetUpdateNeeded();
    XBackBuffer copy = buffer;
    EXPECT_TRUE(copy.IsUpdateNeeded());
    copy.GetDC()->FillRect(QRect(0, 0, 1, 1), 0xFF0000u);
    copy.PanPixel(5, 5);
    copy.UpdateCompleted();
    EXPECT_EQ(XfnPixelGrid(buffer.GetImage()), "RG\n");
    EXPECT_EQ(XfnPixelGrid(copy.GetImage()), "BG\n");
    EXPECT_TRUE(buffer.IsUpdateNeeded());
    const QImage frame = buffer.GetImage();
    buffer.GetRow(0)[1] = 0xFFFFFFFFu;
    EXPECT_EQ(XfnPixelGrid(frame), "RG\n") << "a published frame was drawn on";
    buffer.SetMapping(copy.GetMapping());
    EXPECT_EQ(buffer.GetWidth(), 2);
    EXPECT_TRUE(buffer.GetMapping() == copy.GetMapping());
}

} // namespace
