#include "host/XReadOutLabel.h"

XReadOutLabel::XReadOutLabel(const QString& widest, QWidget* parent)
    : QLabel(parent), m_widest(widest)
{
    setTextFormat(Qt::PlainText);
    setSizePolicy(QSizePolicy::Maximum, QSizePolicy::Preferred);
}

QSize XReadOutLabel::sizeHint() const
{
    const QFontMetrics metrics = fontMetrics();
    return QSize(metrics.horizontalAdvance(m_widest) + metrics.averageCharWidth(),
                 QLabel::sizeHint().height());
}

QSize XReadOutLabel::minimumSizeHint() const
{
    return QSize(sizeHint().width() / 3, QLabel::minimumSizeHint().height());
}

void XReadOutLabel::resizeEvent(QResizeEvent* event)
{
    QLabel::resizeEvent(event);
    Cut();
}

void XReadOutLabel::SetWidest(const QString& text)
{
    if (text == m_widest) return;
    m_widest = text;
    updateGeometry();
    Cut();
}

void XReadOutLabel::SetFullText(const QString& text)
{
    if (text == m_full) return;
    m_full = text;
    setToolTip(text.isEmpty() ? accessibleName() : accessibleName() + ": " + text);
    Cut();
}

void XReadOutLabel::Cut()
{
    const int room = contentsRect().width();
    QString shown = fontMetrics().elidedText(m_full, Qt::ElideRight, room);
    // a few letters of a sentence tell nothing; a number keeps what there is room for
    if (m_widest.isEmpty() && room * 3 < fontMetrics().horizontalAdvance(m_full)) shown.clear();
    if (shown != text()) setText(shown);
}
