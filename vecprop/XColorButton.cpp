#include "vecprop/XColorButton.h"

#include "dialogs/XOwnerWidget.h"
#include "foundation/platform/XPrompts.h"
#include "foundation/surface/XQtColor.h"
#include "vecprop/XNumberWidget.h"

#include <QPainter>
#include <QStyleOptionButton>

XColorButton::XColorButton(QWidget* parent) : QPushButton(parent)
{
    setAutoDefault(false); // Enter is for the dialog
    QObject::connect(this, &QPushButton::clicked, this, [this] { Choose(); });
}

void XColorButton::ShowColor(tagXColor color, int opacityPercent, bool isMixed)
{
    m_color = color;
    m_opacity = opacityPercent;
    m_isMixed = isMixed;
    const QString text =
        isMixed ? QString("several colours") : QColor(XfnToQRgb(color)).name().toUpper();
    setToolTip(text);
    setAccessibleDescription(text);
    update();
}

QSize XColorButton::sizeHint() const
{
    const int letter = fontMetrics().horizontalAdvance('0');
    return QSize(letter * 9, QPushButton::sizeHint().height());
}

void XColorButton::Choose()
{
    tagXColor color = m_color;
    if (XPrompts::Get()->ChooseColor(XfnGetOwnerHandle(this), color) && m_handler) m_handler(color);
}

void XColorButton::paintEvent(QPaintEvent* event)
{
    QPushButton::paintEvent(event);
    QStyleOptionButton option;
    initStyleOption(&option);
    const int margin = fontMetrics().height() / 3;
    const QRect swatch = rect().adjusted(margin, margin, -margin, -margin);
    QPainter painter(this);
    if (!isEnabled()) painter.setOpacity(0.4);
    if (m_isMixed) {
        painter.drawText(swatch, Qt::AlignCenter, kXMixedText);
        return;
    }
    const int side = std::max(swatch.height() / 3, 2);
    painter.setClipRect(swatch);
    for (int y = swatch.top(), row = 0; y <= swatch.bottom(); y += side, ++row)
        for (int x = swatch.left(), column = 0; x <= swatch.right(); x += side, ++column)
            painter.fillRect(x, y, side, side, (row + column) % 2 ? Qt::gray : Qt::white);
    QColor color = QColor(XfnToQRgb(m_color));
    color.setAlphaF(static_cast<float>(m_opacity) / 100.0f);
    painter.fillRect(swatch, color);
    painter.setPen(palette().color(QPalette::ButtonText));
    painter.drawRect(swatch.adjusted(0, 0, -1, -1));
}
