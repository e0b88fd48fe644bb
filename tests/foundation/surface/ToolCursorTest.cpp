#include "foundation/surface/XToolCursor.h"

#include <gtest/gtest.h>

#include <QPixmap>

#include <vector>

namespace {

TEST(ToolCursor, EachToolHasOneOfItsOwnSeenOnBlackAndWhite)
{
    std::vector<QImage> pictures;
    for (const int mode :
         {101, 102, 103, 104, 105, 106, 107, 108, 109, 110, 111, 112, 113, 120, 121, 131, 202}) {
        const QCursor cursor = XfnGetToolCursor(mode);
        const QImage picture = cursor.pixmap().toImage().convertToFormat(QImage::Format_ARGB32);
        ASSERT_FALSE(picture.isNull()) << mode;
        for (const QImage& other : pictures)
            EXPECT_NE(picture, other) << mode;
        int dark = 0;
        int light = 0;
        for (int y = 0; y < picture.height(); ++y) {
            for (int x = 0; x < picture.width(); ++x) {
                const QRgb word = picture.pixel(x, y);
                if (qAlpha(word) > 200) ++(qGray(word) < 128 ? dark : light);
            }
        }
        EXPECT_GT(dark, 5) << mode;
        EXPECT_GT(light, 10) << mode;
        pictures.push_back(picture);
    }
    EXPECT_EQ(XfnGetToolCursor(999).hotSpot(), XfnGetToolCursor(101).hotSpot());
    EXPECT_EQ(XfnGetCursor(XCursorImage::Pan).shape(), Qt::ClosedHandCursor);
    EXPECT_EQ(XfnGetCursor(XCursorImage::Arrow).shape(), Qt::ArrowCursor);
}

} // namespace
