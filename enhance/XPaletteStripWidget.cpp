#include "enhance/XPaletteStripWidget.h"

#include "enhance/XPaletteModel.h"
#include "enhance/XPalettePicture.h"

#include <QMouseEvent>
#include <QPainter>

#include <cmath>

XPaletteStripWidget::XPaletteStripWidget(const XPaletteModel& model, QWidget* parent)
    : QWidget(parent), m_model(model)
{
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    setCursor(Qt::SizeHorCursor);
}

QSize XPaletteStripWidget::sizeHint() const
{
    return QSize(tagXPaletteTable::kEntries, fontMetrics().height() * 2);
}

void XPaletteStripWidget::paintEvent(QPaintEvent*)
{
    const double widthPx = width() * devicePixelRatioF();
    QPainter painter(this);
    painter.drawImage(rect(),
                      XfnDrawRamp(m_model.GetTable(), static_cast<int>(std::lround(widthPx))));
}

void XPaletteStripWidget::mousePressEvent(QMouseEvent* event)
{
    m_isRightClick = event->buttons() == Qt::RightButton;
    m_actions.start(static_cast<int>(event->position().x()));
}

void XPaletteStripWidget::mouseMoveEvent(QMouseEvent* event)
{
    const bool isPush = event->buttons() == Qt::RightButton;
    if (!isPush && event->buttons() != Qt::LeftButton) return;
    if (!rect().contains(event->position().toPoint())) return;
    if (m_actions.drag(static_cast<int>(event->position().x()), isPush)) m_isRightClick = false;
}

void XPaletteStripWidget::mouseReleaseEvent(QMouseEvent* event)
{
    if (event->buttons() != Qt::NoButton) return;
    m_actions.end();
    if (event->button() != Qt::RightButton || !m_isRightClick) return;
    m_isRightClick = false;
    m_actions.rightClick();
}

void XPaletteStripWidget::mouseDoubleClickEvent(QMouseEvent* event)
{
    if (event->button() == Qt::RightButton) return m_actions.rightDoubleClick();
    mousePressEvent(event); // two quick drags
}
