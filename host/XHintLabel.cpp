#include "host/XHintLabel.h"

#include <QEvent>

#include <algorithm>

namespace {

constexpr int kMargin = 8;
constexpr int kTop = 24;

} // namespace

XHintLabel::XHintLabel(QWidget* over) : QLabel(over)
{
    setObjectName("hint");
    setAccessibleName("Hint");
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setAutoFillBackground(true);
    setFrameShape(QFrame::StyledPanel);
    setMargin(kMargin);
    setAlignment(Qt::AlignCenter);
    setWordWrap(true);
    hide();
    over->installEventFilter(this); // the full screen comes later than it is asked for
    m_timer.setSingleShot(true);
    QObject::connect(&m_timer, &QTimer::timeout, this, [this] { hide(); });
}

void XHintLabel::Tell(const QString& text, int ms)
{
    setText(text);
    Place();
    show();
    raise();
    m_timer.start(ms);
}

// In the middle of the upper edge.
void XHintLabel::Place()
{
    const int room = parentWidget()->width() - 2 * kTop;
    const int wanted = fontMetrics().horizontalAdvance(text()) + 2 * kMargin + 2 * frameWidth() + 2;
    const int width = std::max(1, std::min(room, wanted));
    resize(width, heightForWidth(width));
    move((parentWidget()->width() - width) / 2, kTop);
}

bool XHintLabel::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::Resize && isVisible()) Place();
    return QLabel::eventFilter(watched, event);
}
