#include "host/XReadOutLabel.h"

#include <algorithm>

XReadOutLabel::XReadOutLabel(const QString& widest, QWidget* parent)
    : QLabel(parent), m_widest(widest)
{
    setTextFormat(Qt::PlainText);
    setSizePolicy(QSizePolicy::Maximum, QSizePolicy::Preferred);
}

QSize XReadOutLabel::sizeHint() const
{
    const QFontMetrics metrics = fontMetrics();
    int text = metrics.horizontalAdvance(m_widest);
    if (m_isNumber) text = std::max(text, metrics.horizontalAdvance(m_full));
    return QSize(text + metrics.averageCharWidth(), QLabel::sizeHint().height());
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
    if (m_isNumber) updateGeometry();
    setToolTip(text.isEmpty() ? accessibleName() : accessibleName() + ": " + text);
    Cut();
}

void XReadOutLabel::Cut()
{
    const int room = contentsRect().width();
    QString shown = fontMetrics().elidedText(m_full, Qt::ElideRight, room);
    if (m_widest.isEmpty() && shown != m_full) { // whole clauses, the first ones
        shown = m_full;
        while (!shown.isEmpty() && fontMetrics().horizontalAdvance(shown) > room)
            shown.truncate(std::max<qsizetype>(0, shown.lastIndexOf("; ")));
    }
    if (shown != text()) setText(shown);
}
