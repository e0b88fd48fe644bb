#include "dialogs/XSignIcon.h"

#include <QGuiApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPalette>

#include <algorithm>
#include <utility>

namespace {

void Line(QPainterPath& path, double x0, double y0, double x1, double y1)
{
    path.moveTo(x0, y0);
    path.lineTo(x1, y1);
}

void Lens(QPainterPath& path)
{
    path.addEllipse(QPointF(6.8, 6.8), 4.6, 4.6);
    Line(path, 10.2, 10.2, 14, 14);
}

// Four corners around what is shown as a whole.
void Frame(QPainterPath& path)
{
    for (const double x : {2.0, 14.0}) {
        for (const double y : {2.0, 14.0}) {
            path.moveTo(x < 8 ? 5.0 : 11.0, y);
            path.lineTo(x, y);
            path.lineTo(x, y < 8 ? 5.0 : 11.0);
        }
    }
}

// Paints on demand, so the palette of the moment counts.
class XDrawnIconEngine final : public QIconEngine
{
public:
    using Paint = std::function<void(QPainter&, QIcon::Mode)>;
    explicit XDrawnIconEngine(Paint paint) : m_paint(std::move(paint)) {}

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State) override
    {
        const double side = std::min(rect.width(), rect.height());
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        painter->translate(rect.x() + (rect.width() - side) / 2,
                           rect.y() + (rect.height() - side) / 2);
        painter->scale(side / kXSignSide, side / kXSignSide);
        m_paint(*painter, mode);
        painter->restore();
    }

    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override
    {
        QImage image(size, QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        QPainter painter(&image);
        paint(&painter, QRect(QPoint(0, 0), size), mode, state);
        painter.end();
        return QPixmap::fromImage(image);
    }

    QIconEngine* clone() const override { return new XDrawnIconEngine(*this); }

private:
    Paint m_paint;
};

} // namespace

QPainterPath XfnSignPath(XSign sign)
{
    QPainterPath path;
    switch (sign) {
    case XSign::Fit:
        Frame(path);
        path.addRect(5, 5, 4, 4);
        path.addRect(7.5, 7.5, 4, 4);
        break;
    case XSign::OneToOne:
        for (const double x : {4.8, 12.8}) {
            Line(path, x - 1.8, 5, x, 3.5);
            Line(path, x, 3.5, x, 12.5);
        }
        for (const double y : {6.2, 10.4})
            path.addEllipse(QPointF(8.6, y), 0.35, 0.35);
        break;
    case XSign::ZoomIn:
        Lens(path);
        Line(path, 4.6, 6.8, 9, 6.8);
        Line(path, 6.8, 4.6, 6.8, 9);
        break;
    case XSign::ZoomOut:
        Lens(path);
        Line(path, 4.6, 6.8, 9, 6.8);
        break;
    case XSign::ZoomRect:
        Lens(path);
        path.addRect(QRectF(4.6, 5.2, 4.4, 3.2));
        break;
    case XSign::Enhance: // a disc whose one half is dense
        path.addEllipse(QPointF(8, 8), 5.8, 5.8);
        Line(path, 8, 2.2, 8, 13.8);
        Line(path, 9.8, 3.2, 9.8, 12.8);
        Line(path, 11.6, 4.4, 11.6, 11.6);
        break;
    case XSign::Stretch: // a curve over its axes
        Line(path, 2.5, 2, 2.5, 13.5);
        Line(path, 2.5, 13.5, 14, 13.5);
        path.moveTo(3.5, 12.5);
        path.cubicTo(9, 12, 7, 4, 13.5, 3.5);
        break;
    case XSign::Overview: // a part within the whole
        path.addRect(1.8, 3, 12.4, 10);
        path.addRect(7.2, 7.4, 4.8, 3.6);
        break;
    }
    return path;
}

QIcon XfnDrawnIcon(std::function<void(QPainter&, QIcon::Mode)> paint)
{
    return QIcon(new XDrawnIconEngine(std::move(paint)));
}

QIcon XfnLineIcon(std::function<QPainterPath()> path)
{
    return XfnDrawnIcon([path = std::move(path)](QPainter& painter, QIcon::Mode mode) {
        const auto group = mode == QIcon::Disabled ? QPalette::Disabled : QPalette::Active;
        const auto role =
            mode == QIcon::Selected ? QPalette::HighlightedText : QPalette::ButtonText;
        const QColor colour = QGuiApplication::palette().color(group, role);
        painter.setPen(QPen(colour, kXSignPen, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        painter.setBrush(Qt::NoBrush);
        painter.drawPath(path());
    });
}

QIcon XfnSignIcon(XSign sign)
{
    return XfnLineIcon([sign] { return XfnSignPath(sign); });
}
