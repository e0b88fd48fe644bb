#include "view/XGVRubberBand.h"

#include "foundation/surface/XDC.h"
#include "foundation/surface/XRubberBand.h"

#include <QImage>
#include <QPainter>

#include <algorithm>

void XGVRubberBand::Show(const QPoint& from, const QPoint& to, tagXColor color)
{
    m_from = from;
    m_to = to;
    m_color = color;
    m_isShown = true;
}

QRect XGVRubberBand::GetRect() const
{
    return QRect(QPoint(std::min(m_from.x(), m_to.x()), std::min(m_from.y(), m_to.y())),
                 QPoint(std::max(m_from.x(), m_to.x()), std::max(m_from.y(), m_to.y())));
}

QRegion XGVRubberBand::GetRegion() const
{
    if (!m_isShown) return QRegion();
    const QRect rect = GetRect();
    const QRegion whole(rect);
    const QRect inside = rect.adjusted(1, 1, -1, -1);
    return inside.isEmpty() ? whole : whole - inside;
}

void XGVRubberBand::Paint(QPainter& painter) const
{
    if (!m_isShown) return;
    painter.setCompositionMode(QPainter::RasterOp_SourceXorDestination);
    // drawn on black the band is its own mask, and black leaves a picture as it is
    for (const QRect& side : GetRegion()) {
        QImage mask(side.size(), QImage::Format_RGB32);
        mask.fill(Qt::black);
        XDC dc(&mask);
        XfnDrawRubberBand(dc, m_from - side.topLeft(), m_to - side.topLeft(), m_style, 1, m_color);
        painter.drawImage(side.topLeft(), mask);
    }
}
