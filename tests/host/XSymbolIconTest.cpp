#include "host/XSymbolIcon.h"

#include <QApplication>
#include <QPalette>

#include <gtest/gtest.h>

namespace {

int InkOf(const QIcon& icon, int side, QIcon::Mode mode, QColor* strongest = nullptr)
{
    const QImage image = icon.pixmap(QSize(side, side), 1.0, mode).toImage();
    int ink = 0;
    int best = -1;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const QColor colour = image.pixelColor(x, y);
            ink += colour.alpha() > 100;
            if (colour.alpha() > best) {
                best = colour.alpha();
                if (strongest) *strongest = colour;
            }
        }
    }
    return ink;
}

TEST(XSymbolIconTest, SignsTakeTheColourOfThePaletteAtEverySize)
{
    const QPalette before = QApplication::palette();
    for (const QColor text : {QColor(Qt::black), QColor(230, 230, 230)}) {
        QPalette palette = before;
        palette.setColor(QPalette::Active, QPalette::ButtonText, text);
        palette.setColor(QPalette::Disabled, QPalette::ButtonText, QColor(120, 120, 120));
        QApplication::setPalette(palette);
        for (int s = 0; s <= static_cast<int>(Symbol::CopyText); ++s) {
            const QIcon icon = XfnSymbolIcon(static_cast<Symbol>(s));
            for (const int side : {16, 24, 36}) {
                QColor colour;
                const int ink = InkOf(icon, side, QIcon::Normal, &colour);
                EXPECT_GT(ink, side) << s << " at " << side;
                EXPECT_LT(ink, side * side * 3 / 4) << s << " at " << side;
                EXPECT_NEAR(colour.red(), text.red(), 3) << s;
            }
            QColor disabled;
            InkOf(icon, 24, QIcon::Disabled, &disabled);
            EXPECT_NEAR(disabled.green(), 120, 3) << s;
        }
    }
    QApplication::setPalette(before);
    EXPECT_GT(InkOf(XfnProgramIcon(), 32, QIcon::Normal), 700);
}

} // namespace
