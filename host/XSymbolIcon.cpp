#include "host/XSymbolIcon.h"

#include "dialogs/XSignIcon.h"

#include <QGuiApplication>
#include <QPainter>
#include <QPainterPath>
#include <QPalette>
#include <QTransform>

#include <cmath>
#include <initializer_list>

namespace {

void Line(QPainterPath& path, double x0, double y0, double x1, double y1)
{
    path.moveTo(x0, y0);
    path.lineTo(x1, y1);
}

// A line with a head of two strokes at its end; (dx, dy) is the unit direction.
void Arrow(QPainterPath& path, double x0, double y0, double x1, double y1)
{
    Line(path, x0, y0, x1, y1);
    const QPointF way(x1 - x0, y1 - y0);
    const double length = std::hypot(way.x(), way.y());
    const QPointF along = way / length * 3.2;
    const QPointF across(-along.y(), along.x());
    const QPointF tip(x1, y1);
    path.moveTo(tip - along + across);
    path.lineTo(tip);
    path.lineTo(tip - along - across);
}

void Frame(QPainterPath& path)
{
    for (const double x : {2.0, 14.0}) {
        for (const double y : {2.0, 14.0}) {
            const double toX = x < 8 ? 5.0 : 11.0;
            const double toY = y < 8 ? 5.0 : 11.0;
            path.moveTo(toX, y);
            path.lineTo(x, y);
            path.lineTo(x, toY);
        }
    }
}

void Polyline(QPainterPath& path, std::initializer_list<QPointF> points)
{
    path.moveTo(*points.begin());
    for (const QPointF& point : points)
        path.lineTo(point);
}

// The signs of the tools that draw show what they draw.
QPainterPath DrawnPathOf(Symbol symbol)
{
    QPainterPath path;
    const auto dot = [&](double x, double y) { path.addEllipse(QPointF(x, y), 1.2, 1.2); };
    switch (symbol) {
    case Symbol::Select:
        Polyline(path, {{4, 2},
                        {4, 12.5},
                        {6.8, 10},
                        {8.8, 14.3},
                        {10.6, 13.4},
                        {8.6, 9.3},
                        {12.3, 9},
                        {4, 2}});
        break;
    case Symbol::Point:
        path.addEllipse(QPointF(8, 8), 2.6, 2.6);
        path.addEllipse(QPointF(8, 8), 0.8, 0.8);
        break;
    case Symbol::Line:
        Line(path, 3.8, 12.2, 12.2, 3.8);
        dot(3, 13);
        dot(13, 3);
        break;
    case Symbol::Arrow:
        Arrow(path, 2.5, 13.5, 13, 3);
        break;
    case Symbol::Polyline:
        Polyline(path, {{2, 12}, {6, 4}, {10, 11}, {14, 5}});
        dot(6, 4);
        dot(10, 11);
        break;
    case Symbol::Curve:
        path.moveTo(2, 12);
        path.cubicTo(5, -3, 10, 19, 14, 4);
        break;
    case Symbol::Polygon:
        Polyline(path, {{8, 2}, {14, 6.5}, {11.5, 13.5}, {3.5, 13}, {2, 6}, {8, 2}});
        break;
    case Symbol::Rectangle:
        path.addRect(2, 4, 12, 8.5);
        break;
    case Symbol::Ellipse:
        path.addEllipse(QPointF(8, 8), 6, 4.2);
        break;
    case Symbol::Text:
        Polyline(path, {{3, 4.5}, {3, 3}, {13, 3}, {13, 4.5}});
        Line(path, 8, 3, 8, 13);
        Line(path, 6, 13, 10, 13);
        break;
    case Symbol::TextBox:
        path.addRect(2, 3, 12, 10);
        Line(path, 5, 6, 11, 6);
        Line(path, 8, 6, 8, 10.5);
        break;
    case Symbol::Balloon:
        Polyline(path,
                 {{2, 2.5}, {14, 2.5}, {14, 10}, {8, 10}, {4.5, 14}, {5.2, 10}, {2, 10}, {2, 2.5}});
        Line(path, 5, 5.2, 11, 5.2);
        Line(path, 5, 7.4, 9, 7.4);
        break;
    case Symbol::Picture:
        path.addRect(2, 3, 12, 10);
        path.addEllipse(QPointF(5.5, 6.2), 1.1, 1.1);
        Polyline(path, {{2, 11.5}, {6, 9}, {8, 10.5}, {11, 7}, {14, 10.5}});
        break;
    case Symbol::Save:
        Polyline(path,
                 {{2.5, 2.5}, {11.5, 2.5}, {13.5, 4.5}, {13.5, 13.5}, {2.5, 13.5}, {2.5, 2.5}});
        path.addRect(5, 8.5, 6, 5);
        Polyline(path, {{5, 2.5}, {5, 5.5}, {10, 5.5}, {10, 2.5}});
        break;
    case Symbol::Undo:
    case Symbol::Redo:
        path.moveTo(4, 13);
        path.lineTo(9.5, 13);
        path.arcTo(QRectF(5.5, 5, 8, 8), -90, 180);
        path.lineTo(3, 5);
        Polyline(path, {{5.6, 2}, {2.5, 5}, {5.6, 8}});
        if (symbol == Symbol::Redo) path = QTransform(-1, 0, 0, 1, kXSignSide, 0).map(path);
        break;
    default:
        break;
    }
    return path;
}

QPainterPath PathOf(Symbol symbol)
{
    QPainterPath path;
    switch (symbol) {
    case Symbol::Open:
        path.moveTo(2, 13);
        path.lineTo(2, 3.5);
        path.lineTo(6.5, 3.5);
        path.lineTo(8, 5.5);
        path.lineTo(13, 5.5);
        path.lineTo(13, 8);
        path.moveTo(2, 13);
        path.lineTo(4.5, 8);
        path.lineTo(15, 8);
        path.lineTo(12.5, 13);
        path.closeSubpath();
        break;
    case Symbol::Close:
        Line(path, 3.5, 3.5, 12.5, 12.5);
        Line(path, 12.5, 3.5, 3.5, 12.5);
        break;
    case Symbol::FitAll:
        return XfnSignPath(XSign::Fit);
    case Symbol::FitLayer:
        Frame(path);
        path.addRect(5, 6, 6, 4);
        break;
    case Symbol::OneToOne:
        return XfnSignPath(XSign::OneToOne);
    case Symbol::ZoomIn:
        return XfnSignPath(XSign::ZoomIn);
    case Symbol::ZoomOut:
        return XfnSignPath(XSign::ZoomOut);
    case Symbol::ZoomRect:
        return XfnSignPath(XSign::ZoomRect);
    case Symbol::Enhance:
        return XfnSignPath(XSign::Enhance);
    case Symbol::Previous:
        Arrow(path, 14, 8, 2, 8);
        break;
    case Symbol::Next:
        Arrow(path, 2, 8, 14, 8);
        break;
    case Symbol::Up:
        Arrow(path, 8, 14, 8, 2);
        break;
    case Symbol::Down:
        Arrow(path, 8, 2, 8, 14);
        break;
    case Symbol::Top:
        Line(path, 3, 2, 13, 2);
        Arrow(path, 8, 14, 8, 4.5);
        break;
    case Symbol::FullScreen:
        Arrow(path, 9, 7, 14, 2);
        Arrow(path, 7, 9, 2, 14);
        break;
    case Symbol::CopyPosition:
        path.addEllipse(QPointF(8, 8), 3.6, 3.6);
        Line(path, 8, 1.5, 8, 6);
        Line(path, 8, 10, 8, 14.5);
        Line(path, 1.5, 8, 6, 8);
        Line(path, 10, 8, 14.5, 8);
        break;
    case Symbol::Lock:
    case Symbol::Unlock:
        path.addRect(3.5, 7.5, 9, 6.5);
        path.moveTo(5.5, 7.5);
        path.lineTo(5.5, 5);
        path.arcTo(QRectF(5.5, 2.5, 5, 5), 180, symbol == Symbol::Lock ? -180 : -130);
        if (symbol == Symbol::Lock) path.lineTo(10.5, 7.5);
        Line(path, 8, 10, 8, 11.5);
        break;
    case Symbol::Image:
        path.addRect(2, 3, 12, 10);
        path.moveTo(2, 11);
        path.lineTo(6, 7);
        path.lineTo(9, 10);
        path.lineTo(11, 8);
        path.lineTo(14, 11);
        break;
    case Symbol::Shapes:
        path.moveTo(2, 9);
        path.lineTo(5, 3);
        path.lineTo(9, 7);
        path.closeSubpath();
        Line(path, 4, 13.5, 13.5, 10.5);
        path.addEllipse(QPointF(12, 4.5), 1.6, 1.6);
        break;
    case Symbol::CopyText:
        path.addRect(2, 2, 8.5, 9.5);
        path.moveTo(10.5, 4.5);
        path.lineTo(14, 4.5);
        path.lineTo(14, 14);
        path.lineTo(5.5, 14);
        path.lineTo(5.5, 11.5);
        Line(path, 4.2, 5, 8.3, 5);
        Line(path, 4.2, 8, 8.3, 8);
        break;
    default:
        return DrawnPathOf(symbol);
    }
    return path;
}

void PaintProgram(QPainter& painter, QIcon::Mode)
{
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(0x1d, 0x2b, 0x3a));
    painter.drawRoundedRect(QRectF(0.5, 0.5, 15, 15), 3, 3);
    const QColor bands[3] = {QColor(0x3f, 0x8e, 0xd6), QColor(0x5d, 0xbb, 0x63),
                             QColor(0xe0, 0x6c, 0x4f)};
    for (int i = 0; i < 3; ++i) {
        const double y = 9.6 - 2.7 * i;
        QPainterPath plane;
        plane.moveTo(8, y - 3.2);
        plane.lineTo(13.4, y);
        plane.lineTo(8, y + 3.2);
        plane.lineTo(2.6, y);
        plane.closeSubpath();
        painter.setBrush(bands[i]);
        painter.drawPath(plane);
    }
}

} // namespace

QIcon XfnSymbolIcon(Symbol symbol)
{
    return XfnLineIcon([symbol] { return PathOf(symbol); });
}

QIcon XfnSwatchIcon(const QColor& color)
{
    return XfnDrawnIcon([color](QPainter& painter, QIcon::Mode) {
        painter.setPen(QPen(QGuiApplication::palette().color(QPalette::Text), 1));
        painter.setBrush(color);
        painter.drawRoundedRect(QRectF(2.5, 2.5, 11, 11), 2, 2);
    });
}

QIcon XfnProgramIcon()
{
    return XfnDrawnIcon(&PaintProgram);
}
