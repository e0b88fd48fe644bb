#include "vecprop/XNumberWidget.h"

#include <QKeyEvent>
#include <QSignalBlocker>
#include <QWheelEvent>

#include <algorithm>

namespace {

constexpr int kNotch = 120;
constexpr int kLeastDigits = 11; // of the width
constexpr int kMostDigits = 18;

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
    SetLeastDigits(kLeastDigits);
}

void XNumberWidget::SetLeastDigits(int digits)
{
    setMinimumWidth(fontMetrics().horizontalAdvance('0') * digits);
}

void XNumberWidget::ShowText(const QString& text, bool isMixed, const QString& whenEmpty)
{
    const QSignalBlocker blocker(this);
    setPlaceholderText(isMixed ? kXMixedText : whenEmpty);
    // never narrower again: fields that shrink while one types are a nuisance
    const int digit = fontMetrics().horizontalAdvance('0');
    const int wanted = fontMetrics().horizontalAdvance(text) + 2 * digit;
    setMinimumWidth(
        std::max(minimumWidth(), std::min({wanted, kMostDigits * digit, maximumWidth()})));
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
