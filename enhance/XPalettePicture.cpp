#include "enhance/XPalettePicture.h"

#include "foundation/surface/XQtColor.h"

#include <QPainter>

#include <algorithm>
#include <cmath>

QImage XfnDrawRamp(const tagXPaletteTable& table, int width)
{
    width = std::max(width, 1);
    QImage image(width, 1, QImage::Format_RGB32);
    const double right = std::max(width - 1, 1);
    for (int x = 0; x < width; ++x)
        image.setPixel(x, 0, XfnToQRgb(table.GetColor(static_cast<int>(x * 255.0 / right))));
    return image;
}

void XPalettePicture::SetScale(double unitPx)
{
    m_unitPx = unitPx > 1.0 ? unitPx : 1.0;
}

int XPalettePicture::ToPx(int units) const
{
    return static_cast<int>(std::lround(units * m_unitPx));
}

void XPalettePicture::Draw(const tagXPaletteTable& table, int current)
{
    const QSize size(ToPx(kUnits), ToPx(kUnits));
    if (m_image.size() != size) m_image = QImage(size, QImage::Format_RGB32);
    m_image.fill(m_window);
    QPainter painter(&m_image);
    for (int entry = 0; entry < tagXPaletteTable::kEntries; ++entry)
        DrawCell(painter, table, entry, entry == current);
}

void XPalettePicture::DrawItem(const tagXPaletteTable& table, int current, int column, int row)
{
    if (m_image.isNull() || std::min(column, row) < 0 || std::max(column, row) >= kSide) return;
    QPainter painter(&m_image);
    const int entry = row * kSide + column;
    DrawCell(painter, table, entry, entry == current);
}

void XPalettePicture::DrawCell(QPainter& painter, const tagXPaletteTable& table, int entry,
                               bool isCurrent) const
{
    constexpr QRgb kAnchor = 0xFFFF0000u, kCurrent = 0xFFFFFFFFu, kCasing = 0xFF000000u;
    const int x = entry % kSide * kSide, y = entry / kSide * kSide; // units
    const int line = std::max(ToPx(1), 1);
    QRect place(QPoint(ToPx(x), ToPx(y)), QPoint(ToPx(x + kSide - 1), ToPx(y + kSide - 1)));
    place.adjust(0, 0, -1, -1); // QRect's corners are pixels of it
    const auto fill = [&](QRgb color) {
        painter.fillRect(place, QColor(color));
        place.adjust(line, line, -line, -line);
    };
    fill(table.IsAnchor(entry) ? kAnchor : m_window);
    if (isCurrent) {
        fill(kCurrent);
        fill(kCasing);
    }
    fill(XfnToQRgb(table.GetColor(entry)));
}

int XPalettePicture::GetEntryAt(int x, int y, int width, int height)
{
    if (x < 0 || y < 0 || x >= width || y >= height) return -1;
    const auto split = [](int at, int length) {
        return static_cast<int>(static_cast<long long>(at) * kSide / length);
    };
    return split(y, height) * kSide + split(x, width);
}
