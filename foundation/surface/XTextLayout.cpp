#include "foundation/surface/XTextLayout.h"

#include "foundation/base/XTextStyle.h"
#include "foundation/platform/XQtText.h"
#include "foundation/surface/XFont.h"
#include "foundation/surface/XTextAlign.h"

#include <QFontMetricsF>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace {
constexpr double kMaxLineHeight = 20000.0;
constexpr double kMaxFontHeight = 256.0;
} // namespace

XTextLayout::XTextLayout(const XString& text, const tagXTextStyle& style, double lineHeightPx)
{
    const bool isGiven = lineHeightPx > 0.0;
    const double height = std::min(lineHeightPx, kMaxLineHeight);
    m_font = XfnGetFont(style, isGiven ? std::min(height, kMaxFontHeight) : 0.0);
    const QFontMetricsF metrics(m_font);
    m_ascent = metrics.ascent();
    m_lineHeight = std::max(metrics.height(), 1.0);
    if (isGiven) m_scale = std::max(height, 1.0) / m_lineHeight;
    m_averageCharWidth = metrics.averageCharWidth() * m_scale;

    QString plain = XfnToQString(text);
    plain.replace(QLatin1String("\r\n"), QLatin1String("\n"));
    m_lines = plain.split(QLatin1Char('\n'));
    double width = 0.0;
    for (const QString& line : m_lines) {
        m_widths.push_back(metrics.horizontalAdvance(line));
        width = std::max(width, m_widths.back());
    }
    const double lineHeight = isGiven ? std::max(height, 1.0) : m_lineHeight;
    m_size = QSizeF(width * m_scale, lineHeight * static_cast<double>(m_lines.size()));
}

void XTextLayout::Paint(QPainter& painter, int align) const
{
    painter.save();
    painter.setFont(m_font);
    painter.scale(m_scale, m_scale);
    const double boxWidth = m_size.width() / m_scale;
    const double share = align & kXTextCentre ? 0.5 : align & kXTextRight ? 1.0 : 0.0;
    for (qsizetype i = 0; i < m_lines.size(); ++i) {
        painter.drawText(QPointF((boxWidth - m_widths[i]) * share,
                                 m_ascent + m_lineHeight * static_cast<double>(i)),
                         m_lines[i]);
    }
    painter.restore();
}
