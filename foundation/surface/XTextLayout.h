#pragma once

#include "foundation/base/XApi.h"

#include <QFont>
#include <QSizeF>
#include <QStringList>

class QPainter;
class XString;
struct tagXTextStyle;

/// A text broken at its line ends and measured, ready to be painted.
///
/// One line is exactly as high as asked, so that sizes of texts in world units hold at every zoom;
/// letters above 256 pixels are scaled up from that size. Threads: one at a time, any thread.
class XAPI XTextLayout
{
public:
    /// @param lineHeightPx  above 0; others take the height of the style. Held within 1 to 20000.
    XTextLayout(const XString& text, const tagXTextStyle& style, double lineHeightPx);

    const QSizeF& GetSize() const { return m_size; } ///< width and height in pixels
    double GetAverageCharWidth() const { return m_averageCharWidth; }

    /// Paints with the painter's pen, the upper left corner at (0, 0).
    /// @param align  XTextAlign; lines stand left, centred or right within the box
    void Paint(QPainter& painter, int align) const;

private:
    QFont m_font;
    double m_scale = 1.0;
    double m_ascent = 0.0; // of the font, before scaling, as the two below
    double m_lineHeight = 0.0;
    QStringList m_lines;
    QList<double> m_widths;
    QSizeF m_size;
    double m_averageCharWidth = 0.0;
};
