#include "vecprop/XNumberWidget.h"

#include <QKeyEvent>
#include <QSignalBlocker>
#include <QWheelEvent>

namespace {

constexpr int kNotch = 120;

double GetSteps(int key)
{
    switch (key) {
    case Qt::Key_Up:
        return 1.0;
    case Qt::Key_Down:
        return -1.0;
    case Qt::Key_PageUp:
        return 10.0;
    case Qt::Key_PageDown:
        return -10.0;
    default:
        return 0.0;
    }
}

} // namespace

XNumberWidget::XNumberWidget(QWidget* parent) : QLineEdit(parent)
{
    setMinimumWidth(fontMetrics().horizontalAdvance('0') * 11);
}

void XNumberWidget::ShowText(const QString& text, bool isMixed)
{
    const QSignalBlocker blocker(this);
    setPlaceholderText(isMixed ? kXMixedText : "");
    if (text == this->text()) return;
    setText(text);
    if (!hasFocus()) setCursorPosition(0); // the leading digits are those that matter
}

void XNumberWidget::keyPressEvent(QKeyEvent* event)
{
    const double steps = GetSteps(event->key());
    if (steps != 0.0 && m_step) {
        m_step(steps);
        selectAll();
        return;
    }
    QLineEdit::keyPressEvent(event);
}

void XNumberWidget::wheelEvent(QWheelEvent* event)
{
    // a wheel that scrolls past must not change a number
    if (!hasFocus() || !m_step) return event->ignore();
    m_wheel += event->angleDelta().y();
    const int steps = m_wheel / kNotch;
    m_wheel -= steps * kNotch;
    if (steps != 0) m_step(steps);
}
