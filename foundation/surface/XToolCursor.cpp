#include "foundation/surface/XToolCursor.h"

#include <QPainter>
#include <QPainterPath>
#include <QPixmap>

#include <array>

namespace {

constexpr int kSide = 32;
constexpr int kHotSpot = 8;

// The picture of a tool within a box of 12 by 12 units.
struct tagToolPicture
{
    int mode;
    QPainterPath (*make)();
};

QPainterPath Lines(std::initializer_list<QPointF> points)
{
    QPainterPath path;
    path.addPolygon(QPolygonF(QList<QPointF>(points)));
    return path;
}

template <class Add>
QPainterPath Make(Add add)
{
    QPainterPath path;
    add(path);
    return path;
}

const std::array kToolPictures = {
    tagToolPicture{101, [] { return Make([](auto& p) { p.addEllipse(4, 4, 4, 4); }); }},
    tagToolPicture{102,
                   [] {
                       return Lines({{1, 11}, {11, 1}});
                   }},
    tagToolPicture{103,
                   [] {
                       return Lines({{1, 11}, {4, 3}, {8, 9}, {11, 1}});
                   }},
    tagToolPicture{104,
                   [] {
                       return Make([](auto& p) {
                           p.moveTo(1, 11);
                           p.cubicTo(3, -4, 9, 16, 11, 1);
                       });
                   }},
    tagToolPicture{105, [] { return Make([](auto& p) { p.addRect(1, 3, 10, 7); }); }},
    tagToolPicture{106, [] { return Make([](auto& p) { p.addEllipse(1, 3, 10, 7); }); }},
    tagToolPicture{107,
                   [] {
                       return Lines({{6, 1}, {11, 5}, {9, 11}, {2, 10}, {1, 4}, {6, 1}});
                   }},
    tagToolPicture{108,
                   [] {
                       return Make([](auto& p) {
                           p = Lines({{1, 2}, {11, 2}});
                           p.moveTo(6, 2);
                           p.lineTo(6, 11);
                       });
                   }},
    tagToolPicture{109,
                   [] {
                       return Make([](auto& p) {
                           p.addRect(1, 1, 10, 10);
                           p.addPolygon(QPolygonF(QList<QPointF>{{1, 9}, {5, 5}, {11, 10}}));
                       });
                   }},
    tagToolPicture{110,
                   [] {
                       return Lines({{6, 1}, {10, 11}, {6, 8}, {2, 11}, {6, 1}});
                   }},
    tagToolPicture{111,
                   [] {
                       return Lines({{1, 6}, {11, 6}});
                   }},
    tagToolPicture{112,
                   [] {
                       return Lines({{1, 3}, {1, 8}, {6, 8}, {6, 4}, {6, 8}, {11, 8}, {11, 3}});
                   }},
    tagToolPicture{113,
                   [] {
                       return Make([](auto& p) {
                           p.addRect(0.5, 1, 11, 10);
                           p.moveTo(3, 4);
                           p.lineTo(9, 4);
                           p.moveTo(6, 4);
                           p.lineTo(6, 9);
                       });
                   }},
    tagToolPicture{120,
                   [] {
                       return Make([](auto& p) {
                           p.addRect(1, 2, 10, 8);
                           p.moveTo(1, 2);
                           p.lineTo(11, 10);
                       });
                   }},
    tagToolPicture{121,
                   [] {
                       return Make([](auto& p) {
                           p.addRect(1, 1, 10, 10);
                           p.addRect(6, 5, 4, 4);
                       });
                   }},
    tagToolPicture{131,
                   [] {
                       return Make([](auto& p) {
                           p.addRect(2, 6, 8, 5);
                           p.moveTo(3.5, 6);
                           p.cubicTo(3.5, -1, 8.5, -1, 8.5, 6);
                       });
                   }},
};

QPainterPath CrossHair()
{
    QPainterPath path;
    path.moveTo(kHotSpot, 1);
    path.lineTo(kHotSpot, 2 * kHotSpot - 1);
    path.moveTo(1, kHotSpot);
    path.lineTo(2 * kHotSpot - 1, kHotSpot);
    return path;
}

QCursor MakeCursor(const QPainterPath& path, int hotX, int hotY)
{
    QPixmap picture(kSide, kSide);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(0.5, 0.5); // strokes in the middle of pixels stay sharp
    painter.setPen(QPen(Qt::white, 3.0));
    painter.drawPath(path);
    painter.setPen(QPen(Qt::black, 1.0));
    painter.drawPath(path);
    painter.end();
    return QCursor(picture, hotX, hotY);
}

QCursor MakeZoomCursor()
{
    QPainterPath path;
    path.addEllipse(2, 2, 16, 16);
    path.moveTo(16, 16);
    path.lineTo(26, 26);
    path.moveTo(6, 10);
    path.lineTo(14, 10);
    path.moveTo(10, 6);
    path.lineTo(10, 14);
    return MakeCursor(path, 10, 10);
}

QCursor MakeRotateCursor()
{
    QPainterPath path;
    path.arcMoveTo(4, 4, 20, 20, 60);
    path.arcTo(4, 4, 20, 20, 60, 285);
    const QPointF tip = path.currentPosition();
    path.moveTo(tip + QPointF(-6, 0));
    path.lineTo(tip);
    path.lineTo(tip + QPointF(1, 6));
    return MakeCursor(path, 14, 14);
}

} // namespace

QCursor XfnGetCursor(XCursorImage image)
{
    switch (image) {
    case XCursorImage::Pan:
        return QCursor(Qt::ClosedHandCursor);
    case XCursorImage::ZoomRect:
        return MakeZoomCursor();
    case XCursorImage::Rotate:
        return MakeRotateCursor();
    case XCursorImage::Draw:
        return MakeCursor(CrossHair(), kHotSpot, kHotSpot);
    case XCursorImage::Arrow:
        break;
    }
    return QCursor(Qt::ArrowCursor);
}

QCursor XfnGetToolCursor(int mode)
{
    if (mode == 202) return XfnGetCursor(XCursorImage::Rotate);
    QPainterPath path = CrossHair();
    for (const tagToolPicture& picture : kToolPictures) {
        if (picture.mode == mode) path.addPath(picture.make().translated(17, 17));
    }
    return MakeCursor(path, kHotSpot, kHotSpot);
}
