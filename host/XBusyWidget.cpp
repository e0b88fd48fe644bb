#include "host/XBusyWidget.h"

#include <QPainter>

namespace {
constexpr const char* kAtRest = "The image is drawn";
constexpr const char* kAtWork = "The image is being drawn";
} // namespace

XBusyWidget::XBusyWidget(QWidget* parent) : QWidget(parent)
{
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Preferred);
    setAccessibleName(kAtRest);
    m_delay.setSingleShot(true);
    m_delay.setInterval(kDelayMs);
    QObject::connect(&m_delay, &QTimer::timeout, this, [this] { Mark(true); });
}

void XBusyWidget::SetBusy(bool isBusy)
{
    if (!isBusy) {
        m_delay.stop();
        Mark(false);
    } else if (!m_isMarked && !m_delay.isActive()) {
        m_delay.start();
    }
}

void XBusyWidget::Mark(bool isMarked)
{
    if (isMarked == m_isMarked) return;
    m_isMarked = isMarked;
    const QString text(isMarked ? kAtWork : kAtRest);
    setAccessibleName(text);
    setToolTip(isMarked ? text : QString());
    update();
}

QSize XBusyWidget::sizeHint() const
{
    const int side = fontMetrics().height();
    return QSize(side, side);
}

void XBusyWidget::paintEvent(QPaintEvent*)
{
    if (!m_isMarked) return;
    constexpr int kSixteenths = 16; // of a degree, as arcs are counted
    constexpr int kFrom = 60, kSpan = 270;
    const double side = fontMetrics().ascent() * 0.75;
    const double pen = side / 6.0;
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    QColor colour = palette().color(QPalette::WindowText);
    colour.setAlphaF(0.7F);
    painter.setPen(QPen(colour, pen, Qt::SolidLine, Qt::RoundCap));
    painter.drawArc(QRectF((width() - side) / 2, (height() - side) / 2, side, side),
                    kFrom * kSixteenths, kSpan * kSixteenths);
}
