#include "enhance/XPaletteGridWidget.h"

#include "enhance/XPaletteModel.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QStyle>

namespace {

constexpr int kMargin = 3; // for the mark of the focus

} // namespace

XPaletteGridWidget::XPaletteGridWidget(const XPaletteModel& model, QWidget* parent)
    : QWidget(parent), m_model(model)
{
    setMouseTracking(true);
    setFocusPolicy(Qt::StrongFocus);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    setAccessibleName("Colour table");
}

QSize XPaletteGridWidget::sizeHint() const
{
    return QSize(XPalettePicture::kUnits, XPalettePicture::kUnits) +
           QSize(2 * kMargin, 2 * kMargin);
}

QRect XPaletteGridWidget::GetGridRect() const
{
    return rect().adjusted(kMargin, kMargin, -kMargin, -kMargin);
}

int XPaletteGridWidget::GetEntryAt(const QPointF& at) const
{
    const QRect grid = GetGridRect();
    return XPalettePicture::GetEntryAt(static_cast<int>(at.x()) - grid.left(),
                                       static_cast<int>(at.y()) - grid.top(), grid.width(),
                                       grid.height());
}

void XPaletteGridWidget::DrawPalette()
{
    m_ratio = devicePixelRatioF();
    m_picture.SetScale(m_ratio);
    m_picture.SetWindowColor(palette().color(QPalette::Window).rgb());
    m_picture.Draw(m_model.GetTable(), m_model.GetCurrent());
    update();
}

void XPaletteGridWidget::DrawItem(int column, int row)
{
    m_picture.DrawItem(m_model.GetTable(), m_model.GetCurrent(), column, row);
    update();
}

void XPaletteGridWidget::DrawIfNeeded()
{
    if (m_picture.GetImage().isNull() || m_ratio != devicePixelRatioF()) DrawPalette();
}

void XPaletteGridWidget::paintEvent(QPaintEvent*)
{
    DrawIfNeeded();
    QPainter painter(this);
    painter.drawImage(GetGridRect(), m_picture.GetImage());
    if (!hasFocus()) return;
    painter.setPen(palette().color(QPalette::Highlight));
    painter.drawRect(rect().adjusted(0, 0, -1, -1));
}

void XPaletteGridWidget::mouseMoveEvent(QMouseEvent* event)
{
    const int entry = GetEntryAt(event->position());
    if (entry >= 0) m_actions.point(entry);
}

void XPaletteGridWidget::mousePressEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton) return event->ignore();
    const int entry = GetEntryAt(event->position());
    if (entry < 0) return;
    m_actions.point(entry);
    m_actions.pick();
}

void XPaletteGridWidget::mouseDoubleClickEvent(QMouseEvent* event)
{
    event->ignore(); // the left one has picked already, the right one is the window's
}

void XPaletteGridWidget::keyPressEvent(QKeyEvent* event)
{
    int columns = 0, rows = 0;
    switch (event->key()) {
    case Qt::Key_Left:
        columns = -1;
        break;
    case Qt::Key_Right:
        columns = 1;
        break;
    case Qt::Key_Up:
        rows = -1;
        break;
    case Qt::Key_Down:
        rows = 1;
        break;
    case Qt::Key_Home:
        columns = rows = -XPaletteModel::kSide;
        break;
    case Qt::Key_End:
        columns = rows = XPaletteModel::kSide;
        break;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        return m_actions.pick();
    case Qt::Key_Space:
        return m_actions.toggle();
    default:
        return QWidget::keyPressEvent(event);
    }
    m_actions.point(XPaletteModel::Step(m_model.GetCurrent(), columns, rows));
}

void XPaletteGridWidget::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::PaletteChange) DrawPalette();
    QWidget::changeEvent(event);
}
