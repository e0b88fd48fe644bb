#include "host/XWindowLayout.h"

#include "host/XSessionSettings.h"
#include "host/XWindowPlacement.h"

#include <QDockWidget>
#include <QGuiApplication>
#include <QMainWindow>
#include <QScreen>

#include <algorithm>
#include <utility>

namespace {

constexpr QSize kFirstSize(1200, 800);
constexpr int kLikelyTitleHeight = 40;

} // namespace

void XWindowLayout::Begin()
{
    m_first = m_window.saveState();
    m_window.restoreState(m_settings.GetWindowLayout());
}

void XWindowLayout::Place(const QSize& size, const QPoint& pos, bool hasPos)
{
    QList<QRect> areas;
    for (const QScreen* screen : QGuiApplication::screens())
        areas.append(screen->availableGeometry());
    QRect rect = m_settings.GetWindowRect();
    const bool wasLeft = rect.isValid() && size.isEmpty();
    if (!wasLeft) {
        rect = QRect(QPoint(0, 0), size.isEmpty() ? kFirstSize : size);
        if (!areas.isEmpty()) rect.moveCenter(areas.first().center());
        if (hasPos) rect.moveTopLeft(pos);
    }
    // the toolkit counts without the frame, which is known only once the window was shown
    const int title =
        m_window.isVisible() ? m_window.geometry().top() - m_window.frameGeometry().top() : 0;
    const QMargins frame(0, title > 0 ? title : kLikelyTitleHeight, 0, 0);
    m_window.setGeometry(XfnPlaceWindow(rect, areas, frame));
    if (wasLeft && m_settings.IsWindowMaximized())
        m_window.setWindowState(m_window.windowState() | Qt::WindowMaximized);
}

void XWindowLayout::Shown()
{
    if (!std::exchange(m_isShown, true) && m_settings.GetWindowLayout().isEmpty()) ShareHeight();
}

// The bands need their height to be of use, the layers take what is left.
void XWindowLayout::ShareHeight()
{
    const auto* bands = m_window.findChild<QWidget*>("bands");
    const int wanted = bands->sizeHint().height() + 30; // with the title of the dock
    const int rest = std::max(1, m_window.centralWidget()->height() - wanted);
    m_window.resizeDocks({m_window.findChild<QDockWidget*>("dock.layers"),
                          m_window.findChild<QDockWidget*>("dock.bands")},
                         {rest, wanted}, Qt::Vertical);
}

void XWindowLayout::Reset()
{
    m_window.restoreState(m_first);
    if (!m_window.isMaximized() && !m_window.isFullScreen()) {
        m_settings.SetWindow(QRect(), false, QByteArray());
        Place(QSize(), QPoint(), false);
    }
    ShareHeight();
}

void XWindowLayout::Keep(const QByteArray& panels)
{
    const bool isPlain = !m_window.isMaximized() && !m_window.isFullScreen();
    m_settings.SetWindow(isPlain ? m_window.geometry() : m_window.normalGeometry(),
                         m_window.isMaximized(), panels);
}
