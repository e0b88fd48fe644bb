#pragma once

#include "enhance/XPaletteTable.h"

#include <QImage>

class QPainter;

/// A table as one row of pixels, from entry 0 at the left end to entry 255 at the right one.
XAPI QImage XfnDrawRamp(const tagXPaletteTable& table, int width);

/// The table as a grid of 16 by 16 cells of 15 by 15 units with a gap of 1, drawn off screen.
///
/// A cell shows its colour. An anchor is framed in pure red, other cells in the colour of the window;
/// the current cell has a white frame inside, and a black one within that so that it is seen on any
/// colour.
class XAPI XPalettePicture
{
public:
    static constexpr int kSide = 16;             ///< cells
    static constexpr int kUnits = kSide * kSide; ///< side of the picture

    /// @param unitPx  pixels a unit, at least 1
    void SetScale(double unitPx);
    void SetWindowColor(QRgb color) { m_window = color; }
    void Draw(const tagXPaletteTable& table, int current);
    void DrawItem(const tagXPaletteTable& table, int current, int column, int row);
    void Release() { m_image = QImage(); }
    const QImage& GetImage() const { return m_image; } ///< null before the first Draw

    /// The entry under a place in a grid of that size, -1 outside.
    static int GetEntryAt(int x, int y, int width, int height);

private:
    int ToPx(int units) const;
    void DrawCell(QPainter& painter, const tagXPaletteTable& table, int entry,
                  bool isCurrent) const;

    QImage m_image;
    QRgb m_window = 0xFF808080u;
    double m_unitPx = 1.0;
};
